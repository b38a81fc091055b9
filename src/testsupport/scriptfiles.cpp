#include "testsupport/scriptfiles.h"

#include "interpreter/base/interpreter.h"
#include "interpreter/base/runnerinterface.h"

#include <QDir>
#include <QFileInfo>

namespace Torvix {

namespace {

QStringList foldersOf(const QString& kind)
{
    const QDir testCase(testCaseFolder());
    return {testCase.filePath(kind), QDir::cleanPath(testCase.filePath(QLatin1String("../shared/") + kind))};
}

QString findIn(const QStringList& folders, const QString& name)
{
    for (const QString& folder : folders) {
        const QFileInfo file(QDir(folder).filePath(name));
        if (file.exists())
            return file.absoluteFilePath();
    }
    return {};
}

} // namespace

QString testCaseFolder()
{
    const Interpreter* interpreter = Interpreter::self();
    if (interpreter && interpreter->runnerInterface()) {
        const QString script = interpreter->runnerInterface()->testEnvironment().testCase;
        if (!script.isEmpty())
            return QFileInfo(script).absolutePath();
    }
    return QDir::currentPath();
}

QString findTestSuiteFile(const QString& name, const QString& subdirectory, QString* places)
{
    QStringList folders = foldersOf(subdirectory);
    if (subdirectory == QLatin1String("scripts"))
        folders.prepend(testCaseFolder());
    if (places)
        *places = folders.join(QLatin1String(", "));
    return findIn(folders, name);
}

QString findImageFile(const QString& name)
{
    const QString found = findIn(QStringList(testCaseFolder()) + foldersOf(QStringLiteral("images")), name);
    return found.isEmpty() ? name : found;
}

} // namespace Torvix
