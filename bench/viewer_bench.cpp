// Viewer refreshes on the demo show's pictures with a 1280 x 720 picture area on the offscreen
// platform: the full-quality refresh of a frame (as the movie renders it), the full filter on a
// camera being edited, and the nearest crop the viewer uses while the camera is dragged.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "doc/cdoc.h"
#include "doc/globals.h"
#include "platform/file/paths.h"
#include "platform/ini/settings.h"
#include "platform/wnd/cpwnd.h"
#include "platform/wnd/shell.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"
#include "ui/stage/cstage.h"
#include "ui/viewer/cview.h"

namespace {

constexpr int kPictureWidth = 1280;
constexpr int kPictureHeight = 720;
constexpr long kFrame = 100;

// The editor on the demo show at frame 100 with the viewer's picture area 1280 x 720; false when
// the show did not open.
bool OpenViewer(EditorDocLink& link)
{
    std::string show = std::string(PX_SOURCE_DIR) + "/resources/demo/demo.plx";
    std::string settings = "[Parallaxotron]\r\nShowPicError=0\r\n";
    LoadIniText(settings.data(), settings.size());
    pDoc = new CDoc;
    pDoc->standalone = 1;
    pDoc->AttachEditor(&link);
    pMain = new CMain(nullptr);
    FSpec spec = PathFSpec(show.c_str());
    if (!OpenDocumentFile(&spec, true) || pViewer == nullptr || pStage == nullptr)
        return false;
    pDoc->blurFrames = 0;
    pDoc->GotoFrame(kFrame, false);
    tagRECT rect;
    pViewer->GetWinRect(rect);
    pViewer->SetWinRect(rect.left, rect.top, rect.left + kPictureWidth,
                        rect.top + pViewer->GetCaptionSize() + kPictureHeight + kViewerStrip, true);
    return true;
}

void CloseViewer()
{
    delete pMain;
    pMain = nullptr;
    delete pDoc;
    pDoc = nullptr;
}

void Measure(benchmark::State& state, bool force, bool editedCamera)
{
    EditorDocLink link;
    if (!OpenViewer(link)) {
        state.SkipWithError("the demo show did not open");
    } else {
        if (editedCamera)
            pStage->currentKey.XPos += 3.0f;
        pViewer->Refresh(force);
        state.counters["width"] = static_cast<double>(pViewer->viewImage.GetWid());
        state.counters["height"] = static_cast<double>(pViewer->viewImage.GetHgt());
        for (auto _ : state) {
            pViewer->Refresh(force);
            benchmark::DoNotOptimize(pViewer->viewImage.GetBitsAdd(0));
        }
        state.counters["refreshes/s"] = benchmark::Counter(static_cast<double>(state.iterations()),
                                                           benchmark::Counter::kIsRate);
    }
    CloseViewer();
}

void ViewerFullRefresh(benchmark::State& state) { Measure(state, true, false); }
void ViewerFullRefreshEditedCamera(benchmark::State& state) { Measure(state, true, true); }
void ViewerDragRefresh(benchmark::State& state) { Measure(state, false, true); }

BENCHMARK(ViewerFullRefresh)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ViewerFullRefreshEditedCamera)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ViewerDragRefresh)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv)
{
    // Offscreen, with a settings folder of its own so the run leaves the user's settings alone.
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    char folder[] = "/tmp/px-viewer-bench-XXXXXX";
    if (mkdtemp(folder) != nullptr)
        setenv("XDG_CONFIG_HOME", folder, 1);
    QApplication app(argc, argv);
    InitEnvironment(nullptr, "Parallaxotron", 101);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    CloseEnvironment();
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    return 0;
}
