#pragma once

#include "protocol/namecondition.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <memory>
#include <vector>

namespace Torvix::Agent {

/**
 * A real name, made ready to be held against many objects:
 *
 *     QObject* button = NameMatcher(conditions).findFirst();
 *
 * One search visits each object once; what is told by the class alone is looked up once a class.
 * A matcher keeps what it has learnt about windows and containers, so make a new one for each search.
 */
class NameMatcher
{
public:
    /** Throws Error for a pattern that is no regular expression or a nested name that is not allowed. */
    explicit NameMatcher(const Protocol::NameConditions& conditions);
    ~NameMatcher();

    bool matches(QObject* object);

    /** In tree order; `occurrence` is taken into account. Null when there is none. */
    QObject* findFirst();
    /** All matches, or the one of the `occurrence`. `limit` 0 for no limit. */
    QVector<QObject*> findAll(int limit = 0);

    /** Why findFirst() found nothing, a sentence for people: the object that fits best and what differs. */
    QString nearestMiss();

    /** A real name as people write it. */
    static QString toText(const Protocol::NameConditions& conditions);

private:
    struct Condition;

    bool holds(Condition& condition, QObject* object);
    bool propertyHolds(Condition& condition, QObject* object);
    bool ancestorHolds(Condition& condition, QObject* object);
    bool windowHolds(Condition& condition, QObject* object);
    bool buddyHolds(Condition& condition, QObject* object);
    static bool isKindOf(const Condition& condition, const QObject* object);
    /** How well the object fits; 0 for not at all. */
    int score(QObject* object, bool* fits);
    /** What of the object an exact condition compares; null when that is no text. */
    static QString comparedText(const Condition& condition, QObject* object);
    static bool isNearly(const Condition& condition, QObject* object);
    QString difference(Condition& condition, QObject* object);
    QString differences(QObject* object);
    QObject* nearestAncestor(QObject* object);

    std::vector<std::unique_ptr<Condition>> m_conditions;
    int m_occurrence = 0;
};

/** How an object is spoken of in messages: class and name, or class and text. */
QString describeObject(const QObject* object);

/** A property's value as the text that names hold; null when there is no such property. */
QString propertyText(QObject* object, const QByteArray& property);

} // namespace Torvix::Agent
