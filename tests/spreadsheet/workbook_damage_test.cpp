// Damaged and hostile workbooks: a load that fails, in bounded time and memory.

#include "spreadsheet/biffbuilder.h"
#include "spreadsheet/workbook.h"

#include <gtest/gtest.h>

namespace {

using namespace Biff;
using Swinder::Workbook;

bool loads(const Bytes& fileContent)
{
    const TemporaryFile file(fileContent);
    Workbook book(nullptr);
    const bool ok = book.load(file.name());
    if (!ok) {
        EXPECT_EQ(book.sheetCount(), 0u);
        EXPECT_FALSE(book.isPasswordProtected());
    }
    return ok;
}

bool loadsStream(const Bytes& stream)
{
    const TemporaryFile file;
    writeContainer(file.name(), "Workbook", stream);
    Workbook book(nullptr);
    return book.load(file.name());
}

TEST(DamagedWorkbook, FailsToLoad)
{
    const Bytes good = oneSheet(Biff8, "", record(0x0203, at(0, 0) + f64(1)));
    ASSERT_TRUE(loadsStream(good));
    EXPECT_FALSE(loadsStream(""));
    EXPECT_FALSE(loadsStream(oneSheet(0x0400, "", ""))) << "version";
    const std::pair<const char*, Bytes> faultyCells[] = {
        {"short number", record(0x0203, at(0, 0) + u32(1))},
        {"column", record(0x0203, at(0, 256) + f64(1))},
        {"columns", record(0x00BD, u16(0) + u16(255) + u16(0) + u32(2) + u16(0) + u32(2) + u16(256))},
        {"shared string", record(0x00FD, at(0, 0) + u32(0))},
        {"text", record(0x0204, at(0, 0) + u16(5) + u8(0) + "ab")},
        {"cut character", record(0x0204, at(0, 0) + u16(2) + u8(1) + "abc") + record(0x003C, u8(0) + "d")},
        {"formula", record(0x0006, at(0, 0) + u8(9) + u8(0) + u32(0) + u16(0xFFFF))},
        {"early end", record(0x0809, u16(Biff8) + u16(0x20))},
        {"record length", u16(0x0203) + u16(0xFFFF)},
    };
    for (const auto& [what, cells] : faultyCells)
        EXPECT_FALSE(loadsStream(oneSheet(Biff8, "", cells))) << what;
    const std::pair<const char*, Bytes> faultyGlobals[] = {
        {"runs", record(0x00FC, u32(1) + u32(1) + u16(1) + u8(8) + u16(0xFFFF) + "a")},
        {"phonetic", record(0x00FC, u32(1) + u32(1) + u16(1) + u8(4) + u32(0xFFFFFFFF) + "a")},
        {"strings", record(0x00FC, u32(1) + u32(0xFFFFFFFF) + u16(9) + u8(0) + "a")},
        {"offset", record(0x0085, u32(0xFFFFFFF0) + u16(0) + name8("a"))},
        {"overlap",
         record(0x0085, u32(0) + u16(0) + name8("a")) + record(0x0085, u32(0) + u16(0) + name8("b"))},
        {"code page", record(0x0042, "")},
    };
    for (const auto& [what, globals] : faultyGlobals)
        EXPECT_FALSE(loadsStream(oneSheet(Biff8, globals, ""))) << what;
}

/** Were each sheet read to the end of what all share, this would take longer than a test may run. */
TEST(DamagedWorkbook, ManySheetsOverTheSameBytesCostNoMoreThanTheFile)
{
    constexpr std::size_t Count = 150000;
    const Bytes bof = record(0x0809, u16(Biff8) + u16(0x10));
    const auto bound = [](std::size_t offset) {
        return record(0x0085, u32(static_cast<std::uint32_t>(offset)) + u16(0) + name8("a"));
    };
    const std::size_t start = bof.size() + Count * bound(0).size() + 4;
    Bytes stream = bof;
    for (std::size_t i = 0; i < Count; ++i)
        stream += bound(start + i * bof.size());
    stream += record(0x000A, "");
    for (std::size_t i = 0; i < Count; ++i)
        stream += bof;
    EXPECT_FALSE(loadsStream(stream));
}

/** Every cut and many a changed byte: no crash and no endless loop, whatever the answer. */
TEST(DamagedWorkbook, SurvivesCutsAndChangedBytesOfRealFiles)
{
    const std::string folder = TORVIX_TEST_SOURCE_DIR "/../shared/testdata/fixtures/";
    for (const char* name : {"xlwt-cells.xls", "gnumeric-biff7.xls", "libreoffice-biff8.xls"}) {
        const Bytes good = readFile(folder + name);
        ASSERT_TRUE(loads(good)) << name;
        for (std::size_t size = 0; size < good.size(); size += 509)
            loads(good.substr(0, size));
        EXPECT_FALSE(loads(good.substr(0, 2048))) << name;
        std::uint32_t random = 12345;
        for (int i = 0; i < 400; ++i) {
            Bytes changed = good;
            for (int k = 0; k < 3; ++k) {
                random = random * 1664525 + 1013904223;
                changed[random % changed.size()] = static_cast<char>(random >> 24);
            }
            loads(changed);
        }
    }
}

} // namespace
