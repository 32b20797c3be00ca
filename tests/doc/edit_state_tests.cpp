// What the document keeps for the editor's commands: the key clipboard, the current show file and
// the key selection.

#include "doc/edit_state.h"

#include <gtest/gtest.h>
#include <cstring>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/file/paths.h"

namespace {

TEST(KeyClipboard, StartsEmptyWithItsMarker)
{
    KeyClipboard clipboard;
    EXPECT_EQ(clipboard.marker, -9999);
    EXPECT_FALSE(clipboard.HoldsKey());
}

TEST(KeyClipboard, HoldsTheKeyPutInIt)
{
    KeyClipboard clipboard;
    KeyStruct key{};
    key.XPos = 12.5f;
    key.Frame = 40;
    clipboard.Put(key);
    EXPECT_TRUE(clipboard.HoldsKey());
    EXPECT_EQ(clipboard.key.XPos, 12.5f);
    EXPECT_EQ(clipboard.key.Frame, 40);
}

TEST(ShowFileRecord, KeepsTheRecordAndItsPathUntilCleared)
{
    ShowFileRecord record;
    EXPECT_FALSE(record.IsSet());
    FSpec spec = PathFSpec("/shows/My Trip.plx");
    record.Set(spec);
    EXPECT_TRUE(record.IsSet());
    EXPECT_STREQ(record.path, "/shows/My Trip.plx");
    EXPECT_EQ(std::memcmp(&record.spec, &spec, sizeof spec), 0);
    record.Clear();
    EXPECT_FALSE(record.IsSet());
    EXPECT_EQ(record.spec.name[0], 0);
}

TEST(ShowFileRecord, EmptyRecordHasNoPath)
{
    ShowFileRecord record;
    record.Set(FSpec{});
    EXPECT_FALSE(record.IsSet());
}

TEST(DocumentEditState, ClearShowForgetsTheShowFileButKeepsTheClipboard)
{
    CDoc doc;
    doc.showFile.Set(PathFSpec("/shows/a.plx"));
    doc.clipboard.Put(KeyStruct{});
    doc.ClearShow();
    EXPECT_FALSE(doc.showFile.IsSet());
    EXPECT_TRUE(doc.clipboard.HoldsKey());
}

TEST(DocumentEditState, SelectionIsTheKeyAtTheCurrentFrame)
{
    CDoc doc;
    doc.picCount = 1;
    doc.keyCount[0] = 2;
    doc.keys[0][1].Frame = 60;
    gCurFrame = 0;
    EXPECT_EQ(doc.GetKeySelection(), 0);
    gCurFrame = 61;
    EXPECT_EQ(doc.GetKeySelection(), 1);
    gCurFrame = 30;
    EXPECT_EQ(doc.GetKeySelection(), -1);
    gCurFrame = 0;
}

}  // namespace
