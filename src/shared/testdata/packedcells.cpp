#include "shared/testdata/packedcells.h"

namespace Torvix {

PackedCells::Slice PackedCells::inBase(std::string_view text) const
{
    if (text.empty())
        return {};
    return {static_cast<quint32>(text.data() - m_base.constData()), static_cast<quint32>(text.size())};
}

PackedCells::Slice PackedCells::addition(std::string_view text)
{
    if (text.empty() || text.size() > MaxBytes - m_additions.size())
        return {};
    const auto start = static_cast<quint32>(m_additions.size());
    m_additions.append(text);
    return {start | AdditionBit, static_cast<quint32>(text.size())};
}

QString PackedCells::text(std::size_t cell) const
{
    const Slice slice = m_cells[cell];
    if (slice.length == 0)
        return QStringLiteral("");
    const char* buffer = slice.start & AdditionBit ? m_additions.data() : m_base.constData();
    return QString::fromUtf8(buffer + (slice.start & ~AdditionBit), static_cast<int>(slice.length));
}

} // namespace Torvix
