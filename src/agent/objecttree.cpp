#include "agent/objecttree.h"

#include <QAction>
#include <QApplication>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace Torvix::Agent {

/** Those without a parent, in the order in which they were shown first; Qt has them in a random one. */
static QWidgetList parentlessWindows()
{
    QWidgetList windows;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (!widget->parent())
            windows.append(widget);
    const QWindowList shown = QGuiApplication::allWindows();
    const auto place = [&shown](const QWidget* widget) {
        const int index = shown.indexOf(widget->windowHandle());
        return index < 0 ? shown.size() : index;
    };
    std::sort(windows.begin(), windows.end(), [&place](const QWidget* left, const QWidget* right) {
        const int difference = place(left) - place(right);
        return difference != 0 ? difference < 0 : left < right;
    });
    return windows;
}

QList<QObject*> topLevelObjects()
{
    QList<QObject*> roots;
    if (qobject_cast<QApplication*>(QCoreApplication::instance())) {
        for (QWidget* widget : parentlessWindows())
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
