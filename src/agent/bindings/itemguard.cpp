#include "agent/bindings/itemguard.h"

#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QListWidget>
#include <QStandardItemModel>
#include <QTableWidget>
#include <QTreeWidget>

namespace Torvix::Agent {

namespace {

/** Looks at the cell where the item was last before it looks at all cells. */
bool tableHolds(QTableWidget* table, const void* item, QPoint& hint)
{
    if (table->item(hint.y(), hint.x()) == item)
        return true;
    for (int row = 0; row < table->rowCount(); ++row)
        for (int column = 0; column < table->columnCount(); ++column)
            if (table->item(row, column) == item) {
                hint = QPoint(column, row);
                return true;
            }
    for (int column = 0; column < table->columnCount(); ++column)
        if (table->horizontalHeaderItem(column) == item)
            return true;
    for (int row = 0; row < table->rowCount(); ++row)
        if (table->verticalHeaderItem(row) == item)
            return true;
    return false;
}

bool listHolds(QListWidget* list, const void* item, int& hint)
{
    if (list->item(hint) == item)
        return true;
    for (int row = 0; row < list->count(); ++row)
        if (list->item(row) == item) {
            hint = row;
            return true;
        }
    return false;
}

bool treeHolds(QTreeWidgetItem* parent, const void* item)
{
    for (int i = 0; i < parent->childCount(); ++i)
        if (parent->child(i) == item || treeHolds(parent->child(i), item))
            return true;
    return false;
}

bool modelHolds(QStandardItem* parent, const void* item)
{
    for (int row = 0; row < parent->rowCount(); ++row)
        for (int column = 0; column < parent->columnCount(); ++column) {
            QStandardItem* child = parent->child(row, column);
            if (child == item || (child && modelHolds(child, item)))
                return true;
        }
    return false;
}

} // namespace

namespace Guards {

std::function<bool()> ofTableItem(QTableWidgetItem* item)
{
    if (!item->tableWidget())
        return {};
    return [table = QPointer<QTableWidget>(item->tableWidget()), item,
            hint = QPoint(item->column(), item->row())]() mutable {
        return table && tableHolds(table, item, hint);
    };
}

std::function<bool()> ofListItem(QListWidgetItem* item)
{
    if (!item->listWidget())
        return {};
    return [list = QPointer<QListWidget>(item->listWidget()), item,
            hint = item->listWidget()->row(item)]() mutable { return list && listHolds(list, item, hint); };
}

std::function<bool()> ofTreeItem(QTreeWidgetItem* item)
{
    if (!item->treeWidget())
        return {};
    return [tree = QPointer<QTreeWidget>(item->treeWidget()), item] {
        return tree && (tree->invisibleRootItem() == item || tree->headerItem() == item ||
                        treeHolds(tree->invisibleRootItem(), item));
    };
}

std::function<bool()> ofStandardItem(QStandardItem* item)
{
    if (!item->model())
        return {};
    return [model = QPointer<QStandardItemModel>(item->model()), item] {
        return model && (model->invisibleRootItem() == item || modelHolds(model->invisibleRootItem(), item));
    };
}

std::function<bool()> ofGraphicsItem(QGraphicsItem* item)
{
    if (!item->scene())
        return {};
    return [scene = QPointer<QGraphicsScene>(item->scene()), item] {
        return scene && scene->items().contains(item);
    };
}

} // namespace Guards

} // namespace Torvix::Agent
