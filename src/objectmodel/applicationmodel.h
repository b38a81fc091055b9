#pragma once

#include "objectmodel/class.h"
#include "objectmodel/modellink.h"
#include "protocol/classmessages.h"
#include "protocol/codec.h"
#include "protocol/greeting.h"
#include "protocol/membermessages.h"

#include <QElapsedTimer>
#include <QSet>

#include <deque>
#include <map>

namespace Torvix {

class InspectorListener;
class Namespace;

/** The one handle for all wrappers of an object: its state, and the references to give back. */
class ObjectHandle : public Shared
{
public:
    ObjectHandle(ApplicationModel* application, qint64 id) : m_application(application), m_id(id) {}
    ~ObjectHandle() override;

    ApplicationModel* application() const { return m_application; }
    qint64 id() const { return m_id; }
    /** Object::Status bits, as far as news have been taken in. */
    quint32 status() const { return m_status; }

private:
    friend class ApplicationModel;
    ApplicationModel* m_application;
    qint64 m_id;
    qint64 m_received = 0;
    quint32 m_status = 0;
};

/**
 * One application: its classes, the references into it, and the calls to it. Made by
 * Inspector::addApplication; lives as long as the inspector, so that classes and wrappers stay
 * valid when the application has gone.
 */
class TORVIXOBJECTMODEL_EXPORT ApplicationModel
{
public:
    ApplicationModel(int id, std::unique_ptr<ModelLink> link);
    ~ApplicationModel();
    ApplicationModel(const ApplicationModel&) = delete;
    ApplicationModel& operator=(const ApplicationModel&) = delete;

    /** The id of the context, as scripts compare it. */
    int id() const { return m_id; }
    Protocol::Hello peer() const;

    /** False once the application has gone or detach() was called. */
    bool isAlive() const { return m_alive; }
    /** Why it is not alive. */
    QString endReason() const { return m_endReason; }
    /** Whether it said that it quits: an end without that is a crash, or a process that was killed. */
    bool hasSaidGoodbye() const { return m_saidGoodbye; }
    /** Closes the connection; all references are invalidated, as with a death. */
    void detach(const QString& reason);
    /** Longest wait for an ordinary call. Default 60,000 ms. Not used by requests that wait. */
    void setCallTimeout(int milliseconds) { m_callTimeoutMs = milliseconds; }
    int callTimeout() const { return m_callTimeoutMs; }

    /**
     * One request (protocol/message.h lists them). Events for the listener that arrive meanwhile are
     * delivered before it returns.
     * @param extraMs added to the call timeout, for requests that wait in the application
     */
    template <class Request>
    Result<typename Request::Reply> call(const Request& request, int extraMs = 0)
    {
        const Result<QByteArray> body = exchange(Request::number, Protocol::encode(request), extraMs);
        if (!body)
            return body.failure();
        typename Request::Reply reply;
        if (!Protocol::decode(*body, &reply))
            return unreadable();
        return reply;
    }

    /** Null for an unknown id, and when the application does not say. A built-in code gives the built-in
     *  type. */
    const Class* classById(int id);
    /** Null when there is none (no error). A miss is remembered for a second, or until an object of a
     *  class appears that was not known. */
    const Class* classByName(const QString& name);
    const Namespace* namespaceByName(const QString& name);
    const Class* globalClass();
    const Namespace* globalNamespace();
    /** The class, whether fetched or not. */
    const Class* linkClass(const Protocol::ClassLink& link);
    /** Fetches the description of a class; false when the application does not give it. */
    bool describe(const Class* described);

    SharedPtr<Object> makeObject(const Protocol::ObjectRef& ref);
    SharedPtr<Object> makeObject(const Protocol::Value& value);
    /** Fails for an object of another application, and for one that is invalidated. */
    Result<Protocol::Value> toWire(const SharedPtr<Object>& object);
    /** The id for a call on it, 0 for null. Fails like toWire. */
    Result<qint64> remoteId(const SharedPtr<Object>& object);
    /** The value as one of that class, as the application converts it. */
    Result<SharedPtr<Object>> convert(const SharedPtr<Object>& object, const Class* target);

    /** Takes in what has arrived, without waiting and without calling the listener. */
    void takeNews();
    /** Waits for news as long and delivers the events that are there to the listener, in order. */
    void processEvents(int timeoutMs);
    int descriptor() const;
    /** True when processEvents() has something to deliver that has arrived already. */
    bool hasEvents() const { return !m_events.empty(); }

    /** Not owned; null for none. */
    void setListener(InspectorListener* listener) { m_listener = listener; }

private:
    friend class ObjectHandle;
    friend class Object;

    Result<QByteArray> exchange(Protocol::RequestNumber number, const QByteArray& body, int extraMs);
    Failure unreadable();
    Failure ended() const;
    void takePush(const Protocol::Frame& frame);
    void takeLateReply(const Protocol::Frame& frame);
    void deliver();
    void deliverOne(const Protocol::Frame& frame);
    void invalidateAll();
    void noticeEnd();
    void flushReleases();
    /** Names that the application did not know a moment ago. */
    class UnknownNames
    {
    public:
        bool contains(const QString& name);
        void insert(const QString& name);
        void clear() { m_names.clear(); }

    private:
        static constexpr qint64 freshMs = 1000;
        QSet<QString> m_names;
        QElapsedTimer m_since;
    };

    const Class* adopt(const Protocol::ClassReply& reply);

    int m_id;
    std::unique_ptr<ModelLink> m_link;
    bool m_alive = true;
    QString m_endReason;
    bool m_saidGoodbye = false;
    int m_callTimeoutMs = 60000;
    InspectorListener* m_listener = nullptr;

    std::map<int, std::unique_ptr<Class>> m_classes;
    QHash<QString, const Class*> m_classesByName;
    std::map<QString, std::unique_ptr<Namespace>> m_namespaces;
    UnknownNames m_unknownClasses;
    UnknownNames m_unknownNamespaces;
    std::unique_ptr<Namespace> m_globalNamespace;
    const Class* m_globalClass = nullptr;
    bool m_globalClassAsked = false;

    QHash<qint64, ObjectHandle*> m_handles;
    QVector<Protocol::ReleasedRef> m_released;
    std::deque<Protocol::Frame> m_events;
    bool m_delivering = false;
    bool m_endTold = false;
    int m_quiet = 0;
};

} // namespace Torvix
