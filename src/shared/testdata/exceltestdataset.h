#pragma once

#include "shared/testdata/testdata.h"

namespace Swinder {
class Sheet;
class Workbook;
} // namespace Swinder

namespace Torvix {

/**
 * The table of one sheet of an `.xls` workbook; read-only.
 *
 * The table starts at the first text found from the sheet's top left corner. Its header is the run of
 * texts to the right of there, and its records are the rows below, up to the first empty one. What
 * goes wrong is logged as a warning, and leaves the table empty and without header.
 */
class ExcelTestDataSet : public TestDataSet
{
public:
    /** An empty `sheetName` means the first sheet. */
    ExcelTestDataSet(const QString& fileName, const QString& sheetName);

private:
    void readTable(Swinder::Sheet& sheet);
    int readHeader(Swinder::Sheet& sheet, unsigned column, unsigned row);
    bool readRow(Swinder::Sheet& sheet, unsigned column, unsigned row, unsigned width);
};

} // namespace Torvix
