#include "shared/testdata/excelxmltestdataset.h"

#include "shared/testdata/ziparchive.h"
#include "tables.h"
#include "xlsxbuilder.h"

#include <tinyxml.h>

namespace {

using namespace Torvix;

std::string sheet(const QString& file, const char* name = "")
{
    return shown(Table(TestDataSet::createTestDataSetExcel(file, QString::fromUtf8(name))));
}

/** The table of a workbook of one sheet, given what stands in its worksheet element. */
std::string tableOf(const QByteArray& worksheet, const QByteArray& strings = QByteArray())
{
    const Files files;
    std::vector<std::pair<QByteArray, QByteArray>> members{
        {"xl/worksheets/sheet1.xml", "<?xml version='1.0'?><worksheet>" + worksheet + "</worksheet>"}};
    if (!strings.isNull())
        members.emplace_back("xl/sharedStrings.xml", strings);
    writeArchive(files.path("t.xlsx"), members);
    return sheet(files.path("t.xlsx"));
}

TEST(ExcelXmlTestDataSet, ReadsWhatXlsxWriterWrites)
{
    const Table table(TestDataSet::createTestDataSet(fixture("xlsxwriter-cells.xlsx")));
    // A text formula's "str" is taken for a shared string, here the first.
    EXPECT_EQ(shown(table), "text|number|flag|date|rich|formula\n"
                            "<a> & \"b\" 'c'|1.5|1|45351.5|plain bold ünd|2\n"
                            "|||||\n"
                            "  blanks kept  |-7|0|||text\n"
                            "||日本語 𝄞|||\n"
                            "merged|||||\n"
                            "two\nlines|||||\n");
    EXPECT_TRUE(table->isReadOnly());
    EXPECT_EQ(table->getSep(), ',');
    EXPECT_FALSE(table->save("/dev/null"));
    EXPECT_EQ(table->header()->index(), 0);
    EXPECT_EQ(table->record(1)->index(), 2);
    EXPECT_EQ(table->record(3)->valueAsString("flag"), QString::fromUtf8("日本語 𝄞"));

    EXPECT_EQ(sheet(fixture("xlsxwriter-cells.xlsx"), "Drittes & <letztes>"), "third\n3\n");
    EXPECT_EQ(sheet(fixture("xlsxwriter-cells.xlsx"), "Leer"), "(none)\n");
    EXPECT_EQ(sheet(fixture("libreoffice.xlsx"), "Hidden"), "secret\n");
}

TEST(ExcelXmlTestDataSet, TextsThatAreNotSharedAreEmpty)
{
    EXPECT_EQ(sheet(fixture("xlsxwriter-inline.xlsx")), "1||3\n4||1\n");
    EXPECT_EQ(sheet(fixture("gnumeric.xlsx"), "Hidden"), "\n");
}

TEST(ExcelXmlTestDataSet, CellsAndGaps)
{
    const QByteArray strings =
        "<sst><si><t>zero</t></si><si/><si><r><t>r</t></r><r><rPr/><t> un</t></r></si>"
        "<si><t>a</t><rPh><t>no</t></rPh><t>&lt;b&#x20AC;&#65;&bad;&amp;</t></si></sst>";
    const std::tuple<const char*, QByteArray, const char*> cases[] = {
        {"as wide as the dimension says",
         "<dimension ref='B2:C9'/><sheetData><row r='1'><c r='A1'><v>1</v></c></row></sheetData>", "1||\n"},
        {"a dimension of one cell, behind the data",
         "<sheetData><row r='1'><c r='A1'><v>1</v></c></row></sheetData><dimension ref='B1'/>", "1|\n"},
        {"cells past the width stay",
         "<dimension ref='A1'/><sheetData><row r='1'><c r='C1'><v>3</v></c></row></sheetData>", "||3\n"},
        {"missing rows, the first one too",
         "<dimension ref='A1:B4'/><sheetData><row r='2'><c r='B2'><v>1</v></c></row><row r='4'/></sheetData>",
         "|\n|1\n|\n|\n"},
        {"columns of two letters", "<sheetData><row r='1'><c r='AA1'><v>1</v></c></row></sheetData>",
         "||||||||||||||||||||||||||1\n"},
        {"lower case is no column",
         "<dimension ref='a1:c1'/><sheetData><row r='1'><c r='c1'><v>1</v></c></row></sheetData>", "1\n"},
        {"rows without a number are records",
         "<sheetData><row><c><v>1</v></c></row><row><c/></row></sheetData>", "(none)\n1\n\n"},
        {"shared strings",
         "<sheetData><row r='1'><c t='s'><v>0</v></c><c t='s'><v>1</v></c><c t='s'><v>2</v></c>"
         "<c t='s'><v> 3 </v></c><c t='s'><v>4</v></c><c t='s'><v>x</v></c><c t='s'/></row></sheetData>",
         "zero||r un|a<b€A&bad;&||zero|zero\n"},
        {"a text formula goes by its formula",
         "<sheetData><row r='1'><c t='str'><f>2+A1</f><v>text</v></c></row></sheetData>", "r un\n"},
        {"values",
         "<sheetData><row "
         "r='1'><c><v>1&amp;2</v></c><c><v><![CDATA[<3]]></v></c><c><v>1</v><v>2</v></c><c><v/></c>"
         "<c t='b'><f>x</f><v>1</v></c><c><is><t>in</t></is></c><c><x><v>9</v></x></c><c><v> 5 </v></c></row>"
         "</sheetData>",
         "1&2|<3|||1||| 5 \n"},
        {"other elements and comments",
         "<!-- <row r='1'/> --><cols><row r='7'/></cols><sheetData><x><row r='1'/></x>"
         "<row a='>' r='1'><y><c/></y><c r='A1'><v>1</v></c></row></sheetData>",
         "1\n"},
        {"a row that comes again",
         "<sheetData><row r='1'><c><v>a</v></c></row><row r='1'><c><v>b</v></c></row></sheetData>", "b\n"},
    };
    for (const auto& [what, worksheet, expected] : cases)
        EXPECT_EQ(tableOf(worksheet, strings), expected) << what;
    EXPECT_EQ(tableOf("<sheetData><row r='1'><c t='s'><v>0</v></c></row></sheetData>"), "\n")
        << "no shared strings at all";
}

TEST(ExcelXmlTestDataSet, TellsWhatIsWrongOnItsStream)
{
    const Files files;
    const QByteArray sheetXml = "<worksheet/>";
    const auto archive = [&](const char* name, std::vector<std::pair<QByteArray, QByteArray>> members) {
        writeArchive(files.path(name), members);
        return files.path(name);
    };
    const QString noSheet = archive("nosheet.xlsx", {{"xl/sharedStrings.xml", "<sst/>"}});
    const QString noBook = archive("nobook.xlsx", {{"xl/worksheets/sheet1.xml", sheetXml}});
    const auto book = [&](const char* name, const QByteArray& workbook) {
        return archive(name, {{"xl/workbook.xml", workbook}, {"xl/worksheets/sheet1.xml", sheetXml}});
    };
    const std::string corrupt = "torvixrunner: .xlsx file is corrupt: ";
    const struct
    {
        QString file;
        const char* sheet;
        std::string err;
        std::string out;
    } cases[] = {
        {files.path("no.xlsx"), "",
         "torvixrunner: testData Shared Strings: parameter error when extracting 'xl/sharedStrings.xml' from "
         "archive! \n",
         ""},
        {noSheet, "", "", "torvixrunner: testData Sheet: file is not contained in the archive!\n\n"},
        {noBook, "", "", ""},
        {noBook, "x", corrupt + "file is not contained in the archive!\n\n", ""},
        {book("a.xlsx", "<a/>"), "x", corrupt + "No <workbook>\n", ""},
        {book("b.xlsx", "<workbook/>"), "x", corrupt + "No <sheets>\n", ""},
        {book("c.xlsx", "<workbook><sheets/></workbook>"), "x", corrupt + "No <sheet>\n", ""},
        {book("d.xlsx", "<workbook><sheets><sheet name='y' sheetId='1'/></sheets></workbook>"), "x",
         "torvixrunner: sheet not found: x\n", ""},
        {book("e.xlsx", "<workbook><sheets><sheet name='x' sheetId='7'/></sheets></workbook>"), "x", "",
         "torvixrunner: testData Sheet: file is not contained in the archive!\n\n"},
        {book("f.xlsx", "<workbook><sheets><sheet name='x' sheetId='1'/></sheets></workbook>"), "x", "", ""},
        {book("g.xlsx", QByteArray("<a>").repeated(100000)), "x", corrupt + "No <workbook>\n", ""},
    };
    for (const auto& [file, sheetName, err, out] : cases) {
        Captured captured;
        EXPECT_EQ(sheet(file, sheetName), "(none)\n");
        EXPECT_EQ(captured.err(), err) << file.toStdString();
        EXPECT_EQ(captured.out(), out) << file.toStdString();
        EXPECT_EQ(captured.warnings(), "") << file.toStdString();
    }
}

TEST(ExcelXmlTestDataSet, LeavesTheSwitchForBlanksAsItWas)
{
    for (const bool condense : {true, false}) {
        TiXmlBase::SetCondenseWhiteSpace(condense);
        EXPECT_EQ(sheet(fixture("xlsxwriter-cells.xlsx"), "Drittes & <letztes>"), "third\n3\n");
        EXPECT_EQ(TiXmlBase::IsWhiteSpaceCondensed(), condense);
    }
    TiXmlBase::SetCondenseWhiteSpace(true);
}

TEST(ExcelXmlTestDataSet, BoundsWhatAHostileFileAllocates)
{
    const std::pair<const char*, QByteArray> cases[] = {
        {"row 4294967295", "<sheetData><row r='4294967295'/></sheetData>"},
        {"past the last column", "<sheetData><row r='1'><c r='ZZZZZZZZ1'/></row></sheetData>"},
        {"wider than", "<dimension ref='A1:ZZZZ1'/><sheetData/>"},
        {"more rows",
         "<sheetData>" + QByteArray("<row r='1048576'/><row r='1'/>").repeated(9) + "</sheetData>"},
        {"more cells",
         "<dimension ref='XFD1'/><sheetData>" + QByteArray("<row/>").repeated(9000) + "</sheetData>"},
    };
    for (const auto& [what, worksheet] : cases) {
        const Files files;
        writeArchive(files.path("t.xlsx"),
                     {{"xl/worksheets/sheet1.xml", "<worksheet>" + worksheet + "</worksheet>"}});
        Captured captured;
        const Table table(TestDataSet::createTestDataSet(files.path("t.xlsx")));
        EXPECT_NE(captured.err().find("torvixrunner: .xlsx file is corrupt: "), std::string::npos) << what;
        EXPECT_NE(captured.err().find(what), std::string::npos) << captured.err();
    }
}

TEST(ExcelXmlTestDataSet, RefusesAMemberThatUnpacksToFarMoreThanItsSize)
{
    const Files files;
    writeArchive(files.path("bomb.xlsx"),
                 {{"xl/worksheets/sheet1.xml", "<worksheet>" + QByteArray(100 << 20, ' ')}});
    const ZipHandle archive = openZipArchive(files.path("bomb.xlsx"));
    void* zip = archive.get();
    const auto [bytes, error] = extractFromZipArchive(zip, "xl/worksheets/sheet1.xml");
    EXPECT_TRUE(bytes.isEmpty());
    EXPECT_EQ(error, "size of 'xl/worksheets/sheet1.xml' is not plausible.");
    EXPECT_EQ(extractFromZipArchive(zip, "XL/worksheets/sheet1.xml").second, NotInArchive);
}

TEST(ExcelXmlTestDataSet, SurvivesCutsAndChangedBytes)
{
    const Files files;
    QFile fixtureFile(fixture("xlsxwriter-cells.xlsx"));
    ASSERT_TRUE(fixtureFile.open(QIODevice::ReadOnly));
    const QByteArray good = fixtureFile.readAll();
    Captured captured;
    for (int size = 0; size < good.size(); size += 97)
        sheet(files.write("cut.xlsx", good.left(size)));
    quint32 random = 4711;
    for (int i = 0; i < 300; ++i) {
        QByteArray changed = good;
        for (int k = 0; k < 3; ++k) {
            random = random * 1664525 + 1013904223;
            changed[int(random % quint32(changed.size()))] = char(random >> 24);
        }
        sheet(files.write("changed.xlsx", changed), "Leer");
    }
    // XML that breaks off keeps what came before.
    const QByteArray whole = "<dimension ref='A1:B2'/><sheetData><row r='1'><c r='A1'><v>1</v></c>";
    EXPECT_EQ(tableOf(whole + "<c r='B1'><v>2"), "1|2\n");
    for (int size = 0; size < whole.size(); ++size)
        tableOf(whole.left(size) + "\0");
}

} // namespace
