#include "runner/suite.h"

#include "shared/settings/settings.h"

#include <QDir>
#include <QFileInfo>

#include <functional>
#include <utility>

namespace Torvix {

namespace {

QStringList* warnings = nullptr;

void keepWarning(QtMsgType, const QMessageLogContext&, const QString& text)
{
    *warnings += text;
}

/** The store tells of faults in a file by warnings; here they are errors. */
class WarningCatcher
{
public:
    WarningCatcher()
        : m_previousList(std::exchange(warnings, &m_caught))
        , m_previous(qInstallMessageHandler(keepWarning))
    {
    }
    ~WarningCatcher()
    {
        qInstallMessageHandler(m_previous);
        warnings = m_previousList;
    }
    WarningCatcher(const WarningCatcher&) = delete;
    WarningCatcher& operator=(const WarningCatcher&) = delete;
    const QStringList& caught() const { return m_caught; }

private:
    QStringList m_caught;
    QStringList* m_previousList;
    QtMessageHandler m_previous;
};

/** A key that a file may have, and what takes its value in; false for a value of the wrong kind. */
struct KeyRow
{
    const char* key;
    const char* kind;
    std::function<bool(const Settings&, const QString& key)> read;
};

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

/** False with one line about the first thing that is wrong. */
bool readFile(const QString& path, const QVector<KeyRow>& keys, QString* error)
{
    if (!QFileInfo::exists(path))
        return true;
    if (!QFileInfo(path).isReadable()) {
        *error = QStringLiteral("%1: cannot be read").arg(path);
        return false;
    }
    const WarningCatcher catcher;
    Settings settings(path);
    QStringList known;
    for (const KeyRow& row : keys)
        known += QLatin1String(row.key);
    for (const QString& group : settings.groupList()) {
        if (group != QLatin1String("General")) {
            *error = QStringLiteral("%1: unknown group [%2]; there is only [General]").arg(path, group);
            return false;
        }
    }
    for (const QString& key : settings.entryList(QStringLiteral("General"), QString())) {
        const int index = known.indexOf(key);
        if (index < 0) {
            *error = QStringLiteral("%1: unknown key '%2'; known are %3")
                         .arg(path, key, known.join(QLatin1String(", ")));
            return false;
        }
        if (!keys[index].read(settings, key)) {
            *error = QStringLiteral("%1: '%2' has to be %3").arg(path, key, QLatin1String(keys[index].kind));
            return false;
        }
    }
    if (!catcher.caught().isEmpty()) {
        *error = QStringLiteral("%1: %2").arg(path, catcher.caught().first());
        return false;
    }
    return true;
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
    return readFile(path,
                    {
                        {"ApplicationFolders", stringList, list(&settings->applicationFolders)},
                        {"Environment", stringList, list(&settings->environment)},
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
    return readFile(folder.absoluteFilePath(QStringLiteral("test.ini")),
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
        if (!isCaseFolder(caseFolder))
            continue;
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
        *error = QStringLiteral("%1: there is no such suite or test case").arg(path);
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
