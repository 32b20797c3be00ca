// The small blur of colour or of alpha: one in-place pass of the 3 × 3 kernel
//   1 2 1
//   2 4 2
//   1 2 1
// divided by 16. Storage rows are visited from 0 upwards and pixels from left to right; the
// result for the window whose lower-left pixel is (row, column) goes to its centre
// (row + 1, column + 1). Because the pass works in place, the row before the centre's and the
// pixel to its left already hold blurred values when they are read: that slightly stronger,
// directional smoothing is the intended look. The outermost row and column on every side keep
// their values.

#include "image/cdib.h"

namespace {

// Blurs bytes kFirst .. kFirst + kCount − 1 of every pixel. With kKeepZero a byte that is 0 is
// left at 0 (its neighbours still read it). Pixels are kPixelBytes apart.
template <int kPixelBytes, int kFirst, int kCount, bool kKeepZero>
void BlurBytes(CDIB& image)
{
    int width = image.GetWid();
    int height = image.GetHgt();
    if (width < 3)
        return;
    for (int row = 0; row + 2 < height; ++row) {
        const unsigned char* first = image.GetBitsAdd(row);  // already blurred
        unsigned char* middle = image.GetBitsAdd(row + 1);
        const unsigned char* last = image.GetBitsAdd(row + 2);  // not yet blurred
        // The centre's left neighbour (as just written) and the centre itself, carried along
        // the row so that each new value is at hand for the next window.
        int left[kCount];
        int centre[kCount];
        for (int k = 0; k < kCount; ++k) {
            left[k] = middle[kFirst + k];
            centre[k] = middle[kPixelBytes + kFirst + k];
        }
        for (int column = 0; column + 2 < width; ++column) {
            for (int k = 0; k < kCount; ++k) {
                int at = column * kPixelBytes + kFirst + k;
                int right = middle[at + 2 * kPixelBytes];
                int value = centre[k];
                if (!kKeepZero || value != 0) {
                    int outer = first[at] + 2 * first[at + kPixelBytes] +
                                first[at + 2 * kPixelBytes] + last[at] +
                                2 * last[at + kPixelBytes] + last[at + 2 * kPixelBytes];
                    value = (outer + 2 * left[k] + 4 * value + 2 * right) >> 4;
                    middle[at + kPixelBytes] = static_cast<unsigned char>(value);
                }
                left[k] = value;
                centre[k] = right;
            }
        }
    }
}

}  // namespace

void CDIB::Blur(int /*unused*/)
{
    // The amount is accepted for the callers' sake; one pass is all there is.
    if (!HasPixels())
        return;
    if (GetBitCount() == 24)
        BlurBytes<3, 0, 3, false>(*this);
    else if (GetBitCount() == 32)
        BlurBytes<4, 0, 3, false>(*this);
}

int CDIB::BlurAlpha()
{
    // Softens a matte's edge without opening holes: transparent pixels stay transparent.
    if (!HasPixels() || GetBitCount() != 32)
        return 0;
    BlurBytes<4, 3, 1, true>(*this);
    // The number of storage rows whose centres were visited; no caller looks at it.
    return GetHgt() > 2 ? GetHgt() - 2 : 0;
}
