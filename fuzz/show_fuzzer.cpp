// Fuzzes the show reader: any bytes as a show file, read into a cleared document, then one small
// frame rendered and the show saved again.
//
// It has to run well over a thousand inputs a second, so every input stays cheap: pictures are
// tiny, one 16 x 12 frame is rendered (with motion blur: two passes), and picture files are read
// only for small inputs. The show identifier's first byte (offset 2), which the reader only
// stores, chooses how the pictures named by the input come in:
//   odd, and the input at most kMostBytesWithFiles long (a few pictures): from the files
//         themselves, with an alternative folder set (a file missing from its own place is looked
//         for there) and "ShowPicError" on; the messages are answered by script. The seeds name
//         a 4 x 3 picture this target writes at start-up (also found through the alternative
//         folder), files that do not exist, and /dev/zero.
//   otherwise: through the host-timeline seam, "ShowPicError" off: in turn a 4 x 3 picture, a
//         failure replaced by the placeholder, and a failure. The document handles each as it
//         would a file, for up to 64 pictures, without a file being opened or a 320 x 240
//         placeholder prepared for each.

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "doc/cdoc.h"
#include "image/picture_import.h"
#include "platform/base/env.h"
#include "platform/dialog/message_box.h"
#include "platform/ini/settings.h"

namespace {

// Where the seeds expect their picture, and the alternative folder holding a copy of it.
const char* const kPicturePath = "/tmp/parallaxotron-show-fuzz/picture.bmp";
const char* const kMovedFolder = "/tmp/parallaxotron-show-fuzz/moved";
const char* const kMovedPicturePath = "/tmp/parallaxotron-show-fuzz/moved/picture.bmp";

constexpr int kPictureWidth = 4;
constexpr int kPictureHeight = 3;
constexpr int kFrameWidth = 16;
constexpr int kFrameHeight = 12;
// More message boxes than one input can raise: a show has at most 64 pictures, and the frame
// loads at most three more.
constexpr int kScriptedAnswers = 80;
// Inputs read with picture files hold at most three or four pictures.
constexpr size_t kMostBytesWithFiles = 1024;

void WriteLittle(std::FILE* file, uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        std::fputc(static_cast<int>((value >> (8 * i)) & 0xFF), file);
}

// A small 24-bit BMP of coloured pixels.
void WritePicture(const char* path)
{
    std::FILE* file = std::fopen(path, "wb");
    if (file == nullptr)
        return;
    const uint32_t rowBytes = (kPictureWidth * 3 + 3) / 4 * 4;
    std::fputs("BM", file);
    WriteLittle(file, 54 + rowBytes * kPictureHeight, 4);
    WriteLittle(file, 0, 4);
    WriteLittle(file, 54, 4);
    WriteLittle(file, 40, 4);
    WriteLittle(file, kPictureWidth, 4);
    WriteLittle(file, kPictureHeight, 4);
    WriteLittle(file, 1, 2);
    WriteLittle(file, 24, 2);
    for (int i = 0; i < 6; ++i)
        WriteLittle(file, 0, 4);
    for (int y = 0; y < kPictureHeight; ++y) {
        for (int x = 0; x < kPictureWidth; ++x) {
            std::fputc(x * 60, file);
            std::fputc(y * 80, file);
            std::fputc((x + y) * 30, file);
        }
        for (uint32_t pad = kPictureWidth * 3; pad < rowBytes; ++pad)
            std::fputc(0, file);
    }
    std::fclose(file);
}

// The host timeline's pictures: loaded, placeholder and failed in turn.
int gHostPictures = 0;

int HostPicture(CDIB* target)
{
    int turn = gHostPictures++ % 3;
    if (turn == 2)
        return 0;
    if (target == nullptr || !target->Create(kPictureWidth, kPictureHeight, 24))
        return 0;
    for (int row = 0; row < kPictureHeight; ++row)
        std::memset(target->GetBitsAdd(row), 40 + row * 50,
                    static_cast<size_t>(target->GetRowBytes()));
    return turn == 0 ? 1 : 2;
}

CDoc& Document()
{
    static std::unique_ptr<CDoc> doc = [] {
        SetEnvName("Parallaxotron");
        std::error_code error;
        std::filesystem::create_directories(kMovedFolder, error);
        WritePicture(kPicturePath);
        WritePicture(kMovedPicturePath);
        std::string settings = std::string("[Parallaxotron]\r\nBlurFrames=1\r\nAltImageFolder=") +
                               kMovedFolder + "\r\n";
        LoadIniText(settings.data(), settings.size());
        SetSourceImageProvider(HostPicture);
        return std::make_unique<CDoc>();
    }();
    return *doc;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    CDoc& doc = Document();
    doc.ClearShow();
    doc.showLength = 1800;
    bool fromFiles = size <= kMostBytesWithFiles && (size < 3 || (data[2] & 1) != 0);
    gGetImageFromTimeline = !fromFiles;
    doc.showPicError = fromFiles;
    gHostPictures = size > 3 ? data[3] : 0;
    ClearMessageBoxScript();
    for (int i = 0; fromFiles && i < kScriptedAnswers; ++i)
        PushMessageBoxAnswer(kBoxYes);

    if (doc.LoadShow(nullptr, reinterpret_cast<const char*>(data), static_cast<long>(size),
                     false)) {
        CDIB frame(kFrameWidth, kFrameHeight, 32);
        doc.RenderFrame(static_cast<long>(size % 97), static_cast<int>(size % 4), (size & 1) != 0,
                        kFrameWidth, kFrameHeight, &frame, (size & 2) != 0);
        long needed = doc.SaveShow(nullptr, nullptr);
        if (needed < 28 || needed > 28 + 65 * (266 + 56 * 64))
            __builtin_trap();
        std::unique_ptr<char[]> saved(new char[static_cast<size_t>(needed)]);
        if (doc.SaveShow(nullptr, saved.get()) != needed)
            __builtin_trap();
    }
    ClearMessageBoxScript();
    gGetImageFromTimeline = false;
    return 0;
}
