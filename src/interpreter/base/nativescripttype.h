#pragma once

#include "shared/base/sharedptr.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace Torvix {

class NativeScriptObject;
class ScriptContext;

/** Native code behind a script function: reads arguments from the context and leaves a result or
 *  an error in it. False means that it failed; the error is then in the context. */
using NativeScriptFunction = bool (*)(ScriptContext*);

/** The same for a method or a property of an object. */
using NativeScriptMethod = bool (*)(ScriptContext*, SharedPtr<NativeScriptObject>);

/** Makes an object from the context's arguments; null with an error in the context on failure. */
using NativeScriptConstructor = SharedPtr<NativeScriptObject> (*)(ScriptContext*);

/**
 * Describes a class that scripts see: give it to Interpreter::addType together with a key that the
 * objects answer as their type().
 *
 * A super type is named by its key and has to be registered first.
 */
class NativeScriptType
{
public:
    struct Method
    {
        NativeScriptMethod function = nullptr;
        QStringList mandatoryArguments;
        QStringList optionalArguments;
        QString help; ///< lines separated by newlines; may be empty
    };

    struct StaticMethod
    {
        NativeScriptFunction function = nullptr;
        QStringList mandatoryArguments;
        QStringList optionalArguments;
        QString help;
    };

    /** Either function may be null: there is then no such accessor. */
    struct Property
    {
        NativeScriptMethod getter = nullptr;
        NativeScriptMethod setter = nullptr;
    };

    struct StaticProperty
    {
        NativeScriptFunction getter = nullptr;
        NativeScriptFunction setter = nullptr;
    };

    /** Without a constructor scripts can't make instances; without a super type it is a root. */
    explicit NativeScriptType(NativeScriptConstructor make = nullptr, void* superKey = nullptr)
        : m_super(superKey)
        , m_constructor(make)
    {
    }

    NativeScriptConstructor constructor() const { return m_constructor; }
    void* super() const { return m_super; }

    const QMap<QString, Method>& methods() const { return m_methods; }
    const QMap<QString, StaticMethod>& staticMethods() const { return m_staticMethods; }
    const QMap<QString, Property>& properties() const { return m_properties; }
    const QMap<QString, StaticProperty>& staticProperties() const { return m_staticProperties; }

    /** Each adds a member or replaces the one of that name; they chain. */
    NativeScriptType& addMethod(const QString& name, const Method& method)
    {
        m_methods.insert(name, method);
        return *this;
    }
    NativeScriptType& addStaticMethod(const QString& name, const StaticMethod& method)
    {
        m_staticMethods.insert(name, method);
        return *this;
    }
    NativeScriptType& addProperty(const QString& name, const Property& property)
    {
        m_properties.insert(name, property);
        return *this;
    }
    NativeScriptType& addStaticProperty(const QString& name, const StaticProperty& property)
    {
        m_staticProperties.insert(name, property);
        return *this;
    }

private:
    void* m_super = nullptr;
    NativeScriptConstructor m_constructor = nullptr;
    QMap<QString, Method> m_methods;
    QMap<QString, StaticMethod> m_staticMethods;
    QMap<QString, Property> m_properties;
    QMap<QString, StaticProperty> m_staticProperties;
};

/** A group of functions and properties under one global name; give it to Interpreter::addNamespace. */
class NativeScriptNamespace
{
public:
    const QMap<QString, NativeScriptType::StaticMethod>& functions() const { return m_functions; }
    const QMap<QString, NativeScriptType::StaticProperty>& properties() const { return m_properties; }

    NativeScriptNamespace& addFunction(const QString& name, const NativeScriptType::StaticMethod& function)
    {
        m_functions.insert(name, function);
        return *this;
    }
    NativeScriptNamespace& addProperty(const QString& name, const NativeScriptType::StaticProperty& property)
    {
        m_properties.insert(name, property);
        return *this;
    }

private:
    QMap<QString, NativeScriptType::StaticMethod> m_functions;
    QMap<QString, NativeScriptType::StaticProperty> m_properties;
};

} // namespace Torvix
