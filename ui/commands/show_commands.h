#pragma once
// The File menu's show commands: New Show, Load Show, Save Show, the quick save of Ctrl+S, the
// recent shows, and the save question asked before a modified show goes (New, Load, Exit).
//
// Saving never loses the user's show: the whole show is written beside the old file and put in
// its place only once complete. A failed save says so and leaves the old file as it was; the show
// stays modified, and the command that asked for the save (New, Load, Exit) does not go on.

struct FSpec;

// "Parallaxotron Files (*.plx)|*.plx|All Files (*.*)|*.*|"
const char* ShowFileFilter();

// Writes the whole show to `file`; a failure is reported in a message box. True when written.
bool WriteShowTo(const FSpec& file);
// Save Show (2003): asks where (the current show's file proposed), writes, and makes the file the
// show's own: title, remembered folder, recent shows. False when cancelled or not written.
bool SaveShowCommand();
// Ctrl+S: to the show's own file without asking (Save Show when it has none).
bool QuickSaveCommand();
// New Show (2005).
void NewShowCommand();
// Load Show (2004).
void LoadShowCommand();
// A recent show (kCmdFirstRecentShow ..): opened after the save question; a show that is no
// longer there is said so and dropped from the list.
void OpenRecentShowCommand(int command);
// Opens a show file as the current show (title, folder, recent shows); a file that is not a show
// is said so and leaves the current show as it was. True when opened.
bool OpenShowFrom(const FSpec& file);
// The close request (window manager, Exit, Ctrl+Q): a modified show of the standalone program is
// offered for saving first. True when the program may end; false when the user cancelled or the
// save did not happen.
bool MayCloseShow();
