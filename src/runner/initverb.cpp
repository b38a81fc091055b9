#include "runner/plugin.h"
#include "runner/runverb.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace Torvix {

namespace {

constexpr char suiteSettings[] = "# Settings of this suite; what is left out has these values.\n"
                                 "[General]\n"
                                 "#ApplicationFolders = \"../bin\",\"/opt/app/bin\"\n"
                                 "#Environment = \"LANG=C\"\n"
                                 "CaseTimeoutSecs = 300\n"
                                 "StartTimeoutSecs = 20\n"
                                 "WaitTimeoutMs = 20000\n"
                                 "OwnHome = false\n";

constexpr char names[] = "// The names of the application's objects, in one place.\n"
                         "export const mainWindow = { type: \"QMainWindow\", visible: true };\n";

constexpr char script[] = "import * as names from 'names.js';\n"
                          "\n"
                          "function main() {\n"
                          "    startApplication(\"myapp\");\n"
                          "    const window = waitForObject(names.mainWindow);\n"
                          "    test.compare(window.visible, true, \"the main window is shown\");\n"
                          "}\n";

/** Completion and checks in editors, with the declarations that come with this installation. */
QByteArray jsConfig()
{
    const QJsonObject options{
        {"target", "esnext"},
        {"module", "esnext"},
        {"moduleResolution", "node"},
        {"moduleDetection", "force"}, // every test case has a main() of its own
        {"lib", QJsonArray{"esnext"}},
        {"types", QJsonArray()},
        {"checkJs", true},
        {"noEmit", true},
        {"baseUrl", "."},
        {"paths", QJsonObject{{"*", QJsonArray{"shared/scripts/*"}}}},
    };
    const QString declarations =
        installationPrefix() + QStringLiteral("/scriptmodules/javascript/torvix.d.ts");
    return QJsonDocument(
               QJsonObject{{"compilerOptions", options}, {"include", QJsonArray{"**/*.js", declarations}}})
        .toJson();
}

/** False with the error filled; never writes over a file. */
bool writeNew(const QString& path, const QByteArray& text, QString* error)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly) && file.write(text) == text.size()) {
        std::printf("%s\n", qUtf8Printable(path));
        return true;
    }
    *error = QStringLiteral("'%1' cannot be made: %2").arg(path, file.errorString());
    return false;
}

} // namespace

int initVerb(const InitOptions& options)
{
    const QFileInfo target(options.path);
    const QDir folder(target.absoluteFilePath());
    if (target.exists() && (!target.isDir() || !folder.isEmpty()))
        return fail(ExitUsage,
                    QStringLiteral("'%1' is there already; give the path of a new folder").arg(options.path));
    const QDir above(target.absolutePath());
    if (above.exists(QStringLiteral("suite.ini")) && !folder.dirName().startsWith(QLatin1String("tst_")))
        return fail(ExitUsage, QStringLiteral("'%1' is a suite; a test case in it is named tst_%2")
                                   .arg(above.dirName(), folder.dirName()));
    QString error;
    bool made = false;
    if (folder.dirName().startsWith(QLatin1String("tst_"))) {
        made = writeNew(folder.absoluteFilePath(QStringLiteral("test.js")), script, &error);
    } else {
        made = writeNew(folder.absoluteFilePath(QStringLiteral("suite.ini")), suiteSettings, &error) &&
               writeNew(folder.absoluteFilePath(QStringLiteral("jsconfig.json")), jsConfig(), &error) &&
               writeNew(folder.absoluteFilePath(QStringLiteral("shared/scripts/names.js")), names, &error) &&
               writeNew(folder.absoluteFilePath(QStringLiteral("tst_first/test.js")), script, &error);
    }
    return made ? ExitPassed : fail(ExitInternal, error);
}

} // namespace Torvix
