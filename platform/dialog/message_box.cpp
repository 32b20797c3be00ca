#include "platform/dialog/message_box.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QString>
#include <cstdio>

#include "platform/base/env.h"
#include "platform/base/scripted_answers.h"
#include "platform/base/to_qt.h"

namespace {

ScriptedAnswers<BoxAnswer, ShownMessageBox>& Script()
{
    static ScriptedAnswers<BoxAnswer, ShownMessageBox> script;
    return script;
}

bool HaveWidgets() { return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr; }

std::string TextOrEmpty(const char* text)
{
    return text != nullptr ? std::string(text) : std::string();
}

// The alerts carry the program's name as their title.
QString ProgramTitle()
{
    return gEnv.name[0] != '\0' ? ToQString(gEnv.name) : QStringLiteral("Parallaxotron");
}

// Runs a real modal box over the active window and answers which button ended it. Esc and the
// window's close button give the escape button's answer.
BoxAnswer RunBox(QMessageBox::Icon icon, const QString& title, const std::string& text,
                 MessageBoxKind kind)
{
    QMessageBox box(icon, title, ToQString(text), QMessageBox::NoButton,
                    QApplication::activeWindow());
    switch (kind) {
    case MessageBoxKind::kError:
        box.setStandardButtons(QMessageBox::Ok);
        box.setEscapeButton(QMessageBox::Ok);
        break;
    case MessageBoxKind::kYesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::No);
        break;
    case MessageBoxKind::kYesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::Cancel);
        break;
    }
    box.exec();
    QAbstractButton* clicked = box.clickedButton();
    QMessageBox::StandardButton button =
        clicked != nullptr ? box.standardButton(clicked) : QMessageBox::NoButton;
    switch (button) {
    case QMessageBox::Yes:
    case QMessageBox::Ok:
        return kBoxYes;
    case QMessageBox::No:
        return kBoxNo;
    case QMessageBox::Cancel:
        return kBoxCancel;
    default:
        break;
    }
    if (kind == MessageBoxKind::kYesNoCancel)
        return kBoxCancel;
    return kind == MessageBoxKind::kYesNo ? kBoxNo : kBoxYes;
}

// Answers one box by script, on screen or on the console, and records it.
BoxAnswer AnswerBox(ShownMessageBox box, BoxAnswer consoleDefault)
{
    BoxAnswer answer = consoleDefault;
    if (Script().Take(&answer)) {
        box.way = MessageBoxWay::kScripted;
    } else if (HaveWidgets()) {
        box.way = MessageBoxWay::kShown;
        QString title = box.kind == MessageBoxKind::kError ? ProgramTitle() : ToQString(box.title);
        QMessageBox::Icon icon =
            box.kind == MessageBoxKind::kError ? QMessageBox::Warning : QMessageBox::Question;
        answer = RunBox(icon, title, box.shownText, box.kind);
    } else {
        box.way = MessageBoxWay::kConsole;
        if (box.kind == MessageBoxKind::kError) {
            std::fprintf(stderr, "%s\n", box.shownText.c_str());
        } else {
            const char* said = answer == kBoxYes ? "yes" : (answer == kBoxNo ? "no" : "cancel");
            std::fprintf(stderr, "%s%s%s (answered %s)\n", box.title.c_str(),
                         box.title.empty() ? "" : ": ", box.shownText.c_str(), said);
        }
    }
    // An alert has only its "OK", whatever a script said.
    if (box.kind == MessageBoxKind::kError)
        answer = kBoxYes;
    // A two-button question has no cancel: a scripted cancel is a no.
    if (box.kind == MessageBoxKind::kYesNo && answer != kBoxYes)
        answer = kBoxNo;
    box.answer = answer;
    Script().Record(std::move(box));
    return answer;
}

// A question box as asked: its text shown as given, under its title.
ShownMessageBox Question(MessageBoxKind kind, const char* text, const char* title)
{
    ShownMessageBox box;
    box.kind = kind;
    box.text = TextOrEmpty(text);
    box.title = TextOrEmpty(title);
    box.shownText = box.text;
    return box;
}

}  // namespace

void ErrorBox(const char* text, long code)
{
    ShownMessageBox box;
    box.kind = MessageBoxKind::kError;
    box.text = TextOrEmpty(text);
    box.code = code;
    box.shownText = box.text;
    if (code != kNoErrorNumber) {
        char number[40];
        std::snprintf(number, sizeof number, "  [ %ld ]", code);
        box.shownText += number;
    }
    AnswerBox(std::move(box), kBoxYes);
}

bool YesNoBox(const char* text, const char* title)
{
    return AnswerBox(Question(MessageBoxKind::kYesNo, text, title), kBoxNo) == kBoxYes;
}

BoxAnswer YesNoCancelBox(const char* text, const char* title)
{
    return AnswerBox(Question(MessageBoxKind::kYesNoCancel, text, title), kBoxCancel);
}

void PushMessageBoxAnswer(BoxAnswer answer) { Script().Push(answer); }

int CountMessageBoxAnswers() { return Script().CountAnswers(); }

std::vector<ShownMessageBox> TakeShownMessageBoxes() { return Script().TakeRecord(); }

void ClearMessageBoxScript() { Script().Clear(); }
