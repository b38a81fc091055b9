#include "objectmodel/applicationmodel.h"

#include "objectmodel/inspector.h"
#include "protocol/applicationmessages.h"
#include "protocol/eventmessages.h"
#include "protocol/lookupmessages.h"
#include "protocol/usermessages.h"
#include "protocol/waitmessages.h"

#include <QScopedValueRollback>

namespace Torvix {

using namespace Protocol;

namespace {

/** References are given back in batches; a script that makes no call for long still does. */
constexpr int releaseBatch = 512;

} // namespace

ObjectHandle::~ObjectHandle()
{
    if (!m_application)
        return;
    m_application->m_handles.remove(m_id);
    if (!m_application->m_alive)
        return;
    m_application->m_released.append({m_id, m_received});
    if (m_application->m_released.size() >= releaseBatch)
        m_application->flushReleases();
}

ApplicationModel::ApplicationModel(int id, std::unique_ptr<ModelLink> link)
    : m_id(id)
    , m_link(std::move(link))
{
    m_globalNamespace = std::make_unique<Namespace>(this, QString(), nullptr);
    m_link->setPushSink([this](const Frame& frame) { takePush(frame); });
}

ApplicationModel::~ApplicationModel()
{
    m_link->setPushSink({});
    invalidateAll();
    for (ObjectHandle* handle : qAsConst(m_handles))
        handle->m_application = nullptr;
}

Hello ApplicationModel::peer() const
{
    return m_link->peer();
}

int ApplicationModel::descriptor() const
{
    return m_alive ? m_link->descriptor() : -1;
}

void ApplicationModel::detach(const QString& reason)
{
    flushReleases();
    m_link->close(reason);
    noticeEnd();
}

void ApplicationModel::invalidateAll()
{
    for (ObjectHandle* handle : qAsConst(m_handles))
        handle->m_status |= InvalidatedStatus;
}

void ApplicationModel::noticeEnd()
{
    if (!m_alive || m_link->isOpen())
        return;
    m_alive = false;
    m_endReason = m_link->closeReason();
    m_released.clear();
    invalidateAll();
}

// -- calls

Result<QByteArray> ApplicationModel::exchange(RequestNumber number, const QByteArray& body, int extraMs)
{
    noticeEnd();
    if (!m_alive)
        return ended();
    flushReleases();
    const Result<QByteArray, LinkError> reply = m_link->exchange(number, body, m_callTimeoutMs + extraMs);
    noticeEnd();
    deliver();
    if (!reply)
        return Failure{reply.error()};
    return *reply;
}

Failure ApplicationModel::unreadable()
{
    m_link->close(QStringLiteral("the application's agent sent an answer that cannot be read"));
    noticeEnd();
    return ended();
}

Failure ApplicationModel::ended() const
{
    return {QStringLiteral("The application has ended: %1").arg(m_endReason)};
}

void ApplicationModel::flushReleases()
{
    if (m_released.isEmpty() || !m_alive)
        return;
    Release release;
    release.objects.swap(m_released);
    m_link->post(Release::number, encode(release));
}

// -- news

void ApplicationModel::takeNews()
{
    if (!m_alive)
        return;
    const QScopedValueRollback<int> quiet(m_quiet, m_quiet + 1);
    m_link->pump(0);
    noticeEnd();
}

void ApplicationModel::processEvents(int timeoutMs)
{
    if (m_alive) {
        const QScopedValueRollback<int> quiet(m_quiet, m_quiet + 1);
        flushReleases();
        m_link->pump(m_events.empty() ? timeoutMs : 0);
        noticeEnd();
    }
    deliver();
}

void ApplicationModel::takeLateReply(const Frame& frame)
{
    // The references in it are counted by the agent: they are taken, and given back at once.
    switch (RequestNumber(frame.number)) {
    case RequestNumber::GetProperty:
    case RequestNumber::CallMethod:
    case RequestNumber::Construct:
    case RequestNumber::Convert:
    case RequestNumber::RemoteCall: {
        ValueReply late;
        if (decode(frame.body, &late))
            makeObject(late.value);
        break;
    }
    case RequestNumber::GetProperties: {
        PropertiesReply late;
        if (decode(frame.body, &late))
            for (const PropertyResult& result : qAsConst(late.results))
                makeObject(result.value);
        break;
    }
    case RequestNumber::Find:
    case RequestNumber::Parent:
    case RequestNumber::ObjectAt: {
        ObjectReply late;
        if (decode(frame.body, &late))
            makeObject(late.object);
        break;
    }
    case RequestNumber::FindAll:
    case RequestNumber::Children:
    case RequestNumber::TopLevels: {
        ObjectsReply late;
        if (decode(frame.body, &late))
            for (const ObjectRef& ref : qAsConst(late.objects))
                makeObject(ref);
        break;
    }
    case RequestNumber::WaitFor:
    case RequestNumber::FindItem: {
        WaitReply late;
        if (decode(frame.body, &late))
            makeObject(late.object);
        break;
    }
    default:
        break;
    }
}

void ApplicationModel::takePush(const Frame& frame)
{
    if (frame.kind == FrameKind::Reply)
        return takeLateReply(frame);
    switch (PushNumber(frame.number)) {
    case PushNumber::ObjectsDestroyed: {
        ObjectsDestroyed news;
        if (!decode(frame.body, &news))
            break;
        for (qint64 id : qAsConst(news.objects))
            if (ObjectHandle* handle = m_handles.value(id))
                handle->m_status |= InvalidatedStatus;
        return;
    }
    case PushNumber::GoingDown:
        m_saidGoodbye = true;
        invalidateAll();
        return;
    default:
        m_events.push_back(frame);
        if (m_quiet == 0)
            deliver();
        return;
    }
    unreadable();
}

void ApplicationModel::deliver()
{
    if (m_delivering || m_quiet > 0)
        return;
    const QScopedValueRollback<bool> delivering(m_delivering, true);
    while (!m_events.empty()) {
        const Frame frame = m_events.front();
        m_events.pop_front();
        deliverOne(frame);
    }
    if (!m_alive && !m_endTold) {
        m_endTold = true;
        if (m_listener)
            m_listener->applicationEnded(this, m_endReason);
    }
}

void ApplicationModel::deliverOne(const Frame& frame)
{
    EventHandled handled;
    EventCaptured captured;
    Picked picked;
    // References are taken over even when nobody listens, so that they are given back.
    if (PushNumber(frame.number) == PushNumber::EventHandled && decode(frame.body, &handled)) {
        ObjectList arguments{makeObject(handled.object)};
        for (const Value& value : qAsConst(handled.arguments))
            arguments.append(makeObject(value));
        if (m_listener)
            m_listener->eventHandled(this, handled.handler, handled.eventName, arguments);
    } else if (PushNumber(frame.number) == PushNumber::Picked && decode(frame.body, &picked)) {
        const SharedPtr<Object> object = makeObject(picked.object);
        if (m_listener)
            m_listener->picked(this, object);
    } else if (PushNumber(frame.number) == PushNumber::EventCaptured && decode(frame.body, &captured)) {
        if (m_listener)
            m_listener->eventCaptured(this, captured);
    }
}

// -- values

SharedPtr<Object> ApplicationModel::makeObject(const ObjectRef& ref)
{
    const Class* objectClass = linkClass({ref.classId, QString()});
    if (ref.id == 0)
        return new Object(objectClass, Value::ofObject(ref));
    ObjectHandle*& entry = m_handles[ref.id];
    if (!entry)
        entry = new ObjectHandle(this, ref.id);
    const SharedPtr<ObjectHandle> handle(entry);
    ++handle->m_received;
    handle->m_status |= ref.status | (m_alive ? NoStatus : InvalidatedStatus);
    return new Object(objectClass, Value::ofObject(ref), handle);
}

SharedPtr<Object> ApplicationModel::makeObject(const Value& value)
{
    const Inspector* inspector = Inspector::self();
    switch (value.kind) {
    case Value::Kind::Object:
        return makeObject(value.object);
    case Value::Kind::Array: {
        ObjectList elements;
        for (const Value& element : value.elements)
            elements.append(makeObject(element));
        return ArrayClass::createRemoteObject(elements);
    }
    case Value::Kind::Map: {
        ObjectEntries entries;
        for (auto it = value.entries.begin(); it != value.entries.end(); ++it)
            entries.insert(it.key(), makeObject(it.value()));
        return MapClass::createRemoteObject(entries);
    }
    default:
        return new Object(inspector->builtinClass(value.classId()), value);
    }
}

Result<Value> ApplicationModel::toWire(const SharedPtr<Object>& object)
{
    if (!object)
        return Failure{QStringLiteral("A value is missing")};
    switch (object->value().kind) {
    case Value::Kind::Array: {
        QVector<Value> elements;
        for (const SharedPtr<Object>& each : object->elements()) {
            const Result<Value> element = toWire(each);
            if (!element)
                return element;
            elements.append(*element);
        }
        return Value::ofArray(elements);
    }
    case Value::Kind::Map: {
        QMap<QString, Value> entries;
        const ObjectEntries theirs = object->entries();
        for (auto it = theirs.begin(); it != theirs.end(); ++it) {
            const Result<Value> entry = toWire(it.value());
            if (!entry)
                return entry;
            entries.insert(it.key(), *entry);
        }
        return Value::ofMap(entries);
    }
    case Value::Kind::Object:
        return remoteId(object).then([&object](qint64) { return object->value(); });
    default:
        return object->value();
    }
}

Result<qint64> ApplicationModel::remoteId(const SharedPtr<Object>& object)
{
    if (!object || object->isNull())
        return 0;
    if (!object->m_handle)
        return Failure{
            QStringLiteral("A %1 is a value, not an object of the application").arg(object->className())};
    if (object->m_handle->application() != this)
        return Failure{QStringLiteral("The %1 belongs to another application").arg(object->className())};
    if (object->isInvalidated())
        return m_alive ? Failure{QStringLiteral("The %1 has been destroyed").arg(object->className())}
                       : ended();
    return object->m_handle->id();
}

Result<SharedPtr<Object>> ApplicationModel::convert(const SharedPtr<Object>& object, const Class* target)
{
    const Result<Value> value = toWire(object);
    if (!value)
        return value.failure();
    Convert request;
    request.classId = target->id();
    request.value = *value;
    return call(request).then([this](const ValueReply& reply) { return makeObject(reply.value); });
}

} // namespace Torvix
