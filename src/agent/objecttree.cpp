#include "agent/objecttree.h"

#include <QAction>
#include <QApplication>
#include <QWidget>
#include <QWindow>

namespace Torvix::Agent {

QList<QObject*> topLevelObjects()
{
    QList<QObject*> roots;
    if (qobject_cast<QApplication*>(QCoreApplication::instance())) {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (!widget->parent())
                roots.append(widget);
    }
    for (QWindow* window : QGuiApplication::topLevelWindows())
        // The native windows behind widgets are no objects of their own to scripts.
        if (!window->parent() && !window->inherits("QWidgetWindow"))
            roots.append(window);
    roots.append(QCoreApplication::instance());
    return roots;
}

QWidget* nearestWidget(QObject* object)
{
    for (QObject* at = object; at; at = at->parent())
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
    return false;
}

} // namespace Torvix::Agent
