#include "launcher/listensocket.h"

#include "protocol/token.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace Torvix {

namespace {

/** A stranger who says nothing holds the others up for no longer. */
constexpr int greetMs = 2000;

QString folderTemplate()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const bool isUsable = !runtime.isEmpty() && ::access(QFile::encodeName(runtime).constData(), W_OK) == 0;
    return (isUsable ? runtime : QDir::tempPath()) + QLatin1String("/torvix-XXXXXX");
}

} // namespace

ListenSocket::ListenSocket() : m_folder(folderTemplate()), m_token(Protocol::makeToken()) {}

ListenSocket::~ListenSocket()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

std::unique_ptr<ListenSocket> ListenSocket::create(QString* error)
{
    std::unique_ptr<ListenSocket> socket(new ListenSocket);
    if (!socket->m_folder.isValid()) {
        *error =
            QStringLiteral("cannot make a folder for the socket: %1").arg(socket->m_folder.errorString());
        return nullptr;
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray path = QFile::encodeName(socket->path());
    if (size_t(path.size()) >= sizeof address.sun_path) {
        *error = QStringLiteral("the path of the socket is too long: %1").arg(socket->path());
        return nullptr;
    }
    memcpy(address.sun_path, path.constData(), size_t(path.size()));
    socket->m_descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket->m_descriptor < 0 ||
        ::bind(socket->m_descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::chmod(path.constData(), 0600) != 0 || ::listen(socket->m_descriptor, 16) != 0) {
        *error = QStringLiteral("cannot listen at %1: %2")
                     .arg(socket->path(), QString::fromLocal8Bit(strerror(errno)));
        return nullptr;
    }
    return socket;
}

std::unique_ptr<Session> ListenSocket::accept(int timeoutMs, QString* refused)
{
    pollfd entry{m_descriptor, POLLIN, 0};
    if (::poll(&entry, 1, timeoutMs) <= 0)
        return nullptr;
    const int descriptor = ::accept4(m_descriptor, nullptr, nullptr, SOCK_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    return Session::open(Protocol::socketChannel(descriptor), m_token, false, greetMs, refused);
}

} // namespace Torvix
