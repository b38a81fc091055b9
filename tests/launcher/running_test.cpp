#include "launcher/process/processfacts.h"
#include "support/application/running.h"

namespace {

using namespace Torvix;
using namespace Torvix::Testing;

TEST(Running, AScriptOrALauncherThatEndsMayStandBefore)
{
    const QString scripts[] = {target() + utf8("; exit 3"), utf8("exec ") + target(),
                               utf8("setsid ") + target() + utf8(" & exit 0")};
    for (const QString& script : scripts) {
        SCOPED_TRACE(qPrintable(script));
        Running running(utf8("/bin/sh"), {utf8("-c"), script});
        ASSERT_TRUE(running.isGood());
        EXPECT_EQ(utf8("torvixtarget"), running.model->peer().applicationName);
        EXPECT_EQ(utf8("0"), running.get(running.wait("{name='control'}"), "clicks"));
        EXPECT_TRUE(running.application->isRunning());
        running.application->stop();
        EXPECT_FALSE(running.application->isRunning()) << "nothing of it is left";
    }
}

TEST(Running, ItsOutputIsCapturedAndItsEndIsTold)
{
    QString error;
    LaunchOptions options = launchOptions(utf8("/bin/sh"));
    options.arguments =
        QStringList{utf8("-c"), utf8("echo started; echo oops >&2; ") + target() + utf8("; exit 5")};
    auto application = Application::start(options, &error);
    ASSERT_TRUE(application) << qPrintable(error);
    ApplicationModel* model = Inspector::self()->addApplication(application->takeLink());
    EXPECT_EQ(utf8("started\n"), application->readStdout());
    EXPECT_TRUE(application->readStderr().startsWith(utf8("oops\n")));
    EXPECT_EQ(utf8(""), application->readStdout());
    EXPECT_NE(0, application->pid());
    EXPECT_TRUE(application->isRunning());
    const qint64 pid = application->pid();
    application->stop();
    EXPECT_FALSE(application->isRunning());
    EXPECT_FALSE(isProcessRunning(pid)) << "the application behind the shell is gone as well";
    Inspector::self()->processEvents(0);
    EXPECT_FALSE(model->isAlive());
    Inspector::self()->reset();
}

} // namespace
