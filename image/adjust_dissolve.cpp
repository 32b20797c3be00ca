// Cross-dissolving two frames of the same size: transitions between pictures and the motion-blur
// mix of the renderer.

#include <cmath>
#include <cstring>

#include "image/cdib.h"

namespace {

// this = trunc(this × w + other × v) for the first kChannels bytes of every pixel; the two
// images have the same width and height, kOurs and kTheirs bytes per pixel.
template <int kOurs, int kTheirs, int kChannels>
void MixRows(CDIB& image, const CDIB& other, float w, float v)
{
    // Truncation toward zero; a mix of two bytes with weights that add up to one stays below 256.
    auto mix = [w, v](unsigned char ours, unsigned char theirs) {
        float mixed = static_cast<float>(ours) * w + static_cast<float>(theirs) * v;
        return static_cast<unsigned char>(static_cast<int>(mixed));
    };
    int width = image.GetWid();
    for (int row = 0; row < image.GetHgt(); ++row) {
        unsigned char* pixel = image.GetBitsAdd(row);
        const unsigned char* theirs = other.GetBitsAdd(row);
        if constexpr (kOurs == kTheirs && kOurs == kChannels) {
            // Every byte of the pixels is mixed: the row is one run of bytes.
            // Blocks of a fixed length through local copies let the compiler mix a whole block
            // at once; the remainder goes byte by byte.
            constexpr long kBlock = 16;
            long bytes = static_cast<long>(width) * kOurs;
            long at = 0;
            for (; at + kBlock <= bytes; at += kBlock) {
                unsigned char ours[kBlock];
                unsigned char others[kBlock];
                std::memcpy(ours, pixel + at, kBlock);
                std::memcpy(others, theirs + at, kBlock);
                for (long k = 0; k < kBlock; ++k)
                    ours[k] = mix(ours[k], others[k]);
                std::memcpy(pixel + at, ours, kBlock);
            }
            for (; at < bytes; ++at)
                pixel[at] = mix(pixel[at], theirs[at]);
        } else {
            for (int x = 0; x < width; ++x, pixel += kOurs, theirs += kTheirs)
                for (int channel = 0; channel < kChannels; ++channel)
                    pixel[channel] = mix(pixel[channel], theirs[channel]);
        }
    }
}

}  // namespace

void CDIB::Dissolve(CDIB* other, float t)
{
    int pixelBytes = PixelBytes();
    if (!HasPixels() || (pixelBytes != 3 && pixelBytes != 4))
        return;
    if (other == nullptr || !other->HasPixels())
        return;
    int otherBytes = other->PixelBytes();
    // The other frame may have the other of the two colour depths, never a palette or 5-5-5 one:
    // its blue, green and red bytes are read straight from its rows.
    if (otherBytes != 3 && otherBytes != 4)
        return;
    if (other->GetWid() != GetWid() || other->GetHgt() != GetHgt())
        return;

    // Cosine ease with the 3.1414 constant: t = 0 gives the other frame, t = 1 this one (cos of
    // 3.1414 is −1 in single precision). 3.1414 rather than π is intended: at t = 0.5 this frame
    // weighs 0.49995, and every dissolve and motion-blur frame depends on exactly that.
    float w = 1.0f - (std::cos(3.1414f * t) + 1.0f) * 0.5f;
    if (!(w >= 0.0f && w <= 1.0f))
        return;  // t was not a number or infinite: there is no weight to blend with
    float v = 1.0f - w;

    // Alpha is mixed too only when both frames carry it.
    if (pixelBytes == 3 && otherBytes == 3)
        MixRows<3, 3, 3>(*this, *other, w, v);
    else if (pixelBytes == 3)
        MixRows<3, 4, 3>(*this, *other, w, v);
    else if (otherBytes == 3)
        MixRows<4, 3, 3>(*this, *other, w, v);
    else
        MixRows<4, 4, 4>(*this, *other, w, v);
}
