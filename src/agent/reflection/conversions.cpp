#include "agent/reflection/conversions.h"

#include "agent/reflection/convert.h"
#include "agent/reflection/error.h"
#include "agent/reflection/registry.h"
#include "protocol/message.h"

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QMetaType>
#include <QModelIndex>
#include <QUrl>

namespace Torvix::Agent {

namespace {

struct Conversion
{
    const char* from;
    const char* to;
};

/** Value conversions that Qt's own types have. */
const Conversion conversions[] = {
    {"QString", "QColor"},
    {"QColor", "QString"},
    {"QString", "QUrl"},
    {"QUrl", "QString"},
    {"QString", "QFont"},
    {"QFont", "QString"},
    {"QString", "QDate"},
    {"QDate", "QString"},
    {"QString", "QTime"},
    {"QTime", "QString"},
    {"QString", "QDateTime"},
    {"QDateTime", "QString"},
    {"QString", "QKeySequence"},
    {"QKeySequence", "QString"},
    {"int", "QKeySequence"},
    {"QDate", "QDateTime"},
    {"QDateTime", "QDate"},
    {"QDateTime", "QTime"},
    {"QPoint", "QPointF"},
    {"QPointF", "QPoint"},
    {"QSize", "QSizeF"},
    {"QSizeF", "QSize"},
    {"QRect", "QRectF"},
    {"QRectF", "QRect"},
    {"QColor", "QBrush"},
    {"QBrush", "QColor"},
    {"QModelIndex", "QPersistentModelIndex"},
    {"QPersistentModelIndex", "QModelIndex"},
};

const char* const variantSources[] = {
    "uint",     "int",    "short",     "bool",  "QString", "double",       "qlonglong",   "ArrayClass",
    "MapClass", "QPoint", "QPointF",   "QSize", "QSizeF",  "QRect",        "QRectF",      "QColor",
    "QDate",    "QTime",  "QDateTime", "QFont", "QUrl",    "QKeySequence", "QModelIndex", "QObject"};

QVariant convertedData(const Value& value, int type)
{
    QVariant data = value.toVariant();
    if (type == QMetaType::QUrl && data.userType() == QMetaType::QString)
        return QUrl(data.toString());
    if (type == QMetaType::QBrush && data.userType() == QMetaType::QColor)
        return QBrush(data.value<QColor>());
    return data.convert(type) ? data : QVariant();
}

} // namespace

QByteArrayList convertibleFrom(const QByteArray& className)
{
    QByteArrayList names;
    if (className == "QVariant")
        for (const char* source : variantSources)
            names.append(source);
    for (const Conversion& conversion : conversions)
        if (className == conversion.to)
            names.append(conversion.from);
    return names;
}

QByteArrayList convertibleTo(const QByteArray& className)
{
    QByteArrayList names;
    for (const Conversion& conversion : conversions)
        if (className == conversion.from)
            names.append(conversion.to);
    return names;
}

Value convertValue(const Value& value, const QByteArray& className)
{
    if (value.typeName == className || className == "QVariant")
        return value;
    if (value.isPointer()) {
        if (!value.address())
            return Value::nullOf(className);
        Registry& registry = Registry::instance();
        const QObject* object = value.object();
        const ClassInfo* target = registry.byName(className);
        const bool isOf = object && target && target->metaObject
                              ? object->metaObject()->inherits(target->metaObject)
                              : registry.inherits(value.typeName, className) ||
                                    registry.inherits(className, value.typeName);
        if (!isOf)
            throwWrongType(value, className);
        Value cast = value;
        cast.typeName = className;
        return cast;
    }
    if (className == "QString")
        return Value::ofData("QString", value.toText());
    const int type = QMetaType::type(className);
    const QVariant data = type ? convertedData(value, type) : QVariant();
    if (!data.isValid())
        throw Error(QStringLiteral("a %1 does not convert to %2")
                        .arg(QString::fromLatin1(value.typeName), QString::fromLatin1(className)),
                    Protocol::ErrorClass::BadValue);
    return Value::ofData(className, data);
}

bool isSame(const Value& first, const Value& second)
{
    if (first.isPointer() || second.isPointer())
        return first.isPointer() && second.isPointer() && first.address() == second.address();
    if (first.kind != second.kind)
        return false;
    if (first.typeName == "QModelIndex" && second.typeName == "QModelIndex")
        return first.data.toModelIndex() == second.data.toModelIndex();
    return first.toVariant() == second.toVariant();
}

} // namespace Torvix::Agent
