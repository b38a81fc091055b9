#include "shared/testdata/testdatadir.h"
#include "shared/testdata/tsvtestdataset.h"
#include "tables.h"

#include <QDir>

namespace {

using namespace Torvix;

struct EditableTable : testing::Test
{
    EditableTable()
        : table(TestDataSet::createTestDataSet(files.write("t.csv", "a,b,a\n1,2,3\n4,5,6\n7,8,9\n")))
    {
    }

    Files files;
    Table table;
};

TEST_F(EditableTable, FindsColumnsByName)
{
    EXPECT_EQ(table->fieldIndex("a"), 2) << "the last of the same name";
    EXPECT_EQ(table->fieldIndex("b"), 1);
    EXPECT_EQ(table->fieldIndex("c"), -1);
    EXPECT_EQ(table->record(1)->valueAsString("b"), "5");
    EXPECT_TRUE(table->record(1)->valueAsString("c").isNull());
    EXPECT_TRUE(table->record(1)->valueAsString(3).isNull());
    EXPECT_TRUE(table->record(1)->valueAsString(-1).isNull());
    EXPECT_EQ(table->record(-1), nullptr);
    EXPECT_EQ(table->record(3), nullptr);
}

TEST_F(EditableTable, RecordsAreInsertedAndRemovedWithinBounds)
{
    const auto make = [&](const char* text) {
        auto* record = new TestDataRecord(table.get(), 77);
        record->addValue(text);
        return record;
    };
    table->insertRecord(make("first"), 0);
    table->addRecord(make("last"));
    table->removeRecord(1);
    table->removeRecord(-1);
    table->removeRecord(4);
    EXPECT_EQ(shown(table), "a|b|a\nfirst\n4|5|6\n7|8|9\nlast\n");
    EXPECT_EQ(table->record(1)->index(), 1) << "numbers of the file stay";
    EXPECT_EQ(table->record(0)->index(), 77);

    for (const int outside : {-1, 4}) {
        const std::unique_ptr<TestDataRecord> mine(make("mine"));
        table->insertRecord(mine.get(), outside);
    }
    EXPECT_EQ(table->count(), 4);
}

TEST_F(EditableTable, FieldsChangeInEveryRowThatHasThem)
{
    table->record(1)->removeField(2);
    table->record(1)->removeField(1);
    table->insertField(1);
    EXPECT_EQ(shown(table), "a||b|a\n1||2|3\n4\n7||8|9\n") << "the short record stays";
    EXPECT_TRUE(table->record(0)->valueAsString(1).isNull());
    EXPECT_EQ(table->fieldIndex("b"), 1) << "as it was when the header was set";
    table->removeField(0);
    table->removeField(-1);
    table->insertField(3);
    table->insertField(-1);
    EXPECT_EQ(shown(table), "|b|a\n|2|3\n\n|8|9\n");
}

TEST_F(EditableTable, CellsGrowWithEmptyTexts)
{
    TestDataRecord* record = table->record(0);
    record->setValue(5, "x");
    record->setValue(1, "y");
    record->setValue(-1, "z");
    EXPECT_EQ(shown(record), "1|y|3|||x");
    EXPECT_FALSE(record->valueAsString(4).isNull());
    fillEmptyCells(3, 5, record);
    fillEmptyCells(5, 5, record);
    fillEmptyCells(6, 5, record);
    EXPECT_EQ(record->count(), 8);
}

TEST_F(EditableTable, SavesWhatItReads)
{
    table->record(0)->setValue(0, "q\"uote, and\nline");
    table->record(1)->removeField(2);
    table->record(1)->removeField(1);
    table->record(2)->setValue(3, QString::fromUtf8("日本"));
    ASSERT_TRUE(table->save(files.path("saved.txt")));
    QFile saved(files.path("saved.txt"));
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll().toStdString(), "\"a\",\"b\",\"a\"\n"
                                             "\"q\"\"uote, and\nline\",\"2\",\"3\"\n"
                                             "\"4\",,\n"
                                             "\"7\",\"8\",\"9\",\"日本\"\n");
    Captured captured;
    const Table again(new TsvTestDataSet(files.path("saved.txt"), ','));
    EXPECT_EQ(shown(again), "a|b|a\nq\"uote, and\nline|2|3\n4||\n7|8|9|日本\n");

    ASSERT_TRUE(table->save(QString())) << "over its own file";
    EXPECT_EQ(shown(Table(new TsvTestDataSet(table->dataName(), ','))), shown(again));
    EXPECT_FALSE(table->save(files.path("no/such/folder")));
    EXPECT_FALSE(table->save("/dev/full"));
}

TEST_F(EditableTable, SavesARecordWithoutCellsAsOneEmptyCell)
{
    table->addRecord(new TestDataRecord(table.get(), 9));
    EXPECT_EQ(recordAsLine(table->record(3), ';'), "\"\";;\n");
    EXPECT_EQ(escapedCSVField(""), "\"\"");
    table->setHeader(nullptr);
    EXPECT_EQ(table->fieldIndex("a"), -1);
    EXPECT_EQ(recordAsLine(table->record(3), ';'), "\"\"\n");
}

TEST(TestDataDir, MakesTheMissingFoldersOfAPath)
{
    const Files files;
    const auto made = [&](const char* path) { return QDir(files.path(path)).exists(); };
    TestData::checkAndMakeDir(files.path("x//y/z"), false);
    EXPECT_TRUE(made("x/y/z"));
    TestData::checkAndMakeDir(files.path("p/q/file.csv"), true);
    EXPECT_TRUE(made("p/q"));
    EXPECT_FALSE(made("p/q/file.csv"));

    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(files.path("x")));
    TestData::checkAndMakeDir("a/b/a", true); // every "a" is taken for the file
    TestData::checkAndMakeDir("single", false);
    TestData::checkAndMakeDir("file", true);
    TestData::checkAndMakeDir("", false);
    TestData::checkAndMakeDir("/", true);
    QDir::setCurrent(before);
    EXPECT_TRUE(made("x/b"));
    EXPECT_FALSE(made("x/a"));
    EXPECT_TRUE(made("x/single"));
    EXPECT_FALSE(made("x/file"));
}

} // namespace
