#pragma once

#include "shared/testdata/packedcells.h"
#include "shared/testdata/xmlscanner.h"

#include <QString>
#include <vector>

namespace Torvix {

class TestDataSet;

/** The slices of the strings that the cells of an `.xlsx` workbook share, in the order of the file. */
using SharedStrings = std::vector<PackedCells::Slice>;

/** Reads the member that holds the shared strings and adds their texts to `cells`. */
SharedStrings readSharedStrings(std::string_view document, PackedCells& cells);

/**
 * Reads one sheet of an `.xlsx` workbook into a table.
 *
 * The table is as wide as the sheet says it is, and goes on for every row of the sheet, with empty
 * records for those that the file leaves out. Row 1 is the header.
 */
class ExcelXmlSheet
{
public:
    /** `cells` has the sheet's XML as its base, and the shared strings among its additions. */
    ExcelXmlSheet(TestDataSet* dataSet, SharedPtr<PackedCells> cells, const SharedStrings& strings);

    /** Empty on success, else why the reading stopped; the table then has what was read so far. */
    QString read();

private:
    bool readWidth();
    bool readRows();
    bool readRow();
    bool fillGap(unsigned upTo);
    bool readCell(unsigned& nextColumn);
    PackedCells::Slice readSharedCell();
    PackedCells::Slice readPlainCell();
    bool appendEmpty(std::size_t count);
    void addRecord(unsigned row, std::size_t firstCell, std::size_t count);
    bool enterWorksheet(XmlScanner& scanner) const;

    TestDataSet* m_dataSet;
    SharedPtr<PackedCells> m_cells;
    const SharedStrings& m_strings;
    XmlScanner m_scanner;
    QString m_error;
    unsigned m_width = 0;
    unsigned m_expectedRow = 1;
    std::size_t m_blankRow = 0; // as many empty cells as the table is wide, which all gaps share
    std::size_t m_records = 0;
};

} // namespace Torvix
