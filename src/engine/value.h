#pragma once

#include "engine/export.h"
#include "engine/ustring.h"

#include <cstdint>

namespace KJS {

class ExecState;
class Object;

/** What dispatchType() answers; the codes are fixed. */
enum Type {
    UnspecifiedType = 0, ///< the null value: none at all
    UndefinedType = 1,
    NullType = 2,
    BooleanType = 3,
    StringType = 4,
    NumberType = 5,
    ObjectType = 6,
    SymbolType = 7,
    BigIntType = 8
};

/**
 * The part of a value that the engine keeps on the heap: the base of objects (ObjectImp) and of the
 * engine's own strings. Counted by the values that hold it; never deleted by hand.
 */
class TORVIXKJS_EXPORT ValueImp
{
public:
    ValueImp(const ValueImp&) = delete;
    ValueImp& operator=(const ValueImp&) = delete;

    virtual Type type() const = 0;

    /**
     * Called while the collector marks what is alive, for objects that are. An override calls the
     * base and then mark() of each object that it keeps by plain pointer. What is held in a Value or
     * an Object needs no marking. Must not run script, make objects or change properties.
     */
    virtual void mark();
    /** Within a mark(): whether this one has been found alive. Elsewhere the answer means nothing. */
    virtual bool marked() const;

    void ref()
    {
        if (m_references++ == 0)
            acquired();
    }
    void deref()
    {
        if (--m_references == 0)
            released();
    }

protected:
    ValueImp() = default;
    virtual ~ValueImp();
    /** The first value holds it, the last one is gone. */
    virtual void acquired();
    virtual void released();
    int references() const { return m_references; }

private:
    int m_references = 0;
};

/**
 * A script value. While a Value (or Object, or List) holds an object, the collector leaves it alone,
 * wherever the Value lives: on the stack, in a container, in a member. Undefined, null, booleans and
 * numbers need no heap at all. A cycle of objects through Value members of C++ classes lives until its
 * interpreter ends.
 *
 * Conversions follow ECMA-262 (ToBoolean, ToNumber, ...). Those that can run script leave its
 * exception in the exec state and answer as said.
 */
class TORVIXKJS_EXPORT Value
{
public:
    /** The null value: no value at all, which is neither undefined nor null. */
    Value() {}
    /** A null pointer gives the null value. */
    Value(ValueImp* imp);
    Value(const Value& other) : m_type(other.m_type), m_data(other.m_data) { retain(); }
    Value(Value&& other) noexcept : m_type(other.m_type), m_data(other.m_data)
    {
        other.m_type = UnspecifiedType;
    }
    Value& operator=(Value other) noexcept
    {
        std::swap(m_type, other.m_type);
        std::swap(m_data, other.m_data);
        return *this;
    }
    ~Value() { release(); }

    /** Whether this is the null value. */
    bool isNull() const { return m_type == UnspecifiedType; }
    Type type() const { return m_type; }
    Type dispatchType() const { return m_type; }
    bool isUndefined() const { return m_type == UndefinedType; }
    bool isUndefinedOrNull() const { return m_type == UndefinedType || m_type == NullType; }
    bool isObject() const { return m_type == ObjectType; }

    /** The heap part; null for the null value, undefined, null, booleans and numbers. */
    ValueImp* imp() const { return isCounted() ? m_data.imp : nullptr; }

    /** Never runs script. */
    bool toBoolean(ExecState* exec) const;
    /** NaN after an exception. */
    double toNumber(ExecState* exec) const;
    /** A null string after an exception (an object's toString threw; a symbol). */
    UString toString(ExecState* exec) const;
    /** Primitives are boxed; undefined and null raise a TypeError and give a null object. */
    Object toObject(ExecState* exec) const;
    /** The null value after an exception. `preferred` is NumberType, StringType or unspecified. */
    Value toPrimitive(ExecState* exec, Type preferred = UnspecifiedType) const;
    /** Truncated; NaN gives 0, infinities stay. */
    double toInteger(ExecState* exec) const;
    /** Modulo 2^32. */
    int32_t toInt32(ExecState* exec) const;
    uint32_t toUInt32(ExecState* exec) const;
    uint16_t toUInt16(ExecState* exec) const;
    /** Truncated to int, and held at int's limits beyond them; NaN gives 0. */
    int toIntegerSimplistic(ExecState* exec) const;

    /** Whether both hold the very same thing: same object, same primitive (NaN is NaN, 0 is not -0). */
    bool isSame(const Value& other) const;

protected:
    explicit Value(Type type) : m_type(type) {}
    void setBoolean(bool value) { m_data.boolean = value; }
    void setNumber(double value) { m_data.number = value; }

private:
    friend class ValueAccess;

    bool isCounted() const { return m_type == StringType || m_type >= ObjectType; }
    void retain()
    {
        if (isCounted())
            m_data.imp->ref();
    }
    void release()
    {
        if (isCounted())
            m_data.imp->deref();
        m_type = UnspecifiedType;
    }

    Type m_type = UnspecifiedType;
    union Data {
        bool boolean;
        double number;
        ValueImp* imp;
    } m_data = {};
};

class TORVIXKJS_EXPORT Undefined : public Value
{
public:
    Undefined() : Value(UndefinedType) {}
};

class TORVIXKJS_EXPORT Null : public Value
{
public:
    Null() : Value(NullType) {}
};

class TORVIXKJS_EXPORT Boolean : public Value
{
public:
    explicit Boolean(bool value) : Value(BooleanType) { setBoolean(value); }
};

class TORVIXKJS_EXPORT Number : public Value
{
public:
    explicit Number(int value) : Value(NumberType) { setNumber(value); }
    explicit Number(unsigned value) : Value(NumberType) { setNumber(value); }
    explicit Number(long value) : Value(NumberType) { setNumber(static_cast<double>(value)); }
    explicit Number(long long value) : Value(NumberType) { setNumber(static_cast<double>(value)); }
    explicit Number(unsigned long value) : Value(NumberType) { setNumber(static_cast<double>(value)); }
    explicit Number(double value) : Value(NumberType) { setNumber(value); }
};

/** A null string becomes the empty script string. */
class TORVIXKJS_EXPORT String : public Value
{
public:
    explicit String(const UString& text = UString(""));
};

/** The loose equality of script (`==`), "[[==]]" members included. False after an exception. */
TORVIXKJS_EXPORT bool equal(ExecState* exec, const Value& left, const Value& right);
/** `===`. Never runs script. */
TORVIXKJS_EXPORT bool strictEqual(ExecState* exec, const Value& left, const Value& right);

} // namespace KJS
