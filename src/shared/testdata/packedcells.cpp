#include "shared/testdata/packedcells.h"

namespace Torvix {

QString textFromUtf8(std::string_view piece)
{
    // Nearly all cells are short and ASCII, and are converted while that is found out.
    QString text(int(piece.size()), Qt::Uninitialized);
    auto* out = reinterpret_cast<ushort*>(text.data());
    unsigned seen = 0;
    for (const char c : piece) {
        const auto byte = static_cast<unsigned char>(c);
        seen |= byte;
        *out++ = byte;
    }
    if (seen < 0x80)
        return text;

    constexpr std::string_view Mark("\xEF\xBB\xBF");
    text = QString::fromUtf8(piece.data(), int(piece.size()));
    // The decoder takes a mark for the start of a whole text, and drops it.
    return piece.substr(0, Mark.size()) == Mark ? QChar(QChar::ByteOrderMark) + text : text;
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
    return textFromUtf8(std::string_view(buffer + (slice.start & ~AdditionBit), slice.length));
}

} // namespace Torvix
