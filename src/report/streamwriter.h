#pragma once

#include "report/runsummary.h"

#include <QFile>

#include <memory>

class QIODevice;

namespace Torvix {

class JsonLine;

/**
 * Writes the result stream: one JSON object a line (NDJSON, UTF-8), flushed as it happens, so that
 * a run that is killed still has its report up to the last event. The events and their fields are
 * described in docs/result-stream.md.
 *
 * A write that fails (a full disk) is remembered: errorString() tells the first one, and later
 * events are still tried. A text of more than 16 Mi characters is cut, and says so.
 */
class ResultStreamWriter
{
public:
    static constexpr int schemaVersion = 1;

    /** Does not take ownership of the device, which must be open for writing. */
    explicit ResultStreamWriter(QIODevice* device);

    void runStarted(const QString& name, int plannedCases, const QJsonObject& environment);
    void caseStarted(const CaseSummary& testCase, int attempt);
    /** Attachments in the stream's folder are written relative to it. */
    void entry(const ResultEntry& entry);
    void applicationEnded(const ApplicationReport& application);
    void objectTree(const QString& text);
    void caseEnded(CaseOutcome outcome, qint64 durationMs);
    void runEnded(bool interrupted, qint64 durationMs);

    /** Text of the first write that failed; empty when all is written. */
    QString errorString() const { return m_error; }

private:
    void write(JsonLine& line);

    QIODevice* m_device;
    QFileDevice* m_file; ///< the device if it is a file, or null
    QString m_folder;    ///< of the stream; empty when it is no file
    QString m_error;
    bool m_isTorn = false; ///< the last write failed, perhaps in the middle of a line
};

/**
 * The lines around a line of a script, for a ResultEntry.
 * Empty when the file cannot be read or does not have the line.
 */
SourceExcerpt readSourceExcerpt(const QString& file, int line, int linesAround = 3);

} // namespace Torvix
