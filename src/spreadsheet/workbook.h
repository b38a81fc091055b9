#pragma once

#include "spreadsheet/export.h"
#include "spreadsheet/sheet.h"

#include <memory>
#include <vector>

namespace Swinder {

class Store;

/**
 * An `.xls` workbook: BIFF5 (Excel 5.0 and 95) and BIFF8 (Excel 97 to 2003).
 *
 *     Swinder::Workbook book(nullptr);
 *     if (book.load("/tmp/a.xls") && !book.isPasswordProtected())
 *         for (unsigned i = 0; i < book.sheetCount(); ++i)
 *             use(*book.sheet(i));
 *
 * A load is all or nothing: a file that is damaged, or that is no such workbook, leaves no sheets.
 * What a file makes the reader allocate is bounded by a small multiple of the file's size.
 */
class TORVIXSW_EXPORT Workbook
{
public:
    /** `store` has no use and is to be null. */
    explicit Workbook(Store* store);
    ~Workbook();
    Workbook(const Workbook&) = delete;
    Workbook& operator=(const Workbook&) = delete;

    /**
     * Reads the file of that name (in the encoding of the file system) in place of what was held.
     *
     * True also for an encrypted workbook: isPasswordProtected() is then true, and there are no
     * sheets. False for a file that cannot be read, is no workbook, or is damaged.
     */
    bool load(const char* fileName);

    /** True when the loaded file is encrypted. The mere protection of cells or structure is not meant. */
    bool isPasswordProtected() const { return m_passwordProtected; }

    /** Worksheets only, hidden ones too: charts, macro sheets, modules and dialogs do not count. */
    unsigned sheetCount() const { return static_cast<unsigned>(m_sheets.size()); }

    /** The sheet in the order of the file, owned by the workbook until the next load; null past the end. */
    Sheet* sheet(unsigned index);

private:
    void clear();

    bool m_passwordProtected = false;
    std::vector<std::unique_ptr<Sheet>> m_sheets;
};

} // namespace Swinder
