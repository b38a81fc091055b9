#include "agent/reflection/value.h"

#include <QMetaObject>
#include <QMetaType>
#include <QModelIndex>
#include <QPoint>
#include <QRect>
#include <QSequentialIterable>
#include <QSize>
#include <QStringList>

namespace Torvix::Agent {

Value Value::ofData(const QByteArray& typeName, QVariant data)
{
    Value value;
    value.kind = Kind::Data;
    value.typeName = typeName;
    value.data = std::move(data);
    return value;
}

Value Value::ofObject(QObject* object)
{
    Value value = nullOf(object ? QByteArray(object->metaObject()->className()) : QByteArray("QObject"));
    value.m_isObject = true;
    value.m_object = object;
    return value;
}

Value Value::ofPointer(const QByteArray& typeName, void* pointer)
{
    Value value = nullOf(typeName);
    value.m_pointer = pointer;
    return value;
}

Value Value::nullOf(const QByteArray& typeName)
{
    Value value;
    value.kind = Kind::Pointer;
    value.typeName = typeName;
    return value;
}

Value Value::ofList(const QByteArray& typeName, QVector<Value> elements)
{
    Value value;
    value.kind = Kind::List;
    value.typeName = typeName;
    value.list = std::move(elements);
    return value;
}

static Value listOf(const QByteArray& typeName, const QVariant& variant)
{
    QVector<Value> elements;
    const auto iterable = variant.value<QSequentialIterable>();
    elements.reserve(iterable.size());
    for (const QVariant& element : iterable)
        elements.append(Value::ofVariant(element));
    return Value::ofList(typeName, std::move(elements));
}

static Value mapOf(const QByteArray& typeName, const QVariantMap& variants)
{
    Value value;
    value.kind = Value::Kind::Map;
    value.typeName = typeName;
    for (auto it = variants.begin(); it != variants.end(); ++it)
        value.map.insert(it.key(), Value::ofVariant(it.value()));
    return value;
}

Value Value::ofVariant(const QVariant& variant)
{
    const int type = variant.userType();
    if (type == QMetaType::UnknownType)
        return {};
    const QByteArray name = QMetaType::typeName(type);
    if (type == qMetaTypeId<QVariant>())
        return ofVariant(variant.value<QVariant>());
    if (QMetaType::typeFlags(type) & QMetaType::PointerToQObject) {
        auto* object = *static_cast<QObject* const*>(variant.constData());
        return object ? ofObject(object) : nullOf(name.left(name.size() - 1));
    }
    if (name.endsWith('*'))
        return ofPointer(name.left(name.size() - 1).trimmed(),
                         *static_cast<void* const*>(variant.constData()));
    if (type == QMetaType::QVariantMap || type == QMetaType::QVariantHash)
        return mapOf(name, variant.toMap());
    const bool isText = type == QMetaType::QString || type == QMetaType::QByteArray;
    if (!isText && variant.canConvert<QVariantList>())
        return listOf(name, variant);
    return ofData(name, variant);
}

QVariant Value::toVariant() const
{
    switch (kind) {
    case Kind::None:
        return {};
    case Kind::Data:
        return data;
    case Kind::Pointer:
        return m_isObject ? QVariant::fromValue(m_object.data()) : QVariant::fromValue(m_pointer);
    case Kind::List: {
        QVariantList variants;
        for (const Value& element : list)
            variants.append(element.toVariant());
        return variants;
    }
    case Kind::Map: {
        QVariantMap variants;
        for (auto it = map.begin(); it != map.end(); ++it)
            variants.insert(it.key(), it->toVariant());
        return variants;
    }
    }
    return {};
}

static QString dataText(const QByteArray& typeName, const QVariant& data)
{
    switch (data.userType()) {
    case QMetaType::QPoint:
    case QMetaType::QPointF: {
        const QPointF point = data.toPointF();
        return QStringLiteral("QPoint(%1, %2)").arg(point.x()).arg(point.y());
    }
    case QMetaType::QSize:
    case QMetaType::QSizeF: {
        const QSizeF size = data.toSizeF();
        return QStringLiteral("QSize(%1, %2)").arg(size.width()).arg(size.height());
    }
    case QMetaType::QRect:
    case QMetaType::QRectF: {
        const QRectF rect = data.toRectF();
        return QStringLiteral("QRect(%1, %2, %3, %4)")
            .arg(rect.x())
            .arg(rect.y())
            .arg(rect.width())
            .arg(rect.height());
    }
    case QMetaType::QModelIndex: {
        const QModelIndex index = data.toModelIndex();
        return QStringLiteral("QModelIndex(%1, %2)").arg(index.row()).arg(index.column());
    }
    default:
        break;
    }
    QVariant text = data;
    if (text.canConvert<QString>() && text.convert(QMetaType::QString))
        return text.toString();
    return QString::fromLatin1(typeName);
}

QString Value::toText() const
{
    switch (kind) {
    case Kind::None:
        return {};
    case Kind::Data:
        return dataText(typeName, data);
    case Kind::Pointer:
        if (!address())
            return QStringLiteral("null");
        if (m_object && !m_object->objectName().isEmpty())
            return QStringLiteral("%1(\"%2\")").arg(QString::fromLatin1(typeName), m_object->objectName());
        return QString::fromLatin1(typeName);
    case Kind::List: {
        QStringList texts;
        for (const Value& element : list)
            texts.append(element.toText());
        return QLatin1Char('[') + texts.join(QStringLiteral(", ")) + QLatin1Char(']');
    }
    case Kind::Map: {
        QStringList texts;
        for (auto it = map.begin(); it != map.end(); ++it)
            texts.append(it.key() + QStringLiteral(": ") + it->toText());
        return QLatin1Char('{') + texts.join(QStringLiteral(", ")) + QLatin1Char('}');
    }
    }
    return {};
}

/** The element type of a list type that has one; empty for every other type. */
static QByteArray elementType(const QByteArray& type)
{
    for (const char* list : {"QList<", "QVector<", "QSet<"})
        if (type.startsWith(list) && type.endsWith('>'))
            return type.mid(int(qstrlen(list)), type.size() - int(qstrlen(list)) - 1).trimmed();
    return {};
}

TypeUse TypeUse::parse(const QByteArray& cppType)
{
    TypeUse use;
    QByteArray text = cppType.trimmed();
    const auto chop = [&text](const char* end) {
        if (!text.endsWith(end))
            return false;
        text = text.left(text.size() - int(qstrlen(end))).trimmed();
        return true;
    };
    if (chop("&"))
        use.flags |= Reference;
    chop(" const");
    if (chop("*"))
        use.flags |= Pointer;
    if (text.startsWith("const ")) {
        text = text.mid(6).trimmed();
        use.flags |= Constant;
    }
    const QByteArray element = elementType(text);
    if (!element.isEmpty() && element != "QVariant" && element != "QString") {
        const TypeUse inner = parse(element);
        use.flags |= List | (inner.flags & Pointer);
        text = inner.name;
    }
    use.name = text == "QList<QVariant>" ? "QVariantList" : text == "QList<QString>" ? "QStringList" : text;
    return use;
}

QByteArray TypeUse::toCpp() const
{
    QByteArray text = name;
    if (flags & List)
        text = "QList<" + text + (flags & Pointer ? "*>" : ">");
    if (flags & Constant)
        text = "const " + text;
    if ((flags & Pointer) && !(flags & List))
        text += '*';
    if (flags & Reference)
        text += '&';
    return text;
}

} // namespace Torvix::Agent
