#include "agent/dispatcher.h"
#include "agent/error.h"
#include "agent/items.h"
#include "agent/namematcher.h"
#include "agent/objecttree.h"
#include "agent/requests.h"
#include "agent/screen.h"
#include "agent/synthesizer.h"
#include "agent/waiter.h"
#include "agent/wire.h"
#include "protocol/waitmessages.h"

#include <QAbstractItemView>
#include <QAction>
#include <QWidget>
#include <QWindow>

#include <optional>

namespace Torvix::Agent {

using namespace Protocol;

namespace {

/** Objects without a face cannot be hidden, disabled, moving or shut off. */
bool hasFace(QObject* object)
{
    return object->isWidgetType() || object->isWindowType() || qobject_cast<QAction*>(object);
}

bool isEnabled(QObject* object)
{
    if (object->isWidgetType())
        return static_cast<QWidget*>(object)->isEnabled();
    if (auto* action = qobject_cast<QAction*>(object))
        return action->isEnabled();
    return true;
}

std::optional<QRect> boundsOf(QObject* object)
{
    if (!object->isWidgetType())
        return QRect();
    const auto* widget = static_cast<QWidget*>(object);
    return QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size());
}

/** One wait for an object; remembers where it was in the round before. */
class ObjectWait
{
public:
    explicit ObjectWait(const WaitFor& request) : m_request(request) {}

    bool check(Session& session, bool isLast, QByteArray* body)
    {
        NameMatcher matcher(m_request.name);
        QObject* best = nullptr;
        quint32 failed = WaitExists;
        for (QObject* object : matcher.findAll(20)) {
            const quint32 missing = missingOf(object);
            if (!best || missing == 0) {
                best = object;
                failed = missing;
            }
            if (missing == 0)
                break;
        }
        if (failed == 0 && !isStable(best)) {
            failed = WaitStable;
            Waiter::instance().lookAgain();
        }
        if (failed != 0 && !isLast)
            return false;
        WaitReply reply;
        if (best)
            reply.object = toReference(Value::ofObject(best), session.objects());
        reply.failed = failed;
        reply.explanation = failed ? explain(matcher, best, failed) : QString();
        *body = encode(reply);
        return true;
    }

private:
    quint32 missingOf(QObject* object) const
    {
        quint32 missing = 0;
        if (!hasFace(object))
            return missing;
        if ((m_request.conditions & WaitVisible) && !isVisible(object))
            missing |= WaitVisible;
        if ((m_request.conditions & WaitEnabled) && !isEnabled(object))
            missing |= WaitEnabled;
        if ((m_request.conditions & WaitNotBlocked) && Input::blockerOf(nearestWidget(object)))
            missing |= WaitNotBlocked;
        return missing;
    }

    /** True when it was there, with the same bounds, in an earlier round. */
    bool isStable(QObject* object)
    {
        if (!(m_request.conditions & WaitStable) || !hasFace(object))
            return true;
        const std::optional<QRect> bounds = boundsOf(object);
        const bool same = object == m_before && bounds == m_boundsBefore;
        m_before = object;
        m_boundsBefore = bounds;
        return same;
    }

    static QString explain(NameMatcher& matcher, QObject* object, quint32 failed)
    {
        if (!object)
            return matcher.nearestMiss();
        QStringList reasons;
        if (failed & WaitVisible)
            reasons.append(QStringLiteral("it is not visible"));
        if (failed & WaitEnabled)
            reasons.append(QStringLiteral("it is disabled"));
        if (failed & WaitStable)
            reasons.append(QStringLiteral("it keeps moving"));
        if (failed & WaitNotBlocked)
            reasons.append(QStringLiteral("the modal window %1 is open")
                               .arg(describeObject(Input::blockerOf(nearestWidget(object)))));
        return QStringLiteral("%1 is there, but not ready: %2.")
            .arg(describeObject(object), reasons.join(QStringLiteral("; ")));
    }

    WaitFor m_request;
    QPointer<QObject> m_before;
    std::optional<QRect> m_boundsBefore;
};

/** Whether the item, or the action of a menu that is not open, can be used. */
quint32 missingOfItem(const Value& item, QObject* container)
{
    if (item.isNone())
        return WaitExists;
    if (auto* action = qobject_cast<QAction*>(item.object()))
        return action->isEnabled() ? 0 : quint32(WaitEnabled);
    if (item.typeName == "QModelIndex" && !(item.data.toModelIndex().flags() & Qt::ItemIsEnabled))
        return WaitEnabled;
    auto* widget = qobject_cast<QWidget*>(container);
    return widget && !widget->isVisible() ? quint32(WaitVisible) : 0;
}

bool checkItem(Session& session, const FindItem& request, QObject* container, bool isLast, QByteArray* body)
{
    if (!container)
        throw Error(QStringLiteral("the object with the item has been destroyed"), ErrorClass::Destroyed);
    const Value item = findItem(container, request.path, request.row, request.column);
    const quint32 failed = missingOfItem(item, container);
    if (failed != 0 && !isLast)
        return false;
    WaitReply reply;
    reply.failed = failed;
    if (!item.isNone()) {
        if (item.typeName == "QModelIndex" && itemViewOf(container) == container)
            showItem(itemViewOf(container), item.data.toModelIndex());
        reply.object = toReference(item, session.objects());
    }
    const QString text = request.path.isEmpty()
                             ? QStringLiteral("%1, %2").arg(request.row).arg(request.column)
                             : joinItemPath(request.path);
    if (failed == WaitExists)
        reply.explanation = QStringLiteral("%1 has no item '%2'.").arg(describeObject(container), text);
    else if (failed != 0)
        reply.explanation =
            QStringLiteral("The item '%1' of %2 is %3.")
                .arg(text, describeObject(container),
                     failed == WaitEnabled ? QStringLiteral("disabled") : QStringLiteral("not visible"));
    *body = encode(reply);
    return true;
}

} // namespace

void registerWaitRequests(Dispatcher& dispatcher)
{
    dispatcher.onDeferred<WaitFor>([](Session& session, const WaitFor& request, const Responder& responder) {
        auto wait = std::make_shared<ObjectWait>(request);
        const auto weak = session.weak_from_this();
        const auto check = [wait, weak](bool isLast, QByteArray* body) {
            const auto strong = weak.lock();
            return !strong || !strong->isOpen() || wait->check(*strong, isLast, body);
        };
        Waiter::instance().wait(check, request.timeoutMs, responder);
    });
    dispatcher.onDeferred<FindItem>(
        [](Session& session, const FindItem& request, const Responder& responder) {
            const QPointer<QObject> container = session.objects().objectAt(request.container);
            const auto weak = session.weak_from_this();
            const auto check = [container, weak, request](bool isLast, QByteArray* body) {
                const auto strong = weak.lock();
                return !strong || !strong->isOpen() || checkItem(*strong, request, container, isLast, body);
            };
            Waiter::instance().wait(check, request.timeoutMs, responder);
        });
}

} // namespace Torvix::Agent
