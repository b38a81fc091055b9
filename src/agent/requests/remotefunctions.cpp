#include "agent/requests/remotefunctions.h"

#include "agent/reflection/error.h"
#include "agent/reflection/registry.h"
#include "agent/requests/datafiles.h"

#include <QHash>

namespace Torvix::Agent {

using namespace Protocol;

namespace {

using Arguments = QVector<Protocol::Value>;
using Kind = Protocol::Value::Kind;

Protocol::Value addToObjectMap(const Arguments&)
{
    return {}; // the map is the runner's; the agent names objects by their real names
}

Protocol::Value classNames(const Arguments&)
{
    QVector<Protocol::Value> names;
    for (const QByteArray& name : Registry::instance().names())
        names.append(Protocol::Value::ofString(QString::fromLatin1(name)));
    return Protocol::Value::ofArray(names);
}

Protocol::Value testDataExists(const Arguments& given)
{
    return Protocol::Value::ofBool(DataFiles::exists(given[0].text));
}

Protocol::Value testDataRemove(const Arguments& given)
{
    DataFiles::remove(given[0].text);
    return {};
}

Protocol::Value testDataRead(const Arguments& given)
{
    const QByteArray piece = DataFiles::read(given[0].text, given[1].integer);
    return Protocol::Value::ofString(QString::fromLatin1(piece.toBase64()));
}

Protocol::Value testDataWrite(const Arguments& given)
{
    const auto bytes =
        QByteArray::fromBase64Encoding(given[2].text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!bytes)
        throw Error(QStringLiteral("testDataWrite: the bytes are not in base64"), ErrorClass::BadValue);
    return Protocol::Value::ofString(
        DataFiles::write(given[0].text, given[1].integer, bytes.decoded, given[3].integer != 0));
}

struct Row
{
    Protocol::Value (*function)(const Arguments&);
    QVector<Kind> parameters; // any integer stands for Int64
};

const QHash<QString, Row>& table()
{
    static const QHash<QString, Row> rows = {
        {"addToObjectMap", {addToObjectMap, {Kind::String, Kind::String}}},
        {"classNames", {classNames, {}}},
        {"testDataExists", {testDataExists, {Kind::String}}},
        {"testDataRemove", {testDataRemove, {Kind::String}}},
        {"testDataRead", {testDataRead, {Kind::String, Kind::Int64}}},
        {"testDataWrite", {testDataWrite, {Kind::String, Kind::Int64, Kind::String, Kind::Bool}}},
    };
    return rows;
}

bool fit(const Arguments& given, const QVector<Kind>& parameters)
{
    if (given.size() != parameters.size())
        return false;
    for (int i = 0; i < given.size(); ++i) {
        if (parameters[i] == Kind::Int64 ? !given[i].isInteger() : given[i].kind != parameters[i])
            return false;
    }
    return true;
}

} // namespace

Protocol::Value callRemoteFunction(const QString& function, const QVector<Protocol::Value>& arguments)
{
    const auto row = table().constFind(function);
    if (row == table().constEnd())
        throw Error(QStringLiteral("unknown function '%1'").arg(function));
    if (!fit(arguments, row->parameters))
        throw Error(QStringLiteral("the arguments do not fit the function '%1'").arg(function),
                    ErrorClass::BadValue);
    return row->function(arguments);
}

} // namespace Torvix::Agent
