#include "agent/widgets/graphics.h"

#include <QApplication>
#include <QGraphicsObject>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QGraphicsView>

namespace Torvix::Agent::Graphics {

namespace {

QObject* parentOfItem(QGraphicsObject* object)
{
    // What lies between two objects is no object itself.
    for (QGraphicsItem* at = object->parentItem(); at; at = at->parentItem())
        if (QGraphicsObject* parent = at->toGraphicsObject())
            return parent;
    return object->scene();
}

void adoptItems(QGraphicsScene* scene, Toolkit::AdoptedChildren& adopted)
{
    const QList<QGraphicsItem*> items = scene->items(Qt::DescendingOrder);
    // The values of a key come out last in, first out: so the topmost goes in first.
    for (QGraphicsItem* item : items) {
        QGraphicsObject* object = item->toGraphicsObject();
        if (!object)
            continue;
        if (!object->parent())
            adopted.insert(parentOfItem(object), object);
        const auto* proxy = qobject_cast<QGraphicsProxyWidget*>(object);
        if (proxy && proxy->widget() && !proxy->widget()->parent())
            adopted.insert(object, proxy->widget());
    }
}

} // namespace

void addAdoptedChildren(Toolkit::AdoptedChildren& adopted)
{
    QSet<QGraphicsScene*> seen;
    for (QWidget* widget : QApplication::allWidgets()) {
        auto* view = qobject_cast<QGraphicsView*>(widget);
        QGraphicsScene* scene = view ? view->scene() : nullptr;
        if (!scene || seen.contains(scene))
            continue;
        seen.insert(scene);
        if (!scene->parent())
            adopted.insert(adoptingParent(scene), scene);
        adoptItems(scene, adopted);
    }
}

QObject* adoptingParent(QObject* object)
{
    if (object->isWidgetType())
        return static_cast<QWidget*>(object)->graphicsProxyWidget();
    if (auto* item = qobject_cast<QGraphicsObject*>(object))
        return parentOfItem(item);
    if (auto* scene = qobject_cast<QGraphicsScene*>(object))
        return scene->views().value(0);
    return nullptr;
}

QGraphicsView* viewOf(const QGraphicsItem* item)
{
    QGraphicsView* found = nullptr;
    if (item->scene())
        for (QGraphicsView* view : item->scene()->views())
            if (!found || (!found->isVisible() && view->isVisible()))
                found = view;
    return found;
}

QGraphicsView* viewAround(const QWidget* widget)
{
    const QGraphicsProxyWidget* proxy = widget->window()->graphicsProxyWidget();
    return proxy ? viewOf(proxy) : nullptr;
}

QGraphicsItem* itemOf(const Value& value)
{
    if (QObject* object = value.object())
        return qobject_cast<QGraphicsObject*>(object);
    return value.isPointer() && value.typeName == "QGraphicsItem"
               ? static_cast<QGraphicsItem*>(value.address())
               : nullptr;
}

Value toItemValue(QGraphicsItem* item)
{
    if (!item)
        return Value::nullOf("QGraphicsItem");
    if (QGraphicsObject* object = item->toGraphicsObject())
        return Value::ofObject(object);
    return Value::ofPointer("QGraphicsItem", item);
}

QRect rectInView(const QGraphicsView* view, const QGraphicsItem* item)
{
    return view->mapFromScene(item->sceneBoundingRect()).boundingRect();
}

QRect globalRect(const QGraphicsView* view, const QGraphicsItem* item)
{
    const QRect rect = rectInView(view, item);
    return {view->viewport()->mapToGlobal(rect.topLeft()), rect.size()};
}

} // namespace Torvix::Agent::Graphics
