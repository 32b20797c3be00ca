#include "platform/dialog/string_box.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <cstdio>
#include <cstring>
#include <deque>
#include <optional>

namespace {

constexpr size_t kRecordLimit = 256;
constexpr int kFieldWidth = 320;  // pixels: room for a path or a timecode at a glance

struct BoxScript {
    std::deque<std::optional<std::string>> answers;  // empty: a cancel
    std::deque<ShownStringBox> shown;
};

BoxScript& Script()
{
    static BoxScript script;
    return script;
}

std::string TextOrEmpty(const char* text) { return text ? std::string(text) : std::string(); }

// Copies at most 63 bytes of UTF-8 text into `out`, never ending inside a character.
void CopyAnswer(char* out, const std::string& text)
{
    size_t length = text.size();
    if (length > size_t(kStringBoxAnswer)) {
        length = kStringBoxAnswer;
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
            --length;
    }
    std::memcpy(out, text.data(), length);
    out[length] = 0;
}

bool HaveWidgets()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
}

// Runs the real box; answers the text typed, or nothing when cancelled.
std::optional<std::string> RunBox(const ShownStringBox& box)
{
    QDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(QString::fromUtf8(box.title.c_str()));
    auto* layout = new QVBoxLayout(&dialog);
    auto* prompt = new QLabel(QString::fromUtf8((box.prompt + box.note).c_str()), &dialog);
    prompt->setObjectName(QStringLiteral("prompt"));
    prompt->setWordWrap(true);
    layout->addWidget(prompt);
    auto* field = new QLineEdit(QString::fromUtf8(box.start.c_str()), &dialog);
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
    return field->text().toUtf8().toStdString();
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
    BoxScript& script = Script();
    if (!script.answers.empty()) {
        box.way = StringBoxWay::kScripted;
        answer = script.answers.front();
        script.answers.pop_front();
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
        CopyAnswer(value, *answer);
    box.answer.assign(value, strnlen(value, kStringBoxAnswer));
    script.shown.push_back(std::move(box));
    while (script.shown.size() > kRecordLimit)
        script.shown.pop_front();
    return answer.has_value();
}

void PushStringBoxAnswer(const char* text) { Script().answers.push_back(TextOrEmpty(text)); }

void PushStringBoxCancel() { Script().answers.push_back(std::nullopt); }

int CountStringBoxAnswers() { return static_cast<int>(Script().answers.size()); }

std::vector<ShownStringBox> TakeShownStringBoxes()
{
    BoxScript& script = Script();
    std::vector<ShownStringBox> boxes(script.shown.begin(), script.shown.end());
    script.shown.clear();
    return boxes;
}

void ClearStringBoxScript()
{
    Script().answers.clear();
    Script().shown.clear();
}
