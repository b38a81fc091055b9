#include "shared/testdata/tsvparser.h"

#include "shared/testdata/cellsplitter.h"
#include "shared/testdata/linereader.h"
#include "shared/testdata/testdata.h"

#include <QtGlobal>
#include <cstdio>

namespace Torvix {

TsvParser::TsvParser(const QString& fileName)
{
    open(fileName);
}

TsvParser::~TsvParser() = default;

void TsvParser::open(const QString& fileName)
{
    m_lineNumber = -1;
    m_reader = LineReader::open(fileName);
    if (!m_reader)
        qWarning("Couldn't open %s", qPrintable(fileName));
}

void TsvParser::rewind()
{
    if (m_reader)
        open(QString(m_reader->fileName()));
}

QString TsvParser::name() const
{
    return m_reader ? m_reader->fileName() : QString();
}

QString TsvParser::nextLine()
{
    if (!m_reader || m_reader->atEnd())
        return QString();
    ++m_lineNumber;
    return textFromUtf8(m_reader->next());
}

int TsvParser::countSeparator(const QString& line, char sep) const
{
    if (line.isEmpty())
        return -1;
    enum State { Unquoted, Quoted, QuoteSeen };
    const QLatin1Char separator(sep);
    const QLatin1Char quote('"');
    State state = Unquoted;
    int count = 0;
    for (int i = 0; i < line.size(); ++i) {
        const QChar c = line.at(i);
        if (state == QuoteSeen) {
            state = c == quote ? Quoted : Unquoted;
            if (state == Quoted) {
                // Looked at again, as a closing quote: intended, see the header.
                --i;
                continue;
            }
            count += c == separator;
        } else if (state == Quoted) {
            if (c == quote && i + 1 < line.size())
                state = QuoteSeen;
        } else if (c == separator) {
            ++count;
        } else if (c == quote) {
            state = Quoted;
        }
    }
    return count;
}

void TsvParser::parseRecord(TestDataSet* dataSet, const QString& line, char sep) const
{
    if (line.isEmpty())
        return;
    const SharedPtr<PackedCells> cells(new PackedCells(line.toUtf8()));
    const QByteArray& bytes = cells->base();
    const int count = splitCells(std::string_view(bytes.constData(), std::size_t(bytes.size())), sep, *cells);
    addRecord(dataSet, new TestDataRecord(dataSet, m_lineNumber - 1, cells, 0, count));
}

void TsvParser::parseRecords(TestDataSet* dataSet, char sep)
{
    if (!m_reader)
        return;
    m_reader->readAll();
    const SharedPtr<PackedCells> cells(new PackedCells(m_reader->text()));
    // For cells of three characters; shorter ones make it grow, and what stays unused costs no memory.
    cells->reserve(std::size_t(m_reader->text().size()) / 4);
    while (!m_reader->atEnd()) {
        ++m_lineNumber;
        const std::string_view line = m_reader->next();
        if (line.empty())
            return;
        const std::size_t first = cells->count();
        const int count = splitCells(line, sep, *cells);
        addRecord(dataSet, new TestDataRecord(dataSet, m_lineNumber - 1, cells, first, count));
    }
}

void TsvParser::addRecord(TestDataSet* dataSet, TestDataRecord* record) const
{
    if (m_lineNumber == 0) {
        dataSet->setHeader(record);
        return;
    }
    warnUnlessAsWide(*dataSet, record->count());
    dataSet->addRecord(record);
}

void TsvParser::warnUnlessAsWide(const TestDataSet& dataSet, int count) const
{
    const int expected = dataSet.header() ? dataSet.header()->count() : 0;
    if (count != expected)
        std::fprintf(stderr, "Warning: inconsistent format in %s (line %d): Expected %d fields. Got %d.\n",
                     qPrintable(dataSet.dataName()), m_lineNumber, expected, count);
}

} // namespace Torvix
