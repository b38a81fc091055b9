#include "agent/widgets/widgettoolkit.h"

#include "agent/lookup/objecttree.h"
#include "agent/widgets/graphics.h"

#include <QAction>
#include <QApplication>
#include <QGraphicsObject>
#include <QLabel>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace Torvix::Agent {

namespace {

const QWidget* asWidget(const QObject* object)
{
    return object->isWidgetType() ? static_cast<const QWidget*>(object) : nullptr;
}

/**
 * Qt keeps widgets in no order at all, and an `occurrence` is to mean the same window tomorrow. Their
 * native windows are in the order in which they were first shown; those never shown come after.
 */
void sortByAge(QList<QObject*>& widgets)
{
    if (widgets.size() < 2)
        return;
    const QWindowList windows = QGuiApplication::allWindows();
    const auto age = [&](const QObject* object) {
        const int index = windows.indexOf(asWidget(object)->windowHandle());
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

/** Null for an application without widgets. */
QApplication* widgetApplication()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance());
}

} // namespace

bool WidgetToolkit::shows(const QObject* object) const
{
    return object->isWidgetType() || qobject_cast<const QAction*>(object) ||
           qobject_cast<const QGraphicsObject*>(object);
}

bool WidgetToolkit::isVisible(const QObject* object) const
{
    if (const QWidget* widget = asWidget(object))
        return widget->isVisible();
    if (const auto* action = qobject_cast<const QAction*>(object))
        return action->isVisible();
    const auto* item = qobject_cast<const QGraphicsObject*>(object);
    return item && item->isVisible();
}

bool WidgetToolkit::isEnabled(const QObject* object) const
{
    if (const QWidget* widget = asWidget(object))
        return widget->isEnabled();
    if (const auto* action = qobject_cast<const QAction*>(object))
        return action->isEnabled();
    const auto* item = qobject_cast<const QGraphicsObject*>(object);
    return item && item->isEnabled();
}

QRect WidgetToolkit::bounds(const QObject* object) const
{
    if (const QWidget* widget = asWidget(object))
        return {widget->mapToGlobal(QPoint(0, 0)), widget->size()};
    const auto* item = qobject_cast<const QGraphicsObject*>(object);
    const QGraphicsView* view = item ? Graphics::viewOf(item) : nullptr;
    return view ? Graphics::globalRect(view, item) : QRect();
}

QObject* WidgetToolkit::windowOf(QObject* object) const
{
    const QWidget* widget = nearestWidget(object);
    return widget ? widget->window() : nullptr;
}

QObject* WidgetToolkit::blockerOf(QObject* object) const
{
    return modalBlockerOf(nearestWidget(object));
}

QObject* WidgetToolkit::buddyOf(const QObject* object) const
{
    const auto* label = qobject_cast<const QLabel*>(object);
    return label ? label->buddy() : nullptr;
}

QList<QObject*> WidgetToolkit::topLevelObjects() const
{
    QList<QObject*> widgets;
    if (widgetApplication())
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (!widget->parent() && !widget->graphicsProxyWidget())
                widgets.append(widget);
    sortByAge(widgets);
    return widgets;
}

QObject* WidgetToolkit::objectAt(const QPoint& globalPosition) const
{
    return widgetApplication() ? QApplication::widgetAt(globalPosition) : nullptr;
}

QObject* WidgetToolkit::adoptingParent(QObject* object) const
{
    return Graphics::adoptingParent(object);
}

void WidgetToolkit::addAdoptedChildren(AdoptedChildren& adopted) const
{
    if (widgetApplication())
        Graphics::addAdoptedChildren(adopted);
}

QWidget* nearestWidget(QObject* object)
{
    for (QObject* at = object; at; at = parentOf(at))
        if (at->isWidgetType())
            return static_cast<QWidget*>(at);
    return nullptr;
}

QWidget* modalBlockerOf(const QWidget* widget)
{
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal || !widget)
        return nullptr;
    const QWidget* window = widget->window();
    // Popups of the dialog, and windows that belong to it, are not shut off.
    for (const QWidget* at = window; at; at = at->parentWidget())
        if (at == modal || at->windowType() == Qt::Popup)
            return nullptr;
    if (modal->windowModality() == Qt::WindowModal && modal->parentWidget() &&
        modal->parentWidget()->window() != window)
        return nullptr;
    return modal;
}

} // namespace Torvix::Agent
