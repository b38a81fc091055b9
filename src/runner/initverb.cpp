#include "runner/applications.h"
#include "runner/plugin.h"
#include "runner/runverb.h"
#include "shared/settings/values.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <cstdio>

namespace Torvix {

namespace {

/** What a new suite, or a new test case, is about. */
struct Subject
{
    QString folder;                                ///< of the program; empty: in PATH, or not known yet
    QString command = QStringLiteral("\"myapp\""); ///< as it stands in a script
    QString windowType = QStringLiteral("QMainWindow");
};

constexpr char suiteSettings[] = "# Settings of this suite; what is left out has these values.\n"
                                 "[General]\n"
                                 "%1\n"
                                 "#Environment = \"LANG=C\"\n"
                                 "CaseTimeoutSecs = 300\n"
                                 "StartTimeoutSecs = 20\n"
                                 "WaitTimeoutMs = 20000\n"
                                 "OwnHome = false\n";

constexpr char names[] = "// The names of the application's objects, in one place.\n"
                         "export const mainWindow = { type: \"%1\", visible: true };\n";

constexpr char script[] = "import * as names from 'names.js';\n"
                          "\n"
                          "function main() {\n"
                          "    startApplication(%1);\n"
                          "    const window = waitForObject(names.mainWindow);\n"
                          "    test.compare(window.visible, true, \"the main window is shown\");\n"
                          "}\n";

QByteArray settingsOf(const Subject& subject)
{
    const QString folders = subject.folder.isEmpty()
                                ? QStringLiteral("#ApplicationFolders = \"../bin\",\"/opt/app/bin\"")
                                : QStringLiteral("ApplicationFolders = ") + quotedValue(subject.folder);
    return QString::fromLatin1(suiteSettings).arg(folders).toUtf8();
}

QByteArray namesOf(const Subject& subject)
{
    return QString::fromLatin1(names).arg(subject.windowType).toUtf8();
}

QByteArray scriptOf(const Subject& subject)
{
    return QString::fromLatin1(script).arg(subject.command).toUtf8();
}

/** The argument of startApplication(), as a script's text. */
QString commandFor(QString program)
{
    // A command may have arguments: a blank divides them.
    if (program.contains(QLatin1Char(' ')))
        program = QLatin1Char('"') + program + QLatin1Char('"');
    const QByteArray array = QJsonDocument(QJsonArray{program}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

/** Starts the program to see whether it can be tested, and how its first window is named. */
bool lookAt(const QString& program, Subject* subject, QString* error)
{
    installationPrefix();
    const QFileInfo file(program);
    subject->command = commandFor(file.fileName());
    if (program.contains(QLatin1Char('/')))
        subject->folder = QDir::cleanPath(file.absolutePath());
    ApplicationSettings settings;
    settings.folders = QStringList{subject->folder};
    Applications applications(settings);
    const SharedPtr<ApplicationContext> context =
        applications.start(QLatin1Char('"') + program + QLatin1Char('"'), -1, error);
    if (!context->isValid())
        return false;
    constexpr int windowTimeoutMs = 5000;
    const Inspector::WaitResult window =
        Inspector::self()->waitForObject(QStringLiteral("{visible=true}"), windowTimeoutMs);
    if (window.object)
        subject->windowType = window.object->className();
    return true;
}

/** What the other test cases of the suite start, as it stands there; null when none starts anything. */
QString commandOfSiblings(const QDir& suite)
{
    static const QRegularExpression start(
        QStringLiteral(R"(startApplication\(\s*("([^"\\]|\\.)*"|'([^'\\]|\\.)*'))"));
    for (const QString& name : suite.entryList({QStringLiteral("tst_*")}, QDir::Dirs, QDir::Name)) {
        QFile file(suite.filePath(name + QStringLiteral("/test.js")));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QRegularExpressionMatch match = start.match(QString::fromUtf8(file.readAll()));
        if (match.hasMatch())
            return match.captured(1);
    }
    return {};
}

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
    Subject subject;
    if (!options.program.isEmpty() && !lookAt(options.program, &subject, &error))
        return fail(ExitFailures, error);
    bool made = false;
    if (folder.dirName().startsWith(QLatin1String("tst_"))) {
        const QString command = options.program.isEmpty() ? commandOfSiblings(above) : QString();
        if (!command.isEmpty())
            subject.command = command;
        made = writeNew(folder.absoluteFilePath(QStringLiteral("test.js")), scriptOf(subject), &error);
    } else {
        made =
            writeNew(folder.absoluteFilePath(QStringLiteral("suite.ini")), settingsOf(subject), &error) &&
            writeNew(folder.absoluteFilePath(QStringLiteral("jsconfig.json")), jsConfig(), &error) &&
            writeNew(folder.absoluteFilePath(QStringLiteral("shared/scripts/names.js")), namesOf(subject),
                     &error) &&
            writeNew(folder.absoluteFilePath(QStringLiteral("tst_first/test.js")), scriptOf(subject), &error);
    }
    return made ? ExitPassed : fail(ExitInternal, error);
}

} // namespace Torvix
