#include "spreadsheet/stringrecords.h"

#include <algorithm>

namespace Swinder {

namespace {

enum TextFlag : std::uint8_t { Wide = 0x01, Phonetic = 0x04, Rich = 0x08 };

constexpr std::size_t BytesPerRun = 4;

} // namespace

ContinuedReader::ContinuedReader(std::vector<ByteView> bodies)
    : m_bodies(std::move(bodies))
    , m_current(m_bodies.at(0))
{
}

bool ContinuedReader::atEnd()
{
    while (m_current.remaining() == 0) {
        if (m_index + 1 == m_bodies.size())
            return true;
        nextBody();
    }
    return false;
}

void ContinuedReader::nextBody()
{
    if (m_index + 1 == m_bodies.size())
        throw DamagedFile("text runs out of its records");
    m_current = ByteReader(m_bodies[++m_index]);
}

std::uint8_t ContinuedReader::u8()
{
    while (m_current.remaining() == 0)
        nextBody();
    return m_current.u8();
}

std::uint16_t ContinuedReader::u16()
{
    const unsigned low = u8();
    return static_cast<std::uint16_t>(low | static_cast<unsigned>(u8()) << 8);
}

std::uint32_t ContinuedReader::u32()
{
    const std::uint32_t low = u16();
    return low | static_cast<std::uint32_t>(u16()) << 16;
}

void ContinuedReader::skip(std::size_t count)
{
    while (count > m_current.remaining()) {
        count -= m_current.remaining();
        nextBody();
    }
    m_current.skip(count);
}

std::u16string ContinuedReader::characters(std::size_t count, bool wide)
{
    std::u16string text;
    for (;;) {
        const std::size_t here = std::min(count, m_current.remaining() / (wide ? 2 : 1));
        appendCharacters(text, here, wide);
        count -= here;
        if (count == 0)
            return text;
        if (m_current.remaining() > 0)
            throw DamagedFile("character cut in two");
        nextBody();
        wide = m_current.u8() & Wide;
    }
}

void ContinuedReader::appendCharacters(std::u16string& text, std::size_t count, bool wide)
{
    const std::size_t start = text.size();
    text.resize(start + count);
    const ByteView from = m_current.bytes(wide ? 2 * count : count);
    if (wide) {
        for (std::size_t i = 0; i < count; ++i)
            text[start + i] = static_cast<char16_t>(from.data[2 * i] | from.data[2 * i + 1] << 8);
    } else {
        std::copy(from.data, from.data + count, text.begin() + static_cast<std::ptrdiff_t>(start));
    }
}

Value readUnicodeText(ContinuedReader& reader, std::size_t length)
{
    // A length of nothing may stand at the very end of its record, without the flags.
    if (length == 0 && reader.atEnd())
        return Value::string(UString());
    const std::uint8_t flags = reader.u8();
    const std::size_t runs = flags & Rich ? reader.u16() : 0;
    const std::size_t phoneticBytes = flags & Phonetic ? reader.u32() : 0;
    std::u16string text = reader.characters(length, flags & Wide);
    reader.skip(runs * BytesPerRun);
    reader.skip(phoneticBytes);
    return Value::string(UString(std::move(text)), runs > 0);
}

std::vector<Value> readSharedStrings(std::vector<ByteView> bodies)
{
    ContinuedReader reader(std::move(bodies));
    reader.skip(4); // the number of uses
    const std::uint32_t count = reader.u32();
    std::vector<Value> strings; // not reserved: the count is only the file's word
    for (std::uint32_t i = 0; i < count; ++i) {
        // Some programs count more strings than they write; a use of a missing one is found there.
        if (reader.atEnd())
            break;
        const std::size_t length = reader.u16();
        strings.push_back(readUnicodeText(reader, length));
    }
    return strings;
}

} // namespace Swinder
