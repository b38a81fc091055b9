#include "objectmodel/samplemodel.h"

#include <gtest/gtest.h>

namespace {

using namespace Torvix;
using namespace Torvix::Testing;

class Recorder : public InspectorListener
{
public:
    void eventHandled(ApplicationModel*, const QString& handler, const QString& eventName,
                      const ObjectList& arguments) override
    {
        QString entry = handler + QLatin1Char(' ') + eventName + QLatin1Char(' ') + arguments[0]->className();
        log.append(entry);
        if (inHandler)
            inHandler();
        log.append(handler + QLatin1String(" done"));
    }
    void applicationEnded(ApplicationModel*, const QString& reason) override
    {
        log.append(QLatin1String("ended ") + reason);
    }

    QStringList log;
    std::function<void()> inHandler;
};

class Events : public testing::Test
{
protected:
    Events() { Inspector::self()->setListener(&recorder); }
    ~Events() override { Inspector::self()->setListener(nullptr); }

    void send(const char* handler)
    {
        Protocol::EventHandled event;
        event.handler = text(handler);
        event.eventName = text("Close");
        event.object = sample.shape;
        sample.model->sendEvent(event);
    }

    SampleModel sample;
    Recorder recorder;
};

TEST_F(Events, ArriveInOrderDuringACallAndAHandlerMayCallTheApplication)
{
    const SharedPtr<Object> shape = sample.find("{name='one'}");
    const Property* size = shape->objectClass()->property(text("size"));
    recorder.inHandler = [&] {
        recorder.log.append(QString::number(size->get(shape)->toInt()));
        // An event that comes while a handler runs waits for its end.
        if (recorder.log.size() < 4)
            send("later");
        EXPECT_FALSE(sample.find("{name='nobody'}"));
    };
    send("first");
    send("second");
    EXPECT_EQ(7, size->get(shape)->toInt());
    const QStringList expected{text("first Close Shape"),  text("7"), text("first done"),
                               text("second Close Shape"), text("7"), text("second done"),
                               text("later Close Shape"),  text("7"), text("later done")};
    EXPECT_EQ(expected, recorder.log);
}

TEST_F(Events, WaitForTheCallerWhenNobodyCalls)
{
    const SharedPtr<Object> shape = sample.find("{name='one'}");
    send("first");
    EXPECT_FALSE(shape->isInvalidated());
    EXPECT_TRUE(recorder.log.isEmpty()) << "asking for the state runs no handler";
    Inspector::self()->processEvents(0);
    EXPECT_EQ(2, recorder.log.size());
}

TEST_F(Events, TheEndIsToldOnceAfterTheEvents)
{
    sample.find("{name='one'}")->className();
    send("first");
    sample.model->close(text("it exited with status 3"));
    Inspector::self()->processEvents(0);
    Inspector::self()->processEvents(0);
    const QStringList expected{text("first Close Shape"), text("first done"),
                               text("ended it exited with status 3")};
    EXPECT_EQ(expected, recorder.log);
}

TEST_F(Events, GiveTheirReferencesBack)
{
    send("first");
    Inspector::self()->processEvents(0);
    Inspector::self()->processEvents(0);
    EXPECT_EQ(0, sample.model->references());
}

} // namespace
