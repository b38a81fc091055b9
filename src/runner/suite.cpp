#include "runner/suite.h"

#include "runner/inifile.h"
#include "shared/settings/settings.h"
#include "shared/text/nearestname.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Torvix {

namespace {

bool readPositive(const Settings& settings, const QString& key, int* value)
{
    const int number = settings.readNumEntry(QStringLiteral("General"), key, -1);
    if (number <= 0)
        return false;
    *value = number;
    return true;
}

bool readList(const Settings& settings, const QString& key, QStringList* value)
{
    *value = settings.readListEntry(QStringLiteral("General"), key);
    return !value->isEmpty();
}

constexpr char positiveNumber[] = "a number above 0, without quotes";
constexpr char stringList[] = "quoted strings, separated by commas";

bool readSuiteFile(const QString& path, SuiteSettings* settings, QString* error)
{
    const auto positive = [](int* value) {
        return [value](const Settings& file, const QString& key) { return readPositive(file, key, value); };
    };
    const auto list = [](QStringList* value) {
        return [value](const Settings& file, const QString& key) { return readList(file, key, value); };
    };
    const auto flag = [](bool* value) {
        return [value](const Settings& file, const QString& key) {
            *value = file.readBoolEntry(QStringLiteral("General"), key, false);
            return *value || !file.readBoolEntry(QStringLiteral("General"), key, true);
        };
    };
    return readIniFile(path,
                       {
                           {"ApplicationFolders", stringList, list(&settings->applicationFolders)},
                           {"Environment", "quoted strings NAME=value, separated by commas",
                            [settings](const Settings& file, const QString& key) {
                                return readList(file, key, &settings->environment) &&
                                       std::all_of(settings->environment.begin(), settings->environment.end(),
                                                   [](const QString& each) { return each.indexOf('=') > 0; });
                            }},
                           {"CaseTimeoutSecs", positiveNumber, positive(&settings->caseTimeoutSecs)},
                           {"StartTimeoutSecs", positiveNumber, positive(&settings->startTimeoutSecs)},
                           {"WaitTimeoutMs", positiveNumber, positive(&settings->waitTimeoutMs)},
                           {"OwnHome", "true or false", flag(&settings->ownHome)},
                       },
                       error);
}

bool readCase(const QDir& folder, TestCase* testCase, QString* error)
{
    testCase->name = folder.dirName();
    testCase->folder = folder.absolutePath();
    testCase->script = folder.absoluteFilePath(QStringLiteral("test.js"));
    return readIniFile(folder.absoluteFilePath(QStringLiteral("test.ini")),
                       {
                           {"Tags", stringList,
                            [testCase](const Settings& file, const QString& key) {
                                return readList(file, key, &testCase->tags);
                            }},
                           {"TimeoutSecs", positiveNumber,
                            [testCase](const Settings& file, const QString& key) {
                                return readPositive(file, key, &testCase->timeoutSecs);
                            }},
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
