// Picture adjustments that change each colour on its own: video-safe colours, contrast and
// brightness, and tinting. All three work on 24- and 32-bit images in place, touch only the blue,
// green and red bytes of each pixel (alpha and row padding stay as they are) and do nothing at
// other depths or without pixels.

#include <algorithm>
#include <array>
#include <cstdint>

#include "image/cdib.h"
#include "platform/util/colour.h"

namespace {

// The colour range a video signal carries without clipping. A picture whose every channel lies
// inside it is left alone; one channel outside makes the whole picture compressed.
constexpr int kSafeLow = 18;
constexpr int kSafeHigh = 234;

// One value per byte: a channel c becomes table[c].
using ChannelTable = std::array<uint8_t, 256>;

// Replaces the blue, green and red byte of every pixel of every storage row through the table.
void MapColours(CDIB& image, int pixelBytes, const ChannelTable& table)
{
    int width = image.GetWid();
    for (int row = 0; row < image.GetHgt(); ++row) {
        unsigned char* pixel = image.GetBitsAdd(row);
        for (int x = 0; x < width; ++x, pixel += pixelBytes) {
            pixel[0] = table[pixel[0]];
            pixel[1] = table[pixel[1]];
            pixel[2] = table[pixel[2]];
        }
    }
}

// True when a blue, green or red byte of some pixel lies outside kSafeLow..kSafeHigh. Rows are
// searched from storage row 0 and the search stops at the first such byte.
bool HasUnsafeColour(const CDIB& image, int pixelBytes)
{
    int width = image.GetWid();
    for (int row = 0; row < image.GetHgt(); ++row) {
        const unsigned char* pixel = image.GetBitsAdd(row);
        for (int x = 0; x < width; ++x, pixel += pixelBytes)
            for (int channel = 0; channel < 3; ++channel)
                if (pixel[channel] < kSafeLow || pixel[channel] > kSafeHigh)
                    return true;
    }
    return false;
}

}  // namespace

void CDIB::VideoColors()
{
    int pixelBytes = PixelBytes();
    if (!HasPixels() || (pixelBytes != 3 && pixelBytes != 4))
        return;
    // An already safe picture is not squeezed a second time: loading the same picture twice must
    // give the same look.
    if (!HasUnsafeColour(*this, pixelBytes))
        return;

    // (c × 86 + 1548) / 100 in whole numbers: 0 becomes 15, 128 becomes 125, 255 becomes 234.
    ChannelTable table{};
    for (int c = 0; c < 256; ++c)
        table[c] = static_cast<uint8_t>((c * 86 + 1548) / 100);
    MapColours(*this, pixelBytes, table);
}

void CDIB::Contrast(int contrast, int brightness)
{
    int pixelBytes = PixelBytes();
    if (!HasPixels() || (pixelBytes != 3 && pixelBytes != 4))
        return;

    // Both settings run 0..100 with 50 neutral. The gain steepens the curve; the −128 term keeps
    // its middle near mid-grey as the gain grows, and brightness moves it by up to ±92. Worked out
    // in single precision: the truncation below depends on it.
    float gain = static_cast<float>(contrast) / 50.0f;
    float offset = static_cast<float>(brightness - 50) / 50.0f * 92.0f +
                   static_cast<float>(contrast - 50) / 50.0f * -128.0f;

    ChannelTable table{};
    for (int c = 0; c < 256; ++c) {
        float x = static_cast<float>(c) * gain + offset;
        if (x >= 255.0f)
            table[c] = 255;
        else if (x > 0.0f)
            table[c] = static_cast<uint8_t>(x);  // truncation toward zero
        else
            table[c] = 0;
    }
    MapColours(*this, pixelBytes, table);
}

void CDIB::Tint(long colour)
{
    int pixelBytes = PixelBytes();
    if (!HasPixels() || (pixelBytes != 3 && pixelBytes != 4))
        return;

    long tintHue = 0;
    long tintLightness = 0;
    long tintSaturation = 0;
    RGB2HLS(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF, &tintHue, &tintLightness,
            &tintSaturation);

    // A pixel keeps only its own lightness, so its new colour depends on that alone: the 241
    // possible results are worked out once. Entry l holds blue, green, red.
    constexpr long kMaxLightness = 240;
    std::array<std::array<uint8_t, 3>, kMaxLightness + 1> byLightness{};
    for (long l = 0; l <= kMaxLightness; ++l) {
        long red = 0;
        long green = 0;
        long blue = 0;
        HLS2RGB(tintHue, l, tintSaturation, &red, &green, &blue);
        byLightness[static_cast<size_t>(l)] = {static_cast<uint8_t>(std::clamp(blue, 0L, 255L)),
                                               static_cast<uint8_t>(std::clamp(green, 0L, 255L)),
                                               static_cast<uint8_t>(std::clamp(red, 0L, 255L))};
    }

    int width = GetWid();
    for (int row = 0; row < GetHgt(); ++row) {
        unsigned char* pixel = GetBitsAdd(row);
        for (int x = 0; x < width; ++x, pixel += pixelBytes) {
            long hue = 0;
            long lightness = 0;
            long saturation = 0;
            RGB2HLS(pixel[2], pixel[1], pixel[0], &hue, &lightness, &saturation);
            const std::array<uint8_t, 3>& tinted =
                byLightness[static_cast<size_t>(std::clamp(lightness, 0L, kMaxLightness))];
            pixel[0] = tinted[0];
            pixel[1] = tinted[1];
            pixel[2] = tinted[2];
        }
    }
}
