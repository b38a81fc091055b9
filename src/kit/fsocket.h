#pragma once

#include "kit/export.h"
#include "kit/fhostaddress.h"

#include <QByteArray>
#include <QString>

/**
 * A TCP client socket over IPv4 and IPv6, used from one thread.
 *
 * After a successful connectToHost() the socket is open until close(); it is also valid until a
 * failure (a reset by the peer, say) has ended the connection for good. The end of the peer's stream
 * is no failure: what was received stays readable, after that nothing more is available, and
 * writing is still possible. Descriptors are not inherited by programs that this process starts, and
 * no write raises SIGPIPE.
 */
class TORVIXKIT_EXPORT FSocket
{
public:
    static constexpr int DefaultConnectTimeoutMs = 20000;

    FSocket();
    ~FSocket();
    FSocket(const FSocket&) = delete;
    FSocket& operator=(const FSocket&) = delete;

    /**
     * Resolves the host and connects, in blocking mode. An earlier connection is closed first.
     *
     * `host` is a name, an international name, or an address literal (an IPv6 one also in brackets).
     * Each address of the host is tried, in the order that the system gives. False with error() and
     * errorString() set when the name is unknown or no address accepts the connection. Blocks for
     * the look-up, which has no time limit of its own, and at most the connect timeout.
     */
    bool connectToHost(const QString& host, unsigned short port);

    /** The limit on connecting, over all addresses of the host, in milliseconds. */
    void setConnectTimeout(int msecs);

    /** Whether reads and writes wait. Without effect on an unconnected socket. */
    void setBlocking(bool blocking);

    /** Connected, and not closed by us. */
    bool isOpen() const;

    /** Open, and the connection has not failed. */
    bool isValid() const;

    /**
     * Waits until bytes can be read, for at most `msecs` milliseconds (negative: without limit).
     *
     * Returns the number of bytes that can be read at once, 0 when none came, -1 on failure.
     * `timedOut` may be null; with the result 0 it tells whether more may still come. It is false
     * at the end of the peer's stream, where the call takes its whole time nevertheless, so that a
     * polling caller does not spin; only a call without limit returns at once there.
     */
    int waitForMore(int msecs, bool* timedOut) const;

    /**
     * Reads up to `size` bytes. Returns how many, -1 on failure. 0 at the end of the peer's stream,
     * and in non-blocking mode when nothing is there now.
     */
    int readBlock(char* bytes, int size);

    /**
     * Writes up to `size` bytes. Returns how many were accepted, 0 when the socket can take none
     * now (in non-blocking mode), -1 on failure.
     */
    int writeBlock(const char* bytes, int size);

    /** Ends the connection. Addresses, ports and the last error keep answering. */
    void close();

    /**
     * The condition of the last operation that failed, 0 for none since the last connectToHost():
     * a positive errno value, or a negative EAI_ value of getaddrinfo() when the name could not be
     * resolved.
     */
    int error() const;

    /** A sentence for error(), in UTF-8; null when there is none. Valid until the next operation. */
    const char* errorString() const;

    /** Null, and 0, before the first successful connect. */
    FHostAddress localAddress() const;
    unsigned short localPort() const;
    FHostAddress peerAddress() const;
    unsigned short peerPort() const;

private:
    struct Endpoint
    {
        FHostAddress address;
        unsigned short port = 0;
    };

    bool connectToFirst(const struct addrinfo* addresses, const QString& where);
    void adopt(int descriptor);
    int bytesAvailable() const;
    int fail(int condition) const;
    int failWith(int condition, const QString& text) const;

    int m_descriptor = -1;
    int m_connectTimeoutMs = DefaultConnectTimeoutMs;
    Endpoint m_local;
    Endpoint m_peer;
    mutable bool m_broken = false;
    mutable int m_error = 0;
    mutable QByteArray m_errorString;
};
