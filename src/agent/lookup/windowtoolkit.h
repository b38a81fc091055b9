#pragma once

#include "agent/lookup/toolkit.h"

namespace Torvix::Agent {

/** Windows that draw themselves. Those behind widgets are no objects of their own to scripts. */
class WindowToolkit : public Toolkit
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
};

} // namespace Torvix::Agent
