#pragma once
// CPFile: one open file's data, read and written at a current position.
//
// The reference number is a signed 16-bit value, never 0 while open, drawn from this layer's own
// table of open files (it is not the system's descriptor). Failures come back as return values
// as each function says; nothing is ever reported to the user from here.

#include <cstdint>

#include "platform/file/fspec.h"

// A four-character code as one number, first character most significant: TypeCode("TPIC").
constexpr uint32_t TypeCode(const char (&text)[5])
{
    return (uint32_t(uint8_t(text[0])) << 24) | (uint32_t(uint8_t(text[1])) << 16) |
           (uint32_t(uint8_t(text[2])) << 8) | uint32_t(uint8_t(text[3]));
}

// Mode bits of Open: read, write, or both; 0 asks for whatever access the system grants.
constexpr int kFileRead = 1;
constexpr int kFileWrite = 2;

// Origins of Seek. The order of the last two is the program's own (end before current).
constexpr int kSeekFromStart = 0;
constexpr int kSeekFromEnd = 1;
constexpr int kSeekFromCurrent = 2;

class CPFile {
public:
    // A closed file: reference 0, type "PXSH", creator "HLBK".
    CPFile();
    // The same, then Open(spec, mode).
    CPFile(const FSpec* file, int mode);
    ~CPFile();
    CPFile(const CPFile&) = delete;
    CPFile& operator=(const CPFile&) = delete;

    // Opens the named file (any FSpec form). With the write bit a missing file is created with
    // this object's type and creator; an existing file is neither truncated nor emptied, so a
    // shorter write leaves the old tail in place. Anything but a regular file (a pipe, a device,
    // a folder) is refused at once, without waiting for a writer at a pipe's other end. On success
    // the object's FSpec holds the full path in path form. Closes a file this object already had
    // open.
    bool Open(const FSpec* file, int mode);
    // Reads up to `count` bytes at the current position. 0 on any error or when the end comes
    // before `count` bytes (those bytes are in the buffer but not counted); otherwise `count`
    // reduced to its low 16 bits (70,000 reads report 4,464; callers read in smaller pieces).
    long Read(char* buffer, long count);
    // Writes at the current position; answers `count` whether or not the write succeeded.
    long Write(const char* buffer, long count);
    // The system's error number of the first write since Open that fell short (full disk, size
    // limit); 0 while every byte arrived. For callers that must know before they keep the file.
    int WriteError() const { return writeError_; }
    // Moves the position: origin 0 from the start, 1 from the end, 2 from the current position.
    // Always answers 1.
    int Seek(long offset, int origin);
    // The file's length in bytes; 0 when nothing is open.
    long GetFileLength();
    // Closes the file after flushing it to the disk.
    void Close();

    // Adopts an already open reference number as it stands (0 detaches without closing).
    void SetFileNum(short reference) { reference_ = reference; }
    short GetFileNum() const { return reference_; }

    // Type and creator given to files this object creates: 0 gives "PXSH"/"HLBK" (shows),
    // 1 "TPIC"/"ogle" (Targa pictures), 2 "PXST"/"HLBP"; any other value is the code itself.
    void SetFileType(uint32_t code);
    void SetCreatorType(uint32_t code);
    uint32_t GetFileType() const { return fileType_; }
    uint32_t GetCreatorType() const { return creatorType_; }

    // The file's name: path form after a successful Open.
    FSpec* GetFSpec() { return &spec_; }

private:
    short reference_;
    uint32_t fileType_;
    uint32_t creatorType_;
    FSpec spec_;
    int writeError_ = 0;
};
