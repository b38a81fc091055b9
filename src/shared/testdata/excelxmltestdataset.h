#pragma once

#include "shared/testdata/testdata.h"

#include <optional>

namespace Torvix {

/**
 * The table of one sheet of an `.xlsx` workbook; read-only.
 *
 * The header is the sheet's first row. A cell of a number, a boolean or a date gives the raw text that
 * the file has; a text that is not among the workbook's shared ones is not read, so the cell is empty.
 * What goes wrong is told on the standard streams, and leaves the table with what was read before.
 */
class ExcelXmlTestDataSet : public TestDataSet
{
public:
    /** An empty `sheetName` means the sheet of id 1. */
    ExcelXmlTestDataSet(const QString& fileName, const QString& sheetName);

private:
    void read(const QString& sheetName);
};

} // namespace Torvix
