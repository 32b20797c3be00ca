// CPGetColor run over a real window, driven by input posted before the picker starts reading, as
// if the user had clicked and typed: which answers keep or change the colour, dragging the
// controls, the textures, and the window left as it was found.

#include "platform/dialog/get_color.h"

#include <gtest/gtest.h>
#include <QElapsedTimer>
#include <QImage>
#include <string>
#include <vector>

#include "platform/draw/draw_port.h"
#include "platform/ini/settings.h"
#include "platform/util/colour.h"
#include "posted_input.h"
#include "support/temp_dir.h"

namespace {

constexpr int kX = 20;  // the picker's corner in the owner's window pixels
constexpr int kY = 30;
constexpr uint32_t kFace = 0xFFC0C0C0u;

long ColourOfLevels(long hue, long luminance, long saturation)
{
    long r, g, b;
    HLS2RGB(hue, luminance, saturation, &r, &g, &b);
    return r | (g << 8) | (b << 16);
}

// A colour (0x00BBGGRR) as the backing image holds it (0xFFRRGGBB).
uint32_t Pixel(long colour)
{
    return 0xFF000000u | uint32_t(colour & 0xFF) << 16 | uint32_t(colour & 0xFF00) |
           uint32_t((colour >> 16) & 0xFF);
}

void SetTextureFolder(const std::string& folder)
{
    std::string value = folder;
    SetIniItem("TextureFolder", value.data());
}

class GetColorTest : public testing::Test {
protected:
    void SetUp() override
    {
        SetTextureFolder("");
        ASSERT_EQ(owner.Create(nullptr, 0), 1);
        owner.SetWinRect(100, 100, 600, 420, true);
        ProcessEvents();
        port = owner.GetPort();
        ASSERT_NE(port, nullptr);
        ASSERT_GT(port->Width(), kX + kPickerWidth);
        ASSERT_GT(port->Height(), kY + kPickerHeight);
        // Every pixel different, so that anything left behind shows.
        for (int y = 0; y < port->Height(); ++y)
            for (int x = 0; x < port->Width(); ++x)
                port->Row(y)[x] = 0xFF000000u | uint32_t(x * 3) << 16 | uint32_t(y * 5) << 8 |
                                  uint32_t((x + y) & 0xFF);
        before = Pixels();
        owner.log.clear();
    }

    void TearDown() override
    {
        SetTextureFolder("");
        SetDrawDC(nullptr);
    }

    std::vector<uint32_t> Pixels() const
    {
        std::vector<uint32_t> pixels;
        for (int y = 0; y < port->Height(); ++y)
            for (int x = 0; x < port->Width(); ++x)
                pixels.push_back(port->PixelAt(x, y));
        return pixels;
    }

    // Runs the picker on *colour; answers what it answered. No test should ever wait on it.
    bool Run(long* colour, int x = kX, int y = kY)
    {
        QElapsedTimer clock;
        clock.start();
        bool chosen = CPGetColor(&owner, x, y, colour, "Choose Color");
        EXPECT_LT(clock.elapsed(), 2000) << "the picker waited for input that never came";
        return chosen;
    }

    // Content pixels of the picker's parts (the window's origin is 0 unless a test moves it).
    static int LevelX(long level) { return kX + 84 + static_cast<int>(level); }
    static constexpr int kHueRow = kY + 42;
    static constexpr int kLuminanceRow = kY + 68;
    static constexpr int kSaturationRow = kY + 92;
    static constexpr int kOkX = kX + 338, kOkY = kY + 228;
    static constexpr int kCancelX = kX + 270, kCancelY = kY + 228;

    RecordingWindow owner;
    DrawPort* port = nullptr;
    std::vector<uint32_t> before;
};

// ---------------------------------------------------------------------------------------------
// Answers that keep the colour

TEST_F(GetColorTest, ReturnKeepsTheGivenColourExactly)
{
    long colour = 0x7F123456;  // even its top byte
    PostReturn(&owner);
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(colour, 0x7F123456);
}

TEST_F(GetColorTest, OkWithoutAnEditKeepsTheGivenColourExactly)
{
    long colour = 0x090807;  // the levels could not make this colour again
    PostClick(&owner, kOkX, kOkY);
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(colour, 0x090807);
}

TEST_F(GetColorTest, EscapeLeavesTheColourAloneAndAnswersFalse)
{
    long colour = 0x0000FF;
    PostClick(&owner, LevelX(200), kLuminanceRow);
    PostEscape(&owner);
    EXPECT_FALSE(Run(&colour));
    EXPECT_EQ(colour, 0x0000FF);
}

TEST_F(GetColorTest, CancelLeavesTheColourAloneAndAnswersFalse)
{
    long colour = 0x0000FF;
    PostClick(&owner, LevelX(160), kHueRow);
    PostClick(&owner, kCancelX, kCancelY);
    EXPECT_FALSE(Run(&colour));
    EXPECT_EQ(colour, 0x0000FF);
}

TEST_F(GetColorTest, AClickOutsideThePickerCancels)
{
    long colour = 0x0000FF;
    PostClick(&owner, LevelX(160), kHueRow);
    PostPress(&owner, kX + kPickerWidth + 1, kY + 100);
    EXPECT_FALSE(Run(&colour));
    EXPECT_EQ(colour, 0x0000FF);
}

TEST_F(GetColorTest, AClickOnThePickersEdgeDoesNotCancel)
{
    long colour = 0x0000FF;
    PostClick(&owner, kX + kPickerWidth, kY + kPickerHeight);
    PostReturn(&owner);
    EXPECT_TRUE(Run(&colour));
}

TEST_F(GetColorTest, AClickInAnotherWindowCancels)
{
    RecordingWindow other;
    ASSERT_EQ(other.Create(nullptr, 0), 1);
    other.SetWinRect(700, 100, 1100, 420, true);
    ProcessEvents();
    long colour = 0x0000FF;
    PostClick(&owner, LevelX(160), kHueRow);
    // Where "OK" would be, had it been the owner.
    PostPress(&other, kOkX, kOkY);
    EXPECT_FALSE(Run(&colour));
    EXPECT_EQ(colour, 0x0000FF);
    EXPECT_EQ(other.Count(kMsgButtonDown), 0) << "the click only ended the picker";
}

// ---------------------------------------------------------------------------------------------
// Edits

TEST_F(GetColorTest, DraggingTheLuminanceSliderChangesTheColour)
{
    long colour = 0x0000FF;  // hue 0, luminance 120, saturation 240
    PostPress(&owner, LevelX(60), kLuminanceRow);
    PostDrag(&owner, LevelX(100), kLuminanceRow + 30);  // the row no longer matters
    PostDrag(&owner, LevelX(200), kLuminanceRow);
    PostRelease(&owner, LevelX(200), kLuminanceRow);
    PostReturn(&owner);
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(colour, ColourOfLevels(0, 200, 240));
}

TEST_F(GetColorTest, AClickOnASliderTakesTheLevelUnderThePointer)
{
    long colour = 0x0000FF;
    PostClick(&owner, LevelX(60), kLuminanceRow);
    PostClick(&owner, LevelX(90), kSaturationRow);
    PostReturn(&owner);
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(colour, ColourOfLevels(0, 60, 90));
}

TEST_F(GetColorTest, ReleasingTheButtonEndsTheDrag)
{
    long colour = 0x0000FF;
    PostClick(&owner, LevelX(60), kLuminanceRow);
    PostMove(&owner, LevelX(200), kLuminanceRow);
    PostReturn(&owner);
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(colour, ColourOfLevels(0, 60, 240));
    ASSERT_EQ(owner.Count(kMsgMouseMoved), 1) << "the move it did not use went to the owner";
    EXPECT_EQ(owner.Last(kMsgMouseMoved)->lParam, MakePointParam(LevelX(200), kLuminanceRow));
    EXPECT_EQ(owner.Count(kMsgButtonUp), 0) << "the drag's own release is the picker's";
}

TEST_F(GetColorTest, ADragWhoseReleaseWentMissingEndsAtTheNextButtonDown)
{
    long colour = 0x0000FF;
    PostPress(&owner, LevelX(60), kLuminanceRow);
    PostPress(&owner, kX + 250, kY + 160);  // on the swatch, which takes no clicks
    PostMove(&owner, LevelX(200), kLuminanceRow);
    PostReturn(&owner);
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(colour, ColourOfLevels(0, 60, 240));
}

TEST_F(GetColorTest, DraggingBeyondTheSliderStopsAtItsEnds)
{
    long colour = 0x0000FF;
    PostPress(&owner, LevelX(100), kLuminanceRow);
    PostDrag(&owner, LevelX(-500), kLuminanceRow);
    PostRelease(&owner, LevelX(-500), kLuminanceRow);
    PostReturn(&owner);
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(colour, 0x000000);
}

TEST_F(GetColorTest, AClickOnOkAnswersTheShownColour)
{
    long colour = 0x0000FF;
    PostClick(&owner, LevelX(160), kHueRow);
    PostClick(&owner, kOkX, kOkY);
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(colour, 0xFF0000) << "hue 160 at full saturation is blue";
}

TEST_F(GetColorTest, AButtonUpItDoesNotUseGoesToTheOwner)
{
    long colour = 0x0000FF;
    PostRelease(&owner, 5, 5);
    PostReturn(&owner);
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(owner.Count(kMsgButtonUp), 1);
    EXPECT_EQ(owner.Count(kMsgButtonDown), 0);
}

TEST_F(GetColorTest, ClicksFollowTheWindowsDrawingOrigin)
{
    owner.SetWindowOrigin(40, 20);
    long colour = 0x0000FF;
    // The picker lies at window pixels (kX + 40, kY + 20): on screen where it lies otherwise.
    PostClick(&owner, LevelX(60), kLuminanceRow);
    PostReturn(&owner);
    EXPECT_TRUE(Run(&colour, kX + 40, kY + 20));
    EXPECT_EQ(colour, ColourOfLevels(0, 60, 240));
    owner.SetWindowOrigin(0, 0);
}

TEST_F(GetColorTest, AClickOnATextureTakesTheColourOfItsPixel)
{
    pxtest::TempDir dir;
    QImage picture(32, 32, QImage::Format_RGB32);
    picture.fill(0xFF2468ACu);
    ASSERT_TRUE(picture.save(QString::fromStdString(dir.File("plain.png"))));
    SetTextureFolder(dir.Path());

    long colour = 0x0000FF;
    PostClick(&owner, kX + 84, kY + 150);   // no texture shown yet: nothing
    PostClick(&owner, kX + 118, kY + 116);  // ">"
    PostClick(&owner, kX + 130, kY + 160);
    PostReturn(&owner);
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(colour, 0xAC6824);
}

TEST_F(GetColorTest, BackToNoTextureTheTextureAreaTakesNoColour)
{
    pxtest::TempDir dir;
    QImage picture(32, 32, QImage::Format_RGB32);
    picture.fill(0xFF2468ACu);
    ASSERT_TRUE(picture.save(QString::fromStdString(dir.File("plain.png"))));
    SetTextureFolder(dir.Path());

    long colour = 0x0000FF;
    PostClick(&owner, kX + 118, kY + 116);  // ">"
    PostClick(&owner, kX + 94, kY + 116);   // "<"
    PostClick(&owner, kX + 130, kY + 160);
    PostReturn(&owner);
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(colour, 0x0000FF);
}

// ---------------------------------------------------------------------------------------------
// The window around it

TEST_F(GetColorTest, ThePickerIsDrawnOverTheWindowWhileItRuns)
{
    std::vector<uint32_t> seen;
    owner.onMessage = [&](unsigned int msg, long, long) {
        if (msg != kMsgMouseMoved)
            return;
        seen.push_back(port->PixelAt(kX + 4, kY + 200));
        seen.push_back(port->PixelAt(kX + 200, kY + 160));  // the old colour's half
        seen.push_back(port->PixelAt(kX + 300, kY + 160));  // the new colour's half
    };
    long colour = 0x0000FF;
    PostClick(&owner, LevelX(200), kLuminanceRow);
    PostMove(&owner, 1, 1);
    PostEscape(&owner);
    EXPECT_FALSE(Run(&colour));
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ(seen[0], kFace);
    EXPECT_EQ(seen[1], Pixel(0x0000FF));
    EXPECT_EQ(seen[2], Pixel(ColourOfLevels(0, 200, 240)));
}

TEST_F(GetColorTest, TheCoveredPixelsArePutBackAfterACancel)
{
    long colour = 0x0000FF;
    PostClick(&owner, LevelX(200), kLuminanceRow);
    PostEscape(&owner);
    EXPECT_FALSE(Run(&colour));
    EXPECT_TRUE(Pixels() == before);
}

TEST_F(GetColorTest, TheCoveredPixelsArePutBackAfterOk)
{
    long colour = 0x0000FF;
    PostClick(&owner, LevelX(100), kHueRow);
    PostClick(&owner, kOkX, kOkY);
    EXPECT_TRUE(Run(&colour));
    EXPECT_TRUE(Pixels() == before);
}

TEST_F(GetColorTest, TheCallersDrawingPortIsCurrentAgainAfterwards)
{
    DrawPort mine;
    mine.Resize(10, 10);
    SetDrawDC(&mine);
    long colour = 0x0000FF;
    PostReturn(&owner);
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(GetDrawDC(), &mine);
    EXPECT_EQ(mine.PixelAt(5, 5), 0xFFFFFFFFu) << "nothing drawn on it";
}

TEST_F(GetColorTest, WithoutAnOwnerOrAColourItAnswersFalseAtOnce)
{
    QElapsedTimer clock;
    clock.start();
    long colour = 0x123456;
    PostReturn(&owner);  // would be taken by a picker that ran
    EXPECT_FALSE(CPGetColor(nullptr, kX, kY, &colour, "Choose Color"));
    EXPECT_EQ(colour, 0x123456);
    EXPECT_FALSE(CPGetColor(&owner, kX, kY, nullptr, "Choose Color"));
    RecordingWindow notCreated;
    EXPECT_FALSE(CPGetColor(&notCreated, kX, kY, &colour, "Choose Color"));
    EXPECT_EQ(colour, 0x123456);
    EXPECT_LT(clock.elapsed(), 200) << "no input was read";
    EXPECT_TRUE(Pixels() == before) << "nothing drawn";
    // The Return is still there for the next reader.
    EXPECT_TRUE(Run(&colour));
    EXPECT_EQ(colour, 0x123456);
}

}  // namespace
