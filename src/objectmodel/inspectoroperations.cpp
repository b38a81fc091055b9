#include "objectmodel/inspector.h"
#include "objectmodel/objectmap.h"
#include "protocol/itempath.h"
#include "protocol/lookupmessages.h"

#include <QStringList>

namespace Torvix {

using namespace Protocol;

ApplicationModel* Inspector::need()
{
    if (!m_current)
        m_lastError = QStringLiteral("No application is connected: start one or attach to one first");
    return m_current;
}

// -- look-up

bool Inspector::conditionsOf(const QString& name, NameConditions* conditions)
{
    const ObjectMap* map = ObjectMap::self();
    QString error;
    ObjectName real;
    if (ObjectName::isRealName(name))
        real = ObjectName::fromString(name, &error);
    else if (map->contains(name))
        real = map->objectName(name);
    else
        error = QStringLiteral("'%1' is neither a real name nor a symbolic name of the object map").arg(name);
    if (error.isEmpty() && real.isEmpty())
        error =
            QStringLiteral("An empty name fits every object. (One entry that is undefined makes a name that "
                           "a script gives as an object empty.)");
    if (error.isEmpty() && real.toConditions(map, conditions, &error))
        return true;
    m_lastError = error;
    return false;
}

SharedPtr<Object> Inspector::findObject(const QString& name)
{
    Find request;
    ObjectReply reply;
    if (!need() || !conditionsOf(name, &request.name) || !m_current->call(request, &reply))
        return nullptr;
    return m_current->makeObject(reply.object);
}

SharedPtr<Object> Inspector::findObject(const ObjectName& name)
{
    return findObject(name.toString());
}

ObjectList Inspector::findAllObjects(const QString& name)
{
    FindAll request;
    ObjectsReply reply;
    ObjectList found;
    if (need() && conditionsOf(name, &request.name) && m_current->call(request, &reply))
        for (const ObjectRef& ref : qAsConst(reply.objects))
            found.append(m_current->makeObject(ref));
    return found;
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

Inspector::WaitResult Inspector::finishWait(bool answered, const QString& what, int timeoutMs,
                                            const WaitReply& reply)
{
    WaitResult result;
    if (!answered)
        return {nullptr, WaitExists};
    if (reply.object.id != 0)
        result.object = m_current->makeObject(reply.object);
    result.failed = reply.failed;
    if (result.failed != 0)
        m_lastError = waitError(what, timeoutMs, reply);
    return result;
}

Inspector::WaitResult Inspector::waitForObject(const QString& name, int timeoutMs, quint32 conditions)
{
    WaitFor request;
    request.conditions = conditions;
    request.timeoutMs = qMax(0, timeoutMs);
    WaitReply reply;
    const bool answered =
        need() && conditionsOf(name, &request.name) && m_current->call(request, &reply, request.timeoutMs);
    return finishWait(answered, QStringLiteral("Object %1").arg(name), request.timeoutMs, reply);
}

Inspector::WaitResult Inspector::waitForObject(const SharedPtr<Object>& object, int timeoutMs,
                                               quint32 conditions)
{
    WaitFor request;
    request.conditions = conditions;
    request.timeoutMs = qMax(0, timeoutMs);
    WaitReply reply;
    if (object && object->isNull())
        m_lastError = QStringLiteral("A null %1 cannot be waited for").arg(object->className());
    const bool answered = need() && object && !object->isNull() &&
                          m_current->remoteId(object, &request.object) &&
                          m_current->call(request, &reply, request.timeoutMs);
    return finishWait(answered, QStringLiteral("The %1").arg(object ? object->className() : QString()),
                      request.timeoutMs, reply);
}

Inspector::WaitResult Inspector::waitForItem(const SharedPtr<Object>& container, FindItem request,
                                             const QString& what)
{
    WaitReply reply;
    request.timeoutMs = qMax(0, request.timeoutMs);
    const bool answered = need() && m_current->remoteId(container, &request.container) &&
                          m_current->call(request, &reply, request.timeoutMs);
    return finishWait(answered, what, request.timeoutMs, reply);
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

ObjectList Inspector::children(const SharedPtr<Object>& object)
{
    Children request;
    ObjectsReply reply;
    ObjectList found;
    if (need() && m_current->remoteId(object, &request.object) && m_current->call(request, &reply))
        for (const ObjectRef& ref : qAsConst(reply.objects))
            found.append(m_current->makeObject(ref));
    return found;
}

SharedPtr<Object> Inspector::parent(const SharedPtr<Object>& object)
{
    Parent request;
    ObjectReply reply;
    if (!need() || !m_current->remoteId(object, &request.object) || !m_current->call(request, &reply) ||
        reply.object.id == 0)
        return nullptr;
    return m_current->makeObject(reply.object);
}

ObjectList Inspector::topLevelObjects()
{
    ObjectsReply reply;
    ObjectList found;
    if (need() && m_current->call(TopLevels(), &reply))
        for (const ObjectRef& ref : qAsConst(reply.objects))
            found.append(m_current->makeObject(ref));
    return found;
}

SharedPtr<Object> Inspector::objectAt(int x, int y)
{
    ObjectAt request;
    request.x = x;
    request.y = y;
    ObjectReply reply;
    if (!need() || !m_current->call(request, &reply) || reply.object.id == 0)
        return nullptr;
    return m_current->makeObject(reply.object);
}

QRect Inspector::globalBounds(const SharedPtr<Object>& object)
{
    GlobalBounds request;
    RectReply reply;
    if (!need() || !m_current->remoteId(object, &request.object) || !m_current->call(request, &reply))
        return QRect();
    return QRect(reply.x, reply.y, reply.width, reply.height);
}

QByteArray Inspector::grabScreenshot(const SharedPtr<Object>& object, ScreenshotArea area)
{
    Screenshot request;
    request.area = object ? area : ScreenshotArea::Screen;
    ImageReply reply;
    if (!need() || !m_current->remoteId(object, &request.object) || !m_current->call(request, &reply))
        return QByteArray();
    return reply.png;
}

bool Inspector::highlight(const SharedPtr<Object>& object, int durationMs)
{
    Highlight request;
    request.durationMs = durationMs;
    return need() && m_current->remoteId(object, &request.object) && m_current->call(request);
}

bool Inspector::setPicking(bool on)
{
    Pick request;
    request.on = on;
    return need() && m_current->call(request);
}

bool Inspector::setRecording(bool on)
{
    Record request;
    request.on = on;
    return need() && m_current->call(request);
}

// -- events

template <class Request>
bool Inspector::changeHandler(Request request, const SharedPtr<Object>& object)
{
    return need() && m_current->remoteId(object, &request.object) && m_current->call(request);
}

bool Inspector::installEventHandler(const QString& eventName, const QString& handler)
{
    return changeHandler(InstallHandler{HandlerScope::Global, 0, {}, eventName, handler}, nullptr);
}

bool Inspector::installEventHandler(const SharedPtr<Object>& object, const QString& eventName,
                                    const QString& handler)
{
    return changeHandler(InstallHandler{HandlerScope::Object, 0, {}, eventName, handler}, object);
}

bool Inspector::installEventHandler(const QString& typeName, const QString& eventName, const QString& handler)
{
    return changeHandler(InstallHandler{HandlerScope::Type, 0, typeName, eventName, handler}, nullptr);
}

bool Inspector::uninstallEventHandler(const QString& eventName, const QString& handler)
{
    return changeHandler(UninstallHandler{HandlerScope::Global, 0, {}, eventName, handler}, nullptr);
}

bool Inspector::uninstallEventHandler(const SharedPtr<Object>& object, const QString& eventName,
                                      const QString& handler)
{
    return changeHandler(UninstallHandler{HandlerScope::Object, 0, {}, eventName, handler}, object);
}

bool Inspector::uninstallEventHandler(const QString& typeName, const QString& eventName,
                                      const QString& handler)
{
    return changeHandler(UninstallHandler{HandlerScope::Type, 0, typeName, eventName, handler}, nullptr);
}

bool Inspector::sendEvent(const Class* eventClass, const SharedPtr<Object>& target,
                          const ObjectList& parameters)
{
    SendEvent request;
    if (!need() || !eventClass || !m_current->remoteId(target, &request.target))
        return false;
    request.eventClassId = eventClass->id();
    for (const SharedPtr<Object>& parameter : parameters) {
        request.arguments.append(Value());
        if (!m_current->toWire(parameter, &request.arguments.last()))
            return false;
    }
    return m_current->call(request);
}

bool Inspector::mouseAction(MouseActionKind kind, const SharedPtr<Object>& object, quint32 flags, int x,
                            int y, int button, int modifiers)
{
    MouseAction request;
    request.kind = kind;
    request.flags = flags;
    request.x = x;
    request.y = y;
    request.button = button;
    request.modifiers = modifiers;
    return need() && m_current->remoteId(object, &request.object) && m_current->call(request);
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

QVariant Inspector::remoteCall(const QString& function, const QVariantList& arguments)
{
    RemoteCall request;
    request.function = function;
    for (const QVariant& argument : arguments)
        request.arguments.append(fromVariant(argument));
    ValueReply reply;
    if (!need() || !m_current->call(request, &reply))
        return QVariant();
    return toVariant(m_current->makeObject(reply.value));
}

QString Inspector::environmentVariable(const QString& name)
{
    EnvironmentVariable request;
    request.name = name;
    TextReply reply;
    if (!need() || !m_current->call(request, &reply))
        return QString();
    return reply.text.isNull() ? QStringLiteral("") : reply.text;
}

bool Inspector::ping(ApplicationModel* application, int timeoutMs)
{
    Empty reply;
    return application->call(Ping(), &reply, timeoutMs - application->callTimeout());
}

} // namespace Torvix
