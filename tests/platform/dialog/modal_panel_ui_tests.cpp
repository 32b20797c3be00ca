// ModalPanel: drawing over a window without disturbing the caller, and input read for a panel.

#include "platform/dialog/modal_panel.h"

#include <gtest/gtest.h>

#include "platform/draw/draw_port.h"
#include "platform/draw/draw_shapes.h"
#include "platform/draw/draw_state.h"
#include "platform/draw/font.h"
#include "platform/wnd/wnd_test_support.h"

namespace {

class ModalPanelTest : public testing::Test {
protected:
    void SetUp() override
    {
        owner.Create(nullptr, 0);
        owner.SetWinRect(0, 0, 200, 150, true);
        ProcessEvents();
        owner.log.clear();
    }

    RecordingWindow owner;
};

TEST_F(ModalPanelTest, PutsBackThePixelsThePortAndTheDrawingState)
{
    DrawPort other;
    other.Resize(10, 10);
    SetDrawDC(&other);
    DrawState state = gDrawState;
    FontRecord* font = pCurFont;
    DrawPort* port = owner.GetPort();
    uint32_t under = port->PixelAt(20, 20);
    {
        ModalPanel panel(&owner, {10, 10, 50, 50});
        EXPECT_EQ(GetDrawDC(), port);
        DrawBar(0x00FF00, {10, 10, 50, 50});
        EXPECT_NE(port->PixelAt(20, 20), under);
        SetDrawDC(&other);
        panel.Select();
        EXPECT_EQ(GetDrawDC(), port);
    }
    EXPECT_EQ(port->PixelAt(20, 20), under);
    EXPECT_EQ(GetDrawDC(), &other);
    EXPECT_EQ(pCurFont, font);
    EXPECT_EQ(gDrawState.penColor, state.penColor);
    EXPECT_EQ(gDrawState.backColor, state.backColor);
    EXPECT_EQ(gDrawState.textOpaque, state.textOpaque);
    EXPECT_EQ(gDrawState.fontSize, state.fontSize);
    EXPECT_EQ(gDrawState.fontStyle, state.fontStyle);
    SetDrawDC(nullptr);
}

TEST_F(ModalPanelTest, ReadsPointsInWindowPixelsWithTheDrawingOrigin)
{
    owner.SetWindowOrigin(30, 40);
    ModalPanel panel(&owner, {0, 0, 10, 10});
    QWidget* content = Content(&owner);
    QCoreApplication::postEvent(
        content, new QMouseEvent(QEvent::MouseButtonPress, QPointF(5, 6),
                                 QPointF(content->mapToGlobal(QPoint(5, 6))), Qt::LeftButton,
                                 Qt::LeftButton, Qt::NoModifier));
    PanelInput input = panel.Read();
    EXPECT_EQ(input.window, &owner);
    EXPECT_EQ(input.msg, kMsgButtonDown);
    EXPECT_EQ(input.at.x, 35);
    EXPECT_EQ(input.at.y, 46);
    EXPECT_EQ(input.lParam, MakePointParam(5, 6));
}

TEST_F(ModalPanelTest, HandsOnOnlyMovesAndButtonUpsOfTheOwner)
{
    ModalPanel panel(&owner, {0, 0, 10, 10});
    PanelInput move{&owner, kMsgMouseMoved, 0, MakePointParam(1, 2), {1, 2}};
    PanelInput up{&owner, kMsgButtonUp, 0, MakePointParam(3, 4), {3, 4}};
    PanelInput key{&owner, kMsgKeyDown, 'a', 0, {0, 0}};
    PanelInput down{&owner, kMsgButtonDown, 0, 0, {0, 0}};
    PanelInput elsewhere{nullptr, kMsgMouseMoved, 0, 0, {0, 0}};
    for (const PanelInput& input : {move, up, key, down, elsewhere})
        panel.HandOn(input);
    std::vector<unsigned int> got;
    for (const Received& r : owner.log)
        if (r.msg != kMsgPaint)
            got.push_back(r.msg);
    EXPECT_EQ(got, (std::vector<unsigned int>{kMsgMouseMoved, kMsgButtonUp}));
    EXPECT_EQ(owner.Last(kMsgButtonUp)->lParam, MakePointParam(3, 4));
}

TEST(ReadPanelKey, EscCancelsReturnConfirmsAndTheRestMeanNothing)
{
    PanelInput input{nullptr, kMsgKeyDown, 27, 0, {0, 0}};
    EXPECT_EQ(ReadPanelKey(input), PanelKey::kCancel);
    input.wParam = 13;
    EXPECT_EQ(ReadPanelKey(input), PanelKey::kConfirm);
    input.wParam = 3;  // the keypad's Enter is not Return
    EXPECT_EQ(ReadPanelKey(input), PanelKey::kNone);
    input.msg = kMsgKeyUp;
    input.wParam = 27;
    EXPECT_EQ(ReadPanelKey(input), PanelKey::kNone);
}

}  // namespace
