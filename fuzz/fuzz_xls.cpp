// `.xls` workbooks: whole files, and BIFF streams without the container around them.

#include "spreadsheet/bytereader.h"
#include "spreadsheet/container.h"
#include "spreadsheet/workbookreader.h"

using namespace Swinder;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        const bool isContainer = size > 1 && data[0] == 0xD0 && data[1] == 0xCF;
        const ByteString stream =
            isContainer ? readContainer(ByteString(data, size)).workbook : ByteString(data, size);
        const WorkbookContents contents = readWorkbook(ByteView(stream));
        for (const auto& sheet : contents.sheets) {
            for (unsigned row = 0; row < 100; ++row)
                if (const Cell* cell = sheet->cell(row % 7, row, false))
                    (void)cell->value().asString().length();
        }
    } catch (const DamagedFile&) {
    }
    return 0;
}
