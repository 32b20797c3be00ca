// The show file: the whole show laid into one buffer (SaveShow) and rebuilt from one (LoadShow).
//
//   header   magic 0x1234 (2), show identifier (2), length L (4)
//   records  per picture: FSpec (262), key count N (4), N keys of 56 bytes
//            optional extra file record: FSpec (262), count 0 (4)
//   trailer  matte colour (4), border (4), pre-blur (4), video colours (2), show word (2),
//            4 bytes counted in L but never written
//
// Numbers are in the writer's byte order; a reader that sees the magic reversed swaps them all.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <random>

#include "doc/camera.h"
#include "doc/cdoc.h"
#include "doc/editor_link.h"
#include "doc/frame_math.h"
#include "doc/globals.h"
#include "platform/file/endian.h"
#include "platform/ini/settings.h"

namespace {

constexpr uint16_t kShowMagic = 0x1234;
constexpr uint16_t kShowMagicSwapped = 0x3412;
constexpr long kHeaderBytes = 8;
constexpr long kTrailerBytes = 20;
constexpr long kCountBytes = 4;
constexpr long kRecordHeadBytes = static_cast<long>(sizeof(FSpec)) + kCountBytes;  // 266
constexpr long kKeyBytes = static_cast<long>(sizeof(KeyStruct));
constexpr float kVersionStamp = 110.0f;
constexpr float kFirstVersionWithTrailer = 90.0f;
constexpr float kFirstVersionWithShowWord = 105.0f;

// Milliseconds since the program started: the seed of each show identifier.
const auto gProgramStart = std::chrono::steady_clock::now();

long MillisecondsSinceStart()
{
    auto elapsed = std::chrono::steady_clock::now() - gProgramStart;
    return static_cast<long>(
        std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
}

void Put(char* buffer, long& at, const void* value, long bytes)
{
    std::memcpy(buffer + at, value, static_cast<size_t>(bytes));
    at += bytes;
}

// Reads the numbers of a show file in either byte order, never past its end.
class ShowReader {
public:
    ShowReader(const char* bytes, long length, bool swap)
        : bytes_(bytes), length_(length), swap_(swap)
    {
    }

    bool Fits(long count) const { return count >= 0 && at_ <= length_ - count; }
    long At() const { return at_; }
    void MoveTo(long at) { at_ = std::clamp(at, 0L, length_); }
    void Skip(long count) { MoveTo(at_ + count); }

    // A number of 2 or 4 bytes; the caller checked that it fits.
    template <typename T>
    T Number()
    {
        static_assert(sizeof(T) == 2 || sizeof(T) == 4, "show numbers are 2 or 4 bytes");
        T value;
        std::memcpy(&value, bytes_ + at_, sizeof value);
        if (swap_)
            FlopEndian(&value, sizeof value);
        at_ += static_cast<long>(sizeof value);
        return value;
    }

    FSpec Spec()
    {
        FSpec spec;
        std::memcpy(&spec, bytes_ + at_, sizeof spec);
        at_ += static_cast<long>(sizeof spec);
        if (swap_) {
            FlopEndian(&spec.vRefNum, sizeof spec.vRefNum);
            FlopEndian(&spec.parID, sizeof spec.parID);
        }
        return spec;
    }

    KeyStruct Key()
    {
        KeyStruct key;
        std::memcpy(&key, bytes_ + at_, sizeof key);
        at_ += kKeyBytes;
        if (swap_) {
            // Fields 0-12 are 4-byte values; field 13 is two 2-byte halves.
            auto* words = reinterpret_cast<unsigned char*>(&key);
            for (int field = 0; field < 13; ++field)
                FlopEndian(words + 4 * field, 4);
            FlopEndian(&key.Reserved[0], 2);
            FlopEndian(&key.Reserved[1], 2);
        }
        return key;
    }

private:
    const char* bytes_;
    long length_;
    bool swap_;
    long at_ = 0;
};

}  // namespace

float CDoc::EncodedDefaultEase() const
{
    float encoded = static_cast<float>(((defaultEase & 15) + 1) * 1000);
    if (defaultEase & kEaseNoCurves)
        encoded += 1.0f;
    return encoded;
}

long CDoc::SaveShow([[maybe_unused]] FSpec* file, char* buffer)
{
    // A picture of one key is saved with a second: the same camera one second later.
    for (int pic = 0; pic < picCount; ++pic) {
        if (keyCount[pic] != 1)
            continue;
        keys[pic][1] = keys[pic][0];
        keys[pic][1].Frame = (gFrameRate + 50) / 100;
        keyCount[pic] = 2;
    }
    long size = kHeaderBytes + kTrailerBytes;
    for (int pic = 0; pic < picCount; ++pic)
        size += kRecordHeadBytes + kKeyBytes * keyCount[pic];
    if (hasExtraSpec)
        size += kRecordHeadBytes;
    keys[0][0].Spare1 = kVersionStamp;
    if (buffer == nullptr)
        return size;

    long at = kHeaderBytes;
    float defaultEncoded = EncodedDefaultEase();
    for (int pic = 0; pic < picCount; ++pic) {
        Put(buffer, at, &picSpec[pic], sizeof(FSpec));
        int32_t count = keyCount[pic];
        Put(buffer, at, &count, kCountBytes);
        keys[pic][0].ShowLen = slatewhirl ? aspectRatio : static_cast<float>(showLength);
        for (int key = 0; key < count; ++key) {
            KeyStruct written = keys[pic][key];
            if (written.Ease < 1.0f)
                written.Ease = defaultEncoded;
            Put(buffer, at, &written, kKeyBytes);
        }
    }
    if (hasExtraSpec) {
        Put(buffer, at, &extraSpec, sizeof(FSpec));
        int32_t none = 0;
        Put(buffer, at, &none, kCountBytes);
    }
    int32_t trailerMatte = static_cast<int32_t>(matteColor);
    int32_t trailerBorder = border;
    int32_t trailerBlur = preBlur;
    int16_t trailerVideo = videoColors ? 1 : 0;
    uint16_t trailerWord = showWord;
    Put(buffer, at, &trailerMatte, 4);
    Put(buffer, at, &trailerBorder, 4);
    Put(buffer, at, &trailerBlur, 4);
    Put(buffer, at, &trailerVideo, 2);
    Put(buffer, at, &trailerWord, 2);

    std::minstd_rand random(static_cast<unsigned>(MillisecondsSinceStart() % 65535));
    showID = static_cast<uint16_t>(random() & 0xFFFF);
    uint16_t magic = kShowMagic;
    int32_t length = static_cast<int32_t>(size);
    long head = 0;
    Put(buffer, head, &magic, 2);
    Put(buffer, head, &showID, 2);
    Put(buffer, head, &length, 4);
    dirty = false;
    return size;
}

bool CDoc::LoadShow([[maybe_unused]] FSpec* file, const char* buffer, long bufferSize,
                    bool gotoStart)
{
    if (buffer == nullptr || bufferSize < kHeaderBytes)
        return false;
    uint16_t magic;
    std::memcpy(&magic, buffer, 2);
    if (magic != kShowMagic && magic != kShowMagicSwapped)
        return false;
    bool swap = magic == kShowMagicSwapped;
    ShowReader header(buffer, kHeaderBytes, swap);
    header.Skip(2);
    uint16_t identifier = header.Number<uint16_t>();
    // The stated length, but never past the bytes at hand.
    long length = std::clamp<long>(header.Number<int32_t>(), kHeaderBytes, bufferSize);
    ShowReader in(buffer, length, swap);
    in.MoveTo(kHeaderBytes);

    float defaultEncoded = EncodedDefaultEase();
    border = 0;
    preBlur = 0;
    showWord = 12850;

    int picturesRead = 0;
    while (picturesRead < kMaxPictures && in.Fits(static_cast<long>(sizeof(FSpec)))) {
        long recordStart = in.At();
        FSpec spec = in.Spec();
        if (!in.Fits(kCountBytes)) {
            in.MoveTo(recordStart);
            break;
        }
        int32_t count = in.Number<int32_t>();
        if (count == 0) {
            extraSpec = spec;
            hasExtraSpec = true;
            break;
        }
        // A record whose keys run past the end is not taken: reading stops before it.
        long keyBytes = static_cast<long>(count) * kKeyBytes;
        if (count < 0 || !in.Fits(keyBytes)) {
            in.MoveTo(recordStart);
            break;
        }
        int pic = picturesRead++;
        picSpec[pic] = spec;
        int kept = std::min<int32_t>(count, kMaxKeys);
        for (int key = 0; key < kept; ++key) {
            keys[pic][key] = in.Key();
            if (keys[pic][key].Ease == defaultEncoded)
                keys[pic][key].Ease = 0.0f;
        }
        in.Skip((count - kept) * kKeyBytes);
        keyCount[pic] = kept;
    }
    if (picturesRead == kMaxPictures) {
        // A full show may still carry the extra file record after its last picture.
        if (in.Fits(kRecordHeadBytes)) {
            FSpec spec = in.Spec();
            if (in.Number<int32_t>() == 0) {
                extraSpec = spec;
                hasExtraSpec = true;
            }
        }
        in.MoveTo(length - kTrailerBytes);
    }

    if (slatewhirl) {
        float ratio = keys[0][0].ShowLen;
        if (ratio > 0.0f && ratio < 10.0f) {
            aspectRatio = ratio;
            aspectMode = static_cast<int>(static_cast<double>(ratio) * 10000.0 + 0.5);
            SetIniItem("AspectMode", aspectMode);
            if (editor != nullptr)
                editor->AspectChanged();
        }
    }
    float version = keys[0][0].Spare1;
    if (version > kFirstVersionWithTrailer && in.Fits(16)) {
        matteColor = in.Number<int32_t>();
        border = std::clamp<int32_t>(in.Number<int32_t>(), -1, 100);
        preBlur = in.Number<int32_t>();
        in.Number<int16_t>();  // the video colours flag: kept from the settings, not the show
        if (version > kFirstVersionWithShowWord)
            showWord = in.Number<uint16_t>();
    }

    // Every record read is a picture of the show, whether or not its file can be read now: one
    // that cannot keeps its slot, file record and keys, and renders as the placeholder.
    picCount = picturesRead;
    for (int pic = 0; pic < picturesRead; ++pic) {
        FSpec spec = picSpec[pic];
        LoadPicture(&spec, pic, GetPicStart(pic));
    }
    showID = identifier;
    dirty = false;
    undoHead = -1;
    undoCount = 0;
    redoCount = 0;
    if (gotoStart)
        GotoFrame(0, true);
    image.useRotFilter = HasRotationInShow(0);
    if (rescaleShow)
        RescaleShow(FrameOfFloat(keys[0][0].ShowLen), showLength);
    ChopShow(showLength);
    return true;
}
