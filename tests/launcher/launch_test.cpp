#include "launcher/launcher.h"

#include "support/processes.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

namespace {

using namespace Torvix;

/** What goes wrong when a program is started that cannot take the agent; needs no agent. */
class Launch : public testing::Test
{
protected:
    Launch()
    {
        QDir(folder.path()).mkdir(QStringLiteral("generic"));
        QFile plugin(folder.filePath(QStringLiteral("generic/libtorvixagent.so")));
        EXPECT_TRUE(plugin.open(QIODevice::WriteOnly));
        options.pluginDirectory = folder.path();
        options.timeoutMs = 10000;
    }

    QString script(const QByteArray& lines)
    {
        QFile file(folder.filePath(QStringLiteral("script")));
        file.remove(); // an earlier one can only be read
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + lines + "\n");
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        return file.fileName();
    }

    QString startFails(const QString& program, const QStringList& arguments = {})
    {
        options.program = program;
        options.arguments = arguments;
        QString error;
        EXPECT_FALSE(Application::start(options, &error)) << qPrintable(program);
        return error;
    }

    QTemporaryDir folder;
    LaunchOptions options;
};

void expectContains(const QString& text, const char* part)
{
    EXPECT_TRUE(text.contains(QString::fromUtf8(part))) << qPrintable(text) << "\nlacks: " << part;
}

TEST_F(Launch, SaysWhenTheFileIsMissingOrCannotBeRun)
{
    expectContains(startFails(QStringLiteral("/no/such/program")), "there is no file /no/such/program");
    expectContains(startFails(QStringLiteral("no-such-program-in-path")), "there is no file");
    expectContains(startFails(QStringLiteral("/etc/passwd")), "is not executable");
    expectContains(startFails(QStringLiteral("/tmp")), "is a folder");
    const QString broken = script("");
    QFile file(broken);
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("#!/no/such/interpreter\n");
    file.close();
    expectContains(startFails(broken), "No such file");
    options.workingDirectory = QStringLiteral("/no/such/folder");
    expectContains(startFails(QStringLiteral("/bin/true")), "No such file");
    options.workingDirectory.clear();
    options.pluginDirectory = QStringLiteral("/no/plugins");
    expectContains(startFails(QStringLiteral("/bin/true")),
                   "there is no /no/plugins/generic/libtorvixagent.so");
}

TEST_F(Launch, SaysHowAProgramThatExitsAtOnceEnded)
{
    const QString failed =
        startFails(script("echo out; echo one >&2; echo 'cannot open display' >&2; exit 3"));
    expectContains(failed, "exited with status 3 before its agent called back");
    expectContains(failed, "one\ncannot open display");
    // A signal that no sanitizer's runtime handles in the shell.
    expectContains(startFails(script("echo only out; kill -KILL $$")), "was killed by signal 9");
    expectContains(startFails(QStringLiteral("/bin/true")), "exited with status 0");
}

TEST_F(Launch, SaysWhenItIsNoQtProgramLongBeforeTheTimeout)
{
    QElapsedTimer timer;
    timer.start();
    expectContains(startFails(QStringLiteral("/bin/sleep"), {QStringLiteral("60")}),
                   "it is not a Qt program");
    EXPECT_LT(timer.elapsed(), 5000);
}

TEST_F(Launch, WaitsForAProgramThatIsBusyBeforeItLoadsQt)
{
    expectContains(
        startFails(script("end=$(($(date +%s) + 3)); while [ $end -gt ${now:-0} ]; do i=0\n"
                          "while [ $i -lt 20000 ]; do i=$((i + 1)); done; now=$(date +%s); done; exit 4")),
        "exited with status 4");
}

TEST_F(Launch, TellsQt6AndStaticProgramsByTheirFile)
{
    QFile file(folder.filePath(QStringLiteral("fake")));
    QFile model(QStringLiteral("/bin/true"));
    ASSERT_TRUE(model.open(QIODevice::ReadOnly));
    const QByteArray program = model.readAll();
    const auto startWith = [&](const QByteArray& addition) {
        file.remove();
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(program + addition);
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return startFails(file.fileName());
    };
    expectContains(startWith("libQt6Core.so.6"), "is a Qt 6 program, and the agent needs Qt 5");
    expectContains(startWith("QT_QPA_GENERIC_PLUGINS"), "has Qt linked statically");
}

TEST_F(Launch, EndsEverythingThatItStarted)
{
    // One child in the group and one that left it; both must be gone when the start has failed.
    options.timeoutMs = 1000;
    const QString pids = folder.filePath(QStringLiteral("pids"));
    const QByteArray out = pids.toLocal8Bit();
    const QString error =
        startFails(script("sleep 61 & echo $! >> " + out + "\nsetsid sleep 62 & echo $! >> " + out +
                          "\ntrap '' TERM\nwait; sleep 63"));
    expectContains(error, "did not call back within 1000 ms: it is not a Qt program");
    QFile file(pids);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> started = file.readAll().split('\n');
    ASSERT_EQ(3, started.size());
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(hasGone(started[i].toInt())) << started[i].constData();
    }
}

TEST(Attach, SaysWhyItCannot)
{
    QTemporaryDir folder;
    QString error;
    const QString path = folder.filePath(QStringLiteral("socket"));
    EXPECT_FALSE(Application::attach(path, QByteArray(32, 'a'), 50, &error));
    expectContains(error, "Cannot attach to ");
    expectContains(error, "No such file");
    EXPECT_FALSE(Application::attach(QStringLiteral("127.0.0.1:1"), QByteArray(32, 'a'), 0, &error));
    expectContains(error, "Connection refused");
}

} // namespace
