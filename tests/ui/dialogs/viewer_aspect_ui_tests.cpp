// "Set Viewer Aspect ratio": which shape it preselects, what it reads back, the document's ratio
// and aspect mode, and the viewer, stage and Render menu after a change.

#include "ui/dialogs/viewer_aspect.h"

#include <gtest/gtest.h>
#include <string>

#include "support/editor_fixture.h"
#include "ui/viewer/cview.h"
#include "ui/viewer/viewer_geometry.h"

namespace {

using pxtest::kDemoShow;

int Selected(const ViewerAspectLists& lists)
{
    int selected = -1;
    for (int row = kAspectRowSquare; row <= kAspectRowSpecify; ++row) {
        if (IsDialogValueOn(lists.values, row)) {
            EXPECT_EQ(selected, -1) << "two shapes selected";
            selected = row;
        }
    }
    return selected;
}

using pxtest::RowText;

TEST(ViewerAspectRows, DescribeTheDialogInOrder)
{
    ViewerAspectLists lists = MakeViewerAspectDialog(0.75f, 0.5f);
    EXPECT_EQ(RowText(lists.descriptions, 0), "@RViewer Shape|Square");
    EXPECT_EQ(RowText(lists.descriptions, 1), "@RVideo 4:3");
    EXPECT_EQ(RowText(lists.descriptions, 2), "@RVideo 16:9");
    EXPECT_EQ(RowText(lists.descriptions, 3), "@RImage");
    EXPECT_EQ(RowText(lists.descriptions, 4), "@RSpecify");
    EXPECT_EQ(RowText(lists.descriptions, 5), "Specify aspect ratio here");
    EXPECT_EQ(RowText(lists.values, kAspectRowTyped), "0.7500");
}

TEST(ViewerAspectRows, PictureSixHundredByEightHundredPreselectsVideoFourByThree)
{
    // 0.75 is tested before the picture's own ratio.
    EXPECT_EQ(Selected(MakeViewerAspectDialog(0.75f, 600.0f / 800.0f)), kAspectRowVideo43);
}

TEST(ViewerAspectRows, PreselectsByTheCurrentRatio)
{
    EXPECT_EQ(Selected(MakeViewerAspectDialog(1.0f, 0.5f)), kAspectRowSquare);
    EXPECT_EQ(Selected(MakeViewerAspectDialog(0.5625f, 0.5f)), kAspectRowVideo169);
    EXPECT_EQ(Selected(MakeViewerAspectDialog(0.5f, 0.5f)), kAspectRowImage);
    EXPECT_EQ(Selected(MakeViewerAspectDialog(0.6f, 0.5f)), kAspectRowSpecify);
    EXPECT_EQ(RowText(MakeViewerAspectDialog(0.6f, 0.5f).values, kAspectRowTyped), "0.6000");
}

TEST(ViewerAspectRows, ReadTheChosenShape)
{
    ViewerAspectLists lists = MakeViewerAspectDialog(0.6f, 0.4f);
    EXPECT_FLOAT_EQ(ReadViewerAspectDialog(lists, 0.4f), 0.6f);
    SetDialogValue(lists.values, kAspectRowSpecify, "");
    SetDialogValue(lists.values, kAspectRowImage, "1");
    EXPECT_FLOAT_EQ(ReadViewerAspectDialog(lists, 0.4f), 0.4f);
    SetDialogValue(lists.values, kAspectRowImage, "");
    SetDialogValue(lists.values, kAspectRowVideo169, "1");
    EXPECT_FLOAT_EQ(ReadViewerAspectDialog(lists, 0.4f), 0.5625f);
}

TEST(ViewerAspectRows, TypedZeroOrNothingIsNoRatio)
{
    ViewerAspectLists lists = MakeViewerAspectDialog(0.6f, 0.4f);
    for (const char* typed : {"0", "-0.5", "abc", ""}) {
        SetDialogValue(lists.values, kAspectRowTyped, typed);
        EXPECT_EQ(ReadViewerAspectDialog(lists, 0.4f), 0.0f) << typed;
    }
}

class ViewerAspect : public pxtest::Editor {
protected:
    static void ClickAspectRow(int row)
    {
        ClickRow(kViewerAspectRows,
                 MakeViewerAspectDialog(pDoc->aspectRatio, PictureRatioOf(*pDoc)).descriptions,
                 row);
    }
    static int PictureAreaHeight()
    {
        tagRECT client;
        pViewer->GetClientRect(client);
        tagRECT area = ViewerPictureArea(client);
        return area.bottom - area.top;
    }
    static int PictureAreaWidth()
    {
        tagRECT client;
        pViewer->GetClientRect(client);
        return client.right - client.left;
    }
    static bool Checked(int command)
    {
        for (int m = 0; m < pMain->Menu.GetMenuCount(); ++m)
            for (int i = 0; i < pMain->Menu.GetItemCount(m); ++i)
                if (pMain->Menu.GetID(m, i) == command)
                    return pMain->Menu.IsItemChecked(m, i);
        return false;
    }
};

TEST_F(ViewerAspect, TypedZeroChangesNothing)
{
    Start();
    ASSERT_TRUE(OpenShow(kDemoShow));
    PushStringBoxAnswer("0");
    ClickAspectRow(kAspectRowTyped);
    ClickAspectRow(kAspectRowSpecify);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { pMain->SetViewerAspect(); });
    EXPECT_EQ(pDoc->aspectMode, 7500);
    EXPECT_FLOAT_EQ(pDoc->aspectRatio, 0.75f);
    EXPECT_EQ(Setting("AspectMode"), "?");
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(ViewerAspect, TypedRatioReshapesTheViewerAndStoresTheMode)
{
    Start();
    ASSERT_TRUE(OpenShow(kDemoShow));
    PushStringBoxAnswer("0.6");
    ClickAspectRow(kAspectRowTyped);
    ClickAspectRow(kAspectRowSpecify);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { PostAMessage(pMain, kMsgCommand, kViewerAspectCommand, 0); });
    EXPECT_FLOAT_EQ(pDoc->aspectRatio, 0.6f);
    EXPECT_EQ(pDoc->aspectMode, 6000);
    EXPECT_EQ(Setting("AspectMode"), "6000");
    EXPECT_EQ(PictureAreaHeight(), static_cast<int>(static_cast<float>(PictureAreaWidth()) * 0.6f));
    EXPECT_FALSE(Checked(1030));
    EXPECT_FALSE(Checked(1031));
    EXPECT_FALSE(Checked(1032));
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(ViewerAspect, SixteenByNineChecksItsRenderItem)
{
    Start();
    ASSERT_TRUE(OpenShow(kDemoShow));
    ClickAspectRow(kAspectRowVideo169);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { pMain->SetViewerAspect(); });
    EXPECT_EQ(pDoc->aspectMode, 5625);
    EXPECT_TRUE(Checked(1031));
    EXPECT_FALSE(Checked(1030));
}

TEST_F(ViewerAspect, UnchangedRatioKeepsTheLetterbox)
{
    Start("AspectMode=5626\r\n");
    ASSERT_TRUE(OpenShow(kDemoShow));
    ASSERT_FLOAT_EQ(pDoc->aspectRatio, 0.5625f);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { pMain->SetViewerAspect(); });
    EXPECT_EQ(pDoc->aspectMode, 5626);
}

TEST_F(ViewerAspect, DialogIsDrawnOverTheStage)
{
    Start();
    ASSERT_TRUE(OpenShow(kDemoShow));
    EXPECT_TRUE(ShownOverTheStage([] { pMain->SetViewerAspect(); }));
}

TEST_F(ViewerAspect, CancelChangesNothing)
{
    Start();
    ASSERT_TRUE(OpenShow(kDemoShow));
    ClickAspectRow(kAspectRowSquare);
    PostEscape(EditorDialogOwner());
    RunAnswered([] { pMain->SetViewerAspect(); });
    EXPECT_EQ(pDoc->aspectMode, 7500);
    EXPECT_EQ(Setting("AspectMode"), "?");
    EXPECT_TRUE(pViewer->IsVisible());
}

TEST_F(ViewerAspect, ImageTakesTheCurrentPicturesRatio)
{
    Start();
    ASSERT_TRUE(OpenShow(kDemoShow));
    float picture = PictureRatioOf(*pDoc);
    ASSERT_GT(picture, 0.0f);
    ASSERT_NE(picture, 0.75f);
    ClickAspectRow(kAspectRowImage);
    PostReturn(EditorDialogOwner());
    RunAnswered([] { pMain->SetViewerAspect(); });
    EXPECT_FLOAT_EQ(pDoc->aspectRatio, picture);
    EXPECT_EQ(pDoc->aspectMode, static_cast<int>(picture * 10000.0 + 0.5));
}

}  // namespace
