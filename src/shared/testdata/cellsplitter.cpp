#include "shared/testdata/cellsplitter.h"

#include <string>

namespace Torvix {

namespace {

/** The text of one cell, which stays a slice of the line as long as it is one stretch of it. */
class CellText
{
public:
    explicit CellText(PackedCells& cells) : m_cells(cells) {}

    void append(std::string_view piece)
    {
        if (piece.empty())
            return;
        if (m_copied) {
            m_copy += piece;
        } else if (m_stretch.empty()) {
            m_stretch = piece;
        } else if (m_stretch.data() + m_stretch.size() == piece.data()) {
            m_stretch = std::string_view(m_stretch.data(), m_stretch.size() + piece.size());
        } else {
            m_copy.assign(m_stretch);
            m_copy += piece;
            m_copied = true;
        }
    }

    bool isEmpty() const { return m_stretch.empty(); }

    void finish()
    {
        m_cells.append(m_copied            ? m_cells.addition(m_copy)
                       : m_stretch.empty() ? PackedCells::Slice()
                                           : m_cells.inBase(m_stretch));
        m_stretch = {};
        m_copied = false;
    }

private:
    PackedCells& m_cells;
    std::string_view m_stretch;
    std::string m_copy;
    bool m_copied = false;
};

int splitPlain(std::string_view line, char sep, PackedCells& cells)
{
    int count = 1;
    const char* start = line.data();
    const char* const end = start + line.size();
    for (const char* at = start; at != end; ++at) {
        if (*at == sep) {
            cells.append(cells.inBase(std::string_view(start, std::size_t(at - start))));
            start = at + 1;
            ++count;
        }
    }
    cells.append(cells.inBase(std::string_view(start, std::size_t(end - start))));
    return count;
}

/** Where the quoted stretch from `from` on ends: at its closing quote, or at the line's end. */
std::size_t appendQuoted(std::string_view line, std::size_t from, CellText& cell)
{
    for (;;) {
        const std::size_t quote = std::min(line.find('"', from), line.size());
        cell.append(line.substr(from, quote - from));
        if (quote + 1 >= line.size() || line[quote + 1] != '"')
            return quote;
        cell.append(line.substr(quote + 1, 1)); // the second of the two
        from = quote + 2;
    }
}

int splitQuoted(std::string_view line, char sep, PackedCells& cells)
{
    const char stops[] = {sep, '"'};
    CellText cell(cells);
    int finished = 0;
    std::size_t at = 0;
    while (at < line.size()) {
        const std::size_t stop = std::min(line.find_first_of(std::string_view(stops, 2), at), line.size());
        cell.append(line.substr(at, stop - at));
        if (stop == line.size())
            break;
        if (line[stop] == sep) {
            cell.finish();
            ++finished;
            at = stop + 1;
        } else {
            at = appendQuoted(line, stop + 1, cell) + 1;
        }
    }
    if (finished == 0 && cell.isEmpty())
        return 0;
    cell.finish();
    return finished + 1;
}

} // namespace

int splitCells(std::string_view line, char sep, PackedCells& cells)
{
    if (line.empty())
        return 0;
    return line.find('"') == std::string_view::npos ? splitPlain(line, sep, cells)
                                                    : splitQuoted(line, sep, cells);
}

} // namespace Torvix
