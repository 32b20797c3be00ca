#include "platform/ini/settings.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/base/env.h"
#include "platform/base/file_types.h"
#include "support/file_size_limit.h"
#include "support/malformed_files.h"
#include "support/small_disk.h"
#include "support/temp_dir.h"

namespace {

const std::string kHeader = "[Parallaxotron]\r\n";

std::optional<std::string> Variable(const char* name)
{
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

void PutVariable(const char* name, const std::optional<std::string>& value)
{
    if (value)
        setenv(name, value->c_str(), 1);
    else
        unsetenv(name);
}

// Every test starts from an empty store under the program's own name, with the preferences folder
// in a temporary folder of its own (never the user's real one); the environment is put back after.
class SettingsStore : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(dir_.Path().empty());
        savedConfig_ = Variable("XDG_CONFIG_HOME");
        savedHome_ = Variable("HOME");
        setenv("XDG_CONFIG_HOME", dir_.Path().c_str(), 1);
        setenv("HOME", dir_.File("home").c_str(), 1);
        SetEnvName("Parallaxotron");
        std::memset(gIniString, 0, kIniSize);
    }

    void TearDown() override
    {
        PutVariable("XDG_CONFIG_HOME", savedConfig_);
        PutVariable("HOME", savedHome_);
        SetEnvName("Parallaxotron");
        std::memset(gIniString, 0, kIniSize);
    }

    static void Load(const std::string& text) { LoadIniText(text.data(), text.size()); }
    static std::string Text() { return std::string(gIniString); }
    static std::string Get(const char* key, const char* defaultValue = "", long max = 255)
    {
        std::vector<char> out(static_cast<size_t>(max) + 1, '#');
        GetIniString(key, defaultValue, out.data(), max);
        return std::string(out.data());
    }
    static void Set(const char* key, std::string value) { SetIniItem(key, value.data()); }

    // A store of exactly `length` characters: the header and one padding line.
    static std::string StoreOfLength(size_t length)
    {
        std::string pad(length - kHeader.size() - std::strlen("Pad=\r\n"), 'x');
        return kHeader + "Pad=" + pad + "\r\n";
    }

    std::string SettingsPath() const { return dir_.File("Parallaxotron"); }

    pxtest::TempDir dir_;

private:
    std::optional<std::string> savedConfig_;
    std::optional<std::string> savedHome_;
};

// The same start, for the tests that go through the settings file.
class SettingsFile : public SettingsStore {};

}  // namespace

// --- Reading -----------------------------------------------------------------------------------

TEST_F(SettingsStore, AbsentKeyGivesDefaultAndAddsNothing)
{
    Load(kHeader + "MovieFPS=29.97\r\n");
    EXPECT_EQ(Get("MovieHgt", "480"), "480");
    EXPECT_EQ(GetIniItem("StageScale", 50), 50);
    EXPECT_EQ(Text(), kHeader + "MovieFPS=29.97\r\n");
}

TEST_F(SettingsStore, ValueEndsAtFirstCrAfterItsEquals)
{
    Load(kHeader + "A=one\ntwo\rthree\r\nB=2\r\n");
    EXPECT_EQ(Get("A"), "one\ntwo");
    EXPECT_EQ(Get("B"), "2");
}

TEST_F(SettingsStore, KeyWithoutLineEndGivesDefault)
{
    Load(kHeader + "MovieFPS=29.97");
    EXPECT_EQ(Get("MovieFPS", "30"), "30");
    EXPECT_EQ(GetIniItem("MovieFPS", 7), 7);
}

TEST_F(SettingsStore, KeyThatEndsAnotherKeyMatchesInsideIt)
{
    Load(kHeader + "InitialFolder=/pictures\r\nFolder=/other\r\n");
    EXPECT_EQ(Get("Folder"), "/pictures");
    Set("Folder", "/movies");
    EXPECT_EQ(Text(), kHeader + "InitialFolder=/movies\r\nFolder=/other\r\n");
}

TEST_F(SettingsStore, KeyIsFoundAnywhereNotOnlyAtLineStart)
{
    Load(kHeader + "A=B=1\r\n");
    EXPECT_EQ(Get("B"), "1");
}

TEST_F(SettingsStore, FirstOccurrenceWins)
{
    Load(kHeader + "Key=first\r\nKey=second\r\n");
    EXPECT_EQ(Get("Key"), "first");
    Set("Key", "changed");
    EXPECT_EQ(Text(), kHeader + "Key=changed\r\nKey=second\r\n");
}

TEST_F(SettingsStore, MaxFourOnSixCharacterValueGivesFirstFour)
{
    Load(kHeader + "MovieWid=123456\r\n");
    char out[10];
    std::memset(out, '#', sizeof out);
    GetIniString("MovieWid", "", out, 4);
    EXPECT_EQ(std::string(out, 4), "1234");
    EXPECT_EQ(out[4], 0);
    EXPECT_EQ(out[5], '#');  // nothing written past max + 1 characters
}

TEST_F(SettingsStore, ShortValueIsTerminatedAtItsLength)
{
    Load(kHeader + "MovieWid=12\r\n");
    char out[10];
    std::memset(out, '#', sizeof out);
    GetIniString("MovieWid", "", out, 8);
    EXPECT_STREQ(out, "12");
    EXPECT_EQ(out[3], '#');
}

TEST_F(SettingsStore, DefaultIsCutToMaxToo)
{
    Load(kHeader);
    char out[10];
    std::memset(out, '#', sizeof out);
    GetIniString("MovieStart", "00:00:00", out, 5);
    EXPECT_STREQ(out, "00:00");
    EXPECT_EQ(out[6], '#');
}

TEST_F(SettingsStore, MaxZeroGivesEmptyText)
{
    Load(kHeader + "A=value\r\n");
    EXPECT_EQ(Get("A", "d", 0), "");
    EXPECT_EQ(Get("Absent", "d", 0), "");
}

TEST_F(SettingsStore, NumberIsReadWithItsSign)
{
    Load(kHeader + "Negative=-12\r\nPositive=+7\r\n");
    EXPECT_EQ(GetIniItem("Negative", 0), -12);
    EXPECT_EQ(GetIniItem("Positive", 0), 7);
}

TEST_F(SettingsStore, NumberIsReadFromLeadingDigitsOnly)
{
    Load(kHeader + "Mixed=42abc\r\nSpaced= 17\r\n");
    EXPECT_EQ(GetIniItem("Mixed", 1), 42);
    EXPECT_EQ(GetIniItem("Spaced", 1), 17);
}

TEST_F(SettingsStore, TextThatIsNotANumberGivesTheDefault)
{
    Load(kHeader + "Word=abc\r\nEmpty=\r\nSign=-\r\nBlank= \r\n");
    EXPECT_EQ(GetIniItem("Word", 1), 1);
    EXPECT_EQ(GetIniItem("Empty", -3), -3);
    EXPECT_EQ(GetIniItem("Sign", 5), 5);
    EXPECT_EQ(GetIniItem("Blank", 7500), 7500);
}

TEST_F(SettingsStore, AbsentNumberGivesItsDefaultWhateverItsSize)
{
    Load(kHeader);
    EXPECT_EQ(GetIniItem("AspectMode", 7500), 7500);
    EXPECT_EQ(GetIniItem("MatteColor", -5), -5);
    EXPECT_EQ(GetIniItem("Low", LONG_MIN), LONG_MIN);
    EXPECT_EQ(GetIniItem("High", LONG_MAX), LONG_MAX);
}

TEST_F(SettingsStore, NumberOutOfRangeGivesTheDefault)
{
    // Settings numbers are 32-bit; anything past that is not a value the program wrote.
    Load(kHeader +
         "Huge=99999999999999999999999\r\nAbove=2147483648\r\nBelow=-2147483649\r\n"
         "Top=2147483647\r\nBottom=-2147483648\r\nTiny=-99999999999999999999999\r\n");
    EXPECT_EQ(GetIniItem("Huge", 2997), 2997);
    EXPECT_EQ(GetIniItem("Above", 1), 1);
    EXPECT_EQ(GetIniItem("Below", 0), 0);
    EXPECT_EQ(GetIniItem("Tiny", 50), 50);
    EXPECT_EQ(GetIniItem("Top", 0), 2147483647L);
    EXPECT_EQ(GetIniItem("Bottom", 0), -2147483647L - 1);
}

TEST(ReadIniNumber, AnswersWhetherTheTextHoldsANumberInRange)
{
    long value = 99;
    EXPECT_TRUE(ReadIniNumber("-12", &value));
    EXPECT_EQ(value, -12);
    EXPECT_TRUE(ReadIniNumber("+7x", &value));
    EXPECT_EQ(value, 7);
    value = 99;
    EXPECT_FALSE(ReadIniNumber("x7", &value));
    EXPECT_FALSE(ReadIniNumber("", &value));
    EXPECT_FALSE(ReadIniNumber("4294967296", &value));
    EXPECT_FALSE(ReadIniNumber(nullptr, &value));
    EXPECT_EQ(value, 99);
}

// --- Writing -----------------------------------------------------------------------------------

TEST_F(SettingsStore, ChangingMovieFpsKeepsBothLinesInOrder)
{
    Load(kHeader + "MovieFPS=29.97\r\nMovieQuality=100\r\n");
    Set("MovieFPS", "25");
    EXPECT_EQ(Text(), kHeader + "MovieFPS=25\r\nMovieQuality=100\r\n");
    EXPECT_EQ(Get("MovieFPS"), "25");
    EXPECT_EQ(Get("MovieQuality"), "100");
}

TEST_F(SettingsStore, NewKeysAreAppendedInTheOrderFirstStored)
{
    Load(kHeader);
    SetIniItem("FrameRate", 2500L);
    Set("MovieWid", "640");
    SetIniItem("FrameRate", 2997L);
    EXPECT_EQ(Text(), kHeader + "FrameRate=2997\r\nMovieWid=640\r\n");
}

TEST_F(SettingsStore, ValueWithCrLfIsStoredWithoutItsCr)
{
    Load(kHeader);
    char value[] = "one\r\ntwo\r";
    SetIniItem("Text", value);
    EXPECT_STREQ(value, "one\ntwo");  // the caller's string is cleaned in place
    EXPECT_EQ(Text(), kHeader + "Text=one\ntwo\r\n");
    EXPECT_EQ(Get("Text"), "one\ntwo");
}

TEST_F(SettingsStore, NumbersAreStoredAsDecimalText)
{
    Load(kHeader);
    SetIniItem("MatteColor", -7L);
    SetIniItem("Big", LONG_MAX);
    EXPECT_EQ(Text(), kHeader + "MatteColor=-7\r\nBig=" + std::to_string(LONG_MAX) + "\r\n");
    EXPECT_EQ(GetIniItem("MatteColor", 0), -7);
    // Written whole, but read back only within the 32-bit range of the settings' numbers.
    EXPECT_EQ(GetIniItem("Big", 0), LONG_MAX > 2147483647L ? 0 : LONG_MAX);
    SetIniItem("Big", 2147483647L);
    EXPECT_EQ(GetIniItem("Big", 0), 2147483647L);
}

TEST_F(SettingsStore, ChangingKeyWithoutLineEndChangesNothing)
{
    Load(kHeader + "MovieFPS=29.97");
    Set("MovieFPS", "25");
    EXPECT_EQ(Text(), kHeader + "MovieFPS=29.97");
}

TEST_F(SettingsStore, ShorterValueShrinksTheStore)
{
    Load(kHeader + "Folder=/a/long/path/name\r\nNext=1\r\n");
    Set("Folder", "");
    EXPECT_EQ(Text(), kHeader + "Folder=\r\nNext=1\r\n");
    EXPECT_EQ(Get("Folder", "default"), "");
}

TEST_F(SettingsStore, NewKeyPastLimitIsDroppedSilentlyFromStoreOf1000)
{
    Load(StoreOfLength(1000));
    ASSERT_EQ(Text().size(), 1000u);
    // 1000 + "MovieFPS=" (9) + 13 = 1022: one past the 1,021 that leaves room for CR LF.
    Set("MovieFPS", std::string(13, '9'));
    EXPECT_EQ(Text(), StoreOfLength(1000));
    EXPECT_EQ(Get("MovieFPS", "none"), "none");
}

TEST_F(SettingsStore, NewKeyThatFillsStoreTo1023IsStored)
{
    Load(StoreOfLength(1000));
    Set("MovieFPS", std::string(12, '9'));  // 1000 + 9 + 12 = 1021
    EXPECT_EQ(Text().size(), 1023u);
    EXPECT_EQ(Get("MovieFPS"), std::string(12, '9'));
}

TEST_F(SettingsStore, ChangePastLimitIsRefusedAndOldValueStays)
{
    std::string text = StoreOfLength(1000) + "MovieFPS=29.97\r\n";  // 1016 characters
    Load(text);
    // 29.97 (5 characters) becoming 13 characters would make 1024.
    Set("MovieFPS", std::string(13, '1'));
    EXPECT_EQ(Text(), text);
    EXPECT_EQ(Get("MovieFPS"), "29.97");
    Set("MovieFPS", std::string(2000, '1'));
    EXPECT_EQ(Text(), text);
}

TEST_F(SettingsStore, ChangeThatReaches1023ExactlyIsAccepted)
{
    Load(StoreOfLength(1000) + "MovieFPS=29.97\r\n");
    Set("MovieFPS", std::string(12, '1'));
    EXPECT_EQ(Text().size(), 1023u);
    EXPECT_EQ(Get("MovieFPS"), std::string(12, '1'));
}

TEST_F(SettingsStore, ChangeInsideFullStoreKeepsLaterLines)
{
    // The header, a short line, then padding up to 1,023 characters.
    Load(kHeader + "A=1\r\n" + StoreOfLength(1023 - 5).substr(kHeader.size()));
    ASSERT_EQ(Text().size(), 1023u);
    std::string before = Text();
    Set("A", "22");
    EXPECT_EQ(Text(), before);  // would be 1024
    Set("A", "");
    EXPECT_EQ(Text().size(), 1022u);
    EXPECT_EQ(Text().substr(kHeader.size(), 4), "A=\r\n");
}

TEST_F(SettingsStore, NullArgumentsAreIgnored)
{
    Load(kHeader + "A=1\r\n");
    SetIniItem(nullptr, 5L);
    SetIniItem("A", static_cast<char*>(nullptr));
    GetIniString("A", "", nullptr, 4);
    EXPECT_EQ(Get(nullptr, "d"), "d");
    EXPECT_EQ(Get("Absent", nullptr), "");
    EXPECT_EQ(Text(), kHeader + "A=1\r\n");
}

TEST_F(SettingsStore, StoreFilledPastItsEndIsReadOnlyToItsLastCharacter)
{
    // Someone wrote into the buffer without a terminator: nothing may read beyond it.
    std::memset(gIniString, 'x', kIniSize);
    EXPECT_EQ(GetIniItem("A", 5), 5);
    EXPECT_EQ(std::strlen(gIniString), 1023u);
    SetIniItem("A", 1L);  // no room: dropped
    EXPECT_EQ(std::strlen(gIniString), 1023u);
    EXPECT_EQ(GetIniItem("A", 5), 5);
}

// --- Loading from bytes ------------------------------------------------------------------------

TEST_F(SettingsStore, TextWithoutProgramNameIsResetToBareHeader)
{
    Load("[OtherProgram]\r\nMovieFPS=25\r\n");
    EXPECT_EQ(Text(), kHeader);
    for (int i = static_cast<int>(kHeader.size()); i < kIniSize; ++i)
        ASSERT_EQ(gIniString[i], 0) << "at " << i;
    EXPECT_EQ(Get("MovieFPS", "29.97"), "29.97");
}

TEST_F(SettingsStore, ProgramNameAnywhereKeepsTheText)
{
    std::string text = "Note=written by Parallaxotron\r\nA=1\r\n";
    Load(text);
    EXPECT_EQ(Text(), text);
}

TEST_F(SettingsStore, HeaderCarriesTheProgramsName)
{
    SetEnvName("Other");
    Load("[Parallaxotron]\r\n");
    EXPECT_EQ(Text(), "[Other]\r\n");
}

TEST_F(SettingsStore, TextLongerThanStoreIsReadToItsFirst1023Characters)
{
    std::string text = kHeader + "Pad=" + std::string(3000, 'y') + "\r\n";
    Load(text);
    EXPECT_EQ(Text(), text.substr(0, 1023));
    EXPECT_EQ(gIniString[1023], 0);
}

TEST_F(SettingsStore, ShortTextAfterLongTextLeavesNothingBehind)
{
    Load(StoreOfLength(1023));
    Load(kHeader + "A=1\r\n");
    EXPECT_EQ(Text(), kHeader + "A=1\r\n");
    for (int i = static_cast<int>(Text().size()); i < kIniSize; ++i)
        ASSERT_EQ(gIniString[i], 0) << "at " << i;
}

TEST_F(SettingsStore, EmbeddedNulEndsTheText)
{
    std::string text = kHeader + "A=1\r\n";
    text.push_back('\0');
    text += "B=2\r\n";
    Load(text);
    EXPECT_EQ(Text(), kHeader + "A=1\r\n");
    EXPECT_EQ(Get("B", "absent"), "absent");

    // A name found only after the NUL does not count.
    std::string hidden = "A=1\r\n";
    hidden.push_back('\0');
    hidden += kHeader;
    Load(hidden);
    EXPECT_EQ(Text(), kHeader);
}

TEST_F(SettingsStore, BinaryBytesNeverOverrunTheStore)
{
    std::string bytes;
    for (int i = 0; i < 5000; ++i)
        bytes.push_back(static_cast<char>((i * 37 + 11) % 255 + 1));  // no NUL anywhere
    Load(kHeader + bytes);
    EXPECT_EQ(std::strlen(gIniString), 1023u);
    EXPECT_EQ(Text(), (kHeader + bytes).substr(0, 1023));
    SetIniItem("New", 1L);
    EXPECT_EQ(std::strlen(gIniString), 1023u);

    std::string everyByte;
    for (int i = 0; i < 4096; ++i)
        everyByte.push_back(static_cast<char>(i % 256));
    Load(everyByte);
    EXPECT_EQ(Text(), kHeader);
}

TEST_F(SettingsStore, EmptyOrMissingBytesGiveTheHeader)
{
    LoadIniText(nullptr, 100);
    EXPECT_EQ(Text(), kHeader);
    LoadIniText("", 0);
    EXPECT_EQ(Text(), kHeader);
}

// The damaged settings files kept in tests/data/settings/malformed/: "1-" files are kept as read
// (to their first NUL or 1,023 characters), "0-" files do not name the program and give the bare
// header. Either way the store stays a terminated text the program can read and write.
TEST_F(SettingsStore, EveryKeptMalformedSettingsFileLeavesAUsableStore)
{
    std::vector<pxtest::MalformedFile> files = pxtest::MalformedFiles("settings");
    ASSERT_GE(files.size(), 5u);
    for (const pxtest::MalformedFile& file : files) {
        SCOPED_TRACE(file.path);
        std::filesystem::copy_file(file.path, SettingsPath(),
                                   std::filesystem::copy_options::overwrite_existing);
        LoadIniFile();
        std::string text(reinterpret_cast<const char*>(file.bytes.data()), file.bytes.size());
        std::string kept = std::string(text.c_str()).substr(0, 1023);
        EXPECT_EQ(Text() == kept ? 1 : 0, file.code);
        if (file.code == 0) {
            EXPECT_EQ(Text(), kHeader);
        }
        ASSERT_LE(std::strlen(gIniString), 1023u);
        EXPECT_EQ(GetIniItem("NotThere", 7), 7);
        SetIniItem("Written", 5L);
        EXPECT_LE(std::strlen(gIniString), 1023u);
    }
}

// --- The settings file -------------------------------------------------------------------------

TEST_F(SettingsFile, PathFollowsXdgConfigHome)
{
    char path[1024];
    ASSERT_TRUE(GetIniFilePath(path, sizeof path));
    EXPECT_EQ(std::string(path), SettingsPath());
}

TEST_F(SettingsFile, PathFallsBackToConfigInHome)
{
    unsetenv("XDG_CONFIG_HOME");
    char path[1024];
    ASSERT_TRUE(GetIniFilePath(path, sizeof path));
    EXPECT_EQ(std::string(path), dir_.File("home") + "/.config/Parallaxotron");

    setenv("XDG_CONFIG_HOME", "", 1);
    ASSERT_TRUE(GetIniFilePath(path, sizeof path));
    EXPECT_EQ(std::string(path), dir_.File("home") + "/.config/Parallaxotron");

    setenv("XDG_CONFIG_HOME", "relative/folder", 1);  // not a valid configuration folder
    ASSERT_TRUE(GetIniFilePath(path, sizeof path));
    EXPECT_EQ(std::string(path), dir_.File("home") + "/.config/Parallaxotron");
}

TEST_F(SettingsFile, PathTooLongForBufferIsRefused)
{
    char path[8];
    EXPECT_FALSE(GetIniFilePath(path, sizeof path));
    EXPECT_FALSE(GetIniFilePath(nullptr, 100));
}

TEST_F(SettingsFile, WithoutPreferencesFolderStoreLivesInMemoryOnly)
{
    unsetenv("XDG_CONFIG_HOME");
    setenv("HOME", "", 1);
    char path[1024];
    EXPECT_FALSE(GetIniFilePath(path, sizeof path));

    Load(kHeader + "A=1\r\n");
    LoadIniFile();
    EXPECT_EQ(Text(), kHeader + "A=1\r\n");  // untouched
    SaveIniFile();
    EXPECT_EQ(Text(), kHeader + "A=1\r\n");
    EXPECT_TRUE(std::filesystem::is_empty(dir_.Path()));
}

TEST_F(SettingsFile, NameThatIsNoFileNameHasNoFile)
{
    char path[1024];
    for (const char* name : {"", ".", "..", "a/b"}) {
        SetEnvName(name);
        EXPECT_FALSE(GetIniFilePath(path, sizeof path)) << name;
        SaveIniFile();
    }
    EXPECT_TRUE(std::filesystem::is_empty(dir_.Path()));
}

TEST_F(SettingsFile, LoadCreatesMissingFolderAndEmptyFile)
{
    std::string folder = dir_.File("a/b/c");
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    LoadIniFile();
    std::string path = folder + "/Parallaxotron";
    ASSERT_TRUE(pxtest::FileExists(path));
    EXPECT_EQ(std::filesystem::file_size(path), 0u);
    EXPECT_EQ(Text(), kHeader);
}

TEST_F(SettingsFile, SaveCreatesMissingFolder)
{
    std::string folder = dir_.File("x/y");
    setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
    Load(kHeader + "A=1\r\n");
    SaveIniFile();
    EXPECT_EQ(pxtest::ReadText(folder + "/Parallaxotron"), kHeader + "A=1\r\n");
}

TEST_F(SettingsFile, SettingsReadBackAfterRestart)
{
    LoadIniFile();
    Set("MovieFPS", "25");
    SetIniItem("FrameRate", 2500L);
    SetIniItem("MatteColor", -3L);
    char folder[] = "/pictures/show one";
    SetIniItem("InitialFolder", folder);
    SaveIniFile();

    std::memset(gIniString, 0, kIniSize);  // a new run of the program
    LoadIniFile();
    EXPECT_EQ(Get("MovieFPS"), "25");
    EXPECT_EQ(GetIniItem("FrameRate", 2997), 2500);
    EXPECT_EQ(GetIniItem("MatteColor", 0), -3);
    EXPECT_EQ(Get("InitialFolder"), "/pictures/show one");
    EXPECT_EQ(Text(), kHeader +
                          "MovieFPS=25\r\nFrameRate=2500\r\nMatteColor=-3\r\n"
                          "InitialFolder=/pictures/show one\r\n");
}

TEST_F(SettingsFile, SameTextSavedTwiceIsWrittenOnce)
{
    Load(kHeader + "A=1\r\n");
    long before = GetIniSaveCount();
    SaveIniFile();
    SaveIniFile();  // the main window saves on its way out, the environment's close again
    EXPECT_EQ(GetIniSaveCount(), before + 1);
    EXPECT_EQ(pxtest::ReadText(SettingsPath()), kHeader + "A=1\r\n");

    SetIniItem("A", 2L);
    SaveIniFile();
    EXPECT_EQ(GetIniSaveCount(), before + 2);
    EXPECT_EQ(pxtest::ReadText(SettingsPath()), kHeader + "A=2\r\n");

    Load(kHeader + "A=2\r\n");  // a new run writes its settings again
    SaveIniFile();
    EXPECT_EQ(GetIniSaveCount(), before + 3);
}

TEST_F(SettingsFile, SavedFileHoldsTheTextWithoutTerminator)
{
    Load(kHeader + "A=1\r\n");
    SaveIniFile();
    std::vector<unsigned char> bytes = pxtest::ReadBytes(SettingsPath());
    std::string expected = kHeader + "A=1\r\n";
    EXPECT_EQ(bytes, std::vector<unsigned char>(expected.begin(), expected.end()));
}

TEST_F(SettingsFile, ForeignFileIsReplacedByBareHeaderOnNextSave)
{
    ASSERT_TRUE(pxtest::WriteText(SettingsPath(), "some other program's notes\nwidth=3\n"));
    LoadIniFile();
    EXPECT_EQ(Text(), kHeader);
    SaveIniFile();
    EXPECT_EQ(pxtest::ReadText(SettingsPath()), kHeader);
}

TEST_F(SettingsFile, FileLongerThan1024BytesIsReadToItsFirst1023Characters)
{
    std::string text = kHeader;
    while (text.size() < 100000)
        text += "Key" + std::to_string(text.size()) + "=value\r\n";
    ASSERT_TRUE(pxtest::WriteText(SettingsPath(), text));
    LoadIniFile();
    EXPECT_EQ(Text(), text.substr(0, 1023));
    SaveIniFile();
    EXPECT_EQ(pxtest::ReadText(SettingsPath()), text.substr(0, 1023));
}

TEST_F(SettingsFile, FileOfExactly1024BytesLosesItsLastCharacter)
{
    std::string text = kHeader + std::string(1024 - kHeader.size(), 'z');
    ASSERT_TRUE(pxtest::WriteText(SettingsPath(), text));
    LoadIniFile();
    EXPECT_EQ(Text(), text.substr(0, 1023));
}

TEST_F(SettingsFile, BinaryFileIsResetToBareHeader)
{
    std::vector<unsigned char> bytes;
    for (int i = 0; i < 3000; ++i)
        bytes.push_back(static_cast<unsigned char>((i * 151 + 7) & 0xff));
    ASSERT_TRUE(pxtest::WriteBytes(SettingsPath(), bytes));
    LoadIniFile();
    EXPECT_EQ(Text(), kHeader);
}

TEST_F(SettingsFile, TruncatedFileKeepsItsTextAndLeavesTheCutLineAlone)
{
    ASSERT_TRUE(pxtest::WriteText(SettingsPath(), kHeader + "MovieFPS=29.97\r\nMovieQual"));
    LoadIniFile();
    EXPECT_EQ(Get("MovieFPS"), "29.97");
    EXPECT_EQ(Get("MovieQuality", "100"), "100");
    Set("MovieFPS", "25");
    EXPECT_EQ(Text(), kHeader + "MovieFPS=25\r\nMovieQual");
}

TEST_F(SettingsFile, EmptyFileGivesTheHeader)
{
    ASSERT_TRUE(pxtest::WriteText(SettingsPath(), ""));
    LoadIniFile();
    EXPECT_EQ(Text(), kHeader);
}

TEST_F(SettingsFile, SaveReplacesTheOldFileWholeAndLeavesNoOtherFile)
{
    ASSERT_TRUE(pxtest::WriteText(SettingsPath(), StoreOfLength(900)));
    LoadIniFile();
    Load(kHeader + "A=1\r\n");
    SaveIniFile();
    EXPECT_EQ(pxtest::ReadText(SettingsPath()), kHeader + "A=1\r\n");
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir_.Path()))
        names.push_back(entry.path().filename().string());
    EXPECT_EQ(names, std::vector<std::string>{"Parallaxotron"});
}

TEST_F(SettingsFile, FileIsTypedAsTextWhereTheFileSystemKeepsTypes)
{
    std::string probe = dir_.File("probe");
    ASSERT_TRUE(pxtest::WriteText(probe, "x"));
    if (!SetFileTypeAndCreator(probe.c_str(), "TEXT", "ttxt"))
        GTEST_SKIP() << "this file system keeps no extended attributes";
    std::filesystem::remove(probe);

    char type[4] = {};
    char creator[4] = {};
    LoadIniFile();  // creates the file
    ASSERT_TRUE(GetFileTypeAndCreator(SettingsPath().c_str(), type, creator));
    EXPECT_EQ(std::string(type, 4), "TEXT");
    EXPECT_EQ(std::string(creator, 4), "ttxt");

    SaveIniFile();  // a new file takes the old one's place
    std::memset(type, 0, sizeof type);
    std::memset(creator, 0, sizeof creator);
    ASSERT_TRUE(GetFileTypeAndCreator(SettingsPath().c_str(), type, creator));
    EXPECT_EQ(std::string(type, 4), "TEXT");
    EXPECT_EQ(std::string(creator, 4), "ttxt");
}

TEST_F(SettingsFile, FolderInPlaceOfFileIsLeftAlone)
{
    ASSERT_TRUE(std::filesystem::create_directory(SettingsPath()));
    Load(kHeader + "A=1\r\n");
    LoadIniFile();
    EXPECT_EQ(Text(), kHeader);  // nothing could be read
    Load(kHeader + "A=1\r\n");
    SaveIniFile();
    EXPECT_TRUE(std::filesystem::is_directory(SettingsPath()));
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir_.Path()))
        names.push_back(entry.path().filename().string());
    EXPECT_EQ(names, std::vector<std::string>{"Parallaxotron"});
}

TEST_F(SettingsFile, PipeInPlaceOfFileDoesNotHoldTheLoad)
{
    ASSERT_EQ(mkfifo(SettingsPath().c_str(), 0600), 0);
    LoadIniFile();
    EXPECT_EQ(Text(), kHeader);
    Set("A", "1");
    SaveIniFile();
    EXPECT_TRUE(std::filesystem::is_regular_file(SettingsPath()));
    EXPECT_EQ(pxtest::ReadText(SettingsPath()), kHeader + "A=1\r\n");
}

TEST_F(SettingsFile, SaveCutShortKeepsThePreviousFileWhole)
{
    Load(StoreOfLength(600));
    SaveIniFile();
    // A file size limit makes the writing fail part-way, as a full disk would.
    {
        pxtest::FileSizeLimit limit(100);
        Load(StoreOfLength(500));
        SaveIniFile();
    }

    EXPECT_EQ(pxtest::ReadText(SettingsPath()), StoreOfLength(600));
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir_.Path()))
        names.push_back(entry.path().filename().string());
    EXPECT_EQ(names, std::vector<std::string>{"Parallaxotron"});  // the half-written file is gone
}

TEST_F(SettingsFile, SaveThatCannotMakeItsNewFileKeepsThePreviousFile)
{
    // A read-only file system refuses the new file for every user, root included.
    pxtest::SmallDisk disk(64 * 1024, dir_.Path());
    if (!disk.Mounted())
        GTEST_SKIP() << disk.Reason();
    Load(kHeader + "A=1\r\n");
    SaveIniFile();
    ASSERT_EQ(pxtest::ReadText(SettingsPath()), kHeader + "A=1\r\n");
    ASSERT_TRUE(disk.MakeReadOnly());
    Load(kHeader + "A=2\r\n");
    SaveIniFile();
    EXPECT_EQ(pxtest::ReadText(SettingsPath()), kHeader + "A=1\r\n");
}

TEST_F(SettingsFile, SaveIntoReadOnlyFolderKeepsThePreviousFile)
{
    Load(kHeader + "A=1\r\n");
    SaveIniFile();
    ASSERT_EQ(chmod(dir_.Path().c_str(), 0500), 0);
    bool folderRefusesWrites = !pxtest::WriteText(dir_.File("probe"), "x");
    if (!folderRefusesWrites) {
        std::filesystem::remove(dir_.File("probe"));
        chmod(dir_.Path().c_str(), 0700);
        GTEST_SKIP() << "permissions are not enforced for this user";
    }
    Load(kHeader + "A=2\r\n");
    SaveIniFile();
    chmod(dir_.Path().c_str(), 0700);
    EXPECT_EQ(pxtest::ReadText(SettingsPath()), kHeader + "A=1\r\n");
}
