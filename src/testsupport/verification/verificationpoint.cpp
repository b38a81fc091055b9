// Reading of the file; verificationchecks.cpp compares.

#include "testsupport/verification/verificationpoint.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace Torvix {

namespace {

/** Reads parts of the file; the first thing that is wrong stays as the error. */
class Reader
{
public:
    explicit Reader(const QString& path) : m_path(path) {}

    QString error() const { return m_error; }

    QVector<VerificationCheck> checks(const QJsonObject& file)
    {
        QVector<VerificationCheck> all;
        allow(file, QStringLiteral("the file"), {QStringLiteral("checks")});
        const QJsonArray list = file[QLatin1String("checks")].toArray();
        if (list.isEmpty())
            fail(QStringLiteral("'checks' has to be a list with at least one entry"));
        for (int i = 0; i < list.size() && m_error.isEmpty(); ++i) {
            m_where = QStringLiteral("check %1: ").arg(i + 1);
            all.append(check(list[i].toObject()));
        }
        return all;
    }

private:
    void fail(const QString& text)
    {
        if (m_error.isEmpty())
            m_error = QStringLiteral("Verification point '%1': %2%3").arg(m_path, m_where, text);
    }

    void allow(const QJsonObject& object, const QString& what, const QStringList& known)
    {
        for (const QString& key : object.keys())
            if (!known.contains(key))
                fail(QStringLiteral("%1 has no '%2', only %3")
                         .arg(what, key, known.join(QLatin1String(", "))));
    }

    int number(const QJsonObject& object, const char* name, int most)
    {
        const QJsonValue value = object[QLatin1String(name)];
        if (value.isUndefined())
            return 0;
        if (!value.isDouble() || value.toDouble() < 0 || value.toDouble() > most ||
            value.toDouble() != value.toInt())
            fail(QStringLiteral("'%1' has to be a whole number from 0 to %2")
                     .arg(QLatin1String(name))
                     .arg(most));
        return value.toInt();
    }

    VerificationCheck check(const QJsonObject& from)
    {
        VerificationCheck check;
        check.json = from;
        allow(from, QStringLiteral("a check"),
              {QStringLiteral("object"), QStringLiteral("properties"), QStringLiteral("table"),
               QStringLiteral("screenshot")});
        check.object = from[QLatin1String("object")].toString();
        const QJsonObject properties = from[QLatin1String("properties")].toObject();
        for (auto it = properties.begin(); it != properties.end(); ++it)
            check.properties.append(property(it.key(), it.value()));
        if (from.contains(QLatin1String("table")))
            check.table = table(from[QLatin1String("table")]);
        if (from.contains(QLatin1String("screenshot")))
            check.screenshot = screenshot(from[QLatin1String("screenshot")].toObject());
        if (check.properties.isEmpty() && !check.table && !check.screenshot)
            fail(QStringLiteral("there is nothing to check; give 'properties', 'table' or 'screenshot'"));
        return check;
    }

    ExpectedProperty property(const QString& name, const QJsonValue& value)
    {
        if (!value.isObject())
            return {name, ExpectedProperty::Match::Exact, value};
        const QJsonObject pattern = value.toObject();
        allow(pattern, QStringLiteral("property '%1'").arg(name),
              {QStringLiteral("wildcard"), QStringLiteral("regex")});
        const QJsonValue wildcard = pattern[QLatin1String("wildcard")];
        if (wildcard.isString())
            return {name, ExpectedProperty::Match::Wildcard, wildcard};
        const QJsonValue regex = pattern[QLatin1String("regex")];
        const QRegularExpression expression(regex.toString());
        if (!regex.isString())
            fail(QStringLiteral("property '%1' needs a text for 'wildcard' or 'regex'").arg(name));
        else if (!expression.isValid())
            fail(QStringLiteral("property '%1': '%2' is no regular expression: %3")
                     .arg(name, regex.toString(), expression.errorString()));
        return {name, ExpectedProperty::Match::RegularExpression, regex};
    }

    ExpectedTable table(const QJsonValue& from)
    {
        ExpectedTable table;
        if (!from.isArray())
            fail(QStringLiteral("'table' has to be a list of rows"));
        const QJsonArray rows = from.toArray();
        for (const QJsonValue& row : rows) {
            if (!row.isArray())
                fail(QStringLiteral("each row of 'table' has to be a list of cells"));
            QVector<QJsonValue> cells;
            const QJsonArray given = row.toArray();
            for (const QJsonValue& cell : given)
                cells.append(cell);
            table.rows.append(cells);
        }
        return table;
    }

    ExpectedScreenshot screenshot(const QJsonObject& from)
    {
        ExpectedScreenshot screenshot;
        allow(from, QStringLiteral("'screenshot'"),
              {QStringLiteral("file"), QStringLiteral("tolerance"), QStringLiteral("differingPixels"),
               QStringLiteral("masks")});
        const QString file = from[QLatin1String("file")].toString();
        if (file.isEmpty())
            fail(QStringLiteral("'screenshot' needs a 'file'"));
        screenshot.file = QFileInfo(m_path).absoluteDir().absoluteFilePath(file);
        screenshot.tolerance.perChannel = number(from, "tolerance", 255);
        screenshot.tolerance.differingPixels = number(from, "differingPixels", 1'000'000'000);
        const QJsonArray masks = from[QLatin1String("masks")].toArray();
        for (const QJsonValue& mask : masks) {
            const QJsonArray sides = mask.toArray();
            if (sides.size() != 4)
                fail(QStringLiteral("each of 'masks' has to be [x, y, width, height]"));
            screenshot.masks.append(
                QRect(sides[0].toInt(), sides[1].toInt(), sides[2].toInt(), sides[3].toInt()));
        }
        return screenshot;
    }

    QString m_path;
    QString m_where;
    QString m_error;
};

} // namespace

std::optional<VerificationPoint> VerificationPoint::read(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("Cannot read verification point '%1': %2").arg(path, file.errorString());
        return {};
    }
    return parse(file.readAll(), path, error);
}

std::optional<VerificationPoint> VerificationPoint::parse(const QByteArray& content, const QString& path,
                                                          QString* error)
{
    QJsonParseError parsing;
    const QJsonDocument document = QJsonDocument::fromJson(content, &parsing);
    if (!document.isObject()) {
        const int line = 1 + content.left(parsing.offset).count('\n');
        *error = QStringLiteral("Verification point '%1', line %2: %3")
                     .arg(path)
                     .arg(line)
                     .arg(parsing.error == QJsonParseError::NoError
                              ? QStringLiteral("an object in braces is wanted")
                              : parsing.errorString());
        return {};
    }
    Reader reader(path);
    VerificationPoint point;
    point.checks = reader.checks(document.object());
    *error = reader.error();
    if (!error->isEmpty())
        return {};
    return point;
}

} // namespace Torvix
