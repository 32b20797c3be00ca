// The real dialogs, driven from a timer the way a user would answer them. A watchdog rejects any
// dialog still open after a few seconds, so a failure here never hangs the run.

#include "platform/file/file_dialog.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>
#include <cstring>
#include <functional>
#include <string>

#include "support/temp_dir.h"

namespace {

class RealFileDialog : public testing::Test {
protected:
    void SetUp() override { ClearFileDialogScript(); }
    void TearDown() override { ClearFileDialogScript(); }
};

// Calls `answer` with the file dialog once it is on screen; rejects it after 5 s regardless.
void AnswerWhenShown(std::function<void(QFileDialog*)> answer)
{
    auto* poll = new QTimer;
    auto* clock = new QElapsedTimer;
    clock->start();
    QObject::connect(poll, &QTimer::timeout, [poll, clock, answer] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dialog) {
            if (clock->elapsed() > 5000) {
                poll->deleteLater();
                delete clock;
            }
            return;
        }
        poll->stop();
        poll->deleteLater();
        bool late = clock->elapsed() > 5000;
        delete clock;
        if (late)
            dialog->reject();
        else
            answer(dialog);
        // Whatever the answer did, the dialog must not stay open.
        QTimer::singleShot(5000, dialog, [dialog] { dialog->reject(); });
    });
    poll->start(10);
}

FSpec PathSpec(const std::string& path)
{
    FSpec spec{};
    spec.vRefNum = kPathFormMarker;
    spec.parID = kPathFormMarker;
    std::strncpy(spec.name, path.c_str(), sizeof spec.name - 1);
    return spec;
}

}  // namespace

TEST_F(RealFileDialog, OpenReturnsTheChosenFileInPathForm)
{
    pxtest::TempDir dir;
    std::string path = dir.File("sunset.tga");
    ASSERT_TRUE(pxtest::WriteText(path, "x"));
    FSpec initial = PathSpec(dir.Path());
    QString seenDirectory;
    bool wasSingle = false;
    AnswerWhenShown([&](QFileDialog* dialog) {
        seenDirectory = dialog->directory().absolutePath();
        wasSingle = dialog->fileMode() == QFileDialog::ExistingFile;
        dialog->selectFile(QStringLiteral("sunset.tga"));
        static_cast<QDialog*>(dialog)->accept();  // QFileDialog keeps accept() protected
    });
    FSpec result{};
    ASSERT_TRUE(
        OpenFileDialog(nullptr, &result, "Targa Files (*.tga)|*.tga|", ".tga", &initial, false));
    EXPECT_TRUE(IsPathForm(result));
    EXPECT_EQ(std::string(result.name), path);
    EXPECT_EQ(seenDirectory.toStdString(), dir.Path());
    EXPECT_TRUE(wasSingle);
}

TEST_F(RealFileDialog, OpenOffersTheCallersFilters)
{
    QStringList seen;
    AnswerWhenShown([&](QFileDialog* dialog) {
        seen = dialog->nameFilters();
        dialog->reject();
    });
    FSpec result{};
    EXPECT_FALSE(OpenFileDialog(nullptr, &result, "BMP Files (*.bmp)|*.bmp|All Files (*.*)|*.*|",
                                ".bmp", nullptr, false));
    ASSERT_EQ(seen.size(), 2);
    EXPECT_EQ(seen[0].toStdString(), "BMP Files (*.bmp)");
    EXPECT_EQ(seen[1].toStdString(), "All Files (*)");
}

TEST_F(RealFileDialog, MultipleLetsSeveralFilesBeChosen)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(pxtest::WriteText(dir.File("a.bmp"), "a"));
    ASSERT_TRUE(pxtest::WriteText(dir.File("b.bmp"), "b"));
    FSpec initial = PathSpec(dir.Path());
    bool wasMultiple = false;
    AnswerWhenShown([&](QFileDialog* dialog) {
        wasMultiple = dialog->fileMode() == QFileDialog::ExistingFiles;
        auto* edit = dialog->findChild<QLineEdit*>();
        if (edit)
            edit->setText(QStringLiteral("\"a.bmp\" \"b.bmp\""));
        static_cast<QDialog*>(dialog)->accept();  // QFileDialog keeps accept() protected
    });
    FSpec results[4] = {};
    ASSERT_TRUE(OpenFileDialog(nullptr, results, "", "", &initial, true, 4));
    EXPECT_TRUE(wasMultiple);
    std::string first = results[0].name;
    std::string second = results[1].name;
    EXPECT_TRUE((first == dir.File("a.bmp") && second == dir.File("b.bmp")) ||
                (first == dir.File("b.bmp") && second == dir.File("a.bmp")))
        << first << " / " << second;
    EXPECT_TRUE(IsPathForm(results[1]));
    EXPECT_EQ(results[2].name[0], 0);
}

TEST_F(RealFileDialog, CancelLeavesTheResultAlone)
{
    AnswerWhenShown([](QFileDialog* dialog) { dialog->reject(); });
    FSpec result = PathSpec("/unchanged");
    EXPECT_FALSE(OpenFileDialog(nullptr, &result, "", "", nullptr, false));
    EXPECT_STREQ(result.name, "/unchanged");
}

TEST_F(RealFileDialog, SaveProposesUntitledAndAddsTheDefaultExtension)
{
    pxtest::TempDir dir;
    FSpec initial = PathSpec(dir.Path());
    QString proposed;
    bool wasSave = false;
    AnswerWhenShown([&](QFileDialog* dialog) {
        wasSave = dialog->acceptMode() == QFileDialog::AcceptSave;
        auto* edit = dialog->findChild<QLineEdit*>();
        if (edit)
            proposed = edit->text();
        static_cast<QDialog*>(dialog)->accept();  // QFileDialog keeps accept() protected
    });
    FSpec spec{};
    ASSERT_TRUE(
        SaveFileDialog(nullptr, &spec, "Parallaxotron Files (*.plx)|*.plx|", ".plx", &initial));
    EXPECT_TRUE(wasSave);
    EXPECT_EQ(proposed.toStdString(), "Untitled");
    EXPECT_TRUE(IsPathForm(spec));
    EXPECT_EQ(std::string(spec.name), dir.File("Untitled.plx"));
    EXPECT_FALSE(pxtest::FileExists(dir.File("Untitled.plx")));
}

TEST_F(RealFileDialog, ScriptedAnswerShowsNoDialog)
{
    bool shown = false;
    QTimer probe;
    QObject::connect(&probe, &QTimer::timeout, [&shown] {
        if (QApplication::activeModalWidget()) {
            shown = true;
            QApplication::activeModalWidget()->close();
        }
    });
    probe.start(1);
    PushFileDialogAnswer("/scripted/answer.plx");
    FSpec result{};
    ASSERT_TRUE(OpenFileDialog(nullptr, &result, "", "", nullptr, false));
    QApplication::processEvents();
    EXPECT_FALSE(shown);
    EXPECT_STREQ(result.name, "/scripted/answer.plx");
}
