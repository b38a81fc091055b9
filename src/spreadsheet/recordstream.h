#pragma once

#include "spreadsheet/bytereader.h"

#include <vector>

namespace Swinder {

/** The records of the BIFF stream that are read; all others are passed over. */
enum RecordId : std::uint16_t {
    FormulaRecord = 0x0006,
    EofRecord = 0x000A,
    FilePassRecord = 0x002F,
    ContinueRecord = 0x003C,
    CodePageRecord = 0x0042,
    SheetPropertiesRecord = 0x0081,
    BoundSheetRecord = 0x0085,
    MulRkRecord = 0x00BD,
    RStringRecord = 0x00D6,
    SharedStringsRecord = 0x00FC,
    LabelSharedRecord = 0x00FD,
    NumberRecord = 0x0203,
    LabelRecord = 0x0204,
    BoolErrorRecord = 0x0205,
    StringRecord = 0x0207,
    RkRecord = 0x027E,
    BofRecord = 0x0809
};

/** Walks the records of one substream: a two-byte id, a two-byte length and the body. */
class RecordStream
{
public:
    explicit RecordStream(ByteView stream) : m_stream(stream) {}

    /**
     * Goes to the next record.
     * @throws DamagedFile when there is none: every substream ends in a record that says so
     */
    void next();

    std::uint16_t id() const { return m_id; }
    ByteView body() const { return m_body; }

    /** The body of the current record and, after it, of each CONTINUE record that follows; passes them. */
    std::vector<ByteView> bodyWithContinuations();

private:
    ByteView m_stream;
    std::size_t m_position = 0;
    std::uint16_t m_id = 0;
    ByteView m_body;
};

} // namespace Swinder
