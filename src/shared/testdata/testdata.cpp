#include "shared/testdata/testdata.h"

#include <QFile>
#include <QTextStream>

namespace Torvix {

TestDataSet::TestDataSet(const QString& name, char sep, bool readOnly)
    : m_name(name)
    , m_sep(sep)
    , m_readOnly(readOnly)
{
}

TestDataSet::~TestDataSet() = default;

const TestDataRecord* TestDataSet::record(int index) const
{
    return index >= 0 && index < count() ? m_records[static_cast<std::size_t>(index)].get() : nullptr;
}

TestDataRecord* TestDataSet::record(int index)
{
    return const_cast<TestDataRecord*>(std::as_const(*this).record(index));
}

void TestDataSet::setHeader(TestDataRecord* header)
{
    if (header != m_header.get())
        m_header.reset(header);
    m_fieldIndexes.clear();
    for (int column = 0; header && column < header->count(); ++column)
        m_fieldIndexes.insert(header->valueAsString(column), column);
}

int TestDataSet::fieldIndex(const QString& columnName) const
{
    return m_fieldIndexes.value(columnName, -1);
}

void TestDataSet::addRecord(const TestDataRecord* record)
{
    // A record is handed over as read-only, and is the table's to change from then on.
    m_records.emplace_back(const_cast<TestDataRecord*>(record));
}

void TestDataSet::insertRecord(const TestDataRecord* record, int index)
{
    if (index >= 0 && index < count())
        m_records.emplace(m_records.begin() + index, const_cast<TestDataRecord*>(record));
}

void TestDataSet::removeRecord(int index)
{
    if (index >= 0 && index < count())
        m_records.erase(m_records.begin() + index);
}

void TestDataSet::insertField(int index)
{
    if (m_header)
        m_header->insertField(index);
    for (const auto& record : m_records)
        record->insertField(index);
}

void TestDataSet::removeField(int index)
{
    if (m_header)
        m_header->removeField(index);
    for (const auto& record : m_records)
        record->removeField(index);
}

bool TestDataSet::save(const QString& fileName)
{
    if (m_readOnly)
        return false;
    QFile file(fileName.isEmpty() ? m_name : fileName);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");

    const auto write = [&](const TestDataRecord* record) {
        stream << recordAsLine(record, m_sep);
        return file.error() == QFileDevice::NoError;
    };
    if (m_header && !write(m_header.get()))
        return false;
    for (const auto& record : m_records) {
        if (!write(record.get()))
            return false;
    }
    stream.flush();
    return file.flush() && file.error() == QFileDevice::NoError;
}

QString escapedCSVField(const QString& text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

QString recordAsLine(const TestDataRecord* record, char sep)
{
    // A record of no cells gives one empty cell, as a line may not be blank: a blank one ends a table.
    QString line = escapedCSVField(record->valueAsString(0));
    int column = 1;
    for (; column < record->count(); ++column)
        line += QLatin1Char(sep) + escapedCSVField(record->valueAsString(column));
    const TestDataRecord* header = record->dataSet()->header();
    for (; header && column < header->count(); ++column)
        line += QLatin1Char(sep);
    line += QLatin1Char('\n');
    return line;
}

void fillEmptyCells(unsigned int from, unsigned int to, TestDataRecord* record)
{
    for (unsigned int cell = from; cell < to; ++cell)
        record->addValue(QStringLiteral(""));
}

} // namespace Torvix
