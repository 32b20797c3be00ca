#pragma once
// FSpec: the portable file name record, 262 bytes packed (name at byte 6), as it is stored in
// show files and in arrays of chosen files.
//   path form:   vRefNum = parID = 9991, name = full path
//   native form: vRefNum = volume, parID = folder, name = leaf name only
//   empty:       0, 0, nothing

#include <cstdint>

constexpr int16_t kPathFormMarker = 9991;
constexpr int kFSpecNameSize = 256;

#pragma pack(push, 1)
struct FSpec {
    int16_t vRefNum;
    int32_t parID;
    char name[kFSpecNameSize];
};
#pragma pack(pop)

static_assert(sizeof(FSpec) == 262, "FSpec is stored as a 262-byte record");

// True only when both numbers carry the path-form marker.
inline bool IsPathForm(const FSpec& file)
{
    return file.vRefNum == kPathFormMarker && file.parID == kPathFormMarker;
}
