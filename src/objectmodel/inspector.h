#pragma once

#include "objectmodel/applicationmodel.h"
#include "objectmodel/class.h"
#include "objectmodel/containerclass.h"
#include "objectmodel/namespace.h"
#include "objectmodel/objectname.h"
#include "protocol/applicationmessages.h"
#include "protocol/eventmessages.h"
#include "protocol/screenmessages.h"
#include "protocol/usermessages.h"
#include "protocol/waitmessages.h"

#include <QRect>
#include <QVariant>

#include <memory>
#include <vector>

namespace Torvix {

/** Whom the inspector tells what happens in the applications. All on the caller's thread. */
class TORVIXOBJECTMODEL_EXPORT InspectorListener
{
public:
    virtual ~InspectorListener() = default;

    /**
     * An event for which a handler was installed. May call the application, and wait, and fail: the
     * next event is delivered when this one has returned. The object comes first in the list.
     */
    virtual void eventHandled(ApplicationModel*, const QString& /*handler*/, const QString& /*eventName*/,
                              const ObjectList& /*arguments*/)
    {
    }
    /** What the user did while recording is on. */
    virtual void eventCaptured(ApplicationModel*, const Protocol::EventCaptured&) {}
    virtual void picked(ApplicationModel*, const SharedPtr<Object>&) {}
    /** The application has gone; its references are invalidated already. */
    virtual void applicationEnded(ApplicationModel*, const QString& /*reason*/) {}
};

/**
 * The root of the object model: built-in types, the connected applications, and what a script asks
 * of the current one. One per process, on one thread.
 *
 * Names in arguments are in text form: a symbolic name of ObjectMap::self(), or a real name.
 *
 * An operation that can fail gives a Result, which carries why.
 */
class TORVIXOBJECTMODEL_EXPORT Inspector
{
public:
    /** Never null. */
    static Inspector* self();

    // -- the last error, for those who get no Result across the runner's interface or a script's call
    /** The text of the last failure that was noted; possibly empty. */
    QString lastError() const { return m_lastError; }
    void setLastError(const QString& text) { m_lastError = text; }
    /** Keeps a failure as the last error; the only place that does. True when there was none. */
    bool note(const Result<void>& result);

    // -- applications
    /** The new context becomes the current one when there is none yet. */
    ApplicationModel* addApplication(std::unique_ptr<ModelLink> link);
    /** Null when there is no such context. Contexts that have ended are still found. */
    ApplicationModel* application(int id) const;
    /** All, the ended ones too, in order of their ids. */
    QVector<ApplicationModel*> applications() const;
    /** Null when there is none. */
    ApplicationModel* current() const { return m_current; }
    /** Null for none. */
    void setCurrent(ApplicationModel* application) { m_current = application; }
    /** Not owned; for all applications. Null for none. */
    void setListener(InspectorListener* listener);
    InspectorListener* listener() const { return m_listener; }
    /** Waits up to the time for news of any application and delivers the events. 0 does not wait. */
    void processEvents(int timeoutMs);
    /** Detaches and forgets all applications and their classes. No wrapper may be left. */
    void reset();

    // -- classes
    /** Null without an application. */
    const Class* globalClass() const;
    /** Never null: without an application an empty one. */
    const Namespace* globalNamespace() const;
    /**
     * Built-in codes: 0 `uint`, 1 `int`, 2 `short`, 3 `bool`, 4 `QString`, 5 `double`, 6 `qint64`,
     * 7 `void`, 8 `Array`, 9 `Map`. Others are of the current application. Null when unknown.
     */
    const Class* classById(int id) const;
    /** Built-in types go by the names above and by `string`, `unsigned int`, `long long`. */
    const Class* classByName(const QString& name) const;
    const Namespace* namespaceByName(const QString& name) const;
    /** Built-in types only; null for other ids. Needs no application. */
    const Class* builtinClass(int id) const;

    // -- values that live here
    SharedPtr<Object> createUInt(quint32 value) const;
    SharedPtr<Object> createInteger(int value) const;
    /** Of code 2, cut to 16 bits. */
    SharedPtr<Object> createShort(int value) const;
    SharedPtr<Object> createBoolean(bool value) const;
    SharedPtr<Object> createString(const QString& value) const;
    SharedPtr<Object> createString(const QByteArray& utf8) const;
    SharedPtr<Object> createDouble(double value) const;
    SharedPtr<Object> createInt64(qint64 value) const;
    SharedPtr<Object> createVoid() const;
    /** An array of strings. */
    SharedPtr<Object> createStringList(const QStringList& values) const;
    /** A null pointer of a class; null class: of `void`. */
    SharedPtr<Object> createNull(const Class* type) const;

    // -- objects of the current application
    /** The first match; a failure tells the nearest miss. Does not wait. */
    Result<SharedPtr<Object>> findObject(const QString& name);
    Result<SharedPtr<Object>> findObject(const ObjectName& name);
    /** All matches; that there is none is no failure. */
    Result<ObjectList> findAllObjects(const QString& name);

    struct WaitResult
    {
        /** The last match of the name, also when a condition failed; null when there was none. */
        SharedPtr<Object> object;
        /** Protocol::WaitCondition bits that failed; 0 for success. */
        quint32 failed = 0;
        /** Which conditions failed, and why. */
        QString error;
    };
    /** Waits in the application until all conditions hold, and ends within milliseconds of it. */
    WaitResult waitForObject(const QString& name, int timeoutMs, quint32 conditions = Protocol::WaitReady);
    /** The same for an object that was found before: it may have got another name meanwhile. */
    WaitResult waitForObject(const SharedPtr<Object>& object, int timeoutMs,
                             quint32 conditions = Protocol::WaitReady);
    /**
     * An item by its path of texts from the top level down: "File.Open"; Protocol::splitItemPath() has
     * the syntax.
     */
    WaitResult waitForItem(const SharedPtr<Object>& container, const QString& itemPath, int timeoutMs);
    WaitResult waitForItem(const SharedPtr<Object>& container, int row, int column, int timeoutMs);

    Result<ObjectList> children(const SharedPtr<Object>& object);
    /** Null for a top-level object. */
    Result<SharedPtr<Object>> parent(const SharedPtr<Object>& object);
    Result<ObjectList> topLevelObjects();
    /** The topmost widget at a global position; null when there is none. */
    Result<SharedPtr<Object>> objectAt(int x, int y);
    /** In device-independent pixels of the screen. */
    Result<QRect> globalBounds(const SharedPtr<Object>& object);
    /**
     * A PNG file in the pixels of the device (see Protocol::pixelRatioKey). The object may be null for
     * the whole screen.
     */
    Result<QByteArray> grabScreenshot(const SharedPtr<Object>& object,
                                      Protocol::ScreenshotArea area = Protocol::ScreenshotArea::Object);
    Result<void> highlight(const SharedPtr<Object>& object, int durationMs);
    /** While on, the next click picks an object: InspectorListener::picked. */
    Result<void> setPicking(bool on);
    /** While on, InspectorListener::eventCaptured hears of what the user does. */
    Result<void> setRecording(bool on);

    // -- events
    Result<void> installEventHandler(const QString& eventName, const QString& handler);
    Result<void> installEventHandler(const SharedPtr<Object>& object, const QString& eventName,
                                     const QString& handler);
    Result<void> installEventHandler(const QString& typeName, const QString& eventName,
                                     const QString& handler);
    Result<void> uninstallEventHandler(const QString& eventName, const QString& handler);
    Result<void> uninstallEventHandler(const SharedPtr<Object>& object, const QString& eventName,
                                       const QString& handler);
    Result<void> uninstallEventHandler(const QString& typeName, const QString& eventName,
                                       const QString& handler);
    /** The parameters are those of the event class's constructor. */
    Result<void> sendEvent(const Class* eventClass, const SharedPtr<Object>& target,
                           const ObjectList& parameters);
    /** The flags are Protocol::MouseActionFlag bits: what is given. */
    Result<void> mouseAction(Protocol::MouseActionKind kind, const SharedPtr<Object>& object, quint32 flags,
                             int x, int y, int button, int modifiers);

    // -- the rest
    /** A function of the agent by name; an invalid QVariant when it has no result. */
    Result<QVariant> remoteCall(const QString& function, const QVariantList& arguments);
    /** Of the application's process; empty when it is not set. */
    Result<QString> environmentVariable(const QString& name);
    /** Fails when the application does not answer in time. */
    Result<void> ping(ApplicationModel* application, int timeoutMs);

    /** What every operation that needs an application says without one. */
    static Failure noApplication();

private:
    Inspector();
    ~Inspector();

    struct Builtins;
    WaitResult finishWait(const Result<Protocol::WaitReply>& reply, const QString& what, int timeoutMs);
    WaitResult waitForItem(const SharedPtr<Object>& container, Protocol::FindItem request,
                           const QString& what);

    QString m_lastError;
    std::unique_ptr<Builtins> m_builtins;
    std::vector<std::unique_ptr<ApplicationModel>> m_applications;
    ApplicationModel* m_current = nullptr;
    InspectorListener* m_listener = nullptr;
    int m_nextId = 1;
};

} // namespace Torvix
