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

#include "platform/base/from_qt.h"
#include "platform/base/scripted_answers.h"
#include "platform/base/to_qt.h"
#include "platform/wnd/window_widgets_qt.h"

namespace {

constexpr int kStepCount = 5;
const char* const kStepNames[kStepCount] = {"Least", "Low", "Normal", "High", "Best"};

ScriptedAnswers<CodecDialogAnswer, ShownCodecDialog>& Script()
{
    static ScriptedAnswers<CodecDialogAnswer, ShownCodecDialog> script;
    return script;
}

bool HaveWidgets() { return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr; }

// The slider step nearest to a spatial quality.
int StepOf(int quality)
{
    int best = 0;
    for (int step = 1; step < kStepCount; ++step) {
        if (std::abs(kCodecQualitySteps[step] - quality) <
            std::abs(kCodecQualitySteps[best] - quality))
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
    return std::any_of(codecs.begin(), codecs.end(),
                       [&type](const CodecDialogCodec& codec) { return codec.type == type; });
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
        codecBox->addItem(ToQString(codec.name), ToQString(codec.type));
    codecBox->setCurrentIndex(std::max(0, codecBox->findData(ToQString(offered.type))));

    auto* slider = new QSlider(Qt::Horizontal, &dialog);
    slider->setObjectName(QStringLiteral("quality"));
    slider->setRange(0, kStepCount - 1);
    slider->setPageStep(1);
    slider->setTickPosition(QSlider::TicksBelow);
    slider->setTickInterval(1);
    slider->setValue(StepOf(offered.quality));
    auto* stepText = new QLabel(&dialog);
    stepText->setObjectName(QStringLiteral("qualityText"));
    stepText->setMinimumWidth(stepText->fontMetrics().horizontalAdvance(QStringLiteral("Normal")) +
                              8);
    auto showStep = [stepText](int step) {
        stepText->setText(QString::fromLatin1(kStepNames[step]));
    };
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
    chosen->type = FromQString(codecBox->currentData().toString());
    chosen->quality = kCodecQualitySteps[std::clamp(slider->value(), 0, kStepCount - 1)];
    return true;
}

}  // namespace

bool CodecSettingsDialog(CPWnd* owner, const std::vector<CodecDialogCodec>& codecs,
                         CodecDialogSettings* settings)
{
    if (settings == nullptr || codecs.empty())
        return false;
    ShownCodecDialog dialog;
    dialog.codecs = codecs;
    dialog.offered.type = OfferedType(codecs, settings->type);
    dialog.offered.quality = std::clamp(settings->quality, 0, 1023);
    dialog.chosen = dialog.offered;

    CodecDialogAnswer answer;
    if (Script().Take(&answer)) {
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
    Script().Record(std::move(dialog));
    return ok;
}

void PushCodecDialogAnswer(const CodecDialogAnswer& answer) { Script().Push(answer); }

void PushCodecDialogCancel()
{
    CodecDialogAnswer answer;
    answer.ok = false;
    PushCodecDialogAnswer(answer);
}

int CountCodecDialogAnswers() { return Script().CountAnswers(); }

std::vector<ShownCodecDialog> TakeShownCodecDialogs() { return Script().TakeRecord(); }

void ClearCodecDialogScript() { Script().Clear(); }
