#pragma once

#include "spreadsheet/bytereader.h"
#include "spreadsheet/codepage.h"
#include "spreadsheet/sheet.h"

#include <memory>
#include <vector>

namespace Swinder {

enum class BiffVersion { Biff5, Biff8 };

/** What the cells of every sheet need to know of their workbook. */
struct WorkbookGlobals
{
    BiffVersion version = BiffVersion::Biff8;
    CodePage codePage{1252};
    std::vector<Value> sharedStrings;
};

struct WorkbookContents
{
    bool encrypted = false; /**< then nothing else was read */
    std::vector<std::unique_ptr<Sheet>> sheets;
};

/** Reads a whole BIFF stream. @throws DamagedFile */
WorkbookContents readWorkbook(ByteView stream);

} // namespace Swinder
