// The platform picture import path, the built-in pictures and the JPEG library interface.

#include "image/picture_import.h"

#include <memory>
#include <new>

#include "image/cdib.h"
#include "image/picture_read.h"
#include "platform/file/cpfile.h"
#include "platform/picture/importer.h"
#include "platform/picture/resource_picture.h"

bool gGetImageFromTimeline = false;

namespace {

// Files read through memory (a CPFile with no path) above this size are refused as too big to
// hold twice; a picture file of this size would decode to far more than 8192 × 8192 allows.
constexpr long kMaxImportBytes = 256L * 1024 * 1024;

SourceImageProvider gSourceImageProvider = nullptr;

// Rows of a 32-bit CDIB as the importer wants them: top line first, so the step is one row
// downwards in storage (storage row 0 is the bottom line).
class DIBRows : public PictureRows {
public:
    explicit DIBRows(CDIB* target) : target_(target) {}
    unsigned char* AllocateRows(int width, int height, long* lineStep) override
    {
        if (!target_->Create(width, height, 32))
            return nullptr;
        *lineStep = -target_->GetRowBytes();
        return target_->GetBitsAdd(height - 1);
    }

private:
    CDIB* target_;
};

int ResultOf(ImportResult result)
{
    switch (result) {
    case kImportDone:
        return kPictureLoaded;
    case kImportTooLarge:
        return kPictureTooLarge;
    case kImportNoMemory:
        return kPictureNoMemory;
    case kImportUnreadable:
        break;
    }
    return kPictureUnreadable;
}

}  // namespace

int MacLoadPict(CDIB* target, CPFile* file)
{
    if (target == nullptr || target->header == nullptr)
        return kPictureNoTarget;
    if (file == nullptr || file->GetFileNum() == 0)
        return kPictureUnreadable;
    DIBRows rows(target);
    // An opened file knows its path, and the platform reads it from there; a file adopted by
    // its number alone is read through memory.
    const FSpec* spec = file->GetFSpec();
    if (IsPathForm(*spec) && spec->name[0] != '\0')
        return ResultOf(ImportPictureFile(spec->name, kMaxImageSide, &rows));

    const long length = file->GetFileLength();
    if (length <= 0)
        return kPictureUnreadable;
    if (length > kMaxImportBytes)
        return kPictureNoMemory;
    std::unique_ptr<unsigned char[]> bytes(new (std::nothrow) unsigned char[length]);
    if (!bytes)
        return kPictureNoMemory;
    file->Seek(0, kSeekFromStart);
    if (!ReadExact(file, bytes.get(), length))
        return kPictureUnreadable;
    return ResultOf(
        ImportPictureData(bytes.get(), static_cast<size_t>(length), kMaxImageSide, &rows));
}

int MacLoadPict(CDIB* target, const FSpec* file)
{
    if (target == nullptr || target->header == nullptr)
        return kPictureNoTarget;
    if (file == nullptr)
        return kPictureUnreadable;
    CPFile opened(file, kFileRead);
    return MacLoadPict(target, &opened);
}

bool BitmapToDIB(CDIB* target, int resourceId)
{
    if (target == nullptr || !HasResourcePicture(resourceId))
        return false;
    DIBRows rows(target);
    return LoadResourcePicture(resourceId, &rows) == kImportDone;
}

bool JP_DllInstalled() { return false; }

long JP_JpegToMem(CPFile*, unsigned char*, long, long*, long*) { return 0; }

int JP_JpegToDIB(CDIB*, CPFile*) { return 0; }

int JP_JpegFromDIB(CDIB*, CPFile*, int) { return 0; }

int CDIB::LoadJpeg(CPFile* file)
{
    if (header == nullptr)
        return kPictureNoTarget;
    if (!JP_DllInstalled())
        return kPictureUnreadable;
    return JP_JpegToDIB(this, file);
}

void SetSourceImageProvider(SourceImageProvider provider) { gSourceImageProvider = provider; }

int GetSourceImage(CDIB* target)
{
    return gSourceImageProvider != nullptr ? gSourceImageProvider(target) : 0;
}
