#include "runner/objecttree.h"

#include "objectmodel/inspector.h"

#include <QJsonObject>

namespace Torvix {

namespace {

constexpr int maxObjects = 2000;
constexpr int maxDepth = 100;

QString propertyText(const SharedPtr<Object>& object, const char* name)
{
    const Property* property = object->objectClass()->property(QLatin1String(name));
    const SharedPtr<Object> value = property && property->isReadable() ? property->get(object) : nullptr;
    return value ? value->toString() : QString();
}

/** Walks the tree of the current application and hands each object to `visit`; false stops. */
template <class Visit>
void walk(const ObjectList& objects, int depth, int* left, Visit visit)
{
    for (const SharedPtr<Object>& object : objects) {
        if (--*left < 0 || depth > maxDepth)
            return;
        visit(object, depth);
        walk(Inspector::self()->children(object), depth + 1, left, visit);
    }
}

QString lineOf(const SharedPtr<Object>& object)
{
    QString line = object->className();
    const QString name = propertyText(object, "objectName");
    if (!name.isEmpty())
        line += QStringLiteral(" '%1'").arg(name);
    for (const char* property : {"text", "windowTitle", "title"}) {
        const QString text = propertyText(object, property);
        if (!text.isEmpty()) {
            line += QStringLiteral(" \"%1\"").arg(text);
            break;
        }
    }
    if (propertyText(object, "visible") == QLatin1String("false"))
        line += QLatin1String(" hidden");
    if (propertyText(object, "enabled") == QLatin1String("false"))
        line += QLatin1String(" disabled");
    return line;
}

QJsonArray jsonOf(const ObjectList& objects, int depth, int* left)
{
    QJsonArray list;
    for (const SharedPtr<Object>& object : objects) {
        if (--*left < 0 || depth > maxDepth)
            break;
        QJsonObject properties;
        const Class* cls = object->objectClass();
        for (int i = 0; i < cls->numProperties(); ++i) {
            const Property* property = cls->property(i);
            const SharedPtr<Object> value = property->isReadable() ? property->get(object) : nullptr;
            if (value)
                properties.insert(property->name(), value->toString());
        }
        list.append(QJsonObject{{"class", object->className()},
                                {"name", propertyText(object, "objectName")},
                                {"realName", object->realName()},
                                {"properties", properties},
                                {"children", jsonOf(Inspector::self()->children(object), depth + 1, left)}});
    }
    return list;
}

} // namespace

QString objectTreeText()
{
    QString text;
    int left = maxObjects;
    walk(Inspector::self()->topLevelObjects(), 0, &left, [&text](const SharedPtr<Object>& object, int depth) {
        text += QString(depth * 2, QLatin1Char(' ')) + lineOf(object) + QLatin1Char('\n');
    });
    if (left < 0)
        text += QStringLiteral("[more than %1 objects: the rest is left out]\n").arg(maxObjects);
    return text;
}

QJsonArray objectTreeJson()
{
    int left = maxObjects;
    return jsonOf(Inspector::self()->topLevelObjects(), 0, &left);
}

} // namespace Torvix
