#pragma once

#include "agent/lookup/toolkit.h"
#include "agent/reflection/value.h"

#include <QRect>

class QGraphicsItem;
class QGraphicsView;

namespace Torvix::Agent {

/**
 * Graphics scenes hold objects that QObject's tree does not lead to: a view shows its scene, which holds
 * items, which may hold widgets. All of these have no QObject as parent; here they get the one that a
 * person would expect.
 */
namespace Graphics {

/** The children that objects have beyond their own, in the order in which they are drawn. */
void addAdoptedChildren(Toolkit::AdoptedChildren& adopted);

/** The view of a scene, the item or scene of an item, the item that shows a widget; null for others. */
QObject* adoptingParent(QObject* object);

/** The visible view that shows the item, else any; null when none does. */
QGraphicsView* viewOf(const QGraphicsItem* item);

/** The view that shows the widget as part of an item; null for a widget on the screen. */
QGraphicsView* viewAround(const QWidget* widget);

/** The item that `value` is or points to; null when it is none or has gone. */
QGraphicsItem* itemOf(const Value& value);

/** An item as scripts get it: as an object where it is one. */
Value toItemValue(QGraphicsItem* item);

/** Where the item is in its view's viewport, and on the screen. */
QRect rectInView(const QGraphicsView* view, const QGraphicsItem* item);
QRect globalRect(const QGraphicsView* view, const QGraphicsItem* item);

} // namespace Graphics

} // namespace Torvix::Agent
