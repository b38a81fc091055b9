#pragma once

#include "spreadsheet/bytereader.h"
#include "spreadsheet/sheet.h"
#include "spreadsheet/workbookreader.h"

namespace Swinder {

/**
 * Reads one sheet's substream, from its BOF to its EOF, into `sheet`.
 *
 * False when it turns out to be no worksheet (a dialog, or a chart or macro sheet that the list of
 * sheets calls a worksheet); `sheet` is then to be dropped.
 * @throws DamagedFile
 */
bool readSheet(ByteView substream, WorkbookGlobals& globals, Sheet& sheet);

} // namespace Swinder
