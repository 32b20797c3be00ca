// Start and stop, the message loop and synchronous delivery.

#include "platform/wnd/shell.h"

#include <QApplication>
#include <QCursor>
#include <QEventLoop>
#include <QOperatingSystemVersion>
#include <QScreen>
#include <QSysInfo>
#include <QTimer>
#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/base/env.h"
#include "platform/base/from_qt.h"
#include "platform/ini/settings.h"
#include "platform/task/worker.h"
#include "platform/wnd/cpwnd.h"
#include "platform/wnd/cursor.h"
#include "platform/wnd/edit_box.h"
#include "platform/wnd/input_qt.h"
#include "platform/wnd/input_queue_qt.h"
#include "platform/wnd/messages.h"
#include "platform/wnd/shell_internal_qt.h"
#include "platform/wnd/window_list.h"
#include "platform/wnd/window_widgets_qt.h"

int gMacDone = 0;
int sLastKey = 0;
long gOSVersionNumber = 0;
CPWnd* gFirstWin = nullptr;
CPWnd* gFloatWin = nullptr;
tagRECT gScreenRect = {0, 0, 0, 0};
void* gInstance = nullptr;

FontRecord* Sans8 = nullptr;
FontRecord* Sans10 = nullptr;
FontRecord* Sans12 = nullptr;
FontRecord* Sans14B = nullptr;
FontRecord* Sans20 = nullptr;

namespace {

constexpr int kIdleTicks = 10;
constexpr int kIdleMilliseconds = kIdleTicks * 1000 / 60;

int sDispatchDepth = 0;
OpenDocumentHandler sOpenDocument = nullptr;
std::vector<QEventLoop*> sLoops;  // running message loops, innermost last
bool sCommandLineTaken = false;

FontRecord** const kFonts[] = {&Sans8, &Sans10, &Sans12, &Sans14B, &Sans20};

void MakeFonts()
{
    // The bold one is 13 point although its name says 14: the layouts were made with it.
    const long sizes[] = {8, 10, 12, 13, 20};
    const int styles[] = {0, 0, 0, kFontBold, 0};
    for (int i = 0; i < 5; ++i) {
        if (!*kFonts[i])
            *kFonts[i] = MakeFont("Sans", sizes[i], styles[i]);
    }
}

void RecordScreen()
{
    QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    QRect area = screen->availableGeometry();
    gScreenRect = FromQRect(area);
}

long AskSystemVersion()
{
    QOperatingSystemVersion os = QOperatingSystemVersion::current();
    if (os.majorVersion() > 0)
        return PackSystemVersion(os.majorVersion(), std::max(0, os.minorVersion()),
                                 std::max(0, os.microVersion()));
    // Elsewhere the kernel's release names the system ("6.1.0-13-amd64").
    QStringList parts = QSysInfo::kernelVersion().split(QLatin1Char('.'));
    int numbers[3] = {0, 0, 0};
    for (int i = 0; i < 3 && i < parts.size(); ++i) {
        QString digits;
        for (QChar c : parts[i]) {
            if (!c.isDigit())
                break;
            digits += c;
        }
        numbers[i] = digits.toInt();
    }
    return PackSystemVersion(numbers[0], numbers[1], numbers[2]);
}

// Hands the program's own arguments over once, as the desktop would at start.
void TakeCommandLine()
{
    if (sCommandLineTaken)
        return;
    sCommandLineTaken = true;
    QStringList arguments = QCoreApplication::arguments();
    // The arguments name documents: they go back to the file system's own bytes.
    std::vector<std::string> texts;
    for (int i = 1; i < arguments.size(); ++i)
        texts.push_back(FromQPath(arguments[i]));
    std::vector<const char*> pointers;
    for (const std::string& text : texts)
        pointers.push_back(text.c_str());
    OpenCommandLineDocument(static_cast<int>(pointers.size()), pointers.data());
}

// The idle tick: 1013 to the window under the pointer (the window holding the button while one
// is down), with the modifier bits and the point.
void SendIdleTick();

}  // namespace

// ---- Dispatch marks -------------------------------------------------------------------------

DispatchScope::DispatchScope() { ++sDispatchDepth; }

DispatchScope::~DispatchScope() { --sDispatchDepth; }

bool IsDispatchingInput() { return sDispatchDepth > 0; }

// ---- Start and stop ---------------------------------------------------------------------------

long PackSystemVersion(int major, int minor, int micro)
{
    major = std::clamp(major, 0, 99);
    minor = std::clamp(minor, 0, 9);
    micro = std::clamp(micro, 0, 9);
    return ((major / 10) << 12) | ((major % 10) << 8) | (minor << 4) | micro;
}

int InitEnvironment(void* instance, const char* name, int kind)
{
    gEnv.kind = kind;
    gInstance = instance;
    SetEnvName(name);
    if (instance)
        ChangeCursor(0);
    LoadStandardFonts();
    MakeFonts();
    // Kinds 1000 and 1001 (hosted) find their pictures compiled in like the program's own.
    RecordScreen();
    InstallShellFilter();
    InitMP();
    LoadIniFile();
    gOSVersionNumber = AskSystemVersion();
    return 1;
}

void CloseEnvironment()
{
    for (FontRecord** font : kFonts) {
        RemoveFont(*font);
        *font = nullptr;
    }
    pCurFont = nullptr;
    SaveIniFile();
    if (gMacEditBox)
        gMacEditBox->Remove();
    CloseMP();
}

// ---- Delivery -------------------------------------------------------------------------------

int PostAMessage(CPWnd* target, unsigned int msg, long wParam, long lParam)
{
    if (msg == kMsgEndLoop) {
        gMacDone = static_cast<int>(wParam) + 1;
        CheckLoopEnd();
    }
    // The list as it is now; a handler may destroy windows (they are skipped) or make new ones
    // (they are not reached by this message).
    std::vector<CPWnd*> windows(gWindowList.windows, gWindowList.windows + gWindowList.count);
    for (CPWnd* window : windows) {
        if ((target == nullptr || window == target) && IsWindowListed(window))
            window->HandleEvent(msg, wParam, lParam);
    }
    return 1;
}

void CheckLoopEnd()
{
    if (gMacDone != 0 && !sLoops.empty())
        sLoops.back()->exit(0);
}

namespace {

void SendIdleTick()
{
    CPWnd* window = nullptr;
    QPoint global = QCursor::pos();
    QPoint at;
    if (CPWnd* holder = WindowHoldingButton()) {
        window = holder;
        if (QWidget* content = GetContentWidget(holder))
            at = content->mapFromGlobal(global);
    } else if (QWidget* under = QApplication::widgetAt(global)) {
        WindowPart part;
        window = FindWindowOf(under, &part, &at, under->mapFromGlobal(global));
    }
    if (!window || !IsWindowListed(window))
        return;
    {
        DispatchScope scope;
        PostAMessage(window, kMsgMouseMoved, MoveBits(QGuiApplication::queryKeyboardModifiers()),
                     MakePointParam(at.x(), at.y()));
    }
    RefreshScreens();
}

}  // namespace

int MessageLoop()
{
    gMacDone = 0;
    InstallShellFilter();
    QEventLoop loop;
    sLoops.push_back(&loop);

    QTimer idle;
    idle.setInterval(kIdleMilliseconds);
    QObject::connect(&idle, &QTimer::timeout, [&loop]() {
        // A modal loop or a message box has the input to itself.
        if (!IsReadingInput() && !QApplication::activeModalWidget())
            SendIdleTick();
        if (gMacDone != 0)
            loop.exit(0);
    });
    idle.start();
    if (!sCommandLineTaken)
        QTimer::singleShot(0, &loop, TakeCommandLine);

    if (gMacDone == 0)
        loop.exec();
    sLoops.pop_back();
    return gMacDone - 1;
}

// ---- Keys and sounds ----------------------------------------------------------------------

bool ConvertControlKey(long&, long& lParam) { return lParam == kShortcutMark; }

bool IsKeyPressed(int keys) { return sLastKey == keys; }

void KeyBoardFlush() {}

void Sound(int) { QApplication::beep(); }

// ---- Requests from the desktop --------------------------------------------------------------

void SetOpenDocumentHandler(OpenDocumentHandler handler) { sOpenDocument = handler; }

bool OpenAppleEventHandler(int count, const char* const* paths)
{
    if (count < 1 || !paths || !paths[0] || !sOpenDocument)
        return false;
    FSpec spec = {};
    spec.vRefNum = kPathFormMarker;
    spec.parID = kPathFormMarker;
    std::strncpy(spec.name, paths[0], kFSpecNameSize - 1);
    spec.name[kFSpecNameSize - 1] = 0;
    DispatchScope scope;
    bool opened = sOpenDocument(&spec, true);
    RefreshScreens();
    return opened;
}

bool OpenCommandLineDocument(int count, const char* const* arguments)
{
    for (int i = 0; i < count; ++i) {
        if (arguments[i] && arguments[i][0] != '-' && arguments[i][0] != 0)
            return OpenAppleEventHandler(1, &arguments[i]);
    }
    return false;
}

void QuitAppleEventHandler()
{
    if (!gFirstWin)
        return;
    DispatchScope scope;
    PostAMessage(gFirstWin, kMsgClose, 0, 0);
    RefreshScreens();
}

// ---- The user's changes to window frames -------------------------------------------------

void WindowResizedByUser(CPWnd* window)
{
    DispatchScope scope;
    PostAMessage(window, kMsgResized, 0, 0);
    if (IsWindowAlive(window))
        DeliverPaint(window);
    RefreshScreens();
}

void WindowMovedByUser(CPWnd* window)
{
    DispatchScope scope;
    PostAMessage(window, kMsgMoved, 0, 0);
    RefreshScreens();
}

void WindowActivated(CPWnd* window)
{
    if (window == gFirstWin)
        return;
    DispatchScope scope;
    DeliverPaint(window);
    if (gFloatWin && gFloatWin != window && GetFrameWidget(gFloatWin))
        GetFrameWidget(gFloatWin)->raise();
}

void ForgetWindowInput(CPWnd* window)
{
    DropInputOf(window);
    ForgetTracking(window);
    ForgetPress(window);
}
