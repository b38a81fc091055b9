#include "spreadsheet/recordstream.h"

namespace Swinder {

void RecordStream::next()
{
    ByteReader header(m_stream.part(m_position, m_stream.size));
    m_id = header.u16();
    const std::size_t length = header.u16();
    m_body = header.bytes(length);
    m_position += 4 + length;
}

std::vector<ByteView> RecordStream::bodyWithContinuations()
{
    std::vector<ByteView> bodies{m_body};
    for (;;) {
        ByteReader ahead(m_stream.part(m_position, m_stream.size));
        if (ahead.remaining() < 4 || ahead.u16() != ContinueRecord)
            return bodies;
        next();
        bodies.push_back(m_body);
    }
}

} // namespace Swinder
