// One output frame of the show: the picture on screen, its camera, the camera filter, fields,
// motion blur and the letterbox bars.

#include <algorithm>

#include "doc/cdoc.h"
#include "doc/frame_math.h"
#include "doc/globals.h"
#include "image/picture_import.h"

namespace {

constexpr int kLetterboxMode = 5626;
constexpr int kPlaceholderPicture = 133;
constexpr int kOutsideGrey = 17;

// Field codes of the camera filter: row step 1 with or without the half-row shift, and the two
// fields of an interlaced frame rendered separately.
constexpr int kWholeFrame = 0;
constexpr int kHalfRowLater = 1;
constexpr int kEvenRows = 10;
constexpr int kOddRows = 11;

// Moves a picture's last key later for the length of one render, and back on every way out.
class LastKeyExtension {
public:
    LastKeyExtension(KeyStruct* keys, int count, long extension)
        : key_(count > 0 ? &keys[count - 1] : nullptr), extension_(extension)
    {
        if (key_ != nullptr)
            key_->Frame = FrameOf(static_cast<double>(key_->Frame) + extension_);
    }
    ~LastKeyExtension()
    {
        if (key_ != nullptr)
            key_->Frame = FrameOf(static_cast<double>(key_->Frame) - extension_);
    }
    LastKeyExtension(const LastKeyExtension&) = delete;
    LastKeyExtension& operator=(const LastKeyExtension&) = delete;

private:
    KeyStruct* key_;
    long extension_;
};

// Rows of the letterbox bars at the top and at the bottom of a frame.
int LetterboxRows(int width, int height)
{
    double bars = (height + height / (width * 0.75) * (width * -0.5625)) * 0.5 + 0.5;
    return std::clamp(static_cast<int>(bars), 0, height / 2);
}

void PaintBarRow(CDIB* out, int row)
{
    unsigned char* pixel = out->GetBitsAdd(row);
    int pixelBytes = out->GetBitCount() / 8;
    for (int x = 0; x < out->GetWid(); ++x, pixel += pixelBytes) {
        std::fill(pixel, pixel + pixelBytes, static_cast<unsigned char>(kOutsideGrey));
        if (pixelBytes == 4)
            pixel[3] = 255;
    }
}

// The built-in placeholder picture scaled over the whole frame. It is decoded once: a movie of a
// show with a missing picture shows it in every frame of that picture.
bool RenderPlaceholder(CDIB* out)
{
    static CDIB placeholder(1, 1, 24);
    static const bool decoded = BitmapToDIB(&placeholder, kPlaceholderPicture);
    return decoded && placeholder.CopyScale(out, 0, 0);
}

}  // namespace

int CDoc::LetterboxBarRows(int width, int height) const
{
    return aspectMode == kLetterboxMode && width > 0 && height > 0 ? LetterboxRows(width, height)
                                                                   : 0;
}

bool CDoc::SecondFieldFlag(bool secondField) const
{
    bool flag = secondField != fieldSwap;
    return gFrameRate >= 2401 && gFrameRate <= 4000 ? flag : false;
}

bool CDoc::FilterCamera(CDIB* out, int pic, long frame, bool secondField, int quality,
                        int fieldCode)
{
    float aspect = aspectMode == kLetterboxMode ? 0.75f : aspectRatio;
    KeyStruct camera;
    QueueKey(&camera, pic, frame, secondField ? 1 : 0);
    float sourceHeight = static_cast<float>(image.GetHgt());
    float left = camera.XPos - camera.Width / 2;
    // The key's centre counts picture rows down from the top; the filter's window counts storage
    // rows up from the bottom. Its first storage row is the flipped centre (height - YPos) less
    // half the frame's height: the window's bottom edge on the picture.
    float top = sourceHeight - camera.YPos - aspect * camera.Width / 2;
    float height = aspect * camera.Width;
    return out->FilterCropMulti(&image, left, top, camera.Width, height, camera.Rotation,
                                camera.Rot2, camera.Rot3, quality, fieldCode);
}

bool CDoc::RenderFrame(long frame, int fieldMode, bool oddField, int width, int height, CDIB* out,
                       bool outgoing)
{
    if (out == nullptr || width < 1 || width > kMaxImageSide || height < 1 ||
        height > kMaxImageSide)
        return false;
    int quality = draftRender ? 0 : 100;
    frame = std::max(frame, 0L);
    int pic = FindCurPic(frame);

    long extension = 0;
    if (picCount > 1) {
        long transition = FrameOfFloat(keys[pic][0].TransLen);
        if (frame < GetPicStart(pic) + transition && pic > 0 && outgoing) {
            pic -= 1;
            extension = transition;
        } else {
            extension = pic < picCount - 1 ? FrameOfFloat(keys[pic + 1][0].TransLen) : transition;
        }
    }
    {
        LastKeyExtension moving(keys[pic], keyCount[pic], extension);
        LoadPictureBuffer(pic, true);
        if (curPic != pic)
            return false;
        // A picture that could not be read shows as the placeholder in every one of its frames,
        // and only in its own.
        if (picLoadState != 1)
            return RenderPlaceholder(out);
        bool second = SecondFieldFlag(fieldMode == 2);
        bool filtered;
        if (fieldMode == 3) {
            // Both fields into one image, each pass writing its own rows; the second pass takes
            // the camera of the other field.
            filtered = FilterCamera(out, pic, frame, second, quality, kEvenRows) &&
                       FilterCamera(out, pic, frame, SecondFieldFlag(true), quality, kOddRows);
        } else {
            int fieldCode = kWholeFrame;
            if (fieldMode != 0 && flopTopField == oddField)
                fieldCode = kHalfRowLater;
            filtered = FilterCamera(out, pic, frame, second, quality, fieldCode);
        }
        if (!filtered)
            return false;
    }

    if (blurFrames != 0) {
        // The sample half a frame earlier, mixed in at one half.
        long savedBlur = blurFrames;
        blurFrames = 0;
        CDIB earlier(width, height, 32);
        bool rendered = false;
        switch (fieldMode) {
        case 0:
        case 1:
            rendered = RenderFrame(frame - 1, 2, oddField, width, height, &earlier, outgoing);
            break;
        case 2:
            rendered = RenderFrame(frame, 1, oddField, width, height, &earlier, outgoing);
            break;
        default:
            rendered = RenderFrame(frame, fieldMode, oddField, width, height, &earlier, outgoing);
            break;
        }
        blurFrames = savedBlur;
        if (!rendered)
            return false;
        out->Dissolve(&earlier, 0.5f);
    }

    if (aspectMode == kLetterboxMode) {
        int bars = LetterboxRows(width, height);
        int rows = out->GetHgt();
        for (int row = 0; row < bars && row < rows; ++row) {
            PaintBarRow(out, row);
            PaintBarRow(out, rows - 1 - row);
        }
    }
    return true;
}
