#pragma once

#include "protocol/message.h"
#include "protocol/value.h"

#include <QString>
#include <QVector>

/** Use of members and values, and the life of the references to objects. */
namespace Torvix::Protocol {

struct ValueReply
{
    Value value;
    TORVIX_WIRE_FIELDS(value)
};

/** `object` 0 for a static property; `index` counts in the properties of `classId` itself. */
struct GetProperty
{
    static constexpr auto number = RequestNumber::GetProperty;
    using Reply = ValueReply;
    qint64 object = 0;
    int classId = 0;
    int index = 0;
    TORVIX_WIRE_FIELDS(object, classId, index)
};

struct PropertyKey
{
    int classId = 0;
    int index = 0;
    TORVIX_WIRE_FIELDS(classId, index)
};

struct PropertyResult
{
    bool isRead = false;
    Value value;
    TORVIX_WIRE_FIELDS(isRead, value)
};

struct PropertiesReply
{
    /** In the order of the request. */
    QVector<PropertyResult> results;
    TORVIX_WIRE_FIELDS(results)
};

/** Several properties of one object in one round trip; one that cannot be read does not stop the rest. */
struct GetProperties
{
    static constexpr auto number = RequestNumber::GetProperties;
    using Reply = PropertiesReply;
    qint64 object = 0;
    QVector<PropertyKey> properties;
    TORVIX_WIRE_FIELDS(object, properties)
};

struct SetProperty
{
    static constexpr auto number = RequestNumber::SetProperty;
    using Reply = Empty;
    qint64 object = 0;
    int classId = 0;
    int index = 0;
    Value value;
    TORVIX_WIRE_FIELDS(object, classId, index, value)
};

/** `object` 0 for a static method; the arguments are already those of the overload. */
struct CallMethod
{
    static constexpr auto number = RequestNumber::CallMethod;
    using Reply = ValueReply;
    qint64 object = 0;
    int classId = 0;
    int index = 0;
    QVector<Value> arguments;
    TORVIX_WIRE_FIELDS(object, classId, index, arguments)
};

struct Construct
{
    static constexpr auto number = RequestNumber::Construct;
    using Reply = ValueReply;
    int classId = 0;
    int index = 0;
    QVector<Value> arguments;
    TORVIX_WIRE_FIELDS(classId, index, arguments)
};

/** A conversion that the class descriptions announce, and a cast to a sub- or superclass. */
struct Convert
{
    static constexpr auto number = RequestNumber::Convert;
    using Reply = ValueReply;
    Value value;
    int classId = 0;
    TORVIX_WIRE_FIELDS(value, classId)
};

struct FlagReply
{
    bool flag = false;
    TORVIX_WIRE_FIELDS(flag)
};

/** The same QObject, or equal values. */
struct Compare
{
    static constexpr auto number = RequestNumber::Compare;
    using Reply = FlagReply;
    Value first;
    Value second;
    TORVIX_WIRE_FIELDS(first, second)
};

struct TextReply
{
    QString text;
    TORVIX_WIRE_FIELDS(text)
};

/** A text for people: a value's parts, or the class and object name of a QObject. */
struct ToText
{
    static constexpr auto number = RequestNumber::ToText;
    using Reply = TextReply;
    qint64 object = 0;
    TORVIX_WIRE_FIELDS(object)
};

struct ReleasedRef
{
    qint64 object = 0;
    /** How many of the references that the agent counted are given back. */
    qint64 count = 1;
    TORVIX_WIRE_FIELDS(object, count)
};

/** Sent with request id 0. Unknown ids are ignored. */
struct Release
{
    static constexpr auto number = RequestNumber::Release;
    using Reply = Empty;
    QVector<ReleasedRef> objects;
    TORVIX_WIRE_FIELDS(objects)
};

/** Ids that are dead from now on; sent before anything that was caused by it. */
struct ObjectsDestroyed
{
    static constexpr auto number = PushNumber::ObjectsDestroyed;
    QVector<qint64> objects;
    TORVIX_WIRE_FIELDS(objects)
};

} // namespace Torvix::Protocol
