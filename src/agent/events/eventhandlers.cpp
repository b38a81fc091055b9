#include "agent/events/eventhandlers.h"

#include "agent/reflection/convert.h"
#include "agent/reflection/error.h"
#include "agent/session/wire.h"

#include <QCoreApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QMetaEnum>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

namespace Torvix::Agent {

using namespace Protocol;

namespace {

/** The types of event that one event class carries. */
const QMap<QString, QVector<QEvent::Type>>& eventClasses()
{
    static const QMap<QString, QVector<QEvent::Type>> classes = {
        {QStringLiteral("QMouseEvent"),
         {QEvent::MouseButtonPress, QEvent::MouseButtonRelease, QEvent::MouseButtonDblClick,
          QEvent::MouseMove}},
        {QStringLiteral("QKeyEvent"), {QEvent::KeyPress, QEvent::KeyRelease}},
        {QStringLiteral("QWheelEvent"), {QEvent::Wheel}},
        {QStringLiteral("QFocusEvent"), {QEvent::FocusIn, QEvent::FocusOut}},
        {QStringLiteral("QHoverEvent"), {QEvent::HoverEnter, QEvent::HoverLeave, QEvent::HoverMove}},
        {QStringLiteral("QContextMenuEvent"), {QEvent::ContextMenu}},
        {QStringLiteral("QCloseEvent"), {QEvent::Close}},
        {QStringLiteral("QShowEvent"), {QEvent::Show}},
        {QStringLiteral("QHideEvent"), {QEvent::Hide}},
        {QStringLiteral("QMoveEvent"), {QEvent::Move}},
        {QStringLiteral("QResizeEvent"), {QEvent::Resize}},
        {QStringLiteral("QPaintEvent"), {QEvent::Paint}},
        {QStringLiteral("QTimerEvent"), {QEvent::Timer}},
        {QStringLiteral("QChildEvent"), {QEvent::ChildAdded, QEvent::ChildRemoved, QEvent::ChildPolished}},
        {QStringLiteral("QDragEnterEvent"), {QEvent::DragEnter}},
        {QStringLiteral("QDropEvent"), {QEvent::Drop}},
        {QStringLiteral("QHelpEvent"), {QEvent::ToolTip, QEvent::WhatsThis}},
    };
    return classes;
}

using Matches = std::function<bool(QObject*, QEvent*)>;

template <class T>
bool isOpened(QObject* object, QEvent* event)
{
    return event->type() == QEvent::Show && qobject_cast<T*>(object) &&
           static_cast<QWidget*>(object)->isWindow();
}

Matches matcherFor(const QString& eventName)
{
    if (eventName == QLatin1String("DialogOpened"))
        return isOpened<QDialog>;
    if (eventName == QLatin1String("MessageBoxOpened"))
        return isOpened<QMessageBox>;
    if (eventName == QLatin1String("ToplevelWidgetOpened"))
        return isOpened<QWidget>;
    const QVector<QEvent::Type> types = eventClasses().value(eventName);
    if (!types.isEmpty())
        return [types](QObject*, QEvent* event) { return types.contains(event->type()); };
    bool known = false;
    const int type = QMetaEnum::fromType<QEvent::Type>().keyToValue(eventName.toLatin1(), &known);
    if (known)
        return [type](QObject*, QEvent* event) { return event->type() == type; };
    throw Error(QStringLiteral("unknown event '%1'; known are DialogOpened, MessageBoxOpened, "
                               "ToplevelWidgetOpened, the types of QEvent, and %2")
                    .arg(eventName, QStringList(eventClasses().keys()).join(QStringLiteral(", "))));
}

template <class Event>
Value copyOf(QEvent* event)
{
    auto copy = std::make_shared<Event>(*static_cast<Event*>(event));
    Value value = Value::ofPointer(TypeName<Event>::get(), copy.get());
    value.owner = copy;
    return value;
}

/** A copy that outlives the event, for those with something to read. */
Value eventCopy(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        return copyOf<QMouseEvent>(event);
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return copyOf<QKeyEvent>(event);
    case QEvent::Wheel:
        return copyOf<QWheelEvent>(event);
    default:
        return {};
    }
}

} // namespace

EventHandlers& EventHandlers::instance()
{
    static EventHandlers handlers;
    return handlers;
}

void EventHandlers::install(Session& session, const InstallHandler& request)
{
    Handler handler{session.weak_from_this(),     request.scope,     nullptr,
                    request.typeName.toUtf8(),    request.eventName, request.handler,
                    matcherFor(request.eventName)};
    if (request.scope == HandlerScope::Object)
        handler.object = session.objects().objectAt(request.object);
    if (m_handlers.empty())
        QCoreApplication::instance()->installEventFilter(this);
    m_handlers.push_back(std::move(handler));
}

void EventHandlers::uninstall(Session& session, const UninstallHandler& request)
{
    const QObject* object =
        request.scope == HandlerScope::Object ? session.objects().objectAt(request.object) : nullptr;
    const auto before = m_handlers.size();
    m_handlers.remove_if([&](const Handler& handler) {
        return handler.scope == request.scope && handler.object == object &&
               handler.eventName == request.eventName && handler.name == request.handler &&
               handler.typeName == request.typeName.toUtf8();
    });
    if (m_handlers.empty())
        QCoreApplication::instance()->removeEventFilter(this);
    if (m_handlers.size() == before)
        throw Error(
            QStringLiteral("there is no handler '%1' for '%2'").arg(request.handler, request.eventName));
}

bool EventHandlers::isFor(const Handler& handler, const QObject* object)
{
    switch (handler.scope) {
    case HandlerScope::Global:
        return true;
    case HandlerScope::Object:
        return handler.object == object;
    case HandlerScope::Type:
        return object->inherits(handler.typeName);
    }
    return false;
}

bool EventHandlers::eventFilter(QObject* watched, QEvent* event)
{
    // Native windows get input first and pass it on to their widgets.
    if (watched->isWindowType() && watched->inherits("QWidgetWindow"))
        return false;
    m_handlers.remove_if([](const Handler& handler) {
        const auto session = handler.session.lock();
        return !session || !session->isOpen();
    });
    for (const Handler& handler : m_handlers) {
        const auto session = handler.session.lock();
        if (!session || !isFor(handler, watched) || !handler.matches(watched, event))
            continue;
        EventHandled message;
        message.handler = handler.name;
        message.eventName = handler.eventName;
        message.object = toReference(Value::ofObject(watched), session->objects());
        const Value copy = eventCopy(event);
        if (!copy.isNone())
            message.arguments.append(toWire(copy, session->objects()));
        session->push(message);
    }
    return false;
}

} // namespace Torvix::Agent
