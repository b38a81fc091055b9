#include "runner/commandline.h"

#include "launcher/process/shellwords.h"

#include <gtest/gtest.h>

namespace {

using namespace Torvix;

CommandLine parsed(const QStringList& arguments)
{
    QString error;
    const std::optional<CommandLine> line = parseCommandLine(arguments, &error);
    EXPECT_TRUE(line) << error.toStdString();
    return line.value_or(CommandLine());
}

TEST(CommandLine, ReadsEveryFormOfAnOption)
{
    const RunOptions run = parsed({"run", "--retries=2", "a", "--tags", "x", "--tags=y", "--reporter",
                                   "junit:out:put.xml", "--last-failed", "b", "--", "--grep"})
                               .run;
    EXPECT_EQ((QStringList{"a", "b", "--grep"}), run.paths);
    EXPECT_EQ(2, run.retries);
    EXPECT_EQ((QStringList{"x", "y"}), run.tags);
    ASSERT_EQ(1, run.reporters.size());
    EXPECT_EQ("junit", run.reporters[0].name);
    EXPECT_EQ("out:put.xml", run.reporters[0].path);
    EXPECT_TRUE(run.lastFailed);
    EXPECT_FALSE(run.listOnly);
    EXPECT_EQ("results", run.outputFolder);
}

TEST(CommandLine, LeavesAnApplicationItsOwnOptions)
{
    const QStringList command{"prog", "--json", "-x", "two words", "a\"b c\""};
    QString error;
    const InspectOptions inspect = parsed(QStringList{"inspect", "--type", "Q*"} + command).inspect;
    EXPECT_EQ(command, splitShellWords(inspect.program, &error));
    EXPECT_EQ("Q*", inspect.type);
    EXPECT_FALSE(inspect.json);
    EXPECT_EQ(command, splitShellWords(parsed(QStringList{"doctor"} + command).doctor.program, &error));
}

TEST(CommandLine, HelpIsThereForEveryVerbAndNamesWhatCanBeSaid)
{
    EXPECT_EQ(Verb::Help, parsed({"--help"}).verb);
    for (const char* verb : {"run", "list", "report", "inspect", "init", "doctor"}) {
        const CommandLine line = parsed({verb, "--help"});
        EXPECT_EQ(Verb::Help, line.verb);
        EXPECT_TRUE(line.helpText.startsWith(QStringLiteral("usage: torvixrunner %1").arg(verb))) << verb;
        EXPECT_EQ(line.helpText, parsed({"help", verb}).helpText);
        for (const char* part : {"\nOptions:\n", "\nExamples:\n", "\nExit status: "})
            EXPECT_TRUE(line.helpText.contains(part)) << verb << part;
    }
    const QString help = parsed({"run", "-h"}).helpText;
    for (const char* text : {"--max-failures N", "--grep PATTERN", "junit", "html"})
        EXPECT_TRUE(help.contains(text)) << text;
}

struct WrongUse
{
    QStringList arguments;
    const char* error;
};

TEST(CommandLine, WrongUseIsToldInOneLineWithTheMend)
{
    const std::vector<WrongUse> table = {
        {{}, "no verb given; see torvixrunner --help"},
        {{"fly"}, "unknown verb 'fly'; see torvixrunner --help"},
        {{"rum"}, "unknown verb 'rum' (did you mean 'run'?); see torvixrunner --help"},
        {{"run"}, "usage: torvixrunner run [options] SUITE_OR_TEST...; see torvixrunner run --help"},
        {{"run", "--retrys=2", "a"},
         "unknown option '--retrys' (did you mean '--retries'?); see torvixrunner run --help"},
        {{"run", "--last", "a"},
         "unknown option '--last' (did you mean '--last-failed'?); see torvixrunner run --help"},
        {{"run", "--colour", "a"}, "unknown option '--colour'; see torvixrunner run --help"},
        {{"run", "a", "--retries"}, "--retries needs a value: N"},
        {{"run", "--retries", "-1", "a"}, "--retries needs a whole number from 0, not '-1'"},
        {{"run", "--repeat-each=0", "a"}, "--repeat-each needs a whole number from 1, not '0'"},
        {{"run", "--quiet=yes", "a"}, "--quiet takes no value"},
        {{"run", "--reporter", "xml", "a"},
         "--reporter does not know 'xml'; there are html, junit, json, tap, github, markdown, summary"},
        {{"run", "--grep", "(", "a"}, "--grep needs a regular expression; '(': missing closing parenthesis"},
        {{"run", "--reporter", "junti", "a"},
         "--reporter does not know 'junti' (did you mean 'junit'?); there are html, junit, json, tap, "
         "github, "
         "markdown, summary"},
        {{"inspect"},
         "usage: torvixrunner inspect [options] [--] PROGRAM [ARGUMENTS...]; see torvixrunner inspect "
         "--help"},
        {{"init", "a", "b", "c"}, "usage: torvixrunner init PATH [PROGRAM]; see torvixrunner init --help"},
    };
    for (const WrongUse& row : table) {
        QString error;
        EXPECT_FALSE(parseCommandLine(row.arguments, &error));
        EXPECT_EQ(row.error, error.toStdString());
    }
}

} // namespace
