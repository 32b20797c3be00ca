// The Options, Render and View menus and the frame-rate items: step rules, check marks in step
// with the settings, and what each item changes.

#include "ui/commands/view_commands.h"

#include "platform/task/worker.h"
#include "support/editor_fixture.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/ctime.h"
#include "ui/viewer/cview.h"

namespace {

class ViewCommands : public pxtest::Editor {};

TEST(StageZoom, InFromATenthGivesAQuarter)
{
    EXPECT_FLOAT_EQ(StageZoomIn(0.1f), 0.25f);
    EXPECT_FLOAT_EQ(StageZoomIn(0.25f), 0.5f);
    EXPECT_FLOAT_EQ(StageZoomIn(0.5f), 1.0f);
}

TEST(StageZoom, InAtFullSizeStaysFullSize) { EXPECT_FLOAT_EQ(StageZoomIn(1.0f), 1.0f); }

TEST(StageZoom, OutFromAQuarterGivesATenthSkippingAnEighth)
{
    EXPECT_FLOAT_EQ(StageZoomOut(1.0f), 0.5f);
    EXPECT_FLOAT_EQ(StageZoomOut(0.5f), 0.25f);
    EXPECT_FLOAT_EQ(StageZoomOut(0.25f), 0.1f);
    EXPECT_FLOAT_EQ(StageZoomOut(0.1f), 0.1f);
}

TEST(TimelineScaleSteps, EnlargingFortyAtNtscGivesSixty)
{
    EXPECT_EQ(EnlargeTimelineScale(40, 2997), 60);
}

TEST(TimelineScaleSteps, EnlargingAThousandIsCappedAt1920)
{
    EXPECT_EQ(EnlargeTimelineScale(1000, 2997), 1920);
}

TEST(TimelineScaleSteps, EnlargingBelowOneSecondIsNotRounded)
{
    EXPECT_EQ(EnlargeTimelineScale(5, 2997), 10);
    EXPECT_EQ(EnlargeTimelineScale(10, 2500), 20);
}

TEST(TimelineScaleSteps, ContractingTwelveAtNtscGivesFive)
{
    // max(3047 / 400, 12 / 2) = 7, rounded down to a multiple of 5.
    EXPECT_EQ(ContractTimelineScale(12, 2997), 5);
    EXPECT_EQ(ContractTimelineScale(60, 2997), 30);
    EXPECT_EQ(ContractTimelineScale(1920, 2997), 960);
}

TEST(TimelineScaleSteps, ContractingNeverGivesZero)
{
    EXPECT_EQ(ContractTimelineScale(1, 100), 1);
    EXPECT_EQ(ContractTimelineScale(0, 0), 1);
}

TEST(EaseChoice, NoCurvesKeepsTheSlowInSlowOutChoiceInTheLowBits)
{
    EXPECT_EQ(EaseAfterNoCurves(2), 18);
    EXPECT_EQ(EaseAfterNoCurves(18), 2);
    EXPECT_EQ(EaseAfterNoCurves(3), 19);
}

TEST(EaseChoice, AKindKeepsNoCurves)
{
    EXPECT_EQ(EaseAfterKind(16, 1005), 18);
    EXPECT_EQ(EaseAfterKind(2, 1003), 0);
    EXPECT_EQ(EaseAfterKind(19, 1004), 17);
}

TEST_F(ViewCommands, ZoomItemsStepTheStageAndStoreThePercent)
{
    Start();
    ASSERT_FLOAT_EQ(pStage->scale, 0.5f);
    ASSERT_TRUE(Choose(1043));
    EXPECT_FLOAT_EQ(pStage->scale, 0.25f);
    ASSERT_TRUE(Choose(1043));
    EXPECT_FLOAT_EQ(pStage->scale, 0.1f);
    EXPECT_EQ(GetIniItem("StageScale", 0), 10);
    ASSERT_TRUE(Choose(1042));
    EXPECT_FLOAT_EQ(pStage->scale, 0.25f);
    Command(1042);
    Command(1042);
    Command(1042);
    EXPECT_FLOAT_EQ(pStage->scale, 1.0f);
    EXPECT_EQ(GetIniItem("StageScale", 0), 100);
}

TEST_F(ViewCommands, TimelineKeysEnlargeAndContractAndStoreTheScale)
{
    Start();
    ASSERT_EQ(pTime->scale, 30);
    Ctrl('>');
    EXPECT_EQ(pTime->scale, 60);
    EXPECT_EQ(GetIniItem("TimeScale", 0), 60);
    ASSERT_EQ(pDoc->showLength, 1800);
    EXPECT_EQ(pTime->extent, 1804);
    Ctrl('<');
    Ctrl('<');
    EXPECT_EQ(pTime->scale, 15);
    EXPECT_EQ(pTime->extent, 7204);
    // Ctrl+< and Ctrl+> reach the same commands as the View menu.
    ASSERT_TRUE(Choose(1044));
    EXPECT_EQ(pTime->scale, 30);
}

TEST_F(ViewCommands, NoCurvesTogglesBitSixteenAndKeepsTheKind)
{
    Start("EaseType=2\r\n");
    ASSERT_TRUE(Checked(1005));
    pDoc->dirty = false;
    ASSERT_TRUE(Choose(1007));
    EXPECT_EQ(pDoc->defaultEase, 18);
    EXPECT_TRUE(Checked(1007));
    EXPECT_TRUE(Checked(1005));
    EXPECT_EQ(GetIniItem("EaseType", 0), 18);
    EXPECT_TRUE(pDoc->dirty);
    ASSERT_TRUE(Choose(1007));
    EXPECT_EQ(pDoc->defaultEase, 2);
    EXPECT_FALSE(Checked(1007));
}

TEST_F(ViewCommands, EaseItemsCheckOneResetEveryKeysEaseAndMarkTheShow)
{
    StartWithDemo("EaseType=16\r\n");
    pDoc->keys[0][1].Ease = 3000.0f;
    ASSERT_TRUE(Choose(1006));
    EXPECT_EQ(pDoc->defaultEase, 19);
    EXPECT_EQ(pDoc->keys[0][1].Ease, 0.0f);
    EXPECT_TRUE(Checked(1006));
    for (int item : {1003, 1004, 1005})
        EXPECT_FALSE(Checked(item)) << item;
    EXPECT_TRUE(Checked(1007));
    EXPECT_EQ(GetIniItem("EaseType", 0), 19);
    EXPECT_TRUE(pDoc->dirty);
}

TEST_F(ViewCommands, FrameRateItemsCheckOneAndSetTheRate)
{
    Start();
    ASSERT_TRUE(Choose(1016));
    EXPECT_EQ(gFrameRate, 2500);
    EXPECT_EQ(GetIniItem("FrameRate", 0), 2500);
    EXPECT_TRUE(Checked(1016));
    EXPECT_FALSE(Checked(1015));
    ASSERT_TRUE(Choose(1017));
    EXPECT_EQ(gFrameRate, 2397);
    EXPECT_FALSE(Checked(1016));
    EXPECT_TRUE(Checked(1017));
    ASSERT_TRUE(Choose(1015));
    EXPECT_EQ(gFrameRate, 2997);
    EXPECT_TRUE(Checked(1015));
}

TEST_F(ViewCommands, AspectItemsSetTheModeAndTheDocumentsRatio)
{
    Start();
    ASSERT_TRUE(Choose(1031));
    EXPECT_EQ(pDoc->aspectMode, 5625);
    EXPECT_FLOAT_EQ(pDoc->aspectRatio, 0.5625f);
    EXPECT_EQ(GetIniItem("AspectMode", 0), 5625);
    EXPECT_TRUE(Checked(1031));
    EXPECT_FALSE(Checked(1030));
    ASSERT_TRUE(Choose(1032));
    EXPECT_EQ(pDoc->aspectMode, 5626);
    EXPECT_FLOAT_EQ(pDoc->aspectRatio, 0.5625f);
    EXPECT_TRUE(Checked(1032));
    EXPECT_FALSE(Checked(1031));
    ASSERT_TRUE(Choose(1030));
    EXPECT_EQ(pDoc->aspectMode, 7500);
    EXPECT_FLOAT_EQ(pDoc->aspectRatio, 0.75f);
}

TEST_F(ViewCommands, ToggleItemsFlipTheirFlagCheckAndSetting)
{
    gCanMultiProcess = true;
    Start();
    struct Toggle {
        int command;
        const char* key;
        bool (*flag)();
    };
    const Toggle toggles[] = {
        {1000, "ShowCameraPath", [] { return pStage->showCameraPath; }},
        {1002, "RescaleShow", [] { return pDoc->rescaleShow; }},
        {1033, "DraftRender", [] { return pDoc->draftRender; }},
        {1034, "MultiProcess", [] { return gMultiProcess; }},
        {1035, "BlurFrames", [] { return pDoc->blurFrames != 0; }},
        {1040, "ShowTVSafe", [] { return pViewer->tvSafe; }},
        {1041, "CenterPic", [] { return pStage->centrePicture; }},
    };
    for (const Toggle& toggle : toggles) {
        bool before = toggle.flag();
        ASSERT_TRUE(Choose(toggle.command)) << toggle.command;
        EXPECT_EQ(toggle.flag(), !before) << toggle.command;
        EXPECT_EQ(Checked(toggle.command), !before) << toggle.command;
        EXPECT_EQ(GetIniItem(toggle.key, -1), before ? 0 : 1) << toggle.key;
        Command(toggle.command);
        EXPECT_EQ(toggle.flag(), before) << toggle.command;
        EXPECT_EQ(Checked(toggle.command), before) << toggle.command;
        EXPECT_EQ(GetIniItem(toggle.key, -1), before ? 1 : 0) << toggle.key;
    }
    gCanMultiProcess = false;
    gMultiProcess = false;
}

TEST_F(ViewCommands, AutoRescaleFirstChoiceTurnsTheDocumentsFlagOnThoughTheItemShowedChecked)
{
    Start();
    ASSERT_TRUE(Checked(1002));
    ASSERT_FALSE(pDoc->rescaleShow);
    ASSERT_TRUE(Choose(1002));
    EXPECT_TRUE(pDoc->rescaleShow);
    EXPECT_TRUE(Checked(1002));
}

}  // namespace
