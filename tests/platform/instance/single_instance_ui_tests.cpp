// One editor per user: a first "editor" listens, a second launch hands it a path, and the first
// receives the path as the desktop's open-file request. Both ends run in this process: a local
// connection is taken by the system before the listener's loop turns, so the hand-over
// completes, and the loop then delivers it.

#include "platform/instance/single_instance.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileOpenEvent>
#include <QLocalServer>
#include <QLocalSocket>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace {

// Keeps the paths of the open-file requests the application receives.
class OpenRequests : public QObject {
public:
    OpenRequests() { QCoreApplication::instance()->installEventFilter(this); }
    ~OpenRequests() override { QCoreApplication::instance()->removeEventFilter(this); }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (object == QCoreApplication::instance() && event->type() == QEvent::FileOpen) {
            paths.push_back(
                QFile::encodeName(static_cast<QFileOpenEvent*>(event)->file()).toStdString());
            return true;
        }
        return false;
    }

    // Turns the event loop until `count` requests are in, or a second has passed.
    void WaitFor(size_t count)
    {
        QElapsedTimer clock;
        clock.start();
        while (paths.size() < count && clock.elapsed() < 1000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }

    // Turns the event loop for `milliseconds`, whatever arrives.
    void Settle(int milliseconds)
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < milliseconds)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }

    std::vector<std::string> paths;
};

class EditorInstance : public testing::Test {
protected:
    void TearDown() override { StopEditorListener(); }
    pxtest::TempDir dir;
    std::string address = dir.File("editor");
};

TEST_F(EditorInstance, HandedPathReachesTheListeningEditorAsAnOpenRequest)
{
    OpenRequests requests;
    ASSERT_TRUE(StartEditorListener(address));
    EXPECT_TRUE(HandToRunningEditor(address, "/shows/Summer trip.plx"));
    requests.WaitFor(1);
    ASSERT_EQ(requests.paths.size(), 1u);
    EXPECT_EQ(requests.paths[0], "/shows/Summer trip.plx");
}

TEST_F(EditorInstance, PathBytesArriveUnchanged)
{
    // UTF-8 letters and a line break are both allowed in a file name.
    const std::string path = "/shows/\xC3\xA9t\xC3\xA9\n2.plx";
    OpenRequests requests;
    ASSERT_TRUE(StartEditorListener(address));
    EXPECT_TRUE(HandToRunningEditor(address, path));
    requests.WaitFor(1);
    ASSERT_EQ(requests.paths.size(), 1u);
    EXPECT_EQ(requests.paths[0], path);
}

TEST_F(EditorInstance, EachLaunchHandsItsOwnShow)
{
    OpenRequests requests;
    ASSERT_TRUE(StartEditorListener(address));
    EXPECT_TRUE(HandToRunningEditor(address, "/shows/a.plx"));
    requests.WaitFor(1);
    EXPECT_TRUE(HandToRunningEditor(address, "/shows/b.plx"));
    requests.WaitFor(2);
    EXPECT_EQ(requests.paths, (std::vector<std::string>{"/shows/a.plx", "/shows/b.plx"}));
}

TEST_F(EditorInstance, WithoutARunningEditorNothingIsHanded)
{
    EXPECT_FALSE(HandToRunningEditor(address, "/shows/a.plx"));
}

TEST_F(EditorInstance, AfterTheEditorStopsNothingIsHandedAndTheSocketIsGone)
{
    ASSERT_TRUE(StartEditorListener(address));
    StopEditorListener();
    EXPECT_FALSE(pxtest::FileExists(address));
    EXPECT_FALSE(HandToRunningEditor(address, "/shows/a.plx"));
}

TEST_F(EditorInstance, EmptyOrOverlongPathIsNotHanded)
{
    OpenRequests requests;
    ASSERT_TRUE(StartEditorListener(address));
    EXPECT_FALSE(HandToRunningEditor(address, ""));
    EXPECT_FALSE(HandToRunningEditor(address, "/" + std::string(kLongestHandedPath, 'a')));
    requests.Settle(100);
    EXPECT_TRUE(requests.paths.empty());
}

TEST_F(EditorInstance, ASecondEditorDoesNotTakeTheAddressOfARunningOne)
{
    // The running editor, as another process would hold its address.
    QLocalServer running;
    ASSERT_TRUE(running.listen(QString::fromStdString(address)));
    EXPECT_FALSE(StartEditorListener(address));
    // The running editor still takes hand-overs.
    EXPECT_TRUE(HandToRunningEditor(address, "/shows/a.plx"));
    EXPECT_TRUE(running.waitForNewConnection(1000));
}

TEST_F(EditorInstance, SocketLeftByAnEditorThatEndedIsReplaced)
{
    // A bound socket whose owner has gone: the file stays, nobody accepts on it.
    int left = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(left, 0);
    sockaddr_un where = {};
    where.sun_family = AF_UNIX;
    ASSERT_LT(address.size(), sizeof(where.sun_path));
    std::memcpy(where.sun_path, address.c_str(), address.size());
    ASSERT_EQ(bind(left, reinterpret_cast<sockaddr*>(&where), sizeof(where)), 0);
    close(left);
    ASSERT_TRUE(pxtest::FileExists(address));

    EXPECT_FALSE(HandToRunningEditor(address, "/shows/a.plx"));
    OpenRequests requests;
    ASSERT_TRUE(StartEditorListener(address));
    EXPECT_TRUE(HandToRunningEditor(address, "/shows/a.plx"));
    requests.WaitFor(1);
    EXPECT_EQ(requests.paths, std::vector<std::string>{"/shows/a.plx"});
}

TEST_F(EditorInstance, MalformedHandOverIsDroppedAndTheNextOneStillArrives)
{
    OpenRequests requests;
    ASSERT_TRUE(StartEditorListener(address));
    // A length far beyond any path, then a zero length: each connection is closed unread.
    for (const char* header : {"\xFF\xFF\xFF\x7F", "\0\0\0\0"}) {
        QLocalSocket stray;
        stray.connectToServer(QString::fromStdString(address));
        ASSERT_TRUE(stray.waitForConnected(1000));
        stray.write(header, 4);
        stray.write("/shows/never.plx");
        ASSERT_TRUE(stray.waitForBytesWritten(1000));
        requests.Settle(50);
    }
    // A client that announces more than it sends, and leaves.
    {
        QLocalSocket stray;
        stray.connectToServer(QString::fromStdString(address));
        ASSERT_TRUE(stray.waitForConnected(1000));
        stray.write("\x40\0\0\0/short", 10);
        ASSERT_TRUE(stray.waitForBytesWritten(1000));
    }
    requests.Settle(50);
    EXPECT_TRUE(requests.paths.empty());
    EXPECT_TRUE(HandToRunningEditor(address, "/shows/a.plx"));
    requests.WaitFor(1);
    EXPECT_EQ(requests.paths, std::vector<std::string>{"/shows/a.plx"});
}

TEST(EditorInstanceAddress, LivesInTheUsersRuntimeFolderWhenThereIsOne)
{
    const char* old = std::getenv("XDG_RUNTIME_DIR");
    std::string kept = old ? old : "";
    setenv("XDG_RUNTIME_DIR", "/run/user/1234", 1);
    EXPECT_EQ(EditorInstanceAddress(), "/run/user/1234/parallaxotron-editor");
    unsetenv("XDG_RUNTIME_DIR");
    std::string fallback = EditorInstanceAddress();
    EXPECT_NE(fallback.find("/parallaxotron-editor-" + std::to_string(getuid())),
              std::string::npos);
    if (old)
        setenv("XDG_RUNTIME_DIR", kept.c_str(), 1);
}

}  // namespace
