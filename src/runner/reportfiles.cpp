#include "runner/reportfiles.h"

#include "report/resultstream.h"
#include "runner/runverb.h"

#include <QDir>
#include <QSaveFile>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace Torvix {

namespace {

template <class Change>
void changeAttachments(RunReport* report, Change change)
{
    for (CaseReport& testCase : report->cases) {
        for (AttemptReport& attempt : testCase.attempts) {
            for (ResultEntry& entry : attempt.entries) {
                for (Attachment& attachment : entry.attachments)
                    attachment.path = change(attachment.path);
            }
        }
    }
}

RunReport readStream(QFile& file, const QDir& folder)
{
    RunReport report = readResultStream(file);
    changeAttachments(&report, [&folder](const QString& path) { return folder.absoluteFilePath(path); });
    return report;
}

bool openForReading(QFile* file, const QString& path)
{
    if (path == QLatin1String("-"))
        return file->open(stdin, QIODevice::ReadOnly);
    file->setFileName(path);
    return QFileInfo(path).isDir() ? false : file->open(QIODevice::ReadOnly);
}

bool writeOut(const QByteArray& bytes)
{
    const auto size = std::size_t(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
}

/** A report appears whole or not at all, unless the path is no file: a device or a pipe is written to. */
bool writeFile(const QString& path, const QByteArray& bytes, QString* reason)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile() && !info.isDir()) {
        QFile device(path);
        if (device.open(QIODevice::WriteOnly) && device.write(bytes) == bytes.size() && device.flush())
            return true;
        *reason = device.errorString();
        return false;
    }
    QSaveFile file(path);
    file.setDirectWriteFallback(true); // a folder in which only this file may be written
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    *reason = file.errorString();
    return false;
}

} // namespace

QString streamFileName()
{
    return QStringLiteral("results.ndjson");
}

RunReport readStreamFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? readStream(file, QFileInfo(path).absoluteDir()) : RunReport();
}

void removeAttachmentsOf(const RunReport& earlier, const QString& folder)
{
    const QString inside = QDir(folder).absolutePath() + QLatin1Char('/');
    RunReport report = earlier;
    changeAttachments(&report, [&](const QString& path) {
        if (QDir::cleanPath(path).startsWith(inside)) {
            QFile::remove(path);
            QDir().rmdir(QFileInfo(path).absolutePath()); // only when it is empty
        }
        return path;
    });
}

bool writeReport(RunReport report, const Reporter& reporter, const ReporterOptions& options,
                 const QString& path, QString* error)
{
    const bool isOutput = path == QLatin1String("-");
    const QDir folder = isOutput ? QDir::current() : QFileInfo(path).absoluteDir();
    changeAttachments(&report, [&folder](const QString& each) { return folder.relativeFilePath(each); });
    const QByteArray bytes = reporter.render(report, options);
    if (isOutput) {
        if (writeOut(bytes))
            return true;
        *error = QStringLiteral("The report '%1' cannot be written to the standard output: %2")
                     .arg(QLatin1String(reporter.name), QString::fromLocal8Bit(std::strerror(errno)));
        return false;
    }
    QString reason;
    if (writeFile(path, bytes, &reason))
        return true;
    *error = QStringLiteral("The report '%1' cannot be written: %2").arg(path, reason);
    return false;
}

QStringList writeReports(const RunReport& report, const RunOptions& options, QString* page)
{
    ReporterOptions reporting;
    reporting.baseFolder = QDir::currentPath();
    reporting.strictJUnit = options.strictJUnit;
    const QDir folder(options.outputFolder);
    QStringList errors;
    const auto make = [&](const Reporter& reporter, const QString& given) {
        const QString path =
            given.isEmpty() ? folder.absoluteFilePath(QLatin1String(reporter.fileName)) : given;
        QString error;
        if (writeReport(report, reporter, reporting, path, &error))
            return path;
        errors += QStringLiteral("%1; make room, then: torvixrunner report %2 --reporter %3:FILE")
                      .arg(error, folder.absoluteFilePath(streamFileName()), QLatin1String(reporter.name));
        return QString();
    };
    *page = make(*reporterByName(QStringLiteral("html")), QString());
    for (const ReporterRequest& request : options.reporters)
        make(*reporterByName(request.name), request.path);
    // Annotations are read from the log of the workflow.
    if (qEnvironmentVariable("GITHUB_ACTIONS") == QLatin1String("true"))
        make(*reporterByName(QStringLiteral("github")), QStringLiteral("-"));
    return errors;
}

int reportVerb(const ReportOptions& options)
{
    QVector<RunReport> parts;
    for (const QString& path : options.streams) {
        QFile file;
        if (!openForReading(&file, path)) {
            const QString reason =
                QFileInfo(path).isDir()
                    ? QStringLiteral("it is a folder; give the %1 in it").arg(streamFileName())
                    : file.errorString();
            return fail(ExitUsage,
                        QStringLiteral("The result stream '%1' cannot be read: %2").arg(path, reason));
        }
        parts +=
            readStream(file, file.fileName().isEmpty() ? QDir::current() : QFileInfo(path).absoluteDir());
        const RunReport& read = parts.last();
        if (read.cases.isEmpty() && !read.started.isValid())
            return fail(
                ExitUsage,
                QStringLiteral("'%1' is no result stream; a run writes it as %2 into its output folder")
                    .arg(path, streamFileName()));
    }
    const RunReport report = mergeReports(parts);
    ReporterOptions reporting;
    reporting.baseFolder = QDir::currentPath();
    reporting.strictJUnit = options.strictJUnit;
    QVector<ReporterRequest> requests = options.reporters;
    if (requests.isEmpty())
        requests = {{QStringLiteral("summary"), QStringLiteral("-")}};
    int code = ExitPassed;
    for (const ReporterRequest& request : requests) {
        const Reporter* reporter = reporterByName(request.name);
        const QString path =
            request.path.isEmpty() ? QString(QLatin1String(reporter->fileName)) : request.path;
        QString error;
        if (!writeReport(report, *reporter, reporting, path, &error))
            code = fail(ExitInternal, error);
        else if (path != QLatin1String("-"))
            std::printf("%s\n", qUtf8Printable(QFileInfo(path).absoluteFilePath()));
    }
    return code;
}

} // namespace Torvix
