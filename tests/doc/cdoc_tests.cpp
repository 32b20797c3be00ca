#include "doc/cdoc.h"

#include <gtest/gtest.h>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "doc/globals.h"
#include "platform/base/env.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"

namespace {

// Each test starts from a store holding only the header, so constructor defaults apply.
class CDocTest : public testing::Test {
protected:
    void SetUp() override
    {
        SetEnvName("Parallaxotron");
        UseSettings("");
        doc = std::make_unique<CDoc>();
    }

    static void UseSettings(const std::string& lines)
    {
        std::string text = "[Parallaxotron]\r\n" + lines;
        LoadIniText(text.data(), text.size());
    }

    KeyStruct KeyAt(int frame, float x = 0.0f)
    {
        KeyStruct key;
        KeyIdentity(key);
        key.Frame = frame;
        key.XPos = x;
        return key;
    }

    // Pictures starting at the given frames.
    void MakePictures(std::initializer_list<long> starts)
    {
        int pic = 0;
        for (long start : starts)
            doc->SetPicStart(start, pic++);
        doc->picCount = pic;
    }

    std::unique_ptr<CDoc> doc;
};

TEST(KeyStructLayout, IsFiftySixBytesWithFieldsInFileOrder)
{
    EXPECT_EQ(sizeof(KeyStruct), 56u);
    EXPECT_EQ(offsetof(KeyStruct, XPos), 0u);
    EXPECT_EQ(offsetof(KeyStruct, Spare1), 4u);
    EXPECT_EQ(offsetof(KeyStruct, Rotation), 28u);
    EXPECT_EQ(offsetof(KeyStruct, PicStart), 36u);
    EXPECT_EQ(offsetof(KeyStruct, Frame), 48u);
    EXPECT_EQ(offsetof(KeyStruct, Reserved), 52u);
}

TEST(KeyIdentity, ClearsEveryField)
{
    KeyStruct key;
    std::memset(&key, 0x5A, sizeof key);
    KeyIdentity(key);
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&key);
    for (size_t i = 0; i < sizeof key; ++i)
        EXPECT_EQ(bytes[i], 0) << "byte " << i;
}

TEST_F(CDocTest, NewShowHasNoPicturesAndOneCentredKeyPerSlot)
{
    EXPECT_EQ(doc->picCount, 0);
    for (int pic = 0; pic < kMaxPictures; ++pic) {
        ASSERT_EQ(doc->GetKeyCount(pic), 1);
        KeyStruct key;
        doc->GetKey(0, key, pic);
        EXPECT_EQ(key.Frame, 0);
        EXPECT_EQ(key.XPos, 200.0f);
        EXPECT_EQ(key.YPos, 200.0f);
        EXPECT_EQ(key.Width, 100.0f);
        EXPECT_EQ(key.Rotation, 0.0f);
    }
    EXPECT_EQ(doc->showLength, 1800);
    EXPECT_FALSE(doc->dirty);
    EXPECT_EQ(doc->undoHead, -1);
    EXPECT_EQ(doc->undoCount, 0);
    EXPECT_EQ(doc->lookAheadPic, -1);
    EXPECT_EQ(doc->curPic, 0);
    EXPECT_EQ(doc->picLoadState, 1);
}

TEST_F(CDocTest, ConstructionEndsWithTheClearedEightByEight24BitImage)
{
    EXPECT_EQ(doc->image.GetWid(), 8);
    EXPECT_EQ(doc->image.GetBitCount(), 24);
    doc->image.Create(16, 16, 8);
    doc->ClearShow();
    EXPECT_EQ(doc->image.GetWid(), 8);
    EXPECT_EQ(doc->image.GetHgt(), 8);
    EXPECT_EQ(doc->image.GetBitCount(), 24);
}

TEST_F(CDocTest, ClearShowEmptiesPicturesKeysFilesAndUndo)
{
    MakePictures({0, 100});
    doc->SetKey(1, KeyAt(40), 1);
    std::strcpy(doc->picSpec[1].name, "/pictures/a.bmp");
    doc->Do(KeyAt(3), 0, 0);
    doc->redoCount = 4;
    doc->border = 12;
    doc->hasExtraSpec = true;
    doc->showID = 77;

    doc->ClearShow();
    EXPECT_EQ(doc->picCount, 0);
    EXPECT_EQ(doc->GetKeyCount(1), 1);
    EXPECT_EQ(doc->picSpec[1].name[0], 0);
    EXPECT_EQ(doc->GetPicStart(1), 0);
    EXPECT_EQ(doc->undoHead, -1);
    EXPECT_EQ(doc->undoCount, 0);
    EXPECT_EQ(doc->redoCount, 0);
    EXPECT_EQ(doc->border, 0);
    EXPECT_FALSE(doc->hasExtraSpec);
    EXPECT_EQ(doc->showID, 0);
    EXPECT_FALSE(doc->dirty);
}

TEST_F(CDocTest, DefaultsApplyWhenNoSettingIsStored)
{
    EXPECT_EQ(doc->defaultEase, 0);
    EXPECT_FALSE(doc->alwaysUseRotation);
    EXPECT_EQ(doc->aspectMode, 7500);
    EXPECT_FLOAT_EQ(doc->aspectRatio, 0.75f);
    EXPECT_EQ(gFrameRate, 2997);
    EXPECT_TRUE(doc->videoColors);
    EXPECT_TRUE(doc->showPicError);
    EXPECT_TRUE(doc->autoAddKey);
    EXPECT_TRUE(doc->ignoreAlpha);
    EXPECT_FALSE(gMultiProcess);
    EXPECT_EQ(gMultiProcOffset, 0);
    EXPECT_STREQ(doc->altImageFolder, "");
    EXPECT_STREQ(doc->rootVolume, "/");
    EXPECT_EQ(doc->blurFrames, 0);
    EXPECT_EQ(doc->showWord, 12850);
}

TEST_F(CDocTest, SettingsAreReadAtConstruction)
{
    UseSettings(
        "EaseType=19\r\nAlwaysUseRotation=1\r\nAspectMode=5626\r\nFieldSwap=1\r\n"
        "MultiProcess=1\r\nDraftRender=1\r\nRescaleShow=1\r\nFlopTopField=1\r\nFrameRate=2500\r\n"
        "BlurFrames=3\r\nAltImageFolder=/alt/pictures\r\nPreBlur=2\r\nMatteColor=255\r\n"
        "VideoColors=0\r\nShowPicError=0\r\nMultiProcOffset=-2\r\nAutoAddKey=0\r\nIgnoreAlpha=0\r\n"
        "RootVolume=/media\r\n");
    CDoc read;
    EXPECT_EQ(read.defaultEase, 19);
    EXPECT_TRUE(read.alwaysUseRotation);
    EXPECT_EQ(read.aspectMode, 5626);
    EXPECT_FLOAT_EQ(read.aspectRatio, 0.5625f);
    EXPECT_TRUE(read.fieldSwap);
    EXPECT_TRUE(gMultiProcess);
    EXPECT_TRUE(read.draftRender);
    EXPECT_TRUE(read.rescaleShow);
    EXPECT_TRUE(read.flopTopField);
    EXPECT_EQ(gFrameRate, 2500);
    EXPECT_EQ(read.blurFrames, 3);
    EXPECT_STREQ(read.altImageFolder, "/alt/pictures");
    EXPECT_EQ(read.preBlur, 2);
    EXPECT_EQ(read.matteColor, 255);
    EXPECT_FALSE(read.videoColors);
    EXPECT_FALSE(read.showPicError);
    EXPECT_EQ(gMultiProcOffset, -2);
    EXPECT_FALSE(read.autoAddKey);
    EXPECT_FALSE(read.ignoreAlpha);
    EXPECT_STREQ(read.rootVolume, "/media");
    gMultiProcess = false;
    gMultiProcOffset = 0;
    gFrameRate = 2997;
}

TEST(CDocAspect, LastDigitBelowFiveCarriesAVariantWithoutChangingTheRatio)
{
    EXPECT_FLOAT_EQ(CDoc::AspectRatioOf(7500), 0.75f);
    EXPECT_FLOAT_EQ(CDoc::AspectRatioOf(5626), 0.5625f);
    EXPECT_FLOAT_EQ(CDoc::AspectRatioOf(5625), 0.5625f);
    EXPECT_FLOAT_EQ(CDoc::AspectRatioOf(7504), 0.75f);
    EXPECT_FLOAT_EQ(CDoc::AspectRatioOf(7505), 0.7505f);
}

TEST_F(CDocTest, SlatewhirlInTheEnvironmentNameSetsTheFlag)
{
    EXPECT_FALSE(doc->slatewhirl);
    SetEnvName("Slatewhirl Parallaxotron");
    CDoc hosted;
    EXPECT_TRUE(hosted.slatewhirl);
    SetEnvName("Parallaxotron");
}

TEST_F(CDocTest, PicStartIsStoredAsFloatAndReadTruncated)
{
    doc->SetPicStart(250, 3);
    EXPECT_EQ(doc->keys[3][0].PicStart, 250.0f);
    EXPECT_EQ(doc->GetPicStart(3), 250);
    doc->keys[3][0].PicStart = 99.9f;
    EXPECT_EQ(doc->GetPicStart(3), 99);
    doc->keys[3][0].PicStart = -2.7f;
    EXPECT_EQ(doc->GetPicStart(3), -2);
}

TEST_F(CDocTest, PicStartOutOfRangeIsZeroAndIgnored)
{
    EXPECT_EQ(doc->GetPicStart(64), 0);
    EXPECT_EQ(doc->GetPicStart(-1), 0);
    doc->SetPicStart(500, 64);
    doc->SetPicStart(500, -1);
    EXPECT_EQ(doc->keys[64][0].PicStart, 0.0f);
}

TEST_F(CDocTest, PicStartThatIsNotANumberReadsAsZeroAndHugeValuesAreBounded)
{
    doc->keys[2][0].PicStart = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(doc->GetPicStart(2), 0);
    doc->keys[2][0].PicStart = std::numeric_limits<float>::infinity();
    EXPECT_GT(doc->GetPicStart(2), 2000000000L);
    doc->keys[2][0].PicStart = -1e30f;
    EXPECT_LT(doc->GetPicStart(2), -2000000000L);
}

TEST_F(CDocTest, FindCurPicWithNoOrOnePictureAnswersZero)
{
    EXPECT_EQ(doc->FindCurPic(500), 0);
    MakePictures({0});
    EXPECT_EQ(doc->FindCurPic(500), 0);
}

TEST_F(CDocTest, FindCurPicAnswersThePictureOnScreen)
{
    MakePictures({0, 100, 250});
    EXPECT_EQ(doc->FindCurPic(0), 0);
    EXPECT_EQ(doc->FindCurPic(99), 0);
    EXPECT_EQ(doc->FindCurPic(100), 1);
    EXPECT_EQ(doc->FindCurPic(249), 1);
    EXPECT_EQ(doc->FindCurPic(250), 2);
}

TEST_F(CDocTest, FindCurPicAnswersLastPictureAfterEnd)
{
    MakePictures({0, 100, 250});
    EXPECT_EQ(doc->FindCurPic(10000), 2);
}

TEST_F(CDocTest, FindCurPicAnswersLastPictureBeforeTheFirstStart)
{
    MakePictures({10, 100, 250});
    EXPECT_EQ(doc->FindCurPic(5), 2);
}

TEST_F(CDocTest, FindKeyFindsAKeyWithinThreeFrames)
{
    MakePictures({0, 100});
    doc->SetKey(1, KeyAt(50), 1);
    for (long relative = 47; relative <= 53; ++relative)
        EXPECT_EQ(doc->FindKey(100 + relative), 1) << relative;
    EXPECT_EQ(doc->FindKey(100 + 46), -1);
    EXPECT_EQ(doc->FindKey(100 + 54), -1);
}

TEST_F(CDocTest, FindKeyAnswersTheFirstStoredMatch)
{
    MakePictures({0});
    doc->SetKey(1, KeyAt(52), 0);
    doc->SetKey(2, KeyAt(50), 0);
    EXPECT_EQ(doc->FindKey(50), 1);
    EXPECT_EQ(doc->FindKey(2), 0);
}

TEST_F(CDocTest, SetKeyAtTheCountAppendsAndGrowsTheCountByOne)
{
    doc->SetKey(1, KeyAt(30), 0);
    EXPECT_EQ(doc->GetKeyCount(0), 2);
    EXPECT_TRUE(doc->dirty);
    KeyStruct key;
    doc->GetKey(1, key, 0);
    EXPECT_EQ(key.Frame, 30);
}

TEST_F(CDocTest, SetKeyPastTheCountStillGrowsByExactlyOne)
{
    doc->SetKey(5, KeyAt(30), 0);
    EXPECT_EQ(doc->GetKeyCount(0), 2);
}

TEST_F(CDocTest, SetKeyBelowTheCountReplacesAndKeepsTheCount)
{
    doc->SetKey(1, KeyAt(30), 0);
    doc->SetKey(0, KeyAt(0, 12.0f), 0);
    EXPECT_EQ(doc->GetKeyCount(0), 2);
    KeyStruct key;
    doc->GetKey(0, key, 0);
    EXPECT_EQ(key.XPos, 12.0f);
}

TEST_F(CDocTest, SetKeyIndexSixtyFourAddressesKeyZeroOfTheNextSlot)
{
    doc->SetKey(64, KeyAt(7, 33.0f), 2);
    EXPECT_EQ(doc->keys[3][0].XPos, 33.0f);
    EXPECT_EQ(doc->keys[3][0].Frame, 7);
}

TEST_F(CDocTest, SetKeyOfTheLastPictureAtSixtyFourLandsInTheScratchSlot)
{
    doc->SetKey(64, KeyAt(7, 33.0f), 63);
    EXPECT_EQ(doc->keys[64][0].XPos, 33.0f);
}

TEST_F(CDocTest, KeyCountNeverPassesSixtyFour)
{
    for (int key = 1; key <= 64; ++key)
        doc->SetKey(key, KeyAt(key), 0);
    EXPECT_EQ(doc->GetKeyCount(0), 64);
    doc->SetKey(64, KeyAt(99), 0);
    EXPECT_EQ(doc->GetKeyCount(0), 64);
}

TEST_F(CDocTest, SetKeyOutOfRangeIsIgnored)
{
    doc->SetKey(65, KeyAt(30), 0);
    doc->SetKey(-1, KeyAt(30), 0);
    doc->SetKey(1, KeyAt(30), 64);
    doc->SetKey(1, KeyAt(30), -1);
    EXPECT_EQ(doc->GetKeyCount(0), 1);
    EXPECT_EQ(doc->keyCount[64], 1);
    EXPECT_FALSE(doc->dirty);
}

TEST_F(CDocTest, GetKeyWithIndexSixtyFourLeavesTheOutputUntouched)
{
    KeyStruct out = KeyAt(123, 4.5f);
    doc->GetKey(64, out, 0);
    EXPECT_EQ(out.Frame, 123);
    EXPECT_EQ(out.XPos, 4.5f);
    doc->GetKey(0, out, 64);
    doc->GetKey(-1, out, 0);
    doc->GetKey(0, out, -1);
    EXPECT_EQ(out.Frame, 123);
}

TEST_F(CDocTest, SortKeysOrdersByFrameCarryingTheOtherFields)
{
    doc->SetKey(0, KeyAt(30, 3.0f), 0);
    doc->SetKey(1, KeyAt(0, 1.0f), 0);
    doc->SetKey(2, KeyAt(10, 2.0f), 0);
    doc->keys[0][0].Reserved[0] = 9;
    doc->SortKeys(0);
    EXPECT_EQ(doc->keys[0][0].Frame, 0);
    EXPECT_EQ(doc->keys[0][1].Frame, 10);
    EXPECT_EQ(doc->keys[0][2].Frame, 30);
    EXPECT_EQ(doc->keys[0][0].XPos, 1.0f);
    EXPECT_EQ(doc->keys[0][1].XPos, 2.0f);
    EXPECT_EQ(doc->keys[0][2].XPos, 3.0f);
    EXPECT_EQ(doc->keys[0][2].Reserved[0], 9);
}

TEST_F(CDocTest, SortKeysPicksTheEarliestStoredOfEqualMinima)
{
    doc->SetKey(0, KeyAt(5, 1.0f), 0);
    doc->SetKey(1, KeyAt(0, 2.0f), 0);
    doc->SetKey(2, KeyAt(0, 3.0f), 0);
    doc->SortKeys(0);
    EXPECT_EQ(doc->keys[0][0].XPos, 2.0f);
    EXPECT_EQ(doc->keys[0][1].XPos, 3.0f);
    EXPECT_EQ(doc->keys[0][2].XPos, 1.0f);
}

TEST_F(CDocTest, DeleteKeyMovesLaterKeysDownAndRecordsTheKeyForUndo)
{
    doc->SetKey(1, KeyAt(10, 1.0f), 2);
    doc->SetKey(2, KeyAt(20, 2.0f), 2);
    doc->SetKey(3, KeyAt(30, 3.0f), 2);
    doc->dirty = false;
    doc->DeleteKey(1, 2);
    EXPECT_EQ(doc->GetKeyCount(2), 3);
    EXPECT_EQ(doc->keys[2][1].Frame, 20);
    EXPECT_EQ(doc->keys[2][2].Frame, 30);
    EXPECT_TRUE(doc->dirty);
    ASSERT_EQ(doc->undoCount, 1);
    const KeyStruct& entry = doc->undoRing[doc->undoHead];
    EXPECT_EQ(entry.Frame, 10);
    EXPECT_EQ(entry.XPos, 1.0f);
    EXPECT_EQ(entry.Reserved[0], 2);
    EXPECT_EQ(entry.Reserved[1], kUndoDeletedKey);
}

TEST_F(CDocTest, DeleteKeyOfTheOnlyKeyLeavesAnEmptyPicture)
{
    doc->DeleteKey(0, 0);
    EXPECT_EQ(doc->GetKeyCount(0), 0);
}

TEST_F(CDocTest, DeleteKeyOutOfRangeIsIgnored)
{
    doc->DeleteKey(5, 0);
    doc->DeleteKey(0, 64);
    doc->DeleteKey(-1, 0);
    EXPECT_EQ(doc->GetKeyCount(0), 1);
    EXPECT_EQ(doc->undoCount, 0);
}

TEST_F(CDocTest, DefaultEaseClearsTheEaseOfEveryKeyInUse)
{
    MakePictures({0, 100});
    KeyStruct eased = KeyAt(20);
    eased.Ease = 37.0f;
    doc->SetKey(1, eased, 0);
    doc->SetKey(1, eased, 1);
    doc->keys[0][0].Ease = 5.0f;
    doc->DefaultEase();
    EXPECT_EQ(doc->keys[0][0].Ease, 0.0f);
    EXPECT_EQ(doc->keys[0][1].Ease, 0.0f);
    EXPECT_EQ(doc->keys[1][1].Ease, 0.0f);
}

TEST_F(CDocTest, HasRotationInShowSeesAnyOfTheThreeRotationValues)
{
    EXPECT_FALSE(doc->HasRotationInShow(0));
    KeyStruct turned = KeyAt(20);
    turned.Rot3 = 0.5f;
    doc->SetKey(1, turned, 0);
    EXPECT_TRUE(doc->HasRotationInShow(0));
    turned.Rot3 = 0.0f;
    turned.Rot2 = -1.0f;
    doc->SetKey(1, turned, 1);
    EXPECT_TRUE(doc->HasRotationInShow(1));
    turned.Rot2 = 0.0f;
    turned.Rotation = 10.0f;
    doc->SetKey(1, turned, 2);
    EXPECT_TRUE(doc->HasRotationInShow(2));
}

TEST_F(CDocTest, HasRotationInShowCountsNotANumberAsRotation)
{
    KeyStruct odd = KeyAt(20);
    odd.Rot2 = std::numeric_limits<float>::quiet_NaN();
    doc->SetKey(1, odd, 0);
    EXPECT_TRUE(doc->HasRotationInShow(0));
}

TEST_F(CDocTest, HasRotationInShowIsAlwaysTrueWhenForced)
{
    doc->alwaysUseRotation = true;
    EXPECT_TRUE(doc->HasRotationInShow(0));
    EXPECT_TRUE(doc->HasRotationInShow(64));
}

TEST_F(CDocTest, DoRecordsTheKeyWithPictureAndActionAndAdvancesTheHead)
{
    doc->redoCount = 2;
    doc->Do(KeyAt(15, 7.0f), 3, 4);
    EXPECT_EQ(doc->undoHead, 0);
    EXPECT_EQ(doc->undoCount, 1);
    EXPECT_EQ(doc->redoCount, 2);
    EXPECT_EQ(doc->undoRing[0].Frame, 15);
    EXPECT_EQ(doc->undoRing[0].XPos, 7.0f);
    EXPECT_EQ(doc->undoRing[0].Reserved[0], 4);
    EXPECT_EQ(doc->undoRing[0].Reserved[1], 3);
}

TEST_F(CDocTest, DoWrapsTheHeadAndCapsTheCountAtThirtyTwo)
{
    for (int edit = 0; edit < 40; ++edit)
        doc->Do(KeyAt(edit), 0, 0);
    EXPECT_EQ(doc->undoCount, 32);
    EXPECT_EQ(doc->undoHead, 39 % 32);
    EXPECT_EQ(doc->undoRing[doc->undoHead].Frame, 39);
}

TEST_F(CDocTest, DoForAPictureOutOfRangeRecordsNothing)
{
    doc->Do(KeyAt(1), 0, 64);
    doc->Do(KeyAt(1), 0, -1);
    EXPECT_EQ(doc->undoHead, -1);
    EXPECT_EQ(doc->undoCount, 0);
}

// Every entry point that takes a picture or key index leaves the show alone for a negative one
// (LoadPicture is checked with a real picture among the picture cache's tests).
TEST_F(CDocTest, NegativePictureAndKeyIndicesChangeNothing)
{
    MakePictures({0, 100});
    doc->SetKey(1, KeyAt(40, 5.0f), 0);
    doc->SetKey(1, KeyAt(30, 6.0f), 1);
    std::snprintf(doc->picSpec[0].name, sizeof doc->picSpec[0].name, "/nowhere/a.bmp");
    doc->dirty = false;
    std::vector<char> keys(reinterpret_cast<const char*>(doc->keys),
                           reinterpret_cast<const char*>(doc->keys) + sizeof doc->keys);
    std::vector<int> counts(doc->keyCount, doc->keyCount + kPictureSlots);
    std::vector<char> specs(reinterpret_cast<const char*>(doc->picSpec),
                            reinterpret_cast<const char*>(doc->picSpec) + sizeof doc->picSpec);

    KeyStruct out = KeyAt(7, 7.0f);
    for (int index : {-1, -64, std::numeric_limits<int>::min()}) {
        doc->GetKey(index, out, 0);
        doc->GetKey(0, out, index);
        doc->SetKey(index, KeyAt(1), 0);
        doc->SetKey(0, KeyAt(1), index);
        doc->SetPicStart(50, index);
        doc->SortKeys(index);
        doc->DeleteKey(index, 0);
        doc->DeleteKey(0, index);
        doc->Do(KeyAt(1), 0, index);
        doc->ChangePicTiming(10, index);
        doc->CopyPic(index, 0);
        doc->CopyPic(0, index);
        doc->FlopPic(index, 0);
        doc->DeletePic(index);
        doc->RescaleMoves(index, 10, 10, 20, 20);
        doc->ConstantMotion(index);
        EXPECT_FALSE(doc->LoadPictureBuffer(index, true));
        EXPECT_EQ(doc->GetPicStart(index), 0);
        EXPECT_EQ(doc->GetKeyCount(index), 0);
        EXPECT_FALSE(doc->HasRotationInShow(index));
        KeyStruct camera = KeyAt(3, 3.0f);
        doc->QueueKey(&camera, index, 10, 0);
        EXPECT_EQ(camera.XPos, 0.0f);
    }
    EXPECT_EQ(out.XPos, 7.0f);
    EXPECT_EQ(std::memcmp(keys.data(), doc->keys, keys.size()), 0);
    EXPECT_EQ(counts, std::vector<int>(doc->keyCount, doc->keyCount + kPictureSlots));
    EXPECT_EQ(std::memcmp(specs.data(), doc->picSpec, specs.size()), 0);
    EXPECT_EQ(doc->picCount, 2);
    EXPECT_EQ(doc->undoCount, 0);
    EXPECT_FALSE(doc->dirty);
}

}  // namespace
