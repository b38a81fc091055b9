#include "protocol/channel.h"

#include <QElapsedTimer>
#include <QFile>

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace Torvix::Protocol {

namespace {

QString errnoText()
{
    return QString::fromLocal8Bit(strerror(errno));
}

class SocketChannel : public Channel
{
public:
    explicit SocketChannel(int descriptor) : m_descriptor(descriptor)
    {
        fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
        fcntl(descriptor, F_SETFD, FD_CLOEXEC);
        const int on = 1;
        // Fails on a local socket, which never holds small packets back.
        setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    SocketChannel(const SocketChannel&) = delete;
    SocketChannel& operator=(const SocketChannel&) = delete;
    ~SocketChannel() override { ::close(m_descriptor); }

    qint64 read(char* data, qint64 size) override
    {
        for (;;) {
            const ssize_t count = ::recv(m_descriptor, data, size_t(size), 0);
            if (count > 0)
                return count;
            if (count == 0)
                return -1;
            if (errno != EINTR)
                return wouldBlock();
        }
    }

    qint64 write(const char* data, qint64 size) override
    {
        for (;;) {
            const ssize_t count = ::send(m_descriptor, data, size_t(size), MSG_NOSIGNAL);
            if (count >= 0)
                return count;
            if (errno != EINTR)
                return wouldBlock();
        }
    }

    bool wait(Wait what, int timeoutMs) override
    {
        QElapsedTimer timer;
        timer.start();
        for (;;) {
            const int left = timeoutMs < 0 ? -1 : int(qMax<qint64>(0, timeoutMs - timer.elapsed()));
            pollfd entry{m_descriptor, short(what == Wait::Readable ? POLLIN : POLLOUT), 0};
            const int ready = ::poll(&entry, 1, left);
            // A signal, such as that of a helper process that ended, is no timeout.
            if (ready >= 0 || errno != EINTR)
                return ready > 0;
        }
    }

    int descriptor() const override { return m_descriptor; }
    bool isLocal() const override
    {
        sockaddr_storage address{};
        socklen_t size = sizeof address;
        return ::getsockname(m_descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
               address.ss_family == AF_UNIX;
    }
    QString errorString() const override { return m_error; }

private:
    qint64 wouldBlock()
    {
        if (errno == EAGAIN || errno == EWOULDBLOCK)
            return 0;
        m_error = errnoText();
        return -1;
    }

    int m_descriptor;
    QString m_error;
};

std::unique_ptr<Channel> connectLocal(const QString& path, QString* error)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    if (size_t(name.size()) >= sizeof address.sun_path) {
        *error = QStringLiteral("the path of the socket is too long: %1").arg(path);
        return nullptr;
    }
    memcpy(address.sun_path, name.constData(), size_t(name.size()) + 1);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0 || ::connect(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        *error = QStringLiteral("cannot connect to %1: %2").arg(path, errnoText());
        if (descriptor >= 0)
            ::close(descriptor);
        return nullptr;
    }
    return socketChannel(descriptor);
}

std::unique_ptr<Channel> connectTcp(const QString& host, quint16 port, QString* error)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int failure =
        getaddrinfo(host.toUtf8().constData(), QByteArray::number(port).constData(), &hints, &found);
    if (failure != 0) {
        *error =
            QStringLiteral("cannot find %1: %2").arg(host, QString::fromLocal8Bit(gai_strerror(failure)));
        return nullptr;
    }
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> addresses(found, freeaddrinfo);
    for (const addrinfo* address = found; address; address = address->ai_next) {
        const int descriptor = ::socket(address->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (descriptor < 0)
            continue;
        if (::connect(descriptor, address->ai_addr, address->ai_addrlen) == 0)
            return socketChannel(descriptor);
        *error = QStringLiteral("cannot connect to %1:%2: %3").arg(host).arg(port).arg(errnoText());
        ::close(descriptor);
    }
    return nullptr;
}

} // namespace

std::unique_ptr<Channel> socketChannel(int descriptor)
{
    return std::make_unique<SocketChannel>(descriptor);
}

bool isTcpAddress(const QString& address, QString* host, quint16* port)
{
    const int colon = address.lastIndexOf(QLatin1Char(':'));
    bool isNumber = false;
    const quint16 number = address.midRef(colon + 1).toUShort(&isNumber);
    if (colon < 1 || !isNumber || address.contains(QLatin1Char('/')))
        return false;
    if (host)
        *host = address.left(colon);
    if (port)
        *port = number;
    return true;
}

std::unique_ptr<Channel> connectTo(const QString& address, QString* error)
{
    QString host;
    quint16 port = 0;
    return isTcpAddress(address, &host, &port) ? connectTcp(host, port, error) : connectLocal(address, error);
}

} // namespace Torvix::Protocol
