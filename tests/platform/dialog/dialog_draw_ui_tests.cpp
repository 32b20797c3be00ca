// CPDrawDialog read back from the drawing port: the parts of every row kind, and the whole
// dialog against the reference picture the project keeps.
//
// PX_UPDATE_REFERENCE=1 writes the reference picture anew (look at it before committing it).

#include "platform/dialog/cpdialog.h"

#include <gtest/gtest.h>
#include <QImage>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "dialog_test_rows.h"
#include "platform/dialog/dialog_layout.h"
#include "platform/draw/draw_port.h"

namespace {

constexpr uint32_t kFace = 0xFFC0C0C0u;
constexpr uint32_t kWhite = 0xFFFFFFFFu;
constexpr uint32_t kBlack = 0xFF000000u;
constexpr uint32_t kShadow = 0xFF404040u;

std::string ReferencePath()
{
    const char* data = std::getenv("PX_TEST_DATA");
    return std::string(data ? data : PX_SOURCE_DIR "/tests/data") + "/dialog/described_dialog.png";
}

class DialogDrawTest : public testing::Test {
protected:
    void SetUp() override
    {
        port.Resize(420, 320);
        SetDrawDC(&port);
    }
    void TearDown() override { SetDrawDC(nullptr); }

    void Draw(const std::vector<std::string>& descriptions, const std::vector<std::string>& values,
              bool apply = false, const char* title = "Options")
    {
        rows = Rows(descriptions);
        std::vector<char> valueRows = Rows(values);
        CPDrawDialog(10, 10, static_cast<int>(descriptions.size()), rows.data(), valueRows.data(),
                     title, apply);
        layout =
            MakeDialogLayout(10, 10, static_cast<int>(descriptions.size()), rows.data(), apply);
    }

    // The pixels of `rect`, edges included.
    std::vector<uint32_t> Block(const tagRECT& rect) const
    {
        std::vector<uint32_t> pixels;
        for (int y = rect.top; y <= rect.bottom; ++y)
            for (int x = rect.left; x <= rect.right; ++x)
                pixels.push_back(port.PixelAt(x, y));
        return pixels;
    }

    QImage Image() const
    {
        QImage image(port.Width(), port.Height(), QImage::Format_RGB32);
        for (int y = 0; y < port.Height(); ++y)
            for (int x = 0; x < port.Width(); ++x)
                image.setPixel(x, y, port.PixelAt(x, y));
        return image;
    }

    DrawPort port;
    std::vector<char> rows;
    DialogLayout layout;
};

TEST_F(DialogDrawTest, FaceIsLightGreyInARaisedFrame)
{
    Draw({"Width"}, {"640"});
    const tagRECT& f = layout.frame;
    EXPECT_EQ(port.PixelAt(f.left + 3, f.bottom - 3), kFace);
    EXPECT_EQ(port.PixelAt(f.left, f.top + 10), kWhite);
    EXPECT_EQ(port.PixelAt(f.left + 10, f.top), kWhite);
    EXPECT_EQ(port.PixelAt(f.right, f.top + 10), kShadow);
    EXPECT_EQ(port.PixelAt(f.left + 10, f.bottom), kShadow);
    // Nothing beyond the frame.
    EXPECT_EQ(port.PixelAt(f.right + 1, f.top + 10), kWhite);
    EXPECT_EQ(port.PixelAt(f.left + 10, f.bottom + 1), kWhite);
}

TEST_F(DialogDrawTest, TitleBarIsBlackWithTheTitleInWhite)
{
    Draw({"Width"}, {"640"});
    tagRECT bar = DialogTitleBar(layout);
    EXPECT_EQ(port.PixelAt(bar.left + 6, bar.top + 8), kBlack);
    int white = 0;
    for (int y = bar.top; y < bar.bottom; ++y)
        for (int x = bar.left; x < bar.right; ++x)
            white += port.PixelAt(x, y) == kWhite;
    EXPECT_GT(white, 10);  // the title's letters
}

TEST_F(DialogDrawTest, CheckBoxHoldingZeroIsDrawnOn)
{
    Draw({"@COff", "@CZero", "@COne"}, {"", "0", "1"});
    std::vector<uint32_t> off = Block(DialogCheckBox(layout, 0));
    std::vector<uint32_t> zero = Block(DialogCheckBox(layout, 1));
    std::vector<uint32_t> one = Block(DialogCheckBox(layout, 2));
    EXPECT_EQ(zero, one);
    EXPECT_NE(zero, off);
}

TEST_F(DialogDrawTest, RadioButtonsShowTheirValues)
{
    Draw({"@RSize|Small", "@RLarge"}, {"", "1"});
    std::vector<uint32_t> off = Block(DialogRadioButton(layout, 0));
    std::vector<uint32_t> on = Block(DialogRadioButton(layout, 1));
    EXPECT_NE(off, on);
}

TEST_F(DialogDrawTest, RadioGroupIsFramedWithItsTitleOnTheTopLine)
{
    Draw({"@RSize|Small", "@RLarge", "@CLoop"}, {"1", "", ""});
    tagRECT frame = DialogGroupFrame(layout, 0, 1);
    EXPECT_EQ(port.PixelAt(frame.left, frame.top + 10), kShadow);
    EXPECT_EQ(port.PixelAt(frame.right, frame.top + 10), kShadow);
    EXPECT_EQ(port.PixelAt(frame.left + 10, frame.bottom), kShadow);
    EXPECT_EQ(port.PixelAt(frame.left + 1, frame.top), kShadow);
    // The title breaks the top line in the middle.
    int middle = frame.left + (frame.right - frame.left) / 2;
    EXPECT_NE(port.PixelAt(middle, frame.top), kShadow);
    // The check row after the group is outside it.
    EXPECT_LT(frame.bottom, DialogRowRect(layout, 2).top);
}

TEST_F(DialogDrawTest, SliderShowsItsValue)
{
    Draw({"@SLow", "@SHigh"}, {"0", "100"});
    tagRECT low = DialogSliderBar(layout, 0);
    tagRECT high = DialogSliderBar(layout, 1);
    int x = low.left + (low.right - low.left) * 3 / 4;
    int y = low.top + (low.bottom - low.top) / 2;
    int dy = high.top - low.top;
    EXPECT_NE(port.PixelAt(x, y), port.PixelAt(x, y + dy));
}

TEST_F(DialogDrawTest, ColourSwatchIsTheValuesColourFramedInBlack)
{
    Draw({"@LColour"}, {"255"});  // 0x0000FF: red
    tagRECT area = DialogValueArea(layout, 0);
    EXPECT_EQ(port.PixelAt(area.left + 5, area.top + 5), 0xFFFF0000u);
    EXPECT_EQ(port.PixelAt(area.left, area.top + 5), kBlack);
}

TEST_F(DialogDrawTest, FolderFieldIsALightBoxWithTheShortenedPath)
{
    std::string longPath = "/a/very/long/path/that/does/not/fit/in/the/box/at/all/";
    Draw({"@FTextures"}, {longPath});
    tagRECT area = DialogValueArea(layout, 0);
    EXPECT_EQ(port.PixelAt(area.right - 2, area.top + 2), 0xFFE0E0E0u);
    EXPECT_EQ(port.PixelAt(area.left, area.top + 5), kBlack);
    // The text stays inside the box, clear of its right side.
    for (int y = area.top + 1; y < area.bottom; ++y)
        for (int x = area.right - 8; x < area.right; ++x)
            EXPECT_EQ(port.PixelAt(x, y), 0xFFE0E0E0u) << x << "," << y;
}

TEST_F(DialogDrawTest, PlainFieldIsAWhiteBoxWithItsValue)
{
    Draw({"Width"}, {"640"});
    tagRECT area = DialogValueArea(layout, 0);
    EXPECT_EQ(port.PixelAt(area.left, area.top + 5), kBlack);
    EXPECT_EQ(port.PixelAt(area.right - 2, area.top + 2), kWhite);
    int ink = 0;
    for (int y = area.top + 1; y < area.bottom; ++y)
        for (int x = area.left + 1; x < area.right; ++x)
            ink += port.PixelAt(x, y) != kWhite;
    EXPECT_GT(ink, 5);
}

TEST_F(DialogDrawTest, ApplyButtonOnlyWhenAsked)
{
    Draw({"Width of the movie in pixels"}, {"640"}, false);
    tagRECT apply = DialogApplyButton(layout);
    EXPECT_EQ(port.PixelAt(apply.left + 3, apply.top + 8), kFace);
    Draw({"Width of the movie in pixels"}, {"640"}, true);
    EXPECT_EQ(port.PixelAt(apply.left + 3, apply.top + 8), kWhite);
    tagRECT ok = DialogOkButton(layout);
    EXPECT_EQ(port.PixelAt(ok.left + 3, ok.top + 8), kWhite);
    tagRECT cancel = DialogCancelButton(layout);
    EXPECT_EQ(port.PixelAt(cancel.left + 3, cancel.top + 8), kWhite);
}

TEST_F(DialogDrawTest, NothingIsDrawnForBadCountsOrMissingLists)
{
    rows = Rows({"Width"});
    std::vector<char> values = Rows({"1"});
    CPDrawDialog(10, 10, -1, rows.data(), values.data(), "t", false);
    CPDrawDialog(10, 10, kMaxDialogRows + 1, rows.data(), values.data(), "t", false);
    CPDrawDialog(10, 10, 1, nullptr, values.data(), "t", false);
    CPDrawDialog(10, 10, 1, rows.data(), nullptr, "t", false);
    for (int y = 0; y < port.Height(); ++y)
        for (int x = 0; x < port.Width(); ++x)
            ASSERT_EQ(port.PixelAt(x, y), kWhite);
}

TEST_F(DialogDrawTest, DialogFarOutsideThePortDrawsNothingAndTouchesNoMemory)
{
    rows = Rows({"Width", "@SLevel"});
    std::vector<char> values = Rows({"1", "50"});
    CPDrawDialog(-100000000, 2000000000, 2, rows.data(), values.data(), "t", true);
    CPDrawDialog(2000000000, -5, 2, rows.data(), values.data(), "t", true);
    for (int y = 0; y < port.Height(); ++y)
        for (int x = 0; x < port.Width(); ++x)
            ASSERT_EQ(port.PixelAt(x, y), kWhite);
}

TEST_F(DialogDrawTest, EveryRowKindMatchesTheReferencePicture)
{
    Draw({"Width", "@CLoop", "@COff", "@RFields|Upper first", "@RLower first", "@SQuality",
          "@LBorder colour", "@FTexture folder"},
         {"640", "0", "", "1", "", "75", "16711680", "/usr/share/textures/"}, true,
         "Render Options");
    QImage drawn = Image();
    std::string path = ReferencePath();
    if (std::getenv("PX_UPDATE_REFERENCE")) {
        ASSERT_TRUE(drawn.save(QString::fromStdString(path), "PNG"));
        GTEST_SKIP() << "reference written to " << path;
    }
    QImage reference(QString::fromStdString(path));
    ASSERT_FALSE(reference.isNull()) << path;
    reference = reference.convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(reference.size(), drawn.size());
    int differing = 0;
    for (int y = 0; y < drawn.height(); ++y)
        for (int x = 0; x < drawn.width(); ++x)
            differing += (drawn.pixel(x, y) & 0xFFFFFF) != (reference.pixel(x, y) & 0xFFFFFF);
    EXPECT_EQ(differing, 0) << "set PX_UPDATE_REFERENCE=1 to see the new drawing";
}

}  // namespace
