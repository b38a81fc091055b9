#pragma once

#include "spreadsheet/bytereader.h"

#include <memory>
#include <string>

namespace Swinder {

/** Decodes the 8-bit texts of BIFF5, whose encoding the workbook names by a number. */
class CodePage
{
public:
    /** `number` is that of the CODEPAGE record; Windows-1252 stands in for one that is not known. */
    explicit CodePage(unsigned number);
    ~CodePage();
    CodePage(CodePage&&) noexcept;
    CodePage& operator=(CodePage&&) noexcept;

    /** Never fails: a byte that has no meaning in the code page becomes U+FFFD. */
    std::u16string decode(ByteView text);

private:
    class Converter;
    std::unique_ptr<Converter> m_converter;
};

} // namespace Swinder
