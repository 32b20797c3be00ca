// Fuzzes the show reader: any bytes as a show file, read into a cleared document, then one small
// frame rendered and the show saved again. Pictures named by the input are loaded like any show's;
// the seeds name a small picture this target writes at start-up, files that do not exist, and
// /dev/zero.

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "doc/cdoc.h"
#include "platform/base/env.h"
#include "platform/ini/settings.h"

namespace {

// Where the seeds expect their picture.
const char* const kPicturePath = "/tmp/parallaxotron-show-fuzz/picture.bmp";

void WriteLittle(std::FILE* file, uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        std::fputc(static_cast<int>((value >> (8 * i)) & 0xFF), file);
}

// A 24 x 16 picture of coloured stripes.
void WritePicture()
{
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(kPicturePath).parent_path(), error);
    std::FILE* file = std::fopen(kPicturePath, "wb");
    if (file == nullptr)
        return;
    const uint32_t width = 24;
    const uint32_t height = 16;
    const uint32_t rowBytes = width * 3;
    std::fputs("BM", file);
    WriteLittle(file, 54 + rowBytes * height, 4);
    WriteLittle(file, 0, 4);
    WriteLittle(file, 54, 4);
    WriteLittle(file, 40, 4);
    WriteLittle(file, width, 4);
    WriteLittle(file, height, 4);
    WriteLittle(file, 1, 2);
    WriteLittle(file, 24, 2);
    for (int i = 0; i < 6; ++i)
        WriteLittle(file, 0, 4);
    for (uint32_t y = 0; y < height; ++y)
        for (uint32_t x = 0; x < width; ++x) {
            std::fputc(static_cast<int>(x * 10), file);
            std::fputc(static_cast<int>(y * 15), file);
            std::fputc(static_cast<int>((x + y) * 5), file);
        }
    std::fclose(file);
}

CDoc& Document()
{
    static std::unique_ptr<CDoc> doc = [] {
        SetEnvName("Parallaxotron");
        std::string settings = "[Parallaxotron]\r\nShowPicError=0\r\nBlurFrames=1\r\n";
        LoadIniText(settings.data(), settings.size());
        WritePicture();
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
    if (!doc.LoadShow(nullptr, reinterpret_cast<const char*>(data), static_cast<long>(size), false))
        return 0;
    CDIB frame(16, 12, 32);
    doc.RenderFrame(static_cast<long>(size % 97), static_cast<int>(size % 4), (size & 1) != 0, 16, 12,
                    &frame, (size & 2) != 0);
    long needed = doc.SaveShow(nullptr, nullptr);
    if (needed < 28 || needed > 28 + 65 * (266 + 56 * 64))
        __builtin_trap();
    std::vector<char> saved(static_cast<size_t>(needed));
    if (doc.SaveShow(nullptr, saved.data()) != needed)
        __builtin_trap();
    return 0;
}
