#pragma once

#include <QString>

#include <memory>
#include <utility>

namespace Torvix::Protocol {

/**
 * Two-way byte stream between the two processes. Reading and writing never block; waiting is a call
 * of its own. One thread uses a channel.
 */
class Channel
{
public:
    virtual ~Channel() = default;

    /** Bytes read, 0 when there are none now, -1 when the stream has ended (see errorString). */
    virtual qint64 read(char* data, qint64 size) = 0;
    /** Bytes taken, 0 when none fit now, -1 when the stream has ended. */
    virtual qint64 write(const char* data, qint64 size) = 0;

    enum class Wait { Readable, Writable };
    /** True when it is (or the stream has ended); false after the timeout. Negative: no limit. */
    virtual bool wait(Wait what, int timeoutMs) = 0;

    /** For a notifier in an event loop; -1 in memory. Owned by the channel. */
    virtual int descriptor() const { return -1; }
    /** True when the other side is a process of this machine. */
    virtual bool isLocal() const { return false; }
    /** Why the stream ended; empty when the other side closed it in order. */
    virtual QString errorString() const { return QString(); }

    /** Writes everything, waiting as needed; false when the stream ends or the timeout passes. */
    bool writeAll(const QByteArray& bytes, int timeoutMs = -1);
};

/** A connected stream socket, local or TCP. Takes over the descriptor. */
std::unique_ptr<Channel> socketChannel(int descriptor);

/**
 * Connects to a local socket by path, or to `host:port`.
 * @return null, with the reason in `*error`, when nobody listens there
 */
std::unique_ptr<Channel> connectTo(const QString& address, QString* error);

/** True for `host:port`, false for the path of a local socket (anything with a slash). */
bool isTcpAddress(const QString& address, QString* host = nullptr, quint16* port = nullptr);

/** The two ends of a connection in memory, for tests. Waiting for it never takes time. */
std::pair<std::unique_ptr<Channel>, std::unique_ptr<Channel>> memoryChannels();

} // namespace Torvix::Protocol
