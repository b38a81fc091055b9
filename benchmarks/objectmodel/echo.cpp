#include "echo.h"

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

bool exchange(int socket, ssize_t (*transfer)(int, char*, size_t), char* bytes)
{
    for (int done = 0; done < Echo::size;) {
        const ssize_t count = transfer(socket, bytes + done, size_t(Echo::size - done));
        if (count <= 0)
            return false;
        done += int(count);
    }
    return true;
}

ssize_t receive(int socket, char* bytes, size_t size)
{
    return ::recv(socket, bytes, size, 0);
}

ssize_t transmit(int socket, char* bytes, size_t size)
{
    return ::send(socket, bytes, size, MSG_NOSIGNAL);
}

} // namespace

Echo::Echo()
{
    int ends[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0)
        return;
    m_pid = ::fork();
    if (m_pid == 0) {
        ::close(ends[0]);
        char bytes[size];
        while (exchange(ends[1], receive, bytes) && exchange(ends[1], transmit, bytes))
            continue;
        ::_exit(0);
    }
    ::close(ends[1]);
    m_socket = ends[0];
}

Echo::~Echo()
{
    ::close(m_socket);
    if (m_pid > 0)
        ::waitpid(m_pid, nullptr, 0);
}

bool Echo::roundTrip()
{
    char bytes[size] = {};
    return exchange(m_socket, transmit, bytes) && exchange(m_socket, receive, bytes);
}
