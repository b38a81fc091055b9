#include "shared/testdata/excelxmlsheet.h"

#include "shared/testdata/testdata.h"

#include <QStringList>

namespace Torvix {

namespace {

/** The bounds of the format. */
constexpr unsigned MaxRows = 1048576;
constexpr unsigned MaxColumns = 16384;
/** The bounds of what one table may hold in memory: rows out of order may come again and again. */
constexpr std::size_t MaxRecords = MaxRows;
constexpr std::size_t MaxCells = std::size_t(1) << 25;

std::string_view textOf(const QByteArray& document)
{
    return std::string_view(document.constData()); // up to its 0
}

/** The column of a reference such as "AB12", from 1; 0 without letters. Bounded to past the last. */
unsigned columnOf(std::string_view reference)
{
    unsigned column = 0;
    for (const char c : reference) {
        if (c < 'A' || c > 'Z')
            break;
        column = std::min(column * 26 + unsigned(c - 'A' + 1), MaxColumns + 1);
    }
    return column;
}

QString toQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), int(text.size()));
}

unsigned rowNumber(std::optional<std::string_view> text)
{
    if (!text)
        return 0;
    bool plain = !text->empty() && text->size() < 10;
    unsigned number = 0;
    for (const char c : *text) {
        plain = plain && c >= '0' && c <= '9';
        number = number * 10 + unsigned(c - '0');
    }
    return plain ? number : toQString(*text).toUInt();
}

/** The number that a text begins with after blanks, as a scan for one finds it; 0 if there is none. */
std::size_t leadingNumber(std::string_view text)
{
    std::size_t at = text.find_first_not_of(" \t\r\n");
    std::size_t number = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at)
        number = std::min(number * 10 + std::size_t(text[at] - '0'), std::size_t(UINT32_MAX));
    return number;
}

/** Appends the texts of the `t` children of the element that the scanner is in, up to its end. */
void appendTexts(XmlScanner& scanner, std::string& text, std::string* textOfRuns)
{
    for (;;) {
        const XmlScanner::Token token = scanner.next();
        if (token == XmlScanner::EndTag || token == XmlScanner::End)
            return;
        if (token != XmlScanner::StartTag)
            continue;
        if (scanner.name() == "t") {
            if (scanner.readElementText())
                text += scanner.decodedText();
        } else if (textOfRuns && scanner.name() == "r") {
            appendTexts(scanner, *textOfRuns, nullptr);
        } else {
            scanner.skipElement();
        }
    }
}

/** Goes on to the next child of the element that the scanner is in; false at its end. */
bool nextChild(XmlScanner& scanner)
{
    for (;;) {
        const XmlScanner::Token token = scanner.next();
        if (token == XmlScanner::StartTag)
            return true;
        if (token == XmlScanner::EndTag || token == XmlScanner::End)
            return false;
    }
}

} // namespace

SharedStrings readSharedStrings(std::string_view document, PackedCells& cells)
{
    SharedStrings strings;
    XmlScanner scanner(document);
    while (nextChild(scanner)) {
        if (scanner.name() != "sst") {
            scanner.skipElement();
            continue;
        }
        while (nextChild(scanner)) {
            if (scanner.name() != "si") {
                scanner.skipElement();
                continue;
            }
            std::string text;
            std::string textOfRuns;
            appendTexts(scanner, text, &textOfRuns);
            strings.push_back(cells.addition(text.empty() ? textOfRuns : text));
        }
    }
    return strings;
}

ExcelXmlSheet::ExcelXmlSheet(TestDataSet* dataSet, SharedPtr<PackedCells> cells, const SharedStrings& strings)
    : m_dataSet(dataSet)
    , m_cells(std::move(cells))
    , m_strings(strings)
    , m_scanner(textOf(m_cells->base()))
{
}

QString ExcelXmlSheet::read()
{
    if (readWidth())
        readRows();
    return m_error;
}

/** Goes into the root element if that is a worksheet. */
bool ExcelXmlSheet::enterWorksheet(XmlScanner& scanner) const
{
    return nextChild(scanner) && scanner.name() == "worksheet";
}

bool ExcelXmlSheet::readWidth()
{
    XmlScanner scanner = m_scanner;
    if (!enterWorksheet(scanner))
        return true;
    while (nextChild(scanner)) {
        if (scanner.name() == "dimension") {
            if (const std::optional<std::string_view> reference = scanner.attribute("ref")) {
                const QStringList corners = toQString(*reference).split(QLatin1Char(':'));
                m_width = columnOf(corners.at(corners.size() > 1 ? 1 : 0).toStdString());
                break;
            }
        }
        scanner.skipElement();
    }
    if (m_width > MaxColumns) {
        m_error = QStringLiteral("the dimension is wider than a sheet can be");
        return false;
    }
    m_blankRow = m_cells->count();
    return appendEmpty(m_width);
}

bool ExcelXmlSheet::readRows()
{
    if (!enterWorksheet(m_scanner))
        return true;
    while (nextChild(m_scanner)) {
        if (m_scanner.name() != "sheetData") {
            m_scanner.skipElement();
            continue;
        }
        while (nextChild(m_scanner)) {
            if (m_scanner.name() != "row")
                m_scanner.skipElement();
            else if (!readRow())
                return false;
        }
    }
    return true;
}

bool ExcelXmlSheet::readRow()
{
    const unsigned row = rowNumber(m_scanner.attribute("r"));
    if (row > MaxRows) {
        m_error = QStringLiteral("row %1 is past the last that a sheet can have").arg(row);
        return false;
    }
    if (!fillGap(row))
        return false;

    const std::size_t first = m_cells->count();
    unsigned nextColumn = 1;
    while (nextChild(m_scanner)) {
        if (m_scanner.name() != "c")
            m_scanner.skipElement();
        else if (!readCell(nextColumn))
            return false;
    }
    if (nextColumn <= m_width && !appendEmpty(m_width + 1 - nextColumn))
        return false;
    addRecord(row, first, m_cells->count() - first);
    m_expectedRow = row + 1;
    return true;
}

bool ExcelXmlSheet::fillGap(unsigned upTo)
{
    for (unsigned row = m_expectedRow; row < upTo; ++row)
        addRecord(row, m_blankRow, m_width);
    if (m_records <= MaxRecords)
        return true;
    m_error = QStringLiteral("there are more rows than a sheet can have");
    return false;
}

void ExcelXmlSheet::addRecord(unsigned row, std::size_t firstCell, std::size_t count)
{
    auto record = std::make_unique<TestDataRecord>(m_dataSet, int(row) - 1, m_cells, firstCell, int(count));
    if (row == 1)
        m_dataSet->setHeader(record.release());
    else
        m_dataSet->addRecord(record.release());
    ++m_records;
}

bool ExcelXmlSheet::readCell(unsigned& nextColumn)
{
    const unsigned column = columnOf(m_scanner.attribute("r").value_or(std::string_view()));
    if (column > MaxColumns) {
        m_error = QStringLiteral("there is a cell past the last column that a sheet can have");
        return false;
    }
    if (!appendEmpty(column > nextColumn ? column - nextColumn : 0))
        return false;
    // Only the first letter counts, so that the text of a formula ("str") is taken for a shared string,
    // which is intended.
    const std::string_view type = m_scanner.attribute("t").value_or(std::string_view());
    m_cells->append(!type.empty() && type[0] == 's' ? readSharedCell() : readPlainCell());
    nextColumn = column + 1;
    return true;
}

PackedCells::Slice ExcelXmlSheet::readSharedCell()
{
    std::size_t index = 0;
    if (nextChild(m_scanner)) {
        if (m_scanner.readElementText())
            index = leadingNumber(m_scanner.decodedText());
        m_scanner.skipElement();
    }
    return index < m_strings.size() ? m_strings[index] : PackedCells::Slice();
}

PackedCells::Slice ExcelXmlSheet::readPlainCell()
{
    PackedCells::Slice value;
    int values = 0;
    while (nextChild(m_scanner)) {
        if (m_scanner.name() != "v") {
            m_scanner.skipElement();
        } else if (m_scanner.readElementText()) {
            ++values;
            value = m_scanner.needsDecoding() ? m_cells->addition(m_scanner.decodedText())
                                              : m_cells->inBase(m_scanner.text());
        } else {
            ++values;
        }
    }
    return values == 1 ? value : PackedCells::Slice();
}

bool ExcelXmlSheet::appendEmpty(std::size_t count)
{
    if (m_cells->count() + count > MaxCells) {
        m_error = QStringLiteral("there are more cells than can be held");
        return false;
    }
    m_cells->appendEmpty(count);
    return true;
}

} // namespace Torvix
