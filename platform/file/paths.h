#pragma once
// Conversions between FSpec and this platform's native file reference.
//
// Native form on POSIX. The whole file tree is one volume; folders are named by identifiers that
// this layer hands out from a process-wide table of folder paths:
//
//   vRefNum  kVolumeRefNum (-1)     the one volume, the tree under "/"
//   parID    kVolumeParentID (1)    the item is the volume itself: its path is "/"
//            kRootFolderID (2)      the item lies in "/"
//            3 and up               the item lies in the folder GetFolderID handed out for it;
//                                   identifiers hold for the life of the process only, which is
//                                   why everything the layer gives back is in path form
//   name     the item's leaf name: at most 255 characters, no "/"; empty names the folder itself
//
// Paths are POSIX paths. A folder's path ends with "/", a file's does not. Relative paths are
// taken from the current folder and every path is handed back absolute, with "." and ".."
// resolved by name.

#include <cstdint>

#include "platform/file/fspec.h"

constexpr int16_t kVolumeRefNum = -1;
constexpr int32_t kVolumeParentID = 1;
constexpr int32_t kRootFolderID = 2;
constexpr int kMaxPathLength = 255;  // path buffers hold kMaxPathLength + 1 characters

// The native file reference: same fields as FSpec, but the name is always a leaf.
struct NativeFileRef {
    int16_t vRefNum;
    int32_t parID;
    char name[kFSpecNameSize];
};

// The identifier of a folder (2 for "/"), handed out on first request and the same ever after.
// 0 for a null or empty path. The folder need not exist.
int32_t GetFolderID(const char* folderPath);
// The path of a folder identifier, with its trailing "/", into `out` (256 characters).
// False for an identifier never handed out or a path longer than 255 characters.
bool GetFolderPath(int32_t folderID, char* out);

// Writes the full path of `ref` into `out` (256 characters). A reference in path form answers
// true and leaves `out` untouched. An item that does not exist yet is accepted (a file about to be
// created); false when the volume or folder cannot be found, the name is not a leaf, or the path
// would pass 255 characters.
bool GetPathFromFSSpec(const NativeFileRef* ref, char* out);
// Resolves a full path into `ref`. True when the item exists; a path naming an item that does
// not exist yet still fills a usable reference but answers false.
bool GetFSSpecFromPath(const char* path, NativeFileRef* ref);
// FSpec to native reference: path form through GetFSSpecFromPath; empty form (0, 0) fails;
// native form copies volume, folder and the leaf name (cut to 255 characters) and answers true.
bool CopyToMacFSSpec(NativeFileRef* out, const FSpec* file);
// Native reference to FSpec: `out` gets the full path and the path-form marker; answers what
// GetPathFromFSSpec answered (the name is empty when that failed).
bool CopyFromMacFSSpec(FSpec* file, const NativeFileRef* in);

// The full path of a file record of any form into `out` (kMaxPathLength + 1 characters): a path
// form's own text, or a native form resolved. False for an empty record or an unknown folder.
bool GetFSpecPath(const FSpec* file, char* out);
// A path-form record of `path` (cut to 255 characters).
FSpec PathFSpec(const char* path);
