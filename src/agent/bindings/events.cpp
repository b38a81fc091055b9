#include "agent/bindings/bindings.h"
#include "agent/reflection/bind.h"

#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QMoveEvent>
#include <QResizeEvent>
#include <QWheelEvent>

namespace Torvix::Agent {

static void bindMouseEvents(Registry& registry)
{
    Bind<QMouseEvent>(registry, {"QInputEvent"})
        .method("x", &QMouseEvent::x)
        .method("y", &QMouseEvent::y)
        .method("pos", &QMouseEvent::pos)
        .method("globalPos", &QMouseEvent::globalPos)
        .method("button", &QMouseEvent::button)
        .method("buttons", &QMouseEvent::buttons)
        .factory(
            +[](QEvent::Type type, int x, int y, Qt::MouseButton button, int buttons, int modifiers) {
                return QMouseEvent(type, QPointF(x, y), button, Qt::MouseButtons(QFlag(buttons)),
                                   Qt::KeyboardModifiers(QFlag(modifiers)));
            },
            "type, x, y, button, buttons, modifiers", defaults(0))
        .constructor<QEvent::Type, const QPointF&, Qt::MouseButton, Qt::MouseButtons, Qt::KeyboardModifiers>(
            "type, position, button, buttons, modifiers");
    Bind<QWheelEvent>(registry, {"QInputEvent"})
        .method("position", &QWheelEvent::position)
        .method("angleDelta", &QWheelEvent::angleDelta)
        .method("pixelDelta", &QWheelEvent::pixelDelta)
        .constructor<const QPointF&, const QPointF&, QPoint, QPoint, Qt::MouseButtons, Qt::KeyboardModifiers,
                     Qt::ScrollPhase, bool>(
            "position, globalPosition, pixelDelta, angleDelta, buttons, modifiers, phase, inverted");
    Bind<QHoverEvent>(registry, {"QInputEvent"})
        .method("pos", &QHoverEvent::pos)
        .method("oldPos", &QHoverEvent::oldPos)
        .constructor<QEvent::Type, const QPointF&, const QPointF&, Qt::KeyboardModifiers>(
            "type, position, oldPosition, modifiers", defaults(Qt::KeyboardModifiers()));
    Bind<QContextMenuEvent>(registry, {"QInputEvent"})
        .method("pos", &QContextMenuEvent::pos)
        .method("globalPos", &QContextMenuEvent::globalPos)
        .constructor<QContextMenuEvent::Reason, const QPoint&, const QPoint&>(
            "reason, position, globalPosition")
        .constructor<QContextMenuEvent::Reason, const QPoint&>("reason, position");
    Bind<QHelpEvent>(registry, {"QEvent"})
        .method("pos", &QHelpEvent::pos)
        .method("globalPos", &QHelpEvent::globalPos)
        .constructor<QEvent::Type, const QPoint&, const QPoint&>("type, position, globalPosition");
}

void bindEvents(Registry& registry)
{
    Bind<QEvent>(registry)
        .method("type", &QEvent::type)
        .method("accept", &QEvent::accept)
        .method("ignore", &QEvent::ignore)
        .method("isAccepted", &QEvent::isAccepted)
        .method("spontaneous", &QEvent::spontaneous)
        .constructor<QEvent::Type>("type");
    registry.define("QEvent", {}).metaObject = &QEvent::staticMetaObject;
    Bind<QInputEvent>(registry, {"QEvent"}).method("modifiers", &QInputEvent::modifiers);
    bindMouseEvents(registry);
    Bind<QKeyEvent>(registry, {"QInputEvent"})
        .method("key", &QKeyEvent::key)
        .method("text", &QKeyEvent::text)
        .method("count", &QKeyEvent::count)
        .method("isAutoRepeat", &QKeyEvent::isAutoRepeat)
        .constructor<QEvent::Type, int, Qt::KeyboardModifiers, const QString&, bool, ushort>(
            "type, key, modifiers, text, autoRepeat, count", defaults(QString(), false, ushort(1)));
    Bind<QFocusEvent>(registry, {"QEvent"})
        .method("reason", &QFocusEvent::reason)
        .constructor<QEvent::Type, Qt::FocusReason>("type, reason", defaults(Qt::OtherFocusReason));
    Bind<QMoveEvent>(registry, {"QEvent"})
        .method("pos", &QMoveEvent::pos)
        .method("oldPos", &QMoveEvent::oldPos)
        .constructor<const QPoint&, const QPoint&>("position, oldPosition");
    Bind<QResizeEvent>(registry, {"QEvent"})
        .method("size", &QResizeEvent::size)
        .method("oldSize", &QResizeEvent::oldSize)
        .constructor<const QSize&, const QSize&>("size, oldSize");
    Bind<QCloseEvent>(registry, {"QEvent"}).constructor<>();
}

} // namespace Torvix::Agent
