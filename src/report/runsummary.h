#pragma once

#include "report/results.h"

#include <QJsonObject>

namespace Torvix {

/** Where the events of one attempt stand in the streams of a run. */
struct EventRange
{
    int stream = 0;   ///< which of the streams, in the order in which they were added
    qint64 begin = 0; ///< byte behind the line of "case-started"
    qint64 end = 0;   ///< byte behind the attempt's last line
};

/** One run of a test case; there are several when failures are retried. */
struct AttemptSummary
{
    QDateTime started;
    qint64 durationMs = 0;
    CaseOutcome outcome = CaseOutcome::Interrupted;
    int entryCount = 0;
    int attachmentCount = 0;
    qint64 textLength = 0; ///< characters of all that it reported
    EventRange events;
    /** The first byte of the result that explains the outcome: of the first error where that is Error,
     *  otherwise of the first failure. -1 where nothing failed. */
    qint64 decisiveResult = -1;
};

struct CaseSummary
{
    QString suite;
    QString name;
    QString path; ///< the case's folder
    QStringList tags;
    QVector<AttemptSummary> attempts;
    /** The suite's name, with so much of its folder that it differs from others of that name. */
    QString suiteTitle;

    /** The last attempt, or an interrupted one for a case that never had any. */
    AttemptSummary lastAttempt() const;
    /** The outcome of the last attempt. */
    CaseOutcome outcome() const { return lastAttempt().outcome; }
    /** Passed in the end, after an attempt that did not. */
    bool isFlaky() const;
    qint64 durationMs() const;
    /** "suite/case", or the case alone when it has no suite. */
    QString fullName() const;
};

/** How long the texts of a run are, so that a report can tell beforehand what it has room for. */
class TextLengths
{
public:
    void add(int length);
    /** The length to which each text is to be cut so that all together are not longer than `budget`
     *  characters; a very large number when all fit as they are. */
    int limitFor(qint64 budget) const;
    /** About how many characters remain when each text is cut to that length. */
    qint64 totalFor(int limit) const;

private:
    static constexpr int bucketCount = 32; ///< of lengths below 1, 2, 4, ...
    qint64 m_counts[bucketCount] = {};
    qint64 m_sums[bucketCount] = {};
};

/** What a run was, without the events of its cases, in the order in which the cases were started. */
struct RunSummary
{
    QString name;
    QDateTime started;
    qint64 durationMs = 0;
    bool complete = false; ///< false when a stream has no end: the run was killed or still goes on
    bool interrupted = false;
    QJsonObject environment;
    int plannedCases = 0;
    QVector<CaseSummary> cases;
    QStringList problems; ///< lines of the streams that could not be read, as text for people
    TextLengths texts;    ///< messages, details, differences and outputs, each by itself

    int count(CaseOutcome outcome) const;
    int flakyCount() const;
    /** Planned cases that were never started, since the run ended before. */
    int notRunCount() const { return plannedCases > cases.size() ? plannedCases - cases.size() : 0; }
    bool failed() const;
};

} // namespace Torvix
