#include "shared/testdata/exceltestdataset.h"

#include "tables.h"

namespace {

using namespace Torvix;

std::string sheet(const char* file, const char* name)
{
    return shown(Table(TestDataSet::createTestDataSetExcel(fixture(file), QString::fromUtf8(name))));
}

TEST(ExcelTestDataSet, ReadsTheFirstSheetFromItsCorner)
{
    const Table table(TestDataSet::createTestDataSet(fixture("xlwt-cells.xls")));
    // The row that is empty in these columns ends the table, whatever comes behind it.
    EXPECT_EQ(shown(table), "text|whole|float|flag|date|big|rich\n"
                            "plain|7|0.5|true|45351.5|1.23457e+11|aboldé\n"
                            "日本語 𝄞|-536870912|-1234.57|false|45351|1e-07|aboldé\n"
                            "|536870911|12.34|||2147483647|aboldé\n"
                            "?|1|||||\n");
    EXPECT_TRUE(table->isReadOnly());
    EXPECT_EQ(table->getSep(), '$');
    EXPECT_FALSE(table->save("/dev/null"));
    EXPECT_EQ(table->header()->index(), -1);
    EXPECT_EQ(table->record(1)->index(), -1);
    EXPECT_EQ(table->record(0)->valueAsString("big"), "1.23457e+11");
}

TEST(ExcelTestDataSet, TheFirstTextOnTheDiagonalsIsTheCorner)
{
    EXPECT_EQ(sheet("xlwt-cells.xls", "Corner"), "name|value\na|1\n|2.5\n");
    EXPECT_EQ(sheet("xlwt-cells.xls", "Number first"), "head\ncell\n");
    EXPECT_EQ(sheet("gnumeric-biff7.xls", "Last"), "after the chart\n");
}

TEST(ExcelTestDataSet, WorkbooksOfEveryProgramGiveTheSameTable)
{
    const std::string expected = "kind|value|Überschrift\n"
                                 "number|42|a\nfloat|3.25|Grüße\ntrue|true|b\nfalse|false|c\n"
                                 "date|45351.5|d\nsum|3|e\nthird|0.333333|f\ntext|abcdé|g\n"
                                 "long text|" +
                                 QStringLiteral("xy").repeated(120).toStdString() +
                                 "|h\nyes|true|i\nno|false|j\nerror|?|k\nmissing|?|l\nnothing||m\n"
                                 "percent|0.07|n\nhundredths|1.23457e+06|o\n";
    for (const char* file : {"libreoffice-biff8.xls", "gnumeric-biff7.xls", "gnumeric-biff8.xls"}) {
        EXPECT_EQ(sheet(file, ""), expected) << file;
        EXPECT_EQ(sheet(file, "Sheet ü"), expected) << file;
        EXPECT_EQ(sheet(file, "Hidden"), "secret\n") << file;
    }
}

TEST(ExcelTestDataSet, TellsWhatIsWrong)
{
    const Files files;
    const QByteArray noFile = files.write("bad.xls", "not a workbook").toUtf8();
    const struct
    {
        QString file;
        const char* sheet;
        std::string warning;
        std::string err;
    } cases[] = {
        {files.path("no.xls"), "", "Couldn't load " + files.path("no.xls").toStdString(), ""},
        {noFile, "", "Couldn't load " + noFile.toStdString(), ""},
        {fixture("password-biff8.xls"), "", "passwd protected", ""},
        {fixture("xlwt-cells.xls"), "corner", "", "torvixrunner: sheet not found: corner\n"},
        {fixture("xlwt-cells.xls"), "Empty", "no table found", ""},
        {fixture("xlwt-cells.xls"), "Too far", "no table found", ""},
        {fixture("xlwt-cells.xls"), "Only the last probe", "no head line found", ""},
    };
    for (const auto& [file, sheetName, warning, err] : cases) {
        Captured captured;
        const Table table(TestDataSet::createTestDataSetExcel(file, sheetName));
        EXPECT_EQ(captured.warnings(), warning);
        EXPECT_EQ(captured.err(), err);
        EXPECT_EQ(captured.out(), "");
        EXPECT_EQ(shown(table), "(none)\n");
        EXPECT_EQ(table->dataName(), file);
    }
}

TEST(ExcelTestDataSet, ReadsThousandsOfRows)
{
    const Table table(TestDataSet::createTestDataSet(fixture("xlwt-rows.xls")));
    ASSERT_EQ(table->count(), 3000);
    EXPECT_EQ(shown(table->record(2998)), "2999|name 49|749.75|false");
}

} // namespace
