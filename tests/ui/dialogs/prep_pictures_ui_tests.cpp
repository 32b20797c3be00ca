// "Prep Pictures" in the editor: its rows, how the rows read back, Cancel and OK, and pictures
// prepared through it against the picture loader's own preparation, in the viewer and in a movie.

#include "ui/dialogs/prep_pictures.h"

#include <gtest/gtest.h>
#include <cstring>
#include <string>

#include "output/movie.h"
#include "output/render_driver.h"
#include "support/editor_fixture.h"
#include "ui/viewer/cview.h"

namespace {

using pxtest::kDemoShow;

PrepPicturesLists RowsWith(const PrepValues& values) { return MakePrepPicturesDialog(values); }

using pxtest::RowText;

TEST(PrepPicturesRows, DescribeTheDialogInOrder)
{
    PrepPicturesLists lists = RowsWith(PrepValues{});
    const char* expected[kPrepPicturesRows] = {
        "@CVideo Safe Color",           "@CPre-Blur",   "@SBorder Size %",
        "@LBorder/Tint Color",          "@SContrast",   "@SBrightness",
        "@RColor Mode|Normal / Border", "@RImage Tint", "@CIgnore Alpha Channel",
    };
    for (int row = 0; row < kPrepPicturesRows; ++row)
        EXPECT_EQ(RowText(lists.descriptions, row), expected[row]);
}

TEST(PrepPicturesRows, ShowTheValues)
{
    PrepValues values;
    values.videoColors = true;
    values.preBlur = 0;
    values.border = 12;
    values.matteColor = 1193046;
    values.showWord = 60 | (45 << 8);
    values.ignoreAlpha = false;
    PrepPicturesLists lists = RowsWith(values);
    EXPECT_EQ(RowText(lists.values, kPrepRowVideoSafe), "1");
    EXPECT_EQ(RowText(lists.values, kPrepRowPreBlur), "");
    EXPECT_EQ(RowText(lists.values, kPrepRowBorder), "12");
    EXPECT_EQ(RowText(lists.values, kPrepRowColour), "1193046");
    EXPECT_EQ(RowText(lists.values, kPrepRowContrast), "60");
    EXPECT_EQ(RowText(lists.values, kPrepRowBrightness), "45");
    EXPECT_EQ(RowText(lists.values, kPrepRowBorderMode), "1");
    EXPECT_EQ(RowText(lists.values, kPrepRowTint), "");
    EXPECT_EQ(RowText(lists.values, kPrepRowIgnoreAlpha), "");
}

TEST(PrepPicturesRows, NegativeBorderSelectsImageTint)
{
    PrepValues values;
    values.border = -1;
    PrepPicturesLists lists = RowsWith(values);
    EXPECT_EQ(RowText(lists.values, kPrepRowBorderMode), "");
    EXPECT_EQ(RowText(lists.values, kPrepRowTint), "1");
}

TEST(PrepPicturesRows, MinusTwentyInBorderModeYieldsTwenty)
{
    PrepPicturesLists lists = RowsWith(PrepValues{});
    SetDialogValue(lists.values, kPrepRowBorder, "-20");
    EXPECT_EQ(ReadPrepPicturesDialog(lists).border, 20);
}

TEST(PrepPicturesRows, ImageTintStoresMinusOneWhateverWasTyped)
{
    PrepPicturesLists lists = RowsWith(PrepValues{});
    SetDialogValue(lists.values, kPrepRowBorderMode, "");
    SetDialogValue(lists.values, kPrepRowTint, "1");
    for (const char* typed : {"35", "-20", "0", "abc"}) {
        SetDialogValue(lists.values, kPrepRowBorder, typed);
        EXPECT_EQ(ReadPrepPicturesDialog(lists).border, -1) << typed;
    }
}

TEST(PrepPicturesRows, ContrastOfThreeHundredIsCutToItsLowByte)
{
    PrepPicturesLists lists = RowsWith(PrepValues{});
    SetDialogValue(lists.values, kPrepRowContrast, "300");
    SetDialogValue(lists.values, kPrepRowBrightness, "50");
    PrepValues read = ReadPrepPicturesDialog(lists);
    EXPECT_EQ(read.showWord & 0xFF, 44);
    EXPECT_EQ(read.showWord >> 8, 50);
}

TEST(PrepPicturesRows, ReadBackWhatTheyShow)
{
    PrepValues values;
    values.videoColors = false;
    values.preBlur = 1;
    values.border = 7;
    values.matteColor = 255;
    values.showWord = 30 | (70 << 8);
    values.ignoreAlpha = true;
    PrepValues read = ReadPrepPicturesDialog(RowsWith(values));
    EXPECT_EQ(read.videoColors, values.videoColors);
    EXPECT_EQ(read.preBlur, values.preBlur);
    EXPECT_EQ(read.border, values.border);
    EXPECT_EQ(read.matteColor, values.matteColor);
    EXPECT_EQ(read.showWord, values.showWord);
    EXPECT_EQ(read.ignoreAlpha, values.ignoreAlpha);
}

class PrepPictures : public pxtest::Editor {
protected:
    void StartDemo()
    {
        Start("VideoColors=0\r\n");
        ASSERT_TRUE(OpenShow(kDemoShow));
        ASSERT_NE(pViewer, nullptr);
        pDoc->blurFrames = 0;
    }
    static void ClickPrepRow(int row)
    {
        ClickRow(kPrepPicturesRows, RowsWith(PrepValuesOf(*pDoc)).descriptions, row);
    }
    static bool SameKeys(const CDoc& a, const CDoc& b)
    {
        return std::memcmp(a.keys, b.keys, sizeof a.keys) == 0 &&
               std::memcmp(a.keyCount, b.keyCount, sizeof a.keyCount) == 0;
    }
};

TEST_F(PrepPictures, DialogIsDrawnOverTheStage)
{
    StartDemo();
    EXPECT_TRUE(ShownOverTheStage([] { pMain->ImagePrep(); }));
}

TEST_F(PrepPictures, CancelLeavesEveryValueAsBeforeAndReloadsNothing)
{
    StartDemo();
    PrepValues before = PrepValuesOf(*pDoc);
    int loads = pDoc->pictureFileLoads;
    ClickPrepRow(kPrepRowTint);
    ClickPrepRow(kPrepRowPreBlur);
    ClickPrepRow(kPrepRowVideoSafe);
    PostEscape(EditorDialogOwner());
    RunAnswered([] { pMain->ImagePrep(); });
    PrepValues after = PrepValuesOf(*pDoc);
    EXPECT_EQ(after.border, before.border);
    EXPECT_EQ(after.preBlur, before.preBlur);
    EXPECT_EQ(after.videoColors, before.videoColors);
    EXPECT_EQ(after.showWord, before.showWord);
    EXPECT_EQ(after.matteColor, before.matteColor);
    EXPECT_EQ(after.ignoreAlpha, before.ignoreAlpha);
    EXPECT_EQ(pDoc->pictureFileLoads, loads);
    EXPECT_EQ(Setting("PreBlur"), "?");
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(PrepPictures, OkSetsTheValuesReloadsEveryPictureAndKeepsTheKeys)
{
    StartDemo();
    CDoc* doc = pDoc;
    // A picture of one key gets its first key afresh when it is loaded; not here.
    doc->keyCount[0] = 1;
    doc->keys[0][0].Width = 123.0f;
    doc->keys[0][0].XPos = 77.0f;
    auto keysBefore = std::make_unique<CDoc>();
    std::memcpy(keysBefore->keys, doc->keys, sizeof doc->keys);
    std::memcpy(keysBefore->keyCount, doc->keyCount, sizeof doc->keyCount);
    int loads = doc->pictureFileLoads;
    gCurFrame = 40;
    ClickPrepRow(kPrepRowTint);
    ClickPrepRow(kPrepRowPreBlur);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { pMain->ImagePrep(); });
    EXPECT_EQ(doc->border, -1);
    EXPECT_EQ(doc->preBlur, 1);
    EXPECT_GE(doc->pictureFileLoads, loads + doc->picCount);
    EXPECT_TRUE(SameKeys(*doc, *keysBefore));
    EXPECT_EQ(gCurFrame, 0);
    EXPECT_EQ(Setting("PreBlur"), "1");
    EXPECT_EQ(Setting("VideoColors"), "0");
    EXPECT_EQ(Setting("IgnoreAlpha"), "1");
    EXPECT_EQ(Setting("MatteColor"), "0");
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(PrepPictures, CommandOpensTheDialog)
{
    StartDemo();
    ClickPrepRow(kPrepRowPreBlur);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { PostAMessage(pMain, kMsgCommand, kPrepPicturesCommand, 0); });
    EXPECT_EQ(pDoc->preBlur, 1);
}

// The preparation chosen in the dialog against a document that loads the same picture with the
// same values from the start: the picture, the viewer's frame and a movie's frame, byte for
// byte.
class PreparedPicture : public PrepPictures, public testing::WithParamInterface<PrepValues> {};

TEST_P(PreparedPicture, RendersInTheViewerAndInAMovieAsTheLoaderPreparesIt)
{
    StartDemo();
    const PrepValues& chosen = GetParam();
    // The values are put in the document while the pictures are still prepared the old way;
    // OK takes them from the rows and loads every picture again.
    SetPrepValues(*pDoc, chosen);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { pMain->ImagePrep(); });
    ASSERT_EQ(pDoc->curPic, 0);

    CDoc fresh;
    SetPrepValues(fresh, chosen);
    std::memcpy(fresh.altImageFolder, pDoc->altImageFolder, sizeof fresh.altImageFolder);
    FSpec first = pDoc->picSpec[0];
    fresh.LoadPicture(&first, 0, 0);
    ASSERT_EQ(fresh.image.GetWid(), pDoc->image.GetWid());
    ASSERT_EQ(fresh.image.GetHgt(), pDoc->image.GetHgt());
    ASSERT_EQ(fresh.image.GetBitCount(), pDoc->image.GetBitCount());
    for (int row = 0; row < fresh.image.GetHgt(); ++row)
        ASSERT_EQ(std::memcmp(fresh.image.GetBitsAdd(row), pDoc->image.GetBitsAdd(row),
                              fresh.image.GetWid() * fresh.image.GetBitCount() / 8),
                  0)
            << "picture row " << row;

    // The viewer's frame is the renderer's frame of that picture.
    pDoc->GotoFrame(0, false);
    pViewer->Refresh(true);
    int w = pViewer->viewImage.GetWid();
    int h = pViewer->viewImage.GetHgt();
    ASSERT_GT(w, 16);
    CDIB rendered(w, h, 32);
    ASSERT_TRUE(pDoc->RenderFrame(0, 0, false, w, h, &rendered, false));
    for (int row = 0; row < h; ++row)
        ASSERT_EQ(std::memcmp(pViewer->viewImage.GetBitsAdd(row), rendered.GetBitsAdd(row),
                              static_cast<size_t>(w) * 4),
                  0)
            << "viewer row " << row;

    // A lossless movie of frame 0 holds the same frame, made opaque.
    struct Quiet : RenderProgress {
        void Progress(double, const char*) override {}
        void ShowFrame(long) override {}
        void FrameWritten() override {}
        bool CancelRequested() override { return false; }
    } progress;
    UseCodec("png ");
    FSpec movie = PathFSpec(dir.File("prepared.mov").c_str());
    CDIB frame(w, h, 32);
    ASSERT_TRUE(QTMovieWriteOpen(false, &movie, &frame, 30.0f, 100, 1));
    ASSERT_TRUE(MakeMovie(*pDoc, &frame, 0, 0, 1, 0, 100, progress));
    ASSERT_TRUE(QTMovieWriteClose());
    UseCodec(nullptr);
    CDIB read(1, 1, 32);
    ASSERT_TRUE(QTMovieReadOpen(&movie, &read));
    ASSERT_TRUE(QTMovieReadFrame(0, &read));
    QTMovieReadClose();
    rendered.SetAlpha(255);
    ASSERT_EQ(read.GetWid(), w);
    for (int row = 0; row < h; ++row)
        ASSERT_EQ(
            std::memcmp(read.GetBitsAdd(row), rendered.GetBitsAdd(row), static_cast<size_t>(w) * 4),
            0)
            << "movie row " << row;
}

PrepValues Border()
{
    PrepValues values;
    values.videoColors = true;
    values.border = 10;
    values.matteColor = 0x3060C0;
    values.showWord = 65 | (40 << 8);
    return values;
}

PrepValues Tint()
{
    PrepValues values;
    values.videoColors = true;
    values.preBlur = 1;
    values.border = -1;
    values.matteColor = 0x00A0FF;
    values.showWord = 35 | (60 << 8);
    return values;
}

INSTANTIATE_TEST_SUITE_P(Preparations, PreparedPicture, testing::Values(Border(), Tint()),
                         [](const testing::TestParamInfo<PrepValues>& info) {
                             return info.param.border < 0 ? std::string("TintBlurContrastVideoSafe")
                                                          : std::string("BorderContrastVideoSafe");
                         });

}  // namespace
