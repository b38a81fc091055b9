#pragma once

#include "agent/reflection/classinfo.h"
#include "agent/reflection/convert.h"
#include "agent/reflection/registry.h"

#include <QEvent>

#include <utility>

namespace Torvix::Agent {

template <class C>
struct Self
{
    /** The object that a member is called on; throws when it is null, destroyed or of another class. */
    static C& get(Value& self)
    {
        C* object = nullptr;
        if (self.kind == Value::Kind::Data && self.typeName == TypeName<C>::get())
            object = static_cast<C*>(self.data.data());
        else
            object = pointerFromValue<C>(self);
        if (!object)
            throw Error(QStringLiteral("the %1 is null or has been destroyed")
                            .arg(QString::fromLatin1(TypeName<C>::get())));
        return *object;
    }
};

/** Values of trailing arguments that a caller may leave out. */
template <class... D>
std::vector<Value> defaults(const D&... values)
{
    return {toValue(values)...};
}

template <class... A>
std::vector<ArgumentInfo> argumentInfos(const char* names)
{
    static_assert(!(std::is_same_v<std::decay_t<A>, const char*> || ...),
                  "a C string has no form on the wire: bind a function that takes a QString");
    std::vector<ArgumentInfo> infos{ArgumentInfo{{}, typeUse<A>()}...};
    const QByteArrayList parts = QByteArray(names).split(',');
    for (std::size_t i = 0; i < infos.size(); ++i)
        infos[i].name = i < std::size_t(parts.size()) ? parts.at(int(i)).trimmed() : QByteArray();
    return infos;
}

template <class A>
using Plain = std::remove_cv_t<std::remove_reference_t<A>>;

template <class R, class Call>
Value resultOf(Call&& call)
{
    if constexpr (std::is_void_v<R>) {
        call();
        return {};
    } else {
        return toValue<Plain<R>>(call());
    }
}

/** Adds `method` and an overload for each number of trailing arguments that have a default. */
void addOverloads(std::vector<MethodInfo>& to, const MethodInfo& method,
                  const std::vector<Value>& defaultValues);

/**
 * Registers the members of a class, one line each; the signature comes from the member pointer:
 *
 *     Bind<QTabBar>(registry)
 *         .method("tabText", &QTabBar::tabText, "index")
 *         .method("insertTab", qOverload<int, const QString&>(&QTabBar::insertTab), "index, text");
 *
 * The third argument names the arguments. A fourth, made with defaults(), gives the values of trailing
 * arguments that may be left out: there is then an overload for each number of arguments.
 */
template <class C>
class Bind
{
public:
    /** A class that is pointed to. The bases are registered or meta-object classes. */
    explicit Bind(Registry& registry, const QByteArrayList& bases = {})
        : m_class(registry.define(TypeName<C>::get(), bases))
    {
        if constexpr (std::is_base_of_v<QObject, C>)
            m_class.metaObject = &C::staticMetaObject;
    }

    Bind& value()
    {
        m_class.isValue = true;
        qRegisterMetaType<C>();
        return *this;
    }

    /** For a class that QObjects may inherit beside QObject: its address in the object, null for others. */
    Bind& addressIn(C* (*find)(const Value& object))
    {
        m_class.addressIn = [find](const Value& object) -> void* { return find(object); };
        return *this;
    }

    /**
     * For objects that go without a signal. The guard that is made while the object is there tells
     * later whether it still is, without touching it; a null one counts as always.
     */
    Bind& guard(std::function<bool()> (*guardOf)(C* object))
    {
        m_class.makeGuard = [guardOf](void* object) { return guardOf(static_cast<C*>(object)); };
        return *this;
    }

    template <class R, class B, class... A>
    Bind& method(const char* name, R (B::*member)(A...), const char* names = "",
                 const std::vector<Value>& defaultValues = {})
    {
        return add<R, A...>(
            name, names, defaultValues, [member](Value& self, const std::vector<Value>& given) {
                return invoke<R, A...>(Self<C>::get(self), member, given, std::index_sequence_for<A...>());
            });
    }

    template <class R, class B, class... A>
    Bind& method(const char* name, R (B::*member)(A...) const, const char* names = "",
                 const std::vector<Value>& defaultValues = {})
    {
        return add<R, A...>(
            name, names, defaultValues, [member](Value& self, const std::vector<Value>& given) {
                return invoke<R, A...>(Self<C>::get(self), member, given, std::index_sequence_for<A...>());
            });
    }

    /** A method that C++ does not have as such: a function whose first argument is the object. */
    template <class R, class... A>
    Bind& extension(const char* name, R (*call)(C&, A...), const char* names = "",
                    const std::vector<Value>& defaultValues = {})
    {
        return add<R, A...>(name, names, defaultValues, [call](Value& self, const std::vector<Value>& given) {
            return apply<R, A...>(
                [&](auto&&... values) -> R {
                    return call(Self<C>::get(self), std::forward<decltype(values)>(values)...);
                },
                given, std::index_sequence_for<A...>());
        });
    }

    template <class R, class... A>
    Bind& function(const char* name, R (*call)(A...), const char* names = "",
                   const std::vector<Value>& defaultValues = {})
    {
        add<R, A...>(
            name, names, defaultValues,
            [call](Value&, const std::vector<Value>& given) {
                return apply<R, A...>(call, given, std::index_sequence_for<A...>());
            },
            true);
        return *this;
    }

    template <class R, class B, class... A>
    Bind& property(const char* name, R (B::*getter)(A...) const)
    {
        static_assert(sizeof...(A) == 0, "a property's getter has no arguments");
        PropertyInfo info;
        info.name = name;
        info.type = typeUse<Plain<R>>();
        info.get = [getter](Value& self) { return toValue<Plain<R>>((Self<C>::get(self).*getter)()); };
        m_class.properties.push_back(std::move(info));
        return *this;
    }

    template <class R, class B, class S, class A>
    Bind& property(const char* name, R (B::*getter)() const, S (B::*setter)(A))
    {
        property(name, getter);
        PropertyInfo& info = m_class.properties.back();
        info.isWritable = true;
        info.set = [setter](Value& self, const Value& value) {
            (Self<C>::get(self).*setter)(fromValue<Plain<A>>(value));
        };
        return *this;
    }

    /** A read-only property that C++ does not have as such. */
    template <class R>
    Bind& propertyOf(const char* name, R (*getter)(C&))
    {
        PropertyInfo info;
        info.name = name;
        info.type = typeUse<Plain<R>>();
        info.get = [getter](Value& self) { return toValue<Plain<R>>(getter(Self<C>::get(self))); };
        m_class.properties.push_back(std::move(info));
        return *this;
    }

    /** A static property: one value for the class. */
    template <class R>
    Bind& staticProperty(const char* name, R (*getter)())
    {
        PropertyInfo info;
        info.name = name;
        info.type = typeUse<Plain<R>>();
        info.isStatic = true;
        info.get = [getter](Value&) { return toValue<Plain<R>>(getter()); };
        m_class.properties.push_back(std::move(info));
        return *this;
    }

    template <class... A>
    Bind& constructor(const char* names = "", const std::vector<Value>& defaultValues = {})
    {
        MethodInfo info;
        info.name = m_class.name;
        info.arguments = argumentInfos<A...>(names);
        info.result.name = m_class.name;
        info.isStatic = true;
        info.invoke = [](Value&, const std::vector<Value>& given) {
            return apply<Value, A...>([](auto&&... values) { return make(values...); }, given,
                                      std::index_sequence_for<A...>());
        };
        addOverloads(m_class.constructors, info, defaultValues);
        return *this;
    }

    /** A constructor with other arguments than C++ has, for an event. */
    template <class... A>
    Bind& factory(C (*create)(A...), const char* names = "", const std::vector<Value>& defaultValues = {})
    {
        MethodInfo info;
        info.name = m_class.name;
        info.arguments = argumentInfos<A...>(names);
        info.result.name = m_class.name;
        info.isStatic = true;
        info.invoke = [create](Value&, const std::vector<Value>& given) {
            return apply<Value, A...>([create](auto&&... values) { return make(create(values...)); }, given,
                                      std::index_sequence_for<A...>());
        };
        addOverloads(m_class.constructors, info, defaultValues);
        return *this;
    }

    /** Keys of an enum of the class or of its namespace that has no meta-object. */
    Bind& enumeration(const char* name, std::vector<std::pair<QByteArray, int>> keys)
    {
        m_class.enums.push_back(EnumInfo{name, false, std::move(keys)});
        return *this;
    }

private:
    template <class... A>
    static Value make(A&&... arguments)
    {
        if constexpr (std::is_base_of_v<QObject, C>) {
            return Value::ofObject(new C(arguments...));
        } else if constexpr (std::is_base_of_v<QEvent, C>) {
            auto event = std::make_shared<C>(arguments...);
            Value value = Value::ofPointer(TypeName<C>::get(), event.get());
            value.owner = event;
            return value;
        } else if constexpr (QMetaTypeId2<C>::Defined) {
            return toValue(C(arguments...));
        } else {
            // An item is handed to its view, which owns it from then on.
            return Value::ofPointer(TypeName<C>::get(), new C(arguments...));
        }
    }

    template <class R, class... A, class Member, std::size_t... I>
    static Value invoke(C& object, Member member, const std::vector<Value>& given, std::index_sequence<I...>)
    {
        Q_UNUSED(given);
        return resultOf<R>([&]() -> R { return (object.*member)(fromValue<Plain<A>>(given[I])...); });
    }

    template <class R, class... A, class Function, std::size_t... I>
    static Value apply(Function&& call, const std::vector<Value>& given, std::index_sequence<I...>)
    {
        Q_UNUSED(given);
        return resultOf<R>([&]() -> R { return call(fromValue<Plain<A>>(given[I])...); });
    }

    template <class R, class... A, class Call>
    Bind& add(const char* name, const char* names, const std::vector<Value>& defaultValues, Call call,
              bool isStatic = false)
    {
        MethodInfo info;
        info.name = name;
        info.arguments = argumentInfos<A...>(names);
        info.result = typeUse<R>();
        info.isStatic = isStatic;
        info.invoke = std::move(call);
        addOverloads(m_class.methods, info, defaultValues);
        return *this;
    }

    ClassInfo& m_class;
};

} // namespace Torvix::Agent
