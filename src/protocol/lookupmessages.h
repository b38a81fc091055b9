#pragma once

#include "protocol/message.h"
#include "protocol/namecondition.h"
#include "protocol/value.h"

#include <QVector>

/** Finding objects that are there now, by name, in the tree or on the screen. */
namespace Torvix::Protocol {

struct ObjectReply
{
    /** Null reference (id 0) when there is none. */
    ObjectRef object;
    TORVIX_WIRE_FIELDS(object)
};

struct ObjectsReply
{
    QVector<ObjectRef> objects;
    TORVIX_WIRE_FIELDS(objects)
};

/** The first match in tree order. ErrorClass::NotFound with the nearest miss otherwise. */
struct Find
{
    static constexpr auto number = RequestNumber::Find;
    using Reply = ObjectReply;
    NameConditions name;
    TORVIX_WIRE_FIELDS(name)
};

struct FindAll
{
    static constexpr auto number = RequestNumber::FindAll;
    using Reply = ObjectsReply;
    NameConditions name;
    TORVIX_WIRE_FIELDS(name)
};

struct NameReply
{
    NameConditions name;
    TORVIX_WIRE_FIELDS(name)
};

/** A name that finds exactly this object now, as short as the agent can make it. */
struct RealName
{
    static constexpr auto number = RequestNumber::RealName;
    using Reply = NameReply;
    qint64 object = 0;
    TORVIX_WIRE_FIELDS(object)
};

struct Children
{
    static constexpr auto number = RequestNumber::Children;
    using Reply = ObjectsReply;
    qint64 object = 0;
    TORVIX_WIRE_FIELDS(object)
};

struct Parent
{
    static constexpr auto number = RequestNumber::Parent;
    using Reply = ObjectReply;
    qint64 object = 0;
    TORVIX_WIRE_FIELDS(object)
};

struct TopLevels : Empty
{
    static constexpr auto number = RequestNumber::TopLevels;
    using Reply = ObjectsReply;
};

/** The topmost visible widget at a global position in device-independent pixels. */
struct ObjectAt
{
    static constexpr auto number = RequestNumber::ObjectAt;
    using Reply = ObjectReply;
    int x = 0;
    int y = 0;
    TORVIX_WIRE_FIELDS(x, y)
};

} // namespace Torvix::Protocol
