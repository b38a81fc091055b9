#include "engine/collector.h"
#include "interpreter/js/apitest.h"
#include "interpreter/js/bridge/jstestdatarecord.h"

namespace Torvix {
namespace {

/** A test case in a suite, with a table in its own test data and one in the suite's. */
class JsTestDataTest : public ApiTest
{
protected:
    JsTestDataTest()
    {
        QDir(directory.path()).mkpath("suite/tst_case/testdata");
        QDir(directory.path()).mkpath("suite/shared/testdata");
        writeFile("suite/shared/testdata/keys.csv", "key,value\none,1\ntwo,\"2,0\"\nthree\n");
        writeFile("suite/shared/testdata/both.csv", "place\nshared\n");
        writeFile("suite/tst_case/testdata/both.csv", "place\ncase\n");
        QDir::setCurrent(directory.filePath("suite/tst_case"));
    }
};

TEST_F(JsTestDataTest, HasItsFunctionsInOrderAndTakesNoOthers)
{
    EXPECT_EQ(text("var all = []; for (var n in testData) all.push(n + testData[n].length); all.join()"),
              "dataset1,datasetExcel2,field2,fieldNames0,put1,get1,exists1,remove1,create1");
    EXPECT_EQ(text("testData.foo = 1; testData.put = 2; [testData.foo, typeof testData.put].join()"),
              ",function");
    EXPECT_EQ(text("typeof testData.toString"), "undefined");
}

TEST_F(JsTestDataTest, ARecordIsReadByNameAndByIndex)
{
    EXPECT_EQ(text("var rows = testData.dataset('keys.csv'); [Array.isArray(rows), rows.length].join()"),
              "true,3");
    EXPECT_EQ(text("rows.map(r => testData.field(r, 'key') + '=' + testData.field(r, 1)).join(' ')"),
              "one=1 two=2,0 three=");
    EXPECT_EQ(text("var seen = ''; for (const r of rows) seen += testData.field(r, 0) + ';'; seen"),
              "one;two;three;");
    EXPECT_EQ(text("seen = ''; for (var i in rows) seen += i + testData.field(rows[i], 1.9); seen"),
              "0112,02");
    EXPECT_EQ(text("testData.fieldNames(rows[2]).join()"), "key,value") << "of the table, not of the record";
    EXPECT_EQ(text("typeof testData.field(rows[0], 'value')"), "string");
    EXPECT_EQ(
        text("[Object.keys(rows[0]).length, typeof rows[0].key, Object.getPrototypeOf(rows[0])].join()"),
        "0,undefined,");
    EXPECT_EQ(text("testData.field(testData.dataset('both.csv')[0], 'place')"), "case");
}

TEST_F(JsTestDataTest, WrongUseIsToldInTheStatedOrder)
{
    const QString dir = directory.path() + "/suite/shared/testdata/";
    writeFile("suite/shared/testdata/plain.txt", "no separator\n");
    ASSERT_TRUE(run("var r = testData.dataset('keys.csv')[0]"));
    const QVector<QPair<QString, QString>> cases = {
        {"testData.dataset('x.tsv')", "Error: File 'x.tsv' couldn't be found."},
        {"testData.dataset()", "Error: File 'undefined' couldn't be found."},
        {"testData.dataset('plain.txt')", "Error: Data set '" + dir + "plain.txt' couldn't be parsed."},
        {"testData.dataset({toString() { throw new RangeError('own') }})", "RangeError: own"},
        {"testData.datasetExcel()", "TypeError: datasetExcel() takes one or two string arguments"},
        {"testData.datasetExcel('a', 1)", "TypeError: datasetExcel() takes one or two string arguments"},
        {"testData.datasetExcel('a', 'b', 'c')",
         "TypeError: datasetExcel() takes one or two string arguments"},
        {"testData.datasetExcel('x.xls')", "Error: File 'x.xls' couldn't be found."},
        {"testData.datasetExcel('keys.csv')", "Error: Data set '" + dir + "keys.csv' couldn't be parsed."},
        {"testData.field(r)", "SyntaxError: field() expects two arguments"},
        {"testData.field({}, true, 1)", "SyntaxError: field() expects two arguments"},
        {"testData.field({}, true)", "TypeError: Invalid test data record"},
        {"testData.field('one', 'key')", "TypeError: Invalid test data record"},
        {"testData.field(r, 'nope')", "ReferenceError: Invalid field: nope"},
        {"testData.field(r, -1)", "RangeError: Invalid field index -1"},
        {"testData.field(r, 2)", "RangeError: Invalid field index 2"},
        {"testData.field(r, true)", "TypeError: Field argument must be of type string or number"},
        {"testData.fieldNames()", "SyntaxError: fieldNames() expects a recordset argument"},
        {"testData.fieldNames(r, r)", "SyntaxError: fieldNames() expects a recordset argument"},
        {"testData.fieldNames([r])", "TypeError: Invalid test data record"},
        {"testData.put()", "TypeError: put() takes a string argument"},
        {"testData.put(r)", "TypeError: put() takes a string argument"},
        {"testData.exists(1)", "TypeError: exists() takes a string argument"},
        {"testData.remove(null)", "TypeError: remove() takes a string argument"},
        {"testData.create('local')", "TypeError: create() takes two string arguments"},
        {"testData.create('local', 1)", "TypeError: create() takes two string arguments"},
        {"testData.create('LOCAL', 'a')", "Error: First argument of create() must be 'shared' or 'local'"},
        {"testData.put('keys.csv')", "Error: No application is connected: start one or attach to one first"},
        {"testData.get('a')", "TypeError: No application is connected: start one or attach to one first"},
        {"testData.exists('a')", "Error: No application is connected: start one or attach to one first"},
        {"testData.remove('a')", "Error: No application is connected: start one or attach to one first"},
    };
    for (const auto& [code, error] : cases)
        EXPECT_EQ(thrown(code), error) << code.toStdString();
    EXPECT_TRUE(thrown("testData.put('x.csv')").startsWith("Error: There is no file 'x.csv' in "));
    EXPECT_TRUE(thrown("testData.get()").contains("testData.get(file)"));
}

TEST_F(JsTestDataTest, SheetsOfWorkbooks)
{
    for (const char* suffix : {"xls", "xlsx"})
        ASSERT_TRUE(
            QFile::copy(QStringLiteral(TORVIX_TEST_SOURCE_DIR "/fixtures/cities.") + suffix,
                        directory.filePath(QStringLiteral("suite/shared/testdata/cities.") + suffix)));
    for (const QString suffix : {"xls", "xlsx"}) {
        const QString cities = QStringLiteral("var show = rows => rows.map(r => testData.fieldNames(r)"
                                              ".map(n => testData.field(r, n)).join('/')).join(' ');"
                                              "show(testData.%1)");
        EXPECT_EQ(text(cities.arg("dataset('cities." + suffix + "')")), "Bern/134290 Wien/2002821");
        EXPECT_EQ(text(cities.arg("datasetExcel('cities." + suffix + "')")), "Bern/134290 Wien/2002821");
        EXPECT_EQ(text(cities.arg("datasetExcel('cities." + suffix + "', 'Rivers')")), "Aare/288");
    }
}

TEST_F(JsTestDataTest, CreateMakesTheFolderAndNotTheFile)
{
    QDir(directory.path()).mkpath("fresh/tst_new");
    const QString base = QDir(directory.path()).canonicalPath() + "/fresh/";
    QDir::setCurrent(base + "tst_new");
    EXPECT_EQ(text("testData.create('shared', 'b.csv')"), base + "shared/testdata/b.csv");
    EXPECT_EQ(text("testData.create('local', 'a.csv')"), base + "tst_new/testdata/a.csv");
    EXPECT_TRUE(QFileInfo(base + "shared/testdata").isDir());
    EXPECT_TRUE(QFileInfo(base + "tst_new/testdata").isDir());
    EXPECT_FALSE(QFileInfo::exists(base + "shared/testdata/b.csv"));
}

/** A table that tells of its end. */
class WatchedDataSet : public TestDataSet
{
public:
    explicit WatchedDataSet(bool* gone) : TestDataSet("watched", ',', false), m_gone(gone)
    {
        auto* header = new TestDataRecord(this, -1);
        header->addValue("n");
        setHeader(header);
        for (int i = 0; i < 3; ++i) {
            auto* record = new TestDataRecord(this, i);
            record->addValue(QString::number(i));
            addRecord(record);
        }
    }
    ~WatchedDataSet() override { *m_gone = true; }

private:
    bool* m_gone;
};

bool watchedGone;
const TestDataRecord* recordSeen;
void giveTable(ScriptContext* context)
{
    context->setResult(context->toArgument(new WatchedDataSet(&watchedGone)));
}
void takeRecord(ScriptContext* context)
{
    recordSeen = context->argument(0)->toTestDataRecord();
}

TEST_F(JsTestDataTest, TheTableLivesAsLongAsOneOfItsRecords)
{
    watchedGone = false;
    onStack("giveTable", giveTable);
    onStack("takeRecord", takeRecord);
    EXPECT_EQ(text("var kept = giveTable()[1]; testData.field(kept, 'n')"), "1");
    const auto collect = [] {
        while (KJS::Collector::collect()) {
        }
    };
    collect();
    EXPECT_FALSE(watchedGone);
    EXPECT_EQ(text("testData.field(kept, 0)"), "1") << "the array that held it is gone";
    ASSERT_TRUE(run("takeRecord(kept)"));
    ASSERT_TRUE(recordSeen);
    EXPECT_EQ(recordSeen->index(), 1);
    ASSERT_TRUE(run("takeRecord([kept])"));
    EXPECT_FALSE(recordSeen);
    ASSERT_TRUE(run("kept = null"));
    // The conservative stack scan may hold on to one value for a while.
    for (int i = 0; i < 20 && !watchedGone; ++i) {
        ASSERT_TRUE(run("giveNothing = [1, 2, 3].map(n => ({n}))"));
        collect();
    }
    EXPECT_TRUE(watchedGone);
}

} // namespace
} // namespace Torvix
