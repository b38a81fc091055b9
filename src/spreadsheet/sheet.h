#pragma once

#include "spreadsheet/export.h"
#include "spreadsheet/value.h"

#include <cstdint>
#include <deque>
#include <vector>

namespace Swinder {

/** One cell of a sheet. */
class Cell
{
public:
    const Value& value() const { return m_value; }
    void setValue(Value value) { m_value = std::move(value); }

private:
    Value m_value;
};

/** One worksheet: its name and its cells. Rows and columns count from 0. */
class TORVIXSW_EXPORT Sheet
{
public:
    /** The format's bounds: no file holds cells at or past these. */
    static constexpr unsigned MaxColumns = 256;
    static constexpr unsigned MaxRows = 65536;

    explicit Sheet(UString name) : m_name(std::move(name)) {}
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;

    const UString& name() const { return m_name; }

    /**
     * The cell at that place, owned by the sheet and valid as long as it. Null when the file has no
     * cell there and `autoCreate` is false, and always outside the format's bounds; with
     * `autoCreate`, a missing cell is made with an empty value.
     */
    Cell* cell(unsigned column, unsigned row, bool autoCreate);

private:
    struct Slot
    {
        std::uint16_t column;
        Cell* cell; // in m_cells
    };
    using Row = std::vector<Slot>; // ascending columns

    Cell* insert(Row& row, Row::iterator before, unsigned column);

    UString m_name;
    std::vector<Row> m_rows;
    std::deque<Cell> m_cells; // a deque, so that cells stay where they are
};

} // namespace Swinder
