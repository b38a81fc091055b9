#include "objectmodel/inspector.h"
#include "objectmodel/objectmap.h"
#include "protocol/itempath.h"
#include "protocol/lookupmessages.h"

#include <QStringList>

namespace Torvix {

using namespace Protocol;

bool Inspector::note(const Result<void>& result)
{
    if (!result)
        m_lastError = result.error();
    return bool(result);
}

Failure Inspector::noApplication()
{
    return {QStringLiteral("No application is connected: start one or attach to one first")};
}

namespace {

template <class Request>
Result<typename Request::Reply> ask(ApplicationModel* application, const Request& request, int extraMs = 0)
{
    if (!application)
        return Inspector::noApplication();
    return application->call(request, extraMs);
}

/** A request about an object, which is null for the whole application. */
template <class Request>
Result<typename Request::Reply> askAbout(const SharedPtr<Object>& object, ApplicationModel* application,
                                         Request request, int extraMs = 0)
{
    if (!application)
        return Inspector::noApplication();
    const Result<qint64> id = application->remoteId(object);
    if (!id)
        return id.failure();
    request.object = *id;
    return application->call(request, extraMs);
}

Result<SharedPtr<Object>> made(ApplicationModel* application, const Result<ObjectReply>& reply)
{
    return reply.then([application](const ObjectReply& found) {
        return found.object.id == 0 ? SharedPtr<Object>() : application->makeObject(found.object);
    });
}

Result<ObjectList> made(ApplicationModel* application, const Result<ObjectsReply>& reply)
{
    return reply.then([application](const ObjectsReply& found) {
        ObjectList objects;
        for (const ObjectRef& ref : found.objects)
            objects.append(application->makeObject(ref));
        return objects;
    });
}

// -- look-up

Result<NameConditions> conditionsOf(const QString& name)
{
    const ObjectMap* map = ObjectMap::self();
    const auto toConditions = [map](const ObjectName& real) { return real.toConditions(map); };
    if (ObjectName::isRealName(name))
        return ObjectName::fromString(name).then(toConditions);
    if (map->contains(name))
        return toConditions(map->objectName(name));
    return Failure{
        QStringLiteral("'%1' is neither a real name nor a symbolic name of the object map").arg(name)};
}

} // namespace

Result<SharedPtr<Object>> Inspector::findObject(const QString& name)
{
    if (!m_current)
        return noApplication();
    return conditionsOf(name).then([this](const NameConditions& conditions) {
        Find request;
        request.name = conditions;
        return made(m_current, m_current->call(request));
    });
}

Result<SharedPtr<Object>> Inspector::findObject(const ObjectName& name)
{
    return findObject(name.toString());
}

Result<ObjectList> Inspector::findAllObjects(const QString& name)
{
    if (!m_current)
        return noApplication();
    return conditionsOf(name).then([this](const NameConditions& conditions) {
        FindAll request;
        request.name = conditions;
        return made(m_current, m_current->call(request));
    });
}

namespace {

QString failedConditions(quint32 failed)
{
    if (failed & WaitExists)
        return QStringLiteral("does not exist");
    QStringList texts;
    if (failed & WaitVisible)
        texts.append(QStringLiteral("is not visible"));
    if (failed & WaitEnabled)
        texts.append(QStringLiteral("is not enabled"));
    if (failed & WaitStable)
        texts.append(QStringLiteral("does not stay where it is"));
    if (failed & WaitNotBlocked)
        texts.append(QStringLiteral("is blocked by a modal window"));
    return texts.join(QLatin1String(", "));
}

QString waitError(const QString& what, int timeoutMs, const WaitReply& reply)
{
    QString text =
        QStringLiteral("%1 %2 after %3 ms").arg(what, failedConditions(reply.failed)).arg(timeoutMs);
    if (!reply.explanation.isEmpty())
        text += QLatin1String(reply.failed & WaitExists ? ". " : ": ") + reply.explanation;
    return text;
}

} // namespace

Inspector::WaitResult Inspector::finishWait(const Result<WaitReply>& reply, const QString& what,
                                            int timeoutMs)
{
    if (!reply)
        return {nullptr, WaitExists, reply.error()};
    WaitResult result;
    if (reply->object.id != 0)
        result.object = m_current->makeObject(reply->object);
    result.failed = reply->failed;
    if (result.failed != 0)
        result.error = waitError(what, timeoutMs, *reply);
    return result;
}

Inspector::WaitResult Inspector::waitForObject(const QString& name, int timeoutMs, quint32 conditions)
{
    WaitFor request;
    request.conditions = conditions;
    request.timeoutMs = qMax(0, timeoutMs);
    const Result<NameConditions> wanted = m_current ? conditionsOf(name) : noApplication();
    request.name = wanted.orNothing();
    const Result<WaitReply> reply = wanted ? m_current->call(request, request.timeoutMs) : wanted.failure();
    return finishWait(reply, QStringLiteral("Object %1").arg(name), request.timeoutMs);
}

Inspector::WaitResult Inspector::waitForObject(const SharedPtr<Object>& object, int timeoutMs,
                                               quint32 conditions)
{
    if (!object || object->isNull())
        return {nullptr, WaitExists,
                QStringLiteral("A null %1 cannot be waited for")
                    .arg(object ? object->className() : QStringLiteral("object"))};
    WaitFor request;
    request.conditions = conditions;
    request.timeoutMs = qMax(0, timeoutMs);
    return finishWait(askAbout(object, m_current, request, request.timeoutMs),
                      QStringLiteral("The %1").arg(object->className()), request.timeoutMs);
}

Inspector::WaitResult Inspector::waitForItem(const SharedPtr<Object>& container, FindItem request,
                                             const QString& what)
{
    request.timeoutMs = qMax(0, request.timeoutMs);
    const Result<qint64> id = m_current ? m_current->remoteId(container) : noApplication();
    request.container = id.orNothing();
    const Result<WaitReply> reply = id ? m_current->call(request, request.timeoutMs) : id.failure();
    return finishWait(reply, what, request.timeoutMs);
}

Inspector::WaitResult Inspector::waitForItem(const SharedPtr<Object>& container, const QString& itemPath,
                                             int timeoutMs)
{
    FindItem request;
    request.path = splitItemPath(itemPath);
    request.timeoutMs = timeoutMs;
    return waitForItem(container, request, QStringLiteral("Item '%1'").arg(itemPath));
}

Inspector::WaitResult Inspector::waitForItem(const SharedPtr<Object>& container, int row, int column,
                                             int timeoutMs)
{
    FindItem request;
    request.row = row;
    request.column = column;
    request.timeoutMs = timeoutMs;
    return waitForItem(container, request, QStringLiteral("Item in row %1, column %2").arg(row).arg(column));
}

// -- relations and the screen

Result<ObjectList> Inspector::children(const SharedPtr<Object>& object)
{
    return made(m_current, askAbout(object, m_current, Children()));
}

Result<SharedPtr<Object>> Inspector::parent(const SharedPtr<Object>& object)
{
    return made(m_current, askAbout(object, m_current, Parent()));
}

Result<ObjectList> Inspector::topLevelObjects()
{
    return made(m_current, ask(m_current, TopLevels()));
}

Result<SharedPtr<Object>> Inspector::objectAt(int x, int y)
{
    ObjectAt request;
    request.x = x;
    request.y = y;
    return made(m_current, ask(m_current, request));
}

Result<QRect> Inspector::globalBounds(const SharedPtr<Object>& object)
{
    return askAbout(object, m_current, GlobalBounds()).then([](const RectReply& reply) {
        return QRect(reply.x, reply.y, reply.width, reply.height);
    });
}

Result<QByteArray> Inspector::grabScreenshot(const SharedPtr<Object>& object, ScreenshotArea area)
{
    Screenshot request;
    request.area = object ? area : ScreenshotArea::Screen;
    return askAbout(object, m_current, request).then([](const ImageReply& reply) { return reply.png; });
}

Result<void> Inspector::highlight(const SharedPtr<Object>& object, int durationMs)
{
    Highlight request;
    request.durationMs = durationMs;
    return askAbout(object, m_current, request);
}

Result<void> Inspector::setPicking(bool on)
{
    Pick request;
    request.on = on;
    return ask(m_current, request);
}

Result<void> Inspector::setRecording(bool on)
{
    Record request;
    request.on = on;
    return ask(m_current, request);
}

// -- events

Result<void> Inspector::installEventHandler(const QString& eventName, const QString& handler)
{
    return ask(m_current, InstallHandler{HandlerScope::Global, 0, {}, eventName, handler});
}

Result<void> Inspector::installEventHandler(const SharedPtr<Object>& object, const QString& eventName,
                                            const QString& handler)
{
    return askAbout(object, m_current, InstallHandler{HandlerScope::Object, 0, {}, eventName, handler});
}

Result<void> Inspector::installEventHandler(const QString& typeName, const QString& eventName,
                                            const QString& handler)
{
    return ask(m_current, InstallHandler{HandlerScope::Type, 0, typeName, eventName, handler});
}

Result<void> Inspector::uninstallEventHandler(const QString& eventName, const QString& handler)
{
    return ask(m_current, UninstallHandler{HandlerScope::Global, 0, {}, eventName, handler});
}

Result<void> Inspector::uninstallEventHandler(const SharedPtr<Object>& object, const QString& eventName,
                                              const QString& handler)
{
    return askAbout(object, m_current, UninstallHandler{HandlerScope::Object, 0, {}, eventName, handler});
}

Result<void> Inspector::uninstallEventHandler(const QString& typeName, const QString& eventName,
                                              const QString& handler)
{
    return ask(m_current, UninstallHandler{HandlerScope::Type, 0, typeName, eventName, handler});
}

Result<void> Inspector::sendEvent(const Class* eventClass, const SharedPtr<Object>& target,
                                  const ObjectList& parameters)
{
    if (!m_current)
        return noApplication();
    if (!eventClass)
        return Failure{QStringLiteral("There is no class of the event to send")};
    const Result<qint64> targetId = m_current->remoteId(target);
    if (!targetId)
        return targetId;
    SendEvent request;
    request.target = *targetId;
    request.eventClassId = eventClass->id();
    for (const SharedPtr<Object>& parameter : parameters) {
        const Result<Value> value = m_current->toWire(parameter);
        if (!value)
            return value;
        request.arguments.append(*value);
    }
    return m_current->call(request);
}

Result<void> Inspector::mouseAction(MouseActionKind kind, const SharedPtr<Object>& object, quint32 flags,
                                    int x, int y, int button, int modifiers)
{
    MouseAction request;
    request.kind = kind;
    request.flags = flags;
    request.x = x;
    request.y = y;
    request.button = button;
    request.modifiers = modifiers;
    return askAbout(object, m_current, request);
}

// -- the rest

namespace {

Value fromVariant(const QVariant& variant)
{
    switch (int(variant.type())) {
    case QMetaType::Bool:
        return Value::ofBool(variant.toBool());
    case QMetaType::Int:
        return Value::ofInt(variant.toInt());
    case QMetaType::UInt:
        return Value::ofInt(variant.toUInt(), Value::Kind::UInt);
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return Value::ofInt(variant.toLongLong(), Value::Kind::Int64);
    case QMetaType::Double:
    case QMetaType::Float:
        return Value::ofDouble(variant.toDouble());
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        QVector<Value> elements;
        for (const QVariant& element : variant.toList())
            elements.append(fromVariant(element));
        return Value::ofArray(elements);
    }
    case QMetaType::QVariantMap: {
        QMap<QString, Value> entries;
        const QVariantMap map = variant.toMap();
        for (auto it = map.begin(); it != map.end(); ++it)
            entries.insert(it.key(), fromVariant(it.value()));
        return Value::ofMap(entries);
    }
    default:
        return variant.isValid() ? Value::ofString(variant.toString()) : Value();
    }
}

QVariant toVariant(const SharedPtr<Object>& object)
{
    switch (object->value().kind) {
    case Value::Kind::Bool:
        return object->toBool();
    case Value::Kind::String:
        return object->toString();
    case Value::Kind::Double:
        return object->toDouble();
    case Value::Kind::Array: {
        QVariantList list;
        for (const SharedPtr<Object>& element : object->elements())
            list.append(toVariant(element));
        return list;
    }
    case Value::Kind::Map: {
        QVariantMap map;
        const ObjectEntries entries = object->entries();
        for (auto it = entries.begin(); it != entries.end(); ++it)
            map.insert(it.key(), toVariant(it.value()));
        return map;
    }
    case Value::Kind::Object:
    case Value::Kind::Void:
        return QVariant();
    default:
        return object->toInt64();
    }
}

} // namespace

Result<QVariant> Inspector::remoteCall(const QString& function, const QVariantList& arguments)
{
    RemoteCall request;
    request.function = function;
    for (const QVariant& argument : arguments)
        request.arguments.append(fromVariant(argument));
    return ask(m_current, request).then([this](const ValueReply& reply) {
        return toVariant(m_current->makeObject(reply.value));
    });
}

Result<QString> Inspector::environmentVariable(const QString& name)
{
    EnvironmentVariable request;
    request.name = name;
    return ask(m_current, request).then([](const TextReply& reply) { return reply.text; });
}

Result<void> Inspector::ping(ApplicationModel* application, int timeoutMs)
{
    return application->call(Ping(), timeoutMs - application->callTimeout());
}

} // namespace Torvix
