#include "agent/bindings/bindings.h"
#include "agent/bindings/itemguard.h"
#include "agent/reflection/bind.h"

#include <QListWidget>
#include <QTableWidget>
#include <QTreeWidget>

namespace Torvix::Agent {

static void bindTable(Registry& registry)
{
    Bind<QTableWidgetItem>(registry)
        .guard(Guards::ofTableItem)
        .method("text", &QTableWidgetItem::text)
        .method("setText", &QTableWidgetItem::setText, "text")
        .method("row", &QTableWidgetItem::row)
        .method("column", &QTableWidgetItem::column)
        .method("tableWidget", &QTableWidgetItem::tableWidget)
        .method("data", &QTableWidgetItem::data, "role")
        .method("setData", &QTableWidgetItem::setData, "role, value")
        .method("flags", &QTableWidgetItem::flags)
        .method("setFlags", &QTableWidgetItem::setFlags, "flags")
        .method("isSelected", &QTableWidgetItem::isSelected)
        .method("setSelected", &QTableWidgetItem::setSelected, "selected")
        .method("checkState", &QTableWidgetItem::checkState)
        .method("setCheckState", &QTableWidgetItem::setCheckState, "state")
        .method("toolTip", &QTableWidgetItem::toolTip)
        .method("font", &QTableWidgetItem::font)
        .method("background", &QTableWidgetItem::background)
        .method("foreground", &QTableWidgetItem::foreground)
        .method("textAlignment", &QTableWidgetItem::textAlignment)
        .constructor<>()
        .constructor<const QString&>("text");
    Bind<QTableWidget>(registry)
        .method("item", &QTableWidget::item, "row, column")
        .method("setItem", &QTableWidget::setItem, "row, column, item")
        .method("takeItem", &QTableWidget::takeItem, "row, column")
        .method("itemAt", qOverload<int, int>(&QTableWidget::itemAt), "x, y")
        .method("currentItem", &QTableWidget::currentItem)
        .method("currentRow", &QTableWidget::currentRow)
        .method("currentColumn", &QTableWidget::currentColumn)
        .method("setCurrentCell", qOverload<int, int>(&QTableWidget::setCurrentCell), "row, column")
        .method("setCurrentItem", qOverload<QTableWidgetItem*>(&QTableWidget::setCurrentItem), "item")
        .method("selectedItems", &QTableWidget::selectedItems)
        .method("findItems", &QTableWidget::findItems, "text, flags")
        .method("row", &QTableWidget::row, "item")
        .method("column", &QTableWidget::column, "item")
        .method("horizontalHeaderItem", &QTableWidget::horizontalHeaderItem, "column")
        .method("verticalHeaderItem", &QTableWidget::verticalHeaderItem, "row")
        .method("setHorizontalHeaderLabels", &QTableWidget::setHorizontalHeaderLabels, "labels")
        .method("setVerticalHeaderLabels", &QTableWidget::setVerticalHeaderLabels, "labels")
        .method("cellWidget", &QTableWidget::cellWidget, "row, column")
        .method("visualItemRect", &QTableWidget::visualItemRect, "item");
}

static void bindTree(Registry& registry)
{
    Bind<QTreeWidgetItem>(registry)
        .guard(Guards::ofTreeItem)
        .method("text", &QTreeWidgetItem::text, "column")
        .method("setText", &QTreeWidgetItem::setText, "column, text")
        .method("childCount", &QTreeWidgetItem::childCount)
        .method("columnCount", &QTreeWidgetItem::columnCount)
        .method("child", &QTreeWidgetItem::child, "index")
        .method("parent", &QTreeWidgetItem::parent)
        .method("indexOfChild", &QTreeWidgetItem::indexOfChild, "child")
        .method("addChild", &QTreeWidgetItem::addChild, "child")
        .method("treeWidget", &QTreeWidgetItem::treeWidget)
        .method("data", &QTreeWidgetItem::data, "column, role")
        .method("setData", &QTreeWidgetItem::setData, "column, role, value")
        .method("flags", &QTreeWidgetItem::flags)
        .method("isExpanded", &QTreeWidgetItem::isExpanded)
        .method("setExpanded", &QTreeWidgetItem::setExpanded, "expanded")
        .method("isSelected", &QTreeWidgetItem::isSelected)
        .method("setSelected", &QTreeWidgetItem::setSelected, "selected")
        .method("isHidden", &QTreeWidgetItem::isHidden)
        .method("isDisabled", &QTreeWidgetItem::isDisabled)
        .method("checkState", &QTreeWidgetItem::checkState, "column")
        .method("setCheckState", &QTreeWidgetItem::setCheckState, "column, state")
        .method("toolTip", &QTreeWidgetItem::toolTip, "column")
        .constructor<>(/* a type is not needed by scripts */)
        .constructor<const QStringList&>("texts");
    Bind<QTreeWidget>(registry)
        .method("topLevelItem", &QTreeWidget::topLevelItem, "index")
        .method("topLevelItemCount", qOverload<>(&QTreeWidget::topLevelItemCount))
        .method("indexOfTopLevelItem", qOverload<QTreeWidgetItem*>(&QTreeWidget::indexOfTopLevelItem), "item")
        .method("addTopLevelItem", &QTreeWidget::addTopLevelItem, "item")
        .method("invisibleRootItem", &QTreeWidget::invisibleRootItem)
        .method("currentItem", &QTreeWidget::currentItem)
        .method("setCurrentItem", qOverload<QTreeWidgetItem*>(&QTreeWidget::setCurrentItem), "item")
        .method("selectedItems", &QTreeWidget::selectedItems)
        .method("findItems", &QTreeWidget::findItems, "text, flags, column", defaults(0))
        .method("itemAt", qOverload<int, int>(&QTreeWidget::itemAt), "x, y")
        .method("itemAbove", &QTreeWidget::itemAbove, "item")
        .method("itemBelow", &QTreeWidget::itemBelow, "item")
        .method("itemWidget", &QTreeWidget::itemWidget, "item, column")
        .method("headerItem", &QTreeWidget::headerItem)
        .method("visualItemRect", &QTreeWidget::visualItemRect, "item");
}

static void bindList(Registry& registry)
{
    Bind<QListWidgetItem>(registry)
        .guard(Guards::ofListItem)
        .method("text", &QListWidgetItem::text)
        .method("setText", &QListWidgetItem::setText, "text")
        .method("listWidget", &QListWidgetItem::listWidget)
        .method("data", &QListWidgetItem::data, "role")
        .method("setData", &QListWidgetItem::setData, "role, value")
        .method("flags", &QListWidgetItem::flags)
        .method("isSelected", &QListWidgetItem::isSelected)
        .method("setSelected", &QListWidgetItem::setSelected, "selected")
        .method("isHidden", &QListWidgetItem::isHidden)
        .method("checkState", &QListWidgetItem::checkState)
        .method("setCheckState", &QListWidgetItem::setCheckState, "state")
        .method("toolTip", &QListWidgetItem::toolTip)
        .constructor<>()
        .constructor<const QString&>("text");
    Bind<QListWidget>(registry)
        .method("item", &QListWidget::item, "row")
        .method("row", &QListWidget::row, "item")
        .method("addItem", qOverload<const QString&>(&QListWidget::addItem), "text")
        .method("addItem", qOverload<QListWidgetItem*>(&QListWidget::addItem), "item")
        .method("addItems", &QListWidget::addItems, "texts")
        .method("takeItem", &QListWidget::takeItem, "row")
        .method("currentItem", &QListWidget::currentItem)
        .method("setCurrentItem", qOverload<QListWidgetItem*>(&QListWidget::setCurrentItem), "item")
        .method("selectedItems", &QListWidget::selectedItems)
        .method("findItems", &QListWidget::findItems, "text, flags")
        .method("itemAt", qOverload<int, int>(&QListWidget::itemAt), "x, y")
        .method("itemWidget", &QListWidget::itemWidget, "item")
        .method("visualItemRect", &QListWidget::visualItemRect, "item");
}

void bindItemWidgets(Registry& registry)
{
    bindTable(registry);
    bindTree(registry);
    bindList(registry);
}

} // namespace Torvix::Agent
