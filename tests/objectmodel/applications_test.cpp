#include "support/application/running.h"

namespace {

using namespace Torvix;
using namespace Torvix::Testing;

/** Answers dialogs as a script's event handler would. */
class DialogCloser : public InspectorListener
{
public:
    explicit DialogCloser(Running* application) : m_application(application)
    {
        Inspector::self()->setListener(this);
    }
    ~DialogCloser() override { Inspector::self()->setListener(nullptr); }

    void eventHandled(ApplicationModel*, const QString& handler, const QString& eventName,
                      const ObjectList& arguments) override
    {
        seen.append(handler + QLatin1Char(' ') + eventName);
        dialog = arguments.value(0);
        m_application->act("type", {m_application->wait("{name='modalEdit'}"), value("from the handler")});
        m_application->act("clickButton", {m_application->wait("{type='QPushButton' text~='.*OK'}")});
    }

    QStringList seen;
    SharedPtr<Object> dialog;

private:
    Running* m_application;
};

TEST(Applications, AnEventHandlerUsesTheApplicationInTheMiddleOfACall)
{
    Running running(target());
    ASSERT_TRUE(running.isGood());
    DialogCloser closer(&running);
    Inspector* inspector = Inspector::self();
    const SharedPtr<Object> control = running.wait("{name='control'}");
    ASSERT_TRUE(inspector->installEventHandler(utf8("DialogOpened"), utf8("close")));
    running.act("mouseClick", {running.wait("{name='modal'}")});
    for (int i = 0; i < 500 && !running.get(control, "log").endsWith(utf8("accepted from the handler")); ++i)
        Inspector::self()->processEvents(10);
    EXPECT_TRUE(running.get(control, "log").endsWith(utf8("accepted from the handler")));
    EXPECT_EQ(QStringList{utf8("close DialogOpened")}, closer.seen);
    ASSERT_TRUE(closer.dialog);
    EXPECT_EQ(utf8("QDialog"), closer.dialog->className());
    EXPECT_TRUE(closer.dialog->isInvalidated());
    EXPECT_TRUE(inspector->uninstallEventHandler(utf8("DialogOpened"), utf8("close")));
    EXPECT_FALSE(inspector->uninstallEventHandler(utf8("DialogOpened"), utf8("close")));
    const QString unknown = inspector->installEventHandler(utf8("NoSuchEvent"), utf8("close")).error();
    EXPECT_TRUE(unknown.contains(utf8("NoSuchEvent"))) << qPrintable(unknown);
    closer.dialog.reset();
}

TEST(Applications, OneThatAnotherStartsIsAContextOfItsOwn)
{
    QString error;
    LaunchOptions options = launchOptions(utf8("/bin/sh"));
    const QString both = target() + utf8(" & ") + sample("widgets/calculator") + utf8(" & wait");
    options.arguments = QStringList{utf8("-c"), both};
    auto application = Application::start(options, &error);
    ASSERT_TRUE(application) << qPrintable(error);
    Inspector* inspector = Inspector::self();
    ApplicationModel* first = inspector->addApplication(application->takeLink());
    std::unique_ptr<ModelLink> link = application->waitForChild(10000);
    ASSERT_TRUE(link);
    ApplicationModel* second = inspector->addApplication(std::move(link));
    EXPECT_FALSE(application->waitForChild(50));
    EXPECT_NE(first->peer().pid, second->peer().pid);

    const bool isCalculatorFirst = first->peer().applicationName == utf8("calculator");
    inspector->setCurrent(isCalculatorFirst ? first : second);
    const SharedPtr<Object> calculator = inspector->findObject(utf8("{type='Calculator'}")).orNothing();
    ASSERT_TRUE(calculator);
    const Class* widget = inspector->classByName(utf8("QWidget"));
    inspector->setCurrent(isCalculatorFirst ? second : first);
    EXPECT_NE(widget, inspector->classByName(utf8("QWidget")));
    EXPECT_FALSE(inspector->findObject(utf8("{type='Calculator'}")));
    EXPECT_TRUE(inspector->findObject(utf8("{name='control'}")));
    const Property* title = calculator->objectClass()->property(utf8("windowTitle"));
    EXPECT_EQ(utf8("Calculator"), title->get(calculator)->toString())
        << "whatever context is the current one";

    application->stop();
    EXPECT_TRUE(calculator->isInvalidated());
    inspector->processEvents(0);
    EXPECT_FALSE(first->isAlive());
    EXPECT_FALSE(second->isAlive());
    Inspector::self()->reset();
}

TEST(Applications, RecordWhatTheUserDoes)
{
    class Log : public InspectorListener
    {
    public:
        void eventCaptured(ApplicationModel*, const Protocol::EventCaptured& event) override
        {
            events.append(event.methodName + QLatin1Char(' ') +
                          ObjectName::fromConditions(event.objectName).toString());
        }
        QStringList events;
    } log;
    Running running(sample("widgets/calculator"));
    ASSERT_TRUE(running.isGood());
    Inspector::self()->setListener(&log);
    EXPECT_TRUE(Inspector::self()->setRecording(true));
    const SharedPtr<Object> five = running.wait("{type='Button' text='5'}");
    running.act("mouseClick", {five});
    for (int i = 0; i < 200 && log.events.isEmpty(); ++i)
        Inspector::self()->processEvents(10);
    Inspector::self()->setListener(nullptr);
    ASSERT_FALSE(log.events.isEmpty());
    EXPECT_TRUE(log.events.first().contains(utf8("Button"))) << qPrintable(log.events.first());
    EXPECT_TRUE(log.events.first().contains(utf8("text='5'"))) << qPrintable(log.events.first());
}

} // namespace
