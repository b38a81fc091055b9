#include "shapes.h"

#include <QMessageBox>

#include <stdexcept>

namespace Shop {

Item::Item(const QString& title, QObject* parent) : QObject(parent), m_title(title) {}

void Item::setTitle(const QString& title)
{
    m_title = title;
    Q_EMIT titleChanged(title);
}

} // namespace Shop

Shapes::Shapes(QWidget* parent) : QWidget(parent), m_item(new Shop::Item(QStringLiteral("first"), this))
{
    setObjectName(QStringLiteral("shapes"));
    m_item->setObjectName(QStringLiteral("item"));
}

QString Shapes::dialogText() const
{
    QMessageBox box(QMessageBox::Information, QStringLiteral("Getter"), QStringLiteral("A getter asks"),
                    QMessageBox::Ok);
    box.setObjectName(QStringLiteral("getterBox"));
    box.exec();
    return QStringLiteral("answered");
}

int Shapes::deadly() const
{
    delete this;
    return 1;
}

QString Shapes::pick(int value) const
{
    return QStringLiteral("int %1").arg(value);
}

QString Shapes::pick(double value) const
{
    return QStringLiteral("double %1").arg(value);
}

QString Shapes::pick(const QString& value) const
{
    return QStringLiteral("string %1").arg(value);
}

QString Shapes::pick(bool value) const
{
    return value ? QStringLiteral("bool true") : QStringLiteral("bool false");
}

QString Shapes::pick(QObject* value) const
{
    return value ? QStringLiteral("object %1").arg(value->objectName()) : QStringLiteral("object null");
}

QString Shapes::pick(const QStringList& value) const
{
    return QStringLiteral("list %1").arg(value.join(QLatin1Char('+')));
}

QString Shapes::pick(const QVariantMap& value) const
{
    return QStringLiteral("map %1").arg(QStringList(value.keys()).join(QLatin1Char('+')));
}

QString Shapes::pick(const QPoint& value) const
{
    return QStringLiteral("point %1 %2").arg(value.x()).arg(value.y());
}

QString Shapes::twice(QWidget* value) const
{
    return QStringLiteral("widget %1").arg(value ? value->objectName() : QString());
}

QString Shapes::twice(Shop::Item* value) const
{
    return QStringLiteral("item %1").arg(value ? value->title() : QString());
}

QString Shapes::kindName(Shop::Item::Kind kind) const
{
    return kind == Shop::Item::Pen ? QStringLiteral("pen") : QStringLiteral("other");
}

int Shapes::add(int first, int second, int third) const
{
    return first + second + third;
}

QVector<int> Shapes::squares(int count) const
{
    QVector<int> result;
    for (int i = 1; i <= count; ++i)
        result.append(i * i);
    return result;
}

Shop::Item* Shapes::makeItem(const QString& title)
{
    return new Shop::Item(title, this);
}

void Shapes::deleteItem()
{
    delete m_item;
    m_item = nullptr;
}

bool Shapes::throwing() const
{
    throw std::runtime_error("no luck");
}
