#pragma once

#include <QString>
#include <memory>

namespace Torvix {

class LineReader;
class TestDataRecord;
class TestDataSet;

/**
 * Reads delimited text line by line: UTF-8, records ended by line feeds, cells divided by a separator
 * (an ASCII character), quotes around what holds separators, line feeds or (doubled) quotes.
 */
class TsvParser
{
public:
    /** Opens the file; see open(). */
    explicit TsvParser(const QString& fileName);
    ~TsvParser();
    TsvParser(const TsvParser&) = delete;
    TsvParser& operator=(const TsvParser&) = delete;

    /** Starts on another file. One that cannot be opened gives a warning and has no lines. */
    void open(const QString& fileName);
    /** Opens the file again and starts from its first line. */
    void rewind();

    /** The open file's name; empty if there is none. */
    QString name() const;

    /** The logical line that was read last: -1 before the first, 0 for the header. */
    int lineNumber() const { return m_lineNumber; }

    /** The next logical line, quotes kept; empty for a blank line and at the end of the file. */
    QString nextLine();

    /**
     * The number of separators outside quotes, or -1 for an empty line. Meant for detection: it takes
     * the character after a doubled quote as being outside, unlike parseRecord(), which is intended.
     */
    int countSeparator(const QString& line, char sep) const;

    /**
     * Makes a record of the line and gives it to the table: as the header if it is line 0, else as a
     * data record. One that is not as wide as the header is kept, with a warning on standard error.
     */
    void parseRecord(TestDataSet* dataSet, const QString& line, char sep) const;

    /** The same for all lines from here up to the first blank one, at a multiple of the speed. */
    void parseRecords(TestDataSet* dataSet, char sep);

private:
    void warnUnlessAsWide(const TestDataSet& dataSet, int count) const;
    void addRecord(TestDataSet* dataSet, TestDataRecord* record) const;

    std::unique_ptr<LineReader> m_reader; // null when the file could not be opened
    int m_lineNumber = -1;
};

} // namespace Torvix
