#include "engine/rewriting/sourceedits.h"

#include <algorithm>

namespace KJS::Rewriting {

namespace {

bool isLineEnd(const QString& text, int at)
{
    const ushort unit = text.at(at).unicode();
    if (unit == '\r')
        return at + 1 >= text.size() || text.at(at + 1) != QLatin1Char('\n');
    return unit == '\n' || unit == 0x2028 || unit == 0x2029;
}

} // namespace

std::vector<int> unpackNumbers(const QString& packed)
{
    std::vector<int> numbers;
    int number = 0, shift = 0;
    for (const QChar unit : packed) {
        number |= (unit.unicode() & 0x7fff) << shift;
        shift += 15;
        if (unit.unicode() & 0x8000 && shift < 30)
            continue;
        numbers.push_back(number);
        number = shift = 0;
    }
    return numbers;
}

EditMap::EditMap(const QString& code, const QString& edits, const QString& original)
    : m_code(code)
    , m_original(original)
    , m_lines{0}
{
    const std::vector<int> numbers = unpackNumbers(edits);
    int offset = 0, at = 0;
    for (size_t i = 0; i + 2 < numbers.size(); i += 3) {
        offset += numbers[i];
        at += numbers[i];
        m_edits.push_back({offset, at, numbers[i + 1], numbers[i + 2]});
        offset += numbers[i + 2];
        at += numbers[i + 1];
    }
    for (int i = 0; i < m_code.size(); ++i)
        if (isLineEnd(m_code, i))
            m_lines.push_back(i + 1);
}

int EditMap::offsetOf(int line, int column) const
{
    if (line < 1 || line > static_cast<int>(m_lines.size()) || column < 1)
        return -1;
    return std::min(m_lines[static_cast<size_t>(line) - 1] + column - 1, m_code.size());
}

int EditMap::originalOffset(int offset) const
{
    auto after = std::upper_bound(m_edits.begin(), m_edits.end(), offset,
                                  [](int value, const Edit& edit) { return value < edit.offset; });
    if (after == m_edits.begin())
        return offset;
    const Edit& edit = *std::prev(after);
    const int behind = offset - edit.offset - edit.inserted;
    return behind < 0 ? edit.original : edit.original + edit.removed + behind;
}

int EditMap::originalColumn(int originalOffset) const
{
    int start = std::min(originalOffset, m_original.size());
    while (start > 0 && !isLineEnd(m_original, start - 1))
        --start;
    return originalOffset - start + 1;
}

QString EditMap::originalOf(const QString& piece, int line) const
{
    const int from = offsetOf(line, 1);
    int found = from < 0 ? -1 : m_code.indexOf(piece, from);
    if (found < 0 && from >= 0) // the line may be that of the piece's end
        found = m_code.lastIndexOf(piece, from);
    if (found < 0)
        return {};
    const int start = originalOffset(found);
    return m_original.mid(start, originalOffset(found + piece.size()) - start);
}

} // namespace KJS::Rewriting
