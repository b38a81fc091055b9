#pragma once

#include "shared/base/sharedptr.h"

#include <QMap>
#include <QString>
#include <memory>
#include <vector>

namespace Torvix {

class PackedCells;
class TestDataSet;

/**
 * One row of a table: a list of texts. A record may be shorter or longer than the table's header.
 *
 * Columns count from 0. An index below 0 never does anything.
 */
class TestDataRecord
{
public:
    /** An empty record. `index` is its place in the file and stays; the header's is -1. */
    TestDataRecord(TestDataSet* dataSet, int index);
    /** A record of the cells from `firstCell` on, which stay packed until the record is changed. */
    TestDataRecord(TestDataSet* dataSet, int index, SharedPtr<const PackedCells> cells, std::size_t firstCell,
                   int count);
    ~TestDataRecord();
    TestDataRecord(const TestDataRecord&) = delete;
    TestDataRecord& operator=(const TestDataRecord&) = delete;

    /** The table that the record was made for; not owned. */
    TestDataSet* dataSet() const;
    int count() const;
    int index() const;

    /** A null string when there is no such cell. */
    QString valueAsString(int index) const;
    /** By the table's header; a null string when it has no such column or the record no such cell. */
    QString valueAsString(const QString& columnName) const;

    /** Past the end, the record first grows with empty texts. */
    void setValue(int index, const QString& value);
    void addValue(const QString& value);

    /** Inserts a null text before `index`; a record that has no cell there stays as it is. */
    void insertField(int index);
    void removeField(int index);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/**
 * A table read from a file: a header with the column names, and records. Every cell is a text.
 *
 *     SharedPtr<TestDataSet> table(TestDataSet::createTestDataSet("/tmp/users.csv"));
 *     if (table)
 *         for (int i = 0; i < table->count(); ++i)
 *             use(table->record(i)->valueAsString("name"));
 *
 * Tables are counted; one that a factory returns has a count of 0, so that the caller's SharedPtr owns
 * it. Records belong to their table.
 */
class TestDataSet : public Shared
{
public:
    /**
     * Reads a table. The suffix decides, by exact case: `xls` and `xlsx` are read as workbooks (their
     * first sheet), anything else as delimited text in UTF-8. A `tsv` file has tabs; for others the
     * separator (comma, semicolon or tab) is detected from the first three lines.
     *
     * Null only for delimited text of a suffix other than `tsv` and `csv` in which no separator is
     * found. A workbook that cannot be read gives an empty table without header and a message.
     */
    static TestDataSet* createTestDataSet(const QString& fileName);

    /** Reads one sheet of a workbook, the first if `sheetName` is empty. Null if the suffix is neither
     *  `xls` nor `xlsx`. */
    static TestDataSet* createTestDataSetExcel(const QString& fileName, const QString& sheetName);

    ~TestDataSet() override;
    TestDataSet(const TestDataSet&) = delete;
    TestDataSet& operator=(const TestDataSet&) = delete;

    /** The name of the file that the table was read from, as it was given. */
    QString dataName() const { return m_name; }
    bool isReadOnly() const { return m_readOnly; }
    /** The separator that the table is written with. */
    char getSep() const { return m_sep; }

    /** The number of records, without the header. */
    int count() const { return static_cast<int>(m_records.size()); }
    /** Null when there is no such record. */
    const TestDataRecord* record(int index) const;
    TestDataRecord* record(int index);

    /** May be null. */
    const TestDataRecord* header() const { return m_header.get(); }
    TestDataRecord* header() { return m_header.get(); }
    /** Takes ownership. Of columns with the same name, the last one is found by fieldIndex(). */
    void setHeader(TestDataRecord* header);

    /** The column of that name, or -1. Columns inserted or removed after setHeader() do not count. */
    int fieldIndex(const QString& columnName) const;

    /** Takes ownership. */
    void addRecord(const TestDataRecord* record);
    /** Takes ownership and inserts before `index`; without a record there, does nothing of both. */
    void insertRecord(const TestDataRecord* record, int index);
    void removeRecord(int index);

    /** These change the header and every record; a record without a cell there stays as it is. */
    void insertField(int index);
    void removeField(int index);

    /**
     * Writes the table as delimited text, over an existing file; an empty name means dataName().
     * False when the table is read-only or the file cannot be written.
     */
    bool save(const QString& fileName);

protected:
    TestDataSet(const QString& name, char sep, bool readOnly);

    void setName(const QString& name) { m_name = name; }
    void setSep(char sep) { m_sep = sep; }

private:
    QString m_name;
    std::vector<std::unique_ptr<TestDataRecord>> m_records;
    std::unique_ptr<TestDataRecord> m_header;
    QMap<QString, int> m_fieldIndexes;
    char m_sep;
    bool m_readOnly;
};

/** The text in quotes, each quote in it doubled. */
QString escapedCSVField(const QString& text);

/** A record as a line of delimited text, padded with bare separators to the header's width. */
QString recordAsLine(const TestDataRecord* record, char sep);

/** Appends an empty text for each number from `from` up to but not including `to`. */
void fillEmptyCells(unsigned int from, unsigned int to, TestDataRecord* record);

} // namespace Torvix
