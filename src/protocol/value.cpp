#include "protocol/value.h"

namespace Torvix::Protocol {

Value Value::ofInt(qint64 value, Kind kind)
{
    Value result;
    result.kind = kind;
    result.integer = value;
    return result;
}

Value Value::ofBool(bool value)
{
    return ofInt(value ? 1 : 0, Kind::Bool);
}

Value Value::ofDouble(double value)
{
    Value result;
    result.kind = Kind::Double;
    result.number = value;
    return result;
}

Value Value::ofString(const QString& value)
{
    Value result;
    result.kind = Kind::String;
    result.text = value;
    return result;
}

Value Value::ofArray(const QVector<Value>& value)
{
    Value result;
    result.kind = Kind::Array;
    result.elements = value;
    return result;
}

Value Value::ofMap(const QMap<QString, Value>& value)
{
    Value result;
    result.kind = Kind::Map;
    result.entries = value;
    return result;
}

Value Value::ofObject(const ObjectRef& value)
{
    Value result;
    result.kind = Kind::Object;
    result.object = value;
    return result;
}

void Value::fields(Encoder& archive) const
{
    switch (kind) {
    case Kind::Bool:
        return archive(kind, integer != 0);
    case Kind::String:
        return archive(kind, text);
    case Kind::Double:
        return archive(kind, number);
    case Kind::Array:
        return archive(kind, elements);
    case Kind::Map:
        return archive(kind, entries);
    case Kind::Object:
        return archive(kind, object);
    default:
        return archive(kind, integer);
    }
}

void Value::fields(Decoder& archive)
{
    if (archive.enter() != 2)
        return archive.fail();
    archive.get(kind);
    switch (kind) {
    case Kind::Bool:
        integer = archive.takeBool() ? 1 : 0;
        break;
    case Kind::String:
        archive.get(text);
        break;
    case Kind::Double:
        archive.get(number);
        break;
    case Kind::Array:
        archive.get(elements);
        break;
    case Kind::Map:
        archive.get(entries);
        break;
    case Kind::Object:
        archive.get(object);
        break;
    default:
        archive.get(integer);
    }
    archive.leave();
}

} // namespace Torvix::Protocol
