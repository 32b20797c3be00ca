#include "platform/dialog/codec_dialog.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>
#include <QString>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdlib>
#include <deque>
#include <mutex>

#include "platform/wnd/window_widgets.h"

namespace
{

constexpr size_t kRecordLimit = 64;
constexpr int kStepCount = 5;
const char* const kStepNames[kStepCount] = { "Least", "Low", "Normal", "High", "Best" };

struct DialogScript {
    std::mutex mutex;
    std::deque<CodecDialogAnswer> answers;
    std::deque<ShownCodecDialog> shown;
};

DialogScript& Script()
{
    static DialogScript script;
    return script;
}

bool TakeScriptedAnswer(CodecDialogAnswer* answer)
{
    DialogScript& script = Script();
    std::lock_guard<std::mutex> lock(script.mutex);
    if (script.answers.empty())
        return false;
    *answer = script.answers.front();
    script.answers.pop_front();
    return true;
}

void Record(ShownCodecDialog dialog)
{
    DialogScript& script = Script();
    std::lock_guard<std::mutex> lock(script.mutex);
    script.shown.push_back(std::move(dialog));
    while (script.shown.size() > kRecordLimit)
        script.shown.pop_front();
}

bool HaveWidgets()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
}

// The slider step nearest to a spatial quality.
int StepOf(int quality)
{
    int best = 0;
    for (int step = 1; step < kStepCount; ++step) {
        if (std::abs(kCodecQualitySteps[step] - quality) < std::abs(kCodecQualitySteps[best] - quality))
            best = step;
    }
    return best;
}

// The codec the dialog opens on: the one asked for when offered, else the first.
std::string OfferedType(const std::vector<CodecDialogCodec>& codecs, const std::string& type)
{
    for (const CodecDialogCodec& codec : codecs) {
        if (codec.type == type)
            return type;
    }
    return codecs.front().type;
}

bool IsOffered(const std::vector<CodecDialogCodec>& codecs, const std::string& type)
{
    return std::any_of(
        codecs.begin(), codecs.end(), [&type](const CodecDialogCodec& codec) { return codec.type == type; });
}

// The real dialog, modal over `parent`. True on OK, with the choice in `chosen`.
bool RunDialog(QWidget* parent, const std::vector<CodecDialogCodec>& codecs,
    const CodecDialogSettings& offered, CodecDialogSettings* chosen)
{
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("codecDialog"));
    dialog.setWindowTitle(QStringLiteral("Compression Settings"));

    auto* codecBox = new QComboBox(&dialog);
    codecBox->setObjectName(QStringLiteral("codec"));
    for (const CodecDialogCodec& codec : codecs)
        codecBox->addItem(QString::fromUtf8(codec.name.c_str()), QString::fromUtf8(codec.type.c_str()));
    codecBox->setCurrentIndex(std::max(0, codecBox->findData(QString::fromUtf8(offered.type.c_str()))));

    auto* slider = new QSlider(Qt::Horizontal, &dialog);
    slider->setObjectName(QStringLiteral("quality"));
    slider->setRange(0, kStepCount - 1);
    slider->setPageStep(1);
    slider->setTickPosition(QSlider::TicksBelow);
    slider->setTickInterval(1);
    slider->setValue(StepOf(offered.quality));
    auto* stepText = new QLabel(&dialog);
    stepText->setObjectName(QStringLiteral("qualityText"));
    stepText->setMinimumWidth(stepText->fontMetrics().horizontalAdvance(QStringLiteral("Normal")) + 8);
    auto showStep = [stepText](int step) { stepText->setText(QString::fromLatin1(kStepNames[step])); };
    showStep(slider->value());
    QObject::connect(slider, &QSlider::valueChanged, &dialog, showStep);

    auto* qualityRow = new QHBoxLayout;
    qualityRow->addWidget(slider, 1);
    qualityRow->addWidget(stepText);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Compressor:"), codecBox);
    form->addRow(QStringLiteral("Quality:"), qualityRow);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);

    auto* layout = new QVBoxLayout(&dialog);
    layout->addLayout(form);
    layout->addWidget(buttons);

    if (dialog.exec() != QDialog::Accepted)
        return false;
    chosen->type = codecBox->currentData().toString().toStdString();
    chosen->quality = kCodecQualitySteps[std::clamp(slider->value(), 0, kStepCount - 1)];
    return true;
}

} // namespace

bool CodecSettingsDialog(
    CPWnd* owner, const std::vector<CodecDialogCodec>& codecs, CodecDialogSettings* settings)
{
    if (settings == nullptr || codecs.empty())
        return false;
    ShownCodecDialog dialog;
    dialog.codecs = codecs;
    dialog.offered.type = OfferedType(codecs, settings->type);
    dialog.offered.quality = std::clamp(settings->quality, 0, 1023);
    dialog.chosen = dialog.offered;

    CodecDialogAnswer answer;
    if (TakeScriptedAnswer(&answer)) {
        dialog.way = CodecDialogWay::kScripted;
        dialog.ok = answer.ok;
        if (answer.ok) {
            // A script may only choose what the dialog offers, as a user could.
            if (!answer.type.empty() && IsOffered(codecs, answer.type))
                dialog.chosen.type = answer.type;
            if (answer.quality >= 0)
                dialog.chosen.quality = std::clamp(answer.quality, 0, 1023);
        }
    } else if (HaveWidgets()) {
        dialog.way = CodecDialogWay::kShown;
        QWidget* parent = owner != nullptr ? GetFrameWidget(owner) : QApplication::activeWindow();
        dialog.ok = RunDialog(parent, codecs, dialog.offered, &dialog.chosen);
    } else {
        dialog.way = CodecDialogWay::kConsole;
        dialog.ok = true;
    }
    if (!dialog.ok)
        dialog.chosen = dialog.offered;
    else
        *settings = dialog.chosen;
    bool ok = dialog.ok;
    Record(std::move(dialog));
    return ok;
}

void PushCodecDialogAnswer(const CodecDialogAnswer& answer)
{
    DialogScript& script = Script();
    std::lock_guard<std::mutex> lock(script.mutex);
    script.answers.push_back(answer);
}

void PushCodecDialogCancel()
{
    CodecDialogAnswer answer;
    answer.ok = false;
    PushCodecDialogAnswer(answer);
}

int CountCodecDialogAnswers()
{
    DialogScript& script = Script();
    std::lock_guard<std::mutex> lock(script.mutex);
    return static_cast<int>(script.answers.size());
}

std::vector<ShownCodecDialog> TakeShownCodecDialogs()
{
    DialogScript& script = Script();
    std::lock_guard<std::mutex> lock(script.mutex);
    std::vector<ShownCodecDialog> dialogs(script.shown.begin(), script.shown.end());
    script.shown.clear();
    return dialogs;
}

void ClearCodecDialogScript()
{
    DialogScript& script = Script();
    std::lock_guard<std::mutex> lock(script.mutex);
    script.answers.clear();
    script.shown.clear();
}
