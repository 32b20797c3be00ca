#include "platform/dialog/string_box.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <cstdio>
#include <cstring>
#include <optional>

#include "platform/base/from_qt.h"
#include "platform/base/scripted_answers.h"
#include "platform/base/to_qt.h"
#include "platform/base/utf8.h"

namespace {

constexpr int kFieldWidth = 320;  // pixels: room for a path or a timecode at a glance

// A queued answer is the text typed, or nothing for a cancel.
ScriptedAnswers<std::optional<std::string>, ShownStringBox>& Script()
{
    static ScriptedAnswers<std::optional<std::string>, ShownStringBox> script;
    return script;
}

std::string TextOrEmpty(const char* text) { return text ? std::string(text) : std::string(); }

bool HaveWidgets() { return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr; }

// Runs the real box; answers the text typed, or nothing when cancelled.
std::optional<std::string> RunBox(const ShownStringBox& box)
{
    QDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(ToQString(box.title));
    auto* layout = new QVBoxLayout(&dialog);
    auto* prompt = new QLabel(ToQString(box.prompt + box.note), &dialog);
    prompt->setObjectName(QStringLiteral("prompt"));
    prompt->setWordWrap(true);
    layout->addWidget(prompt);
    auto* field = new QLineEdit(ToQString(box.start), &dialog);
    field->setObjectName(QStringLiteral("value"));
    field->setMinimumWidth(kFieldWidth);
    field->selectAll();
    layout->addWidget(field);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(buttons);
    field->setFocus(Qt::OtherFocusReason);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return FromQString(field->text());
}

}  // namespace

bool GetStringBox(char* value, const char* title, const char* prompt, const char* note)
{
    if (!value)
        return false;
    ShownStringBox box;
    box.title = TextOrEmpty(title);
    box.prompt = TextOrEmpty(prompt);
    box.note = TextOrEmpty(note);
    // The start text is the caller's row: read no further than a row holds.
    box.start.assign(value, strnlen(value, kStringBoxAnswer));

    std::optional<std::string> answer;
    if (Script().Take(&answer)) {
        box.way = StringBoxWay::kScripted;
    } else if (HaveWidgets()) {
        box.way = StringBoxWay::kShown;
        answer = RunBox(box);
    } else {
        box.way = StringBoxWay::kConsole;
        std::fprintf(stderr, "%s%s%s%s (answered cancel)\n", box.title.c_str(),
                     box.title.empty() ? "" : ": ", box.prompt.c_str(), box.note.c_str());
    }

    box.ok = answer.has_value();
    if (box.ok)
        CopyUtf8(value, answer->c_str(), kStringBoxAnswer);
    box.answer.assign(value, strnlen(value, kStringBoxAnswer));
    bool ok = box.ok;
    Script().Record(std::move(box));
    return ok;
}

void PushStringBoxAnswer(const char* text) { Script().Push(TextOrEmpty(text)); }

void PushStringBoxCancel() { Script().Push(std::nullopt); }

int CountStringBoxAnswers() { return Script().CountAnswers(); }

std::vector<ShownStringBox> TakeShownStringBoxes() { return Script().TakeRecord(); }

void ClearStringBoxScript() { Script().Clear(); }
