#include "interpreter/js/apitest.h"
#include "objectmodel/samplemodel.h"
#include "testsupport/objectfunctions.h"
#include "testsupport/scriptapi.h"

#include <QElapsedTimer>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <future>

namespace Torvix {
namespace {

/** What scripts leave in the folder of the results, and what they read from that of the test case. */
class JsTestFilesTest : public ApiTest
{
protected:
    JsTestFilesTest()
    {
        registerScriptApi();
        renewInterpreter(&runner);
    }
    ~JsTestFilesTest() override
    {
        interpreter.reset();
        setDefaultWaitTimeoutMs(20'000);
    }

    void writePoint(const QString& name, const QByteArray& json)
    {
        QDir(directory.path()).mkpath("verificationPoints");
        writeFile("verificationPoints/" + name, json);
    }

    QByteArray contentOf(const Attachment& attachment)
    {
        QFile file(attachment.path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << attachment.path.toStdString();
        return file.readAll();
    }

    Testing::SampleModel sample;
};

TEST_F(JsTestFilesTest, FilesAndImagesAreKeptWithTheResults)
{
    writeFile("log.txt", "line");
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::blue);
    ASSERT_TRUE(image.save(directory.filePath("blue.png")));
    EXPECT_EQ(results("test.attachFile('log.txt'); test.attachFile('log.txt', 'again');"
                      "test.attachImage('blue.png')"),
              "log|Attached file 'log.txt'|\nlog|again|\nlog|Image 'blue.png'|");
    const QVector<ResultEntry> all = entries();
    for (const ResultEntry& entry : all)
        ASSERT_EQ(entry.attachments.size(), 1);
    EXPECT_EQ(contentOf(all[0].attachments[0]), "line");
    EXPECT_EQ(all[0].attachments[0].mimeType, "text/plain");
    EXPECT_NE(all[0].attachments[0].path, all[1].attachments[0].path) << "one does not replace the other";
    EXPECT_EQ(QFileInfo(all[0].attachments[0].path).absolutePath(), outputFolder());
    EXPECT_EQ(QImage(all[2].attachments[0].path), image.convertToFormat(QImage::Format_RGB32));
}

TEST_F(JsTestFilesTest, WhatCannotBeKeptIsAnErrorThatSaysWhy)
{
    qunsetenv("DISPLAY");
    writeFile("text.png", "no image");
    EXPECT_EQ(thrown("test.attachFile('none')"),
              "TypeError: Cannot read file '" + directory.filePath("none") + "': No such file or directory");
    EXPECT_TRUE(thrown("test.attachImage('text.png')").startsWith("TypeError: Cannot read image '"));
    EXPECT_TRUE(thrown("test.attachDesktopScreenshot()").startsWith("TypeError: "));
    Inspector::self()->setCurrent(nullptr);
    EXPECT_EQ(thrown("test.attachDesktopScreenshot()"),
              "TypeError: There is nothing to take a screenshot of: no application runs, and there is no X "
              "display (DISPLAY is not set)");
    EXPECT_EQ(thrown("test.startVideoCapture()"),
              "TypeError: Video capture needs an X display (DISPLAY is not "
              "set)");
    EXPECT_EQ(thrown("test.stopVideoCapture()"),
              "TypeError: test.stopVideoCapture() without test.startVideoCapture()");
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", directory.path().toLocal8Bit());
    EXPECT_EQ(thrown("test.startVideoCapture()"),
              "TypeError: Video capture needs the program 'ffmpeg', which is "
              "not installed here; on Debian: apt-get install ffmpeg");
    qputenv("PATH", path);
}

TEST_F(JsTestFilesTest, AVerificationPointHoldsOrTellsWhatDiffers)
{
    writePoint("shape", R"({"checks": [{"object": "{type='Shape' name='one'}",
        "properties": {"size": 7, "title": {"wildcard": "f?r*"}}}]})");
    writePoint("wrong.json", R"({"checks": [{"object": "{type='Shape' name='one'}",
        "properties": {"size": 8, "title": {"regex": "fir"}, "nothing": 1}}]})");
    EXPECT_EQ(results("test.vp('shape'); test.vp('shape', 'm', 'd')"),
              "pass|Verification point 'shape'|\npass|m|d");
    const QString differences = "{type='Shape' name='one'}: nothing: Shape has no property 'nothing'\n"
                                "{type='Shape' name='one'}: size: expected 8, found 7\n"
                                "{type='Shape' name='one'}: title: expected regex \"fir\", found \"first\"";
    EXPECT_EQ(results("test.vp('wrong')"), "fail|Verification point 'wrong'|" + differences);
    EXPECT_EQ(results("test.xvp('wrong', 'known')"), "expected-fail|known|" + differences);
    EXPECT_EQ(results("test.xvp('shape')"), "unexpected-pass|Verification point 'shape'|");

    const QVector<Attachment> kept = entries()[2].attachments;
    ASSERT_EQ(kept.size(), 2) << "what was expected, and what was seen";
    EXPECT_TRUE(contentOf(kept[0]).contains("\"size\": 8"));
    const QJsonObject seen = QJsonDocument::fromJson(contentOf(kept[1])).object();
    EXPECT_EQ(seen["checks"].toArray()[0].toObject()["properties"].toObject()["title"], "first");
    QFile(directory.filePath("verificationPoints/accepted")).remove();
    ASSERT_TRUE(QFile::copy(kept[1].path, directory.filePath("verificationPoints/accepted")));
    EXPECT_EQ(results("test.vp('accepted')"), "pass|Verification point 'accepted'|")
        << "what was seen can be put in the place of what was expected";
}

TEST_F(JsTestFilesTest, VerificationPointsAreRenewedWhereTheyDoNotHold)
{
    const QByteArray original = R"({"checks": [{"object": "{type='Shape' name='one'}",
        "properties": {"size": 8, "title": {"wildcard": "f?r*"}}}]})";
    writePoint("shape", original);
    result.setUpdatesVerificationPoints(true);
    EXPECT_EQ(results("test.xvp('shape', 'bug')"),
              "expected-fail|bug|{type='Shape' name='one'}: size: expected 8, found 7")
        << "where a difference is expected nothing is renewed";
    EXPECT_EQ(results("test.vp('shape')"), "warning|Verification point 'shape' was renewed|{type='Shape' "
                                           "name='one'}: size: expected 8, found 7");
    EXPECT_EQ(text("test.vp('shape')"), "true");
    QFile file(directory.filePath("verificationPoints/shape"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(QJsonDocument::fromJson(file.readAll()),
              QJsonDocument::fromJson(QByteArray(original).replace("8", "7")))
        << "all else is as it was";
    EXPECT_TRUE(thrown("test.vp('none')").startsWith("TypeError: There is no verification point 'none'"));
}

TEST_F(JsTestFilesTest, AVerificationPointForAnObjectOfTheScript)
{
    writePoint("any", R"({"checks": [{"properties": {"size": 7}}]})");
    EXPECT_EQ(results("test.vpWithObject('any', findObject(\"{type='Shape' name='two'}\"))"),
              "pass|Verification point 'any'|");
    EXPECT_EQ(results("test.vpWithObject('any', {type: 'Shape', name: 'two'}, 'by name')"), "pass|by name|");
    EXPECT_EQ(thrown("test.vp('any')"),
              "TypeError: A check names no object; use test.vpWithObject(name, object)");
    EXPECT_TRUE(thrown("test.vpWithObject('any', {type: 'None'})").startsWith("TypeError: "));
}

TEST_F(JsTestFilesTest, BadVerificationPointsAreToldWithTheirPlace)
{
    const QString folder = directory.filePath("verificationPoints/");
    const std::pair<const char*, const char*> cases[] = {
        {"{\n \"checks\": [\n", "', line 3: "},
        {"[]", "', line 1: an object in braces is wanted"},
        {"{}", "': 'checks' has to be a list with at least one entry"},
        {R"({"checks": [{"object": "x"}]})",
         "': check 1: there is nothing to check; give 'properties', 'table' or 'screenshot'"},
        {R"({"checks": [{"propertys": {}}]})",
         "': check 1: a check has no 'propertys', only object, properties, table, screenshot"},
        {R"({"checks": [{"properties": {"a": {"regex": "("}}}]})",
         "': check 1: property 'a': '(' is no regular expression: missing closing parenthesis"},
        {R"({"checks": [{"table": [1]}]})", "': check 1: each row of 'table' has to be a list of cells"},
        {R"({"checks": [{"screenshot": {"file": "x.png", "tolerance": 256}}]})",
         "': check 1: 'tolerance' has to be a whole number from 0 to 255"},
        {R"({"checks": [{"screenshot": {"file": "x.png", "masks": [[1, 2, 3]]}}]})",
         "': check 1: each of 'masks' has to be [x, y, width, height]"},
    };
    for (const auto& [json, expected] : cases) {
        writePoint("bad", json);
        const QString error = thrown("test.vp('bad')");
        EXPECT_TRUE(error.startsWith("TypeError: Verification point '" + folder + "bad" + expected))
            << error.toStdString();
    }
    EXPECT_EQ(thrown("test.vp('none')"), "TypeError: There is no verification point 'none': neither '" +
                                             folder + "none' nor '" + folder +
                                             "none.json' exists; createVP(object, 'none') writes one");
}

TEST_F(JsTestFilesTest, SmallFunctionsOfTheTool)
{
    QDir(directory.path()).mkpath("testdata");
    writeFile("testdata/a.tsv", "x");
    writeFile("own.js", "");
    EXPECT_EQ(text("findFile('testdata', 'a.tsv')"), directory.filePath("testdata/a.tsv"));
    EXPECT_EQ(text("findFile('scripts', 'own.js')"), directory.filePath("own.js"));
    EXPECT_TRUE(thrown("findFile('testdata', 'b.tsv')").startsWith("Error: There is no file 'b.tsv' in "));
    EXPECT_EQ(thrown("findFile('pictures', 'x')"),
              "Error: findFile() finds 'testdata' and 'scripts', not 'pictures'");

    ASSERT_TRUE(run("var o = findObject(\"{type='Shape' name='one'}\")"));
    EXPECT_EQ(text("[typeName(o), typeName(5), typeName('x'), typeName([]), typeName(null)].join()"),
              "Shape,Number,String,Array,Null");
    EXPECT_EQ(
        text("[isNull(o), isNull(null), isNull(undefined), isNull(0), isNull(object.createNull('Shape'))]"
             ".join()"),
        "false,true,true,false,true");

    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(text("String(snooze(0.15)) + snooze(0)"), "undefinedundefined");
    EXPECT_GE(timer.elapsed(), 150);
    EXPECT_EQ(thrown("snooze('1')"), "Error: snooze() needs a number of seconds from 0, not '1'");
    EXPECT_EQ(thrown("snooze(-1)"), "Error: snooze() needs a number of seconds from 0, not '-1'");
    EXPECT_EQ(thrown("snooze(NaN)"), "Error: snooze() needs a number of seconds from 0, not 'NaN'");
}

TEST_F(JsTestFilesTest, AnInterruptEndsWaiting)
{
    QElapsedTimer timer;
    timer.start();
    std::future<void> later = std::async(std::launch::async, [this] {
        QThread::msleep(200);
        interpreter->interrupt();
    });
    EXPECT_FALSE(run("snooze(60); test.log('went on')"));
    later.wait();
    EXPECT_LT(timer.elapsed(), 30'000);
    EXPECT_EQ(interpreter->errorMessage(), "Script interrupted");
    EXPECT_EQ(entries().size(), 0);
    EXPECT_EQ(results("snooze(0.01); test.log('still usable')"), "log|still usable|");
}

TEST_F(JsTestFilesTest, SettingsHoldForTheRestOfTheTest)
{
    EXPECT_EQ(text("testSettings.waitForObjectTimeout"), "20000");
    EXPECT_EQ(text("testSettings.waitForObjectTimeout = 30; testSettings.waitForObjectTimeout"), "30");
    EXPECT_EQ(defaultWaitTimeoutMs(), 30);
    EXPECT_TRUE(thrown("testSettings.waitForObjectTimeout = 'long'").startsWith("Error: testSettings."));
    EXPECT_EQ(text("testSettings.throwOnFailure"), "false");
    EXPECT_EQ(thrown("testSettings.throwOnFailure = true; test.fail('ends')"), "TypeError: ends");
    EXPECT_TRUE(result.endsOnFailure());
}

} // namespace
} // namespace Torvix
