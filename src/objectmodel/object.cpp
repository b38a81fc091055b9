#include "objectmodel/object.h"

#include "objectmodel/inspector.h"
#include "objectmodel/objectmap.h"
#include "protocol/lookupmessages.h"
#include "protocol/membermessages.h"

#include <QLocale>
#include <QStringList>

#include <cmath>

namespace Torvix {

using Protocol::Value;

Object::Object(const Class* objectClass, const Protocol::Value& value) : m_class(objectClass), m_value(value)
{
}

Object::Object(const Class* objectClass, const ObjectList& elements)
    : m_class(objectClass)
    , m_value(Value::ofArray({}))
    , m_elements(elements)
{
}

Object::Object(const Class* objectClass, const ObjectEntries& entries)
    : m_class(objectClass)
    , m_value(Value::ofMap({}))
    , m_entries(entries)
{
}

Object::Object(const Class* objectClass, const Protocol::Value& value, const SharedPtr<ObjectHandle>& handle)
    : m_class(objectClass)
    , m_value(value)
    , m_handle(handle)
{
}

Object::~Object() = default;

QString Object::className() const
{
    return m_class->name();
}

bool Object::isNull() const
{
    return m_value.kind == Value::Kind::Object && m_value.object.id == 0;
}

ObjectAttribute Object::objectAttribute() const
{
    switch (m_value.kind) {
    case Value::Kind::Object:
        return {m_value.object.attribute.flags, m_value.object.attribute.extra};
    case Value::Kind::Array:
        return {ObjectAttribute::Array, 0};
    case Value::Kind::String:
        return {ObjectAttribute::Indirect, 0};
    default:
        return {};
    }
}

quint32 Object::statusFlags() const
{
    if (!m_handle)
        return Valid;
    if (!m_handle->application())
        return Invalidated;
    if ((m_handle->status() & Invalidated) == 0)
        m_handle->application()->takeNews();
    return m_handle->status();
}

int Object::applicationId() const
{
    return m_class->application() ? m_class->application()->id() : -1;
}

qint64 Object::remoteId() const
{
    return m_handle ? m_handle->id() : 0;
}

QString Object::toString() const
{
    switch (m_value.kind) {
    case Value::Kind::Bool:
        return m_value.integer ? QStringLiteral("true") : QStringLiteral("false");
    case Value::Kind::String:
        return m_value.text.isNull() ? QStringLiteral("") : m_value.text;
    case Value::Kind::Double:
        // The shortest text that reads back as the same number.
        return QString::number(m_value.number, 'g', QLocale::FloatingPointShortest);
    case Value::Kind::Void:
        return QStringLiteral("");
    case Value::Kind::Array: {
        QStringList texts;
        for (const SharedPtr<Object>& element : m_elements)
            texts.append(element->toString());
        return QLatin1Char('[') + texts.join(QLatin1String(", ")) + QLatin1Char(']');
    }
    case Value::Kind::Map: {
        QStringList texts;
        for (auto it = m_entries.begin(); it != m_entries.end(); ++it)
            texts.append(it.key() + QLatin1String(": ") + it.value()->toString());
        return QLatin1Char('{') + texts.join(QLatin1String(", ")) + QLatin1Char('}');
    }
    case Value::Kind::Object: {
        if (isNull())
            return QStringLiteral("null");
        ApplicationModel* application = m_class->application();
        const Result<qint64> id = application->remoteId(const_cast<Object*>(this));
        Protocol::ToText request;
        request.object = *id;
        const Result<Protocol::TextReply> reply = id ? application->call(request) : id.failure();
        if (!reply)
            return QString();
        return reply->text.isNull() ? QStringLiteral("") : reply->text;
    }
    default:
        return QString::number(m_value.integer);
    }
}

double Object::toDouble() const
{
    return m_value.kind == Value::Kind::Double ? m_value.number : double(m_value.integer);
}

qint64 Object::toInt64() const
{
    if (m_value.kind != Value::Kind::Double)
        return m_value.integer;
    const bool fits = std::isfinite(m_value.number) && std::fabs(m_value.number) < 9223372036854775807.0;
    return fits ? qint64(m_value.number) : 0;
}

bool Object::toBool() const
{
    return m_value.kind == Value::Kind::Double ? m_value.number != 0 : m_value.integer != 0;
}

ObjectList Object::elements() const
{
    return m_elements;
}

ObjectEntries Object::entries() const
{
    return m_entries;
}

namespace {

bool isNumeric(const Value& value)
{
    return value.isInteger() || value.kind == Value::Kind::Double || value.kind == Value::Kind::Bool;
}

bool sameElements(const ObjectList& a, const ObjectList& b)
{
    if (a.size() != b.size())
        return false;
    for (int i = 0; i < a.size(); ++i)
        if (!a[i]->compare(b[i]))
            return false;
    return true;
}

bool sameEntries(const ObjectEntries& a, const ObjectEntries& b)
{
    return a.keys() == b.keys() && sameElements(a.values().toVector(), b.values().toVector());
}

} // namespace

bool Object::compare(const SharedPtr<Object>& other) const
{
    if (!other)
        return false;
    const Value& theirs = other->m_value;
    if (isNumeric(m_value) && isNumeric(theirs)) {
        const bool isDouble = m_value.kind == Value::Kind::Double || theirs.kind == Value::Kind::Double;
        return isDouble ? toDouble() == other->toDouble() : m_value.integer == theirs.integer;
    }
    if (m_value.kind != theirs.kind)
        return false;
    switch (m_value.kind) {
    case Value::Kind::String:
        return m_value.text == theirs.text;
    case Value::Kind::Array:
        return sameElements(m_elements, other->m_elements);
    case Value::Kind::Map:
        return sameEntries(m_entries, other->m_entries);
    case Value::Kind::Object:
        break;
    default:
        return true;
    }
    if (m_handle == other->m_handle)
        return true;
    if (!m_handle || !other->m_handle || m_handle->application() != other->m_handle->application())
        return false;
    // Objects with an identity have one id each; values need to be looked at.
    if (m_class->isIdentity() || other->m_class->isIdentity())
        return false;
    ApplicationModel* application = m_class->application();
    const Result<Value> mine = application->toWire(const_cast<Object*>(this));
    const Result<Value> others = application->toWire(other);
    if (!mine || !others)
        return false;
    Protocol::Compare request;
    request.first = *mine;
    request.second = *others;
    return application->call(request).orNothing().flag;
}

Result<QString> Object::name() const
{
    return realName().then([](const QString& real) {
        const QString symbolic = ObjectMap::self()->symbolicName(real, false);
        return symbolic.isNull() ? real : symbolic;
    });
}

Result<QString> Object::realName() const
{
    if (!m_handle)
        return Failure{QStringLiteral("A %1 has no name").arg(className())};
    ApplicationModel* application = m_class->application();
    return application->remoteId(const_cast<Object*>(this))
        .then([application](qint64 id) {
            Protocol::RealName request;
            request.object = id;
            return application->call(request);
        })
        .then([](const Protocol::NameReply& reply) {
            return ObjectName::fromConditions(reply.name).toString();
        });
}

SharedPtr<Object> Object::reference() const
{
    SharedPtr<Object> pointer(new Object(*this));
    Protocol::Attribute& attribute = pointer->m_value.object.attribute;
    if (m_value.kind != Value::Kind::Object)
        return pointer;
    attribute.flags = (attribute.flags & ~quint32(ObjectAttribute::Reference)) | ObjectAttribute::Pointer;
    ++attribute.extra;
    return pointer;
}

SharedPtr<Object> Object::dereference() const
{
    const ObjectAttribute attribute = objectAttribute();
    const quint32 indirect = ObjectAttribute::Pointer | ObjectAttribute::Reference;
    if (m_value.kind != Value::Kind::Object || isNull() || (attribute.flags & indirect) == 0)
        return nullptr;
    SharedPtr<Object> pointee(new Object(*this));
    Protocol::Attribute& inner = pointee->m_value.object.attribute;
    inner.extra = attribute.extra > 0 ? attribute.extra - 1 : 0;
    if (inner.extra == 0)
        inner.flags &= ~indirect;
    return pointee;
}

Result<void> Object::cast(const Class* target)
{
    if (!target)
        return Failure{QStringLiteral("There is no class to cast to")};
    const bool isUp = m_class->inheritanceDepth(target) >= 0;
    const bool isDown = target->inheritanceDepth(m_class) >= 0;
    if (m_value.kind != Value::Kind::Object || !(isUp || isDown))
        return Failure{QStringLiteral("A %1 is no %2").arg(className(), target->name())};
    if (isDown && !isUp && !isNull()) {
        ApplicationModel* application = m_class->application();
        // Only asked whether it is one: the reference that comes with the answer goes back at once.
        const Result<SharedPtr<Object>> converted = application->convert(this, target);
        if (!converted)
            return converted;
    }
    m_class = target;
    m_value.object.classId = target->id();
    return {};
}

} // namespace Torvix
