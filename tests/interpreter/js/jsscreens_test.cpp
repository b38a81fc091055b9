#include "interpreter/js/apitest.h"
#include "launcher/launcher.h"
#include "objectmodel/inspector.h"
#include "testsupport/objectfunctions.h"
#include "testsupport/scriptapi.h"

#include <QImage>
#include <QProcess>
#include <QStandardPaths>

namespace Torvix {
namespace {

/** Checks of a real application, without a screen. */
class JsScreensTest : public ApiTest
{
protected:
    void SetUp() override
    {
        registerScriptApi();
        LaunchOptions options;
        options.program = QStringLiteral(TORVIX_TEST_BINARY_DIR "/tests/torvixtarget");
        options.pluginDirectory = QStringLiteral(TORVIX_TEST_BINARY_DIR "/lib/qt5/plugins");
        options.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        QString error;
        application = Application::start(options, &error);
        ASSERT_TRUE(application) << error.toStdString();
        Inspector::self()->setCurrent(Inspector::self()->addApplication(application->takeLink()));
        renewInterpreter(&runner);
        ASSERT_TRUE(run("var button = waitForObject({type: 'QPushButton', name: 'count'})"))
            << interpreter->errorMessage().toStdString();
    }
    void TearDown() override
    {
        interpreter.reset();
        Inspector::self()->reset();
        application.reset();
        setDefaultWaitTimeoutMs(20'000);
    }

    void writePoint(const QString& name, const QByteArray& json)
    {
        QDir(directory.path()).mkpath("verificationPoints");
        writeFile("verificationPoints/" + name, json);
    }

    std::unique_ptr<Application> application;
};

TEST_F(JsScreensTest, PicturesAreFoundWhereTheyAre)
{
    EXPECT_EQ(text("saveObjectSnapshot(button, 'snapshot.png')"), directory.filePath("snapshot.png"));
    // Cut out of the screen: alone, a button has other corners than on its window.
    ASSERT_TRUE(run("saveDesktopScreenshot('screen.png'); var b = object.globalBounds(button)"));
    const QRect cut(text("b.x").toInt(), text("b.y").toInt(), text("b.width").toInt(),
                    text("b.height").toInt());
    ASSERT_TRUE(QImage(directory.filePath("screen.png")).copy(cut).save(directory.filePath("button.png")));
    EXPECT_EQ(text("var i = findImage('button.png');"
                   "i !== null && [i.x - b.x, i.y - b.y, i.width - b.width, i.height - b.height].join()"),
              "0,0,0,0");
    EXPECT_EQ(text("JSON.stringify(findImage('snapshot.png', {object: button})) == JSON.stringify(b)"),
              "true");
    EXPECT_TRUE(results("test.imagePresent('button.png')").startsWith("pass|Image 'button.png' present|"));
    EXPECT_TRUE(results("test.imageNotPresent('button.png', 'gone')").startsWith("fail|gone|"));
    EXPECT_EQ(entries().last().attachments.size(), 2) << "what was looked at, and for";

    QImage other(9, 9, QImage::Format_RGB32);
    other.fill(qRgb(1, 200, 3));
    ASSERT_TRUE(other.save(directory.filePath("other.png")));
    EXPECT_EQ(text("findImage('other.png')"), "null");
    EXPECT_EQ(results("test.imageNotPresent('other.png')"),
              "pass|Image 'other.png' not present|Image 'other.png' is not there");
    EXPECT_EQ(results("test.imagePresent('other.png', {timeout: 50})"),
              "fail|Image 'other.png' present|Image 'other.png' is not there");
    EXPECT_EQ(thrown("waitForImage('other.png', {timeout: 20})"),
              "Error: Image 'other.png' did not appear on the screen");
    EXPECT_EQ(thrown("findImage('button.png', {tolerence: 1})"),
              "Error: There is no option 'tolerence' here, only tolerance, differingPixels, timeout, object");
    EXPECT_EQ(thrown("test.imagePresent('button.png', {tolerance: 256})"),
              "TypeError: The option 'tolerance' has to be a whole number from 0 to 255, not '256'");
}

/** The same on a desktop that is scaled. */
class JsScaledScreensTest : public JsScreensTest, public testing::WithParamInterface<const char*>
{
protected:
    void SetUp() override
    {
        qputenv("QT_SCALE_FACTOR", GetParam());
        JsScreensTest::SetUp();
        qunsetenv("QT_SCALE_FACTOR");
    }
};

TEST_P(JsScaledScreensTest, PicturesAreFoundWhereOneClicks)
{
    const double factor = QByteArray(GetParam()).toDouble();
    ASSERT_TRUE(run("saveDesktopScreenshot('screen.png'); object.grabScreenshot(button, 'snapshot.png');"
                    "var b = object.globalBounds(button)"));
    const QRectF bounds(text("b.x").toDouble(), text("b.y").toDouble(), text("b.width").toDouble(),
                        text("b.height").toDouble());
    EXPECT_EQ(QImage(directory.filePath("snapshot.png")).size(), (bounds.size() * factor).toSize())
        << "sharp";
    // The window is wider than this platform's screen has room for: the left of the button will do.
    const QSizeF left(100, 20);
    const QRect cut((bounds.topLeft() * factor).toPoint(), (left * factor).toSize());
    ASSERT_TRUE(QImage(directory.filePath("screen.png")).copy(cut).save(directory.filePath("left.png")));
    const auto found = [this](const char* call) {
        return text(QString("var f = %1; [f.x, f.y, f.width, f.height].join()").arg(call));
    };
    EXPECT_EQ(found("findImage('left.png')"), QString("%1,%2,100,20").arg(bounds.x()).arg(bounds.y()));
    EXPECT_EQ(found("findImage('snapshot.png', {object: button})"),
              text("[b.x, b.y, b.width, b.height].join()"));
}

INSTANTIATE_TEST_SUITE_P(Factors, JsScaledScreensTest, testing::Values("1.5", "2"),
                         [](const auto& each) { return "By" + std::to_string(each.index + 1); });

TEST_F(JsScreensTest, ANamespaceWithEnumsHasItsClassesToo)
{
    EXPECT_EQ(text("[Shop.Paid, Shop.Item.Pen, Shop.Nothing, Qt.LeftButton, Qt.Nothing].join()"), "4,5,,1,");
}

TEST_F(JsScreensTest, TextIsReadFromTheScreen)
{
    if (QStandardPaths::findExecutable("tesseract").isEmpty()) {
        EXPECT_EQ(thrown("getOcrText()"),
                  "Error: Text recognition needs the program 'tesseract', which is not "
                  "installed here; on Debian: apt-get install tesseract-ocr");
        GTEST_SKIP() << "tesseract is not installed";
    }
    EXPECT_TRUE(text("getOcrText({object: button})").contains("Do count"))
        << text("getOcrText()").toStdString();
    EXPECT_TRUE(results("test.ocrTextPresent('Do count')").startsWith("pass|Text 'Do count' present|"));
    EXPECT_TRUE(results("test.ocrTextPresent('do COUNT', {ignoreCase: true})").startsWith("pass|"));
    EXPECT_TRUE(results("test.ocrTextNotPresent('Do count', 'm')").startsWith("fail|m|"));
    EXPECT_TRUE(results("test.ocrTextNotPresent('Nowhere')").startsWith("pass|"));
    EXPECT_TRUE(
        results("test.ocrTextPresent('Nowhere', {timeout: 0})").contains("The text that was read:\n"));
    EXPECT_EQ(text("var b = object.globalBounds(button), t = findOcrText('Do count');"
                   "t.x >= b.x && t.y >= b.y - 2 && t.x + t.width <= b.x + b.width"),
              "true");
    EXPECT_EQ(text("var all = findAllOcrText('Do count');"
                   "all.length == 1 && JSON.stringify(all[0]) == JSON.stringify(t)"),
              "true");
    EXPECT_EQ(text("findAllOcrText('Nowhere').length + '' + JSON.stringify(findAllOcrText('Nowhere'))"),
              "0[]");
    EXPECT_EQ(text("var line = getAllOcrText({object: button}).filter(l => l.text.includes('Do count'))[0];"
                   "line.x >= b.x && line.y >= b.y - 2 && line.width <= b.width && line.height <= b.height"),
              "true");
    EXPECT_EQ(thrown("findAllOcrText()"),
              "Error: Wrong number of arguments (0), use findAllOcrText(text[, options])");
    EXPECT_EQ(thrown("getAllOcrText({timeout: 5, ignoreCase: true})"),
              "Error: There is no option 'ignoreCase' here, only language, timeout, object");
    EXPECT_TRUE(thrown("getOcrText({language: 'none'})").startsWith("Error: Text recognition failed: "));
    EXPECT_EQ(thrown("test.ocrTextPresent(' ')"), "TypeError: There is no text to look for");
}

TEST_F(JsScreensTest, ScreenshotsAreVerifiedWithToleranceAndMasks)
{
    ASSERT_TRUE(run("object.grabScreenshot(button, 'verificationPoints.png')"));
    QDir(directory.path()).mkpath("verificationPoints");
    QImage expected(directory.filePath("verificationPoints.png"));
    expected = expected.convertToFormat(QImage::Format_RGB32);
    ASSERT_TRUE(expected.save(directory.filePath("verificationPoints/same.png")));
    for (int x = 10; x < 15; ++x)
        expected.setPixel(x, 4, qRgb(255, 0, 255));
    ASSERT_TRUE(expected.save(directory.filePath("verificationPoints/changed.png")));
    const auto point = [this](const char* name, const char* picture) {
        writePoint(name, QByteArray("{\"checks\": [{\"screenshot\": {\"file\": ") + picture + "}}]}");
    };
    point("same", "\"same.png\"");
    point("changed", "\"changed.png\", \"tolerance\": 3");
    point("masked", "\"changed.png\", \"masks\": [[10, 4, 5, 1]]");
    point("few", "\"changed.png\", \"differingPixels\": 5");
    point("none", "\"none.png\"");
    for (const char* good : {"same", "masked", "few"})
        EXPECT_EQ(results(QString("test.vpWithObject('%1', button)").arg(good)),
                  QString("pass|Verification point '%1'|").arg(good));
    EXPECT_EQ(
        results("test.vpWithObject('changed', button)"),
        "fail|Verification point 'changed'|screenshot: 5 pixels differ, 0 may; they lie in x 10, y 4, width "
        "5, height 1");
    QStringList kept;
    const QVector<Attachment> attachments = entries().last().attachments;
    for (const Attachment& attachment : attachments)
        kept += QFileInfo(attachment.path).fileName();
    EXPECT_EQ(kept.join(' '),
              "changed-expected.png changed-seen.png changed-difference.png changed-expected.json "
              "changed-seen.json");
    EXPECT_TRUE(thrown("test.vpWithObject('none', button)").startsWith("TypeError: Cannot read image '"));
}

TEST_F(JsScreensTest, VerificationPointsAreWrittenFromObjects)
{
    const QString folder = directory.filePath("verificationPoints/");
    EXPECT_EQ(text("createVP(button, 'usual')"), folder + "usual.json");
    EXPECT_EQ(results("test.vp('usual')"), "pass|Verification point 'usual'|");
    EXPECT_EQ(text("createVP(button, 'own', {properties: ['text', 'enabled']}); test.vp('own')"), "true");
    EXPECT_TRUE(results("button.toolTip = 'new'; test.vpWithObject('usual', button)")
                    .endsWith(": toolTip: expected \"\", found \"new\""));
    EXPECT_EQ(text("createVP(button, 'usual'); test.vp('usual')"), "true") << "replaces it";

    EXPECT_EQ(text("createVP({type: 'QPushButton', name: 'count'}, 'named'); button.text = 'Changed';"
                   "test.vp('named')"),
              "false")
        << "the object is found by the name that was given, not by the text that differs";
    EXPECT_TRUE(entries().last().detail.contains("text: expected \"&Do count\", found \"Changed\""))
        << entries().last().detail.toStdString();
    ASSERT_TRUE(run("var table = waitForObjectExists({type: 'QTableWidget', name: 'table'})"));
    EXPECT_EQ(text("createVP(table, 'cells'); test.vp('cells')"), "true");
    EXPECT_EQ(text("test.compare(table.item(1, 1).text(), 'cell 1.1'); table.item(1, 1).setText('other');"
                   "test.vp('cells')"),
              "false");
    EXPECT_TRUE(entries().last().detail.endsWith("row 2, column 2: expected \"cell 1.1\", found \"other\""));

    EXPECT_EQ(text("createVisualVP(button, 'look', {tolerance: 3, masks: [[0, 0, 2, 2]]})"),
              folder + "look.json");
    EXPECT_EQ(text("test.vp('look')"), "true");
    EXPECT_EQ(text("button.text = 'Other'; test.vpWithObject('look', button)"), "false");
    EXPECT_TRUE(entries().last().detail.contains("screenshot: "));
    result.setUpdatesVerificationPoints(true);
    EXPECT_TRUE(results("test.vpWithObject('look', button)")
                    .startsWith("warning|Verification point 'look' was renewed|"));
    EXPECT_EQ(results("test.vpWithObject('look', button)"), "pass|Verification point 'look'|");
    ASSERT_TRUE(QFile::remove(folder + "look.png"));
    EXPECT_TRUE(results("test.vpWithObject('look', button)").endsWith("look.png' was missing"));
    EXPECT_EQ(results("test.vpWithObject('look', button)"), "pass|Verification point 'look'|");
    EXPECT_EQ(results("test.vpWithObject('fresh', table)"),
              "warning|Verification point 'fresh' was made|" + folder + "fresh.json");
    EXPECT_EQ(results("test.vp('fresh')"), "pass|Verification point 'fresh'|");

    const std::pair<const char*, const char*> wrong[] = {
        {"createVP(button)", "Error: Wrong number of arguments (1), use createVP(object, name[, options])"},
        {"createVisualVP()",
         "Error: Wrong number of arguments (0), use createVisualVP(object, name[, options])"},
        {"createVP(button, 'x', {properties: ['nosuch']})", "Error: QPushButton has no property 'nosuch'"},
        {"createVP(button, 'x', {table: true})",
         "Error: QPushButton is no table: it has no rows and columns"},
        {"createVisualVP(button, 'x', {properties: ['text']})",
         "Error: There is no option 'properties' here, only tolerance, differingPixels, masks"},
    };
    for (const auto& [code, expected] : wrong)
        EXPECT_EQ(thrown(code), expected) << code;
    EXPECT_TRUE(thrown("createVisualVP(button, 'x', {masks: [[1, 2]]})")
                    .endsWith("each of 'masks' has to be [x, y, width, height]"));
    EXPECT_FALSE(QFile::exists(folder + "x.json"));
    EXPECT_FALSE(QFile::exists(folder + "x.png")) << "nothing of it is left";
}

TEST_F(JsScreensTest, TablesAreVerifiedCellByCell)
{
    ASSERT_TRUE(run("var table = waitForObjectExists({type: 'QTableWidget', name: 'table'})"));
    writePoint("table", R"({"checks": [{"table": [["cell 0.0", "cell 0.1"], [null, "cell 1.1"],
        ["cell 2.0", null]]}]})");
    writePoint("wrong", R"({"checks": [{"table": [["cell 0.0", "other"], ["cell 1.0"]]}]})");
    EXPECT_EQ(results("test.vpWithObject('table', table)"), "pass|Verification point 'table'|");
    EXPECT_EQ(results("test.vpWithObject('wrong', table)"),
              "fail|Verification point 'wrong'|table: expected 2 rows, found 3\n"
              "row 1, column 2: expected \"other\", found \"cell 0.1\"\n"
              "row 2: expected 1 columns, found 2");
    EXPECT_EQ(thrown("test.vpWithObject('table', button)"),
              "TypeError: QPushButton is no table: it has no rows and columns");
}

TEST_F(JsScreensTest, ScreenshotsAreKept)
{
    EXPECT_EQ(results("test.attachDesktopScreenshot(); test.attachImage(button, 'the button')"),
              "log|Screenshot of the desktop|\nlog|the button|");
    for (const ResultEntry& entry : entries())
        EXPECT_FALSE(QImage(entry.attachments.value(0).path).isNull());
    EXPECT_TRUE(text("object.grabScreenshot(button)").startsWith(outputFolder()));
    EXPECT_EQ(text("highlightObject(button, 50); 'framed'"), "framed");
    run("testSettings.logScreenshotOnFail = true; test.verify(true); test.verify(false)");
    EXPECT_EQ(entries().last().attachments.size(), 1);
    EXPECT_EQ(entries()[entries().size() - 2].attachments.size(), 0);
}

/** An X display of its own. */
class Display
{
public:
    Display()
    {
        m_server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "321x200x24", "-nolisten", "tcp"});
        while (m_server.waitForReadyRead(20'000) && !m_server.canReadLine()) {
        }
        const QByteArray number = m_server.readLine().trimmed();
        EXPECT_FALSE(number.isEmpty()) << "Xvfb did not start";
        qputenv("DISPLAY", ':' + number);
    }
    ~Display()
    {
        qunsetenv("DISPLAY");
        m_server.terminate();
        m_server.waitForFinished(10'000);
    }
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

private:
    QProcess m_server;
};

using JsDisplayTest = ApiTest;

TEST_F(JsDisplayTest, AVideoAndAScreenshotOfTheDisplay)
{
    const Display display;
    EXPECT_EQ(results("test.attachDesktopScreenshot()"), "log|Screenshot of the desktop|");
    EXPECT_EQ(QImage(entries().last().attachments.value(0).path).size(), QSize(321, 200));
    EXPECT_EQ(results("test.startVideoCapture('watch')"), "log|watch|");
    EXPECT_EQ(thrown("test.startVideoCapture()"), "TypeError: A video is being captured already");
    EXPECT_EQ(results("test.stopVideoCapture()"), "log|Video capture stopped|");
    const Attachment video = entries().last().attachments.value(0);
    EXPECT_EQ(video.mimeType, "video/mp4");
    QProcess probe;
    probe.start("ffprobe",
                {"-v", "error", "-show_entries", "stream=width,height", "-of", "csv=p=0", video.path});
    ASSERT_TRUE(probe.waitForFinished(20'000));
    EXPECT_EQ(probe.readAllStandardOutput().trimmed(), "320,200") << "even sizes, for every player";
    EXPECT_EQ(thrown("test.stopVideoCapture()"),
              "TypeError: test.stopVideoCapture() without test.startVideoCapture()");
    EXPECT_EQ(results("test.startVideoCapture()"), "log|Video capture started|");
    result.finish();
    EXPECT_EQ(entries().last().message, "Video capture ended with the test case");
    EXPECT_GT(QFileInfo(entries().last().attachments.value(0).path).size(), 1000);
    result.finish();
    EXPECT_EQ(entries().last().attachments.size(), 1) << "once";
}

} // namespace
} // namespace Torvix
