#include "agent/widgets/graphics.h"

#include "agent/bindings/bindings.h"
#include "agent/bindings/itemguard.h"
#include "agent/reflection/bind.h"

#include <QGraphicsItem>
#include <QGraphicsObject>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QGraphicsWidget>

namespace Torvix::Agent {

namespace {

Value itemList(const QList<QGraphicsItem*>& items)
{
    QVector<Value> elements;
    for (QGraphicsItem* item : items)
        elements.append(Graphics::toItemValue(item));
    return Value::ofList("QVariantList", std::move(elements));
}

/** What the item shows as text; of others an empty one. */
QString itemText(QGraphicsItem& item)
{
    if (auto* simple = qgraphicsitem_cast<QGraphicsSimpleTextItem*>(&item))
        return simple->text();
    if (auto* rich = qgraphicsitem_cast<QGraphicsTextItem*>(&item))
        return rich->toPlainText();
    return {};
}

/** The shapes that Qt has; those of an application have numbers of their own. */
QString itemKind(QGraphicsItem& item)
{
    static const QHash<int, const char*> kinds = {{QGraphicsPathItem::Type, "QGraphicsPathItem"},
                                                  {QGraphicsRectItem::Type, "QGraphicsRectItem"},
                                                  {QGraphicsEllipseItem::Type, "QGraphicsEllipseItem"},
                                                  {QGraphicsPolygonItem::Type, "QGraphicsPolygonItem"},
                                                  {QGraphicsLineItem::Type, "QGraphicsLineItem"},
                                                  {QGraphicsPixmapItem::Type, "QGraphicsPixmapItem"},
                                                  {QGraphicsTextItem::Type, "QGraphicsTextItem"},
                                                  {QGraphicsSimpleTextItem::Type, "QGraphicsSimpleTextItem"},
                                                  {QGraphicsItemGroup::Type, "QGraphicsItemGroup"}};
    return QString::fromLatin1(kinds.value(item.type(), "QGraphicsItem"));
}

void bindItem(Registry& registry)
{
    Bind<QGraphicsItem>(registry)
        .addressIn(Graphics::itemOf)
        .guard(Guards::ofGraphicsItem)
        .method("pos", &QGraphicsItem::pos)
        .method("scenePos", &QGraphicsItem::scenePos)
        .method("boundingRect", &QGraphicsItem::boundingRect)
        .method("sceneBoundingRect", &QGraphicsItem::sceneBoundingRect)
        .method("isSelected", &QGraphicsItem::isSelected)
        .method("setSelected", &QGraphicsItem::setSelected, "selected")
        .method("isVisible", &QGraphicsItem::isVisible)
        .method("isEnabled", &QGraphicsItem::isEnabled)
        .method("hasFocus", &QGraphicsItem::hasFocus)
        .method("zValue", &QGraphicsItem::zValue)
        .method("rotation", &QGraphicsItem::rotation)
        .method("scale", &QGraphicsItem::scale)
        .method("toolTip", &QGraphicsItem::toolTip)
        .method("data", &QGraphicsItem::data, "key")
        .method("type", &QGraphicsItem::type)
        .method("scene", &QGraphicsItem::scene)
        .extension("kind", itemKind)
        .extension("text", itemText)
        .extension(
            "parentItem", +[](QGraphicsItem& item) { return Graphics::toItemValue(item.parentItem()); })
        .extension(
            "childItems", +[](QGraphicsItem& item) { return itemList(item.childItems()); });
    registry.define("QGraphicsObject", {"QGraphicsItem"});
    Bind<QGraphicsObject>{registry};
    Bind<QGraphicsProxyWidget>(registry).method("widget", &QGraphicsProxyWidget::widget);
}

} // namespace

void bindGraphics(Registry& registry)
{
    bindItem(registry);
    Bind<QGraphicsView>(registry)
        .method("scene", &QGraphicsView::scene)
        .method("mapToScene", qOverload<const QPoint&>(&QGraphicsView::mapToScene), "position")
        .method("mapFromScene", qOverload<const QPointF&>(&QGraphicsView::mapFromScene), "position")
        .extension(
            "items", +[](QGraphicsView& view) { return itemList(view.items()); })
        .extension(
            "itemAt",
            +[](QGraphicsView& view, int x, int y) { return Graphics::toItemValue(view.itemAt(x, y)); },
            "x, y");
    Bind<QGraphicsScene>(registry)
        .method("views", &QGraphicsScene::views)
        .extension(
            "items", +[](QGraphicsScene& scene) { return itemList(scene.items()); })
        .extension(
            "selectedItems", +[](QGraphicsScene& scene) { return itemList(scene.selectedItems()); })
        .extension(
            "focusItem", +[](QGraphicsScene& scene) { return Graphics::toItemValue(scene.focusItem()); });
}

} // namespace Torvix::Agent
