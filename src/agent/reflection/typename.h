#pragma once

#include "agent/reflection/value.h"

#include <QFlags>
#include <QList>
#include <QMap>
#include <QStringList>
#include <QVector>

#include <string_view>
#include <type_traits>

namespace Torvix::Agent {

/** The compiler's own text for T: qualified, without const and reference. */
template <class T>
QByteArray compilerTypeName()
{
    // GCC and clang both write "... [with T = Qt::Key]" or "[T = Qt::Key]", perhaps with "; ..." after.
    const std::string_view text = __PRETTY_FUNCTION__;
    const std::size_t begin = text.find("T = ") + 4;
    std::size_t end = text.find(';', begin);
    if (end == std::string_view::npos)
        end = text.rfind(']');
    return QByteArray(text.data() + begin, int(end - begin));
}

template <class T>
struct TypeName
{
    static QByteArray get()
    {
        static const QByteArray name = compilerTypeName<T>();
        return name;
    }
};

template <class E>
struct TypeName<QFlags<E>> : TypeName<E>
{
};

#define TORVIX_TYPE_NAME(type, text)                                                                         \
    template <>                                                                                              \
    struct TypeName<type>                                                                                    \
    {                                                                                                        \
        static QByteArray get() { return text; }                                                             \
    };
TORVIX_TYPE_NAME(void, "void")
TORVIX_TYPE_NAME(bool, "bool")
TORVIX_TYPE_NAME(qlonglong, "qlonglong")
TORVIX_TYPE_NAME(qulonglong, "qulonglong")
TORVIX_TYPE_NAME(uint, "uint")
TORVIX_TYPE_NAME(ushort, "ushort")
TORVIX_TYPE_NAME(qreal, "double")
TORVIX_TYPE_NAME(QStringList, "QStringList")
TORVIX_TYPE_NAME(QVariantList, "QVariantList")
TORVIX_TYPE_NAME(QVariantMap, "QVariantMap")
#undef TORVIX_TYPE_NAME

template <class T>
struct IsList : std::false_type
{
};
template <class T>
struct IsList<QList<T>> : std::true_type
{
};
template <class T>
struct IsList<QVector<T>> : std::true_type
{
};
template <>
struct IsList<QVariantList> : std::false_type
{
};

template <class T>
struct IsFlags : std::false_type
{
};
template <class E>
struct IsFlags<QFlags<E>> : std::true_type
{
};

/** How T is written in a signature. */
template <class T>
TypeUse typeUse()
{
    using Bare = std::remove_cv_t<std::remove_reference_t<T>>;
    TypeUse use;
    if constexpr (std::is_reference_v<T>)
        use.flags |= TypeUse::Reference;
    if constexpr (std::is_const_v<std::remove_reference_t<T>>)
        use.flags |= TypeUse::Constant;
    if constexpr (std::is_pointer_v<Bare>) {
        using Target = std::remove_pointer_t<Bare>;
        use.flags |= TypeUse::Pointer;
        if constexpr (std::is_const_v<Target>)
            use.flags |= TypeUse::Constant;
        use.name = TypeName<std::remove_cv_t<Target>>::get();
    } else if constexpr (IsList<Bare>::value) {
        const TypeUse element = typeUse<typename Bare::value_type>();
        use.name = element.name;
        use.flags |= TypeUse::List | (element.flags & TypeUse::Pointer);
    } else {
        use.name = TypeName<Bare>::get();
        use.isEnum = std::is_enum_v<Bare> || IsFlags<Bare>::value;
    }
    return use;
}

} // namespace Torvix::Agent
