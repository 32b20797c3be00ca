#pragma once
// What the picture reader fuzz targets share: the input put into a file that CPFile opens (on
// the memory file system when there is one), and the checks every loaded image must pass.

#include <fcntl.h>
#include <unistd.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "image/cdib.h"
#include "platform/file/cpfile.h"
#include "platform/file/fspec.h"

namespace pxfuzz {

inline void Check(bool condition)
{
    if (!condition)
        __builtin_trap();
}

// A file of this process, removed at exit: "<folder>/px-fuzz-<pid>-<name>".
class ScratchFile {
public:
    explicit ScratchFile(const char* name)
    {
        const char* folder = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : nullptr;
        if (folder == nullptr)
            folder = std::getenv("TMPDIR") != nullptr ? std::getenv("TMPDIR") : "/tmp";
        path_ = std::string(folder) + "/px-fuzz-" + std::to_string(getpid()) + "-" + name;
        spec_ = FSpec{};
        spec_.vRefNum = kPathFormMarker;
        spec_.parID = kPathFormMarker;
        std::snprintf(spec_.name, sizeof spec_.name, "%s", path_.c_str());
    }
    ~ScratchFile() { unlink(path_.c_str()); }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    // Replaces the file's contents with the bytes.
    void Write(const uint8_t* data, size_t size)
    {
        int descriptor = open(path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        Check(descriptor >= 0);
        size_t done = 0;
        while (done < size) {
            ssize_t put = write(descriptor, data + done, size - done);
            Check(put > 0);
            done += static_cast<size_t>(put);
        }
        close(descriptor);
    }
    // Empties the file, so that a writer starts on nothing.
    void Clear() { Write(nullptr, 0); }
    FSpec* Spec() { return &spec_; }

private:
    std::string path_;
    FSpec spec_;
};

// A reader's answer is one of the result codes, and a loaded image is whole: a header, pixels,
// sides within 1..8192, a depth the program uses. The first and last byte of every row are read,
// so that the sanitizers see any row that is not really there (the rows are one block).
inline void CheckResult(int code, const CDIB& image)
{
    Check(code >= 0 && code <= 6);
    if (code != 0)
        return;
    Check(image.header != nullptr && image.bits != nullptr);
    Check(image.GetWid() >= 1 && image.GetWid() <= kMaxImageSide);
    Check(image.GetHgt() >= 1 && image.GetHgt() <= kMaxImageSide);
    const int bits = image.GetBitCount();
    Check(bits == 8 || bits == 16 || bits == 24 || bits == 32);
    const long rowBytes = image.GetRowBytes();
    Check(rowBytes >= image.GetWid() * (bits / 8));
    unsigned sum = 0;
    for (int row = 0; row < image.GetHgt(); ++row) {
        const unsigned char* line = image.GetBitsAdd(row);
        sum += line[0] + line[rowBytes - 1];
    }
    volatile unsigned keep = sum;
    (void)keep;
}

// The most pixel bytes a picture loaded by a fuzz target may have.
constexpr long kLargestFuzzPicture = 256L << 10;

// The image the fuzz targets read into. A few header bytes can ask for an 8192 x 8192 picture
// (256 MB to allocate and clear, and to save and read back), which takes the fuzzer's time
// without reaching code that a small picture does not. A picture above kLargestFuzzPicture is
// refused here as a Create without memory is, so the readers still run their out-of-memory path
// (code 6) for it; the image keeps what it held, and a reader that wrote into it anyway would be
// caught by the sanitizers.
class FuzzDIB : public CDIB {
public:
    FuzzDIB(long width, long height, int bitsPerPixel) : CDIB(width, height, bitsPerPixel) {}
    bool Create(long width, long height, int bitsPerPixel) override
    {
        const bool valid =
            width >= 1 && width <= kMaxImageSide && height >= 1 && height <= kMaxImageSide;
        if (valid &&
            width * height * (bitsPerPixel > 8 ? bitsPerPixel / 8 : 1) > kLargestFuzzPicture)
            return false;
        return CDIB::Create(width, height, bitsPerPixel);
    }
};

// True when both images hold the same rows, padding included.
inline bool SameRows(const CDIB& a, const CDIB& b)
{
    if (a.GetWid() != b.GetWid() || a.GetHgt() != b.GetHgt() || a.GetBitCount() != b.GetBitCount())
        return false;
    const size_t rowBytes = static_cast<size_t>(a.GetRowBytes());
    for (int row = 0; row < a.GetHgt(); ++row)
        if (std::memcmp(a.GetBitsAdd(row), b.GetBitsAdd(row), rowBytes) != 0)
            return false;
    return true;
}

}  // namespace pxfuzz
