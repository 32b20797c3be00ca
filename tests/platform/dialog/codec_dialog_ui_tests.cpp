// The compression settings dialog with a QApplication: the real dialog answered by its own
// controls from its event loop, and scripted answers that show nothing.

#include "platform/dialog/codec_dialog.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

namespace {

std::vector<CodecDialogCodec> SomeCodecs()
{
    return {{"avc1", "H.264"}, {"mjpa", "Motion JPEG A"}, {"png ", "PNG"}, {"raw ", "None"}};
}

// How the real dialog looked when it opened.
struct SeenDialog {
    bool opened = false;
    std::string title;
    std::vector<std::string> names;
    std::string current;
    int step = -1;
    int steps = 0;
    std::string stepText;
};

// Once the dialog is open, records it and hands it to `act`, which must close it.
void WhenDialogOpens(SeenDialog* seen, std::function<void(QDialog*)> act)
{
    auto* timer = new QTimer;
    timer->setInterval(5);
    QObject::connect(timer, &QTimer::timeout, [timer, seen, act] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr || !dialog->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        seen->opened = true;
        seen->title = dialog->windowTitle().toStdString();
        auto* codec = dialog->findChild<QComboBox*>(QStringLiteral("codec"));
        auto* quality = dialog->findChild<QSlider*>(QStringLiteral("quality"));
        auto* text = dialog->findChild<QLabel*>(QStringLiteral("qualityText"));
        if (codec != nullptr) {
            for (int i = 0; i < codec->count(); ++i)
                seen->names.push_back(codec->itemText(i).toStdString());
            seen->current = codec->currentText().toStdString();
        }
        if (quality != nullptr) {
            seen->step = quality->value();
            seen->steps = quality->maximum() - quality->minimum() + 1;
        }
        if (text != nullptr)
            seen->stepText = text->text().toStdString();
        act(dialog);
    });
    timer->start();
}

void Click(QDialog* dialog, QDialogButtonBox::StandardButton which)
{
    dialog->findChild<QDialogButtonBox*>()->button(which)->click();
}

class CodecDialog : public testing::Test {
protected:
    void SetUp() override { ClearCodecDialogScript(); }
    void TearDown() override { ClearCodecDialogScript(); }
};

TEST_F(CodecDialog, ListsTheCodecsByNameAndOpensOnTheGivenSettings)
{
    SeenDialog seen;
    WhenDialogOpens(&seen, [](QDialog* dialog) { Click(dialog, QDialogButtonBox::Cancel); });
    CodecDialogSettings settings{"png ", 768};
    EXPECT_FALSE(CodecSettingsDialog(nullptr, SomeCodecs(), &settings));
    ASSERT_TRUE(seen.opened);
    EXPECT_EQ(seen.title, "Compression Settings");
    EXPECT_EQ(seen.names, (std::vector<std::string>{"H.264", "Motion JPEG A", "PNG", "None"}));
    EXPECT_EQ(seen.current, "PNG");
    EXPECT_EQ(seen.steps, 5);
    EXPECT_EQ(seen.step, 3);
    EXPECT_EQ(seen.stepText, "High");
}

TEST_F(CodecDialog, OkTakesTheChosenCodecAndQualityStep)
{
    SeenDialog seen;
    WhenDialogOpens(&seen, [](QDialog* dialog) {
        dialog->findChild<QComboBox*>(QStringLiteral("codec"))->setCurrentIndex(1);
        dialog->findChild<QSlider*>(QStringLiteral("quality"))->setValue(4);
        Click(dialog, QDialogButtonBox::Ok);
    });
    CodecDialogSettings settings{"avc1", 512};
    EXPECT_TRUE(CodecSettingsDialog(nullptr, SomeCodecs(), &settings));
    EXPECT_EQ(settings.type, "mjpa");
    EXPECT_EQ(settings.quality, 1023);
    std::vector<ShownCodecDialog> shown = TakeShownCodecDialogs();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].way, CodecDialogWay::kShown);
    EXPECT_TRUE(shown[0].ok);
    EXPECT_EQ(shown[0].offered.type, "avc1");
    EXPECT_EQ(shown[0].chosen.type, "mjpa");
    EXPECT_EQ(shown[0].chosen.quality, 1023);
}

TEST_F(CodecDialog, EveryStepOfTheSliderIsAQualityLevel)
{
    const int expected[5] = {0, 256, 512, 768, 1023};
    const char* names[5] = {"Least", "Low", "Normal", "High", "Best"};
    for (int step = 0; step < 5; ++step) {
        SeenDialog seen;
        std::string shownText;
        WhenDialogOpens(&seen, [step, &shownText](QDialog* dialog) {
            dialog->findChild<QSlider*>(QStringLiteral("quality"))->setValue(step);
            shownText =
                dialog->findChild<QLabel*>(QStringLiteral("qualityText"))->text().toStdString();
            Click(dialog, QDialogButtonBox::Ok);
        });
        CodecDialogSettings settings{"avc1", step == 2 ? 0 : 512};
        ASSERT_TRUE(CodecSettingsDialog(nullptr, SomeCodecs(), &settings));
        EXPECT_EQ(settings.quality, expected[step]);
        EXPECT_EQ(shownText, names[step]);
    }
}

TEST_F(CodecDialog, CancelLeavesTheSettingsAlone)
{
    SeenDialog seen;
    WhenDialogOpens(&seen, [](QDialog* dialog) {
        dialog->findChild<QComboBox*>(QStringLiteral("codec"))->setCurrentIndex(3);
        dialog->findChild<QSlider*>(QStringLiteral("quality"))->setValue(0);
        Click(dialog, QDialogButtonBox::Cancel);
    });
    CodecDialogSettings settings{"png ", 1023};
    EXPECT_FALSE(CodecSettingsDialog(nullptr, SomeCodecs(), &settings));
    EXPECT_EQ(settings.type, "png ");
    EXPECT_EQ(settings.quality, 1023);
    std::vector<ShownCodecDialog> shown = TakeShownCodecDialogs();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_FALSE(shown[0].ok);
    EXPECT_EQ(shown[0].chosen.type, "png ");
}

TEST_F(CodecDialog, EscapeCancels)
{
    SeenDialog seen;
    WhenDialogOpens(&seen, [](QDialog* dialog) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(dialog, &press);
    });
    CodecDialogSettings settings{"avc1", 256};
    EXPECT_FALSE(CodecSettingsDialog(nullptr, SomeCodecs(), &settings));
    EXPECT_TRUE(seen.opened);
    EXPECT_EQ(settings.type, "avc1");
    EXPECT_EQ(settings.quality, 256);
}

TEST_F(CodecDialog, QualityBetweenStepsOpensOnTheNearestStep)
{
    SeenDialog seen;
    WhenDialogOpens(&seen, [](QDialog* dialog) { Click(dialog, QDialogButtonBox::Ok); });
    CodecDialogSettings settings{"avc1", 300};
    ASSERT_TRUE(CodecSettingsDialog(nullptr, SomeCodecs(), &settings));
    EXPECT_EQ(seen.step, 1);
    EXPECT_EQ(seen.stepText, "Low");
    EXPECT_EQ(settings.quality, 256);
}

TEST_F(CodecDialog, CodecNotOfferedOpensOnTheFirst)
{
    SeenDialog seen;
    WhenDialogOpens(&seen, [](QDialog* dialog) { Click(dialog, QDialogButtonBox::Ok); });
    CodecDialogSettings settings{"xvid", 512};
    ASSERT_TRUE(CodecSettingsDialog(nullptr, SomeCodecs(), &settings));
    EXPECT_EQ(seen.current, "H.264");
    EXPECT_EQ(settings.type, "avc1");
}

TEST_F(CodecDialog, ScriptedAnswersShowNothing)
{
    bool anythingShown = false;
    QTimer probe;
    probe.setInterval(1);
    QObject::connect(&probe, &QTimer::timeout, [&anythingShown] {
        if (QApplication::activeModalWidget() != nullptr) {
            anythingShown = true;
            QApplication::activeModalWidget()->close();
        }
    });
    probe.start();
    CodecDialogAnswer answer;
    answer.type = "raw ";
    answer.quality = 0;
    PushCodecDialogAnswer(answer);
    PushCodecDialogCancel();
    EXPECT_EQ(CountCodecDialogAnswers(), 2);
    CodecDialogSettings settings{"avc1", 512};
    EXPECT_TRUE(CodecSettingsDialog(nullptr, SomeCodecs(), &settings));
    EXPECT_EQ(settings.type, "raw ");
    EXPECT_EQ(settings.quality, 0);
    EXPECT_FALSE(CodecSettingsDialog(nullptr, SomeCodecs(), &settings));
    EXPECT_EQ(settings.type, "raw ");
    EXPECT_EQ(CountCodecDialogAnswers(), 0);
    QApplication::processEvents();
    EXPECT_FALSE(anythingShown);
    std::vector<ShownCodecDialog> shown = TakeShownCodecDialogs();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0].way, CodecDialogWay::kScripted);
    EXPECT_EQ(shown[1].way, CodecDialogWay::kScripted);
    EXPECT_EQ(shown[1].offered.type, "raw ");
    EXPECT_EQ(shown[0].codecs.size(), 4u);
}

TEST_F(CodecDialog, ScriptMayChooseOnlyWhatIsOffered)
{
    CodecDialogAnswer answer;
    answer.type = "apcn";
    answer.quality = 5000;
    PushCodecDialogAnswer(answer);
    CodecDialogSettings settings{"png ", 512};
    EXPECT_TRUE(CodecSettingsDialog(nullptr, SomeCodecs(), &settings));
    EXPECT_EQ(settings.type, "png ");
    EXPECT_EQ(settings.quality, 1023);
}

TEST_F(CodecDialog, NothingToOfferAnswersFalseWithoutShowing)
{
    PushCodecDialogAnswer(CodecDialogAnswer{});
    CodecDialogSettings settings{"avc1", 512};
    EXPECT_FALSE(CodecSettingsDialog(nullptr, {}, &settings));
    EXPECT_FALSE(CodecSettingsDialog(nullptr, SomeCodecs(), nullptr));
    EXPECT_EQ(CountCodecDialogAnswers(), 1);
    EXPECT_TRUE(TakeShownCodecDialogs().empty());
}

TEST_F(CodecDialog, RecordKeepsTheLast256)
{
    for (int i = 0; i < 260; ++i)
        PushCodecDialogAnswer(CodecDialogAnswer{});
    CodecDialogSettings settings{"avc1", 512};
    for (int i = 0; i < 260; ++i)
        ASSERT_TRUE(CodecSettingsDialog(nullptr, SomeCodecs(), &settings));
    EXPECT_EQ(TakeShownCodecDialogs().size(), 256u);
    EXPECT_TRUE(TakeShownCodecDialogs().empty());
}

}  // namespace
