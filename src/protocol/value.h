#pragma once

#include "protocol/codec.h"

namespace Torvix::Protocol {

/**
 * Fixed class ids, the same in every application. Ids from 16 are given by the agent and hold for
 * one connection. The integer codes: 0 `uint` (also narrower unsigned types), 1 `int` (also
 * enumerations and flags), 2 `short` (also `char`), 6 `qint64` (also `quint64` and `long`).
 */
enum BuiltinClass {
    UIntClass = 0,
    IntClass = 1,
    ShortClass = 2,
    BoolClass = 3,
    StringClass = 4,
    DoubleClass = 5,
    Int64Class = 6,
    VoidClass = 7,
    ArrayClassId = 8,
    MapClassId = 9,
    FirstAgentClass = 16
};

/** Bits of an attribute word, of values as well as of arguments, properties and results. */
enum AttributeFlag : quint32 {
    NoAttribute = 0,
    /** Of an argument: constant. Of an object: held by reference. */
    ConstantFlag = 1,
    /** Passed or held by pointer or reference. */
    IndirectFlag = 2,
    /** A sequence of the class. */
    ListFlag = 16
};

struct Attribute
{
    quint32 flags = NoAttribute;
    /** Levels of indirection: 1 for `T*` and `T&`, 2 for `T**`. */
    quint32 extra = 0;
    TORVIX_WIRE_FIELDS(flags, extra)
};

/** Bits of the status word of an object reference. */
enum StatusFlag : quint32 { NoStatus = 0, InvalidatedStatus = 2 };

/**
 * An object of the application: a QObject behind a QPointer, or a value (a point, a colour, an
 * item) that the agent keeps. Id 0 is the null pointer of the class.
 *
 * Each time the agent sends an id other than 0 it counts one reference; the client gives them back
 * with Release. As long as a reference is held, one QObject has one id. Ids are never used again
 * on the same connection.
 */
struct ObjectRef
{
    qint64 id = 0;
    /** The most derived class that the agent knows. */
    int classId = VoidClass;
    Attribute attribute;
    quint32 status = NoStatus;
    TORVIX_WIRE_FIELDS(id, classId, attribute, status)
};

/** Any value that crosses the wire. On the wire: [kind, payload]; the payload of Void is 0. */
struct Value
{
    /** Up to Map the same number as the BuiltinClass of the value. */
    enum class Kind {
        UInt = 0,
        Int = 1,
        Short = 2,
        Bool = 3,
        String = 4,
        Double = 5,
        Int64 = 6,
        Void = 7,
        Array = 8,
        Map = 9,
        Object = 10,
        Last = Object
    };

    Kind kind = Kind::Void;
    /** UInt, Int, Short, Int64, and Bool as 0 or 1. */
    qint64 integer = 0;
    double number = 0;
    QString text;
    QVector<Value> elements;
    QMap<QString, Value> entries;
    ObjectRef object;

    static Value ofInt(qint64 value, Kind kind = Kind::Int);
    static Value ofBool(bool value);
    static Value ofDouble(double value);
    static Value ofString(const QString& value);
    static Value ofArray(const QVector<Value>& value);
    static Value ofMap(const QMap<QString, Value>& value);
    static Value ofObject(const ObjectRef& value);

    bool isInteger() const { return kind <= Kind::Short || kind == Kind::Int64; }
    /** The class id that stands for the value. */
    int classId() const { return kind == Kind::Object ? object.classId : int(kind); }

    void fields(Encoder& archive) const;
    void fields(Decoder& archive);
};

} // namespace Torvix::Protocol
