#include "runner/objecttree.h"

#include "objectmodel/inspector.h"

#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <vector>

namespace Torvix {

namespace {

constexpr int maxReported = 2000;   ///< in the report of a failure
constexpr int maxInspected = 50000; ///< for a person who asks
constexpr int maxDepth = 100;
constexpr int maxTextLength = 60;

QString propertyText(const SharedPtr<Object>& object, const char* name)
{
    const Property* property = object->objectClass()->property(QLatin1String(name));
    if (!property || !property->isReadable())
        return QString();
    const Result<SharedPtr<Object>> value = property->get(object);
    return value ? value->toString() : QString();
}

/** Walks the tree of the current application and hands each object to `visit`. */
template <class Visit>
void walk(const ObjectList& objects, int depth, int* left, Visit visit)
{
    for (const SharedPtr<Object>& object : objects) {
        if (--*left < 0 || depth > maxDepth)
            return;
        visit(object, depth);
        walk(Inspector::self()->children(object).orNothing(), depth + 1, left, visit);
    }
}

/** On one line, and not longer than it takes to know it again. */
QString brief(QString text)
{
    text.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return text.size() > maxTextLength ? text.left(maxTextLength - 3) + QLatin1String("...") : text;
}

/** The text or the title by which a person knows the object. */
QString shownText(const SharedPtr<Object>& object)
{
    for (const char* property : {"text", "windowTitle", "title"}) {
        const QString text = propertyText(object, property);
        if (!text.isEmpty())
            return text;
    }
    return {};
}

QString lineOf(const SharedPtr<Object>& object)
{
    QString line = object->className();
    const QString name = propertyText(object, "objectName");
    if (!name.isEmpty())
        line += QStringLiteral(" '%1'").arg(name);
    const QString text = shownText(object);
    if (!text.isEmpty())
        line += QStringLiteral(" \"%1\"").arg(brief(text));
    if (propertyText(object, "visible") == QLatin1String("false"))
        line += QLatin1String(" hidden");
    if (propertyText(object, "enabled") == QLatin1String("false"))
        line += QLatin1String(" disabled");
    return line;
}

/** A filter, ready to be asked. */
class Matcher
{
public:
    explicit Matcher(const ObjectFilter& filter)
        : m_filter(filter)
        , m_type(pattern(filter.type))
        , m_name(pattern(filter.name))
    {
    }

    bool fits(const SharedPtr<Object>& object) const
    {
        if (!m_filter.type.isEmpty() && !m_type.match(object->className()).hasMatch())
            return false;
        if (m_filter.visibleOnly && propertyText(object, "visible") != QLatin1String("true"))
            return false;
        return m_filter.name.isEmpty() || m_name.match(propertyText(object, "objectName")).hasMatch() ||
               m_name.match(shownText(object)).hasMatch();
    }

private:
    static QRegularExpression pattern(const QString& wildcard)
    {
        QString expression = QRegularExpression::escape(wildcard);
        expression.replace(QLatin1String("\\*"), QLatin1String(".*"));
        expression.replace(QLatin1String("\\?"), QLatin1String("."));
        return QRegularExpression(QRegularExpression::anchoredPattern(expression),
                                  QRegularExpression::DotMatchesEverythingOption);
    }

    const ObjectFilter& m_filter;
    QRegularExpression m_type;
    QRegularExpression m_name;
};

/** Name and value of each readable property, by name. */
std::vector<std::pair<QString, QString>> propertiesOf(const SharedPtr<Object>& object)
{
    std::vector<std::pair<QString, QString>> properties;
    const Class* cls = object->objectClass();
    for (int i = 0; i < cls->numProperties(); ++i) {
        const Property* property = cls->property(i);
        if (!property->isReadable())
            continue;
        if (const Result<SharedPtr<Object>> value = property->get(object))
            properties.emplace_back(property->name(), value->toString());
    }
    std::sort(properties.begin(), properties.end());
    return properties;
}

QJsonObject jsonOf(const SharedPtr<Object>& object)
{
    QJsonObject properties;
    for (const auto& [name, value] : propertiesOf(object))
        properties.insert(name, value);
    return {{"class", object->className()},
            {"name", propertyText(object, "objectName")},
            {"realName", object->realName().orNothing()},
            {"properties", properties}};
}

QJsonArray treeJson(const ObjectList& objects, int depth, int* left)
{
    QJsonArray list;
    for (const SharedPtr<Object>& object : objects) {
        if (--*left < 0 || depth > maxDepth)
            break;
        QJsonObject json = jsonOf(object);
        json.insert(QStringLiteral("children"),
                    treeJson(Inspector::self()->children(object).orNothing(), depth + 1, left));
        list.append(json);
    }
    return list;
}

/** A line of the tree with what stands under it. */
struct Row
{
    QString line;
    QString realName;
    QStringList properties;
};

Row rowOf(const SharedPtr<Object>& object, int depth, bool withProperties)
{
    const QString indent(depth * 2, QLatin1Char(' '));
    Row row{indent + lineOf(object), object->realName().orNothing(), {}};
    if (!withProperties)
        return row;
    for (const auto& [name, value] : propertiesOf(object))
        row.properties += indent + QStringLiteral("    %1 = %2").arg(name, -24).arg(brief(value));
    return row;
}

/** The real names stand in one column, as far as the lines allow it. */
QString textOf(const std::vector<Row>& rows)
{
    constexpr int widest = 44;
    int width = 0;
    for (const Row& row : rows)
        width = std::max(width, std::min(row.line.size(), widest));
    QString text;
    for (const Row& row : rows) {
        text += row.line.leftJustified(width) + QLatin1String("  ") + row.realName + QLatin1Char('\n');
        for (const QString& property : row.properties)
            text += property + QLatin1Char('\n');
    }
    return text;
}

} // namespace

QString objectTreeText()
{
    QString text;
    int left = maxReported;
    walk(Inspector::self()->topLevelObjects().orNothing(), 0, &left,
         [&text](const SharedPtr<Object>& object, int depth) {
             text += QString(depth * 2, QLatin1Char(' ')) + lineOf(object) + QLatin1Char('\n');
         });
    if (left < 0)
        text += QStringLiteral("[more than %1 objects: the rest is left out]\n").arg(maxReported);
    return text;
}

Inspection<QString> inspectAsText(const ObjectFilter& filter, bool withProperties)
{
    const Matcher matcher(filter);
    std::vector<Row> rows;
    int left = maxInspected;
    walk(Inspector::self()->topLevelObjects().orNothing(), 0, &left,
         [&](const SharedPtr<Object>& object, int depth) {
             if (matcher.fits(object))
                 rows.push_back(rowOf(object, filter.isEmpty() ? depth : 0, withProperties));
         });
    return {textOf(rows), int(rows.size()), left < 0};
}

Inspection<QJsonArray> inspectAsJson(const ObjectFilter& filter)
{
    int left = maxInspected;
    QJsonArray list;
    if (filter.isEmpty()) {
        list = treeJson(Inspector::self()->topLevelObjects().orNothing(), 0, &left);
    } else {
        const Matcher matcher(filter);
        walk(Inspector::self()->topLevelObjects().orNothing(), 0, &left,
             [&](const SharedPtr<Object>& object, int) {
                 if (matcher.fits(object))
                     list.append(jsonOf(object));
             });
    }
    return {list, list.size(), left < 0};
}

} // namespace Torvix
