#pragma once

#include "agent/items/graphics.h"

#include <QList>
#include <QObject>

class QWidget;

namespace Torvix::Agent {

/**
 * The objects of the application as one tree: the windows without a parent, then the application
 * object, each with its QObject children in their own order, and a view with what its scene holds.
 */
QList<QObject*> topLevelObjects();

/** The parent in that tree; null for a top-level object. */
QObject* parentOf(QObject* object);
QObjectList childrenOf(QObject* object);

/** The widget, or the nearest ancestor that is one; null when there is none. */
QWidget* nearestWidget(QObject* object);

/** The widget's window, or that of the nearest ancestor; null when there is none. */
QWidget* windowOf(QObject* object);

/** What a person sees: visible widgets, windows and actions; everything else is not. */
bool isVisible(const QObject* object);

/** Calls `visit(object)` for every object in tree order until it answers false. */
template <class Visit>
bool visitTree(QObject* root, const QMultiHash<QObject*, QObject*>& adopted, Visit& visit)
{
    if (!visit(root))
        return false;
    for (QObject* child : root->children())
        if (!visitTree(child, adopted, visit))
            return false;
    if (!adopted.isEmpty())
        for (QObject* child : adopted.values(root))
            if (!visitTree(child, adopted, visit))
                return false;
    return true;
}

template <class Visit>
void visitAll(Visit visit)
{
    const QMultiHash<QObject*, QObject*> adopted = Graphics::adoptedChildren();
    for (QObject* root : topLevelObjects())
        if (!visitTree(root, adopted, visit))
            return;
}

} // namespace Torvix::Agent
