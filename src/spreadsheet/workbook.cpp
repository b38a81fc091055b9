#include "spreadsheet/workbook.h"

#include "spreadsheet/bytereader.h"
#include "spreadsheet/container.h"
#include "spreadsheet/workbookreader.h"

namespace Swinder {

Workbook::Workbook(Store*) {}

Workbook::~Workbook() = default;

bool Workbook::load(const char* fileName)
{
    clear();
    try {
        Container container = readContainer(fileName);
        if (container.encrypted) {
            m_passwordProtected = true;
            return true;
        }
        WorkbookContents contents = readWorkbook(ByteView(container.workbook));
        m_passwordProtected = contents.encrypted;
        m_sheets = std::move(contents.sheets);
        return true;
    } catch (const DamagedFile&) {
        return false;
    }
}

Sheet* Workbook::sheet(unsigned index)
{
    return index < m_sheets.size() ? m_sheets[index].get() : nullptr;
}

void Workbook::clear()
{
    m_passwordProtected = false;
    m_sheets.clear();
}

} // namespace Swinder
