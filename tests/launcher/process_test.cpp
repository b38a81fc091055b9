#include "launcher/process/findprogram.h"
#include "launcher/process/processend.h"
#include "launcher/process/processfacts.h"
#include "launcher/process/shellwords.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

using namespace Torvix;

TEST(ShellWords, AreReadAsAShellReadsThem)
{
    const struct
    {
        const char* text;
        QStringList words;
    } rows[] = {
        {"", {}},
        {" \t\n ", {}},
        {"a  b\tc\n", {"a", "b", "c"}},
        {"a \"\" '' b", {"a", "", "", "b"}},
        {"'a b'\"c d\"e", {"a bc de"}},
        {R"("a \"b\" \\ \$ \` \x" c)", {R"(a "b" \ $ ` \x)", "c"}},
        {R"('a \" "b')", {R"(a \" "b)"}},
        {R"(a\ b \'c \\)", {"a b", "'c", "\\"}},
        {"it\\'s $HOME *.txt >out #1", {"it's", "$HOME", "*.txt", ">out", "#1"}},
        {"Gr\u00fc\u00dfe \u65e5\u672c", {"Gr\u00fc\u00dfe", "\u65e5\u672c"}},
    };
    for (const auto& row : rows) {
        QString error;
        EXPECT_EQ(row.words, splitShellWords(row.text, &error).value_or(QStringList{"failed"})) << row.text;
        EXPECT_EQ("", error);
    }
    for (const char* text : {"a \"b", "'", "a 'b\" c", "a\\", "\"a\\\""}) {
        QString error;
        EXPECT_FALSE(splitShellWords(text, &error)) << text;
        EXPECT_FALSE(error.isEmpty()) << text;
    }
}

TEST(ShellWords, ComeBackFromTheirCommandLineHereAndInAShell)
{
    QStringList words{"plain-1.0_x=/a:b,@%+",
                      "",
                      " ",
                      "a \"b c",
                      "it's",
                      "$HOME",
                      "`id`",
                      "\\",
                      "a\\\"b",
                      "~",
                      "*",
                      "a;b",
                      "new\nline",
                      "tab\t",
                      "Gr\u00fc\u00dfe",
                      "!",
                      "#",
                      "a&b|c",
                      "{x,y}",
                      "-n"};
    for (char code = 1; code > 0; ++code)
        words += QString(QLatin1Char(code));
    const QString text = joinShellWords(words);
    QString error;
    EXPECT_EQ(words, splitShellWords(text, &error).value_or(QStringList())) << error.toStdString();
    EXPECT_TRUE(text.startsWith("plain-1.0_x=/a:b,@%+ \"\" \" \" \"a \\\"b c\" ")) << text.toStdString();
    QProcess shell;
    shell.start("/bin/sh", {"-c", "printf '%s\\0' " + text});
    ASSERT_TRUE(shell.waitForFinished());
    const QByteArray read = shell.readAllStandardOutput();
    EXPECT_EQ((words.join(QChar(0)) + QChar(0)).toUtf8().toPercentEncoding().toStdString(),
              read.toPercentEncoding().toStdString())
        << shell.readAllStandardError().constData();
}

TEST(ProcessEnds, AreFactsWithOneWording)
{
    const struct
    {
        const char* script;
        ProcessEnd::Kind kind;
        int code;
        const char* text;
    } rows[] = {
        {"exit 0", ProcessEnd::Exited, 0, "exited with status 0"},
        {"exit 137", ProcessEnd::Exited, 137, "exited with status 137"},
        {"kill -KILL $$", ProcessEnd::Killed, SIGKILL, "was killed by signal 9 (SIGKILL)"},
        {"kill -40 $$", ProcessEnd::Killed, 40, "was killed by signal 40 (Real-time signal 6)"},
    };
    for (const auto& row : rows) {
        QProcess shell;
        shell.start("/bin/sh", {"-c", QString("read line; ") + row.script});
        EXPECT_EQ(ProcessEnd::Running, endOf(shell).kind);
        shell.write("go on\n");
        ASSERT_TRUE(shell.waitForFinished());
        const ProcessEnd end = endOf(shell);
        EXPECT_EQ(row.kind, end.kind);
        EXPECT_EQ(row.code, end.code);
        EXPECT_EQ(row.text, endText(end));
        EXPECT_EQ(row.code == 0, end.isOrderly());
    }
    EXPECT_TRUE((ProcessEnd{ProcessEnd::Quit, 0}).isOrderly());
    EXPECT_FALSE((ProcessEnd{ProcessEnd::Gone, 0}).isOrderly());
}

TEST(ProcessFacts, AreReadBehindTheNameWhateverItHolds)
{
    QTemporaryDir folder;
    const QString program = folder.filePath("a) Z 1 (b");
    ASSERT_TRUE(QFile::copy("/bin/sleep", program));
    QProcess process;
    process.start(program, {"60"});
    ASSERT_TRUE(process.waitForStarted());
    const qint64 pid = process.processId();
    const std::optional<ProcessStat> stat = readProcessStat(pid);
    ASSERT_TRUE(stat);
    EXPECT_EQ(::getpid(), stat->parent);
    EXPECT_EQ(::getpgrp(), stat->group);
    EXPECT_TRUE(isProcessRunning(pid));
    EXPECT_FALSE(isProcessStopped(pid));
    ::kill(pid_t(pid), SIGSTOP);
    for (int round = 0; round < 1000 && !isProcessStopped(pid); ++round)
        ::usleep(10'000);
    EXPECT_TRUE(isProcessStopped(pid));
    EXPECT_LT(qAbs(processStart(pid).msecsTo(QDateTime::currentDateTime())), 60'000);
    process.kill();
    process.waitForFinished();
    EXPECT_FALSE(readProcessStat(pid));
    EXPECT_FALSE(isProcessRunning(pid));
    EXPECT_FALSE(processStart(pid).isValid());
    EXPECT_EQ(0, residentBytes(pid));
    EXPECT_FALSE(isProcessRunning(0));
    EXPECT_FALSE(isProcessRunning(-1));
}

TEST(Programs, AreFoundByPathThenInTheFoldersThenInPath)
{
    QTemporaryDir folder;
    ASSERT_TRUE(QFile::copy("/bin/true", folder.filePath("sh")));
    QFile plain(folder.filePath("cat"));
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    EXPECT_EQ(folder.filePath("sh"), findProgram("sh", {"/no/such", folder.path()}));
    EXPECT_TRUE(findProgram("cat", {folder.path()}).endsWith("bin/cat")) << "that one is no program";
    EXPECT_TRUE(findProgram("sh").endsWith("bin/sh"));
    EXPECT_EQ("", findProgram("no-such-program", {folder.path()}));
    EXPECT_EQ(QDir::currentPath() + "/no/such", findProgram("./no/../no/such"));
}

} // namespace
