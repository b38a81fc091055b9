#include "runner/reportfiles.h"

#include "runner/runverb.h"
#include "testsupport/report/resultstream.h"

#include <QDir>
#include <QSaveFile>

#include <cstdio>

namespace Torvix {

QString streamFileName()
{
    return QStringLiteral("results.ndjson");
}

RunReport readStreamFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? readResultStream(file) : RunReport();
}

bool writeReport(const RunReport& report, const Reporter& reporter, const ReporterOptions& options,
                 const QString& path, QString* error)
{
    const QByteArray bytes = reporter.render(report, options);
    if (path == QLatin1String("-"))
        return std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stdout) ==
               std::size_t(bytes.size());
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    *error = QStringLiteral("The report '%1' cannot be written: %2").arg(path, file.errorString());
    return false;
}

bool writeReports(const RunReport& report, const RunOptions& options, QString* page, QString* error)
{
    ReporterOptions reporting;
    reporting.baseFolder = QDir::currentPath();
    reporting.strictJUnit = options.strictJUnit;
    const QDir folder(options.outputFolder);
    const Reporter* html = reporterByName(QStringLiteral("html"));
    *page = folder.absoluteFilePath(QLatin1String(html->fileName));
    if (!writeReport(report, *html, reporting, *page, error))
        return false;
    for (const ReporterRequest& request : options.reporters) {
        const Reporter* reporter = reporterByName(request.name);
        const QString path = request.path.isEmpty()
                                 ? folder.absoluteFilePath(QLatin1String(reporter->fileName))
                                 : request.path;
        if (!writeReport(report, *reporter, reporting, path, error))
            return false;
    }
    // Annotations are read from the log of the workflow.
    if (qEnvironmentVariable("GITHUB_ACTIONS") == QLatin1String("true"))
        std::printf("%s", renderGitHub(report, reporting).constData());
    return true;
}

int reportVerb(const ReportOptions& options)
{
    QVector<RunReport> parts;
    for (const QString& path : options.streams) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return fail(
                ExitUsage,
                QStringLiteral("The result stream '%1' cannot be read: %2").arg(path, file.errorString()));
        parts += readResultStream(file);
    }
    const RunReport report = mergeReports(parts);
    ReporterOptions reporting;
    reporting.baseFolder = QDir::currentPath();
    reporting.strictJUnit = options.strictJUnit;
    QVector<ReporterRequest> requests = options.reporters;
    if (requests.isEmpty())
        requests = {{QStringLiteral("summary"), QStringLiteral("-")}};
    for (const ReporterRequest& request : requests) {
        const Reporter* reporter = reporterByName(request.name);
        const QString path =
            request.path.isEmpty() ? QString(QLatin1String(reporter->fileName)) : request.path;
        QString error;
        if (!writeReport(report, *reporter, reporting, path, &error))
            return fail(ExitInternal, error);
        if (path != QLatin1String("-"))
            std::printf("%s\n", qUtf8Printable(QFileInfo(path).absoluteFilePath()));
    }
    return ExitPassed;
}

} // namespace Torvix
