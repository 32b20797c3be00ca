// Picture buttons: states, pictures, the hit test.

#include "platform/wnd/button.h"

#include <gtest/gtest.h>

#include "platform/draw/draw_port.h"
#include "platform/wnd/button_pictures.h"

namespace {

// A white port to draw buttons on, current for the test.
struct Canvas {
    DrawPort port;
    Canvas()
    {
        port.Resize(60, 40);
        SetDrawDC(&port);
    }
    ~Canvas() { SetDrawDC(nullptr); }
    bool Blank()
    {
        for (int y = 0; y < port.Height(); ++y)
            for (int x = 0; x < port.Width(); ++x)
                if (port.PixelAt(x, y) != 0xFFFFFFFFu)
                    return false;
        return true;
    }
};

TEST(ButtonCheck, EdgePixelCountsAsInside)
{
    CPButton button(108, 103, 104);
    tagRECT r = {4, 10, 23, 29};
    button.SetPos(r);
    EXPECT_TRUE(button.Check(4, 10, 1));
    EXPECT_TRUE(button.Check(23, 29, 1));
    EXPECT_TRUE(button.Check(23, 10, 1));
    EXPECT_FALSE(button.Check(24, 20, 1));
    EXPECT_FALSE(button.Check(10, 9, 1));
    EXPECT_FALSE(button.Check(3, 20, 1));
}

TEST(ButtonCheck, SetsTheStateOnAHit)
{
    Canvas canvas;
    CPButton button(108, 103, 104);
    tagRECT r = {4, 10, 23, 29};
    button.SetPos(r);
    EXPECT_TRUE(button.Check(10, 20, kButtonPressed));
    EXPECT_EQ(button.GetState(), kButtonPressed);
    EXPECT_FALSE(button.Check(40, 20, kButtonNormal));
    EXPECT_EQ(button.GetState(), kButtonPressed);
}

TEST(ButtonCheck, DisabledButtonIsNeverHit)
{
    CPButton button(108, 103, 104);
    tagRECT r = {0, 0, 20, 20};
    button.SetPos(r);
    button.SetState(kButtonDisabled);
    EXPECT_FALSE(button.Check(10, 10, kButtonPressed));
    EXPECT_EQ(button.GetState(), kButtonDisabled);
}

TEST(ButtonState, DrawsTheStatesPictureInTheRectangle)
{
    Canvas canvas;
    CPButton button(108, 103, 104);
    tagRECT r = {4, 10, 23, 29};
    button.SetPos(r);
    EXPECT_FALSE(canvas.Blank());
    // Drawn inside the rectangle, right and bottom edges outside.
    EXPECT_NE(canvas.port.PixelAt(4, 10), 0xFFFFFFFFu);
    EXPECT_NE(canvas.port.PixelAt(22, 28), 0xFFFFFFFFu);
    EXPECT_EQ(canvas.port.PixelAt(23, 20), 0xFFFFFFFFu);
    EXPECT_EQ(canvas.port.PixelAt(10, 29), 0xFFFFFFFFu);
    EXPECT_EQ(canvas.port.PixelAt(3, 20), 0xFFFFFFFFu);
    // The face of the normal picture; pressed is darker.
    uint32_t normal = canvas.port.PixelAt(7, 13);
    button.SetState(kButtonPressed);
    EXPECT_NE(canvas.port.PixelAt(7, 13), normal);
}

TEST(ButtonState, MinusOneIsRecordedWithoutDrawing)
{
    Canvas canvas;
    CPButton button(102, 109, 110);
    button.SetState(-1);
    tagRECT r = {0, 0, 19, 19};
    button.SetPos(r);
    EXPECT_EQ(button.GetState(), -1);
    EXPECT_TRUE(canvas.Blank());
    EXPECT_TRUE(button.Check(5, 5, -1));
}

TEST(ButtonState, StateWithoutAPictureDrawsNothing)
{
    Canvas canvas;
    CPButton button(111, 112);  // the add-key button has no disabled picture
    tagRECT r = {0, 0, 19, 19};
    button.SetState(kButtonDisabled);
    button.SetPos(r);
    EXPECT_TRUE(canvas.Blank());
    EXPECT_EQ(button.GetPicture(kButtonHeld), 112);
    EXPECT_EQ(button.GetPicture(kButtonDisabled), 0);
    button.SetPicture(kButtonDisabled, 104);
    button.SetState(kButtonDisabled);
    EXPECT_FALSE(canvas.Blank());
}

TEST(ButtonState, HeldPictureIsItsOwnWhenGiven)
{
    CPButton button(105, 106, 107, 103);
    EXPECT_EQ(button.GetPicture(kButtonNormal), 105);
    EXPECT_EQ(button.GetPicture(kButtonPressed), 106);
    EXPECT_EQ(button.GetPicture(kButtonHeld), 103);
    EXPECT_EQ(button.GetPicture(kButtonDisabled), 107);
    EXPECT_EQ(button.GetPicture(4), 0);
}

}  // namespace
