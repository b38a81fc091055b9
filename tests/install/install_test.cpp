#include "support/runreport.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using namespace Torvix;

struct Finished
{
    int code = -1;
    QString output;
};

Finished execute(const QString& program, const QStringList& arguments, const QString& folder,
                 const QMap<QString, QString>& variables = {})
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* unwanted : {"TORVIX_PREFIX", "LD_LIBRARY_PATH", "QT_PLUGIN_PATH"})
        environment.remove(QLatin1String(unwanted));
    for (auto it = variables.begin(); it != variables.end(); ++it)
        environment.insert(it.key(), it.value());
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(folder);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.waitForFinished(100'000);
    return {process.exitCode(), QString::fromUtf8(process.readAll())};
}

/** The build's prefix, installed into a temporary folder and then moved. */
class InstalledPrefix : public testing::Test
{
protected:
    void SetUp() override
    {
        const QString first = m_folder.filePath(QStringLiteral("first"));
        const Finished installed = execute(QStringLiteral(TORVIX_CMAKE),
                                           {"--install", TORVIX_TEST_BINARY_DIR, "--prefix", first}, ".");
        ASSERT_EQ(0, installed.code) << installed.output.toStdString();
        m_prefix = QDir(m_folder.path()).canonicalPath() + "/moved to here";
        ASSERT_TRUE(QDir().rename(first, m_prefix));
    }

    QString runner() const { return m_prefix + "/bin/torvixrunner"; }

    /** Our libraries that the processes loaded: the loader writes a file for each process. */
    QSet<QString> loadedLibraries() const
    {
        QSet<QString> libraries;
        for (const QString& name : QDir(m_folder.path()).entryList({"loader.*"})) {
            QFile file(m_folder.filePath(name));
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            for (const QByteArray& line : file.readAll().split('\n')) {
                const int start = line.indexOf("calling init: ");
                if (start >= 0 && line.contains("/libtorvix"))
                    libraries += QDir::cleanPath(QString::fromUtf8(line.mid(start + 14)));
            }
        }
        return libraries;
    }

    QTemporaryDir m_folder;
    QString m_prefix;
};

TEST_F(InstalledPrefix, RunsTheExampleSuiteFromWhereverItWasMoved)
{
    const Finished run =
        execute(runner(), {"run", m_prefix + "/share/torvix/examples/suite_calculator"}, m_folder.path(),
                {{"LD_DEBUG", "files"}, {"LD_DEBUG_OUTPUT", m_folder.filePath("loader")}});
    EXPECT_EQ(0, run.code) << run.output.toStdString();
    const RunReport report = readReportFile(m_folder.filePath("results/results.ndjson"));
    EXPECT_GT(report.cases.size(), 0) << run.output.toStdString();
    EXPECT_EQ(report.cases.size(), report.count(CaseOutcome::Passed));

    // The build tree is still there: nothing may have come from it.
    const QSet<QString> libraries = loadedLibraries();
    for (const QString& library : libraries)
        EXPECT_TRUE(library.startsWith(m_prefix + '/')) << library.toStdString();
    for (const char* needed :
         {"/lib/libtorvixjs.so", "/lib/libtorvixkjs.so", "/lib/qt5/plugins/generic/libtorvixagent.so"})
        EXPECT_TRUE(libraries.contains(m_prefix + needed)) << needed;
}

TEST_F(InstalledPrefix, FindsItselfAlsoThroughALinkAndHasWhatItRefersTo)
{
    const QString link = m_folder.filePath(QStringLiteral("torvixrunner"));
    ASSERT_TRUE(QFile::link(runner(), link));
    const Finished doctor = execute(link, {"doctor"}, m_folder.path());
    EXPECT_EQ(0, doctor.code) << doctor.output.toStdString();
    EXPECT_TRUE(doctor.output.contains(m_prefix + "/lib/qt5/plugins")) << doctor.output.toStdString();
    for (const char* file :
         {"/scriptmodules/javascript/torvix.d.ts", "/lib/javascript/objectmaphelper.js",
          "/libexec/torvixdialog", "/share/doc/torvix/user-guide.md", "/share/doc/torvix/script-api.md"})
        EXPECT_TRUE(QFileInfo::exists(m_prefix + file)) << file;
}

} // namespace
