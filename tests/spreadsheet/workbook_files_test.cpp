// Workbooks that other programs wrote; see tests/shared/testdata/fixtures/generate.

#include "spreadsheet/workbookprinter.h"

#include <gtest/gtest.h>

namespace {

using Swinder::Sheet;
using Swinder::Workbook;

std::string fixture(const std::string& name)
{
    return std::string(TORVIX_TEST_SOURCE_DIR "/../shared/testdata/fixtures/") + name;
}

/** One source workbook, saved by several programs in several versions: all read alike. */
class OfficeWorkbook : public testing::TestWithParam<const char*>
{
};

TEST_P(OfficeWorkbook, ReadsEveryKindOfCellAndCachedResult)
{
    Workbook book(nullptr);
    ASSERT_TRUE(book.load(fixture(GetParam()).c_str()));
    ASSERT_EQ(book.sheetCount(), 5u);
    Sheet* first = book.sheet(0);
    EXPECT_EQ(utf8(first->name()), "Sheet ü");
    EXPECT_EQ(shown(first, 2, 0), "text:Überschrift");
    EXPECT_EQ(shown(first, 3, 0), "-");
    EXPECT_EQ(shown(first, 4, 0), "text:behind a gap");

    std::string longText;
    for (int i = 0; i < 120; ++i)
        longText += "xy";
    const std::pair<const char*, std::string> rows[] = {
        {"number", "int:42"},
        {"float", "float:3.25"},
        {"true", "bool:true"},
        {"false", "bool:false"},
        {"date", "float:45351.5"},
        {"sum", "int:3"},
        {"third", "float:0.333333333333333"},
        {"text", "text:abcdé"},
        {"long text", "text:" + longText},
        {"yes", "bool:true"},
        {"no", "bool:false"},
        {"error", "error:7"},
        {"missing", "error:42"},
        {"nothing", "text:"},
        {"percent", "float:0.07"},
        {"hundredths", "float:1234567.89"},
    };
    unsigned row = 1;
    for (const auto& [kind, value] : rows) {
        EXPECT_EQ(shown(first, 0, row), std::string("text:") + kind);
        EXPECT_EQ(shown(first, 1, row), value) << kind;
        ++row;
    }
    EXPECT_EQ(shown(first, 0, 18), "text:merged");

    // A chart stands in the second sheet, and a sheet is hidden.
    EXPECT_EQ(shown(book.sheet(1), 2, 38), "text:row 39");
    EXPECT_EQ(shown(book.sheet(2), 0, 0), "text:secret");
    EXPECT_EQ(shown(book.sheet(4), 0, 0), "text:after the chart");
    EXPECT_EQ(book.sheet(5), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Files, OfficeWorkbook,
                         testing::Values("libreoffice-biff8.xls", "gnumeric-biff7.xls", "gnumeric-biff8.xls",
                                         "gnumeric-both.xls"),
                         [](const auto& parameter) {
                             std::string name = parameter.param;
                             for (char& c : name)
                                 c = isalnum(static_cast<unsigned char>(c)) ? c : '_';
                             return name;
                         });

TEST(Workbook, ReadsTheEncodingsOfNumbersAndRichText)
{
    Workbook book(nullptr);
    ASSERT_TRUE(book.load(fixture("xlwt-cells.xls").c_str()));
    Sheet* sheet = book.sheet(0);
    EXPECT_EQ(utf8(sheet->name()), "Données");
    const char* const expected[][7] = {
        {"text:plain", "int:7", "float:0.5", "bool:true", "float:45351.5", "float:123456789012",
         "rich:aboldé"},
        {"text:日本語 𝄞", "int:-536870912", "float:-1234.56789", "bool:false", "int:45351", "float:1e-07",
         "rich:aboldé"},
        {"-", "int:536870911", "float:12.34", "-", "-", "int:2147483647", "rich:aboldé"},
        {"error:7", "int:1", "-", "-", "-", "-", "-"},
    };
    for (unsigned row = 0; row < 4; ++row) {
        for (unsigned column = 0; column < 7; ++column)
            EXPECT_EQ(shown(sheet, column, row + 1), expected[row][column]) << column << ", " << row + 1;
    }
    EXPECT_EQ(shown(sheet, 0, 0xFFFF), "-");
    EXPECT_EQ(sheet->cell(256, 0, true), nullptr);
}

TEST(Workbook, ReadsSharedStringsThatRunOverManyRecords)
{
    Workbook book(nullptr);
    ASSERT_TRUE(book.load(fixture("xlwt-long.xls").c_str()));
    Sheet* sheet = book.sheet(0);
    for (unsigned row = 1; row < 700; ++row) {
        const std::string number = std::to_string(row);
        std::string text;
        for (unsigned i = 0; i < row % 13 + 1; ++i)
            text += row % 2 ? "wörd " + number + " " : "слово " + number + " € ";
        ASSERT_EQ(shown(sheet, 0, row), "text:" + text);
    }
    EXPECT_EQ(shown(sheet, 0, 700), "text:" + std::string(32767, 'x'));
    const Swinder::UString wide = sheet->cell(0, 701, false)->value().asString();
    EXPECT_EQ(std::u16string(wide.data()), std::u16string(32767, u'ж'));
}

TEST(Workbook, ReadsThousandsOfRows)
{
    Workbook book(nullptr);
    ASSERT_TRUE(book.load(fixture("xlwt-rows.xls").c_str()));
    for (unsigned row = 1; row <= 3000; ++row) {
        ASSERT_EQ(shown(book.sheet(0), 0, row), "int:" + std::to_string(row));
        ASSERT_EQ(shown(book.sheet(0), 1, row), "text:name " + std::to_string(row % 50));
        ASSERT_EQ(book.sheet(0)->cell(2, row, false)->value().asFloat(), row * 0.25);
        ASSERT_EQ(shown(book.sheet(0), 3, row), row % 2 ? "bool:false" : "bool:true");
    }
    EXPECT_EQ(shown(book.sheet(0), 0, 3001), "-");
}

TEST(Workbook, TellsAPasswordFromDamage)
{
    Workbook book(nullptr);
    EXPECT_TRUE(book.load(fixture("password-biff8.xls").c_str()));
    EXPECT_TRUE(book.isPasswordProtected());
    EXPECT_EQ(book.sheetCount(), 0u);

    // Another load replaces all of it.
    EXPECT_TRUE(book.load(fixture("xlwt-cells.xls").c_str()));
    EXPECT_FALSE(book.isPasswordProtected());
    EXPECT_EQ(book.sheetCount(), 6u);

    for (const char* name : {"xlsxwriter-cells.xlsx", "generate", "no such file", "."}) {
        EXPECT_FALSE(book.load(fixture(name).c_str())) << name;
        EXPECT_FALSE(book.isPasswordProtected()) << name;
        EXPECT_EQ(book.sheetCount(), 0u) << name;
    }
}

} // namespace
