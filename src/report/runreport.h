#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

namespace Torvix {

/** What one entry of a test case says. The names in the stream are those of resultTypeName(). */
enum class ResultType {
    Pass,
    Fail,
    ExpectedFail,   ///< a failure that the script said to expect; counts as fine
    UnexpectedPass, ///< a check that the script expected to fail; counts as a failure
    Fatal,          ///< a failure that ended the case
    Error,          ///< the script or the tool failed, not a check
    Skip,
    Warning,
    Log,
};

/** The name of a type in the result stream ("pass", "unexpected-pass", ...). */
QString resultTypeName(ResultType type);

/** False, and type untouched, for a name that resultTypeName() never gives. */
bool resultTypeFromName(const QString& name, ResultType* type);

/** True for the types that make a test case fail. */
bool isFailure(ResultType type);

/** The lines of a script around the line of a failure. */
struct SourceExcerpt
{
    int firstLine = 0; ///< number of lines[0], counted from 1; 0 without an excerpt
    QStringList lines;
};

/** A file that belongs to a result: a screenshot, what was seen beside what was expected, ... */
struct Attachment
{
    QString path; ///< relative to the folder of the stream when it lies below it
    QString mimeType;
    QString description;
};

/** One line of a test case's report. */
struct ResultEntry
{
    ResultType type = ResultType::Log;
    QDateTime time;
    QString message;
    QString detail; ///< a difference, a call stack: may have several lines
    QString file;
    int line = 0;         ///< counted from 1; 0 when unknown
    QStringList sections; ///< titles of the sections that are open, outermost first
    SourceExcerpt source;
    QVector<Attachment> attachments;
};

/** One application that a test case started or attached to. */
struct ApplicationReport
{
    QString name;
    qint64 pid = 0;
    QString ending; ///< "exited with 0", "killed by signal 11", ...; empty while it runs
    QString output; ///< the last lines that it wrote to both its streams
};

enum class CaseOutcome {
    Passed,
    Failed,
    Error,
    Skipped,
    Interrupted, ///< the stream ends before the case does
};

/** "passed", "failed", "error", "skipped", "interrupted". */
QString caseOutcomeName(CaseOutcome outcome);

/** One run of a test case; there are several when failures are retried. */
struct AttemptReport
{
    QDateTime started;
    qint64 durationMs = 0;
    CaseOutcome outcome = CaseOutcome::Interrupted;
    QVector<ResultEntry> entries;
    QVector<ApplicationReport> applications;
    QString objectTree; ///< text of the object tree at the failure; empty without one

    /** The first entry that made the attempt fail, or null. */
    const ResultEntry* firstFailure() const;
};

struct CaseReport
{
    QString suite;
    QString name;
    QString path; ///< the case's folder
    QStringList tags;
    QVector<AttemptReport> attempts;

    /** The outcome of the last attempt. */
    CaseOutcome outcome() const;
    /** Passed in the end, after an attempt that did not. */
    bool isFlaky() const;
    qint64 durationMs() const;
};

/** Everything that a result stream tells, in the order in which the cases were started. */
struct RunReport
{
    QString name;
    QDateTime started;
    qint64 durationMs = 0;
    bool complete = false; ///< false when the stream has no end: the run was killed or still goes on
    bool interrupted = false;
    QJsonObject environment;
    int plannedCases = 0;
    QVector<CaseReport> cases;
    QStringList problems; ///< lines of the stream that could not be read, as text for people

    int count(CaseOutcome outcome) const;
    int flakyCount() const;
    /** Planned cases that were never started, since the run ended before. */
    int notRunCount() const { return plannedCases > cases.size() ? plannedCases - cases.size() : 0; }
    bool failed() const;
};

} // namespace Torvix
