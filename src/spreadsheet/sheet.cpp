#include "spreadsheet/sheet.h"

#include <algorithm>

namespace Swinder {

Cell* Sheet::cell(unsigned column, unsigned row, bool autoCreate)
{
    if (column >= MaxColumns || row >= MaxRows)
        return nullptr;
    if (row >= m_rows.size()) {
        if (!autoCreate)
            return nullptr;
        m_rows.resize(row + 1);
    }

    Row& slots = m_rows[row];
    if (slots.empty() || slots.back().column < column)
        return autoCreate ? insert(slots, slots.end(), column) : nullptr;
    const auto place =
        std::lower_bound(slots.begin(), slots.end(), column,
                         [](const Slot& slot, unsigned wanted) { return slot.column < wanted; });
    if (place->column == column)
        return place->cell;
    return autoCreate ? insert(slots, place, column) : nullptr;
}

Cell* Sheet::insert(Row& row, Row::iterator before, unsigned column)
{
    Cell* made = &m_cells.emplace_back();
    row.insert(before, Slot{static_cast<std::uint16_t>(column), made});
    return made;
}

} // namespace Swinder
