#include "shared/testdata/excelxmltestdataset.h"

#include "shared/testdata/excelxmlsheet.h"
#include "shared/testdata/ziparchive.h"

#include <cstdio>
#include <tinyxml.h>

namespace Torvix {

namespace {

constexpr int MaxWorkbookSize = 16 << 20; // the list of sheets, without any cells
constexpr int MaxWorkbookDepth = 100;     // the parser of the tree goes as deep in its stack

void tell(std::FILE* stream, const char* prefix, const QString& text)
{
    std::fprintf(stream, "torvixrunner: %s%s\n", prefix, qPrintable(text));
    std::fflush(stream);
}

void tellCorrupt(const QString& what)
{
    tell(stderr, ".xlsx file is corrupt: ", what);
}

std::string_view textOf(const QByteArray& document)
{
    return std::string_view(document.constData()); // up to its 0
}

bool isFitForTree(const QByteArray& document)
{
    if (document.size() > MaxWorkbookSize)
        return false;
    XmlScanner scanner(textOf(document));
    int depth = 0;
    for (XmlScanner::Token token = scanner.next(); token != XmlScanner::End; token = scanner.next()) {
        depth += token == XmlScanner::StartTag ? 1 : token == XmlScanner::EndTag ? -1 : 0;
        if (depth > MaxWorkbookDepth)
            return false;
    }
    return true;
}

/** The id of the sheet of that name, from the list of sheets; tells why there is none. */
std::optional<QString> findSheetId(const QByteArray& workbook, const QString& sheetName)
{
    if (!isFitForTree(workbook)) {
        tellCorrupt(QStringLiteral("No <workbook>"));
        return std::nullopt;
    }
    TiXmlDocument document;
    document.Parse(workbook.constData(), nullptr, TIXML_ENCODING_UTF8);
    const TiXmlElement* root = document.FirstChildElement("workbook");
    const TiXmlElement* sheets = root ? root->FirstChildElement("sheets") : nullptr;
    const TiXmlElement* sheet = sheets ? sheets->FirstChildElement("sheet") : nullptr;
    if (!sheet) {
        tellCorrupt(!root     ? QStringLiteral("No <workbook>")
                    : !sheets ? QStringLiteral("No <sheets>")
                              : QStringLiteral("No <sheet>"));
        return std::nullopt;
    }
    for (; sheet; sheet = sheet->NextSiblingElement("sheet")) {
        if (QString::fromUtf8(sheet->Attribute("name")) == sheetName)
            return QString::fromUtf8(sheet->Attribute("sheetId"));
    }
    tell(stderr, "sheet not found: ", sheetName);
    return std::nullopt;
}

} // namespace

ExcelXmlTestDataSet::ExcelXmlTestDataSet(const QString& fileName, const QString& sheetName)
    : TestDataSet(fileName, ',', true)
{
    read(sheetName);
}

void ExcelXmlTestDataSet::read(const QString& sheetName)
{
    const ZipHandle archive = openZipArchive(dataName());
    void* zip = archive.get();

    const auto [stringsDocument, stringsError] = extractFromZipArchive(zip, "xl/sharedStrings.xml");
    // A workbook without any strings has no member for them.
    if (!stringsError.isEmpty() && stringsError != QLatin1String(NotInArchive)) {
        tell(stderr, "testData Shared Strings: ", stringsError);
        return;
    }

    QString sheetId = QStringLiteral("1");
    if (!sheetName.isEmpty()) {
        const auto [workbook, error] = extractFromZipArchive(zip, "xl/workbook.xml");
        if (!error.isEmpty()) {
            tellCorrupt(error);
            return;
        }
        const std::optional<QString> found = findSheetId(workbook, sheetName);
        if (!found)
            return;
        sheetId = *found;
    }

    // The id is the member's number: what the workbook's relations say of it is not asked, as intended.
    const QByteArray member = "xl/worksheets/sheet" + sheetId.toLatin1() + ".xml";
    const auto [sheetDocument, error] = extractFromZipArchive(zip, member.constData());
    if (!error.isEmpty()) {
        tell(stdout, "testData Sheet: ", error); // on standard output, unlike all others: intended
        return;
    }

    const SharedPtr<PackedCells> cells(new PackedCells(sheetDocument));
    const SharedStrings strings = readSharedStrings(textOf(stringsDocument), *cells);
    const QString fault = ExcelXmlSheet(this, cells, strings).read();
    if (!fault.isEmpty())
        tellCorrupt(fault);
}

} // namespace Torvix
