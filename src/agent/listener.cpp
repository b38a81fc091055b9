#include "agent/listener.h"

#include "protocol/channel.h"

#include <QFile>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace Torvix::Agent {

namespace {

int failed(int descriptor, const QString& address, QString* error)
{
    *error = QStringLiteral("cannot listen at %1: %2").arg(address, QString::fromLocal8Bit(strerror(errno)));
    if (descriptor >= 0)
        ::close(descriptor);
    return -1;
}

int listenLocal(const QString& path, QString* error)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    if (std::size_t(name.size()) >= sizeof address.sun_path) {
        *error = QStringLiteral("the path of the socket is too long: %1").arg(path);
        return -1;
    }
    std::memcpy(address.sun_path, name.constData(), std::size_t(name.size()) + 1);
    struct stat status
    {
    };
    if (::stat(name.constData(), &status) == 0 && S_ISSOCK(status.st_mode))
        ::unlink(name.constData()); // left by a process that is gone
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    // The socket gets its mode before anybody can connect to it.
    const mode_t before = ::umask(0177);
    const bool bound =
        descriptor >= 0 && ::bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    ::umask(before);
    if (!bound || ::listen(descriptor, 4) != 0)
        return failed(descriptor, path, error);
    return descriptor;
}

int listenTcp(const QString& host, quint16 port, QString* error)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    const QByteArray name = host == QLatin1String("localhost") ? QByteArray("127.0.0.1") : host.toLatin1();
    if (::inet_pton(AF_INET, name.constData(), &address.sin_addr) != 1 || !name.startsWith("127.")) {
        *error = QStringLiteral("the agent listens on loopback addresses only, not at %1").arg(host);
        return -1;
    }
    const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const int on = 1;
    ::setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    if (descriptor < 0 || ::bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(descriptor, 4) != 0)
        return failed(descriptor, host, error);
    return descriptor;
}

} // namespace

int listenOn(const QString& address, QString* error)
{
    QString host;
    quint16 port = 0;
    return Protocol::isTcpAddress(address, &host, &port) ? listenTcp(host, port, error)
                                                         : listenLocal(address, error);
}

int acceptFrom(int listener)
{
    return ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
}

bool writeTokenFile(const QString& path, const QByteArray& text)
{
    const QByteArray name = QFile::encodeName(path);
    ::unlink(name.constData());
    const int descriptor = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return false;
    const bool written = ::write(descriptor, text.constData(), std::size_t(text.size())) == text.size();
    ::close(descriptor);
    return written;
}

} // namespace Torvix::Agent
