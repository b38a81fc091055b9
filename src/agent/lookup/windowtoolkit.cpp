#include "agent/lookup/windowtoolkit.h"

#include <QGuiApplication>
#include <QWindow>

namespace Torvix::Agent {

static const QWindow* asWindow(const QObject* object)
{
    return static_cast<const QWindow*>(object);
}

bool WindowToolkit::shows(const QObject* object) const
{
    return object->isWindowType();
}

bool WindowToolkit::isVisible(const QObject* object) const
{
    return asWindow(object)->isVisible();
}

bool WindowToolkit::isEnabled(const QObject*) const
{
    return true;
}

QRect WindowToolkit::bounds(const QObject* object) const
{
    return {asWindow(object)->mapToGlobal(QPoint(0, 0)), asWindow(object)->size()};
}

QObject* WindowToolkit::windowOf(QObject* object) const
{
    auto* window = static_cast<QWindow*>(object);
    while (window->parent())
        window = window->parent();
    return window;
}

static bool belongsTo(const QWindow* window, const QWindow* other)
{
    for (const QWindow* at = window; at; at = at->parent(QWindow::IncludeTransients))
        if (at == other)
            return true;
    return false;
}

QObject* WindowToolkit::blockerOf(QObject* object) const
{
    QWindow* modal = QGuiApplication::modalWindow();
    if (!modal || belongsTo(asWindow(object), modal))
        return nullptr;
    const bool isForOneWindow = modal->modality() == Qt::WindowModal && modal->transientParent();
    return isForOneWindow && !belongsTo(modal->transientParent(), asWindow(object)) ? nullptr : modal;
}

QObject* WindowToolkit::buddyOf(const QObject*) const
{
    return nullptr;
}

QList<QObject*> WindowToolkit::topLevelObjects() const
{
    QList<QObject*> windows;
    for (QWindow* window : QGuiApplication::topLevelWindows())
        if (!window->parent() && !window->inherits("QWidgetWindow"))
            windows.append(window);
    return windows;
}

QObject* WindowToolkit::objectAt(const QPoint& globalPosition) const
{
    return QGuiApplication::topLevelAt(globalPosition);
}

} // namespace Torvix::Agent
