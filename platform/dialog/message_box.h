#pragma once
// The program's small fixed message boxes, and the seam through which tests answer them.
//
// In the program each box is a modal alert over the active window. Tests never see one: while
// answers are queued, each box takes the oldest instead of showing anything. With no answer
// queued and no QApplication running (the command line), nothing blocks either: ErrorBox writes
// its text to stderr and the questions write theirs and take their default answer (YesNoBox: no;
// YesNoCancelBox: cancel, so that nothing is lost or changed unasked). Every box, however it
// was answered, is added to a record that tests read back.
//
// Main thread only.

#include <string>
#include <vector>

// ErrorBox's number that is not shown.
constexpr long kNoErrorNumber = -9999;

// What a question box answered. An alert has only "OK", given as kBoxYes.
enum BoxAnswer { kBoxNo = 0, kBoxYes = 1, kBoxCancel = 2 };

// An alert showing `text`, followed by "  [ code ]" unless code is kNoErrorNumber.
void ErrorBox(const char* text, long code);
// Asks `text` under `title`; true for yes.
bool YesNoBox(const char* text, const char* title);
// Asks `text` under `title` with a third button, "Cancel" (also Esc).
BoxAnswer YesNoCancelBox(const char* text, const char* title);

// ---- The seam for tests -------------------------------------------------------------------

// Queues the answer of the next box. ErrorBox takes an answer too (any value acknowledges it),
// so a script lists one answer per box in the order the boxes come. YesNoBox takes kBoxCancel as
// no.
void PushMessageBoxAnswer(BoxAnswer answer);
int CountMessageBoxAnswers();

enum class MessageBoxKind { kError, kYesNo, kYesNoCancel };
// How a box was answered.
enum class MessageBoxWay { kScripted, kShown, kConsole };

struct ShownMessageBox {
    MessageBoxKind kind = MessageBoxKind::kError;
    std::string text;            // as the caller gave it
    std::string title;           // as the caller gave it; empty for ErrorBox
    long code = kNoErrorNumber;  // ErrorBox's number; kNoErrorNumber for the questions
    std::string shownText;       // what the box displays: the text, then "  [ code ]" when numbered
    BoxAnswer answer = kBoxYes;  // what the caller got back (kBoxYes for an alert)
    MessageBoxWay way = MessageBoxWay::kConsole;
};

// Hands back every box since the last take, oldest first, and forgets them. The record keeps the
// last 256 boxes only, so a long-running program does not grow it without end.
std::vector<ShownMessageBox> TakeShownMessageBoxes();
// Forgets the queued answers and the record.
void ClearMessageBoxScript();
