#include "platform/file/cpfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <climits>
#include <cstring>
#include <mutex>

#include "platform/base/file_types.h"
#include "platform/file/paths.h"

namespace {

// The table of open files: reference number -> descriptor. References count up from 1 and wrap
// before 32,767, skipping those in use, so a stale reference is unlikely to reach a newer file.
constexpr int kMaxOpenFiles = 256;

struct OpenFile {
    short reference;  // 0: the slot is free
    int descriptor;
};

struct OpenFileTable {
    std::mutex mutex;
    OpenFile files[kMaxOpenFiles];
    short nextReference = 1;
};

OpenFileTable& OpenFiles()
{
    static OpenFileTable table;
    return table;
}

bool ReferenceInUse(const OpenFileTable& table, short reference)
{
    for (const OpenFile& file : table.files)
        if (file.reference == reference)
            return true;
    return false;
}

// A new reference for `descriptor`; 0 when the table is full.
short AddOpenFile(int descriptor)
{
    OpenFileTable& table = OpenFiles();
    std::lock_guard<std::mutex> lock(table.mutex);
    for (OpenFile& slot : table.files) {
        if (slot.reference != 0)
            continue;
        short reference = table.nextReference;
        while (ReferenceInUse(table, reference))
            reference = reference == SHRT_MAX ? 1 : short(reference + 1);
        table.nextReference = reference == SHRT_MAX ? 1 : short(reference + 1);
        slot.reference = reference;
        slot.descriptor = descriptor;
        return reference;
    }
    return 0;
}

// The descriptor of `reference`; -1 when it names no open file.
int FindDescriptor(short reference)
{
    if (reference == 0)
        return -1;
    OpenFileTable& table = OpenFiles();
    std::lock_guard<std::mutex> lock(table.mutex);
    for (const OpenFile& file : table.files)
        if (file.reference == reference)
            return file.descriptor;
    return -1;
}

// Frees the slot of `reference` and answers its descriptor; -1 when it names no open file.
int RemoveOpenFile(short reference)
{
    if (reference == 0)
        return -1;
    OpenFileTable& table = OpenFiles();
    std::lock_guard<std::mutex> lock(table.mutex);
    for (OpenFile& file : table.files) {
        if (file.reference == reference) {
            file.reference = 0;
            return file.descriptor;
        }
    }
    return -1;
}

void CodeToText(uint32_t code, char text[4])
{
    text[0] = char(code >> 24);
    text[1] = char(code >> 16);
    text[2] = char(code >> 8);
    text[3] = char(code);
}

// Opens the data with the access the mode bits ask for; 0 takes the most the system allows.
// Non-blocking, so that a pipe never holds the open; the caller refuses what is not a plain file.
int OpenDescriptor(const char* path, int mode)
{
    int flags = O_CLOEXEC | O_NONBLOCK;
    switch (mode & (kFileRead | kFileWrite)) {
    case kFileRead:
        return open(path, flags | O_RDONLY);
    case kFileWrite:
        return open(path, flags | O_WRONLY);
    case kFileRead | kFileWrite:
        return open(path, flags | O_RDWR);
    default: {
        int descriptor = open(path, flags | O_RDWR);
        if (descriptor < 0)
            descriptor = open(path, flags | O_RDONLY);
        if (descriptor < 0)
            descriptor = open(path, flags | O_WRONLY);
        return descriptor;
    }
    }
}

}  // namespace

CPFile::CPFile()
    : reference_(0), fileType_(TypeCode("PXSH")), creatorType_(TypeCode("HLBK")), spec_{}
{
}

CPFile::CPFile(const FSpec* file, int mode) : CPFile() { Open(file, mode); }

CPFile::~CPFile() { Close(); }

void CPFile::SetFileType(uint32_t code)
{
    switch (code) {
    case 0:
        fileType_ = TypeCode("PXSH");
        break;
    case 1:
        fileType_ = TypeCode("TPIC");
        break;
    case 2:
        fileType_ = TypeCode("PXST");
        break;
    default:
        fileType_ = code;
        break;
    }
}

void CPFile::SetCreatorType(uint32_t code)
{
    switch (code) {
    case 0:
        creatorType_ = TypeCode("HLBK");
        break;
    case 1:
        creatorType_ = TypeCode("ogle");
        break;
    case 2:
        creatorType_ = TypeCode("HLBP");
        break;
    default:
        creatorType_ = code;
        break;
    }
}

bool CPFile::Open(const FSpec* file, int mode)
{
    Close();
    bool writing = (mode & kFileWrite) != 0;
    NativeFileRef ref;
    if (!CopyToMacFSSpec(&ref, file) && !writing)
        return false;

    CopyFromMacFSSpec(&spec_, &ref);
    const char* path = spec_.name;
    if (!*path)
        return false;

    if (writing) {
        // Only a file made here gets this object's type and creator; an existing one keeps its
        // own, its length and its contents.
        int created = open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (created >= 0) {
            close(created);
            char type[4];
            char creator[4];
            CodeToText(fileType_, type);
            CodeToText(creatorType_, creator);
            SetFileTypeAndCreator(path, type, creator);
        }
    }

    int descriptor = OpenDescriptor(path, mode);
    if (descriptor < 0)
        return false;
    struct stat info;
    if (fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
        close(descriptor);
        return false;
    }
    // Plain files never block; the flag is dropped so reads and writes behave as usual.
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    writeError_ = 0;
    reference_ = AddOpenFile(descriptor);
    if (reference_ == 0)
        close(descriptor);
    return reference_ != 0;
}

long CPFile::Read(char* buffer, long count)
{
    int descriptor = FindDescriptor(reference_);
    if (descriptor < 0 || !buffer || count < 0)
        return 0;
    long total = 0;
    while (total < count) {
        ssize_t got = read(descriptor, buffer + total, size_t(count - total));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return 0;
        total += got;
    }
    // Deliberately 16 bits: a read of 65,536 bytes or more reports the count modulo 65,536.
    return count & 0xFFFF;
}

long CPFile::Write(const char* buffer, long count)
{
    int descriptor = FindDescriptor(reference_);
    if (descriptor < 0 || !buffer || count <= 0) {
        if (count > 0 && writeError_ == 0)
            writeError_ = EBADF;
        return count;
    }
    long total = 0;
    while (total < count) {
        ssize_t put = write(descriptor, buffer + total, size_t(count - total));
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0) {
            // A write that takes nothing without an error is a full disk all the same.
            if (writeError_ == 0)
                writeError_ = put < 0 ? errno : ENOSPC;
            break;
        }
        total += put;
    }
    return count;
}

int CPFile::Seek(long offset, int origin)
{
    int descriptor = FindDescriptor(reference_);
    if (descriptor < 0)
        return 1;
    switch (origin) {
    case kSeekFromStart:
        lseek(descriptor, offset, SEEK_SET);
        break;
    case kSeekFromEnd:
        lseek(descriptor, offset, SEEK_END);
        break;
    case kSeekFromCurrent:
        lseek(descriptor, offset, SEEK_CUR);
        break;
    default:
        break;
    }
    return 1;
}

long CPFile::GetFileLength()
{
    int descriptor = FindDescriptor(reference_);
    struct stat info;
    if (descriptor < 0 || fstat(descriptor, &info) != 0)
        return 0;
    return long(info.st_size);
}

void CPFile::Close()
{
    int descriptor = RemoveOpenFile(reference_);
    reference_ = 0;
    if (descriptor < 0)
        return;
    // Only what was written needs flushing; a file opened for reading closes at once.
    if ((fcntl(descriptor, F_GETFL) & O_ACCMODE) != O_RDONLY)
        fsync(descriptor);
    close(descriptor);
}
