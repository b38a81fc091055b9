#include "shared/testdata/tsvparser.h"

#include "shared/testdata/tsvtestdataset.h"
#include "tables.h"

namespace {

using namespace Torvix;

TEST(TsvParser, LogicalLines)
{
    const Files files;
    const std::pair<QByteArray, QStringList> cases[] = {
        {"a\nb\r\n", {"a", "b"}},
        {"a\rb\n\r\nc", {"a\rb", "", "c"}}, // a carriage return alone is text
        {"last\r", {"last\r"}},             // kept without its line feed
        {"\"x\ny\",z\nn\n", {"\"x\ny\",z", "n"}},
        {"\"x\r\ny\"\r\nn", {"\"x\r\ny\"", "n"}},
        {"\"a\"\"\nb\"\nc", {"\"a\"\"\nb\"", "c"}}, // a doubled quote stays inside
        {"\"a\"b\nc", {"\"a\"b", "c"}},
        {"a\"b\nc\"d\ne", {"a\"b\nc\"d", "e"}}, // quotes within a cell count as well
        {"\"open\nto the\nend\n", {"\"open\nto the\nend\n"}},
        {"\"\"\nx", {"\"\"", "x"}},
        {"x\n\"", {"x", "\""}},
        {"\xEF\xBB\xBFmark\n", {"mark"}},
        {QByteArray("\xFF\xFE"
                    "a\0,\0\n\0\xE4\0",
                    10),
         {"a,", "ä"}},
        {"a\xFFz\n", {"a\uFFFDz"}},
        {"a\n\uFEFFb\n", {"a", QString(QChar(0xFEFF)) + "b"}}, // a mark only at the start of the file
        {"", {}},
    };
    for (const auto& [content, lines] : cases) {
        TsvParser parser(files.write("f", content));
        for (const QString& line : lines)
            EXPECT_EQ(parser.nextLine().toStdString(), line.toStdString()) << content.constData();
        EXPECT_EQ(parser.lineNumber(), lines.size() - 1) << content.constData();
        EXPECT_EQ(parser.nextLine(), QString()) << content.constData();
        EXPECT_EQ(parser.lineNumber(), lines.size() - 1) << "not counted at the end";
    }
}

TEST(TsvParser, LinesAcrossTheBlocksOfALargeFile)
{
    const Files files;
    QByteArray content;
    for (int i = 0; i < 5000; ++i)
        content += i % 3 ? "row " + QByteArray::number(i) + QByteArray(i % 100, 'x') + "\r\n"
                         : "\"quoted\n\"\"" + QByteArray::number(i) + "\"\n";
    content += "\"" + QByteArray(300000, '\n') + "\"\nend";
    TsvParser parser(files.write("f", content));
    for (int i = 0; i < 5000; ++i) {
        const QByteArray number = QByteArray::number(i);
        ASSERT_EQ(parser.nextLine(), i % 3 ? QString("row " + number + QByteArray(i % 100, 'x'))
                                           : QString("\"quoted\n\"\"" + number + "\""));
    }
    EXPECT_EQ(parser.nextLine().size(), 300002);
    EXPECT_EQ(parser.nextLine(), "end");
    parser.rewind();
    EXPECT_EQ(parser.lineNumber(), -1);
    EXPECT_EQ(parser.nextLine(), "\"quoted\n\"\"0\"");
    EXPECT_EQ(parser.name(), files.path("f"));
}

TEST(TsvParser, CellsOfALine)
{
    const Files files;
    TsvParser parser(files.write("f", "h\n"));
    parser.nextLine(); // so that what follows is line 0, the header
    const std::pair<const char*, const char*> cases[] = {
        {"a,b", "a|b"},
        {"a,", "a|"},
        {",b", "|b"},
        {",", "|"},
        {"\"a,b\",c", "a,b|c"},
        {"\"a\"\"b\"", "a\"b"},
        {"\"\"\"\"", "\""},
        {"ab\"cd\"ef", "abcdef"},
        {"\"ab\"cd,\"e\"", "abcd|e"},
        {"\"open,x", "open,x"},
        {"a,\"", "a|"},
        {"\"\",\"\"", "|"},
        {"\"a\"\",\"\"b\",\"c\nd\"", "a\",\"b|c\nd"},
        {"ä\"ö\"\"ü\"", "äö\"ü"},
        {"  a , b ", "  a | b "},
        {"a,\uFEFFb", "a|\uFEFFb"},
    };
    for (const auto& [line, cells] : cases) {
        const Table table(new TsvTestDataSet(files.path("f"), ','));
        parser.parseRecord(table.get(), QString::fromUtf8(line), ',');
        EXPECT_EQ(shown(table->header()), cells) << line;
        // All at once gives the same.
        const Table whole(new TsvTestDataSet(files.write("g", line), ','));
        EXPECT_EQ(shown(whole->header()), cells) << line;
    }

    const Table table(new TsvTestDataSet(files.path("f"), ','));
    parser.parseRecord(table.get(), "", ',');
    EXPECT_EQ(shown(table->header()), "h") << "an empty line does nothing";
    parser.parseRecord(table.get(), "\"\"", ',');
    EXPECT_EQ(table->header()->count(), 0) << "a cell comes with a character or a separator";
}

TEST(TsvParser, CountsSeparatorsForDetection)
{
    const Files files;
    const TsvParser parser(files.write("f", ""));
    const std::pair<const char*, int> cases[] = {
        {"", -1},
        {"a", 0},
        {"a,b,", 2},
        {"\"a,b\",c", 1},
        {"\"a\"x,b", 1},
        {"\"open,", 0},
        {"\"a\"\",b\"", 1}, // after a doubled quote the comma counts as outside
        {"\"a\"\"b,c\"", 1},
        {"\"\"\"a\",b", 0},
        {"\"a\",\"b\"", 1},
    };
    for (const auto& [line, count] : cases)
        EXPECT_EQ(parser.countSeparator(line, ','), count) << line;
}

TEST(TsvParser, AFileThatCannotBeOpenedHasNoLines)
{
    const Files files;
    Captured captured;
    TsvParser parser(files.path("missing"));
    EXPECT_EQ(captured.warnings(), "Couldn't open " + files.path("missing").toStdString());
    EXPECT_EQ(parser.nextLine(), QString());
    EXPECT_EQ(parser.lineNumber(), -1);
    EXPECT_TRUE(parser.name().isEmpty());
    parser.rewind();
    EXPECT_EQ(parser.nextLine(), QString());
}

} // namespace
