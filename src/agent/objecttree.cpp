#include "agent/objecttree.h"

#include <QAction>
#include <QApplication>
#include <QGraphicsObject>
#include <QWidget>
#include <QWindow>

namespace Torvix::Agent {

QList<QObject*> topLevelObjects()
{
    QList<QObject*> roots;
    if (qobject_cast<QApplication*>(QCoreApplication::instance())) {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (!widget->parent() && !widget->graphicsProxyWidget())
                roots.append(widget);
    }
    for (QWindow* window : QGuiApplication::topLevelWindows())
        // The native windows behind widgets are no objects of their own to scripts.
        if (!window->parent() && !window->inherits("QWidgetWindow"))
            roots.append(window);
    roots.append(QCoreApplication::instance());
    return roots;
}

QObject* parentOf(QObject* object)
{
    QObject* parent = object->parent();
    return parent ? parent : Graphics::adoptingParent(object);
}

QObjectList childrenOf(QObject* object)
{
    return object->children() + Graphics::adoptedChildren().values(object);
}

QWidget* nearestWidget(QObject* object)
{
    for (QObject* at = object; at; at = parentOf(at))
        if (at->isWidgetType())
            return static_cast<QWidget*>(at);
    return nullptr;
}

QWidget* windowOf(QObject* object)
{
    QWidget* widget = nearestWidget(object);
    return widget ? widget->window() : nullptr;
}

bool isVisible(const QObject* object)
{
    if (object->isWidgetType())
        return static_cast<const QWidget*>(object)->isVisible();
    if (object->isWindowType())
        return static_cast<const QWindow*>(object)->isVisible();
    if (const auto* action = qobject_cast<const QAction*>(object))
        return action->isVisible();
    if (const auto* item = qobject_cast<const QGraphicsObject*>(object))
        return item->isVisible();
    return false;
}

} // namespace Torvix::Agent
