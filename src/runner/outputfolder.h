#pragma once

#include "report/recordedrun.h"

#include <QFile>
#include <QSet>
#include <QString>

namespace Torvix {

/** "results.ndjson". */
QString streamFileName();

/**
 * The folder into which a run writes. One run at a time has it: the result stream in it is locked as long
 * as this object lives, also against runs of other users and of containers that share it.
 */
class OutputFolder
{
public:
    explicit OutputFolder(const QString& path);

    /**
     * Makes the folder when it is not there, locks it, and empties the stream of an earlier run, whose
     * attachments go with it. What that run left to do is remembered: see notPassed().
     * @param planned folders of the test cases that are to run now
     * @return false with one line of what is wrong
     */
    bool begin(const QStringList& planned, QString* error);

    QFile* stream() { return &m_stream; }
    QString streamPath() const;
    /** False when the folder or the stream in it was removed or replaced since it was opened. */
    bool isThere() const;
    /** What the stream tells so far, also when it has no name any more. */
    RecordedRun read() const;

private:
    bool lock(QString* error);

    QString m_path;
    QFile m_stream;
};

/**
 * Folders of the test cases without a passed result in the last run that was to run them, over all runs
 * into the output folder. False when there was none.
 */
bool notPassed(const QString& outputFolder, QSet<QString>* cases);

} // namespace Torvix
