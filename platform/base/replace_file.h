#pragma once
// Whole files replaced, never half-written: the new contents go to a temporary file beside the
// target (same folder, so the rename cannot cross file systems) and are renamed over the target
// only once every byte was written, flushed to the disk and the file closed. On any failure the
// temporary file is removed and the previous file stays as it was. A process killed half-way
// leaves at most the temporary file, a hidden name starting with "." and holding ".partial-".
//
// The settings store sits below the file records, so this lives with the plain types.

#include <cstddef>
#include <string>

class FileReplacement {
public:
    // Nothing is created yet: Begin makes the temporary file.
    explicit FileReplacement(std::string target);
    // Abandons the temporary file unless Commit succeeded.
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    // Creates the temporary file beside the target (new name, mode 0666 less the umask). False
    // when it cannot be made: a missing or read-only folder, a name too long.
    bool Begin();
    // Appends bytes to the temporary file, every one checked. False on a short write (full disk,
    // file size limit); the failure sticks, so Commit refuses too.
    bool Write(const void* bytes, size_t count);
    // Flushes the temporary file to the disk, closes it and renames it over the target. Another
    // writer (a library that opens the temporary path itself) may have filled it; its bytes are
    // flushed just the same. False, with the temporary file removed, on any failure.
    bool Commit();
    // Removes the temporary file; the target is left as it was.
    void Abandon();
    // For writers that went through other means: records that writing failed with the system's
    // error number `code` and abandons the temporary file.
    void FailWriting(int code);

    const std::string& Target() const { return target_; }
    // The temporary file's path; "" before Begin.
    const std::string& TemporaryPath() const { return temporary_; }
    // Why the last step failed, for the caller to put after the file's name: "No space left on
    // device", "cannot create a file in /movies: Read-only file system"; "" when nothing failed.
    const std::string& Error() const { return error_; }

private:
    void Fail(const char* what, int code);

    std::string target_;
    std::string temporary_;
    std::string error_;
    int descriptor_ = -1;
    bool failed_ = false;
    bool committed_ = false;
};

// Writes `bytes` as the whole of the file at `path` through a FileReplacement. False when the
// file could not be replaced; `error` (when given) receives the reason.
bool ReplaceFile(const std::string& path, const void* bytes, size_t count,
                 std::string* error = nullptr);

// The reason of the last failed replacement on this thread, for callers whose own interface has
// no room for it (a picture save that answers only true or false); "" after a success.
const std::string& LastFileReplacementError();
