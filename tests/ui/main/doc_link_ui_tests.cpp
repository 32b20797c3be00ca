// The document's view of the editor's windows.

#include "ui/main/doc_link.h"

#include <gtest/gtest.h>
#include <cstdlib>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/wnd/cursor.h"
#include "platform/wnd/shell.h"
#include "support/editor_fixture.h"
#include "ui/editor_windows.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/ctime.h"

namespace {

// The document alone, with the fixture's link and no main window.
class DocLink : public pxtest::Editor {
protected:
    void SetUp() override
    {
        pxtest::Editor::SetUp();
        pDoc = new CDoc;
    }
};

TEST_F(DocLink, WithoutStageTheDocumentKeepsTheCamera)
{
    pDoc->currentCamera.XPos = 77.0f;
    EXPECT_EQ(link.GetCurrentKey().XPos, 77.0f);
    KeyStruct key{};
    link.SetCurrentKey(key);  // nowhere to put it: nothing happens
    EXPECT_EQ(link.GetTimelineScale(), FramesPerSecond());
}

TEST_F(DocLink, TheStageHoldsTheCurrentKey)
{
    CStage stage(nullptr);
    ASSERT_EQ(pStage, &stage);
    KeyStruct key{};
    key.XPos = 320.0f;
    key.Width = 144.0f;
    link.SetCurrentKey(key);
    EXPECT_EQ(stage.currentKey.XPos, 320.0f);
    EXPECT_EQ(link.GetCurrentKey().Width, 144.0f);
}

TEST_F(DocLink, TimelineScaleIsTheTimelines)
{
    CTime time(nullptr);
    ASSERT_EQ(pTime, &time);
    time.scale = 10;
    EXPECT_EQ(link.GetTimelineScale(), 10);
}

TEST_F(DocLink, BusyCursorWhileAPictureLoads)
{
    link.ShowBusy(true);
    EXPECT_EQ(GetCursorImage(), kCursorImageWait);
    link.ShowBusy(false);
    EXPECT_EQ(GetCursorImage(), kCursorImageArrow);
}

}  // namespace
