// What the programs at hand do not write, as records made here.

#include "spreadsheet/biffbuilder.h"
#include "spreadsheet/workbookprinter.h"

#include <gtest/gtest.h>

namespace {

using namespace Biff;
using Swinder::Workbook;

struct Loaded
{
    explicit Loaded(const Bytes& stream, const char* streamName = "Workbook") : book(nullptr)
    {
        writeContainer(file.name(), streamName, stream);
        ok = book.load(file.name());
    }

    std::string cell(unsigned column, unsigned row) { return shown(book.sheet(0), column, row); }

    TemporaryFile file;
    Workbook book;
    bool ok;
};

Bytes rk(std::uint32_t value)
{
    return u16(0) + u32(value);
}

TEST(WorkbookRecords, PackedNumbers)
{
    const Bytes cells = record(0x027E, u16(0) + u16(0) + rk(42u << 2 | 2)) +        // integer
                        record(0x027E, u16(0) + u16(1) + rk(1234u << 2 | 3)) +      // hundredths
                        record(0x027E, u16(0) + u16(2) + rk(0x3FF80000)) +          // top of 1.5
                        record(0x027E, u16(0) + u16(3) + rk(0x40C81C80 | 1)) +      // hundredths of 12345
                        record(0x027E, u16(0) + u16(4) + rk(0xFFFFFFFF << 2 | 2)) + // -1
                        record(0x027E, u16(0) + u16(5) + rk(300u << 2 | 3)) +       // 3 in hundredths
                        record(0x00BD, u16(1) + u16(2) + rk(5u << 2 | 2) + rk(0x40000000) + u16(3)) +
                        record(0x0203, at(2, 0) + f64(-7)) + record(0x0203, at(2, 1) + f64(2147483648.0)) +
                        record(0x0203, at(2, 2) + f64(-0.25));
    Loaded loaded(oneSheet(Biff8, "", cells));
    ASSERT_TRUE(loaded.ok);
    const char* const first[] = {"int:42", "float:12.34", "float:1.5", "float:123.45", "int:-1", "int:3"};
    for (unsigned column = 0; column < 6; ++column)
        EXPECT_EQ(loaded.cell(column, 0), first[column]);
    EXPECT_EQ(loaded.cell(2, 1), "int:5");
    EXPECT_EQ(loaded.cell(3, 1), "int:2");
    EXPECT_EQ(loaded.cell(2, 0), "float:1.5");
    EXPECT_EQ(loaded.cell(0, 2), "int:-7");
    EXPECT_EQ(loaded.cell(1, 2), "float:2147483648");
    EXPECT_EQ(loaded.cell(2, 2), "float:-0.25");
}

TEST(WorkbookRecords, SharedStringsInAllForms)
{
    const Bytes run = u16(1) + u16(2);
    // Cut within characters, where the rest changes between one and two bytes, and within the runs and
    // the phonetic bytes, where nothing stands between.
    const Bytes strings = record(0x00FC, u32(9) + u32(6) + u16(3) + u8(0) + "abc" +                  //
                                             u16(2) + u8(0x01 | 0x08) + u16(1) + wide(u"дж") + run + //
                                             u16(2) + u8(0x04) + u32(5) + "ph" + "12345" +           //
                                             u16(6) + u8(0x08 | 0x04) + u16(2) + u32(3) + "ab") +    //
                          record(0x003C, u8(1) + wide(u"ж€")) +                                      //
                          record(0x003C, u8(0) + "yz" + run + u16(7)) +                              //
                          record(0x003C, u16(8) + "x") +                                             //
                          record(0x003C, "yz" + u16(0) + u8(0) + u16(1)) +                           //
                          record(0x003C, u8(0) + "\xE9");
    Bytes cells;
    for (unsigned i = 0; i < 6; ++i)
        cells += record(0x00FD, at(i, 0) + u32(i));
    Loaded loaded(oneSheet(Biff8, strings, cells));
    ASSERT_TRUE(loaded.ok);
    const char* const expected[] = {"text:abc", "rich:дж", "text:ph", "rich:abж€yz", "text:", "text:é"};
    for (unsigned i = 0; i < 6; ++i)
        EXPECT_EQ(loaded.cell(0, i), expected[i]) << i;
}

TEST(WorkbookRecords, TextInTheCellItself)
{
    const Bytes cells8 = record(0x0204, at(0, 0) + u16(2) + u8(1) + wide(u"дж")) +
                         record(0x0204, at(0, 1) + u16(4) + u8(0) + "ab") +
                         record(0x003C, u8(1) + wide(u"жж")) +
                         record(0x00D6, at(0, 2) + u16(2) + u8(0) + "rs" + u16(1) + u16(0) + u16(1));
    Loaded biff8(oneSheet(Biff8, "", cells8));
    ASSERT_TRUE(biff8.ok);
    EXPECT_EQ(biff8.cell(0, 0), "text:дж");
    EXPECT_EQ(biff8.cell(1, 0), "text:abжж");
    EXPECT_EQ(biff8.cell(2, 0), "rich:rs");

    const Bytes cells5 = record(0x0204, at(0, 0) + u16(3) + "a\xE9\x80") +
                         record(0x00D6, at(0, 1) + u16(2) + "rs" + u8(1) + u8(0) + u8(1));
    Loaded biff5(oneSheet(Biff5, "", cells5), "Book");
    ASSERT_TRUE(biff5.ok);
    EXPECT_EQ(biff5.cell(0, 0), "text:aé€"); // Windows-1252 where nothing else is said
    EXPECT_EQ(biff5.cell(1, 0), "rich:rs");
}

TEST(WorkbookRecords, CodePages)
{
    const struct
    {
        unsigned number;
        Bytes bytes;
        const char* text;
    } pages[] = {{1251, "\xC4\xE0", "Да"}, {932, "\x93\xFA\x96\x7B", "日本"},
                 {437, "\x81", "ü"},       {10000, "\x9F\xDB", "ü€"},
                 {32768, "\x8E", "é"},     {32769, "\xE9", "é"},
                 {10007, "\x80", "А"},     {949, "\xB0\xA1", "가"},
                 {61234, "\xE9", "é"},     {1252, "a\x81z", "a\uFFFDz"},
                 {932, "a\x93", "a\uFFFD"}};
    for (const auto& page : pages) {
        const auto length = static_cast<unsigned>(page.bytes.size());
        // The code page may follow what is written in it.
        const Bytes codePage = record(0x0042, u16(page.number));
        const SheetSource sheet{u8(length) + page.bytes, record(0x0204, at(0, 0) + u16(length) + page.bytes)};
        Loaded loaded(workbookStream(Biff5, codePage, {sheet}), "Book");
        ASSERT_TRUE(loaded.ok) << page.number;
        EXPECT_EQ(loaded.cell(0, 0), std::string("text:") + page.text) << page.number;
        EXPECT_EQ(utf8(loaded.book.sheet(0)->name()), page.text) << page.number;
    }
}

TEST(WorkbookRecords, FormulaResults)
{
    const auto formula = [](unsigned column, const Bytes& result) {
        return record(0x0006, at(0, column) + result + u16(0) + u32(0) + u16(0));
    };
    const auto special = [](unsigned kind, unsigned value) {
        return u8(kind) + u8(0) + u8(value) + u8(0) + u16(0) + u16(0xFFFF);
    };
    const Bytes text8 = u16(3) + u8(0) + "a";
    const Bytes cells = formula(0, f64(2.5)) + formula(1, special(0, 0)) + record(0x04BC, "shared") +
                        record(0x0207, text8) + record(0x003C, u8(1) + wide(u"жы")) +
                        formula(2, special(1, 1)) + formula(3, special(2, 0x17)) + formula(4, special(3, 0)) +
                        formula(5, special(0, 0)) + formula(6, f64(1)) +
                        record(0x0207, u16(5) + u8(0) + "stray");
    Loaded loaded(oneSheet(Biff8, "", cells));
    ASSERT_TRUE(loaded.ok);
    const char* const expected[] = {"float:2.5", "text:aжы", "bool:true", "error:23",
                                    "text:",     "text:",    "int:1"};
    for (unsigned column = 0; column < 7; ++column)
        EXPECT_EQ(loaded.cell(column, 0), expected[column]);

    Loaded old(oneSheet(Biff5, "", formula(0, special(0, 0)) + record(0x0207, u16(2) + "\xE9z")), "Book");
    ASSERT_TRUE(old.ok);
    EXPECT_EQ(old.cell(0, 0), "text:éz");
}

TEST(WorkbookRecords, OnlyWorksheetsCount)
{
    const Bytes cell = record(0x0203, at(0, 0) + f64(1));
    const Bytes chart =
        record(0x0809, u16(Biff8) + u16(0x20)) + record(0x0203, at(0, 0) + f64(99)) + record(0x000A, "");
    const Bytes dialog = record(0x0081, u16(0x0010)) + cell;
    Loaded loaded(workbookStream(Biff8, "",
                                 {{name8("Macro"), cell, 1, 0x0040},
                                  {name8("Chart"), cell, 2, 0x0020},
                                  {name8("Module"), cell, 6, 0x0006},
                                  {name8("Dialog"), dialog, 0, 0x0010},
                                  {name8("Chart as sheet"), cell, 0, 0x0020},
                                  {name8("Sheet"), record(0x0081, u16(0x04C1)) + cell + chart, 0, 0x0010}}));
    ASSERT_TRUE(loaded.ok);
    ASSERT_EQ(loaded.book.sheetCount(), 1u);
    EXPECT_EQ(utf8(loaded.book.sheet(0)->name()), "Sheet");
    EXPECT_EQ(loaded.cell(0, 0), "int:1"); // not that of the chart inside

    Loaded none(workbookStream(Biff8, "", {{name8("Chart"), "", 2, 0x0020}}));
    EXPECT_TRUE(none.ok);
    EXPECT_EQ(none.book.sheetCount(), 0u);
}

TEST(WorkbookRecords, Encryption)
{
    Loaded biff(oneSheet(Biff8, record(0x002F, u16(1)), "garbage that is no record"));
    EXPECT_TRUE(biff.ok && biff.book.isPasswordProtected());
    Loaded package("encrypted", "EncryptedPackage");
    EXPECT_TRUE(package.ok && package.book.isPasswordProtected());
    Loaded cellsOnly(oneSheet(Biff8, record(0x0012, u16(1)) + record(0x0013, u16(0xCAFE)), ""));
    EXPECT_TRUE(cellsOnly.ok && !cellsOnly.book.isPasswordProtected());
}

TEST(Sheet, MakesCellsOnRequestAndKeepsThemWhereTheyAre)
{
    Swinder::Sheet sheet{Swinder::UString(u"s")};
    EXPECT_EQ(sheet.cell(3, 2, false), nullptr);
    Swinder::Cell* cell = sheet.cell(3, 2, true);
    ASSERT_NE(cell, nullptr);
    EXPECT_TRUE(cell->value().isEmpty());
    cell->setValue(Swinder::Value::number(5));
    for (unsigned column : {1u, 255u, 2u, 0u})
        EXPECT_NE(sheet.cell(column, 2, true), nullptr);
    EXPECT_EQ(sheet.cell(3, 2, false), cell);
    EXPECT_EQ(shown(&sheet, 3, 2), "int:5");
    EXPECT_EQ(sheet.cell(4, 2, false), nullptr);
    EXPECT_EQ(sheet.cell(0, 65536, true), nullptr);
}

} // namespace
