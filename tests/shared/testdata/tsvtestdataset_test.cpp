#include "shared/testdata/tsvtestdataset.h"

#include "tables.h"

namespace {

using namespace Torvix;

TEST(TsvTestDataSet, IsReadBySuffixAndDetectedSeparator)
{
    const Files files;
    const struct
    {
        const char* name;
        QByteArray content;
        char separator; // 0: no table
    } cases[] = {
        {"a.csv", "a,b\n1,2\n", ','},
        {"a.csv", "a;b;c\n1;2;3\n", ';'},
        {"a.csv", "a\tb\n1\t2\n", '\t'},
        {"a.csv", "a\nb\n", ','},      // none detected
        {"a.tsv", "a,b\n1,2\n", '\t'}, // whatever is detected
        {"a.txt", "a;b\n1;2\n", ';'},
        {"a.txt", "a\nb\n", 0},
        {"a.CSV", "a\nb\n", 0}, // suffixes go by exact case
        {"a.XLS", "a;b\n", ';'},
        {"a.txt", "1,2;3,4\n5,6;7\n", ';'}, // commas differ from line to line
        {"a.txt", "1,2;3\n", ','},          // equal: comma before semicolon
        {"a.txt", "1;2\t3\n", ';'},         // and semicolon before tab
        {"a.txt", "1,2\t3\n", ','},
        {"a.txt", "1,2\t3\t4\n", '\t'},
        {"a.txt", "1,2;3;4\t5\t6\t7\n", '\t'},
        {"a.txt", "1,,\t\t\n2,,\t\t\n3,,,\t\t\n", '\t'},
        {"a.txt", "a,b\n\n;;;\n", ','}, // only up to a blank line
        {"a.txt", "a,b\nc,d\ne,f\n;;\n", ','},
        {"a.txt", "\"a,b\";c\n\"d\";\"e,f,g\"\n", ';'},
        {"a.txt", "", 0},
    };
    for (const auto& [name, content, separator] : cases) {
        Captured captured;
        const Table table(TestDataSet::createTestDataSet(files.write(name, content)));
        EXPECT_EQ(table ? table->getSep() : 0, separator) << name << ": " << content.constData();
        if (table) {
            EXPECT_FALSE(table->isReadOnly());
            EXPECT_EQ(table->dataName(), files.path(name));
        }
    }
    EXPECT_EQ(TestDataSet::createTestDataSetExcel(files.path("a.csv"), ""), nullptr);
    EXPECT_EQ(TestDataSet::createTestDataSetExcel(files.path("a.XLS"), ""), nullptr);
}

TEST(TsvTestDataSet, TheFirstBlankLineEndsTheTable)
{
    const Files files;
    const auto read = [&](const QByteArray& content) {
        return shown(Table(TestDataSet::createTestDataSet(files.write("t.csv", content))));
    };
    EXPECT_EQ(read("a,b\n1,2\n\n3,4\n"), "a|b\n1|2\n");
    EXPECT_EQ(read("a,b\n\n1,2\n"), "a|b\n");
    EXPECT_EQ(read("a,b\r\n1,2\r\n\r\n3,4"), "a|b\n1|2\n");
    EXPECT_EQ(read(""), "1\n");
    EXPECT_EQ(read("\na,b\n"), "1\n");
    EXPECT_EQ(read("a,b\n\"1\n\n2\",3\n4,5"), "a|b\n1\n\n2|3\n4|5\n");
}

TEST(TsvTestDataSet, KeepsRecordsOfAnotherWidthWithAWarning)
{
    const Files files;
    const QString name = files.write("t.csv", "a,b\n1\n\"2\nx\",3\n4,5,6\n\"\"\n");
    Captured captured;
    const Table table(TestDataSet::createTestDataSet(name));
    const std::string prefix = "Warning: inconsistent format in " + name.toStdString();
    EXPECT_EQ(captured.err(), prefix + " (line 1): Expected 2 fields. Got 1.\n" + prefix +
                                  " (line 3): Expected 2 fields. Got 3.\n" + prefix +
                                  " (line 4): Expected 2 fields. Got 0.\n");
    EXPECT_EQ(captured.warnings(), "");
    EXPECT_EQ(shown(table), "a|b\n1\n2\nx|3\n4|5|6\n\n");
    EXPECT_EQ(table->header()->index(), -1);
    EXPECT_EQ(table->record(2)->index(), 2);
    EXPECT_EQ(table->record(2)->dataSet(), table.get());
}

TEST(TsvTestDataSet, AMissingFileGivesTheFallbackHeaderOrNothing)
{
    const Files files;
    for (const auto& [name, expected] :
         {std::pair("no.csv", "1\n"), {"no.tsv", "1\n"}, {"no.txt", "(null)"}}) {
        Captured captured;
        EXPECT_EQ(shown(Table(TestDataSet::createTestDataSet(files.path(name)))), expected);
        EXPECT_EQ(captured.warnings(), "Couldn't open " + files.path(name).toStdString());
    }
}

TEST(TsvTestDataSet, LargeTablesKeepEveryCell)
{
    const Files files;
    QByteArray content = "id;text;\xC3\xBC\n";
    for (int i = 0; i < 20000; ++i) {
        const QByteArray number = QByteArray::number(i);
        content +=
            number + (i % 7 ? ";text " + number : ";\"a;\"\"" + number + "\"\"\nb\"") + ";\xE2\x82\xAC\n";
    }
    const Table table(new TsvTestDataSet(files.write("t.csv", content), ';'));
    ASSERT_EQ(table->count(), 20000);
    for (int i = 0; i < 20000; ++i) {
        const std::string number = std::to_string(i);
        ASSERT_EQ(shown(table->record(i)),
                  number + (i % 7 ? "|text " + number : "|a;\"" + number + "\"\nb") + "|€");
    }
    EXPECT_EQ(table->fieldIndex(QString::fromUtf8("ü")), 2);
}

} // namespace
