// Comparing an object with what a verification point expects.

#include "objectmodel/inspector.h"
#include "objectmodel/method.h"
#include "objectmodel/property.h"
#include "testsupport/screen/screenshots.h"
#include "testsupport/verification/verificationpoint.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace Torvix {

namespace {

constexpr int maxShownDifferences = 20;

/** A value as it would stand in the file. */
QJsonValue jsonOf(const SharedPtr<Object>& value)
{
    if (value->isNull())
        return QJsonValue::Null;
    switch (value->objectClass()->id()) {
    case Protocol::BoolClass:
        return value->toBool();
    case Protocol::UIntClass:
    case Protocol::IntClass:
    case Protocol::ShortClass:
    case Protocol::DoubleClass:
    case Protocol::Int64Class:
        return value->toDouble();
    default:
        return value->toString();
    }
}

QString textOf(const QJsonValue& value)
{
    const QByteArray json = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(json.mid(1, json.size() - 2));
}

bool matches(const ExpectedProperty& expected, const QJsonValue& seen, const QString& text)
{
    switch (expected.match) {
    case ExpectedProperty::Match::Wildcard: {
        const QString pattern = QRegularExpression::wildcardToRegularExpression(expected.value.toString());
        // Across slashes too: these are texts, not paths.
        const QString everything = QString(pattern).replace(QLatin1String("[^/]"), QLatin1String("."));
        return QRegularExpression(everything, QRegularExpression::DotMatchesEverythingOption)
            .match(text)
            .hasMatch();
    }
    case ExpectedProperty::Match::RegularExpression:
        return QRegularExpression(QRegularExpression::anchoredPattern(expected.value.toString()))
            .match(text)
            .hasMatch();
    default:
        return seen == expected.value;
    }
}

QString wanted(const ExpectedProperty& expected)
{
    switch (expected.match) {
    case ExpectedProperty::Match::Wildcard:
        return QLatin1String("wildcard ") + textOf(expected.value);
    case ExpectedProperty::Match::RegularExpression:
        return QLatin1String("regex ") + textOf(expected.value);
    default:
        return textOf(expected.value);
    }
}

Result<SharedPtr<Object>> readProperty(const SharedPtr<Object>& object, const QString& name)
{
    if (const Property* property = object->objectClass()->property(name))
        return property->get(object);
    return Failure{QStringLiteral("%1 has no property '%2'").arg(object->className(), name)};
}

void verifyProperties(const VerificationCheck& check, const SharedPtr<Object>& object,
                      VerificationFinding* finding, QJsonObject* seenCheck)
{
    const QJsonObject given = check.json[QLatin1String("properties")].toObject();
    QJsonObject all;
    for (const ExpectedProperty& expected : check.properties) {
        const Result<SharedPtr<Object>> value = readProperty(object, expected.name);
        if (!value) {
            finding->differences += QStringLiteral("%1: %2").arg(expected.name, value.error());
            continue;
        }
        const QJsonValue seen = jsonOf(*value);
        const bool holds = matches(expected, seen, value->toString());
        all[expected.name] = holds ? given[expected.name] : seen;
        if (!holds)
            finding->differences += QStringLiteral("%1: expected %2, found %3")
                                        .arg(expected.name, wanted(expected), textOf(seen));
    }
    if (!check.properties.isEmpty())
        (*seenCheck)[QLatin1String("properties")] = all;
}

/** Calls the overload with as many arguments, which every view or model of a table has. */
Result<SharedPtr<Object>> callMethod(const SharedPtr<Object>& object, const char* name,
                                     const ObjectList& arguments)
{
    for (const Method* method : object->objectClass()->methods(QLatin1String(name)))
        if (method->signature().arguments().size() == arguments.size())
            return method->invoke(object, arguments);
    return Failure{QStringLiteral("%1 is no table: it has no rows and columns").arg(object->className())};
}

Result<QString> readCell(const SharedPtr<Object>& model, int row, int column)
{
    const Inspector* inspector = Inspector::self();
    return callMethod(model, "index", {inspector->createInteger(row), inspector->createInteger(column)})
        .then([&model](const SharedPtr<Object>& index) { return callMethod(model, "data", {index}); })
        .then([](const SharedPtr<Object>& data) { return data->isNull() ? QString() : data->toString(); });
}

/** The texts of the rows of a model, or of the model that a view shows. */
Result<QJsonArray> readTable(const SharedPtr<Object>& object)
{
    const Result<SharedPtr<Object>> shown = callMethod(object, "model", {});
    const SharedPtr<Object> model = shown ? *shown : object;
    const Result<SharedPtr<Object>> rowCount = callMethod(model, "rowCount", {});
    if (!rowCount)
        return rowCount.failure();
    const Result<SharedPtr<Object>> columnCount = callMethod(model, "columnCount", {});
    if (!columnCount)
        return columnCount.failure();
    QJsonArray rows;
    for (int row = 0; row < rowCount->toInt(); ++row) {
        QJsonArray cells;
        for (int column = 0; column < columnCount->toInt(); ++column) {
            const Result<QString> cell = readCell(model, row, column);
            if (!cell)
                return cell.failure();
            cells.append(*cell);
        }
        rows.append(cells);
    }
    return rows;
}

/** Cells that hold, or are not looked at, stay as they were given in the row that was seen. */
void compareRow(int row, const QVector<QJsonValue>& expected, QJsonArray* seen, QStringList* differences)
{
    if (expected.size() != seen->size())
        *differences += QStringLiteral("row %1: expected %2 columns, found %3")
                            .arg(row + 1)
                            .arg(expected.size())
                            .arg(seen->size());
    for (int column = 0; column < qMin(expected.size(), seen->size()); ++column) {
        const QJsonValue& cell = expected[column];
        const QString text = cell.isString() ? cell.toString() : textOf(cell);
        const QJsonValue found = seen->at(column);
        if (cell.isNull() || text == found.toString())
            (*seen)[column] = cell;
        else
            *differences += QStringLiteral("row %1, column %2: expected %3, found %4")
                                .arg(row + 1)
                                .arg(column + 1)
                                .arg(textOf(cell), textOf(found));
    }
}

void verifyTable(const ExpectedTable& table, const SharedPtr<Object>& object, VerificationFinding* finding,
                 QJsonObject* seenCheck)
{
    const Result<QJsonArray> read = readTable(object);
    finding->error = read.error();
    if (!read)
        return;
    QJsonArray rows = *read;
    if (table.rows.size() != rows.size())
        finding->differences +=
            QStringLiteral("table: expected %1 rows, found %2").arg(table.rows.size()).arg(rows.size());
    for (int row = 0; row < qMin(table.rows.size(), rows.size()); ++row) {
        QJsonArray seen = rows[row].toArray();
        compareRow(row, table.rows[row], &seen, &finding->differences);
        rows[row] = seen;
    }
    (*seenCheck)[QLatin1String("table")] = rows;
}

QString sizeText(const QImage& image)
{
    return QStringLiteral("%1x%2").arg(image.width()).arg(image.height());
}

void verifyScreenshot(const ExpectedScreenshot& expected, const SharedPtr<Object>& object,
                      VerificationFinding* finding)
{
    const QImage wantedImage = loadImage(expected.file, &finding->error);
    const QImage seen = wantedImage.isNull() ? QImage() : grabObject(object, &finding->error);
    if (seen.isNull())
        return;
    const ImageDifference difference = compareImages(wantedImage, seen, expected.tolerance, expected.masks);
    if (difference.isWithin(expected.tolerance))
        return;
    const QRect area = difference.area;
    finding->differences +=
        difference.sizesDiffer
            ? QStringLiteral("screenshot: expected a size of %1, found %2")
                  .arg(sizeText(wantedImage), sizeText(seen))
            : QStringLiteral(
                  "screenshot: %1 pixels differ, %2 may; they lie in x %3, y %4, width %5, height %6")
                  .arg(difference.pixels)
                  .arg(expected.tolerance.differingPixels)
                  .arg(area.x())
                  .arg(area.y())
                  .arg(area.width())
                  .arg(area.height());
    finding->expectedImage = wantedImage;
    finding->seenImage = seen;
    finding->difference = difference.picture;
}

} // namespace

VerificationFinding verifyObject(const VerificationCheck& check, const SharedPtr<Object>& object)
{
    VerificationFinding finding;
    QJsonObject seen;
    if (!check.object.isEmpty())
        seen[QLatin1String("object")] = check.object;
    verifyProperties(check, object, &finding, &seen);
    if (check.table)
        verifyTable(*check.table, object, &finding, &seen);
    if (check.screenshot && finding.error.isEmpty())
        verifyScreenshot(*check.screenshot, object, &finding);
    if (check.screenshot)
        seen[QLatin1String("screenshot")] = check.json[QLatin1String("screenshot")];
    finding.seen = seen;
    if (finding.differences.size() > maxShownDifferences) {
        const int more = finding.differences.size() - maxShownDifferences;
        finding.differences = finding.differences.mid(0, maxShownDifferences);
        finding.differences += QStringLiteral("... and %1 more").arg(more);
    }
    return finding;
}

} // namespace Torvix
