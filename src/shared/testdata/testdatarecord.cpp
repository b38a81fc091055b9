#include "shared/testdata/packedcells.h"
#include "shared/testdata/testdata.h"

#include <QVector>

namespace Torvix {

struct TestDataRecord::Private
{
    int count() const { return packed ? packedCount : values.size(); }

    /** The values to change; the packed cells become texts for it. */
    QVector<QString>& unpacked();

    TestDataSet* dataSet;
    QVector<QString> values;
    int index;

    int packedCount = 0;
    SharedPtr<const PackedCells> packed; // while set, stands in for the values
    std::size_t firstCell = 0;
};

QVector<QString>& TestDataRecord::Private::unpacked()
{
    if (packed) {
        values.reserve(packedCount);
        for (int i = 0; i < packedCount; ++i)
            values.append(packed->text(firstCell + static_cast<std::size_t>(i)));
        packed.reset();
    }
    return values;
}

TestDataRecord::TestDataRecord(TestDataSet* dataSet, int index)
    : d(new Private{dataSet, {}, index, 0, nullptr, 0})
{
}

TestDataRecord::TestDataRecord(TestDataSet* dataSet, int index, SharedPtr<const PackedCells> cells,
                               std::size_t firstCell, int count)
    : d(new Private{dataSet, {}, index, count, std::move(cells), firstCell})
{
}

TestDataRecord::~TestDataRecord() = default;

TestDataSet* TestDataRecord::dataSet() const
{
    return d->dataSet;
}

int TestDataRecord::count() const
{
    return d->count();
}

int TestDataRecord::index() const
{
    return d->index;
}

QString TestDataRecord::valueAsString(int index) const
{
    if (index < 0 || index >= d->count())
        return QString();
    return d->packed ? d->packed->text(d->firstCell + static_cast<std::size_t>(index)) : d->values.at(index);
}

QString TestDataRecord::valueAsString(const QString& columnName) const
{
    return valueAsString(d->dataSet->fieldIndex(columnName));
}

void TestDataRecord::setValue(int index, const QString& value)
{
    if (index < 0)
        return;
    QVector<QString>& values = d->unpacked();
    while (values.size() <= index)
        values.append(QStringLiteral(""));
    values[index] = value;
}

void TestDataRecord::addValue(const QString& value)
{
    d->unpacked().append(value);
}

void TestDataRecord::insertField(int index)
{
    if (index >= 0 && index < count())
        d->unpacked().insert(index, QString());
}

void TestDataRecord::removeField(int index)
{
    if (index >= 0 && index < count())
        d->unpacked().removeAt(index);
}

} // namespace Torvix
