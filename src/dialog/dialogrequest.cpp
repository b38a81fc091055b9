#include "dialog/dialogrequest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <iterator>

namespace {

struct KindName
{
    const char* name;
    DialogRequest::Kind kind;
};

constexpr KindName kindNames[] = {
    {"information", DialogRequest::Kind::Information},
    {"warning", DialogRequest::Kind::Warning},
    {"question", DialogRequest::Kind::Question},
    {"input", DialogRequest::Kind::Input},
    {"password", DialogRequest::Kind::Password},
    {"choice", DialogRequest::Kind::Choice},
    {"image", DialogRequest::Kind::Image},
    {"notification", DialogRequest::Kind::Notification},
};

QStringList texts(const QJsonValue& list)
{
    QStringList all;
    const QJsonArray given = list.toArray();
    for (const QJsonValue& each : given)
        all += each.toString();
    return all;
}

} // namespace

std::optional<DialogRequest> DialogRequest::read(const QByteArray& json, QString* error)
{
    QJsonParseError parsing;
    const QJsonObject from = QJsonDocument::fromJson(json, &parsing).object();
    if (parsing.error != QJsonParseError::NoError) {
        *error = QStringLiteral("The request is no JSON: %1").arg(parsing.errorString());
        return {};
    }
    const QString name = from[QLatin1String("kind")].toString();
    const auto row = std::find_if(std::begin(kindNames), std::end(kindNames),
                                  [&name](const KindName& each) { return name == QLatin1String(each.name); });
    if (row == std::end(kindNames)) {
        *error = QStringLiteral("There is no kind of dialog '%1'").arg(name);
        return {};
    }
    DialogRequest request;
    request.kind = row->kind;
    request.text = from[QLatin1String("text")].toString();
    request.buttons = texts(from[QLatin1String("buttons")]);
    request.value = from[QLatin1String("value")].toString();
    request.choices = texts(from[QLatin1String("choices")]);
    request.file = from[QLatin1String("file")].toString();
    return request;
}
