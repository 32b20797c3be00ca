#pragma once
// The application shell: start and stop, the message loop, synchronous message delivery, and the
// small services every window uses (modifier state, beep, the open-document and quit requests).
// Main thread only. Needs the program's QApplication to exist before InitEnvironment.

#include "platform/base/types.h"
#include "platform/draw/font.h"
#include "platform/file/fspec.h"

class CPWnd;

// ---- State ---------------------------------------------------------------------------------
// 0 while the message loop runs; once set, the program's exit code + 1.
extern int gMacDone;
// The modifier state of the current key press: kKeyStateControl (Alt) and kKeyStateShift
// (messages.h) as they were at the key-down; 0 after every key-up.
extern int sLastKey;
// The system version as a packed number (see PackSystemVersion).
extern long gOSVersionNumber;
// The front (main) window: the first window created while none was the main window.
extern CPWnd* gFirstWin;
// The window kept floating above the others (style 4), or null.
extern CPWnd* gFloatWin;
// The main screen's usable area in screen pixels, recorded by InitEnvironment.
extern tagRECT gScreenRect;
// What the program was started with (InitEnvironment's first argument).
extern void* gInstance;

// The fonts made at start, all of the standard family: 8, 10, 12 and 20 point plain, and
// Sans14B, which is 13 point bold on purpose (the layouts were made with it).
extern FontRecord* Sans8;
extern FontRecord* Sans10;
extern FontRecord* Sans12;
extern FontRecord* Sans14B;
extern FontRecord* Sans20;

// ---- Start and stop ----------------------------------------------------------------------
// Stores kind and instance, names the program (63 characters at most), shows the arrow when
// there is an instance, makes the five fonts (those not made yet), records the screen, starts
// the worker task, loads the settings and asks the system version. Kinds 1000 and 1001 are the
// hosted variants; their pictures are compiled in like everyone's. Answers 1.
int InitEnvironment(void* instance, const char* name, int kind);
// Frees the five fonts, saves the settings, disposes of the active edit box, stops the worker.
void CloseEnvironment();

// ---- The message loop --------------------------------------------------------------------
// Clears gMacDone and turns the system's events into messages until gMacDone is set; answers
// gMacDone - 1. An idle tick (1013 to the window under the pointer) comes at least every
// 10 ticks. On its first run it hands the first document named on the command line to the
// open-document handler.
int MessageLoop();

// Delivers at once: each listed window, in list order, that is `target` (every one when target
// is null) gets HandleEvent(msg, wParam, lParam) before this returns. Message 12345 first sets
// gMacDone to wParam + 1, so the running loop ends after the current event. Answers 1.
int PostAMessage(CPWnd* target, unsigned int msg, long wParam, long lParam);

// True when the message is a Command-key shortcut (lParam is kShortcutMark).
bool ConvertControlKey(long& wParam, long& lParam);
// True when sLastKey equals `keys` exactly (0x800 Control, 0x400 Shift, 0xC00 both): not a test
// of single bits.
bool IsKeyPressed(int keys);
// Does nothing: keys are taken one message at a time, so there is nothing to flush.
void KeyBoardFlush();
// One system beep; the argument is ignored.
void Sound(int ignored);

// ---- Requests from the desktop -----------------------------------------------------------
// What the program opens a handed-over document with (OpenDocumentFile of the main window):
// answers whether the file could be opened. Until one is set, requests are dropped.
using OpenDocumentHandler = bool (*)(FSpec* file, bool flag);
void SetOpenDocumentHandler(OpenDocumentHandler handler);
// An open-documents request: only the first path of the list is taken, as a path-form FSpec,
// and handed to the handler with flag true. Paths are UTF-8. Answers what the handler answered
// (false with no handler or an empty list).
bool OpenAppleEventHandler(int count, const char* const* paths);
// The documents named when the program was started: the first argument that is not an option
// (does not begin with "-") goes to OpenAppleEventHandler. MessageLoop's first run calls it with
// the program's own arguments.
bool OpenCommandLineDocument(int count, const char* const* arguments);
// A quit request: sends 1007 to the main window.
void QuitAppleEventHandler();

// The system version packed as the program reads it: major in two decimal digits, then minor
// and micro in one each (10.3.9 is 0x1039); each part is capped at what its digits hold.
long PackSystemVersion(int major, int minor, int micro);
