#include "spreadsheet/bytereader.h"

#include <algorithm>
#include <cstring>

namespace Swinder {

ByteView ByteView::part(std::size_t from, std::size_t count) const
{
    if (from > size)
        throw DamagedFile("offset past the end");
    return ByteView(data + from, std::min(count, size - from));
}

const std::uint8_t* ByteReader::take(std::size_t count)
{
    if (count > remaining())
        throw DamagedFile("record too short");
    const std::uint8_t* taken = m_bytes.data + m_position;
    m_position += count;
    return taken;
}

std::uint16_t ByteReader::u16()
{
    const std::uint8_t* b = take(2);
    return static_cast<std::uint16_t>(b[0] | b[1] << 8);
}

std::uint32_t ByteReader::u32()
{
    const std::uint32_t low = u16();
    return low | static_cast<std::uint32_t>(u16()) << 16;
}

double ByteReader::f64()
{
    const std::uint64_t low = u32();
    const std::uint64_t bits = low | static_cast<std::uint64_t>(u32()) << 32;
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

} // namespace Swinder
