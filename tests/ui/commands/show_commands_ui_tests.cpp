// The show commands: New, Load and Save Show with their questions, the quick save, the close
// request, and saving that never loses the show (failed saves, a full file system).

#include "ui/commands/show_commands.h"

#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "support/editor_fixture.h"
#include "ui/commands/recent_shows.h"

namespace {

class ShowCommands : public pxtest::Editor {
protected:
    // A copy of the demo show beside which its pictures are found (altImageFolder is set).
    std::string SavedDemo(const std::string& name)
    {
        StartWithDemo();
        std::string path = dir.File(name);
        FSpec spec = PathFSpec(path.c_str());
        EXPECT_TRUE(pDoc->WriteShowFile(&spec));
        return path;
    }
};

TEST_F(ShowCommands, SaveShowWritesTheWholeShowAndMakesItTheShowsFile)
{
    StartWithDemo();
    pDoc->keys[0][1].XPos += 5.0f;
    pDoc->dirty = true;
    std::string path = dir.File("trip.plx");
    PushFileDialogAnswer(path.c_str());
    ASSERT_TRUE(Choose(2003));
    EXPECT_FALSE(pDoc->dirty);
    EXPECT_STREQ(pDoc->showFile.path, path.c_str());
    EXPECT_EQ(Title(), "Hollerbank Parallaxotron - trip");
    FileDialogRequest request = GetLastFileDialogRequest();
    EXPECT_TRUE(request.save);
    EXPECT_EQ(request.proposedName, "demo.plx");
    EXPECT_EQ(request.defaultSuffix, "plx");
    std::vector<unsigned char> bytes = pxtest::ReadBytes(path);
    FSpec spec = PathFSpec(path.c_str());
    EXPECT_EQ(static_cast<long>(bytes.size()), pDoc->SaveShow(&spec, nullptr));
    EXPECT_EQ(RecentShows().front(), path);
}

TEST_F(ShowCommands, CancelledSaveChangesNothing)
{
    StartWithDemo();
    pDoc->dirty = true;
    PushFileDialogCancel();
    Command(2003);
    EXPECT_TRUE(pDoc->dirty);
    EXPECT_EQ(Title(), "Hollerbank Parallaxotron - demo");
}

TEST_F(ShowCommands, NewShowOfAModifiedShowAsksAndCancelKeepsIt)
{
    StartWithDemo();
    pDoc->dirty = true;
    PushMessageBoxAnswer(kBoxCancel);
    Ctrl('n');
    EXPECT_EQ(pDoc->picCount, 4);
    EXPECT_TRUE(pDoc->dirty);
    std::vector<std::string> boxes = BoxTexts();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0], "New Show: Do you want to save current show?");

    PushMessageBoxAnswer(kBoxNo);
    Ctrl('n');
    EXPECT_EQ(pDoc->picCount, 0);
    EXPECT_EQ(Title(), "Hollerbank Parallaxotron");
    EXPECT_EQ(gCurFrame, 0);
    EXPECT_FALSE(pDoc->showFile.IsSet());
}

TEST_F(ShowCommands, AFailedSaveStopsNewLoadAndExit)
{
    StartWithDemo();
    pDoc->dirty = true;
    // Saved into a folder that is not there: the save fails and says so.
    std::string nowhere = dir.File("missing/show.plx");
    PushMessageBoxAnswer(kBoxYes);  // save first?
    PushFileDialogAnswer(nowhere.c_str());
    PushMessageBoxAnswer(kBoxYes);  // the failure
    Command(2005);
    EXPECT_EQ(pDoc->picCount, 4);
    EXPECT_TRUE(pDoc->dirty);

    PushMessageBoxAnswer(kBoxYes);
    PushFileDialogAnswer(nowhere.c_str());
    PushMessageBoxAnswer(kBoxYes);
    Command(2004);  // no open dialog follows
    EXPECT_EQ(pDoc->picCount, 4);

    PushMessageBoxAnswer(kBoxYes);
    PushFileDialogAnswer(nowhere.c_str());
    PushMessageBoxAnswer(kBoxYes);
    Command(2001);
    EXPECT_EQ(gMacDone, 0);
    EXPECT_TRUE(pDoc->dirty);
    std::vector<std::string> boxes = BoxTexts();
    ASSERT_EQ(boxes.size(), 6u);
    EXPECT_EQ(boxes[4], "Exit Application: Do you want to save this show?");
    EXPECT_NE(boxes[5].find("could not be saved"), std::string::npos);
}

TEST_F(ShowCommands, ACancelledSaveStopsNew)
{
    StartWithDemo();
    pDoc->dirty = true;
    PushMessageBoxAnswer(kBoxYes);
    PushFileDialogCancel();
    Command(2005);
    EXPECT_EQ(pDoc->picCount, 4);
}

TEST_F(ShowCommands, HostedNewShowAsksAreYouSure)
{
    Start("", false);
    FSpec spec = PathFSpec(pxtest::kDemoShow.c_str());
    ASSERT_TRUE(OpenDocumentFile(&spec, true));
    pDoc->dirty = true;
    PushMessageBoxAnswer(kBoxNo);
    Command(2005);
    EXPECT_EQ(pDoc->picCount, 4);
    PushMessageBoxAnswer(kBoxYes);
    Command(2005);
    EXPECT_EQ(pDoc->picCount, 0);
    std::vector<std::string> boxes = BoxTexts();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0], "New Show: Are you sure?");
}

TEST_F(ShowCommands, LoadShowOpensTheChosenShowAndRemembersIt)
{
    std::string path = SavedDemo("copy.plx");
    Command(2005);
    ASSERT_EQ(pDoc->picCount, 0);
    PushFileDialogAnswer(path.c_str());
    Ctrl('o');
    EXPECT_EQ(pDoc->picCount, 4);
    EXPECT_EQ(Title(), "Hollerbank Parallaxotron - copy");
    EXPECT_EQ(RecentShows().front(), path);
    EXPECT_FALSE(GetLastFileDialogRequest().save);
}

TEST_F(ShowCommands, OpeningAFileThatIsNotAShowLeavesTheShow)
{
    StartWithDemo();
    std::string junk = dir.File("junk.plx");
    ASSERT_TRUE(pxtest::WriteText(junk, "not the keys of a show"));
    PushFileDialogAnswer(junk.c_str());
    PushMessageBoxAnswer(kBoxYes);
    Command(2004);
    EXPECT_EQ(pDoc->picCount, 4);
    EXPECT_EQ(Title(), "Hollerbank Parallaxotron - demo");
    EXPECT_STREQ(pDoc->showFile.path, pxtest::kDemoShow.c_str());
    std::vector<std::string> boxes = BoxTexts();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_NE(boxes[0].find("not a show"), std::string::npos);
}

TEST_F(ShowCommands, QuickSaveWritesTheShowsOwnFileWithoutAsking)
{
    std::string path = SavedDemo("quick.plx");
    FSpec spec = PathFSpec(path.c_str());
    ASSERT_TRUE(OpenDocumentFile(&spec, true));
    pDoc->GotoFrame(50, true);
    pDoc->keys[0][1].XPos += 7.0f;
    pDoc->dirty = true;
    Ctrl('s');
    EXPECT_FALSE(pDoc->dirty);
    EXPECT_EQ(gCurFrame, 50);
    EXPECT_EQ(CountFileDialogRequests(), 0);
    float moved = pDoc->keys[0][1].XPos;
    Command(2005);
    ASSERT_TRUE(OpenDocumentFile(&spec, true));
    EXPECT_EQ(pDoc->keys[0][1].XPos, moved);
}

TEST_F(ShowCommands, QuickSaveOfANewShowAsksWhere)
{
    Start();
    PushFileDialogCancel();
    Ctrl('s');
    EXPECT_EQ(CountFileDialogRequests(), 1);
    EXPECT_TRUE(GetLastFileDialogRequest().save);
}

TEST_F(ShowCommands, CloseOfAModifiedShowCancelKeepsRunningYesSavesAndEnds)
{
    std::string path = SavedDemo("close.plx");
    FSpec spec = PathFSpec(path.c_str());
    ASSERT_TRUE(OpenDocumentFile(&spec, true));
    pDoc->dirty = true;
    PushMessageBoxAnswer(kBoxCancel);
    PostAMessage(pMain, kMsgClose, 0, 0);
    EXPECT_EQ(gMacDone, 0);
    PushMessageBoxAnswer(kBoxYes);
    PushFileDialogAnswer(path.c_str());
    Ctrl('q');
    EXPECT_EQ(gMacDone, 1);
    EXPECT_FALSE(pDoc->dirty);
}

TEST_F(ShowCommands, TheWindowManagersCloseAsksTooAndCancelKeepsTheWindow)
{
    StartWithDemo();
    pDoc->dirty = true;
    PushMessageBoxAnswer(kBoxCancel);
    Frame(pMain)->close();
    ProcessEvents();
    EXPECT_EQ(gMacDone, 0);
    std::vector<std::string> boxes = BoxTexts();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0], "Exit Application: Do you want to save this show?");
    PushMessageBoxAnswer(kBoxNo);
    Frame(pMain)->close();
    ProcessEvents();
    EXPECT_EQ(gMacDone, 1);
}

TEST_F(ShowCommands, CloseOfAnUnmodifiedShowAsksNothing)
{
    StartWithDemo();
    Command(2001);
    EXPECT_EQ(gMacDone, 1);
    EXPECT_TRUE(BoxTexts().empty());
}

TEST_F(ShowCommands, ShowOf40000BytesIsSavedAndLoadedWhole)
{
    Start();
    constexpr int kPictures = 11;
    FillWithEveryKey(kPictures, pxtest::kLake, 150);
    pDoc->dirty = true;
    std::string path = dir.File("long.plx");
    PushFileDialogAnswer(path.c_str());
    Command(2003);
    ASSERT_GE(std::filesystem::file_size(path), 40000u);
    PushMessageBoxAnswer(kBoxNo);  // nothing changed since, so no question: see below
    Command(2005);
    // New after a save asks nothing: the answer queued above is still there.
    EXPECT_EQ(CountMessageBoxAnswers(), 1);
    ClearMessageBoxScript();
    PushFileDialogAnswer(path.c_str());
    Command(2004);
    EXPECT_EQ(pDoc->picCount, kPictures);
    KeyStruct last{};
    pDoc->GetKey(kMaxKeys - 1, last, kPictures - 1);
    EXPECT_EQ(last.XPos, 1000.0f + (kPictures - 1) * 100 + kMaxKeys - 1);
}

// ---- A save onto a full file system ---------------------------------------------------------

class FullDisk : public ShowCommands {
protected:
    void TearDown() override
    {
        if (mounted)
            umount2(mountPoint.c_str(), MNT_DETACH);
        ShowCommands::TearDown();
    }
    // A 64 KB file system of its own in the test's folder; false (with the reason) when it
    // cannot be had.
    bool MountSmallDisk(std::string* reason)
    {
        mountPoint = dir.File("small-disk");
        std::filesystem::create_directory(mountPoint);
        if (mount("tmpfs", mountPoint.c_str(), "tmpfs", 0, "size=64k") != 0) {
            *reason = std::string("cannot mount a small tmpfs here: ") + std::strerror(errno);
            return false;
        }
        mounted = true;
        return true;
    }
    // Fills the file system up to its last byte.
    void Fill()
    {
        std::ofstream filler(mountPoint + "/filler", std::ios::binary);
        std::vector<char> block(1024, 'x');
        while (filler.write(block.data(), static_cast<std::streamsize>(block.size())))
            filler.flush();
        std::ofstream last(mountPoint + "/filler-tail", std::ios::binary);
        while (last.put('x'))
            last.flush();
    }

    std::string mountPoint;
    bool mounted = false;
};

TEST_F(FullDisk, ASaveOntoAFullFileSystemReportsAndKeepsThePreviousShow)
{
    std::string reason;
    StartWithDemo();
    if (!MountSmallDisk(&reason))
        GTEST_SKIP() << reason;
    std::string path = mountPoint + "/show.plx";
    PushFileDialogAnswer(path.c_str());
    Command(2003);
    ASSERT_FALSE(pDoc->dirty);
    std::vector<unsigned char> before = pxtest::ReadBytes(path);
    ASSERT_FALSE(before.empty());
    float keptX = pDoc->keys[0][1].XPos;

    Fill();
    pDoc->keys[0][1].XPos += 9.0f;
    pDoc->dirty = true;
    PushMessageBoxAnswer(kBoxYes);  // the failure
    Ctrl('s');
    EXPECT_TRUE(pDoc->dirty);
    std::vector<std::string> boxes = BoxTexts();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_NE(boxes[0].find("could not be saved"), std::string::npos);
    EXPECT_NE(boxes[0].find("No space left on device"), std::string::npos);
    EXPECT_EQ(pxtest::ReadBytes(path), before);
    // No temporary file is left behind.
    for (const auto& entry : std::filesystem::directory_iterator(mountPoint))
        EXPECT_EQ(entry.path().filename().string().find(".partial-"), std::string::npos);

    // The exit question with a failing save keeps the program running.
    PushMessageBoxAnswer(kBoxYes);
    PushFileDialogAnswer(path.c_str());
    PushMessageBoxAnswer(kBoxYes);
    Command(2001);
    EXPECT_EQ(gMacDone, 0);

    // The previous show is still there and loads.
    pDoc->dirty = false;
    PushFileDialogAnswer(path.c_str());
    Command(2004);
    EXPECT_EQ(pDoc->picCount, 4);
    EXPECT_EQ(pDoc->keys[0][1].XPos, keptX);
    TakeShownMessageBoxes();
}

}  // namespace
