#include "agent/reflection/convert.h"

#include "agent/reflection/registry.h"

namespace Torvix::Agent {

void throwWrongType(const Value& value, const QByteArray& wanted)
{
    const QByteArray given = value.isNone() ? QByteArray("nothing") : value.typeName;
    throw Error(QStringLiteral("a value of type %1 is needed, but %2 was given")
                    .arg(QString::fromLatin1(wanted), QString::fromLatin1(given)));
}

void* pointerTo(const Value& value, const QByteArray& className)
{
    if (value.isNone())
        return nullptr;
    if (value.kind == Value::Kind::Data) {
        if (value.data.userType() == QMetaType::type(className) || value.typeName == className)
            return const_cast<void*>(value.data.constData());
        if (value.data.canConvert<int>() && value.data.toInt() == 0)
            return nullptr; // a literal 0 is a null pointer
        throwWrongType(value, className);
    }
    if (!value.isPointer())
        throwWrongType(value, className);
    if (!value.address())
        return nullptr;
    if (!Registry::instance().inherits(value.typeName, className))
        throwWrongType(value, className);
    const ClassInfo* info = Registry::instance().byName(className);
    return info && info->addressIn ? info->addressIn(value) : value.address();
}

static QVariant invokable(const Value& value, int type)
{
    if (value.kind != Value::Kind::List || type != QMetaType::QStringList)
        return value.toVariant();
    QStringList texts;
    for (const Value& element : value.list)
        texts.append(element.toVariant().toString());
    return texts;
}

QVariant dataAs(const Value& value, int type, const QByteArray& wanted)
{
    QVariant data = invokable(value, type);
    if (data.userType() == type)
        return data;
    if (!data.isValid() || !data.convert(type))
        throwWrongType(value, wanted);
    return data;
}

} // namespace Torvix::Agent
