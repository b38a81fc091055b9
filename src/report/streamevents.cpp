#include "report/streamevents.h"

#include <QJsonArray>

#include <algorithm>
#include <iterator>

namespace Torvix {

namespace {

QVector<Attachment> attachmentsFromJson(const QJsonArray& json, const QDir& folder)
{
    QVector<Attachment> attachments;
    for (const QJsonValue& each : json)
        attachments += {folder.absoluteFilePath(each["path"].toString()), each["mimeType"].toString(),
                        each["description"].toString()};
    return attachments;
}

bool readResult(const QJsonObject& json, const QDir& folder, EventVisitor& visitor)
{
    ResultEntry entry;
    if (!resultTypeFromName(json["type"].toString(), &entry.type))
        return false;
    entry.time = eventTime(json);
    entry.message = json["message"].toString();
    entry.detail = json["detail"].toString();
    entry.difference = json["difference"].toString();
    entry.file = json["file"].toString();
    entry.line = json["line"].toInt();
    entry.sections = stringsFromJson(json["sections"]);
    entry.source.firstLine = json["source"]["firstLine"].toInt();
    entry.source.lines = stringsFromJson(json["source"]["lines"]);
    entry.attachments = attachmentsFromJson(json["attachments"].toArray(), folder);
    visitor.result(entry);
    return true;
}

bool readApplicationEnded(const QJsonObject& json, const QDir&, EventVisitor& visitor)
{
    visitor.applicationEnded({json["name"].toString(), qint64(json["pid"].toDouble()),
                              json["ending"].toString(), json["output"].toString()});
    return true;
}

bool readObjectTree(const QJsonObject& json, const QDir&, EventVisitor& visitor)
{
    visitor.objectTree(json["text"].toString());
    return true;
}

struct CaseEvent
{
    const char* name;
    /** False when it cannot be read. */
    bool (*read)(const QJsonObject& json, const QDir& folder, EventVisitor& visitor);
};

constexpr CaseEvent caseEvents[] = {
    {"result", readResult},
    {"application-ended", readApplicationEnded},
    {"object-tree", readObjectTree},
};

} // namespace

EventVisitor::~EventVisitor() = default;

bool visitEvent(const QJsonObject& event, const QDir& folder, EventVisitor& visitor)
{
    const QString name = event["event"].toString();
    const auto row =
        std::find_if(std::begin(caseEvents), std::end(caseEvents),
                     [&name](const CaseEvent& each) { return name == QLatin1String(each.name); });
    return row != std::end(caseEvents) && row->read(event, folder, visitor);
}

QDateTime eventTime(const QJsonObject& event)
{
    return QDateTime::fromString(event["time"].toString(), Qt::ISODateWithMs);
}

QStringList stringsFromJson(const QJsonValue& json)
{
    QStringList list;
    const QJsonArray array = json.toArray();
    for (const QJsonValue& value : array)
        list += value.toString();
    return list;
}

} // namespace Torvix
