#include "agent/lookup/namematcher.h"

#include "agent/lookup/objecttree.h"
#include "agent/reflection/error.h"
#include "agent/reflection/value.h"
#include "shared/text/nearestname.h"

#include <QMetaEnum>
#include <QMetaProperty>

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace Torvix::Agent {

namespace {

enum class Subject { Type, Name, Visible, Window, Container, Buddy, Property };

Subject subjectOf(const Protocol::NameCondition& condition)
{
    if (condition.property == QLatin1String("type"))
        return Subject::Type;
    if (condition.property == QLatin1String("name") || condition.property == QLatin1String("objectName"))
        return Subject::Name;
    if (condition.property == QLatin1String("visible"))
        return Subject::Visible;
    if (condition.property == QLatin1String("window"))
        return Subject::Window;
    if (condition.property == QLatin1String("container"))
        return Subject::Container;
    if (condition.property == QLatin1String("buddy"))
        return Subject::Buddy;
    return Subject::Property;
}

/** Without what the eye does not see of a caption. */
QString bareText(const QString& text)
{
    QString bare = text.toCaseFolded();
    bare.remove(QLatin1Char('&'));
    bare.remove(QStringLiteral("..."));
    return bare.simplified();
}

bool shareWord(const QString& one, const QString& other)
{
    const QStringList words = bareText(other).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const QStringList own = bareText(one).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return std::any_of(own.begin(), own.end(),
                       [&words](const QString& word) { return words.contains(word); });
}

/** True for texts that one who writes a name may take for each other: case, marks, a typing error. */
bool isSimilarText(const QString& one, const QString& other)
{
    constexpr int longest = 100;
    const QString a = bareText(one.left(longest));
    const QString b = bareText(other.left(longest));
    const int allowed = qMin(2, qMin(a.size(), b.size()) / 3);
    if (a.isEmpty() || b.isEmpty() || std::abs(a.size() - b.size()) > allowed)
        return false;
    return editDistance(a, b) <= allowed;
}

QRegularExpression patternOf(const Protocol::NameCondition& condition)
{
    if (condition.match == Protocol::Match::Exact)
        return {};
    const QString source = condition.match == Protocol::Match::Wildcard
                               ? QRegularExpression::wildcardToRegularExpression(condition.text)
                               : QRegularExpression::anchoredPattern(condition.text);
    QRegularExpression pattern(source, QRegularExpression::UseUnicodePropertiesOption |
                                           QRegularExpression::DotMatchesEverythingOption);
    if (!pattern.isValid())
        throw Error(QStringLiteral("the pattern '%1' for '%2' is wrong at character %3: %4")
                        .arg(condition.text, condition.property)
                        .arg(pattern.patternErrorOffset())
                        .arg(pattern.errorString()));
    return pattern;
}

QString plainText(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::QString:
    case QMetaType::Bool:
        return value.toString();
    case QMetaType::Double:
    case QMetaType::Float:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    default:
        return Value::ofVariant(value).toText();
    }
}

} // namespace

struct NameMatcher::Condition
{
    Subject subject = Subject::Property;
    Protocol::NameCondition source;
    QByteArray property;
    QByteArray latinText;
    QRegularExpression pattern;
    std::unique_ptr<NameMatcher> nested;
    bool wantsVisible = true;
    /** The text as a number or a truth value, where it is the plain form of one. */
    std::optional<int> number;
    std::optional<bool> truth;
    /** What the class of an object decides: whether `type` holds, and where the property is. */
    QHash<const QMetaObject*, int> byClass;
    const QMetaObject* lastClass = nullptr;
    int lastFact = -1;
    /** What is known about windows, ancestors and buddies. */
    QHash<QObject*, bool> known;
    QSet<QObject*> buddies;
    bool haveBuddies = false;

    bool textHolds(const QString& text) const
    {
        return source.match == Protocol::Match::Exact ? text == source.text : pattern.match(text).hasMatch();
    }

    template <class Find>
    int fact(const QMetaObject* meta, Find find)
    {
        if (meta == lastClass)
            return lastFact;
        auto at = byClass.find(meta);
        if (at == byClass.end())
            at = byClass.insert(meta, find());
        lastClass = meta;
        lastFact = *at;
        return lastFact;
    }
};

NameMatcher::NameMatcher(const Protocol::NameConditions& conditions)
{
    for (const Protocol::NameCondition& source : conditions) {
        if (source.property == QLatin1String("occurrence")) {
            m_occurrence = qMax(1, source.text.toInt());
            continue;
        }
        auto condition = std::make_unique<Condition>();
        condition->subject = subjectOf(source);
        condition->source = source;
        condition->property = source.property.toUtf8();
        condition->latinText = source.text.toUtf8();
        const bool mayNest = condition->subject == Subject::Window ||
                             condition->subject == Subject::Container || condition->subject == Subject::Buddy;
        if (mayNest != source.isNested)
            throw Error(mayNest
                            ? QStringLiteral("'%1' needs the name of an object").arg(source.property)
                            : QStringLiteral("'%1' cannot be the name of an object").arg(source.property));
        if (source.isNested)
            condition->nested = std::make_unique<NameMatcher>(source.nested);
        else
            condition->pattern = patternOf(source);
        if (source.match == Protocol::Match::Exact && QString::number(source.text.toInt()) == source.text)
            condition->number = source.text.toInt();
        if (source.match == Protocol::Match::Exact &&
            (source.text == QLatin1String("true") || source.text == QLatin1String("false")))
            condition->truth = source.text == QLatin1String("true");
        condition->wantsVisible = source.text != QLatin1String("false") && source.text != QLatin1String("0");
        m_conditions.push_back(std::move(condition));
    }
    // The cheap ones first: they decide for most objects.
    std::stable_sort(m_conditions.begin(), m_conditions.end(),
                     [](const auto& a, const auto& b) { return a->subject < b->subject; });
}

NameMatcher::~NameMatcher() = default;

static bool enumMatches(const QMetaProperty& property, int value, const QString& text)
{
    const QByteArray keys = property.isFlagType() ? property.enumerator().valueToKeys(value)
                                                  : QByteArray(property.enumerator().valueToKey(value));
    return text == QString::fromLatin1(keys) || text == QString::number(value);
}

bool NameMatcher::propertyHolds(Condition& condition, QObject* object)
{
    const QMetaObject* meta = object->metaObject();
    const int index = condition.fact(meta, [&] { return meta->indexOfProperty(condition.property); });
    if (index < 0) {
        const QVariant dynamic = object->property(condition.property);
        return dynamic.isValid() && condition.textHolds(plainText(dynamic));
    }
    const QMetaProperty property = meta->property(index);
    const QVariant value = property.read(object);
    if (property.isEnumType() && condition.source.match == Protocol::Match::Exact)
        return enumMatches(property, value.toInt(), condition.source.text);
    if (value.userType() == QMetaType::QString && condition.source.match == Protocol::Match::Exact)
        return *static_cast<const QString*>(value.constData()) == condition.source.text;
    // Without a text for each of a hundred thousand objects.
    if (value.userType() == QMetaType::Int && condition.number)
        return value.toInt() == *condition.number;
    if (value.userType() == QMetaType::Bool && condition.truth)
        return value.toBool() == *condition.truth;
    return value.isValid() && condition.textHolds(plainText(value));
}

bool NameMatcher::ancestorHolds(Condition& condition, QObject* object)
{
    QObject* parent = parentOf(object);
    if (!parent)
        return false;
    const auto known = condition.known.constFind(parent);
    if (known != condition.known.constEnd())
        return *known;
    const bool holds = condition.nested->matches(parent) || ancestorHolds(condition, parent);
    condition.known.insert(parent, holds);
    return holds;
}

bool NameMatcher::windowHolds(Condition& condition, QObject* object)
{
    QObject* window = windowOf(object);
    if (!window)
        return false;
    const auto known = condition.known.constFind(window);
    if (known != condition.known.constEnd())
        return *known;
    const bool holds = condition.nested->matches(window);
    condition.known.insert(window, holds);
    return holds;
}

bool NameMatcher::buddyHolds(Condition& condition, QObject* object)
{
    if (!condition.haveBuddies) {
        condition.haveBuddies = true;
        visitAll([&](QObject* at) {
            const Toolkit* toolkit = Toolkit::of(at);
            QObject* buddy = toolkit ? toolkit->buddyOf(at) : nullptr;
            if (buddy && condition.nested->matches(at))
                condition.buddies.insert(buddy);
            return true;
        });
    }
    return condition.buddies.contains(object);
}

bool NameMatcher::holds(Condition& condition, QObject* object)
{
    switch (condition.subject) {
    case Subject::Type: {
        const QMetaObject* meta = object->metaObject();
        return condition.fact(meta, [&] {
            return condition.source.match == Protocol::Match::Exact
                       ? condition.latinText == meta->className()
                       : condition.textHolds(QString::fromLatin1(meta->className()));
        }) == 1;
    }
    case Subject::Name:
        return condition.textHolds(object->objectName());
    case Subject::Visible:
        return isVisible(object) == condition.wantsVisible;
    case Subject::Window:
        return windowHolds(condition, object);
    case Subject::Container:
        return ancestorHolds(condition, object);
    case Subject::Buddy:
        return buddyHolds(condition, object);
    case Subject::Property:
        return propertyHolds(condition, object);
    }
    return false;
}

bool NameMatcher::matches(QObject* object)
{
    const bool all = std::all_of(m_conditions.begin(), m_conditions.end(),
                                 [&](const auto& condition) { return holds(*condition, object); });
    // A nested name with an occurrence means that one object only.
    return all && (m_occurrence <= 1 || findFirst() == object);
}

QObject* NameMatcher::findFirst()
{
    const QVector<QObject*> found = findAll(1);
    return found.isEmpty() ? nullptr : found.first();
}

QVector<QObject*> NameMatcher::findAll(int limit)
{
    QVector<QObject*> found;
    int left = m_occurrence;
    visitAll([&](QObject* object) {
        const bool all = std::all_of(m_conditions.begin(), m_conditions.end(),
                                     [&](const auto& condition) { return holds(*condition, object); });
        if (!all || --left > 0)
            return true;
        found.append(object);
        return m_occurrence == 0 && (limit == 0 || found.size() < limit);
    });
    return found;
}

/** Whether the condition asks for a base class of the object's class. */
bool NameMatcher::isKindOf(const Condition& condition, const QObject* object)
{
    return condition.subject == Subject::Type && object->inherits(condition.latinText);
}

int NameMatcher::score(QObject* object, bool* fits)
{
    int score = 0;
    *fits = true;
    for (const auto& condition : m_conditions) {
        const bool good = holds(*condition, object);
        *fits = *fits && good;
        // Class and name say most about which object was meant.
        if (good)
            score += condition->subject <= Subject::Name ? 6 : 4;
        else if (isNearly(*condition, object))
            score += condition->subject <= Subject::Name ? 3 : 2;
        else if (condition->source.match == Protocol::Match::Exact &&
                 shareWord(comparedText(*condition, object), condition->source.text))
            score += 1;
    }
    return score;
}

QString NameMatcher::comparedText(const Condition& condition, QObject* object)
{
    switch (condition.subject) {
    case Subject::Type:
        return QString::fromLatin1(object->metaObject()->className());
    case Subject::Name:
        return object->objectName();
    case Subject::Property:
        return propertyText(object, condition.property);
    default:
        return QString();
    }
}

bool NameMatcher::isNearly(const Condition& condition, QObject* object)
{
    return condition.source.match == Protocol::Match::Exact &&
           (isKindOf(condition, object) ||
            isSimilarText(comparedText(condition, object), condition.source.text));
}

QString NameMatcher::difference(Condition& condition, QObject* object)
{
    const QString& wanted = condition.source.text;
    QString actual;
    switch (condition.subject) {
    case Subject::Type:
        actual = QString::fromLatin1(object->metaObject()->className());
        if (isKindOf(condition, object))
            return QStringLiteral("its 'type' is '%1', which is a %2; a name has to give its own class")
                .arg(actual, wanted);
        break;
    case Subject::Name:
        actual = object->objectName();
        break;
    case Subject::Visible:
        actual = isVisible(object) ? QStringLiteral("true") : QStringLiteral("false");
        break;
    case Subject::Property:
        actual = propertyText(object, condition.property);
        if (actual.isNull())
            return QStringLiteral("it has no property '%1'").arg(condition.source.property);
        break;
    case Subject::Window:
        if (QObject* window = windowOf(object))
            return QStringLiteral("its 'window' is %1 (%2)")
                .arg(describeObject(window), condition.nested->differences(window));
        return QStringLiteral("it is in no window");
    case Subject::Container:
        if (QObject* container = condition.nested->nearestAncestor(object))
            return QStringLiteral("its 'container' is not %1 but, at best, %2 (%3)")
                .arg(toText(condition.source.nested), describeObject(container),
                     condition.nested->differences(container));
        return QStringLiteral("its 'container' is not %1").arg(toText(condition.source.nested));
    case Subject::Buddy:
        return QStringLiteral("its 'buddy' is not %1").arg(toText(condition.source.nested));
    }
    const QString sign = condition.source.match == Protocol::Match::Exact ? QStringLiteral("not")
                         : condition.source.match == Protocol::Match::Wildcard
                             ? QStringLiteral("which does not match the wildcard")
                             : QStringLiteral("which does not match the regular expression");
    return QStringLiteral("its '%1' is '%2', %3 '%4'").arg(condition.source.property, actual, sign, wanted);
}

QString NameMatcher::differences(QObject* object)
{
    QStringList all;
    for (const auto& condition : m_conditions)
        if (!holds(*condition, object))
            all.append(difference(*condition, object));
    return all.isEmpty() ? QStringLiteral("it is another one of those that fit")
                         : all.join(QStringLiteral("; "));
}

QObject* NameMatcher::nearestAncestor(QObject* object)
{
    QObject* nearest = nullptr;
    int best = 0;
    bool fits = false;
    for (QObject* at = object->parent(); at; at = at->parent()) {
        const int points = score(at, &fits);
        if (points > best) {
            best = points;
            nearest = at;
        }
    }
    return nearest;
}

QString NameMatcher::nearestMiss()
{
    QObject* nearest = nullptr;
    int best = 0;
    int fitting = 0;
    visitAll([&](QObject* object) {
        bool fits = false;
        const int points = score(object, &fits);
        fitting += fits ? 1 : 0;
        if (!fits && points > best) {
            best = points;
            nearest = object;
        }
        return true;
    });
    if (fitting > 0)
        return QStringLiteral("Only %1 of these exist.").arg(fitting);
    if (!nearest)
        return QStringLiteral("Nothing comes near it.");
    return QStringLiteral("The closest is %1: %2.").arg(describeObject(nearest), differences(nearest));
}

QString NameMatcher::toText(const Protocol::NameConditions& conditions)
{
    QStringList parts;
    for (const Protocol::NameCondition& condition : conditions) {
        const QString sign = condition.isNested || condition.match == Protocol::Match::Exact
                                 ? QStringLiteral("=")
                             : condition.match == Protocol::Match::Wildcard ? QStringLiteral("*=")
                                                                            : QStringLiteral("~=");
        const QString value = condition.isNested ? toText(condition.nested)
                                                 : QLatin1Char('\'') + condition.text + QLatin1Char('\'');
        parts.append(condition.property + sign + value);
    }
    return QLatin1Char('{') + parts.join(QLatin1Char(' ')) + QLatin1Char('}');
}

QString describeObject(const QObject* object)
{
    QString text = QString::fromLatin1(object->metaObject()->className());
    if (!object->objectName().isEmpty())
        return text + QStringLiteral(" '%1'").arg(object->objectName());
    for (const char* property : {"text", "title", "windowTitle"}) {
        const QString value = object->property(property).toString();
        if (!value.isEmpty())
            return text + QStringLiteral(" with %1 '%2'").arg(QString::fromLatin1(property), value.left(60));
    }
    return text;
}

QString propertyText(QObject* object, const QByteArray& property)
{
    const QVariant value = object->property(property);
    if (!value.isValid())
        return {};
    const int index = object->metaObject()->indexOfProperty(property);
    if (index >= 0 && object->metaObject()->property(index).isEnumType()) {
        const QMetaProperty metaProperty = object->metaObject()->property(index);
        const char* key = metaProperty.enumerator().valueToKey(value.toInt());
        if (key)
            return QString::fromLatin1(key);
    }
    const QString text = plainText(value);
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace Torvix::Agent
