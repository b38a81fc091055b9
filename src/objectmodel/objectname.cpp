#include "objectmodel/objectname.h"

#include "objectmodel/nametext.h"
#include "objectmodel/objectmap.h"

#include <QRegularExpression>
#include <QStringList>

namespace Torvix {

namespace {

using Protocol::NameCondition;
using Protocol::NameConditions;

constexpr int maxNesting = 32;
const auto emptyNameHint =
    QLatin1String("(One entry that is undefined makes a name that a script gives as an object empty.)");

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

Result<ObjectName> ObjectName::fromString(const QString& text)
{
    NameText source(text);
    source.skipSpace();
    const ObjectName name = NameReader(&source).read(0);
    source.expectEnd();
    if (source.failed())
        return Failure{QStringLiteral("%1 in the name %2").arg(source.error(), text)};
    return name;
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
    explicit Resolver(const ObjectMap* map) : m_map(map) {}

    Result<NameConditions> resolve(const ObjectName& name, const QStringList& path) const
    {
        NameConditions conditions;
        const QMap<QString, PropertyValue>& properties = name.properties();
        for (auto it = properties.begin(); it != properties.end(); ++it) {
            const Result<NameCondition> condition = conditionOf(it.key(), it.value(), path);
            if (!condition)
                return condition.failure();
            conditions.append(*condition);
        }
        return conditions;
    }

private:
    Result<NameCondition> conditionOf(const QString& property, const PropertyValue& value,
                                      const QStringList& path) const
    {
        const bool isRelation = ObjectName::isRelation(property);
        if (value.type == PropertyValue::Name || (isRelation && ObjectName::isRealName(value.value)))
            return ObjectName::fromString(value.value).then([&](const ObjectName& inner) {
                return nested(property, inner, path);
            });
        if (isRelation)
            return symbolic(property, value.value, path);
        NameCondition condition;
        condition.property = property;
        condition.text = value.value;
        if (value.matchType == PropertyValue::Wildcard)
            condition.match = Protocol::Match::Wildcard;
        if (value.matchType != PropertyValue::RegularExpression)
            return condition;
        condition.match = Protocol::Match::RegularExpression;
        const QRegularExpression expression(value.value);
        if (!expression.isValid())
            return Failure{QStringLiteral("The regular expression '%1' is not valid: %2")
                               .arg(value.value, expression.errorString())};
        return condition;
    }

    Result<NameCondition> symbolic(const QString& property, const QString& name,
                                   const QStringList& path) const
    {
        if (path.contains(name))
            return Failure{QStringLiteral("The symbolic name '%1' contains itself").arg(name)};
        if (!m_map || !m_map->contains(name))
            return Failure{
                QStringLiteral("'%1' (%2) is not a symbolic name of the object map").arg(name, property)};
        return nested(property, m_map->objectName(name), path + QStringList(name));
    }

    Result<NameCondition> nested(const QString& property, const ObjectName& name,
                                 const QStringList& path) const
    {
        if (name.isEmpty())
            return Failure{QStringLiteral("The name of the %1 is empty: it would match every object. %2")
                               .arg(property, emptyNameHint)};
        return resolve(name, path).then([&property](const NameConditions& conditions) {
            NameCondition condition;
            condition.property = property;
            condition.isNested = true;
            condition.nested = conditions;
            return condition;
        });
    }

    const ObjectMap* m_map;
};

} // namespace

Result<Protocol::NameConditions> ObjectName::toConditions(const ObjectMap* map) const
{
    if (isEmpty())
        return Failure{QStringLiteral("An empty name would match every object. %1").arg(emptyNameHint)};
    return Resolver(map).resolve(*this, {});
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
