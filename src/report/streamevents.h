#pragma once

#include "report/results.h"

#include <QDir>
#include <QJsonObject>

namespace Torvix {

/**
 * Who wants to know what a test case's events say overrides the functions of those that it shows; they
 * are called in the order of the stream, and nothing is kept in between. An event of a new kind is a
 * function here and a row in the table of streamevents.cpp.
 */
class EventVisitor
{
public:
    virtual ~EventVisitor();
    virtual void result(const ResultEntry&) {}
    virtual void applicationEnded(const ApplicationReport&) {}
    virtual void objectTree(const QString&) {}
};

/**
 * Reads an event that belongs to a test case and hands it over, with the paths of attachments absolute:
 * relative ones count from the folder. False when it is no event that is known.
 */
bool visitEvent(const QJsonObject& event, const QDir& folder, EventVisitor& visitor);

/** The time of an event; invalid when it has none. */
QDateTime eventTime(const QJsonObject& event);

QStringList stringsFromJson(const QJsonValue& json);

} // namespace Torvix
