#include "agent/lookup/objecttree.h"

#include <QCoreApplication>

namespace Torvix::Agent {

QList<QObject*> topLevelObjects()
{
    QList<QObject*> roots;
    for (const auto& toolkit : Toolkit::all())
        roots += toolkit->topLevelObjects();
    roots.append(QCoreApplication::instance());
    return roots;
}

QObject* parentOf(QObject* object)
{
    if (QObject* parent = object->parent())
        return parent;
    for (const auto& toolkit : Toolkit::all())
        if (QObject* parent = toolkit->adoptingParent(object))
            return parent;
    return nullptr;
}

Toolkit::AdoptedChildren adoptedChildren()
{
    Toolkit::AdoptedChildren adopted;
    for (const auto& toolkit : Toolkit::all())
        toolkit->addAdoptedChildren(adopted);
    return adopted;
}

QObjectList childrenOf(QObject* object)
{
    return object->children() + adoptedChildren().values(object);
}

QObject* nearestShown(QObject* object)
{
    QObject* at = object;
    while (at && !Toolkit::of(at))
        at = parentOf(at);
    return at;
}

QObject* windowOf(QObject* object)
{
    for (QObject* at = object; at; at = parentOf(at)) {
        const Toolkit* toolkit = Toolkit::of(at);
        if (QObject* window = toolkit ? toolkit->windowOf(at) : nullptr)
            return window;
    }
    return nullptr;
}

bool isVisible(const QObject* object)
{
    const Toolkit* toolkit = Toolkit::of(object);
    return toolkit && toolkit->isVisible(object);
}

QObject* blockerOf(QObject* object)
{
    QObject* shown = nearestShown(object);
    return shown ? Toolkit::of(shown)->blockerOf(shown) : nullptr;
}

QObject* objectAt(const QPoint& globalPosition)
{
    for (const auto& toolkit : Toolkit::all())
        if (QObject* object = toolkit->objectAt(globalPosition))
            return object;
    return nullptr;
}

} // namespace Torvix::Agent
