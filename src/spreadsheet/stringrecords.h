#pragma once

#include "spreadsheet/bytereader.h"
#include "spreadsheet/value.h"

#include <string>
#include <vector>

namespace Swinder {

/**
 * Reads what is spread over a record and its continuations.
 *
 * Plain values and bytes run on over the joints. The characters of a text do so too, but then each
 * continuation starts with a byte of its own that says whether the rest is compressed.
 */
class ContinuedReader
{
public:
    explicit ContinuedReader(std::vector<ByteView> bodies);

    /** True when all bytes are read. */
    bool atEnd();

    std::uint8_t u8();
    std::uint16_t u16();
    std::uint32_t u32();
    void skip(std::size_t count);

    /** `count` characters, of two bytes each if `wide`, else of one (the low byte of UTF-16). */
    std::u16string characters(std::size_t count, bool wide);

private:
    void appendCharacters(std::u16string& text, std::size_t count, bool wide);
    void nextBody();

    std::vector<ByteView> m_bodies;
    std::size_t m_index = 0;
    ByteReader m_current;
};

/** A text of BIFF8 after its length: flags, the numbers of runs and phonetic bytes, characters, those. */
Value readUnicodeText(ContinuedReader& reader, std::size_t length);

/** The shared strings of a workbook, in the order of their indexes. */
std::vector<Value> readSharedStrings(std::vector<ByteView> bodies);

} // namespace Swinder
