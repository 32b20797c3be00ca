#include "platform/file/paths.h"

#include <sys/stat.h>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

// The folders handed out so far: identifier 3 + i is folders[i]. Paths are absolute, normalised
// and without a trailing "/". Guarded because picture loading may name files off the main thread.
struct FolderTable {
    std::mutex mutex;
    std::vector<std::string> folders;
    std::unordered_map<std::string, int32_t> ids;
};

FolderTable& Folders()
{
    static FolderTable table;
    return table;
}

constexpr int32_t kFirstTableID = 3;

// Absolute, with "." and ".." resolved by name and no trailing "/" (except for "/" itself).
// Empty when the current folder cannot be had for a relative path.
std::string NormalisePath(const char* path)
{
    std::error_code error;
    std::filesystem::path full(path);
    if (full.is_relative()) {
        full = std::filesystem::absolute(full, error);
        if (error)
            return std::string();
    }
    std::string text = full.lexically_normal().string();
    while (text.size() > 1 && text.back() == '/')
        text.pop_back();
    return text;
}

// The folder's path without a trailing "/" ("/" for the root); false when never handed out.
bool LookUpFolder(int32_t folderID, std::string* path)
{
    if (folderID == kRootFolderID) {
        path->assign(1, '/');
        return true;
    }
    FolderTable& table = Folders();
    std::lock_guard<std::mutex> lock(table.mutex);
    if (folderID < kFirstTableID ||
        folderID - kFirstTableID >= static_cast<int64_t>(table.folders.size()))
        return false;
    *path = table.folders[folderID - kFirstTableID];
    return true;
}

std::string JoinPath(const std::string& folder, const std::string& leaf)
{
    return folder == "/" ? "/" + leaf : folder + "/" + leaf;
}

// Copies a name that may lack its terminator, cut to 255 characters, clearing the rest.
void CopyName(char* out, const char* in)
{
    size_t length = strnlen(in, kFSpecNameSize - 1);
    std::memset(out, 0, kFSpecNameSize);
    std::memcpy(out, in, length);
}

void ClearRef(NativeFileRef* ref) { std::memset(ref, 0, sizeof *ref); }

}  // namespace

int32_t GetFolderID(const char* folderPath)
{
    if (!folderPath || !*folderPath)
        return 0;
    std::string folder = NormalisePath(folderPath);
    if (folder.empty())
        return 0;
    if (folder == "/")
        return kRootFolderID;
    FolderTable& table = Folders();
    std::lock_guard<std::mutex> lock(table.mutex);
    auto found = table.ids.find(folder);
    if (found != table.ids.end())
        return found->second;
    int32_t id = kFirstTableID + static_cast<int32_t>(table.folders.size());
    table.folders.push_back(folder);
    table.ids.emplace(folder, id);
    return id;
}

bool GetFolderPath(int32_t folderID, char* out)
{
    std::string folder;
    if (!out || !LookUpFolder(folderID, &folder))
        return false;
    if (folder != "/")
        folder += "/";
    if (folder.size() > static_cast<size_t>(kMaxPathLength))
        return false;
    std::strcpy(out, folder.c_str());
    return true;
}

bool GetPathFromFSSpec(const NativeFileRef* ref, char* out)
{
    if (!ref || !out)
        return false;
    if (ref->vRefNum == kPathFormMarker && ref->parID == kPathFormMarker)
        return true;
    if (ref->vRefNum != kVolumeRefNum)
        return false;
    if (ref->parID == kVolumeParentID) {
        std::strcpy(out, "/");
        return true;
    }

    std::string folder;
    if (!LookUpFolder(ref->parID, &folder))
        return false;
    struct stat info;
    if (stat(folder.c_str(), &info) != 0 || !S_ISDIR(info.st_mode))
        return false;

    std::string leaf(ref->name, strnlen(ref->name, kFSpecNameSize - 1));
    if (leaf.find('/') != std::string::npos || leaf == "." || leaf == "..")
        return false;
    std::string path = leaf.empty() ? folder : JoinPath(folder, leaf);
    if (stat(path.c_str(), &info) == 0) {
        if (S_ISDIR(info.st_mode) && path != "/")
            path += "/";
    } else if (errno != ENOENT) {
        return false;
    }
    if (path.size() > static_cast<size_t>(kMaxPathLength))
        return false;
    std::strcpy(out, path.c_str());
    return true;
}

bool GetFSSpecFromPath(const char* path, NativeFileRef* ref)
{
    if (!ref)
        return false;
    ClearRef(ref);
    if (!path || !*path)
        return false;
    std::string full = NormalisePath(path);
    if (full.empty())
        return false;

    ref->vRefNum = kVolumeRefNum;
    if (full == "/") {
        ref->parID = kVolumeParentID;
        return true;
    }
    std::filesystem::path split(full);
    std::string leaf = split.filename().string();
    if (leaf.size() > static_cast<size_t>(kMaxPathLength)) {
        ClearRef(ref);
        return false;
    }
    ref->parID = GetFolderID(split.parent_path().string().c_str());
    std::strcpy(ref->name, leaf.c_str());
    struct stat info;
    return stat(full.c_str(), &info) == 0;
}

bool CopyToMacFSSpec(NativeFileRef* out, const FSpec* file)
{
    if (!out)
        return false;
    ClearRef(out);
    if (!file)
        return false;
    if (IsPathForm(*file)) {
        char path[kFSpecNameSize];
        CopyName(path, file->name);
        return GetFSSpecFromPath(path, out);
    }
    if (file->vRefNum == 0 && file->parID == 0)
        return false;
    out->vRefNum = file->vRefNum;
    out->parID = file->parID;
    CopyName(out->name, file->name);
    return true;
}

bool CopyFromMacFSSpec(FSpec* file, const NativeFileRef* in)
{
    if (!file)
        return false;
    file->vRefNum = kPathFormMarker;
    file->parID = kPathFormMarker;
    std::memset(file->name, 0, kFSpecNameSize);
    if (!in)
        return false;
    if (in->vRefNum == kPathFormMarker && in->parID == kPathFormMarker) {
        // A reference already holding a path: that path is the full path.
        CopyName(file->name, in->name);
        return true;
    }
    char path[kFSpecNameSize] = {};
    if (!GetPathFromFSSpec(in, path))
        return false;
    std::strcpy(file->name, path);
    return true;
}

bool GetFSpecPath(const FSpec* file, char* out)
{
    if (!file || !out)
        return false;
    out[0] = '\0';
    if (IsPathForm(*file)) {
        CopyName(out, file->name);
        return out[0] != '\0';
    }
    NativeFileRef ref;
    if (!CopyToMacFSSpec(&ref, file))
        return false;
    return GetPathFromFSSpec(&ref, out);
}

FSpec PathFSpec(const char* path)
{
    FSpec spec;
    std::memset(&spec, 0, sizeof spec);
    spec.vRefNum = kPathFormMarker;
    spec.parID = kPathFormMarker;
    if (path)
        CopyName(spec.name, path);
    return spec;
}
