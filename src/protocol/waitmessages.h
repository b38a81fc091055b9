#pragma once

#include "protocol/message.h"
#include "protocol/namecondition.h"
#include "protocol/value.h"

#include <QString>
#include <QStringList>

/** Waiting for objects and items; the agent waits, so that nothing is polled over the wire. */
namespace Torvix::Protocol {

enum WaitCondition : quint32 {
    WaitExists = 1,
    WaitVisible = 2,
    WaitEnabled = 4,
    /** Its bounds did not change between two rounds of the event loop. */
    WaitStable = 8,
    /** No modal window shuts it off from input. */
    WaitNotBlocked = 16,
    WaitReady = WaitExists | WaitVisible | WaitEnabled | WaitStable | WaitNotBlocked
};

struct WaitReply
{
    /** The last object that matched the name, also when a condition failed; else null. */
    ObjectRef object;
    /** WaitCondition bits that did not hold at the timeout; 0 for success. */
    quint32 failed = 0;
    /** For people, when something failed: the nearest miss, or what stands in the way. */
    QString explanation;
    TORVIX_WIRE_FIELDS(object, failed, explanation)
};

/** Answered as soon as all conditions hold, at the latest after the timeout. */
struct WaitFor
{
    static constexpr auto number = RequestNumber::WaitFor;
    using Reply = WaitReply;
    NameConditions name;
    quint32 conditions = WaitReady;
    int timeoutMs = 0;
    /** That object, whatever its name; 0: by the name. */
    qint64 object = 0;
    TORVIX_WIRE_FIELDS(name, conditions, timeoutMs, object)
};

/**
 * An item of a view, menu, menu bar, tab bar or combo box: by the texts from the top level down,
 * or, with an empty path, by row and column from 0. Waits like WaitFor.
 */
struct FindItem
{
    static constexpr auto number = RequestNumber::FindItem;
    using Reply = WaitReply;
    qint64 container = 0;
    QStringList path;
    int row = -1;
    int column = -1;
    int timeoutMs = 0;
    TORVIX_WIRE_FIELDS(container, path, row, column, timeoutMs)
};

} // namespace Torvix::Protocol
