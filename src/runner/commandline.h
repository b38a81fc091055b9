#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace Torvix {

/** What the program ends with. */
enum ExitCode {
    ExitPassed = 0,
    ExitFailures = 1,
    ExitInterrupted = 2,
    ExitInternal = 3,
    ExitUsage = 4,
    ExitNothingCollected = 5,
};

/** "--reporter junit:out.xml". */
struct ReporterRequest
{
    QString name;
    QString path; ///< empty: the reporter's own name in the output folder
};

struct RunOptions
{
    QStringList paths;
    QString grep;     ///< regular expression on "suite/case"; empty: all
    QStringList tags; ///< a case needs one of them; empty: all
    QStringList excludedTags;
    QString outputFolder = QStringLiteral("results");
    QVector<ReporterRequest> reporters;
    int retries = 0;
    int maxFailures = 0; ///< 0: no limit
    int repeatEach = 1;
    int timeoutSecs = 0;
    bool lastFailed = false;
    bool failOnFlaky = false;
    bool updateVerificationPoints = false;
    bool listOnly = false;
    bool json = false; ///< the list as JSON
    bool strictJUnit = false;
    bool quiet = false;
};

struct ReportOptions
{
    QStringList streams;
    QVector<ReporterRequest> reporters;
    bool strictJUnit = false;
};

struct InspectOptions
{
    QString program; ///< command to start, quoted as for startApplication(); empty with `attach`
    QString attach;  ///< address of a waiting application
    QString type;    ///< wildcard on the class; empty: all
    QString name;    ///< wildcard on object name, text and title; empty: all
    bool visibleOnly = false;
    bool properties = false;
    bool json = false;
};

struct InitOptions
{
    QString path;
    QString program; ///< that the tests are to start; may be empty
};

struct DoctorOptions
{
    QString program; ///< command to start; may be empty
};

enum class Verb { Help, Version, Run, List, Report, Inspect, Init, Doctor };

struct CommandLine
{
    Verb verb = Verb::Help;
    QString helpText; ///< for Verb::Help
    RunOptions run;   ///< also for Verb::List
    ReportOptions report;
    InspectOptions inspect;
    InitOptions init;
    DoctorOptions doctor;
};

/** Reads the arguments, the program's name not included. On an error nothing, with one line of what
 *  is wrong and how to go on. */
std::optional<CommandLine> parseCommandLine(const QStringList& arguments, QString* error);

} // namespace Torvix
