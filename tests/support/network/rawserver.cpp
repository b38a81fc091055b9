#include "support/network/rawserver.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <stdexcept>

namespace TorvixTest {

namespace {

constexpr int PatienceMs = 10000;

bool isReadable(int descriptor, int timeoutMs)
{
    pollfd waiting = {descriptor, POLLIN, 0};
    return ::poll(&waiting, 1, timeoutMs) > 0;
}

} // namespace

Listener::Listener(State state, Family family, int backlog)
    : m_descriptor(::socket(family == Family::V4 ? AF_INET : AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_storage storage = {};
    socklen_t size = 0;
    if (family == Family::V4) {
        auto* address = reinterpret_cast<sockaddr_in*>(&storage);
        address->sin_family = AF_INET;
        address->sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        size = sizeof(sockaddr_in);
    } else {
        auto* address = reinterpret_cast<sockaddr_in6*>(&storage);
        address->sin6_family = AF_INET6;
        address->sin6_addr = in6addr_loopback;
        size = sizeof(sockaddr_in6);
    }
    auto* generic = reinterpret_cast<sockaddr*>(&storage);
    if (m_descriptor < 0 || ::bind(m_descriptor, generic, size) != 0 ||
        ::getsockname(m_descriptor, generic, &size) != 0 ||
        (state == State::Listening && ::listen(m_descriptor, backlog) != 0))
        throw std::runtime_error(std::string("cannot listen: ") + std::strerror(errno));
    // Both families keep the port at the same place.
    m_port = ntohs(reinterpret_cast<sockaddr_in*>(&storage)->sin_port);
}

Listener::~Listener()
{
    ::close(m_descriptor);
}

bool RawConnection::fill()
{
    char bytes[65536];
    if (m_descriptor < 0 || !isReadable(m_descriptor, PatienceMs))
        return false;
    const ssize_t count = ::recv(m_descriptor, bytes, sizeof bytes, 0);
    if (count <= 0)
        return false;
    m_buffer.append(bytes, static_cast<std::size_t>(count));
    return true;
}

std::string RawConnection::readUntil(const std::string& mark)
{
    std::size_t at = 0;
    while ((at = m_buffer.find(mark)) == std::string::npos) {
        if (!fill())
            return {};
    }
    return readExactly(at + mark.size());
}

std::string RawConnection::readExactly(std::size_t count)
{
    while (m_buffer.size() < count && fill()) {
    }
    std::string result = m_buffer.substr(0, count);
    m_buffer.erase(0, result.size());
    return result;
}

std::string RawConnection::readHttpRequest()
{
    std::string request = readUntil("\r\n\r\n");
    const std::string name = "\r\nContent-Length: ";
    const std::size_t at = request.find(name);
    if (at != std::string::npos)
        request += readExactly(std::stoul(request.substr(at + name.size())));
    return request;
}

void RawConnection::write(const std::string& bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::send(m_descriptor, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
        if (count <= 0)
            return;
        done += static_cast<std::size_t>(count);
    }
}

void RawConnection::writeBytewise(const std::string& bytes)
{
    const int on = 1;
    ::setsockopt(m_descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    for (const char byte : bytes) {
        write(std::string(1, byte));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void RawConnection::close()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

void RawConnection::reset()
{
    const linger abrupt = {1, 0};
    ::setsockopt(m_descriptor, SOL_SOCKET, SO_LINGER, &abrupt, sizeof abrupt);
    close();
}

bool RawConnection::waitForEnd()
{
    char byte = 0;
    for (;;) {
        if (!isReadable(m_descriptor, PatienceMs))
            return false;
        if (::recv(m_descriptor, &byte, 1, 0) <= 0)
            return true;
    }
}

RawServer::RawServer(Handler handler, Listener::Family family)
    : m_listener(Listener::State::Listening, family)
    , m_handler(std::move(handler))
    , m_thread([this] { serve(); })
{
}

RawServer::~RawServer()
{
    m_stopping = true;
    m_thread.join();
}

void RawServer::serve()
{
    while (!m_stopping) {
        if (!isReadable(m_listener.descriptor(), 10))
            continue;
        const int descriptor = ::accept4(m_listener.descriptor(), nullptr, nullptr, SOCK_CLOEXEC);
        if (descriptor < 0)
            continue;
        {
            RawConnection connection(descriptor);
            m_handler(connection);
        }
        ++m_handled;
    }
}

std::string RawServer::url(const std::string& path) const
{
    return "http://127.0.0.1:" + std::to_string(port()) + path;
}

bool RawServer::waitForConnections(int count) const
{
    for (int waited = 0; waited < PatienceMs && m_handled < count; ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return m_handled >= count;
}

} // namespace TorvixTest
