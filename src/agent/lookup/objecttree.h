#pragma once

#include "agent/lookup/toolkit.h"

#include <QObject>

namespace Torvix::Agent {

/**
 * The objects of the application as one tree: the windows without a parent, then the application
 * object, each with its QObject children in their own order, and with those that a toolkit shows in it.
 */
QList<QObject*> topLevelObjects();

/** The parent in that tree; null for a top-level object. */
QObject* parentOf(QObject* object);
QObjectList childrenOf(QObject* object);

/** The object itself, or the nearest ancestor that a person sees; null when there is none. */
QObject* nearestShown(QObject* object);

/** The window of the object, or of the nearest ancestor that is in one; null when there is none. */
QObject* windowOf(QObject* object);

/** What a person sees: visible widgets, windows, actions and graphics items; everything else is not. */
bool isVisible(const QObject* object);

/** The modal window that shuts the object, or what shows it, off from input; null when none does. */
QObject* blockerOf(QObject* object);

/** The topmost visible object at a position on the screen; null when there is none. */
QObject* objectAt(const QPoint& globalPosition);

Toolkit::AdoptedChildren adoptedChildren();

/** Calls `visit(object)` for every object in tree order until it answers false. */
template <class Visit>
bool visitTree(QObject* root, const Toolkit::AdoptedChildren& adopted, Visit& visit)
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
    const Toolkit::AdoptedChildren adopted = adoptedChildren();
    for (QObject* root : topLevelObjects())
        if (!visitTree(root, adopted, visit))
            return;
}

} // namespace Torvix::Agent
