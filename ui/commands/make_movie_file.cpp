#include "ui/commands/make_movie_file.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "doc/timecode.h"
#include "platform/dialog/cpdialog.h"
#include "platform/dialog/remembered_folder.h"
#include "platform/file/file_dialog.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/util/text.h"
#include "ui/commands/render_progress_window.h"
#include "ui/dialogs/viewer_hidden.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/stage/cstage.h"
#include "ui/timeline/ctime.h"
#include "ui/viewer/cview.h"

namespace {

constexpr int kLargestSide = 4096;

struct MovieKind {
    const char* description;
    const char* pattern;
};
// In "MovieType" order.
constexpr MovieKind kMovieKinds[] = {
    {"AVI Files (*.avi)", "*.avi"},
    {"QuickTime Movies (*.mov)", "*.mov"},
    {"DPS Files (*.dps)", "*.dps"},
    {"VideoToaster Files (*.rtv)", "*.rtv"},
};
constexpr int kMovieKindCount = static_cast<int>(std::size(kMovieKinds));
constexpr const char* kAllFilesEntry = "All Files *.*|*.*||";

struct RowText {
    const char* description;
    const char* key;  // null: not kept in the settings
    const char* defaultValue;
};
constexpr RowText kRows[kMovieDialogRows] = {
    {"Width", "MovieWid", "720"},
    {"Height", "MovieHgt", "480"},
    {"Start Timecode", "MovieStart", "00:00:00"},
    {"End Timecode", nullptr, ""},
    {"Head/Tail Holds", "MovieHold", "00:00:00"},
    {"FrameRate", "MovieFPS", "29.97"},
    {"@SQuality", "MovieQuality", "100"},
    {"@CRender Fields?", "MovieFields", "1"},
    {"@CReverse too?", "MovieReverse", ""},
};

int SideOf(const char* values, int row)
{
    long side = GetDialogNumber(values, row);
    return static_cast<int>(std::clamp(side, 0L, static_cast<long>(kLargestSide)));
}

long FramesOf(const char* values, int row)
{
    char text[kDialogRowSize];
    GetDialogValue(values, row, text);
    long frame = 0;
    StringToFrame(&frame, text);
    return frame;
}

// The frame rate row: a number ("29.97"); text that is not one gives 0. Out-of-range numbers
// come back as infinities, which the clamp turns into plain limits for the options to finish.
float RateOf(const char* values, int row)
{
    char text[kDialogRowSize];
    GetDialogValue(values, row, text);
    double rate = std::strtod(text, nullptr);
    if (std::isnan(rate))
        return 0.0f;
    return static_cast<float>(std::clamp(rate, -1.0, 1000.0));
}

// Runs the options dialog with the viewer out of its way. False when cancelled.
bool AskOptions(MovieDialogLists& lists)
{
    int answer =
        RunDialogWithoutViewer(EditorDialogOwner(), kMovieDialogX, kMovieDialogY, kMovieDialogRows,
                               lists.descriptions, lists.values, kMovieDialogTitle);
    return answer == kDialogConfirmed;
}

// The show files of a batch, in the order chosen. Empty when cancelled.
std::vector<FSpec> AskShows()
{
    std::vector<FSpec> chosen(kMaxBatchShows, FSpec{});
    FSpec folder{};
    bool remembered = RememberedFolder(&folder);
    if (!OpenFileDialog(EditorDialogOwner(), chosen.data(), kShowFileFilter, ".plx",
                        remembered ? &folder : nullptr, true, kMaxBatchShows))
        return {};
    auto end = std::find_if(chosen.begin(), chosen.end(),
                            [](const FSpec& file) { return file.name[0] == 0; });
    chosen.erase(end, chosen.end());
    return chosen;
}

// The movie to write (in batch mode, its folder holds the movies). False when cancelled.
bool AskMovie(int movieType, FSpec* movie)
{
    *movie = FSpec{};
    FSpec folder{};
    bool remembered = RememberedFolder(&folder);
    std::string filter = MovieFileFilter(movieType);
    return SaveFileDialog(EditorDialogOwner(), movie, filter.c_str(), MovieTypeExtension(movieType),
                          remembered ? &folder : nullptr);
}

// A batch loads every show it renders into the document. The user's own show, saved or not, is
// kept in memory meanwhile and put back afterwards, with its file, its modified flag and its
// frame (its undo steps do not survive the loads).
class KeptShow {
public:
    explicit KeptShow(CDoc& doc)
        : doc_(doc), file_(doc.showFile), dirty_(doc.dirty), frame_(gCurFrame)
    {
        long size = doc.SaveShow(nullptr, nullptr);
        if (size > 0) {
            bytes_.resize(static_cast<size_t>(size));
            bytes_.resize(static_cast<size_t>(std::max(doc.SaveShow(nullptr, bytes_.data()), 0L)));
        }
        // Laying the show out in memory is not saving it.
        doc.dirty = dirty_;
    }
    void Restore()
    {
        doc_.ClearShow();
        if (!bytes_.empty())
            doc_.LoadShow(nullptr, bytes_.data(), static_cast<long>(bytes_.size()), false);
        doc_.showFile = file_;
        doc_.dirty = dirty_;
        gCurFrame = frame_;
        doc_.GotoFrame(frame_, true);
    }

private:
    CDoc& doc_;
    std::vector<char> bytes_;
    ShowFileRecord file_;
    bool dirty_;
    long frame_;
};

}  // namespace

MovieDialogLists MakeMovieDialog(const CDoc& doc)
{
    MovieDialogLists lists;
    for (int row = 0; row < kMovieDialogRows; ++row) {
        std::strncpy(lists.descriptions + row * kDialogRowSize, kRows[row].description,
                     kDialogRowText);
        char value[kDialogRowSize] = {};
        if (kRows[row].key)
            GetIniString(kRows[row].key, kRows[row].defaultValue, value, kDialogRowText);
        SetDialogValue(lists.values, row, value);
    }
    char end[kTimecodeSize];
    FrameToString(end, ShowEnd(doc), true);
    SetDialogValue(lists.values, kMovieRowEnd, end);
    return lists;
}

MovieOptions ReadMovieDialog(const MovieDialogLists& lists)
{
    const char* values = lists.values;
    MovieOptions options;
    options.width = SideOf(values, kMovieRowWidth);
    options.height = SideOf(values, kMovieRowHeight);
    options.start = FramesOf(values, kMovieRowStart);
    options.end = FramesOf(values, kMovieRowEnd);
    options.holds = FramesOf(values, kMovieRowHolds);
    options.framesPerSecond = RateOf(values, kMovieRowRate);
    long quality = GetDialogNumber(values, kMovieRowQuality);
    options.quality = static_cast<int>(std::clamp(quality, -1000L, 1000L));
    options.fields = IsDialogValueOn(values, kMovieRowFields);
    options.reverse = IsDialogValueOn(values, kMovieRowReverse);
    return NormaliseMovieOptions(options);
}

std::string MovieFileFilter(int movieType)
{
    auto entry = [](const MovieKind& kind) {
        return std::string(kind.description) + "|" + kind.pattern + "|";
    };
    std::string filter;
    bool known = movieType >= 0 && movieType < kMovieKindCount;
    if (known)
        filter += entry(kMovieKinds[movieType]);
    for (int kind = 0; kind < kMovieKindCount; ++kind) {
        if (!known || kind != movieType)
            filter += entry(kMovieKinds[kind]);
    }
    return filter + kAllFilesEntry;
}

const char* MovieTypeExtension(int movieType)
{
    static constexpr const char* kExtensions[] = {".avi", ".mov", ".dps", ".rtv"};
    if (movieType < 0 || movieType >= kMovieKindCount)
        return kExtensions[0];
    return kExtensions[movieType];
}

int MakeMovieFile(bool batch)
{
    if (!pDoc)
        return 0;
    MovieDialogLists lists = MakeMovieDialog(*pDoc);
    if (!AskOptions(lists))
        return 0;
    MovieJob job;
    job.options = ReadMovieDialog(lists);
    if (batch) {
        job.shows = AskShows();
        if (job.shows.empty())
            return 0;
    }
    int movieType = static_cast<int>(GetIniItem("MovieType", 0));
    if (!AskMovie(movieType, &job.movie))
        return 0;

    std::unique_ptr<KeptShow> kept;
    if (batch)
        kept = std::make_unique<KeptShow>(*pDoc);
    EditorRenderProgress progress;
    MovieJobResult result = MakeMovieFiles(*pDoc, job, progress);
    if (kept)
        kept->Restore();
    if (result == MovieJobResult::kMade || result == MovieJobResult::kWriteFailed)
        RememberFolderOf(batch ? job.shows.front() : job.movie);
    RedrawEditorWindows();  // as the render left the document
    return result == MovieJobResult::kMade ? 1 : 0;
}
