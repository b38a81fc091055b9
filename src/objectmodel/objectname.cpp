#include "objectmodel/objectname.h"

#include "objectmodel/nametext.h"
#include "objectmodel/objectmap.h"

#include <QRegularExpression>
#include <QStringList>

namespace Torvix {

namespace {

constexpr int maxNesting = 32;

class NameReader
{
public:
    explicit NameReader(NameText* text) : m_text(text) {}

    ObjectName read(int depth)
    {
        ObjectName name;
        if (depth > maxNesting)
            m_text->fail(QStringLiteral("names are nested too deeply"));
        m_text->expect(QLatin1Char('{'));
        for (;;) {
            m_text->skipSpace();
            if (m_text->failed() || m_text->take(QLatin1Char('}')))
                return name;
            readCondition(&name, depth);
            m_text->skipSpace();
            m_text->take(QLatin1Char(','));
        }
    }

private:
    void readCondition(ObjectName* name, int depth)
    {
        const QString property = m_text->key();
        if (!m_text->failed() && name->properties().contains(property))
            m_text->fail(QStringLiteral("'%1' is there twice").arg(property));
        m_text->skipSpace();
        PropertyValue value;
        if (m_text->take(QLatin1Char('~')))
            value.matchType = PropertyValue::RegularExpression;
        else if (m_text->take(QLatin1Char('*')))
            value.matchType = PropertyValue::Wildcard;
        m_text->expect(QLatin1Char('='));
        m_text->skipSpace();
        readValue(&value, depth);
        name->set(property, value);
    }

    void readValue(PropertyValue* value, int depth)
    {
        if (m_text->next() == QLatin1Char('{')) {
            if (value->matchType != PropertyValue::Exact)
                m_text->fail(QStringLiteral("another object's name goes with '=' only"));
            value->type = PropertyValue::Name;
            value->value = read(depth + 1).toString();
        } else if (m_text->isQuote()) {
            value->value = m_text->quoted();
        } else {
            value->value = m_text->word();
            static const QRegularExpression number(QStringLiteral("^-?[0-9]+(\\.[0-9]+)?$"));
            if (value->value == QLatin1String("true") || value->value == QLatin1String("false"))
                value->type = PropertyValue::Boolean;
            else if (number.match(value->value).hasMatch())
                value->type = PropertyValue::Number;
            else
                m_text->fail(value->value.isEmpty()
                                 ? QStringLiteral("a value is missing")
                                 : QStringLiteral("the value %1 needs quotes").arg(value->value));
        }
    }

    NameText* m_text;
};

QString conditionText(const QString& property, const PropertyValue& value)
{
    static const char* const operators[] = {"=", "~=", "*="};
    const int match =
        value.matchType == PropertyValue::RegularExpression || value.matchType == PropertyValue::Wildcard
            ? value.matchType
            : PropertyValue::Exact;
    const bool isBare = value.type != PropertyValue::String && match == PropertyValue::Exact;
    return NameText::writeKey(property) + QLatin1String(operators[match]) +
           (isBare ? value.value : NameText::quote(value.value));
}

} // namespace

ObjectName ObjectName::fromString(const QString& text, QString* error)
{
    NameText source(text);
    source.skipSpace();
    const ObjectName name = NameReader(&source).read(0);
    source.expectEnd();
    if (error)
        *error = source.failed() ? QStringLiteral("%1 in the name %2").arg(source.error(), text) : QString();
    return source.failed() ? ObjectName() : name;
}

bool ObjectName::isRealName(const QString& text)
{
    return text.trimmed().startsWith(QLatin1Char('{'));
}

bool ObjectName::isRelation(const QString& property)
{
    return property == QLatin1String("window") || property == QLatin1String("container") ||
           property == QLatin1String("buddy");
}

QString ObjectName::toString() const
{
    QStringList conditions;
    const QString first[] = {QStringLiteral("type"), QStringLiteral("name")};
    for (const QString& property : first)
        if (m_properties.contains(property))
            conditions.append(conditionText(property, m_properties[property]));
    for (auto it = m_properties.begin(); it != m_properties.end(); ++it)
        if (it.key() != first[0] && it.key() != first[1])
            conditions.append(conditionText(it.key(), it.value()));
    return QLatin1Char('{') + conditions.join(QLatin1Char(' ')) + QLatin1Char('}');
}

namespace {

/** Turns a name into conditions, following symbolic names; `path` holds those being followed. */
class Resolver
{
public:
    Resolver(const ObjectMap* map, QString* error) : m_map(map), m_error(error) {}

    bool resolve(const ObjectName& name, Protocol::NameConditions* conditions, const QStringList& path)
    {
        const QMap<QString, PropertyValue>& properties = name.properties();
        for (auto it = properties.begin(); it != properties.end(); ++it) {
            Protocol::NameCondition condition;
            condition.property = it.key();
            if (!fill(it.key(), it.value(), &condition, path))
                return false;
            conditions->append(condition);
        }
        return true;
    }

private:
    bool fill(const QString& property, const PropertyValue& value, Protocol::NameCondition* condition,
              const QStringList& path)
    {
        const bool isSymbolic = ObjectName::isRelation(property) && value.type != PropertyValue::Name &&
                                !ObjectName::isRealName(value.value);
        if (isSymbolic)
            return fillSymbolic(property, value, condition, path);
        if (value.type == PropertyValue::Name || ObjectName::isRelation(property)) {
            condition->isNested = true;
            const ObjectName inner = ObjectName::fromString(value.value, m_error);
            return m_error->isEmpty() && resolve(inner, &condition->nested, path);
        }
        condition->text = value.value;
        if (value.matchType == PropertyValue::Wildcard)
            condition->match = Protocol::Match::Wildcard;
        if (value.matchType == PropertyValue::RegularExpression)
            return fillExpression(value, condition);
        return true;
    }

    bool fillSymbolic(const QString& property, const PropertyValue& value, Protocol::NameCondition* condition,
                      const QStringList& path)
    {
        if (path.contains(value.value)) {
            *m_error = QStringLiteral("The symbolic name '%1' contains itself").arg(value.value);
            return false;
        }
        if (!m_map || !m_map->contains(value.value)) {
            *m_error = QStringLiteral("'%1' (%2) is not a symbolic name of the object map")
                           .arg(value.value, property);
            return false;
        }
        condition->isNested = true;
        return resolve(m_map->objectName(value.value), &condition->nested, path + QStringList(value.value));
    }

    bool fillExpression(const PropertyValue& value, Protocol::NameCondition* condition)
    {
        condition->match = Protocol::Match::RegularExpression;
        const QRegularExpression expression(value.value);
        if (!expression.isValid())
            *m_error = QStringLiteral("The regular expression '%1' is not valid: %2")
                           .arg(value.value, expression.errorString());
        return expression.isValid();
    }

    const ObjectMap* m_map;
    QString* m_error;
};

} // namespace

bool ObjectName::toConditions(const ObjectMap* map, Protocol::NameConditions* conditions,
                              QString* error) const
{
    QString problem;
    conditions->clear();
    const bool resolved = Resolver(map, &problem).resolve(*this, conditions, {});
    if (error)
        *error = problem;
    return resolved;
}

ObjectName ObjectName::fromConditions(const Protocol::NameConditions& conditions)
{
    ObjectName name;
    for (const Protocol::NameCondition& condition : conditions) {
        if (condition.isNested) {
            name.set(condition.property, {fromConditions(condition.nested).toString(), PropertyValue::Exact,
                                          PropertyValue::Name});
            continue;
        }
        const bool isBoolean =
            condition.text == QLatin1String("true") || condition.text == QLatin1String("false");
        PropertyValue::Type type = isBoolean ? PropertyValue::Boolean : PropertyValue::String;
        if (condition.property == QLatin1String("occurrence"))
            type = PropertyValue::Number;
        name.set(condition.property, {condition.text, int(condition.match), type});
    }
    return name;
}

} // namespace Torvix
