// `.xlsx` workbooks: whole archives, and the XML of shared strings and of a sheet, divided by a 0.

#include "memoryfile.h"
#include "shared/testdata/excelxmlsheet.h"
#include "shared/testdata/excelxmltestdataset.h"

#include <cstring>

using namespace Torvix;

namespace {

class EmptyTable : public TestDataSet
{
public:
    EmptyTable() : TestDataSet(QString(), ',', true) {}
};

void readAll(const TestDataSet& table)
{
    for (int i = -1; i < table.count() && i < 200; ++i) {
        const TestDataRecord* record = i < 0 ? table.header() : table.record(i);
        for (int column = 0; record && column < record->count() && column < 200; ++column)
            (void)record->valueAsString(column);
    }
}

void readArchive(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(data, size);
    for (const char* sheet : {"", "Sheet1", "Erstes"})
        readAll(ExcelXmlTestDataSet(QString::fromStdString(file.name()), QString::fromUtf8(sheet)));
}

void readSheet(const std::uint8_t* data, std::size_t size)
{
    const std::string input(data, data + size);
    const std::size_t border = std::min(input.find('\0'), size);
    const QByteArray sheet(input.data() + border, int(size - border));
    const SharedPtr<PackedCells> cells(new PackedCells(border < size ? sheet.mid(1) : sheet));
    const SharedStrings strings = readSharedStrings(std::string_view(input).substr(0, border), *cells);
    EmptyTable table;
    ExcelXmlSheet(&table, cells, strings).read();
    readAll(table);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > 1 && std::memcmp(data, "PK", 2) == 0)
        readArchive(data, size);
    else
        readSheet(data, size);
    return 0;
}
