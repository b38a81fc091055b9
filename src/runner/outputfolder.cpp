#include "runner/outputfolder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QThread>

#include <cerrno>

#include <sys/file.h>
#include <sys/stat.h>

namespace Torvix {

namespace {

/**
 * Beside the stream, which tells of the last run alone: the cases that had no passed result when it began,
 * and all that it was to run. Paths count from the folder, so that it can be moved with the suites.
 */
QString memoryFile(const QDir& folder)
{
    return folder.absoluteFilePath(QStringLiteral("last-run.json"));
}

constexpr char notPassedKey[] = "notPassed";

RecordedRun readFile(std::unique_ptr<QFile> file, const QDir& folder)
{
    RecordedRun run;
    QString ignored; // a file is never copied
    run.add(std::move(file), folder.absolutePath(), &ignored);
    return run;
}

/** Empty when there is none. */
RecordedRun readStream(const QDir& folder)
{
    auto file = std::make_unique<QFile>(folder.absoluteFilePath(streamFileName()));
    return file->open(QIODevice::ReadOnly) ? readFile(std::move(file), folder) : RecordedRun();
}

QSet<QString> casesNotPassed(const RunSummary& run, const QDir& folder)
{
    QSet<QString> cases;
    QFile memory(memoryFile(folder));
    if (memory.open(QIODevice::ReadOnly)) {
        const QJsonArray paths = QJsonDocument::fromJson(memory.readAll())[notPassedKey].toArray();
        for (const QJsonValue& path : paths)
            cases += QDir::cleanPath(folder.absoluteFilePath(path.toString()));
    }
    for (const CaseSummary& testCase : run.cases)
        cases -= testCase.path;
    for (const CaseSummary& testCase : run.cases) {
        if (testCase.outcome() != CaseOutcome::Passed)
            cases += testCase.path;
    }
    return cases;
}

bool remember(const QSet<QString>& cases, const QDir& folder, QString* error)
{
    QStringList paths;
    for (const QString& path : cases) {
        if (QFileInfo::exists(path)) // a case that is no more will never pass
            paths += folder.relativeFilePath(path);
    }
    paths.sort();
    const QByteArray text =
        QJsonDocument(QJsonObject{{notPassedKey, QJsonArray::fromStringList(paths)}}).toJson();
    QSaveFile file(memoryFile(folder));
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return true;
    *error = QStringLiteral("'%1' cannot be written: %2; choose another folder with --output")
                 .arg(file.fileName(), file.errorString());
    return false;
}

/** Takes away the attachments of an earlier run in the folder; those of the new run would otherwise lie
 *  among them for ever. */
class AttachmentRemover : public EventVisitor
{
public:
    explicit AttachmentRemover(const QDir& folder) : m_inside(folder.absolutePath() + QLatin1Char('/')) {}

    void result(const ResultEntry& entry) override
    {
        for (const Attachment& attachment : entry.attachments) {
            const QString path = QDir::cleanPath(attachment.path);
            if (!path.startsWith(m_inside))
                continue;
            QFile::remove(path);
            QDir().rmdir(QFileInfo(path).absolutePath()); // only when it is empty
        }
    }

private:
    QString m_inside;
};

void removeAttachments(const RecordedRun& run, const QDir& folder)
{
    AttachmentRemover remover(folder);
    for (const CaseSummary& testCase : run.summary().cases) {
        for (const AttemptSummary& attempt : testCase.attempts) {
            if (attempt.attachmentCount > 0)
                run.visit(attempt, remover);
        }
    }
}

} // namespace

QString streamFileName()
{
    return QStringLiteral("results.ndjson");
}

OutputFolder::OutputFolder(const QString& path) : m_path(path) {}

QString OutputFolder::streamPath() const
{
    return QDir(m_path).absoluteFilePath(streamFileName());
}

bool OutputFolder::lock(QString* error)
{
    m_stream.setFileName(streamPath());
    if (!QDir().mkpath(m_path)) {
        *error =
            QStringLiteral("The output folder '%1' cannot be made; choose another with --output").arg(m_path);
        return false;
    }
    if (!m_stream.open(QIODevice::ReadWrite)) {
        *error = QStringLiteral("'%1' cannot be written: %2; choose another folder with --output")
                     .arg(m_stream.fileName(), m_stream.errorString());
        return false;
    }
    // For a moment: what ends the applications of a run that was killed may still have its files open. A file
    // system that has no locks is used without one.
    constexpr int patienceMs = 2000;
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < patienceMs; QThread::msleep(50)) {
        if (::flock(m_stream.handle(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
            return true;
    }
    const QJsonObject started = QJsonDocument::fromJson(m_stream.readLine()).object();
    const QJsonObject environment = started["environment"].toObject();
    const QString whose = environment.contains("process")
                              ? QStringLiteral(": process %1 on %2, which tests %3")
                                    .arg(QString::number(environment["process"].toInt()),
                                         environment["host"].toString(), started["name"].toString())
                              : QString();
    *error = QStringLiteral("The output folder '%1' is in use by another run%2; wait for its end, or choose "
                            "another with --output")
                 .arg(m_path, whose);
    return false;
}

bool OutputFolder::begin(const QStringList& planned, QString* error)
{
    if (!lock(error))
        return false;
    const QDir folder(m_path);
    const RecordedRun earlier = readStream(folder);
    QSet<QString> cases = casesNotPassed(earlier.summary(), folder);
    for (const QString& path : planned)
        cases += path;
    removeAttachments(earlier, folder);
    // First the stream: were the new memory read with the old stream, what passed then would be forgotten.
    if (m_stream.resize(0) && m_stream.seek(0))
        return remember(cases, folder, error);
    *error = QStringLiteral("'%1' cannot be emptied: %2; choose another folder with --output")
                 .arg(m_stream.fileName(), m_stream.errorString());
    return false;
}

bool OutputFolder::isThere() const
{
    struct stat named = {};
    struct stat opened = {};
    return ::stat(QFile::encodeName(streamPath()).constData(), &named) == 0 &&
           ::fstat(m_stream.handle(), &opened) == 0 && named.st_dev == opened.st_dev &&
           named.st_ino == opened.st_ino;
}

RecordedRun OutputFolder::read() const
{
    auto file = std::make_unique<QFile>(QStringLiteral("/proc/self/fd/%1").arg(m_stream.handle()));
    return file->open(QIODevice::ReadOnly) ? readFile(std::move(file), QDir(m_path)) : RecordedRun();
}

bool notPassed(const QString& outputFolder, QSet<QString>* cases)
{
    const QDir folder(outputFolder);
    if (!folder.exists(streamFileName()))
        return false;
    *cases = casesNotPassed(readStream(folder).summary(), folder);
    return true;
}

} // namespace Torvix
