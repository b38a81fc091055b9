#include "interpreter/js/objects/jstorvixinfo.h"

#include "interpreter/base/interpreter.h"
#include "interpreter/base/runnerinterface.h"

#include <QDir>

namespace Torvix {

namespace {

constexpr int versionMajor = 7;
constexpr int versionMinor = 1;
constexpr int versionPatch = 0;
/** One byte each, the lowest being that of a release. */
constexpr int versionNumber = versionMajor << 24 | versionMinor << 16 | versionPatch << 8 | 0xf0;

RunnerInterface::TestEnvironment testEnvironment()
{
    const Interpreter* interpreter = Interpreter::self();
    RunnerInterface* runner = interpreter ? interpreter->runnerInterface() : nullptr;
    return runner ? runner->testEnvironment() : RunnerInterface::TestEnvironment();
}

QString withNativeSeparators(QString path)
{
    return path.replace(QLatin1Char('/'), QDir::separator());
}

using Environment = RunnerInterface::TestEnvironment;

/** The folder of the test case's script. */
QString testCaseFolder(const Environment& environment)
{
    const QString script = QDir::cleanPath(environment.testCase);
    return withNativeSeparators(script.left(script.lastIndexOf(QLatin1Char('/'))));
}
QString testCaseName(const Environment& environment)
{
    return environment.testCaseName;
}
QString testSuiteName(const Environment& environment)
{
    return environment.testSuiteName;
}

/** A property that tells of the test under way; while there is none it is like any other. */
template <QString (*answer)(const Environment&)>
KJS::Value readOfTest(KJS::ExecState*, const JsTorvixInfoImp&)
{
    const Environment environment = testEnvironment();
    return environment.testCase.isEmpty() ? KJS::Value() : KJS::String(answer(environment));
}

/** As long as it is what it was at the start, the constant tells it, with a constant's attributes. */
KJS::Value readTestCase(KJS::ExecState*, const JsTorvixInfoImp& self)
{
    const Environment environment = testEnvironment();
    const QString now = environment.testCase.isEmpty() ? self.scriptAtStart() : testCaseFolder(environment);
    return now == self.folderAtStart() ? KJS::Value() : KJS::String(now);
}

/** Who asks for the folder wants to write there. */
KJS::Value makeResultDir(KJS::ExecState*, const JsTorvixInfoImp&)
{
    const QString folder = QDir::cleanPath(testEnvironment().resultDir);
    if (!folder.isEmpty())
        QDir().mkpath(folder);
    return KJS::Value();
}

} // namespace

const JsPropertyRow<JsTorvixInfoImp> JsTorvixInfoImp::properties[] = {
    {"testCase", readTestCase},
    {"testCaseName", readOfTest<testCaseName>},
    {"testSuiteName", readOfTest<testSuiteName>},
    {"resultDir", makeResultDir},
    {nullptr},
};

JsTorvixInfoImp::JsTorvixInfoImp(KJS::ExecState* exec)
    : WithProperties(exec->interpreter()->builtinObjectPrototype())
{
    const Environment environment = testEnvironment();
    m_scriptAtStart = environment.testCase;
    m_folderAtStart = environment.testCase.isEmpty() ? QString() : testCaseFolder(environment);
    putConstant(this, "version", KJS::Number(versionNumber));
    putConstant(this, "major", KJS::Number(versionMajor));
    putConstant(this, "minor", KJS::Number(versionMinor));
    putConstant(this, "patch", KJS::Number(versionPatch));
    putConstant(
        this, "version_str",
        KJS::String(QStringLiteral("%1.%2.%3").arg(versionMajor).arg(versionMinor).arg(versionPatch)));
    putConstant(this, "settingsGroup", KJS::String(environment.settingsGroup));
    putConstant(this, "defaultDevice", KJS::String(environment.defaultDevice));
    putConstant(this, "testCase", KJS::String(m_folderAtStart));
    putConstant(this, "resultDir", KJS::String(withNativeSeparators(QDir::cleanPath(environment.resultDir))));
}

} // namespace Torvix
