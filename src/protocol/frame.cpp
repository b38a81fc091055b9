#include "protocol/frame.h"

#include <QtEndian>

namespace Torvix::Protocol {

namespace {

constexpr int lengthSize = 4;
constexpr quint32 headerAfterLength = frameHeaderSize - lengthSize;

} // namespace

QByteArray toBytes(const Frame& frame)
{
    QByteArray bytes;
    bytes.reserve(frameHeaderSize + frame.body.size());
    bytes.resize(frameHeaderSize);
    char* out = bytes.data();
    qToBigEndian<quint32>(headerAfterLength + quint32(frame.body.size()), out);
    out[4] = char(frame.kind);
    qToBigEndian<quint32>(frame.id, out + 5);
    qToBigEndian<quint16>(frame.number, out + 9);
    bytes.append(frame.body);
    return bytes;
}

void FrameReader::add(const char* data, qsizetype size)
{
    if (failed())
        return;
    if (m_begin > 0 && (m_begin == m_buffer.size() || m_begin > (1 << 16))) {
        m_buffer.remove(0, m_begin);
        m_begin = 0;
    }
    m_buffer.append(data, int(size));
}

std::optional<Frame> FrameReader::next()
{
    const int available = m_buffer.size() - m_begin;
    if (failed() || available < lengthSize)
        return std::nullopt;
    const char* in = m_buffer.constData() + m_begin;
    const auto length = qFromBigEndian<quint32>(in);
    if (length < headerAfterLength || length > m_limit) {
        m_error = QStringLiteral("frame of %1 bytes is out of bounds (%2 to %3)")
                      .arg(length)
                      .arg(headerAfterLength)
                      .arg(m_limit);
        return std::nullopt;
    }
    if (available > lengthSize && (in[4] < char(FrameKind::Hello) || in[4] > char(FrameKind::Last))) {
        m_error = QStringLiteral("unknown frame kind %1").arg(quint8(in[4]));
        return std::nullopt;
    }
    if (quint32(available - lengthSize) < length)
        return std::nullopt;
    Frame frame;
    frame.kind = FrameKind(in[4]);
    frame.id = qFromBigEndian<quint32>(in + 5);
    frame.number = qFromBigEndian<quint16>(in + 9);
    frame.body = m_buffer.mid(m_begin + frameHeaderSize, int(length - headerAfterLength));
    m_begin += lengthSize + int(length);
    return frame;
}

} // namespace Torvix::Protocol
