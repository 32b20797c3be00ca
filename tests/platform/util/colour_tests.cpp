#include "platform/util/colour.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <cstdlib>

TEST(RGB2HLS, PureRedIsHueZeroHalfLightFullSaturation)
{
    long h = -1, l = -1, s = -1;
    RGB2HLS(255, 0, 0, &h, &l, &s);
    EXPECT_EQ(h, 0);
    EXPECT_EQ(l, 120);
    EXPECT_EQ(s, 240);
}

TEST(HLS2RGB, HueZeroHalfLightFullSaturationIsPureRed)
{
    long r = -1, g = -1, b = -1;
    HLS2RGB(0, 120, 240, &r, &g, &b);
    EXPECT_EQ(r, 255);
    EXPECT_EQ(g, 0);
    EXPECT_EQ(b, 0);
}

TEST(RGB2HLS, GreyHasHueZeroAndSaturationZero)
{
    long h = -1, l = -1, s = -1;
    RGB2HLS(128, 128, 128, &h, &l, &s);
    EXPECT_EQ(h, 0);
    EXPECT_EQ(s, 0);
    EXPECT_EQ(l, 120);  // (256 * 240 + 255) / 510
    RGB2HLS(0, 0, 0, &h, &l, &s);
    EXPECT_EQ(l, 0);
    RGB2HLS(255, 255, 255, &h, &l, &s);
    EXPECT_EQ(l, 240);
    EXPECT_EQ(s, 0);
}

TEST(RGB2HLS, PrimariesAndSecondariesSitAtTheirHues)
{
    struct Case {
        long r, g, b, h;
    } cases[] = {
        {0, 255, 0, 80},    {0, 0, 255, 160},   {255, 255, 0, 40},
        {0, 255, 255, 120}, {255, 0, 255, 200},
    };
    for (const Case& c : cases) {
        long h, l, s;
        RGB2HLS(c.r, c.g, c.b, &h, &l, &s);
        EXPECT_EQ(h, c.h) << c.r << "," << c.g << "," << c.b;
        EXPECT_EQ(l, 120);
        EXPECT_EQ(s, 240);
    }
}

TEST(RGB2HLS, LightColoursUseTheUpperSaturationFormula)
{
    long h, l, s;
    RGB2HLS(255, 128, 128, &h, &l, &s);
    EXPECT_EQ(l, 180);  // (383 * 240 + 255) / 510
    EXPECT_EQ(s, 240);  // (127 * 240 + 63) / 127
    EXPECT_EQ(h, 0);
}

TEST(RGB2HLS, HueJustBelowRedWrapsNearTheTopOfTheCircle)
{
    long h, l, s;
    RGB2HLS(255, 0, 10, &h, &l, &s);
    EXPECT_EQ(h, 238);  // delta(b) - delta(g) = 38 - 40, plus 240
}

TEST(RGB2HLS, ChannelsOutsideTheRangeAreClamped)
{
    long h1, l1, s1, h2, l2, s2;
    RGB2HLS(300, -20, 0, &h1, &l1, &s1);
    RGB2HLS(255, 0, 0, &h2, &l2, &s2);
    EXPECT_EQ(h1, h2);
    EXPECT_EQ(l1, l2);
    EXPECT_EQ(s1, s2);
}

TEST(HLS2RGB, ZeroSaturationGivesGrey)
{
    for (long l = 0; l <= 240; l += 20) {
        long r, g, b;
        HLS2RGB(77, l, 0, &r, &g, &b);
        EXPECT_EQ(r, g);
        EXPECT_EQ(g, b);
        EXPECT_EQ(r, (l * 255 + 120) / 240);
    }
}

TEST(gun, FollowsTheFourHueBands)
{
    EXPECT_EQ(gun(0, 240, 0), 0);
    EXPECT_EQ(gun(0, 240, 20), 120);  // rising band
    EXPECT_EQ(gun(0, 240, 40), 240);  // flat top from 40
    EXPECT_EQ(gun(0, 240, 119), 240);
    EXPECT_EQ(gun(0, 240, 140), 120);  // falling band
    EXPECT_EQ(gun(0, 240, 160), 0);
    EXPECT_EQ(gun(0, 240, 240), 0);
}

TEST(gun, HueWrapsOnceIntoTheCircle)
{
    EXPECT_EQ(gun(0, 240, -220), gun(0, 240, 20));
    EXPECT_EQ(gun(0, 240, 260), gun(0, 240, 20));
    EXPECT_EQ(gun(10, 200, 300), gun(10, 200, 60));
}

TEST(gun, RoundsByAddingHalfTheDivisor)
{
    EXPECT_EQ(gun(0, 3, 10), 1);  // (30 + 20) / 40
    EXPECT_EQ(gun(0, 3, 6), 0);   // (18 + 20) / 40
    EXPECT_EQ(gun(0, 3, 7), 1);   // (21 + 20) / 40
}

// Hue has 40 steps per sixth of the circle, so the middle channel of a colour comes back less
// exactly than the brightest and darkest ones, which lightness and saturation carry.
TEST(HLS, RgbRoundTripKeepsTheOuterChannelsWithinTwoLevels)
{
    for (long r = 0; r <= 255; r += 15) {
        for (long g = 0; g <= 255; g += 15) {
            for (long b = 0; b <= 255; b += 15) {
                long h, l, s;
                RGB2HLS(r, g, b, &h, &l, &s);
                ASSERT_GE(h, 0);
                ASSERT_LE(h, 240);
                ASSERT_GE(l, 0);
                ASSERT_LE(l, 240);
                ASSERT_GE(s, 0);
                ASSERT_LE(s, 240);
                long back[3];
                HLS2RGB(h, l, s, &back[0], &back[1], &back[2]);
                long in[3] = {r, g, b};
                int brightest = int(std::max_element(in, in + 3) - in);
                int darkest = int(std::min_element(in, in + 3) - in);
                for (int i = 0; i < 3; i++) {
                    long limit = i == brightest || i == darkest ? 2 : 5;
                    EXPECT_LE(std::labs(back[i] - in[i]), limit) << r << "," << g << "," << b;
                }
            }
        }
    }
}

TEST(HLS, HlsRoundTripKeepsLightnessExactly)
{
    for (long h = 0; h <= 240; h += 12) {
        for (long l = 0; l <= 240; l += 12) {
            for (long s = 0; s <= 240; s += 12) {
                long r, g, b, h2, l2, s2;
                HLS2RGB(h, l, s, &r, &g, &b);
                ASSERT_GE(std::min({r, g, b}), 0);
                ASSERT_LE(std::max({r, g, b}), 255);
                RGB2HLS(r, g, b, &h2, &l2, &s2);
                EXPECT_EQ(l2, l) << h << "," << l << "," << s;
            }
        }
    }
}

TEST(HLS, PrimaryColoursRoundTripExactly)
{
    long colours[][3] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}, {0, 0, 0}};
    for (auto& c : colours) {
        long h, l, s, r, g, b;
        RGB2HLS(c[0], c[1], c[2], &h, &l, &s);
        HLS2RGB(h, l, s, &r, &g, &b);
        EXPECT_EQ(r, c[0]);
        EXPECT_EQ(g, c[1]);
        EXPECT_EQ(b, c[2]);
    }
}
