#pragma once

#include "interpreter/base/export.h"
#include "shared/base/sharedptr.h"

#include <QString>

#include <map>
#include <vector>

namespace Torvix {

class ApplicationContext;
class Argument;
class Class;
class NativeScriptObject;
class Object;
class PropertyValue;
class TestDataRecord;

/**
 * A script value as language-neutral code sees it.
 *
 * The is* questions never raise an error. Ask them before the to* operations: those convert by the
 * language's own rules, and operations that give a pointer give null for a value that is none. A
 * value is bound to the call that it came with and must not be kept beyond it.
 */
class TORVIXINTERPRETER_EXPORT ScriptArgument : public Shared
{
public:
    using List = std::vector<SharedPtr<ScriptArgument>>;
    using Map = std::map<QString, SharedPtr<ScriptArgument>>;

    /** The language's name of the value's type, for messages. */
    virtual QString typeName() const = 0;

    virtual bool isBoolean() const = 0;
    virtual bool isNumber() const = 0;
    /** A number without a fraction that fits 32 bits. */
    virtual bool isInteger() const = 0;
    virtual bool isString() const = 0;
    /** The value can be used where a string is wanted. */
    virtual bool isStringLike() const = 0;
    /** An object of the application under test. */
    virtual bool isObject() const = 0;
    /** A class of the application under test. */
    virtual bool isClass() const = 0;
    virtual bool isCallable() const = 0;
    virtual bool isList() const = 0;
    virtual bool isMap() const = 0;
    /** An instance of the native type that is registered under this key, or of a subtype. */
    virtual bool isNative(void* type) const = 0;

    virtual bool toBoolean() const = 0;
    virtual double toDouble() const = 0;
    virtual int toInteger() const = 0;
    virtual QString toString() const = 0;
    virtual SharedPtr<Object> toObject() const = 0;
    virtual const Class* toClass() const = 0;
    virtual List toList() const = 0;
    virtual Map toMap() const = 0;
    virtual SharedPtr<NativeScriptObject> toNative(void* type) const = 0;
    /** Null for a value that is no record; valid as long as the value. */
    virtual const TestDataRecord* toTestDataRecord() const = 0;
    /** Never null: the empty context for a value that is none. */
    virtual SharedPtr<ApplicationContext> toApplicationContext() const = 0;
    /** The value as the application wants it for this parameter, or null. */
    virtual SharedPtr<Object> convertToArgument(const Argument& argument) const = 0;

    /** A map as the text of a real name; its entries become the name's properties. Anything else
     *  gives toString(). */
    virtual QString toRealName() const;

    /** Calls a callable. Null with `error` filled on failure, null alone when it is no callable. */
    virtual SharedPtr<ScriptArgument> invoke(const List& arguments, QString* error) const = 0;
    /** Name under which the interpreter registers a callable; null when it is none. */
    virtual QString callableIdentifier() const;

    /** Pattern of a regular expression of the language, in the syntax of QRegularExpression; null when
     *  the value is none. */
    virtual QString regularExpression() const;

    /** The value as a condition on a property in a real name: a map is the real name of another
     *  object, a regular expression a pattern, everything else a text. */
    virtual PropertyValue toPropertyValue() const;
};

} // namespace Torvix
