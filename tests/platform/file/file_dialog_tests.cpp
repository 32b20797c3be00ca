// The dialogs as the program's other tests meet them: answered from the script, no Qt running.

#include "platform/file/file_dialog.h"

#include <gtest/gtest.h>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/file/paths.h"
#include "support/temp_dir.h"

namespace {

class FileDialogScript : public testing::Test {
protected:
    void SetUp() override { ClearFileDialogScript(); }
    void TearDown() override { ClearFileDialogScript(); }
};

FSpec PathSpec(const std::string& path)
{
    FSpec spec{};
    spec.vRefNum = kPathFormMarker;
    spec.parID = kPathFormMarker;
    std::strncpy(spec.name, path.c_str(), sizeof spec.name - 1);
    return spec;
}

const char kShowFilter[] = "Parallaxotron Files (*.plx)|*.plx|All Files (*.*)|*.*|";

}  // namespace

TEST_F(FileDialogScript, OpenTakesTheScriptedFileInPathForm)
{
    pxtest::TempDir dir;
    std::string path = dir.File("beach.plx");
    ASSERT_TRUE(pxtest::WriteText(path, "x"));
    PushFileDialogAnswer(path.c_str());
    FSpec result{};
    ASSERT_TRUE(OpenFileDialog(nullptr, &result, kShowFilter, ".plx", nullptr, false));
    EXPECT_TRUE(IsPathForm(result));
    EXPECT_EQ(std::string(result.name), path);
    EXPECT_EQ(CountFileDialogAnswers(), 0);
    EXPECT_EQ(CountFileDialogRequests(), 1);
    FileDialogRequest request = GetLastFileDialogRequest();
    EXPECT_FALSE(request.save);
    EXPECT_FALSE(request.multiple);
    EXPECT_EQ(request.capacity, 1);
}

TEST_F(FileDialogScript, SingleOpenTakesOnlyTheFirstOfSeveralAnswers)
{
    pxtest::TempDir dir;
    FSpec result[2] = {};
    PushFileDialogAnswer({dir.File("a.bmp"), dir.File("b.bmp")});
    ASSERT_TRUE(OpenFileDialog(nullptr, result, "", "", nullptr, false));
    EXPECT_EQ(std::string(result[0].name), dir.File("a.bmp"));
    EXPECT_EQ(result[1].name[0], 0);
}

TEST_F(FileDialogScript, CancelAnswersFalseAndLeavesTheResultAlone)
{
    PushFileDialogCancel();
    FSpec result = PathSpec("/keep/me");
    EXPECT_FALSE(OpenFileDialog(nullptr, &result, kShowFilter, ".plx", nullptr, false));
    EXPECT_STREQ(result.name, "/keep/me");
    PushFileDialogCancel();
    EXPECT_FALSE(SaveFileDialog(nullptr, &result, kShowFilter, ".plx", nullptr));
    EXPECT_STREQ(result.name, "/keep/me");
    EXPECT_EQ(CountFileDialogRequests(), 2);
}

TEST_F(FileDialogScript, WithoutAnAnswerOrQtTheDialogCancelsRatherThanBlock)
{
    FSpec result{};
    EXPECT_FALSE(OpenFileDialog(nullptr, &result, kShowFilter, ".plx", nullptr, false));
    EXPECT_FALSE(SaveFileDialog(nullptr, &result, kShowFilter, ".plx", nullptr));
    EXPECT_EQ(CountFileDialogRequests(), 2);
}

TEST_F(FileDialogScript, MultipleFillsPathFormRecordsInOrderUpToTheCapacity)
{
    pxtest::TempDir dir;
    std::vector<std::string> paths = {dir.File("1.tga"), dir.File("2.tga"), dir.File("3.tga"),
                                      dir.File("4.tga")};
    for (const std::string& path : paths)
        ASSERT_TRUE(pxtest::WriteText(path, "x"));
    FSpec results[4] = {};
    std::memset(&results[3], 0x41, sizeof results[3]);
    PushFileDialogAnswer(paths);
    ASSERT_TRUE(OpenFileDialog(nullptr, results, "", "", nullptr, true, 3));
    for (int i = 0; i < 3; i++) {
        EXPECT_TRUE(IsPathForm(results[i])) << i;
        EXPECT_EQ(std::string(results[i].name), paths[i]);
    }
    EXPECT_EQ(results[3].vRefNum, 0x4141);  // nothing written past the capacity
    EXPECT_TRUE(GetLastFileDialogRequest().multiple);
    EXPECT_EQ(GetLastFileDialogRequest().capacity, 3);
}

TEST_F(FileDialogScript, MultipleWithFewerFilesWritesNoTerminator)
{
    pxtest::TempDir dir;
    FSpec results[3];
    std::memset(results, 0x41, sizeof results);
    PushFileDialogAnswer({dir.File("only.bmp")});
    ASSERT_TRUE(OpenFileDialog(nullptr, results, "", "", nullptr, true, 3));
    EXPECT_EQ(std::string(results[0].name), dir.File("only.bmp"));
    EXPECT_EQ(results[1].vRefNum, 0x4141);
}

TEST_F(FileDialogScript, MultipleWithoutRoomAsksNothing)
{
    FSpec result{};
    PushFileDialogAnswer("/tmp/x");
    EXPECT_FALSE(OpenFileDialog(nullptr, &result, "", "", nullptr, true, 0));
    EXPECT_EQ(CountFileDialogAnswers(), 1);
    EXPECT_EQ(CountFileDialogRequests(), 0);
}

TEST_F(FileDialogScript, FiltersBecomeNameFiltersInOrder)
{
    PushFileDialogCancel();
    FSpec result{};
    OpenFileDialog(
        nullptr, &result,
        "All Graphics Files|*.bmp;*.tga;*.tif;*.psd|BMP Files (*.bmp)|*.bmp|All Files (*.*)|*.*|",
        ".bmp", nullptr, false);
    std::vector<std::string> expected = {"All Graphics Files (*.bmp *.tga *.tif *.psd)",
                                         "BMP Files (*.bmp)", "All Files (*)"};
    EXPECT_EQ(GetLastFileDialogRequest().nameFilters, expected);
}

TEST_F(FileDialogScript, IrregularFilterEntriesAreKeptAndTheEndIsFound)
{
    PushFileDialogCancel();
    FSpec spec{};
    SaveFileDialog(nullptr, &spec, "Macromedia Flash Files (*.swf)|*.swf|All Files *.*|*.*||",
                   ".swf", nullptr);
    std::vector<std::string> expected = {"Macromedia Flash Files (*.swf)", "All Files *.* (*)"};
    EXPECT_EQ(GetLastFileDialogRequest().nameFilters, expected);
    EXPECT_EQ(GetLastFileDialogRequest().defaultSuffix, "swf");
}

TEST_F(FileDialogScript, OpenStartsInTheInitialFolder)
{
    pxtest::TempDir dir;
    FSpec initial = PathSpec(dir.Path() + "/");
    PushFileDialogCancel();
    FSpec result{};
    OpenFileDialog(nullptr, &result, "", "", &initial, false);
    EXPECT_EQ(GetLastFileDialogRequest().folder, dir.Path());

    // A file names its folder; a native-form folder works the same.
    ASSERT_TRUE(pxtest::WriteText(dir.File("pic.bmp"), "x"));
    initial = PathSpec(dir.File("pic.bmp"));
    PushFileDialogCancel();
    OpenFileDialog(nullptr, &result, "", "", &initial, false);
    EXPECT_EQ(GetLastFileDialogRequest().folder, dir.Path());

    FSpec native{};
    native.vRefNum = kVolumeRefNum;
    native.parID = GetFolderID(dir.Path().c_str());
    PushFileDialogCancel();
    OpenFileDialog(nullptr, &result, "", "", &native, false);
    EXPECT_EQ(GetLastFileDialogRequest().folder, dir.Path());

    FSpec empty{};
    PushFileDialogCancel();
    OpenFileDialog(nullptr, &result, "", "", &empty, false);
    EXPECT_EQ(GetLastFileDialogRequest().folder, "");
}

TEST_F(FileDialogScript, SaveWithAnEmptyNameProposesUntitled)
{
    PushFileDialogCancel();
    FSpec spec{};
    EXPECT_FALSE(SaveFileDialog(nullptr, &spec, kShowFilter, ".plx", nullptr));
    FileDialogRequest request = GetLastFileDialogRequest();
    EXPECT_TRUE(request.save);
    EXPECT_EQ(request.proposedName, "Untitled");
}

TEST_F(FileDialogScript, SaveProposesTheLeafWhateverTheSeparator)
{
    const char* names[] = {"/home/me/shows/beach.plx", "Disk:Shows:beach.plx",
                           "C:\\Shows\\beach.plx", "beach.plx"};
    for (const char* name : names) {
        FSpec spec = PathSpec(name);
        PushFileDialogCancel();
        SaveFileDialog(nullptr, &spec, kShowFilter, ".plx", nullptr);
        EXPECT_EQ(GetLastFileDialogRequest().proposedName, "beach.plx") << name;
    }
}

TEST_F(FileDialogScript, SaveOfANameEndingInASeparatorProposesUntitled)
{
    FSpec spec = PathSpec("/home/me/shows/");
    PushFileDialogCancel();
    SaveFileDialog(nullptr, &spec, kShowFilter, ".plx", nullptr);
    EXPECT_EQ(GetLastFileDialogRequest().proposedName, "Untitled");
}

TEST_F(FileDialogScript, SaveStartsInTheFolderOfTheNameElseTheInitialOne)
{
    pxtest::TempDir named;
    pxtest::TempDir initial;
    FSpec initialSpec = PathSpec(initial.Path());
    FSpec spec = PathSpec(named.File("show.plx"));
    PushFileDialogCancel();
    SaveFileDialog(nullptr, &spec, kShowFilter, ".plx", &initialSpec);
    EXPECT_EQ(GetLastFileDialogRequest().folder, named.Path());

    FSpec bare = PathSpec("show.plx");
    PushFileDialogCancel();
    SaveFileDialog(nullptr, &bare, kShowFilter, ".plx", &initialSpec);
    EXPECT_EQ(GetLastFileDialogRequest().folder, initial.Path());
}

TEST_F(FileDialogScript, SaveGivesTargaTypeOnlyForATargaFilter)
{
    FSpec spec{};
    PushFileDialogCancel();
    SaveFileDialog(nullptr, &spec, "Targa Image (*.tga)|*.tga|", ".tga", nullptr);
    EXPECT_EQ(GetLastFileDialogRequest().fileType, "TPIC");
    EXPECT_EQ(GetLastFileDialogRequest().creator, "****");
    PushFileDialogCancel();
    SaveFileDialog(nullptr, &spec, kShowFilter, ".plx", nullptr);
    EXPECT_EQ(GetLastFileDialogRequest().fileType, "TEXT");
    EXPECT_EQ(GetLastFileDialogRequest().creator, "****");
}

TEST_F(FileDialogScript, SaveHandsBackThePathFormWithoutATrailingSeparator)
{
    pxtest::TempDir dir;
    std::string path = dir.File("new.plx");
    PushFileDialogAnswer(path.c_str());
    FSpec spec{};
    ASSERT_TRUE(SaveFileDialog(nullptr, &spec, kShowFilter, ".plx", nullptr));
    EXPECT_TRUE(IsPathForm(spec));
    EXPECT_EQ(std::string(spec.name), path);
    EXPECT_FALSE(pxtest::FileExists(path));  // the dialog does not make the file

    std::filesystem::create_directory(dir.File("folder"));
    PushFileDialogAnswer(dir.File("folder/").c_str());
    ASSERT_TRUE(SaveFileDialog(nullptr, &spec, kShowFilter, ".plx", nullptr));
    EXPECT_EQ(std::string(spec.name), dir.File("folder"));
}

TEST_F(FileDialogScript, PathsTooLongForARecordAreNotHandedBack)
{
    std::string tooLong = "/" + std::string(300, 'x');
    PushFileDialogAnswer(tooLong.c_str());
    FSpec spec = PathSpec("/keep");
    EXPECT_FALSE(SaveFileDialog(nullptr, &spec, "", "", nullptr));
    EXPECT_STREQ(spec.name, "/keep");
}

TEST_F(FileDialogScript, AnswersAreTakenOldestFirstAndClearForgetsThem)
{
    PushFileDialogAnswer("/first");
    PushFileDialogAnswer("/second");
    FSpec result{};
    ASSERT_TRUE(OpenFileDialog(nullptr, &result, "", "", nullptr, false));
    EXPECT_STREQ(result.name, "/first");
    EXPECT_EQ(CountFileDialogAnswers(), 1);
    ClearFileDialogScript();
    EXPECT_EQ(CountFileDialogAnswers(), 0);
    EXPECT_EQ(CountFileDialogRequests(), 0);
}

TEST_F(FileDialogScript, AnswerInAFolderNotThereIsHandedBackAsWritten)
{
    PushFileDialogAnswer("/no-such-folder-here/x/../show.plx");
    FSpec result{};
    ASSERT_TRUE(OpenFileDialog(nullptr, &result, "", "", nullptr, false));
    EXPECT_TRUE(IsPathForm(result));
    EXPECT_STREQ(result.name, "/no-such-folder-here/show.plx");
}
