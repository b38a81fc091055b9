#pragma once

#include <QList>
#include <QMultiHash>
#include <QObject>
#include <QPoint>
#include <QRect>

#include <memory>
#include <vector>

namespace Torvix::Agent {

/**
 * What look-ups must know of the objects that a person sees, whatever draws them: one implementation a
 * toolkit, found through Toolkit::of(). Objects of no toolkit are never visible and have no place.
 *
 * Implementations have no state, and are called in the GUI thread only.
 */
class Toolkit
{
public:
    /** Parents to children that QObject's tree does not lead to. */
    using AdoptedChildren = QMultiHash<QObject*, QObject*>;

    Toolkit() = default;
    virtual ~Toolkit() = default;
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;

    /** Those asked first come first: their top-level objects, and what they find at a position. */
    static void add(std::unique_ptr<Toolkit> toolkit);
    static const std::vector<std::unique_ptr<Toolkit>>& all();
    /** The toolkit that shows the object; null for one that nobody sees. */
    static const Toolkit* of(const QObject* object);

    virtual bool shows(const QObject* object) const = 0;

    virtual bool isVisible(const QObject* object) const = 0;
    virtual bool isEnabled(const QObject* object) const = 0;
    /** On the screen in device-independent pixels; null for what has no place of its own, as an action. */
    virtual QRect bounds(const QObject* object) const = 0;
    /** The window that shows the object; null when it is in none. */
    virtual QObject* windowOf(QObject* object) const = 0;
    /** The modal window that shuts the object off from input; null when none does. */
    virtual QObject* blockerOf(QObject* object) const = 0;
    /** The object of which this one is the label; null for all that are no labels. */
    virtual QObject* buddyOf(const QObject* object) const = 0;

    /** Windows without a parent, in the same order each time. */
    virtual QList<QObject*> topLevelObjects() const = 0;
    /** The topmost visible object at a position on the screen; null when there is none. */
    virtual QObject* objectAt(const QPoint& globalPosition) const = 0;
    /** The parent of an object that has none as a QObject, in whatever shows it; null when nothing does. */
    virtual QObject* adoptingParent(QObject*) const { return nullptr; }
    virtual void addAdoptedChildren(AdoptedChildren&) const {}
};

} // namespace Torvix::Agent
