#include "platform/file/paths.h"

#include <gtest/gtest.h>
#include <cstring>
#include <filesystem>
#include <string>

#include "support/temp_dir.h"

namespace {

FSpec PathSpec(const std::string& path)
{
    FSpec spec{};
    spec.vRefNum = kPathFormMarker;
    spec.parID = kPathFormMarker;
    std::strncpy(spec.name, path.c_str(), sizeof spec.name - 1);
    return spec;
}

NativeFileRef NativeRef(int16_t volume, int32_t folder, const char* leaf)
{
    NativeFileRef ref{};
    ref.vRefNum = volume;
    ref.parID = folder;
    std::strncpy(ref.name, leaf, sizeof ref.name - 1);
    return ref;
}

}  // namespace

TEST(FSpecForm, NinetyNineNinetyOneInOnlyOneFieldIsNativeForm)
{
    FSpec spec{};
    spec.vRefNum = kPathFormMarker;
    spec.parID = 5;
    EXPECT_FALSE(IsPathForm(spec));
    spec.vRefNum = kVolumeRefNum;
    spec.parID = kPathFormMarker;
    EXPECT_FALSE(IsPathForm(spec));
    spec.vRefNum = kPathFormMarker;
    EXPECT_TRUE(IsPathForm(spec));
}

TEST(FSpecForm, OneMarkerIsCopiedAsANativeSpec)
{
    FSpec spec{};
    spec.vRefNum = kPathFormMarker;
    spec.parID = 77;
    std::strcpy(spec.name, "leaf.tga");
    NativeFileRef ref;
    ASSERT_TRUE(CopyToMacFSSpec(&ref, &spec));
    EXPECT_EQ(ref.vRefNum, kPathFormMarker);
    EXPECT_EQ(ref.parID, 77);
    EXPECT_STREQ(ref.name, "leaf.tga");
    // No volume answers to 9991 here, so it names no file.
    char out[256] = "unchanged";
    EXPECT_FALSE(GetPathFromFSSpec(&ref, out));
    EXPECT_STREQ(out, "unchanged");
}

TEST(CopyToMacFSSpec, AllZeroSpecFails)
{
    FSpec spec{};
    NativeFileRef ref;
    std::memset(&ref, 0x5A, sizeof ref);
    EXPECT_FALSE(CopyToMacFSSpec(&ref, &spec));
    EXPECT_EQ(ref.vRefNum, 0);
    EXPECT_EQ(ref.parID, 0);
    EXPECT_FALSE(CopyToMacFSSpec(&ref, nullptr));
}

TEST(CopyToMacFSSpec, NativeFormCopiesVolumeFolderAndLeafCutTo255)
{
    FSpec spec{};
    spec.vRefNum = kVolumeRefNum;
    spec.parID = 1234;
    std::memset(spec.name, 'a', sizeof spec.name);  // no terminator at all
    NativeFileRef ref;
    ASSERT_TRUE(CopyToMacFSSpec(&ref, &spec));
    EXPECT_EQ(ref.vRefNum, kVolumeRefNum);
    EXPECT_EQ(ref.parID, 1234);
    EXPECT_EQ(std::strlen(ref.name), 255u);
}

TEST(CopyToMacFSSpec, PathFormOfAnExistingFileResolves)
{
    pxtest::TempDir dir;
    std::string path = dir.File("sunset.tga");
    ASSERT_TRUE(pxtest::WriteText(path, "x"));
    FSpec spec = PathSpec(path);
    NativeFileRef ref;
    ASSERT_TRUE(CopyToMacFSSpec(&ref, &spec));
    EXPECT_EQ(ref.vRefNum, kVolumeRefNum);
    EXPECT_EQ(ref.parID, GetFolderID(dir.Path().c_str()));
    EXPECT_STREQ(ref.name, "sunset.tga");
}

TEST(CopyToMacFSSpec, PathFormOfAMissingFileGivesAUsableReferenceButFalse)
{
    pxtest::TempDir dir;
    std::string path = dir.File("new.plx");
    FSpec spec = PathSpec(path);
    NativeFileRef ref;
    EXPECT_FALSE(CopyToMacFSSpec(&ref, &spec));
    EXPECT_EQ(ref.vRefNum, kVolumeRefNum);
    EXPECT_STREQ(ref.name, "new.plx");
    char out[256] = {};
    ASSERT_TRUE(GetPathFromFSSpec(&ref, out));
    EXPECT_EQ(std::string(out), path);
}

TEST(GetFSSpecFromPath, EmptyOrNullPathFails)
{
    NativeFileRef ref;
    EXPECT_FALSE(GetFSSpecFromPath("", &ref));
    EXPECT_EQ(ref.vRefNum, 0);
    EXPECT_FALSE(GetFSSpecFromPath(nullptr, &ref));
    EXPECT_FALSE(GetFSSpecFromPath("/tmp", nullptr));
}

TEST(GetFSSpecFromPath, RootIsTheVolumeItself)
{
    NativeFileRef ref;
    ASSERT_TRUE(GetFSSpecFromPath("/", &ref));
    EXPECT_EQ(ref.vRefNum, kVolumeRefNum);
    EXPECT_EQ(ref.parID, kVolumeParentID);
    char out[256] = {};
    ASSERT_TRUE(GetPathFromFSSpec(&ref, out));
    EXPECT_STREQ(out, "/");
}

TEST(GetFSSpecFromPath, ItemsInTheRootLieInFolderTwo)
{
    NativeFileRef ref;
    ASSERT_TRUE(GetFSSpecFromPath("/tmp", &ref));
    EXPECT_EQ(ref.parID, kRootFolderID);
    EXPECT_STREQ(ref.name, "tmp");
}

TEST(GetFSSpecFromPath, DotsAndTrailingSeparatorsAreResolvedByName)
{
    pxtest::TempDir dir;
    std::filesystem::create_directory(dir.File("shows"));
    NativeFileRef ref;
    ASSERT_TRUE(GetFSSpecFromPath((dir.Path() + "/./shows/../shows/").c_str(), &ref));
    EXPECT_EQ(ref.parID, GetFolderID(dir.Path().c_str()));
    EXPECT_STREQ(ref.name, "shows");
}

TEST(GetFSSpecFromPath, RelativePathsStartInTheCurrentFolder)
{
    NativeFileRef ref;
    GetFSSpecFromPath("relative-name.plx", &ref);
    EXPECT_EQ(ref.parID, GetFolderID(std::filesystem::current_path().string().c_str()));
    EXPECT_STREQ(ref.name, "relative-name.plx");
}

TEST(GetFolderID, SameFolderSameIdentifierAndBack)
{
    pxtest::TempDir dir;
    int32_t id = GetFolderID(dir.Path().c_str());
    EXPECT_GE(id, 3);
    EXPECT_EQ(GetFolderID((dir.Path() + "/").c_str()), id);
    EXPECT_EQ(GetFolderID("/"), kRootFolderID);
    EXPECT_EQ(GetFolderID(""), 0);
    EXPECT_EQ(GetFolderID(nullptr), 0);
    char out[256] = {};
    ASSERT_TRUE(GetFolderPath(id, out));
    EXPECT_EQ(std::string(out), dir.Path() + "/");
    EXPECT_FALSE(GetFolderPath(999999, out));
    EXPECT_FALSE(GetFolderPath(0, out));
}

TEST(GetPathFromFSSpec, PathFormAnswersTrueAndLeavesOutputAlone)
{
    NativeFileRef ref = NativeRef(kPathFormMarker, kPathFormMarker, "/somewhere/else");
    char out[256] = "before";
    EXPECT_TRUE(GetPathFromFSSpec(&ref, out));
    EXPECT_STREQ(out, "before");
}

TEST(GetPathFromFSSpec, VolumeParentGivesTheVolumeWithItsSeparator)
{
    NativeFileRef ref = NativeRef(kVolumeRefNum, kVolumeParentID, "anything");
    char out[256] = {};
    ASSERT_TRUE(GetPathFromFSSpec(&ref, out));
    EXPECT_STREQ(out, "/");
}

TEST(GetPathFromFSSpec, FileInAFolderOfTheTable)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(pxtest::WriteText(dir.File("a.bmp"), "x"));
    NativeFileRef ref = NativeRef(kVolumeRefNum, GetFolderID(dir.Path().c_str()), "a.bmp");
    char out[256] = {};
    ASSERT_TRUE(GetPathFromFSSpec(&ref, out));
    EXPECT_EQ(std::string(out), dir.File("a.bmp"));
}

TEST(GetPathFromFSSpec, FolderPathsEndWithTheSeparator)
{
    pxtest::TempDir dir;
    std::filesystem::create_directory(dir.File("Beach"));
    NativeFileRef ref = NativeRef(kVolumeRefNum, GetFolderID(dir.Path().c_str()), "Beach");
    char out[256] = {};
    ASSERT_TRUE(GetPathFromFSSpec(&ref, out));
    EXPECT_EQ(std::string(out), dir.File("Beach") + "/");
    NativeFileRef folderItself = NativeRef(kVolumeRefNum, GetFolderID(dir.Path().c_str()), "");
    ASSERT_TRUE(GetPathFromFSSpec(&folderItself, out));
    EXPECT_EQ(std::string(out), dir.Path() + "/");
}

TEST(GetPathFromFSSpec, ItemNotYetThereIsAccepted)
{
    pxtest::TempDir dir;
    NativeFileRef ref = NativeRef(kVolumeRefNum, GetFolderID(dir.Path().c_str()), "later.plx");
    char out[256] = {};
    ASSERT_TRUE(GetPathFromFSSpec(&ref, out));
    EXPECT_EQ(std::string(out), dir.File("later.plx"));
}

TEST(GetPathFromFSSpec, MissingFolderUnknownFolderOrVolumeFail)
{
    pxtest::TempDir dir;
    char out[256] = "unchanged";
    NativeFileRef missingFolder =
        NativeRef(kVolumeRefNum, GetFolderID(dir.File("not-there").c_str()), "x.plx");
    EXPECT_FALSE(GetPathFromFSSpec(&missingFolder, out));
    NativeFileRef unknownFolder = NativeRef(kVolumeRefNum, 2000000000, "x.plx");
    EXPECT_FALSE(GetPathFromFSSpec(&unknownFolder, out));
    NativeFileRef unknownVolume = NativeRef(7, kRootFolderID, "tmp");
    EXPECT_FALSE(GetPathFromFSSpec(&unknownVolume, out));
    NativeFileRef empty{};
    EXPECT_FALSE(GetPathFromFSSpec(&empty, out));
    EXPECT_STREQ(out, "unchanged");
}

TEST(GetPathFromFSSpec, NamesThatAreNotLeavesFail)
{
    pxtest::TempDir dir;
    int32_t folder = GetFolderID(dir.Path().c_str());
    char out[256] = {};
    NativeFileRef withSlash = NativeRef(kVolumeRefNum, folder, "a/b");
    EXPECT_FALSE(GetPathFromFSSpec(&withSlash, out));
    NativeFileRef up = NativeRef(kVolumeRefNum, folder, "..");
    EXPECT_FALSE(GetPathFromFSSpec(&up, out));
}

TEST(GetPathFromFSSpec, PathsPast255CharactersFail)
{
    pxtest::TempDir dir;
    std::string deep = dir.Path() + "/" + std::string(200, 'd');
    ASSERT_TRUE(std::filesystem::create_directory(deep));
    NativeFileRef ref =
        NativeRef(kVolumeRefNum, GetFolderID(deep.c_str()), std::string(100, 'f').c_str());
    char out[256] = {};
    EXPECT_FALSE(GetPathFromFSSpec(&ref, out));
}

TEST(CopyFromMacFSSpec, GivesPathFormWithTheFullPath)
{
    pxtest::TempDir dir;
    ASSERT_TRUE(pxtest::WriteText(dir.File("b.tif"), "x"));
    NativeFileRef ref = NativeRef(kVolumeRefNum, GetFolderID(dir.Path().c_str()), "b.tif");
    FSpec spec;
    std::memset(&spec, 0x33, sizeof spec);
    ASSERT_TRUE(CopyFromMacFSSpec(&spec, &ref));
    EXPECT_TRUE(IsPathForm(spec));
    EXPECT_EQ(std::string(spec.name), dir.File("b.tif"));
    EXPECT_EQ(spec.name[sizeof spec.name - 1], 0);  // the rest of the record is cleared
}

TEST(CopyFromMacFSSpec, FailureStillMarksPathFormWithAnEmptyName)
{
    NativeFileRef ref = NativeRef(kVolumeRefNum, 2000000000, "x");
    FSpec spec = PathSpec("old");
    EXPECT_FALSE(CopyFromMacFSSpec(&spec, &ref));
    EXPECT_TRUE(IsPathForm(spec));
    EXPECT_STREQ(spec.name, "");
}

TEST(CopyFromMacFSSpec, PathFormReferenceKeepsItsPath)
{
    NativeFileRef ref = NativeRef(kPathFormMarker, kPathFormMarker, "/a/b.plx");
    FSpec spec{};
    EXPECT_TRUE(CopyFromMacFSSpec(&spec, &ref));
    EXPECT_TRUE(IsPathForm(spec));
    EXPECT_STREQ(spec.name, "/a/b.plx");
}

TEST(PathRoundTrip, EveryFormOfTheSameFileGivesTheSamePath)
{
    pxtest::TempDir dir;
    std::string path = dir.File("show.plx");
    ASSERT_TRUE(pxtest::WriteText(path, "x"));

    FSpec pathForm = PathSpec(path);
    NativeFileRef ref;
    ASSERT_TRUE(CopyToMacFSSpec(&ref, &pathForm));
    FSpec back{};
    ASSERT_TRUE(CopyFromMacFSSpec(&back, &ref));
    EXPECT_EQ(std::string(back.name), path);

    FSpec nativeForm{};
    nativeForm.vRefNum = ref.vRefNum;
    nativeForm.parID = ref.parID;
    std::strcpy(nativeForm.name, "show.plx");
    NativeFileRef fromNative;
    ASSERT_TRUE(CopyToMacFSSpec(&fromNative, &nativeForm));
    FSpec backFromNative{};
    ASSERT_TRUE(CopyFromMacFSSpec(&backFromNative, &fromNative));
    EXPECT_EQ(std::string(backFromNative.name), path);

    FSpec emptyForm{};
    NativeFileRef fromEmpty;
    EXPECT_FALSE(CopyToMacFSSpec(&fromEmpty, &emptyForm));
}

TEST(GetFSpecPath, PathFormGivesItsOwnTextAndNativeFormResolves)
{
    pxtest::TempDir dir;
    std::string path = dir.File("show.plx");
    ASSERT_TRUE(pxtest::WriteText(path, "x"));
    char out[kMaxPathLength + 1];
    FSpec pathForm = PathFSpec(path.c_str());
    ASSERT_TRUE(GetFSpecPath(&pathForm, out));
    EXPECT_EQ(std::string(out), path);

    FSpec nativeForm{};
    nativeForm.vRefNum = kVolumeRefNum;
    nativeForm.parID = GetFolderID(dir.Path().c_str());
    std::strcpy(nativeForm.name, "show.plx");
    ASSERT_TRUE(GetFSpecPath(&nativeForm, out));
    EXPECT_EQ(std::string(out), path);
}

TEST(GetFSpecPath, EmptyRecordOrUnknownFolderFails)
{
    char out[kMaxPathLength + 1];
    FSpec empty{};
    EXPECT_FALSE(GetFSpecPath(&empty, out));
    FSpec unknown{};
    unknown.vRefNum = kVolumeRefNum;
    unknown.parID = 999999;
    std::strcpy(unknown.name, "x");
    EXPECT_FALSE(GetFSpecPath(&unknown, out));
    EXPECT_FALSE(GetFSpecPath(nullptr, out));
}

TEST(PathFSpec, MakesAPathFormRecordCutTo255Characters)
{
    FSpec spec = PathFSpec("/tmp/a.bmp");
    EXPECT_TRUE(IsPathForm(spec));
    EXPECT_STREQ(spec.name, "/tmp/a.bmp");
    std::string longPath(400, 'a');
    FSpec cut = PathFSpec(longPath.c_str());
    EXPECT_EQ(std::strlen(cut.name), 255u);
}
