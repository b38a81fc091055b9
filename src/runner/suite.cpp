#include "runner/suite.h"

#include "runner/inifile.h"
#include "shared/text/nearestname.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Torvix {

namespace {

constexpr char positiveNumber[] = "a number above 0, without quotes";
constexpr char stringList[] = "quoted strings, separated by commas";

bool readSuiteFile(const QString& path, SuiteSettings* settings, QString* error)
{
    const auto positive = [](int* number) {
        return [number](const QString& value) { return readPositiveNumber(value, number); };
    };
    return readIniFile(
        path,
        {
            {"ApplicationFolders", stringList,
             [settings](const QString& value) { return readStrings(value, &settings->applicationFolders); }},
            {"Environment", "quoted strings NAME=value, separated by commas",
             [settings](const QString& value) {
                 return readStrings(value, &settings->environment) &&
                        std::all_of(settings->environment.begin(), settings->environment.end(),
                                    [](const QString& each) { return each.indexOf('=') > 0; });
             }},
            {"CaseTimeoutSecs", positiveNumber, positive(&settings->caseTimeoutSecs)},
            {"StartTimeoutSecs", positiveNumber, positive(&settings->startTimeoutSecs)},
            {"WaitTimeoutMs", positiveNumber, positive(&settings->waitTimeoutMs)},
            {"OwnHome", "true or false",
             [settings](const QString& value) { return readFlag(value, &settings->ownHome); }},
        },
        error);
}

bool readCase(const QDir& folder, TestCase* testCase, QString* error)
{
    testCase->name = folder.dirName();
    testCase->folder = folder.absolutePath();
    testCase->script = folder.absoluteFilePath(QStringLiteral("test.js"));
    return readIniFile(
        folder.absoluteFilePath(QStringLiteral("test.ini")),
        {
            {"Tags", stringList,
             [testCase](const QString& value) { return readStrings(value, &testCase->tags); }},
            {"TimeoutSecs", positiveNumber,
             [testCase](const QString& value) { return readPositiveNumber(value, &testCase->timeoutSecs); }},
        },
        error);
}

bool isCaseFolder(const QDir& folder)
{
    return folder.dirName().startsWith(QLatin1String("tst_")) && folder.exists(QStringLiteral("test.js"));
}

bool readCases(const QDir& folder, Suite* suite, QString* error)
{
    const QStringList names =
        folder.entryList({QStringLiteral("tst_*")}, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names) {
        const QDir caseFolder(folder.absoluteFilePath(name));
        if (!isCaseFolder(caseFolder)) {
            suite->leftOut += caseFolder.absolutePath();
            continue;
        }
        TestCase testCase;
        if (!readCase(caseFolder, &testCase, error))
            return false;
        suite->cases += testCase;
    }
    if (suite->cases.isEmpty()) {
        *error = QStringLiteral("%1: there is no test case in it; one is a folder tst_NAME with a test.js")
                     .arg(folder.absolutePath());
        return false;
    }
    return true;
}

} // namespace

bool loadSuite(const QString& path, Suite* suite, QString* error)
{
    QFileInfo info(path);
    if (!info.exists()) {
        *error = QStringLiteral("%1: there is no such suite or test case%2")
                     .arg(path, didYouMean(info.fileName(), info.dir().entryList(QDir::Dirs)));
        return false;
    }
    if (info.isFile())
        info.setFile(info.absolutePath());
    QDir folder(info.absoluteFilePath());
    folder.setPath(folder.canonicalPath());
    const bool isCase = isCaseFolder(folder);
    QDir suiteFolder = folder;
    if (isCase)
        suiteFolder.cdUp();
    suite->name = suiteFolder.dirName();
    suite->folder = suiteFolder.absolutePath();
    if (!readSuiteFile(suiteFolder.absoluteFilePath(QStringLiteral("suite.ini")), &suite->settings, error))
        return false;
    for (QString& each : suite->settings.applicationFolders)
        each = QDir::cleanPath(suiteFolder.absoluteFilePath(each));
    if (!isCase)
        return readCases(folder, suite, error);
    TestCase testCase;
    if (!readCase(folder, &testCase, error))
        return false;
    suite->cases += testCase;
    return true;
}

} // namespace Torvix
