#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/** A suite as "torvixrunner init" makes it, and what the compiler says to it. */
class Declarations : public testing::Test
{
protected:
    void SetUp() override
    {
        suite = folder.filePath(QStringLiteral("suite_new"));
        QProcess init;
        init.start(QStringLiteral(TORVIX_RUNNER), {QStringLiteral("init"), suite});
        ASSERT_TRUE(init.waitForFinished(30'000));
        ASSERT_EQ(0, init.exitCode());
    }

    void write(const QString& name, const QByteArray& text)
    {
        QFile file(suite + '/' + name);
        QDir().mkpath(QFileInfo(file).path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    /** What it complains about, a line for each. */
    QStringList complaints(const QString& project)
    {
        QProcess compiler;
        compiler.start(QStringLiteral(TORVIX_TSC), {QStringLiteral("-p"), project + "/jsconfig.json"});
        EXPECT_TRUE(compiler.waitForFinished(100'000));
        const QString text = QString::fromUtf8(compiler.readAll());
        EXPECT_EQ(text.isEmpty(), compiler.exitCode() == 0) << text.toStdString();
        return text.split('\n', Qt::SkipEmptyParts);
    }

    QTemporaryDir folder;
    QString suite;
};

TEST_F(Declarations, FitTheApiAndNewSuites)
{
    QFile api(QStringLiteral(TORVIX_TEST_SOURCE_DIR "/api.js"));
    ASSERT_TRUE(api.open(QIODevice::ReadOnly));
    write("tst_api/test.js", api.readAll());
    EXPECT_EQ("", complaints(suite).join('\n').toStdString());
}

TEST_F(Declarations, FitTheExampleSuites)
{
    const QDir examples(QStringLiteral(TORVIX_EXAMPLES));
    const QStringList suites = examples.entryList({"suite_*"}, QDir::Dirs);
    EXPECT_EQ(3, suites.size());
    for (const QString& each : suites)
        EXPECT_EQ("", complaints(examples.filePath(each)).join('\n').toStdString());
}

TEST_F(Declarations, TellOfEachMisuse)
{
    const QVector<QByteArray> mistakes = {
        "clickButton();",
        "test.verfy(true);",
        "startAplication('x');",
        "waitForObject({ type: 5 });",
        "const gone = waitForObject('x', '20').text;",
        "object.globalBounds('x').widht;",
        "test.resultCount('failures');",
        "torvixinfo.major = 8;",
        "console.log('x');",
        "findObject(waitForObject('x'));",
        "test.attachImage({ type: 'QLabel' });",
        "findImage('x.png', { object: 'x' });",
        "document.title;",
        "testData.field('users.csv', 'name');",
        "testData.create('elsewhere', 'a.csv');",
    };
    write("tst_bad/test.js", mistakes.toList().join('\n'));
    const QStringList seen = complaints(suite).filter(QStringLiteral("error TS"));
    ASSERT_EQ(mistakes.size(), seen.size()) << seen.join('\n').toStdString();
    for (int i = 0; i < seen.size(); ++i)
        EXPECT_TRUE(seen[i].contains(QStringLiteral("tst_bad/test.js(%1,").arg(i + 1)))
            << seen[i].toStdString();
}

} // namespace
