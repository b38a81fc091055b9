#pragma once

#include <QDateTime>
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
    QString detail; ///< what was found, a call stack: may have several lines
    /**
     * What differs between an expected and a seen text, line by line: "- " expected only, "+ " seen only,
     * two blanks in both, "@@ line N @@" where lines that are alike are left out. Empty without one.
     */
    QString difference;
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
    Interrupted, ///< the case has no end: it was stopped, or the stream ends before it does
};

/** "passed", "failed", "error", "skipped", "interrupted". */
QString caseOutcomeName(CaseOutcome outcome);

/** Interrupted for a name that caseOutcomeName() never gives. */
CaseOutcome caseOutcomeFromName(const QString& name);

/** Nothing failed: passed or skipped. */
bool isFine(CaseOutcome outcome);

} // namespace Torvix
