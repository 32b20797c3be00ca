// Loading a picture file: recognising its format, and the file-level loader that opens the file,
// reports failures in message boxes or puts the placeholder picture in the picture's place.

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "image/cdib.h"
#include "image/picture_import.h"
#include "image/picture_read.h"
#include "platform/base/env.h"
#include "platform/dialog/message_box.h"
#include "platform/file/cpfile.h"
#include "platform/file/paths.h"
#include "platform/picture/resource_picture.h"
#include "platform/util/text.h"

namespace {

constexpr int kMarkBytes = 14;

bool StartsWith(const unsigned char* bytes, const char* mark)
{
    return std::memcmp(bytes, mark, std::strlen(mark)) == 0;
}

// The other platform's build names JPEG files by their extension as well as their JFIF mark.
bool HasJpegName(const char* name)
{
    return std::strstr(name, ".jpg") != nullptr || std::strstr(name, ".JPG") != nullptr ||
           std::strstr(name, ".jpeg") != nullptr || std::strstr(name, ".JPEG") != nullptr;
}

// Characters of a record's name: a name read from a show file may fill the record unterminated.
int NameLength(const FSpec& spec) { return static_cast<int>(strnlen(spec.name, kFSpecNameSize)); }

// The path of the file named like `file` (its leaf, without any folders) in `folder`.
bool SameNameIn(const FSpec* folder, const FSpec* file, FSpec* out)
{
    char folderPath[kMaxPathLength + 1] = {};
    if (IsPathForm(*folder)) {
        std::snprintf(folderPath, sizeof folderPath, "%.*s", NameLength(*folder), folder->name);
    } else {
        NativeFileRef ref;
        if (!CopyToMacFSSpec(&ref, folder) || !GetPathFromFSSpec(&ref, folderPath))
            return false;
    }
    char leaf[kFSpecNameSize];
    std::snprintf(leaf, sizeof leaf, "%.*s", NameLength(*file), file->name);
    StripFilePath(leaf);
    if (folderPath[0] == '\0' || leaf[0] == '\0')
        return false;
    const size_t length = std::strlen(folderPath);
    const char* separator = folderPath[length - 1] == '/' ? "" : "/";
    out->vRefNum = kPathFormMarker;
    out->parID = kPathFormMarker;
    int written = std::snprintf(out->name, sizeof out->name, "%s%s%s", folderPath, separator, leaf);
    return written > 0 && written < static_cast<int>(sizeof out->name);
}

// The message for a reader's result code. Codes 3 and 4 (and any the table does not know) show
// their number; the others are plain sentences.
void ShowLoadError(int code)
{
    switch (code) {
    case kPictureCompressed:
        ErrorBox("Can't read compressed images", kNoErrorNumber);
        return;
    case kPictureTooLarge: {
        char text[64];
        std::snprintf(text, sizeof text, "Images must be smaller than %d pixels",
                      static_cast<int>(kMaxImageSide));
        ErrorBox(text, kNoErrorNumber);
        return;
    }
    case kPictureFewColours:
        ErrorBox("Images must have 256 colors or more", kNoErrorNumber);
        return;
    case kPictureNoMemory:
        ErrorBox("Not enough memory to load image", kNoErrorNumber);
        return;
    default:
        ErrorBox("Can't read image file", code);
        return;
    }
}

}  // namespace

int CDIB::Load(CPFile* file)
{
    if (header == nullptr)
        return kPictureNoTarget;
    if (file == nullptr)
        return kPictureUnreadable;

    // The first bytes decide; a file shorter than them is looked at as far as it goes.
    unsigned char mark[kMarkBytes] = {};
    const long have = std::min<long>(kMarkBytes, file->GetFileLength());
    file->Seek(0, kSeekFromStart);
    if (have > 0)
        ReadExact(file, mark, have);

    if (gWin32) {
        if (StartsWith(mark + 6, "JFIF") || HasJpegName(file->GetFSpec()->name))
            return LoadJpeg(file);
        return LoadTga(file);
    }
    if (StartsWith(mark, "8BPS") || StartsWith(mark, "SPB8"))
        return LoadPsd(file);
    if (StartsWith(mark, "II") || StartsWith(mark, "MM")) {
        // A TIFF variant the reader refuses may still be one the platform decodes; when it does
        // not either, the reader's refusal is the answer (and so the message).
        const int code = LoadTif(file);
        if (code == kPictureLoaded || MacLoadPict(this, file) != kPictureLoaded)
            return code;
        return kPictureLoaded;
    }
    if (StartsWith(mark, "BM") || StartsWith(mark, "MB"))
        return LoadBmp(file);
    // Targa files carry no mark: whatever the Targa reader refuses goes to the platform.
    if (LoadTga(file) == kPictureLoaded)
        return kPictureLoaded;
    return MacLoadPict(this, file);
}

int CDIB::Load(FSpec* file, FSpec* alternativeFolder, bool showErrors)
{
    if (gGetImageFromTimeline)
        return GetSourceImage(this);

    // The picture's own place first, then the same name in the alternative folder (pictures
    // moved together with their show).
    CPFile picture;
    bool opened = file != nullptr && picture.Open(file, kFileRead);
    if (!opened && file != nullptr && alternativeFolder != nullptr &&
        alternativeFolder->name[0] != '\0') {
        FSpec moved{};
        if (SameNameIn(alternativeFolder, file, &moved))
            opened = picture.Open(&moved, kFileRead);
    }
    if (!opened) {
        if (showErrors) {
            ErrorBox("Can't open graphics file", kNoErrorNumber);
            return 0;
        }
        BitmapToDIB(this, kPlaceholderPicture);
        return 2;
    }

    const int code = Load(&picture);
    picture.Close();
    if (code == kPictureLoaded)
        return 1;
    if (showErrors) {
        ShowLoadError(code);
        return 0;
    }
    BitmapToDIB(this, kPlaceholderPicture);
    return 2;
}
