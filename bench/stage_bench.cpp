// One repaint of the stage: the demo show's first picture at the stage scale, the grid, the
// camera path and the frame, in a 1280 x 720 stage on the offscreen platform.

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
#include "platform/wnd/messages.h"
#include "platform/wnd/shell.h"
#include "ui/editor_windows.h"
#include "ui/main/cmain.h"
#include "ui/main/doc_link.h"
#include "ui/stage/cstage.h"

namespace {

constexpr int kStageWidth = 1280;
constexpr int kStageHeight = 720;

void StageRepaint(benchmark::State& state)
{
    std::string show = std::string(PX_SOURCE_DIR) + "/resources/demo/demo.plx";
    EditorDocLink link;
    std::string settings = "[Parallaxotron]\r\nShowPicError=0\r\nShowCameraPath=1\r\n";
    LoadIniText(settings.data(), settings.size());
    pDoc = new CDoc;
    pDoc->standalone = 1;
    pDoc->AttachEditor(&link);
    pMain = new CMain(nullptr);
    FSpec spec = PathFSpec(show.c_str());
    if (!OpenDocumentFile(&spec, true) || pStage == nullptr) {
        state.SkipWithError("the demo show did not open");
    } else {
        // Content of 1280 x 720: the window's frame is the content here (no caption).
        pStage->SetWinRect(0, 0, kStageWidth, kStageHeight, true);
        tagRECT client;
        pStage->GetClientRect(client);
        state.counters["width"] = static_cast<double>(client.right);
        state.counters["height"] = static_cast<double>(client.bottom);
        for (auto _ : state) {
            GetDC(pStage);
            pStage->HandleEvent(kMsgPaint, 0, 0);
            benchmark::DoNotOptimize(pStage->GetPort());
        }
    }
    delete pMain;
    pMain = nullptr;
    delete pDoc;
    pDoc = nullptr;
}

BENCHMARK(StageRepaint)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv)
{
    // Offscreen, with a settings folder of its own so the run leaves the user's settings alone.
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    char folder[] = "/tmp/px-stage-bench-XXXXXX";
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
