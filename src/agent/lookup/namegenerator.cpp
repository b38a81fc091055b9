#include "agent/lookup/namegenerator.h"

#include "agent/lookup/namematcher.h"
#include "agent/lookup/objecttree.h"

namespace Torvix::Agent {

using Protocol::NameCondition;
using Protocol::NameConditions;

namespace {

/** Longer texts make names that nobody reads. */
constexpr int longestText = 60;

NameCondition exact(const char* property, const QString& text)
{
    NameCondition condition;
    condition.property = QString::fromLatin1(property);
    condition.text = text;
    return condition;
}

NameCondition nested(const char* property, const NameConditions& name)
{
    NameCondition condition;
    condition.property = QString::fromLatin1(property);
    condition.isNested = true;
    condition.nested = name;
    return condition;
}

QString className(const QObject* object)
{
    return QString::fromLatin1(object->metaObject()->className());
}

/** Names that Qt gives to its own inner widgets say which one it is; others are the author's. */
void addIdentity(QObject* object, NameConditions& name)
{
    if (!object->objectName().isEmpty()) {
        name.append(exact("name", object->objectName()));
        return;
    }
    for (const char* property : {"text", "title", "windowTitle", "placeholderText", "toolTip"}) {
        const QString text = object->property(property).toString();
        if (!text.isEmpty() && text.size() <= longestText && !text.contains(QLatin1Char('\n'))) {
            name.append(exact(property, text));
            return;
        }
    }
}

bool isUnique(const NameConditions& name, const QObject* object)
{
    const QVector<QObject*> found = NameMatcher(name).findAll(2);
    return found.size() == 1 && found.first() == object;
}

NameConditions ownName(QObject* object)
{
    NameConditions name{exact("type", className(object))};
    addIdentity(object, name);
    return name;
}

/** The nearest ancestor with an object name of its own, below the window. */
QObject* namedAncestor(QObject* object, const QObject* window)
{
    for (QObject* at = parentOf(object); at && at != window; at = parentOf(at))
        if (!at->objectName().isEmpty() && !at->objectName().startsWith(QLatin1String("qt_")))
            return at;
    return nullptr;
}

} // namespace

NameConditions realNameOf(QObject* object)
{
    NameConditions name = ownName(object);
    if (isVisible(object))
        name.append(exact("visible", QStringLiteral("true")));
    if (isUnique(name, object))
        return name;
    QObject* window = windowOf(object);
    if (window && window != object) {
        name.append(nested("window", ownName(window)));
        if (isUnique(name, object))
            return name;
    }
    if (QObject* container = namedAncestor(object, window)) {
        name.append(nested("container", ownName(container)));
        if (isUnique(name, object))
            return name;
    }
    const int index = NameMatcher(name).findAll().indexOf(object);
    name.append(exact("occurrence", QString::number(index + 1)));
    return name;
}

} // namespace Torvix::Agent
