#include "agent/input/synthesizer.h"
#include "agent/items/items.h"
#include "agent/items/target.h"
#include "agent/lookup/namematcher.h"
#include "agent/lookup/objecttree.h"
#include "agent/reflection/error.h"
#include "agent/requests/requests.h"
#include "agent/requests/waiter.h"
#include "agent/session/dispatcher.h"
#include "agent/session/wire.h"
#include "agent/widgets/widgettoolkit.h"
#include "protocol/waitmessages.h"

#include <QAbstractItemView>
#include <QAction>
#include <QWidget>
#include <QWindow>

#include <optional>

namespace Torvix::Agent {

using namespace Protocol;

namespace {

/** One wait for an object; remembers where it was in the round before. */
class ObjectWait
{
public:
    /** `object` is null when it goes by the name. */
    ObjectWait(const WaitFor& request, QObject* object) : m_request(request), m_object(object) {}

    bool check(Session& session, bool isLast, QByteArray* body)
    {
        if (m_request.object != 0 && !m_object)
            throw Error(QStringLiteral("the object has been destroyed"), ErrorClass::Destroyed);
        NameMatcher matcher(m_request.name);
        QObject* best = nullptr;
        quint32 failed = WaitExists;
        const QVector<QObject*> candidates =
            m_object ? QVector<QObject*>{m_object} : matcher.findAll(maxCandidates);
        for (QObject* object : candidates) {
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
        const Toolkit* toolkit = Toolkit::of(object);
        // What nobody sees cannot be hidden, disabled, moving or shut off.
        if (!toolkit)
            return missing;
        if ((m_request.conditions & WaitVisible) && !toolkit->isVisible(object))
            missing |= WaitVisible;
        if ((m_request.conditions & WaitEnabled) && !toolkit->isEnabled(object))
            missing |= WaitEnabled;
        if ((m_request.conditions & WaitNotBlocked) && toolkit->blockerOf(object))
            missing |= WaitNotBlocked;
        return missing;
    }

    /** True when it was there, with the same bounds, in an earlier round. */
    bool isStable(QObject* object)
    {
        const Toolkit* toolkit = Toolkit::of(object);
        if (!(m_request.conditions & WaitStable) || !toolkit)
            return true;
        const std::optional<QRect> bounds = toolkit->bounds(object);
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
            reasons.append(
                QStringLiteral("the modal window %1 is open").arg(describeObject(blockerOf(object))));
        return QStringLiteral("%1 is there, but not ready: %2.")
            .arg(describeObject(object), reasons.join(QStringLiteral("; ")));
    }

    static constexpr int maxCandidates = 20;

    WaitFor m_request;
    QPointer<QObject> m_object;
    QPointer<QObject> m_before;
    std::optional<QRect> m_boundsBefore;
};

/** What a click on an item would have to go through. A menu that is not open is reached from its window. */
QWidget* frontOf(QObject* container)
{
    auto* widget = qobject_cast<QWidget*>(container);
    return widget && !widget->isVisible() && widget->windowType() == Qt::Popup ? widget->parentWidget()
                                                                               : widget;
}

/** What keeps the item, or the action of a menu that is not open, from being used. */
quint32 missingOfItem(const Value& item, QObject* container)
{
    if (item.isNone())
        return WaitExists;
    const QWidget* widget = qobject_cast<QWidget*>(container);
    auto* action = qobject_cast<QAction*>(item.object());
    quint32 missing = 0;
    if (!action && widget && !widget->isVisible())
        missing |= WaitVisible;
    if ((action && !action->isEnabled()) || (!action && widget && !widget->isEnabled()) ||
        (item.typeName == "QModelIndex" && !(item.data.toModelIndex().flags() & Qt::ItemIsEnabled)))
        missing |= WaitEnabled;
    if (modalBlockerOf(frontOf(container)))
        missing |= WaitNotBlocked;
    return missing;
}

QString explainItem(const FindItem& request, QObject* container, quint32 failed)
{
    const QString item = request.path.isEmpty()
                             ? QStringLiteral("%1, %2").arg(request.row).arg(request.column)
                             : joinItemPath(request.path);
    if (failed & WaitExists)
        return QStringLiteral("%1 has no item '%2'. %3")
            .arg(describeObject(container), item, itemsInstead(container, request.path));
    QStringList reasons;
    if (failed & WaitVisible)
        reasons.append(QStringLiteral("is not visible"));
    if (failed & WaitEnabled)
        reasons.append(QStringLiteral("is disabled"));
    if (failed & WaitNotBlocked)
        reasons.append(QStringLiteral("cannot be reached: the modal window %1 is open")
                           .arg(describeObject(modalBlockerOf(frontOf(container)))));
    return QStringLiteral("The item '%1' of %2 %3.")
        .arg(item, describeObject(container), reasons.join(QStringLiteral("; ")));
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
    if (failed != 0)
        reply.explanation = explainItem(request, container, failed);
    *body = encode(reply);
    return true;
}

} // namespace

void registerWaitRequests(Dispatcher& dispatcher)
{
    dispatcher.onDeferred<WaitFor>([](Session& session, const WaitFor& request, const Responder& responder) {
        QObject* object = request.object != 0 ? session.objects().objectAt(request.object) : nullptr;
        auto wait = std::make_shared<ObjectWait>(request, object);
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
