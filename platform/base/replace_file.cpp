#include "platform/base/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

// A leaf name is at most 255 bytes; the temporary name adds a dot and ".partial-PID-N", so the
// target's leaf is cut to this many bytes inside the temporary name (the target itself never is).
constexpr size_t kTemporaryLeafBytes = 200;
// The program's file names hold 255 characters: the temporary path is kept within them too, by
// cutting the leaf further, so it can be opened through the same file records as the target.
constexpr size_t kLongestPath = 255;
constexpr int kNameAttempts = 100;

std::atomic<unsigned> gTemporaryCount{0};

thread_local std::string tLastError;

std::string FolderOf(const std::string& path)
{
    size_t slash = path.find_last_of('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string LeafOf(const std::string& path)
{
    size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The rename is only durable once the folder's entry is on the disk as well.
void SyncFolder(const std::string& folder)
{
    int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}

}  // namespace

FileReplacement::FileReplacement(std::string target) : target_(std::move(target)) {}

FileReplacement::~FileReplacement()
{
    if (!committed_)
        Abandon();
}

void FileReplacement::Fail(const char* what, int code)
{
    failed_ = true;
    error_ = what;
    if (code != 0) {
        if (!error_.empty())
            error_ += ": ";
        error_ += std::strerror(code);
    }
    tLastError = error_;
}

bool FileReplacement::Begin()
{
    Abandon();
    failed_ = false;
    committed_ = false;
    error_.clear();
    std::string leaf = LeafOf(target_);
    if (target_.empty() || leaf.empty()) {
        Fail("no file named", 0);
        return false;
    }
    // A folder cannot be replaced by a file, and a device must never be (a movie renamed over
    // /dev/null by root would take its place). A pipe or a socket in the file's place is only a
    // name and is replaced like a file.
    struct stat existing;
    if (stat(target_.c_str(), &existing) == 0 &&
        (S_ISDIR(existing.st_mode) || S_ISCHR(existing.st_mode) || S_ISBLK(existing.st_mode))) {
        Fail(S_ISDIR(existing.st_mode) ? "a folder has that name" : "a device has that name", 0);
        return false;
    }
    std::string folder = FolderOf(target_);
    std::string suffix = ".partial-" + std::to_string(static_cast<long>(getpid())) + "-";
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        std::string tail = suffix + std::to_string(gTemporaryCount.fetch_add(1));
        size_t fixed = folder.size() + 2 + tail.size();
        size_t leafBytes =
            std::min(kTemporaryLeafBytes, fixed < kLongestPath ? kLongestPath - fixed : 0);
        std::string candidate = folder + "/." + leaf.substr(0, leafBytes) + tail;
        int descriptor = open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0) {
            descriptor_ = descriptor;
            temporary_ = candidate;
            return true;
        }
        if (errno != EEXIST) {
            Fail(("cannot create a file in " + folder).c_str(), errno);
            return false;
        }
    }
    Fail(("cannot create a file in " + folder).c_str(), EEXIST);
    return false;
}

bool FileReplacement::Write(const void* bytes, size_t count)
{
    if (descriptor_ < 0 || failed_) {
        if (!failed_)
            Fail("nothing is being written", 0);
        return false;
    }
    const char* next = static_cast<const char*>(bytes);
    while (count > 0) {
        ssize_t put = write(descriptor_, next, count);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0) {
            // A write that takes nothing without an error is a full disk all the same.
            Fail("", put < 0 ? errno : ENOSPC);
            return false;
        }
        next += put;
        count -= static_cast<size_t>(put);
    }
    return true;
}

bool FileReplacement::Commit()
{
    if (descriptor_ < 0 || failed_) {
        if (!failed_)
            Fail("nothing is being written", 0);
        Abandon();
        return false;
    }
    if (fsync(descriptor_) != 0) {
        Fail("", errno);
        Abandon();
        return false;
    }
    int descriptor = descriptor_;
    descriptor_ = -1;
    if (close(descriptor) != 0) {
        Fail("", errno);
        Abandon();
        return false;
    }
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) {
        Fail(("cannot put the new file in place of " + target_).c_str(), errno);
        Abandon();
        return false;
    }
    SyncFolder(FolderOf(target_));
    committed_ = true;
    temporary_.clear();
    tLastError.clear();
    return true;
}

void FileReplacement::Abandon()
{
    if (descriptor_ >= 0) {
        close(descriptor_);
        descriptor_ = -1;
    }
    if (!temporary_.empty()) {
        unlink(temporary_.c_str());
        temporary_.clear();
    }
}

void FileReplacement::FailWriting(int code)
{
    Fail("", code);
    Abandon();
}

bool ReplaceFile(const std::string& path, const void* bytes, size_t count, std::string* error)
{
    FileReplacement replacement(path);
    bool replaced = replacement.Begin() && replacement.Write(bytes, count) && replacement.Commit();
    if (error != nullptr)
        *error = replacement.Error();
    return replaced;
}

const std::string& LastFileReplacementError() { return tLastError; }
