#include "platform/draw/font.h"

#include <gtest/gtest.h>
#include <cstring>
#include <string>

#include "platform/draw/draw_state.h"

TEST(LoadStandardFonts, RegistersTheFixedFontFiles)
{
    EXPECT_TRUE(LoadStandardFonts());
    EXPECT_TRUE(LoadStandardFonts());  // once only; the answer stays
    EXPECT_STREQ(StandardFontFamily(), "DejaVu Sans");
}

TEST(MakeFont, KeepsFaceSizeAndStyle)
{
    FontRecord* font = MakeFont("Helvetica", 14, kFontBold | kFontUnderline);
    ASSERT_NE(font, nullptr);
    EXPECT_STREQ(font->face, "Helvetica");
    EXPECT_EQ(font->size, 14);
    EXPECT_EQ(font->style, 5);
    RemoveFont(font);
}

TEST(MakeFont, FaceIsCutTo255Characters)
{
    std::string face(400, 'f');
    FontRecord* font = MakeFont(face.c_str(), 9, 0);
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(std::strlen(font->face), 255u);
    RemoveFont(font);
    FontRecord* unnamed = MakeFont(nullptr, 9, 0);
    ASSERT_NE(unnamed, nullptr);
    EXPECT_STREQ(unnamed->face, "");
    RemoveFont(unnamed);
}

TEST(RemoveFont, ForgetsTheCurrentFontOnlyWhenItWasCurrent)
{
    FontRecord* current = MakeFont("Geneva", 12, 0);
    FontRecord* other = MakeFont("Geneva", 10, 0);
    SelectFont(current, -1, 0);
    ASSERT_EQ(pCurFont, current);
    RemoveFont(other);
    EXPECT_EQ(pCurFont, current);
    RemoveFont(current);
    EXPECT_EQ(pCurFont, nullptr);
    RemoveFont(nullptr);  // nothing to free
}

TEST(SelectFont, SetsTextOnePointSmallerThanTheRecord)
{
    FontRecord* font = MakeFont("Geneva", 12, kFontItalic);
    SelectFont(font, -1, 0);
    EXPECT_EQ(pCurFont, font);
    EXPECT_EQ(gDrawState.fontSize, 12);
    EXPECT_EQ(gDrawState.fontPixelSize, 11);
    EXPECT_EQ(gDrawState.fontStyle, kFontItalic);
    RemoveFont(font);
}

TEST(SelectFont, TinyRecordsStillGiveAVisibleSize)
{
    FontRecord* font = MakeFont("Geneva", 1, 0);
    SelectFont(font, -1, 0);
    EXPECT_EQ(gDrawState.fontPixelSize, 1);
    RemoveFont(font);
}

TEST(SelectFont, OpaqueModeSetsTheBackgroundColour)
{
    FontRecord* font = MakeFont("Geneva", 12, 0);
    gDrawState.backColor = 0x00FFFFFF;
    SelectFont(font, 0x00123456, -1);
    EXPECT_TRUE(gDrawState.textOpaque);
    EXPECT_EQ(gDrawState.backColor, 0x00123456);

    SelectFont(font, -1, -1);  // opaque, colour kept
    EXPECT_TRUE(gDrawState.textOpaque);
    EXPECT_EQ(gDrawState.backColor, 0x00123456);

    SelectFont(font, 0x00654321, 0);  // transparent: the colour is not taken
    EXPECT_FALSE(gDrawState.textOpaque);
    EXPECT_EQ(gDrawState.backColor, 0x00123456);
    RemoveFont(font);
}

TEST(SelectFont, NullFontChangesNothing)
{
    FontRecord* font = MakeFont("Geneva", 12, 0);
    SelectFont(font, -1, 0);
    SelectFont(nullptr, 0x00000000, -1);
    EXPECT_EQ(pCurFont, font);
    EXPECT_FALSE(gDrawState.textOpaque);
    RemoveFont(font);
}

TEST(GetTextWidth, NullOrEmptyTextIsZero)
{
    EXPECT_EQ(GetTextWidth(nullptr), 0);
    EXPECT_EQ(GetTextWidth(""), 0);
}

TEST(GetTextWidth, WidthsOfTheRegisteredFontAreFixed)
{
    // DejaVu Sans, unhinted: these are the font file's own advances, the same on every machine.
    FontRecord* plain = MakeFont("Geneva", 12, 0);
    SelectFont(plain, -1, 0);
    EXPECT_EQ(GetTextWidth("Hello, world"), 65);
    EXPECT_EQ(GetTextWidth("W"), 11);
    FontRecord* bold = MakeFont("Geneva", 12, kFontBold);
    SelectFont(bold, -1, 0);
    EXPECT_EQ(GetTextWidth("Hello, world"), 74);
    FontRecord* large = MakeFont("Geneva", 13, 0);
    SelectFont(large, -1, 0);
    EXPECT_EQ(GetTextWidth("Hello, world"), 71);
    RemoveFont(plain);
    RemoveFont(bold);
    RemoveFont(large);
}

TEST(GetTextWidth, FaceNameDoesNotMatter)
{
    FontRecord* a = MakeFont("Geneva", 12, 0);
    FontRecord* b = MakeFont("Times", 12, 0);
    SelectFont(a, -1, 0);
    long widthA = GetTextWidth("Camera key 12");
    SelectFont(b, -1, 0);
    EXPECT_EQ(GetTextWidth("Camera key 12"), widthA);
    RemoveFont(a);
    RemoveFont(b);
}

TEST(GetTextWidth, MeasuresInTheLastSelectedFontAfterItIsRemoved)
{
    FontRecord* large = MakeFont("Geneva", 24, 0);
    SelectFont(large, -1, 0);
    long width = GetTextWidth("Timeline");
    RemoveFont(large);
    EXPECT_EQ(pCurFont, nullptr);
    EXPECT_EQ(GetTextWidth("Timeline"), width);
}
