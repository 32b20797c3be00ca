#pragma once
// The program's one start-up and shut-down sequence, shared by its two fronts: the command line
// and the editor.
//
// Start: the environment (fonts, screen, worker task, settings), the movie services, then the
// one document in pDoc with the default show length. The editor creates its windows after
// StartProgram and deletes them before StopProgram; stop runs the start in reverse: the document,
// the environment, the movie services.
//
// Main thread only.

#include <string>

class CDoc;

enum class ProgramFront {
    kCommandLine,  // no windows and no QApplication: nothing is shown, nothing is saved
    kEditor,       // the desktop program: needs its QApplication before StartProgram
};

// The program's name: the settings file and the alerts carry it.
constexpr const char* kProgramName = "Parallaxotron";
// The environment kind of the program running on its own (not hosted).
constexpr int kProgramKind = 101;

// Starts the program. The editor runs InitEnvironment(instance, kProgramName, kProgramKind), which
// loads the user's settings file. The command line, which opens no window, runs only the parts
// of it that work without one, in the same order: the name, the worker task, the settings; its
// settings are `settingsText` (the text of a settings file the user named; empty: every setting
// at its built-in default), never the user's own file, so a render depends only on what it is
// given. Then the movie services start and the document is made (it reads its settings, and
// runs as its own application, not hosted), stored in pDoc, with a show length of
// (gFrameRate * 60 / 100) * 5 frames. Answers the document.
CDoc* StartProgram(ProgramFront front, void* instance = nullptr,
                   const std::string& settingsText = std::string());

// Stops what StartProgram started: deletes the document (pDoc becomes null), closes the
// environment and stops the movie services. The editor saves the settings (CloseEnvironment);
// the command line saves nothing, so a render never rewrites the user's settings file, whatever
// the show or the options changed in memory.
void StopProgram(ProgramFront front);
