// The editor in a real window on an X display (run under xvfb-run by CTest): starts
// `parallaxotron show.plx`, waits for the main window titled after the show, takes a picture of
// the screen once the drawing has settled, compares it with the kept reference picture, then asks
// the window to close as a window manager does (WM_DELETE_WINDOW) and expects the program to end
// with exit code 0 within 5 seconds.
//
//   px_editor_window_check parallaxotron show.plx "title" reference.png screenshot.png
//
// PX_UPDATE_REFERENCE=1 writes the reference picture anew (look at it before committing it).
// Exit codes: 0 passed, 1 failed, 77 skipped (no display).

#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>
#include <QImage>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kPassed = 0;
constexpr int kFailed = 1;
constexpr int kSkipped = 77;
// A pixel differs when a channel is off by more than this; the picture may differ in this share
// of its pixels (text smoothing of the toolkit's own menu bar font, say).
constexpr int kChannelTolerance = 40;
constexpr double kDifferingShare = 0.005;

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

template <typename T>
Reply<T> Owned(T* reply)
{
    return Reply<T>(reply, &std::free);
}

xcb_atom_t Atom(xcb_connection_t* connection, const char* name)
{
    auto reply = Owned(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name),
        nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

std::string Property(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property)
{
    auto reply = Owned(xcb_get_property_reply(
        connection,
        xcb_get_property(connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1024),
        nullptr));
    if (!reply)
        return {};
    int length = xcb_get_property_value_length(reply.get());
    return std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                       static_cast<size_t>(std::max(length, 0)));
}

// The window (at any depth under the root) whose name is `title`, or XCB_WINDOW_NONE.
xcb_window_t FindWindow(xcb_connection_t* connection, xcb_window_t parent, const std::string& title,
                        xcb_atom_t netName)
{
    auto tree =
        Owned(xcb_query_tree_reply(connection, xcb_query_tree(connection, parent), nullptr));
    if (!tree)
        return XCB_WINDOW_NONE;
    xcb_window_t* children = xcb_query_tree_children(tree.get());
    int count = xcb_query_tree_children_length(tree.get());
    for (int i = 0; i < count; ++i) {
        if (Property(connection, children[i], netName) == title ||
            Property(connection, children[i], XCB_ATOM_WM_NAME) == title)
            return children[i];
        xcb_window_t inside = FindWindow(connection, children[i], title, netName);
        if (inside != XCB_WINDOW_NONE)
            return inside;
    }
    return XCB_WINDOW_NONE;
}

// The whole screen as the display shows it.
QImage GrabScreen(xcb_connection_t* connection, xcb_screen_t* screen)
{
    auto image = Owned(
        xcb_get_image_reply(connection,
                            xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0, 0,
                                          screen->width_in_pixels, screen->height_in_pixels, ~0u),
                            nullptr));
    int width = screen->width_in_pixels;
    int height = screen->height_in_pixels;
    if (!image || xcb_get_image_data_length(image.get()) < width * height * 4)
        return QImage();
    QImage picture(xcb_get_image_data(image.get()), width, height, width * 4, QImage::Format_RGB32);
    return picture.copy();
}

int CountDiffering(const QImage& a, const QImage& b)
{
    int differing = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            QRgb p = a.pixel(x, y);
            QRgb q = b.pixel(x, y);
            if (std::abs(qRed(p) - qRed(q)) > kChannelTolerance ||
                std::abs(qGreen(p) - qGreen(q)) > kChannelTolerance ||
                std::abs(qBlue(p) - qBlue(q)) > kChannelTolerance)
                ++differing;
        }
    }
    return differing;
}

// Waits up to `limit` for the child to end; its exit code, or -1 when it did not end (it is
// killed then) or ended by a signal.
int WaitForExit(pid_t child, std::chrono::milliseconds limit)
{
    Clock::time_point end = Clock::now() + limit;
    while (Clock::now() < end) {
        int status = 0;
        if (waitpid(child, &status, WNOHANG) == child)
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    return -1;
}

bool Exited(pid_t child, int* status) { return waitpid(child, status, WNOHANG) == child; }

int Fail(pid_t child, const char* why)
{
    std::fprintf(stderr, "px_editor_window_check: %s\n", why);
    if (child > 0) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    return kFailed;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 6) {
        std::fprintf(stderr,
                     "usage: px_editor_window_check parallaxotron show.plx title "
                     "reference.png screenshot.png\n");
        return kFailed;
    }
    const std::string title = argv[3];
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &screenNumber);
    if (!connection || xcb_connection_has_error(connection)) {
        std::fprintf(stderr, "px_editor_window_check: skipped, no X display\n");
        return kSkipped;
    }
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screenNumber; ++i)
        xcb_screen_next(&screens);
    xcb_screen_t* screen = screens.data;
    xcb_atom_t netName = Atom(connection, "_NET_WM_NAME");
    xcb_atom_t protocols = Atom(connection, "WM_PROTOCOLS");
    xcb_atom_t deleteWindow = Atom(connection, "WM_DELETE_WINDOW");

    // A settings folder of its own, so the picture does not depend on earlier runs.
    char folder[] = "/tmp/px_editor_window_XXXXXX";
    if (!mkdtemp(folder))
        return Fail(0, "cannot make a settings folder");
    pid_t child = fork();
    if (child == 0) {
        setenv("XDG_CONFIG_HOME", folder, 1);
        setenv("QT_QPA_PLATFORM", "xcb", 1);
        setenv("QT_SCALE_FACTOR", "1", 1);
        execl(argv[1], argv[1], argv[2], static_cast<char*>(nullptr));
        _exit(127);
    }
    struct RemoveFolder {
        const char* path;
        ~RemoveFolder()
        {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
    } removeFolder{folder};

    xcb_window_t window = XCB_WINDOW_NONE;
    Clock::time_point giveUp = Clock::now() + std::chrono::seconds(30);
    int status = 0;
    while (window == XCB_WINDOW_NONE) {
        if (Exited(child, &status))
            return Fail(0, "the program ended before its window appeared");
        if (Clock::now() > giveUp)
            return Fail(child, ("no window titled \"" + title + "\" appeared").c_str());
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        window = FindWindow(connection, screen->root, title, netName);
    }

    // The drawing has settled when two pictures a short while apart are alike.
    QImage shot;
    QImage previous;
    giveUp = Clock::now() + std::chrono::seconds(15);
    do {
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        previous = shot;
        shot = GrabScreen(connection, screen);
        if (shot.isNull())
            return Fail(child, "cannot read the screen");
    } while ((previous.isNull() || previous != shot) && Clock::now() < giveUp);
    if (!shot.save(QString::fromLocal8Bit(argv[5]), "PNG"))
        return Fail(child, "cannot write the screenshot");

    bool pictureMatches = true;
    if (std::getenv("PX_UPDATE_REFERENCE")) {
        if (!shot.save(QString::fromLocal8Bit(argv[4]), "PNG"))
            return Fail(child, "cannot write the reference picture");
        std::printf("reference written to %s\n", argv[4]);
    } else {
        QImage reference(QString::fromLocal8Bit(argv[4]));
        if (reference.isNull())
            return Fail(child, "no reference picture (PX_UPDATE_REFERENCE=1 makes one)");
        reference = reference.convertToFormat(QImage::Format_RGB32);
        if (reference.size() != shot.size()) {
            pictureMatches = false;
            std::fprintf(stderr,
                         "px_editor_window_check: the screen is %dx%d, the reference %dx%d\n",
                         shot.width(), shot.height(), reference.width(), reference.height());
        } else {
            int differing = CountDiffering(shot, reference);
            double share = static_cast<double>(differing) / (shot.width() * shot.height());
            std::printf("%d pixels differ from the reference (%.3f%%)\n", differing, share * 100);
            pictureMatches = share <= kDifferingShare;
            if (!pictureMatches)
                std::fprintf(stderr, "px_editor_window_check: the screen differs from %s; see %s\n",
                             argv[4], argv[5]);
        }
    }

    // The window manager's close request.
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = protocols;
    message.data.data32[0] = deleteWindow;
    message.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(connection, 0, window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection);
    Clock::time_point asked = Clock::now();
    int code = WaitForExit(child, std::chrono::seconds(5));
    double seconds = std::chrono::duration<double>(Clock::now() - asked).count();
    xcb_disconnect(connection);
    if (code != 0) {
        std::fprintf(stderr, "px_editor_window_check: after the close request the program %s\n",
                     code < 0 ? "did not end within 5 s" : "ended with a code other than 0");
        return kFailed;
    }
    std::printf("closed by the window manager's request in %.2f s, exit code 0\n", seconds);
    return pictureMatches ? kPassed : kFailed;
}
