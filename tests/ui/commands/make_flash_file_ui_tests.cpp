// The Flash export command in the editor: its options dialog and their settings, the file
// dialog, the export and its messages.

#include "ui/commands/make_flash_file.h"

#include <gtest/gtest.h>
#include <QImage>
#include <QKeyEvent>
#include <QPixmap>
#include <QTimer>
#include <string>

#include "output/ffmpeg_movie.h"
#include "support/editor_fixture.h"
#include "ui/commands/render_progress_window.h"
#include "ui/viewer/cview.h"

namespace {

using pxtest::kDemoShow;

// The options dialog and the export after it: a slow machine or the sanitizer build takes
// seconds for the export.
constexpr int kExportLimitMs = 60000;

using pxtest::RowText;

class MakeFlashFile : public pxtest::Editor {
protected:
    // A small, slow export of the demo show, so each test writes little.
    void StartDemo(const std::string& settings = "")
    {
        Start("MovieWid=64\r\nMovieHgt=48\r\n" + settings);
        ASSERT_TRUE(OpenShow(kDemoShow));
    }
    static std::vector<ShownMessageBox> Boxes() { return TakeShownMessageBoxes(); }
};

TEST_F(MakeFlashFile, WithNoSettingsTheDialogShowsColourZeroRateThirtyQualitySeventyFive)
{
    Start();
    FlashOptionsLists lists = MakeFlashOptionsDialog();
    EXPECT_EQ(RowText(lists.descriptions, kFlashRowColour), "@LBackGround Color");
    EXPECT_EQ(RowText(lists.descriptions, kFlashRowRate), "SWF Output FrameRate");
    EXPECT_EQ(RowText(lists.descriptions, kFlashRowQuality), "@SQuality");
    EXPECT_EQ(RowText(lists.values, kFlashRowColour), "0");
    EXPECT_EQ(RowText(lists.values, kFlashRowRate), "30");
    EXPECT_EQ(RowText(lists.values, kFlashRowQuality), "75");
}

TEST_F(MakeFlashFile, StoredComponentsMakeTheColourFromTheirLowBytes)
{
    Start("FlashRed=86\r\nFlashGreen=308\r\nFlashBlue=18\r\nFlashFPS=12\r\nFlashQuality=40\r\n");
    FlashOptionsLists lists = MakeFlashOptionsDialog();
    EXPECT_EQ(RowText(lists.values, kFlashRowColour), "1193046");
    EXPECT_EQ(RowText(lists.values, kFlashRowRate), "12");
    EXPECT_EQ(RowText(lists.values, kFlashRowQuality), "40");
}

TEST_F(MakeFlashFile, ColourOf1193046IsStoredAsRed86Green52Blue18)
{
    Start();
    FlashOptionsLists lists = MakeFlashOptionsDialog();
    SetDialogValue(lists.values, kFlashRowColour, "1193046");
    StoreFlashOptions(lists);
    EXPECT_EQ(Setting("FlashRed"), "86");
    EXPECT_EQ(Setting("FlashGreen"), "52");
    EXPECT_EQ(Setting("FlashBlue"), "18");
    EXPECT_EQ(Setting("FlashFPS"), "30");
    EXPECT_EQ(Setting("FlashQuality"), "75");
}

TEST_F(MakeFlashFile, NumbersThatAreNotNumbersReadAsZero)
{
    Start();
    FlashOptionsLists lists = MakeFlashOptionsDialog();
    SetDialogValue(lists.values, kFlashRowRate, "fast");
    SetDialogValue(lists.values, kFlashRowQuality, "");
    FlashChoice choice = ReadFlashOptionsDialog(lists);
    EXPECT_EQ(choice.framesPerSecond, 0);
    EXPECT_EQ(choice.quality, 0);
}

TEST_F(MakeFlashFile, ExportEndsWithSuccessAndAnSwfFile)
{
    StartDemo("FlashFPS=3\r\nFlashRed=86\r\nFlashGreen=52\r\nFlashBlue=18\r\n");
    std::string path = dir.File("show.swf");
    PushFileDialogAnswer(path.c_str());
    PushMessageBoxAnswer(kBoxYes);
    PostReturn(EditorDialogOwner());
    bool made = false;
    RunAnswered([&made] { made = pMain->MakeFlashFile(); }, kExportLimitMs);
    EXPECT_TRUE(made);
    std::vector<ShownMessageBox> boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "Flash file successfully made");
    EXPECT_EQ(boxes[0].shownText, "Flash file successfully made");
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts));
    EXPECT_EQ(facts.container, "swf");
    EXPECT_EQ(facts.width, 64);
    EXPECT_GT(facts.packets, 0);
    FileDialogRequest request = GetLastFileDialogRequest();
    EXPECT_TRUE(request.save);
    EXPECT_EQ(request.defaultSuffix, "swf");
    ASSERT_FALSE(request.nameFilters.empty());
    EXPECT_EQ(request.nameFilters[0], "Macromedia Flash Files (*.swf)");
    EXPECT_EQ(Setting("FlashRed"), "86");
    EXPECT_EQ(Setting("FlashFPS"), "3");
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(MakeFlashFile, EscDuringTheExportEndsItWithTheFramesMadeSoFarUnderTheProgressPanel)
{
    StartDemo("FlashFPS=30\r\n");
    long allFrames = ShowEnd(*pDoc);
    ASSERT_GT(allFrames, 60);
    std::string path = dir.File("stopped.swf");
    PushFileDialogAnswer(path.c_str());
    PushMessageBoxAnswer(kBoxYes);
    PostReturn(EditorDialogOwner());
    // Once the export is a few frames in, the panel is on the stage and a real Esc key press
    // reaches the stage.
    tagRECT client;
    pStage->GetClientRect(client);
    tagRECT panel = MakeProgressPanelLayout(client).panel;
    long pressedAt = -1;
    bool panelShown = false;
    QTimer typist;
    QObject::connect(&typist, &QTimer::timeout, [&] {
        if (pressedAt >= 0 || gCurFrame < 6 || CountFileDialogAnswers() != 0)
            return;
        pressedAt = gCurFrame;
        QImage stage = Content(pStage)->grab().toImage();
        panelShown = stage.pixel(panel.left + 3, panel.top + 3) == qRgb(255, 255, 255);
        TypeEscape(pStage);
    });
    typist.start(1);
    bool made = false;
    RunAnswered([&made] { made = pMain->MakeFlashFile(); }, kExportLimitMs);
    typist.stop();
    ASSERT_GE(pressedAt, 6);
    EXPECT_TRUE(panelShown);
    EXPECT_TRUE(made);
    EXPECT_EQ(BoxTexts(), std::vector<std::string>{": Flash file successfully made"});
    // The file is finished with the frames made before the key (the frame being started when it
    // came at most), not the whole show.
    FFMovieFacts facts;
    ASSERT_TRUE(FFProbeMovieFile(path.c_str(), &facts));
    EXPECT_GE(facts.packets, pressedAt);
    EXPECT_LE(facts.packets, pressedAt + 1);
    EXPECT_LT(facts.packets, allFrames);
}

TEST_F(MakeFlashFile, FailedExportSaysSoAndTheSettingsAreSavedAnyway)
{
    StartDemo("FlashFPS=3\r\n");
    std::string path = dir.File("no/such/folder/show.swf");
    PushFileDialogAnswer(path.c_str());
    PushMessageBoxAnswer(kBoxYes);
    PostReturn(EditorDialogOwner());
    bool made = true;
    RunAnswered([&made] { made = pMain->MakeFlashFile(); });
    EXPECT_FALSE(made);
    std::vector<ShownMessageBox> boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "Error making movie!");
    EXPECT_EQ(boxes[0].code, kNoErrorNumber);
    EXPECT_EQ(Setting("FlashRed"), "0");
    EXPECT_EQ(Setting("FlashGreen"), "0");
    EXPECT_EQ(Setting("FlashBlue"), "0");
    EXPECT_EQ(Setting("FlashFPS"), "3");
    EXPECT_EQ(Setting("FlashQuality"), "75");
    EXPECT_FALSE(pxtest::FileExists(path));
}

TEST_F(MakeFlashFile, RateOfZeroFailsTheExportAndIsStored)
{
    StartDemo("FlashFPS=none\r\n");
    PushFileDialogAnswer(dir.File("zero.swf").c_str());
    PushMessageBoxAnswer(kBoxYes);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { PostAMessage(pMain, kMsgCommand, kMakeFlashFileCommand, 0); });
    std::vector<ShownMessageBox> boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "Error making movie!");
    EXPECT_EQ(Setting("FlashFPS"), "none");
}

TEST_F(MakeFlashFile, OptionsDialogIsDrawnOverTheStage)
{
    StartDemo();
    EXPECT_TRUE(ShownOverTheStage([] { pMain->MakeFlashFile(); }));
}

TEST_F(MakeFlashFile, CancelledOptionsStoreNothingAndAskForNoFile)
{
    StartDemo();
    PostEscape(EditorDialogOwner());
    bool made = true;
    RunAnswered([&made] { made = pMain->MakeFlashFile(); });
    EXPECT_FALSE(made);
    EXPECT_EQ(Setting("FlashFPS"), "?");
    EXPECT_EQ(CountFileDialogRequests(), 0);
    EXPECT_TRUE(Boxes().empty());
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(MakeFlashFile, CancelledFileDialogStoresTheOptionsAndMakesNothing)
{
    StartDemo();
    PushFileDialogCancel();
    PostReturn(EditorDialogOwner());
    bool made = true;
    RunAnswered([&made] { made = pMain->MakeFlashFile(); });
    EXPECT_FALSE(made);
    EXPECT_EQ(Setting("FlashFPS"), "30");
    EXPECT_TRUE(Boxes().empty());
    EXPECT_TRUE(pViewer->IsVisible());
}

}  // namespace
