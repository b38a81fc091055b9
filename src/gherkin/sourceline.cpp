#include "gherkin/sourceline.h"

namespace Gherkin {

namespace {

/** Line ends are part of a cell, other blanks around it are not. */
bool isCellBlank(QChar c)
{
    return c.isSpace() && c != QLatin1Char('\n');
}

} // namespace

SourceLine::SourceLine(const QString& raw, int number)
    : m_raw(raw.endsWith(QLatin1Char('\r')) ? raw.chopped(1) : raw)
    , m_text(m_raw.trimmed())
    , m_number(number)
{
    while (m_indentation < m_raw.size() && m_raw[m_indentation].isSpace())
        ++m_indentation;
}

Location SourceLine::location(int offset) const
{
    const int end = qMin(m_indentation + offset, m_raw.size());
    int column = 1;
    for (int i = 0; i < end; ++i)
        column += m_raw[i].isLowSurrogate() ? 0 : 1;
    return {m_number, column};
}

QVector<TableCell> SourceLine::cells() const
{
    QVector<TableCell> cells;
    QString content;
    int start = 1; // behind the bar that begins the cell
    for (int i = 1; i < m_text.size(); ++i) {
        const QChar c = m_text[i];
        if (c == QLatin1Char('|')) {
            cells.append(cell(content, start));
            content.clear();
            start = i + 1;
        } else if (c == QLatin1Char('\\') && i + 1 < m_text.size()) {
            const QChar next = m_text[++i];
            if (next == QLatin1Char('n')) {
                content += QLatin1Char('\n');
            } else {
                if (next != QLatin1Char('|') && next != QLatin1Char('\\'))
                    content += c;
                content += next;
            }
        } else {
            content += c;
        }
    }
    return cells;
}

TableCell SourceLine::cell(const QString& content, int offset) const
{
    int begin = 0;
    int end = content.size();
    while (begin < end && isCellBlank(content[begin]))
        ++begin;
    while (end > begin && isCellBlank(content[end - 1]))
        --end;
    return {location(offset + begin), content.mid(begin, end - begin)};
}

} // namespace Gherkin
