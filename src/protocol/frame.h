#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

#include <cstdint>

/**
 * Frames: how messages are cut out of a byte stream. The layout stands in protocol/message.h.
 */
namespace Torvix::Protocol {

/** What a frame carries; the fifth byte of it. */
enum class FrameKind : quint8 { Hello = 1, Request = 2, Reply = 3, Error = 4, Push = 5, Last = Push };

/** Bytes before the body: length (4), kind (1), id (4), number (2). */
constexpr int frameHeaderSize = 11;
/** Limit of kind, id, number and body together, once both sides have greeted each other. */
constexpr quint32 maxFrameSize = 64u << 20;
/** The same limit before that, so that a stranger cannot make us hold memory. */
constexpr quint32 maxHelloSize = 4096;

struct Frame
{
    FrameKind kind = FrameKind::Hello;
    /** Request number that a reply answers; 0 where no reply is wanted or meant. */
    quint32 id = 0;
    /** RequestNumber, PushNumber or ErrorClass, by kind. */
    quint16 number = 0;
    /** Exactly one CBOR item. */
    QByteArray body;
};

/** The bytes of a frame, ready to be sent. The body must be within maxFrameSize. */
QByteArray toBytes(const Frame& frame);

/**
 * Takes bytes as they arrive and gives whole frames.
 *
 *     FrameReader reader;
 *     reader.add(data, size);
 *     while (auto frame = reader.next())
 *         handle(*frame);
 *     if (reader.failed())
 *         close(reader.errorString());
 *
 * A length out of bounds or an unknown kind fails the reader for good: nothing after it can be
 * trusted. Memory is held for bytes that have arrived only, never for bytes that were claimed.
 */
class FrameReader
{
public:
    explicit FrameReader(quint32 limit = maxHelloSize) : m_limit(limit) {}

    /** Called with maxFrameSize when the other side has shown who it is. */
    void setLimit(quint32 limit) { m_limit = limit; }

    void add(const char* data, qsizetype size);
    std::optional<Frame> next();

    bool failed() const { return !m_error.isEmpty(); }
    QString errorString() const { return m_error; }
    /** True in the middle of a frame: the stream ended there when it ends now. */
    bool isPartial() const { return m_begin < m_buffer.size(); }

private:
    QByteArray m_buffer;
    int m_begin = 0;
    quint32 m_limit;
    QString m_error;
};

} // namespace Torvix::Protocol
