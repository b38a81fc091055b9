#pragma once

#include <QList>
#include <QObject>

class QWidget;

namespace Torvix::Agent {

/**
 * The objects of the application as one tree: the windows without a parent, then the application
 * object, each with its QObject children in their own order.
 */
QList<QObject*> topLevelObjects();

/** The widget, or the nearest ancestor that is one; null when there is none. */
QWidget* nearestWidget(QObject* object);

/** The widget's window, or that of the nearest ancestor; null when there is none. */
QWidget* windowOf(QObject* object);

/** What a person sees: visible widgets, windows and actions; everything else is not. */
bool isVisible(const QObject* object);

/** Calls `visit(object)` for every object in tree order until it answers false. */
template <class Visit>
bool visitTree(QObject* root, Visit& visit)
{
    if (!visit(root))
        return false;
    for (QObject* child : root->children())
        if (!visitTree(child, visit))
            return false;
    return true;
}

template <class Visit>
void visitAll(Visit visit)
{
    for (QObject* root : topLevelObjects())
        if (!visitTree(root, visit))
            return;
}

} // namespace Torvix::Agent
