#include "runner/commandline.h"

#include "launcher/process/shellwords.h"
#include "report/reporters.h"
#include "shared/text/nearestname.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <functional>

namespace Torvix {

namespace {

/** One option: with a value, or a flag. */
struct Option
{
    const char* name;  ///< "--retries"
    const char* value; ///< name of the value for help; null for a flag
    const char* help;
    /** False for a value that cannot be taken; the error is then filled. */
    std::function<bool(const QString& value, QString* error)> take;
};

struct VerbHelp
{
    Verb verb;
    const char* name;
    const char* usage;
    const char* summary;
    const char* examples;
    const char* exitStatus;
};

constexpr VerbHelp verbs[] = {
    {Verb::Run, "run", "run [options] SUITE_OR_TEST...", "run test cases and make reports",
     "  torvixrunner run suite_shop\n"
     "  torvixrunner run suite_shop/tst_login --repeat-each 20 --max-failures 1\n"
     "  torvixrunner run suite_shop --tags smoke --retries 1 --reporter junit --output out\n"
     "  torvixrunner run suite_shop --last-failed\n",
     "0 all passed, 1 failures, 2 interrupted, 3 internal error or a report that could not be written,\n"
     "4 wrong use (a missing suite, an unknown option), 5 no test case matches"},
    {Verb::List, "list", "list [options] SUITE_OR_TEST...", "show the test cases that run would run",
     "  torvixrunner list suite_shop --exclude-tags slow\n"
     "  torvixrunner list suite_shop --json\n",
     "0 there are some, 4 wrong use, 5 no test case matches"},
    {Verb::Report, "report", "report [options] STREAM...",
     "make reports from result streams (several are joined; - is the standard input)",
     "  torvixrunner report results/results.ndjson\n"
     "  torvixrunner report results/results.ndjson --reporter html:report.html\n"
     "  torvixrunner report shard1/results.ndjson shard2/results.ndjson --reporter junit:all.xml\n",
     "0 the reports were made, whatever they tell, 3 one could not be written, 4 wrong use or a stream\n"
     "that cannot be read"},
    {Verb::Inspect, "inspect", "inspect [options] [--] PROGRAM [ARGUMENTS...]",
     "show the objects of an application, and the real name that finds each",
     "  torvixrunner inspect calculator\n"
     "  torvixrunner inspect --type '*Button' --properties calculator\n"
     "  torvixrunner inspect --json --attach /tmp/app.socket\n",
     "0 shown, 1 the application could not be started, or no object matches, 4 wrong use"},
    {Verb::Init, "init", "init PATH [PROGRAM]",
     "make a new suite for a program, or in a suite a new test case tst_NAME",
     "  torvixrunner init suite_shop ./build/shop\n"
     "  torvixrunner init suite_shop/tst_login\n",
     "0 made, 1 the program could not be started, 3 a file could not be written,\n"
     "4 wrong use or the path is there already"},
    {Verb::Doctor, "doctor", "doctor [PROGRAM [ARGUMENTS...]]",
     "tell what this machine, or an application, lacks",
     "  torvixrunner doctor\n"
     "  torvixrunner doctor ./build/shop\n",
     "0 nothing is missing that is needed, 1 something is, 4 wrong use"},
};

std::function<bool(const QString&, QString*)> setText(QString* target)
{
    return [target](const QString& value, QString*) {
        *target = value;
        return true;
    };
}

std::function<bool(const QString&, QString*)> addText(QStringList* target)
{
    return [target](const QString& value, QString*) {
        target->append(value);
        return true;
    };
}

std::function<bool(const QString&, QString*)> setFlag(bool* target)
{
    return [target](const QString&, QString*) {
        *target = true;
        return true;
    };
}

std::function<bool(const QString&, QString*)> setNumber(int* target, int least)
{
    return [target, least](const QString& value, QString* error) {
        bool isNumber = false;
        *target = value.toInt(&isNumber);
        if (isNumber && *target >= least)
            return true;
        *error = QStringLiteral("needs a whole number from %1, not '%2'").arg(QString::number(least), value);
        return false;
    };
}

std::function<bool(const QString&, QString*)> setPattern(QString* target)
{
    return [target](const QString& value, QString* error) {
        *target = value;
        const QRegularExpression pattern(value);
        if (!pattern.isValid())
            *error = QStringLiteral("needs a regular expression; '%1': %2").arg(value, pattern.errorString());
        return pattern.isValid();
    };
}

std::function<bool(const QString&, QString*)> addReporter(QVector<ReporterRequest>* target)
{
    return [target](const QString& value, QString* error) {
        const ReporterRequest request{value.section(':', 0, 0), value.section(':', 1)};
        target->append(request);
        if (reporterByName(request.name))
            return true;
        QStringList known;
        for (const Reporter& reporter : reporters())
            known += QLatin1String(reporter.name);
        *error = QStringLiteral("does not know '%1'%2; there are %3")
                     .arg(request.name, didYouMean(request.name, known), known.join(QLatin1String(", ")));
        return false;
    };
}

QVector<Option> selectionOptions(RunOptions* run)
{
    return {
        {"--grep", "PATTERN", "only cases whose SUITE/CASE matches the regular expression",
         setPattern(&run->grep)},
        {"--tags", "TAG", "only cases with this tag; repeat for more", addText(&run->tags)},
        {"--exclude-tags", "TAG", "no cases with this tag; repeat for more", addText(&run->excludedTags)},
    };
}

QVector<Option> reporterOptions(QVector<ReporterRequest>* target, bool* strict)
{
    return {
        {"--reporter", "NAME[:PATH]", "also make this report; repeat for more", addReporter(target)},
        {"--strict-junit", nullptr, "JUnit XML with nothing beyond the common schema", setFlag(strict)},
    };
}

QVector<Option> optionsOf(Verb verb, CommandLine* line)
{
    RunOptions* run = &line->run;
    switch (verb) {
    case Verb::Run:
        return selectionOptions(run) + reporterOptions(&run->reporters, &run->strictJUnit) +
               QVector<Option>{
                   {"--output", "DIR", "folder for stream, reports and attachments [results]",
                    setText(&run->outputFolder)},
                   {"--retries", "N", "run a failed case up to N times more [0]",
                    setNumber(&run->retries, 0)},
                   {"--max-failures", "N", "stop after N failed cases", setNumber(&run->maxFailures, 1)},
                   {"--repeat-each", "N", "run each case N times [1]", setNumber(&run->repeatEach, 1)},
                   {"--timeout", "SECONDS", "time for each case, instead of what the suite says",
                    setNumber(&run->timeoutSecs, 1)},
                   {"--fail-on-flaky-tests", nullptr, "fail when a case passed only after a retry",
                    setFlag(&run->failOnFlaky)},
                   {"--last-failed", nullptr,
                    "only cases that have not passed in the last run, in the output folder, that meant them",
                    setFlag(&run->lastFailed)},
                   {"--update-vps", nullptr,
                    "replace what verification points expect by what is seen, and make missing ones",
                    setFlag(&run->updateVerificationPoints)},
                   {"--list", nullptr, "show what would run, and run nothing", setFlag(&run->listOnly)},
                   {"--quiet", nullptr, "only failures and the summary", setFlag(&run->quiet)},
               };
    case Verb::List:
        return selectionOptions(run) +
               QVector<Option>{{"--json", nullptr, "as JSON, with folder, tags and time limit of each",
                                setFlag(&run->json)}};
    case Verb::Report:
        return reporterOptions(&line->report.reporters, &line->report.strictJUnit);
    case Verb::Inspect:
        return {
            {"--attach", "ADDRESS", "an application that waits with TORVIX_AGENT_LISTEN=ADDRESS",
             setText(&line->inspect.attach)},
            {"--type", "PATTERN", "only objects of this class; * and ? stand for any characters",
             setText(&line->inspect.type)},
            {"--name", "PATTERN", "only objects with this object name, text or title; likewise",
             setText(&line->inspect.name)},
            {"--visible", nullptr, "only visible objects", setFlag(&line->inspect.visibleOnly)},
            {"--properties", nullptr, "with all properties of each object",
             setFlag(&line->inspect.properties)},
            {"--json", nullptr, "as JSON, always with all properties", setFlag(&line->inspect.json)},
        };
    default:
        return {};
    }
}

QString generalHelp()
{
    QString text = QStringLiteral("usage: torvixrunner VERB [options] [arguments]\n\n"
                                  "Tests Qt 5 applications with JavaScript.\n\nVerbs:\n");
    for (const VerbHelp& each : verbs)
        text +=
            QStringLiteral("  %1 %2\n").arg(QLatin1String(each.name), -10).arg(QLatin1String(each.summary));
    return text +
           QStringLiteral("\ntorvixrunner VERB --help tells the options of a verb; --version the version.\n"
                          "\nFirst steps:\n  torvixrunner doctor\n  torvixrunner init suite_mine\n"
                          "  torvixrunner run suite_mine\n\n"
                          "Exit status: 0 passed, 1 failures, 2 interrupted, 3 internal error, 4 wrong use, "
                          "5 nothing to run.\n");
}

QString helpOf(const VerbHelp& verb)
{
    CommandLine ignored;
    QString text = QStringLiteral("usage: torvixrunner %1\n\n%2.\n")
                       .arg(QLatin1String(verb.usage), QLatin1String(verb.summary));
    text[text.indexOf(QLatin1String("\n\n")) + 2] = text[text.indexOf(QLatin1String("\n\n")) + 2].toUpper();
    const QVector<Option> options = optionsOf(verb.verb, &ignored);
    text += QLatin1String("\nOptions:\n");
    for (const Option& option : options) {
        QString name = QLatin1String(option.name);
        if (option.value)
            name += QLatin1Char(' ') + QLatin1String(option.value);
        text += QStringLiteral("  %1 %2\n").arg(name, -24).arg(QLatin1String(option.help));
    }
    text +=
        QStringLiteral("  %1 %2\n").arg(QStringLiteral("-h, --help"), -24).arg(QLatin1String("this help"));
    if (verb.verb == Verb::Run || verb.verb == Verb::Report) {
        text += QLatin1String("\nReporters:\n");
        for (const Reporter& reporter : reporters())
            text += QStringLiteral("  %1 %2\n")
                        .arg(QLatin1String(reporter.name), -24)
                        .arg(QLatin1String(reporter.summary));
        text += QLatin1String("PATH is a file, or - for the standard output, which then has nothing else.\n");
    }
    text += QStringLiteral("\nExamples:\n%1\nExit status: %2.\n")
                .arg(QLatin1String(verb.examples), QLatin1String(verb.exitStatus));
    return text;
}

/** The index behind the option and its value; -1 with the error filled. */
int takeOption(const QVector<Option>& options, const QStringList& arguments, int index, const char* verb,
               QString* error)
{
    const QString name = arguments[index].section('=', 0, 0);
    const auto option = std::find_if(options.begin(), options.end(), [&name](const Option& each) {
        return name == QLatin1String(each.name);
    });
    if (option == options.end()) {
        QStringList known{QStringLiteral("--help")};
        for (const Option& each : options)
            known += QLatin1String(each.name);
        *error = QStringLiteral("unknown option '%1'%2; see torvixrunner %3 --help")
                     .arg(name, didYouMean(name, known), QLatin1String(verb));
        return -1;
    }
    const bool isInline = arguments[index].contains('=');
    if (!option->value && isInline) {
        *error = QStringLiteral("%1 takes no value").arg(name);
        return -1;
    }
    QString value;
    if (option->value) {
        if (!isInline && ++index >= arguments.size()) {
            *error = QStringLiteral("%1 needs a value: %2").arg(name, QLatin1String(option->value));
            return -1;
        }
        value = isInline ? arguments[index].section('=', 1) : arguments[index];
    }
    QString reason;
    if (option->take(value, &reason))
        return index + 1;
    *error = QStringLiteral("%1 %2").arg(name, reason);
    return -1;
}

/** Two reports in one place would be none. */
bool haveOwnPaths(const QVector<ReporterRequest>& reporters, QString* error)
{
    QSet<QString> paths;
    for (const ReporterRequest& reporter : reporters) {
        const bool isOutput = reporter.path == QLatin1String("-");
        const QString path = reporter.path.isEmpty() ? QLatin1String(reporterByName(reporter.name)->fileName)
                             : isOutput              ? reporter.path
                                                     : QFileInfo(reporter.path).absoluteFilePath();
        if (!paths.contains(path)) {
            paths += path;
            continue;
        }
        *error = QStringLiteral("two reports cannot both go to %1; give --reporter %2 another PATH")
                     .arg(isOutput ? QStringLiteral("the standard output") : path, reporter.name);
        return false;
    }
    return true;
}

/** What remains besides options has to fit the verb. */
bool takeArguments(const VerbHelp& verb, const QStringList& rest, CommandLine* line, QString* error)
{
    const auto wrong = [&] {
        *error = QStringLiteral("usage: torvixrunner %1; see torvixrunner %2 --help")
                     .arg(QLatin1String(verb.usage), QLatin1String(verb.name));
        return false;
    };
    switch (verb.verb) {
    case Verb::Run:
    case Verb::List:
        line->run.paths = rest;
        return !rest.isEmpty() || wrong();
    case Verb::Report:
        line->report.streams = rest;
        return !rest.isEmpty() || wrong();
    case Verb::Inspect:
        line->inspect.program = joinShellWords(rest);
        return rest.isEmpty() != line->inspect.attach.isEmpty() || wrong();
    case Verb::Init:
        line->init.path = rest.value(0);
        line->init.program = rest.value(1);
        return rest.size() == 1 || rest.size() == 2 || wrong();
    case Verb::Doctor:
        line->doctor.program = joinShellWords(rest);
        return true;
    default:
        return true;
    }
}

} // namespace

std::optional<CommandLine> parseCommandLine(const QStringList& arguments, QString* error)
{
    CommandLine line;
    line.helpText = generalHelp();
    if (arguments.isEmpty()) {
        *error = QStringLiteral("no verb given; see torvixrunner --help");
        return {};
    }
    const QString& first = arguments.first();
    if (first == QLatin1String("help") && arguments.size() == 2)
        return parseCommandLine({arguments[1], QStringLiteral("--help")}, error);
    if (first == QLatin1String("--help") || first == QLatin1String("-h") || first == QLatin1String("help"))
        return line;
    if (first == QLatin1String("--version")) {
        line.verb = Verb::Version;
        return line;
    }
    const auto verb = std::find_if(std::begin(verbs), std::end(verbs), [&first](const VerbHelp& each) {
        return first == QLatin1String(each.name);
    });
    if (verb == std::end(verbs)) {
        QStringList known;
        for (const VerbHelp& each : verbs)
            known += QLatin1String(each.name);
        *error = QStringLiteral("unknown verb '%1'%2; see torvixrunner --help")
                     .arg(first, didYouMean(first, known));
        return {};
    }
    line.verb = verb->verb;
    const QVector<Option> options = optionsOf(verb->verb, &line);
    QStringList rest;
    for (int i = 1; i < arguments.size();) {
        const QString& argument = arguments[i];
        if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            CommandLine help;
            help.helpText = helpOf(*verb);
            return help;
        }
        // What follows an application's name is the application's.
        const bool isForApplication =
            (verb->verb == Verb::Inspect || verb->verb == Verb::Doctor) && !rest.isEmpty();
        if (argument == QLatin1String("--") || isForApplication) {
            rest += arguments.mid(isForApplication ? i : i + 1);
            break;
        }
        if (!argument.startsWith('-') || argument == QLatin1String("-")) {
            rest += argument;
            ++i;
            continue;
        }
        i = takeOption(options, arguments, i, verb->name, error);
        if (i < 0)
            return {};
    }
    if (!takeArguments(*verb, rest, &line, error) ||
        !haveOwnPaths(verb->verb == Verb::Report ? line.report.reporters : line.run.reporters, error))
        return {};
    return line;
}

} // namespace Torvix
