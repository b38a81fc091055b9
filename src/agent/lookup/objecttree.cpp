#include "agent/lookup/objecttree.h"

#include <QAction>
#include <QApplication>
#include <QGraphicsObject>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace Torvix::Agent {

/**
 * Qt keeps widgets in no order at all, and an `occurrence` is to mean the same window tomorrow. Their
 * native windows are in the order in which they were first shown; those never shown come after.
 */
static void sortByAge(QList<QObject*>& widgets)
{
    if (widgets.size() < 2)
        return;
    const QWindowList windows = QGuiApplication::allWindows();
    const auto age = [&](const QObject* object) {
        const int index = windows.indexOf(static_cast<const QWidget*>(object)->windowHandle());
        return index < 0 ? windows.size() : index;
    };
    const auto isBefore = [&](const QObject* a, const QObject* b) {
        const int ageA = age(a);
        const int ageB = age(b);
        if (ageA != ageB)
            return ageA < ageB;
        const int byClass = qstrcmp(a->metaObject()->className(), b->metaObject()->className());
        return byClass != 0 ? byClass < 0 : a->objectName() < b->objectName();
    };
    std::stable_sort(widgets.begin(), widgets.end(), isBefore);
}

QList<QObject*> topLevelObjects()
{
    QList<QObject*> roots;
    if (qobject_cast<QApplication*>(QCoreApplication::instance())) {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (!widget->parent() && !widget->graphicsProxyWidget())
                roots.append(widget);
        sortByAge(roots);
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
