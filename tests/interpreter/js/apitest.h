#pragma once

#include "interpreter/js/scripttest.h"
#include "report/streamwriter.h"
#include "report/texts.h"
#include "support/runreport.h"
#include "testsupport/testresult.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>

namespace Torvix {

/** The folder in which a test case runs. */
class CurrentFolder
{
public:
    explicit CurrentFolder(const QString& path) : m_before(QDir::currentPath()) { QDir::setCurrent(path); }
    ~CurrentFolder() { QDir::setCurrent(m_before); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

private:
    QString m_before;
};

/** A script with a result sink that streams, in a test case's folder of its own. */
class ApiTest : public ScriptTest
{
protected:
    ApiTest()
    {
        m_stream.open(QIODevice::ReadWrite);
        m_writer.runStarted(QStringLiteral("run"), 1, {});
        m_writer.caseStarted(CaseSummary(), 1);
        interpreter->initTestFunctions(&result);
    }

    /** Another interpreter in the place of the first: there is only one current one. */
    void renewInterpreter(RunnerInterface* newRunner)
    {
        interpreter.reset();
        interpreter = std::make_unique<JsInterpreter>(newRunner);
        interpreter->initTestFunctions(&result);
    }

    /** The results so far, as anybody reads them from the stream. */
    QVector<ResultEntry> entries()
    {
        const RunReport report = wholeReport(recordedRun(m_stream.buffer()));
        return report.cases.value(0).attempts.value(0).entries;
    }

    /** "type|message|detail" of the results that this code adds. */
    QString results(const QString& code)
    {
        const int before = entries().size();
        EXPECT_TRUE(run(code)) << code.toStdString() << " gave " << interpreter->errorMessage().toStdString();
        QStringList lines;
        const QVector<ResultEntry> all = entries();
        for (const ResultEntry& entry : all.mid(before))
            lines += resultTypeName(entry.type) + '|' + entry.message + '|' + findings(entry);
        return lines.join('\n');
    }

    QString outputFolder() const { return directory.filePath(QStringLiteral("results")); }

private:
    QBuffer m_stream;
    ResultStreamWriter m_writer{&m_stream};
    CurrentFolder m_folder{directory.path()};

protected:
    TestResult result{&m_writer, outputFolder()};
};

} // namespace Torvix
