#include "runner/reportfiles.h"

#include "runner/outputfolder.h"
#include "runner/runverb.h"

#include <QDir>
#include <QSaveFile>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace Torvix {

namespace {

constexpr QLatin1String standardOutput("-");

/** Passes on what is written in large pieces, and keeps why the system did not take one. */
class ReportDevice : public QIODevice
{
public:
    explicit ReportDevice(QFileDevice* target) : m_target(target) { open(QIODevice::WriteOnly | Unbuffered); }

    /** Everything that is left. False when something could not be written. */
    bool finish()
    {
        pass();
        return m_reason == 0;
    }

    /** As errno tells it; 0 when all was written. */
    int reason() const { return m_reason; }

protected:
    qint64 readData(char*, qint64) override { return -1; }

    qint64 writeData(const char* bytes, qint64 count) override
    {
        constexpr int pieceBytes = 256 * 1024;
        m_bytes.append(bytes, int(count));
        if (m_bytes.size() >= pieceBytes)
            pass();
        return count;
    }

private:
    void pass()
    {
        errno = 0;
        const bool isWritten = m_target->write(m_bytes) == m_bytes.size();
        if (!isWritten && m_reason == 0)
            m_reason = errno != 0 ? errno : EIO;
        m_bytes.clear();
    }

    QFileDevice* m_target;
    QByteArray m_bytes;
    int m_reason = 0;
};

/** How one report goes to its place: 0, or the reason as errno tells it. */
int writeTo(QFileDevice* target, const RecordedRun& run, const Reporter& reporter,
            const ReporterOptions& options)
{
    ReportDevice device(target);
    reporter.write(run, options, &device);
    device.finish();
    return device.reason();
}

/** A device or a pipe, which is written to as it is. */
bool isNoFile(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile() && !info.isDir();
}

/** A report appears whole or not at all, unless the path is no file. */
bool writeFile(const QString& path, const RecordedRun& run, const Reporter& reporter,
               const ReporterOptions& options, QString* reason, bool* isFull)
{
    int code = 0;
    if (isNoFile(path)) {
        QFile device(path);
        if (device.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            code = writeTo(&device, run, reporter, options);
        *reason = device.errorString();
        if (device.isOpen() && code == 0)
            return true;
    } else {
        QSaveFile file(path);
        file.setDirectWriteFallback(true); // a folder in which only this file may be written
        if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
            code = writeTo(&file, run, reporter, options);
            if (code == 0 && file.commit())
                return true;
        }
        *reason = file.errorString();
    }
    if (code != 0)
        *reason = QString::fromLocal8Bit(std::strerror(code));
    *isFull = code == ENOSPC || code == EDQUOT || code == EFBIG;
    return false;
}

ReporterOptions reporterOptions(bool strictJUnit)
{
    ReporterOptions options;
    options.baseFolder = QDir::currentPath();
    options.strictJUnit = strictJUnit;
    return options;
}

QString pathOf(const ReporterRequest& request, const QDir& folder)
{
    return request.path.isEmpty()
               ? folder.absoluteFilePath(QLatin1String(reporterByName(request.name)->fileName))
               : request.path;
}

/** Whether a file can be made there, by making it. Changes none that is there. */
bool canBeWritten(const QString& path, QString* reason)
{
    const bool isThere = QFileInfo::exists(path);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (isNoFile(path))
        return true;
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) {
        *reason = file.errorString();
        return false;
    }
    if (!isThere)
        file.remove();
    return true;
}

/** GitHub shows what a step appends to this file. */
void appendStepSummary(const RecordedRun& run)
{
    QFile file(qEnvironmentVariable("GITHUB_STEP_SUMMARY"));
    if (file.fileName().isEmpty())
        return;
    int code = 0;
    if (file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        code = writeTo(&file, run, *reporterByName(QStringLiteral("markdown")), reporterOptions(false));
    if (!file.isOpen() || code != 0)
        std::fprintf(stderr, "torvixrunner: GITHUB_STEP_SUMMARY=%s cannot be written: %s\n",
                     qUtf8Printable(file.fileName()),
                     code != 0 ? std::strerror(code) : qUtf8Printable(file.errorString()));
}

/** False with the reason when it is no result stream, or cannot be read. */
bool addStream(const QString& path, RecordedRun* run, QString* error)
{
    auto file = std::make_unique<QFile>(path);
    const bool isInput = path == standardOutput;
    const bool isOpen = isInput ? file->open(stdin, QIODevice::ReadOnly)
                                : !QFileInfo(path).isDir() && file->open(QIODevice::ReadOnly);
    if (!isOpen) {
        const QString reason = QFileInfo(path).isDir()
                                   ? QStringLiteral("it is a folder; give the %1 in it").arg(streamFileName())
                                   : file->errorString();
        *error = QStringLiteral("The result stream '%1' cannot be read: %2").arg(path, reason);
        return false;
    }
    QString reason;
    if (run->add(std::move(file), isInput ? QDir::currentPath() : QFileInfo(path).absolutePath(), &reason))
        return true;
    *error = QStringLiteral("'%1' is no result stream: %2; a run writes it as %3 into its output folder")
                 .arg(path, reason, streamFileName());
    return false;
}

} // namespace

ReportOutput::ReportOutput(const QVector<ReporterRequest>& requests) : m_descriptor(STDOUT_FILENO)
{
    const bool isUsed = std::any_of(requests.begin(), requests.end(),
                                    [](const ReporterRequest& each) { return each.path == standardOutput; });
    std::fflush(stdout);
    const int kept = isUsed ? ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0) : -1;
    if (kept >= 0 && ::dup2(STDERR_FILENO, STDOUT_FILENO) >= 0)
        m_descriptor = kept;
}

ReportOutput::~ReportOutput()
{
    if (m_descriptor == STDOUT_FILENO)
        return;
    std::fflush(stdout);
    ::dup2(m_descriptor, STDOUT_FILENO);
    ::close(m_descriptor);
}

bool prepareReports(const RunOptions& options, QString* error)
{
    for (const ReporterRequest& request : options.reporters) {
        const QString path = pathOf(request, QDir(options.outputFolder));
        QString reason;
        if (path == standardOutput || canBeWritten(path, &reason))
            continue;
        *error =
            QStringLiteral("The report '%1' cannot be written: %2; give another path with --reporter %3:PATH")
                .arg(path, reason, request.name);
        return false;
    }
    return true;
}

bool writeReport(const RecordedRun& run, const Reporter& reporter, ReporterOptions options,
                 const QString& path, const ReportOutput& output, QString* error, bool* isFull)
{
    *isFull = false;
    if (path == standardOutput) {
        options.reportFolder = QDir::currentPath();
        std::fflush(stdout);
        QFile device;
        device.open(output.descriptor(), QIODevice::WriteOnly | QIODevice::Unbuffered);
        const int code = writeTo(&device, run, reporter, options);
        if (code != 0)
            *error = QStringLiteral("The report '%1' cannot be written to the standard output: %2")
                         .arg(QLatin1String(reporter.name), QString::fromLocal8Bit(std::strerror(code)));
        return code == 0;
    }
    options.reportFolder = QFileInfo(path).absolutePath();
    QString reason;
    if (writeFile(path, run, reporter, options, &reason, isFull))
        return true;
    *error = QStringLiteral("The report '%1' cannot be written: %2").arg(path, reason);
    return false;
}

QStringList writeReports(const RecordedRun& run, const RunOptions& options, const ReportOutput& output,
                         bool withFolder, QString* page)
{
    const QDir folder(options.outputFolder);
    QStringList errors;
    bool annotates = false;
    QVector<ReporterRequest> requests = options.reporters;
    requests.prepend({QStringLiteral("html"), QString()});
    for (int i = 0; i < requests.size(); ++i) {
        const ReporterRequest& request = requests.at(i);
        if (request.path.isEmpty() && !withFolder)
            continue;
        annotates = annotates || request.name == QLatin1String("github");
        const QString path = pathOf(request, folder);
        QString error;
        bool isFull = false;
        if (writeReport(run, *reporterByName(request.name), reporterOptions(options.strictJUnit), path,
                        output, &error, &isFull))
            *page = i == 0 ? path : *page;
        else
            errors += QStringLiteral("%1; %2: torvixrunner report %3 --reporter %4:FILE")
                          .arg(error, isFull ? QStringLiteral("make room, then") : QStringLiteral("later"),
                               folder.absoluteFilePath(streamFileName()), request.name);
    }
    // Annotations are read from the log of the workflow, whatever stream of the step they are on.
    if (qEnvironmentVariable("GITHUB_ACTIONS") == QLatin1String("true") && !annotates) {
        const ReportOutput log({});
        QString error;
        bool ignored = false;
        if (!writeReport(run, *reporterByName(QStringLiteral("github")), reporterOptions(false),
                         standardOutput, log, &error, &ignored))
            errors += error;
    }
    appendStepSummary(run);
    return errors;
}

int reportVerb(const ReportOptions& options)
{
    RecordedRun run;
    QString error;
    for (const QString& path : options.streams) {
        if (!addStream(path, &run, &error))
            return fail(ExitUsage, error);
    }
    QVector<ReporterRequest> requests = options.reporters;
    if (requests.isEmpty())
        requests = {{QStringLiteral("summary"), standardOutput}};
    const ReportOutput output(requests);
    int code = ExitPassed;
    for (const ReporterRequest& request : requests) {
        const Reporter* reporter = reporterByName(request.name);
        const QString path = pathOf(request, QDir());
        bool isFull = false;
        if (!writeReport(run, *reporter, reporterOptions(options.strictJUnit), path, output, &error, &isFull))
            code = fail(ExitInternal, error);
        else if (path != standardOutput)
            std::printf("%s\n", qUtf8Printable(QFileInfo(path).absoluteFilePath()));
    }
    return code;
}

} // namespace Torvix
