#include "support/application/running.h"

#include <QElapsedTimer>
#include <QFile>

#include <csignal>
#include <thread>

namespace {

using namespace Torvix;
using namespace Torvix::Testing;

/** Where nothing else is asked, an answer or an error comes within a second. */
constexpr int promptMs = 1000;

class Robustness : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(running.isGood());
        control = running.find("{name='control'}");
        ASSERT_TRUE(control);
        // Described now, so that the tests see what the call itself does.
        ASSERT_TRUE(control->objectClass()->property(utf8("clicks")));
    }

    /** True when a read fails; tells how long it took. */
    bool readFails(const SharedPtr<Object>& object, const char* property)
    {
        const Property* found = object->objectClass()->property(utf8(property));
        EXPECT_TRUE(found) << property;
        timer.start();
        running.error = found ? found->get(object).error() : QString();
        return !running.error.isNull();
    }
    static void expectError(const QString& error, const char* part)
    {
        EXPECT_TRUE(error.contains(utf8(part))) << qPrintable(error);
    }
    void expectError(const char* part) { expectError(running.error, part); }
    void expectAlive() { EXPECT_EQ(utf8("control"), running.get(control, "objectName")); }

    Running running{target()};
    SharedPtr<Object> control;
    QElapsedTimer timer;
};

TEST_F(Robustness, KilledInTheMiddleOfACall)
{
    running.call(control, "blockLater", {value(20000)});
    const pid_t pid = pid_t(running.application->pid());
    std::thread killer([pid] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        ::kill(pid, SIGKILL);
    });
    EXPECT_TRUE(readFails(control, "clicks"));
    EXPECT_LT(timer.elapsed(), 300 + promptMs);
    killer.join();
    expectError("was killed by signal 9");
    EXPECT_TRUE(control->isInvalidated());
    EXPECT_FALSE(running.model->isAlive());
    EXPECT_EQ(ProcessEnd::Killed, running.application->end().kind);
    EXPECT_EQ(SIGKILL, running.application->end().code);
    EXPECT_FALSE(Inspector::self()->findObject(utf8("{name='control'}")));
    expectError("has ended");
}

TEST_F(Robustness, StoppedAndContinued)
{
    const pid_t pid = pid_t(running.application->pid());
    ::kill(pid, SIGSTOP);
    EXPECT_TRUE(readFails(control, "clicks"));
    EXPECT_LT(timer.elapsed(), promptMs);
    expectError("is stopped");
    EXPECT_FALSE(control->isInvalidated()) << "it is still there";
    EXPECT_FALSE(Inspector::self()->ping(running.model, 100));
    ::kill(pid, SIGCONT);
    expectAlive();
    EXPECT_TRUE(Inspector::self()->ping(running.model, 1000));
}

TEST_F(Robustness, ExitAndCrashInTheMiddleOfACall)
{
    const SharedPtr<Object> other = control->reference();
    timer.start();
    EXPECT_FALSE(running.call(control, "exitNow", {value(3)}));
    EXPECT_LT(timer.elapsed(), promptMs);
    expectError("exited with status 3");
    EXPECT_TRUE(other->isInvalidated());

    Running second{target()};
    timer.start();
    EXPECT_FALSE(second.call(second.find("{name='control'}"), "crash"));
    EXPECT_LT(timer.elapsed(), promptMs);
    expectError(second.error, "was killed by signal");
}

TEST_F(Robustness, TheObjectIsDestroyedWhileItIsRead)
{
    const SharedPtr<Object> shapes = running.find("{type='Shapes'}");
    // The getter's own value still comes, or an error; from then on the object is known to be gone.
    readFails(shapes, "deadly");
    EXPECT_LT(timer.elapsed(), promptMs);
    EXPECT_TRUE(shapes->isInvalidated());
    EXPECT_TRUE(readFails(shapes, "number"));
    expectError("destroyed");
    expectAlive();
}

TEST_F(Robustness, AGetterThatOpensADialog)
{
    const SharedPtr<Object> shapes = running.find("{type='Shapes'}");
    EXPECT_TRUE(readFails(shapes, "dialogText"));
    EXPECT_LT(timer.elapsed(), promptMs);
    EXPECT_FALSE(running.error.isEmpty());
    EXPECT_FALSE(shapes->isInvalidated());
    const SharedPtr<Object> dialog = running.find("{type='QMessageBox' visible=true}");
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(running.call(dialog, "reject"));
    expectAlive();
}

TEST_F(Robustness, AModalDialogOpenedBySlotAndClickDoesNotHoldTheCaller)
{
    timer.start();
    EXPECT_TRUE(running.call(control, "openModal")) << qPrintable(running.error);
    EXPECT_LT(timer.elapsed(), promptMs);
    running.act("type", {running.wait("{name='modalEdit'}"), value("x")});
    running.act("type", {running.wait("{name='modalEdit'}"), value("<Return>")});
    EXPECT_TRUE(running.becomes(control, "log", "accepted x"));
    running.act("mouseClick", {running.wait("{name='modal'}")});
    running.act("clickButton", {running.wait("{type='QPushButton' text~='.*Cancel'}")});
    expectAlive();
}

TEST_F(Robustness, ABlockedEventLoopAnswersWhenItIsFree)
{
    running.call(control, "blockLater", {value(1500)});
    timer.start();
    expectAlive();
    EXPECT_LT(timer.elapsed(), 1500 + promptMs);

    running.model->setCallTimeout(200);
    EXPECT_FALSE(running.call(control, "block", {value(1000)}));
    expectError("did not answer within 200 ms");
    running.model->setCallTimeout(20000);
    expectAlive();
}

TEST_F(Robustness, LookUpsWhileThousandsOfObjectsComeAndGo)
{
    running.call(control, "churn", {value(2000)});
    int rounds = 0;
    while (running.get(control, "log") != utf8("churned") && ++rounds < 20000) {
        const ObjectList labels = *Inspector::self()->findAllObjects(utf8("{type='QLabel'}"));
        for (const SharedPtr<Object>& object : labels) {
            const auto text = object->objectClass()->property(utf8("text"))->get(object);
            ASSERT_TRUE(text || object->isInvalidated()) << qPrintable(text.error());
        }
        const auto edit = Inspector::self()->findObject(utf8("{name='nameEdit'}"));
        ASSERT_TRUE(edit) << qPrintable(edit.error());
    }
    EXPECT_GT(rounds, 1);

    running.call(control, "makeTree", {value(2000)});
    const ObjectList leaves = *Inspector::self()->findAllObjects(utf8("{type='QTimer' name*='leaf*'}"));
    ASSERT_EQ(2000, leaves.size());
    EXPECT_EQ(utf8("1999"), running.get(leaves.last(), "interval"));
    running.call(control, "dropTree");
    for (const SharedPtr<Object>& leaf : leaves)
        ASSERT_TRUE(leaf->isInvalidated());
    EXPECT_TRUE(readFails(leaves.first(), "interval"));
    expectError("destroyed");
    expectAlive();
}

TEST_F(Robustness, WaitsEndWithTheChangeAndSayWhatIsMissing)
{
    Inspector* inspector = Inspector::self();
    timer.start();
    Inspector::WaitResult result = inspector->waitForObject(utf8("{name='disabled'}"), 200);
    EXPECT_EQ(quint32(Protocol::WaitEnabled), result.failed);
    EXPECT_TRUE(result.object);
    expectError(result.error, "is not enabled");
    EXPECT_GE(timer.elapsed(), 199);
    result = inspector->waitForObject(utf8("{name='lateLabel'}"), 100);
    EXPECT_EQ(quint32(Protocol::WaitExists), result.failed & Protocol::WaitExists);
    expectError(result.error, "does not exist after 100 ms");
    running.call(control, "appearLater", {value(200)});
    EXPECT_TRUE(running.wait("{name='lateLabel'}"));
    EXPECT_EQ(0u, inspector->waitForObject(utf8("{name='disabled'}"), 100, Protocol::WaitExists).failed);
}

} // namespace
