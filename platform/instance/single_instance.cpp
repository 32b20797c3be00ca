#include "platform/instance/single_instance.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileOpenEvent>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "platform/base/to_qt.h"

// A hand-over is the path's length as four bytes, low byte first, then the path's bytes.

namespace {

// A connection that has not sent its whole path by then is dropped: a stuck or stray client
// holds nothing for long.
constexpr int kConnectionLifeMilliseconds = 10000;
// How long a starting listener waits to learn whether an editor listens at its address already.
constexpr int kLivenessWaitMilliseconds = 1000;

std::unique_ptr<QLocalServer>& Listener()
{
    static std::unique_ptr<QLocalServer> listener;
    return listener;
}

// Reads what `connection` sent so far; once the whole path is there, posts it as an open-file
// request and closes the connection. Bad lengths close it unread.
void ReadHandOver(QLocalSocket* connection)
{
    if (connection->bytesAvailable() < 4)
        return;
    unsigned char header[4];
    connection->peek(reinterpret_cast<char*>(header), 4);
    uint32_t length =
        header[0] | (header[1] << 8) | (header[2] << 16) | (static_cast<uint32_t>(header[3]) << 24);
    if (length == 0 || length > static_cast<uint32_t>(kLongestHandedPath)) {
        connection->abort();
        return;
    }
    if (connection->bytesAvailable() < 4 + static_cast<qint64>(length))
        return;
    connection->skip(4);
    QByteArray path = connection->read(length);
    QCoreApplication::postEvent(QCoreApplication::instance(),
                                new QFileOpenEvent(ToQPath(path.toStdString())));
    connection->disconnectFromServer();
}

void AcceptHandOvers(QLocalServer* server)
{
    while (QLocalSocket* connection = server->nextPendingConnection()) {
        QObject::connect(connection, &QLocalSocket::readyRead, connection,
                         [connection]() { ReadHandOver(connection); });
        QObject::connect(connection, &QLocalSocket::disconnected, connection,
                         &QObject::deleteLater);
        QTimer::singleShot(kConnectionLifeMilliseconds, connection,
                           [connection]() { connection->abort(); });
        ReadHandOver(connection);
    }
}

}  // namespace

std::string EditorInstanceAddress()
{
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime && runtime[0] == '/')
        return std::string(runtime) + "/parallaxotron-editor";
    return QFile::encodeName(QDir::tempPath()).toStdString() + "/parallaxotron-editor-" +
           std::to_string(getuid());
}

bool HandToRunningEditor(const std::string& address, const std::string& path, int waitMilliseconds)
{
    if (path.empty() || path.size() > static_cast<size_t>(kLongestHandedPath))
        return false;
    QLocalSocket socket;
    socket.connectToServer(ToQPath(address));
    if (!socket.waitForConnected(waitMilliseconds))
        return false;
    uint32_t length = static_cast<uint32_t>(path.size());
    char header[4] = {static_cast<char>(length & 0xFF), static_cast<char>((length >> 8) & 0xFF),
                      static_cast<char>((length >> 16) & 0xFF),
                      static_cast<char>((length >> 24) & 0xFF)};
    QByteArray message(header, 4);
    message.append(path.data(), static_cast<qsizetype>(path.size()));
    if (socket.write(message) != message.size())
        return false;
    while (socket.bytesToWrite() > 0) {
        if (!socket.waitForBytesWritten(waitMilliseconds))
            return false;
    }
    socket.disconnectFromServer();
    return true;
}

bool StartEditorListener(const std::string& address)
{
    if (Listener() || !QCoreApplication::instance())
        return false;
    auto server = std::make_unique<QLocalServer>();
    // Only the user's own launches may hand shows over.
    server->setSocketOptions(QLocalServer::UserAccessOption);
    QString name = ToQPath(address);
    // Asked before listening: a listener made private to the user is bound elsewhere and moved
    // over the address, which would take it from a running editor without a word.
    QLocalSocket probe;
    probe.connectToServer(name);
    if (probe.waitForConnected(kLivenessWaitMilliseconds))
        return false;
    // Nobody answers: whatever is at the address was left by an editor that ended.
    QLocalServer::removeServer(name);
    if (!server->listen(name))
        return false;
    QLocalServer* listening = server.get();
    QObject::connect(listening, &QLocalServer::newConnection, listening,
                     [listening]() { AcceptHandOvers(listening); });
    Listener() = std::move(server);
    return true;
}

void StopEditorListener() { Listener().reset(); }
