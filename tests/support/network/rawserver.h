#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <thread>

namespace TorvixTest {

/** A TCP socket that listens on a free port of the loopback interface, of IPv4 or IPv6. */
class Listener
{
public:
    enum class Family { V4, V6 };
    enum class State { Listening, BoundOnly };

    /** BoundOnly holds a port at which every connection is refused. */
    explicit Listener(State state = State::Listening, Family family = Family::V4, int backlog = 16);
    ~Listener();
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    int descriptor() const { return m_descriptor; }
    unsigned short port() const { return m_port; }

private:
    int m_descriptor = -1;
    unsigned short m_port = 0;
};

/** The server's end of one connection, byte for byte. Reads give up after ten seconds. */
class RawConnection
{
public:
    explicit RawConnection(int descriptor) : m_descriptor(descriptor) {}
    ~RawConnection() { close(); }
    RawConnection(const RawConnection&) = delete;
    RawConnection& operator=(const RawConnection&) = delete;

    /** All bytes up to and with the mark; what came beyond it stays for the next read. */
    std::string readUntil(const std::string& mark);
    /** `count` bytes, or fewer when the peer ends or falls silent. */
    std::string readExactly(std::size_t count);
    /** An HTTP request: its head, and the body that Content-Length announces. */
    std::string readHttpRequest();
    void write(const std::string& bytes);
    /** Every byte in a packet of its own. */
    void writeBytewise(const std::string& bytes);
    void close();
    /** Ends with a reset (RST) instead of an orderly end. */
    void reset();
    /** Returns when the peer has ended the connection; true if it did within the time. */
    bool waitForEnd();

private:
    bool fill();

    int m_descriptor;
    std::string m_buffer;
};

/** A server of our own for what no real one would do: each connection goes through `handler`. */
class RawServer
{
public:
    using Handler = std::function<void(RawConnection&)>;

    explicit RawServer(Handler handler, Listener::Family family = Listener::Family::V4);
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    unsigned short port() const { return m_listener.port(); }
    std::string url(const std::string& path) const;
    /** Waits until `count` connections have been handled to their end, ten seconds at most. */
    bool waitForConnections(int count) const;

private:
    void serve();

    Listener m_listener;
    Handler m_handler;
    std::atomic<bool> m_stopping{false};
    std::atomic<int> m_handled{0};
    std::thread m_thread;
};

} // namespace TorvixTest
