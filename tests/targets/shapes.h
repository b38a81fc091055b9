#pragma once

#include <QMap>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <QWidget>

/** Classes in a namespace, with enums of both kinds. */
namespace Shop {
Q_NAMESPACE

enum class State { Open = 1, Closed = 2, Paid = 4 };
Q_ENUM_NS(State)

class Item : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(Kind kind READ kind WRITE setKind)
    Q_PROPERTY(Marks marks READ marks WRITE setMarks)
    Q_PROPERTY(Shop::State state READ state WRITE setState)
    Q_PROPERTY(int count MEMBER m_count)

public:
    enum Kind { Book = 3, Pen = 5, Lamp = 8 };
    Q_ENUM(Kind)
    enum Mark { New = 1, Cheap = 2, Last = 4 };
    Q_DECLARE_FLAGS(Marks, Mark)
    Q_FLAG(Marks)

    explicit Item(const QString& title, QObject* parent = nullptr);

    QString title() const { return m_title; }
    void setTitle(const QString& title);
    Kind kind() const { return m_kind; }
    void setKind(Kind kind) { m_kind = kind; }
    Marks marks() const { return m_marks; }
    void setMarks(Marks marks) { m_marks = marks; }
    Shop::State state() const { return m_state; }
    void setState(Shop::State state) { m_state = state; }

Q_SIGNALS:
    void titleChanged(const QString& title);

private:
    QString m_title;
    Kind m_kind = Book;
    Marks m_marks = New;
    Shop::State m_state = Shop::State::Open;
    int m_count = 7;
};

} // namespace Shop

/** Overloads and properties of every kind. */
class Shapes : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int number READ number WRITE setNumber)
    Q_PROPERTY(double ratio READ ratio WRITE setRatio)
    Q_PROPERTY(QString label READ label WRITE setLabel)
    Q_PROPERTY(QString fixed READ fixed CONSTANT)
    Q_PROPERTY(QString secret WRITE setSecret)
    Q_PROPERTY(QVariant nothing READ nothing)
    Q_PROPERTY(QVariant anything MEMBER m_anything)
    Q_PROPERTY(QStringList words MEMBER m_words)
    Q_PROPERTY(QVariantMap table MEMBER m_table)
    Q_PROPERTY(QVariantList mixed MEMBER m_mixed)
    Q_PROPERTY(QPoint spot MEMBER m_spot)
    Q_PROPERTY(Shop::Item* item READ item)
    Q_PROPERTY(QString dialogText READ dialogText)
    Q_PROPERTY(int deadly READ deadly)
    Q_PROPERTY(qlonglong big MEMBER m_big)

public:
    explicit Shapes(QWidget* parent = nullptr);

    int number() const { return m_number; }
    void setNumber(int number) { m_number = number; }
    double ratio() const { return m_ratio; }
    void setRatio(double ratio) { m_ratio = ratio; }
    QString label() const { return m_label; }
    void setLabel(const QString& label) { m_label = label; }
    QString fixed() const { return QStringLiteral("fixed"); }
    void setSecret(const QString& secret) { m_label = secret; }
    QVariant nothing() const { return {}; }
    Shop::Item* item() const { return m_item; }
    /** Opens a modal dialog before it answers. */
    QString dialogText() const;
    /** Destroys the object from which it is read. */
    int deadly() const;

    Q_INVOKABLE QString pick(int value) const;
    Q_INVOKABLE QString pick(double value) const;
    Q_INVOKABLE QString pick(const QString& value) const;
    Q_INVOKABLE QString pick(bool value) const;
    Q_INVOKABLE QString pick(QObject* value) const;
    Q_INVOKABLE QString pick(const QStringList& value) const;
    Q_INVOKABLE QString pick(const QVariantMap& value) const;
    Q_INVOKABLE QString pick(const QPoint& value) const;
    Q_INVOKABLE QString twice(QWidget* value) const;
    Q_INVOKABLE QString twice(Shop::Item* value) const;
    Q_INVOKABLE QString kindName(Shop::Item::Kind kind) const;
    Q_INVOKABLE int add(int first, int second = 10, int third = 100) const;
    Q_INVOKABLE qlonglong big(qlonglong value) const { return value + 1; }
    Q_INVOKABLE QVariant same(const QVariant& value) const { return value; }
    Q_INVOKABLE QVector<int> squares(int count) const;
    Q_INVOKABLE QObject* none() const { return nullptr; }
    Q_INVOKABLE Shop::Item* makeItem(const QString& title);
    Q_INVOKABLE void deleteItem();
    Q_INVOKABLE bool throwing() const;

private:
    int m_number = 42;
    double m_ratio = 0.5;
    QString m_label = QStringLiteral("shapes");
    QVariant m_anything = 1;
    QStringList m_words = {QStringLiteral("one"), QStringLiteral("two")};
    QVariantMap m_table = {{QStringLiteral("a"), 1}, {QStringLiteral("b"), QStringLiteral("x")}};
    QVariantList m_mixed = {1, QStringLiteral("two"), 3.5, true};
    QPoint m_spot = QPoint(3, 4);
    qlonglong m_big = 1LL << 40;
    Shop::Item* m_item;
};
