#include "platform/dialog/message_box.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QString>
#include <cstdio>
#include <deque>
#include <mutex>

#include "platform/base/env.h"

namespace
{

constexpr size_t kRecordLimit = 256;

struct BoxScript {
    std::mutex mutex;
    std::deque<BoxAnswer> answers;
    std::deque<ShownMessageBox> shown;
};

BoxScript& Script()
{
    static BoxScript script;
    return script;
}

bool TakeScriptedAnswer(BoxAnswer* answer)
{
    BoxScript& script = Script();
    std::lock_guard<std::mutex> lock(script.mutex);
    if (script.answers.empty())
        return false;
    *answer = script.answers.front();
    script.answers.pop_front();
    return true;
}

void Record(ShownMessageBox box)
{
    BoxScript& script = Script();
    std::lock_guard<std::mutex> lock(script.mutex);
    script.shown.push_back(std::move(box));
    while (script.shown.size() > kRecordLimit)
        script.shown.pop_front();
}

bool HaveWidgets()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
}

std::string TextOrEmpty(const char* text)
{
    return text != nullptr ? std::string(text) : std::string();
}

// The alerts carry the program's name as their title.
QString ProgramTitle()
{
    return gEnv.name[0] != '\0' ? QString::fromUtf8(gEnv.name) : QStringLiteral("Parallaxotron");
}

// Runs a real modal box over the active window and answers which button ended it. Esc and the
// window's close button give the escape button's answer.
BoxAnswer RunBox(QMessageBox::Icon icon, const QString& title, const std::string& text, MessageBoxKind kind)
{
    QMessageBox box(
        icon, title, QString::fromUtf8(text.c_str()), QMessageBox::NoButton, QApplication::activeWindow());
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
    QMessageBox::StandardButton button
        = clicked != nullptr ? box.standardButton(clicked) : QMessageBox::NoButton;
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
    if (TakeScriptedAnswer(&answer)) {
        box.way = MessageBoxWay::kScripted;
    } else if (HaveWidgets()) {
        box.way = MessageBoxWay::kShown;
        QString title
            = box.kind == MessageBoxKind::kError ? ProgramTitle() : QString::fromUtf8(box.title.c_str());
        QMessageBox::Icon icon
            = box.kind == MessageBoxKind::kError ? QMessageBox::Warning : QMessageBox::Question;
        answer = RunBox(icon, title, box.shownText, box.kind);
    } else {
        box.way = MessageBoxWay::kConsole;
        if (box.kind == MessageBoxKind::kError) {
            std::fprintf(stderr, "%s\n", box.shownText.c_str());
        } else {
            const char* said = answer == kBoxYes ? "yes" : (answer == kBoxNo ? "no" : "cancel");
            std::fprintf(stderr, "%s%s%s (answered %s)\n", box.title.c_str(), box.title.empty() ? "" : ": ",
                box.shownText.c_str(), said);
        }
    }
    // An alert has only its "OK", whatever a script said.
    if (box.kind == MessageBoxKind::kError)
        answer = kBoxYes;
    // A two-button question has no cancel: a scripted cancel is a no.
    if (box.kind == MessageBoxKind::kYesNo && answer != kBoxYes)
        answer = kBoxNo;
    box.answer = answer;
    Record(std::move(box));
    return answer;
}

} // namespace

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
    ShownMessageBox box;
    box.kind = MessageBoxKind::kYesNo;
    box.text = TextOrEmpty(text);
    box.title = TextOrEmpty(title);
    box.shownText = box.text;
    return AnswerBox(std::move(box), kBoxNo) == kBoxYes;
}

BoxAnswer YesNoCancelBox(const char* text, const char* title)
{
    ShownMessageBox box;
    box.kind = MessageBoxKind::kYesNoCancel;
    box.text = TextOrEmpty(text);
    box.title = TextOrEmpty(title);
    box.shownText = box.text;
    return AnswerBox(std::move(box), kBoxCancel);
}

void PushMessageBoxAnswer(BoxAnswer answer)
{
    BoxScript& script = Script();
    std::lock_guard<std::mutex> lock(script.mutex);
    script.answers.push_back(answer);
}

int CountMessageBoxAnswers()
{
    BoxScript& script = Script();
    std::lock_guard<std::mutex> lock(script.mutex);
    return static_cast<int>(script.answers.size());
}

std::vector<ShownMessageBox> TakeShownMessageBoxes()
{
    BoxScript& script = Script();
    std::lock_guard<std::mutex> lock(script.mutex);
    std::vector<ShownMessageBox> boxes(script.shown.begin(), script.shown.end());
    script.shown.clear();
    return boxes;
}

void ClearMessageBoxScript()
{
    BoxScript& script = Script();
    std::lock_guard<std::mutex> lock(script.mutex);
    script.answers.clear();
    script.shown.clear();
}
