#include "platform/freedesktop/folder/SyncClientSocket.h"

#include "platform/freedesktop/folder/FolderIo.h"

#include <QFile>

#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <cstring>

namespace orvelle {

namespace {

constexpr const char *sockets[] = {"/Nextcloud/socket", "/ownCloud/socket"};

bool send(const QByteArray &socketPath, const QByteArray &line)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socketPath.size() >= qsizetype(sizeof address.sun_path))
        return false;
    std::memcpy(address.sun_path, socketPath.constData(), static_cast<size_t>(socketPath.size()));
    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const timeval patience{1, 0};
    ::setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    return socket && ::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 &&
           ::send(socket.get(), line.constData(), static_cast<size_t>(line.size()), MSG_NOSIGNAL) == line.size();
}

} // namespace

bool askSyncClientToDownload(const QString &path)
{
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    // One would end the request, the other separates paths.
    if (!runtime.startsWith('/') || path.contains(u'\n') || path.contains(QChar(0x1e)))
        return false;
    // A client that keeps no such folder ignores it.
    const QByteArray line = "MAKE_AVAILABLE_LOCALLY:" + path.toUtf8() + '\n';
    return std::ranges::count_if(sockets, [&](const char *each) { return send(runtime + each, line); }) > 0;
}

} // namespace orvelle
