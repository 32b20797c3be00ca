#pragma once
// GetStringBox: asks the user for one line of text, and the seam through which tests answer it.
//
// In the program the box is a modal window over the active window: the prompt and the note on
// one line, a field holding the start text all selected, "OK" (also Return) and "Cancel" (also
// Esc). Like the message boxes, while answers are queued each box takes the oldest instead of
// showing anything, and with no answer queued and no QApplication (the command line) nothing
// blocks: the box answers cancel. Every box, however it was answered, is added to a record that
// tests read back.
//
// Main thread only.

#include <string>
#include <vector>

// The longest answer: a value row's 63 characters (UTF-8 bytes, never part of a character).
constexpr int kStringBoxAnswer = 63;

// Shows `value` as the start text under `title`, with `prompt` followed by `note` (either may be
// null). On OK `value` receives the answer, at most 63 characters and a terminator, and the
// result is true; on cancel `value` is left alone and the result is false. `value` must hold
// at least 64 characters.
bool GetStringBox(char* value, const char* title, const char* prompt, const char* note);

// ---- The seam for tests -------------------------------------------------------------------

// Queues the text the next box is answered with (null answers "").
void PushStringBoxAnswer(const char* text);
// Queues a cancel.
void PushStringBoxCancel();
int CountStringBoxAnswers();

enum class StringBoxWay { kScripted, kShown, kConsole };

struct ShownStringBox {
    std::string title;
    std::string prompt;
    std::string note;
    std::string start;   // the start text, as given
    std::string answer;  // what `value` holds afterwards (the start text when cancelled)
    bool ok = false;
    StringBoxWay way = StringBoxWay::kConsole;
};

// Hands back every box since the last take, oldest first, and forgets them. The record keeps the
// last 256 only.
std::vector<ShownStringBox> TakeShownStringBoxes();
// Forgets the queued answers and the record.
void ClearStringBoxScript();
