#pragma once

#include "agent/lookup/toolkit.h"

class QWidget;

namespace Torvix::Agent {

/** Widgets, and what they show that is an object too: actions, and the items of graphics scenes. */
class WidgetToolkit : public Toolkit
{
public:
    bool shows(const QObject* object) const override;
    bool isVisible(const QObject* object) const override;
    bool isEnabled(const QObject* object) const override;
    QRect bounds(const QObject* object) const override;
    QObject* windowOf(QObject* object) const override;
    QObject* blockerOf(QObject* object) const override;
    QObject* buddyOf(const QObject* object) const override;
    QList<QObject*> topLevelObjects() const override;
    QObject* objectAt(const QPoint& globalPosition) const override;
    QObject* adoptingParent(QObject* object) const override;
    void addAdoptedChildren(AdoptedChildren& adopted) const override;
};

/** The object itself, or the nearest ancestor that is a widget; null when there is none. */
QWidget* nearestWidget(QObject* object);

/** The modal window that shuts `widget` off from input; null when none does. */
QWidget* modalBlockerOf(const QWidget* widget);

} // namespace Torvix::Agent
