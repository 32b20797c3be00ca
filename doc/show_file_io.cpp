// Show files on disk: read whole into memory and rebuilt, or written whole beside the old file
// and put in its place only once complete, so a failed save leaves the previous show readable.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "doc/cdoc.h"
#include "platform/base/replace_file.h"
#include "platform/file/cpfile.h"
#include "platform/file/paths.h"

namespace {

// The largest show file there can be: 64 pictures of 64 keys, an extra record and the trailer.
constexpr long kLargestShow = 28 + 64 * (266 + 56 * 64) + 266;
// CPFile answers reads in 16-bit counts: read in pieces below that.
constexpr long kReadPiece = 16384;

}  // namespace

ShowFileResult CDoc::OpenShowFile(const FSpec* file, bool gotoStart)
{
    CPFile in;
    if (file == nullptr || !in.Open(file, kFileRead))
        return ShowFileResult::kCantOpen;
    long length = std::min(in.GetFileLength(), kLargestShow);
    std::unique_ptr<char[]> bytes(new char[static_cast<size_t>(length) + 1]);
    long got = 0;
    while (got < length) {
        long piece = std::min(kReadPiece, length - got);
        if (in.Read(bytes.get() + got, piece) != piece)
            break;
        got += piece;
    }
    in.Close();
    // The magic decides before anything of the current show is touched.
    uint16_t magic = 0;
    if (got >= 2)
        std::memcpy(&magic, bytes.get(), 2);
    if (got < 8 || (magic != 0x1234 && magic != 0x3412))
        return ShowFileResult::kNotAShow;
    ClearShow();
    FSpec where = *file;
    LoadShow(&where, bytes.get(), got, gotoStart);
    return ShowFileResult::kOpened;
}

bool CDoc::WriteShowFile(const FSpec* file)
{
    char text[kMaxPathLength + 1];
    if (file == nullptr || !GetFSpecPath(file, text))
        return false;
    std::string path = text;
    FSpec where = *file;
    long size = SaveShow(&where, nullptr);
    std::unique_ptr<char[]> bytes(new char[static_cast<size_t>(size)]());
    bool wasDirty = dirty;
    long length = SaveShow(&where, bytes.get());

    if (!ReplaceFile(path, bytes.get(), static_cast<size_t>(length))) {
        dirty = wasDirty;
        return false;
    }
    return true;
}
