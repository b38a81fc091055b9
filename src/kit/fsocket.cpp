#include "kit/fsocket.h"

#include <QElapsedTimer>
#include <QUrl>

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

namespace {

struct AddressListDeleter
{
    void operator()(addrinfo* list) const { ::freeaddrinfo(list); }
};
using AddressList = std::unique_ptr<addrinfo, AddressListDeleter>;

/** What the resolver wants: no brackets, and international names in their ASCII form (RFC 3490). */
QByteArray resolvableName(const QString& host)
{
    if (host.size() > 2 && host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']')))
        return host.mid(1, host.size() - 2).toUtf8();
    const bool isAscii = std::all_of(host.begin(), host.end(), [](QChar c) { return c.unicode() < 128; });
    return isAscii ? host.toLatin1() : QUrl::toAce(host);
}

/** An EAI_ value, 0 for success. */
int resolve(const QString& host, unsigned short port, AddressList& result)
{
    const QByteArray name = resolvableName(host);
    if (name.isEmpty() || name.contains('\0'))
        return EAI_NONAME;
    addrinfo hints = {};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo* list = nullptr;
    const int condition =
        ::getaddrinfo(name.constData(), QByteArray::number(port).constData(), &hints, &list);
    result.reset(list);
    return condition;
}

/** poll() that is not cut short by signals; negative `msecs` waits without limit. */
int pollFor(pollfd& waiting, int msecs)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        const int left = msecs < 0 ? -1 : static_cast<int>(std::max<qint64>(0, msecs - timer.elapsed()));
        const int ready = ::poll(&waiting, 1, left);
        if (ready >= 0 || errno != EINTR)
            return ready;
    }
}

int pendingError(int descriptor)
{
    int condition = 0;
    socklen_t size = sizeof condition;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &condition, &size) == 0 ? condition : errno;
}

/** Begins and awaits a connection on a non-blocking descriptor: an errno value, 0 for success. */
int connectWithin(int descriptor, const addrinfo& address, int msecs)
{
    if (::connect(descriptor, address.ai_addr, address.ai_addrlen) == 0)
        return 0;
    if (errno != EINPROGRESS && errno != EINTR)
        return errno;
    pollfd waiting = {descriptor, POLLOUT, 0};
    const int ready = pollFor(waiting, msecs);
    if (ready < 0)
        return errno;
    return ready == 0 ? ETIMEDOUT : pendingError(descriptor);
}

int countOf(const addrinfo* addresses)
{
    int count = 0;
    for (; addresses; addresses = addresses->ai_next)
        ++count;
    return count;
}

using NameOf = int (*)(int, sockaddr*, socklen_t*);

FHostAddress endpointOf(int descriptor, NameOf nameOf, unsigned short& port)
{
    sockaddr_storage storage = {};
    socklen_t size = sizeof storage;
    auto* address = reinterpret_cast<sockaddr*>(&storage);
    if (nameOf(descriptor, address, &size) != 0)
        return FHostAddress();
    // The port stands at the same place in both families.
    port = ntohs(reinterpret_cast<const sockaddr_in*>(&storage)->sin_port);
    return FHostAddress(address);
}

/** Conditions that say "not now" instead of "never again". */
bool isTransient(int condition)
{
    return condition == EAGAIN || condition == EWOULDBLOCK || condition == ENOBUFS || condition == ENOMEM;
}

} // namespace

FSocket::FSocket() = default;

FSocket::~FSocket()
{
    close();
}

bool FSocket::connectToHost(const QString& host, unsigned short port)
{
    close();
    m_broken = false;
    m_error = 0;
    m_errorString.clear();
    AddressList addresses;
    if (const int condition = resolve(host, port, addresses)) {
        const QString reason = condition == EAI_SYSTEM ? QString::fromLocal8Bit(std::strerror(errno))
                                                       : QString::fromLocal8Bit(::gai_strerror(condition));
        failWith(condition, QStringLiteral("cannot resolve host \"%1\": %2").arg(host, reason));
        return false;
    }
    return connectToFirst(addresses.get(), QStringLiteral("%1 port %2").arg(host).arg(port));
}

bool FSocket::connectToFirst(const addrinfo* addresses, const QString& where)
{
    QElapsedTimer timer;
    timer.start();
    int condition = EADDRNOTAVAIL;
    QStringList tried;
    for (int left = countOf(addresses); addresses; addresses = addresses->ai_next, --left) {
        const int descriptor = ::socket(addresses->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK,
                                        addresses->ai_protocol);
        if (descriptor < 0) {
            condition = errno;
            continue;
        }
        // A share for each, so that one silent address does not use up the time of the others.
        const int share = static_cast<int>(std::max<qint64>(0, m_connectTimeoutMs - timer.elapsed()) / left);
        condition = connectWithin(descriptor, *addresses, share);
        if (condition == 0) {
            adopt(descriptor);
            return true;
        }
        ::close(descriptor);
        tried += FHostAddress(addresses->ai_addr).toString();
    }
    QString text = QStringLiteral("cannot connect to %1: %2")
                       .arg(where, QString::fromLocal8Bit(std::strerror(condition)));
    if (tried.size() > 1)
        text += QStringLiteral(" (tried %1)").arg(tried.join(QStringLiteral(", ")));
    failWith(condition, text);
    return false;
}

void FSocket::adopt(int descriptor)
{
    m_descriptor = descriptor;
    setBlocking(true);
    // Scripts write small requests and wait for the answer, which must not wait for more to send.
    const int on = 1;
    ::setsockopt(m_descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    m_local.address = endpointOf(m_descriptor, &::getsockname, m_local.port);
    m_peer.address = endpointOf(m_descriptor, &::getpeername, m_peer.port);
}

void FSocket::setConnectTimeout(int msecs)
{
    m_connectTimeoutMs = msecs;
}

void FSocket::setBlocking(bool blocking)
{
    if (m_descriptor < 0)
        return;
    const int flags = ::fcntl(m_descriptor, F_GETFL);
    ::fcntl(m_descriptor, F_SETFL, blocking ? flags & ~O_NONBLOCK : flags | O_NONBLOCK);
}

bool FSocket::isOpen() const
{
    return m_descriptor >= 0;
}

bool FSocket::isValid() const
{
    return isOpen() && !m_broken;
}

int FSocket::bytesAvailable() const
{
    int count = 0;
    return ::ioctl(m_descriptor, FIONREAD, &count) == 0 ? count : fail(errno);
}

int FSocket::waitForMore(int msecs, bool* timedOut) const
{
    if (timedOut)
        *timedOut = false;
    if (!isOpen())
        return fail(ENOTCONN);
    QElapsedTimer timer;
    timer.start();
    pollfd waiting = {m_descriptor, POLLIN, 0};
    const int ready = pollFor(waiting, msecs);
    if (ready < 0)
        return fail(errno);
    if (ready == 0) {
        if (timedOut)
            *timedOut = true;
        return 0;
    }
    // Bytes first: what came ahead of a reset is still readable.
    const int count = bytesAvailable();
    if (count != 0)
        return count;
    if (m_broken)
        return fail(m_error);
    if (const int condition = pendingError(m_descriptor))
        return fail(condition);
    if (msecs > 0) {
        pollfd nothing = {-1, 0, 0};
        pollFor(nothing, static_cast<int>(std::max<qint64>(0, msecs - timer.elapsed())));
    }
    return 0;
}

int FSocket::readBlock(char* bytes, int size)
{
    if (!isOpen())
        return fail(ENOTCONN);
    for (;;) {
        const ssize_t count = ::recv(m_descriptor, bytes, static_cast<size_t>(std::max(0, size)), 0);
        if (count >= 0)
            return static_cast<int>(count);
        if (errno == EINTR)
            continue;
        return isTransient(errno) ? 0 : fail(errno);
    }
}

int FSocket::writeBlock(const char* bytes, int size)
{
    if (!isOpen())
        return fail(ENOTCONN);
    for (;;) {
        const ssize_t count =
            ::send(m_descriptor, bytes, static_cast<size_t>(std::max(0, size)), MSG_NOSIGNAL);
        if (count >= 0)
            return static_cast<int>(count);
        if (errno == EINTR)
            continue;
        return isTransient(errno) ? 0 : fail(errno);
    }
}

void FSocket::close()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

int FSocket::fail(int condition) const
{
    m_broken = m_broken || isOpen();
    return failWith(condition, QString::fromLocal8Bit(std::strerror(condition)));
}

int FSocket::failWith(int condition, const QString& text) const
{
    m_error = condition;
    m_errorString = text.toUtf8();
    return -1;
}

int FSocket::error() const
{
    return m_error;
}

const char* FSocket::errorString() const
{
    return m_error == 0 ? nullptr : m_errorString.constData();
}

FHostAddress FSocket::localAddress() const
{
    return m_local.address;
}

unsigned short FSocket::localPort() const
{
    return m_local.port;
}

FHostAddress FSocket::peerAddress() const
{
    return m_peer.address;
}

unsigned short FSocket::peerPort() const
{
    return m_peer.port;
}
