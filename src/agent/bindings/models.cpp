#include "agent/bindings/bindings.h"
#include "agent/bindings/itemguard.h"
#include "agent/reflection/bind.h"

#include <QAbstractItemModel>
#include <QAbstractProxyModel>
#include <QItemSelectionModel>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QStringListModel>

namespace Torvix::Agent {

static void bindModel(Registry& registry)
{
    Bind<QAbstractItemModel>(registry)
        .method("rowCount", &QAbstractItemModel::rowCount, "parent", defaults(QModelIndex()))
        .method("columnCount", &QAbstractItemModel::columnCount, "parent", defaults(QModelIndex()))
        .method("hasChildren", &QAbstractItemModel::hasChildren, "parent", defaults(QModelIndex()))
        .method("index", &QAbstractItemModel::index, "row, column, parent", defaults(QModelIndex()))
        .method("parent", qOverload<const QModelIndex&>(&QAbstractItemModel::parent), "child")
        .method("data", &QAbstractItemModel::data, "index, role", defaults(int(Qt::DisplayRole)))
        .method("setData", &QAbstractItemModel::setData, "index, value, role", defaults(int(Qt::EditRole)))
        .method("headerData", &QAbstractItemModel::headerData, "section, orientation, role",
                defaults(int(Qt::DisplayRole)))
        .method("flags", &QAbstractItemModel::flags, "index")
        .method("canFetchMore", &QAbstractItemModel::canFetchMore, "parent")
        .method("fetchMore", &QAbstractItemModel::fetchMore, "parent")
        .method("insertRow", &QAbstractItemModel::insertRow, "row, parent", defaults(QModelIndex()))
        .method("removeRow", &QAbstractItemModel::removeRow, "row, parent", defaults(QModelIndex()))
        .method("insertRows", &QAbstractItemModel::insertRows, "row, count, parent", defaults(QModelIndex()))
        .method("removeRows", &QAbstractItemModel::removeRows, "row, count, parent", defaults(QModelIndex()))
        .method("sort", &QAbstractItemModel::sort, "column, order", defaults(Qt::AscendingOrder));
    Bind<QModelIndex>(registry)
        .value()
        .method("row", &QModelIndex::row)
        .method("column", &QModelIndex::column)
        .method("isValid", &QModelIndex::isValid)
        .method("parent", &QModelIndex::parent)
        .method("sibling", &QModelIndex::sibling, "row, column")
        .method("data", &QModelIndex::data, "role", defaults(int(Qt::DisplayRole)))
        .method("flags", &QModelIndex::flags)
        .method("model", &QModelIndex::model)
        .propertyOf(
            "text", +[](QModelIndex& index) { return index.data(Qt::DisplayRole).toString(); })
        .constructor<>();
    Bind<QAbstractProxyModel>(registry)
        .method("mapToSource", &QAbstractProxyModel::mapToSource, "index")
        .method("mapFromSource", &QAbstractProxyModel::mapFromSource, "index")
        .method("sourceModel", &QAbstractProxyModel::sourceModel);
    Bind<QSortFilterProxyModel>{registry};
    Bind<QStringListModel>(registry)
        .method("stringList", &QStringListModel::stringList)
        .method("setStringList", &QStringListModel::setStringList, "strings");
    Bind<QItemSelectionModel>(registry)
        .method("currentIndex", &QItemSelectionModel::currentIndex)
        .method("hasSelection", &QItemSelectionModel::hasSelection)
        .method("selectedIndexes", &QItemSelectionModel::selectedIndexes)
        .method("selectedRows", &QItemSelectionModel::selectedRows, "column", defaults(0))
        .method("isSelected", &QItemSelectionModel::isSelected, "index");
}

void bindModels(Registry& registry)
{
    bindModel(registry);
    Bind<QStandardItem>(registry)
        .guard(Guards::ofStandardItem)
        .method("text", &QStandardItem::text)
        .method("setText", &QStandardItem::setText, "text")
        .method("row", &QStandardItem::row)
        .method("column", &QStandardItem::column)
        .method("rowCount", &QStandardItem::rowCount)
        .method("columnCount", &QStandardItem::columnCount)
        .method("child", &QStandardItem::child, "row, column", defaults(0))
        .method("parent", &QStandardItem::parent)
        .method("index", &QStandardItem::index)
        .method("model", &QStandardItem::model)
        .method("data", &QStandardItem::data, "role", defaults(int(Qt::UserRole) + 1))
        .method("setData", &QStandardItem::setData, "value, role", defaults(int(Qt::UserRole) + 1))
        .method("checkState", &QStandardItem::checkState)
        .method("setCheckState", &QStandardItem::setCheckState, "state")
        .method("isCheckable", &QStandardItem::isCheckable)
        .method("isEditable", &QStandardItem::isEditable)
        .method("isEnabled", &QStandardItem::isEnabled)
        .method("isSelectable", &QStandardItem::isSelectable)
        .method("toolTip", &QStandardItem::toolTip)
        .constructor<>()
        .constructor<const QString&>("text");
    Bind<QStandardItemModel>(registry)
        .method("item", &QStandardItemModel::item, "row, column", defaults(0))
        .method("setItem", qOverload<int, int, QStandardItem*>(&QStandardItemModel::setItem),
                "row, column, item")
        .method("itemFromIndex", &QStandardItemModel::itemFromIndex, "index")
        .method("indexFromItem", &QStandardItemModel::indexFromItem, "item")
        .method("invisibleRootItem", &QStandardItemModel::invisibleRootItem)
        .method("findItems", &QStandardItemModel::findItems, "text, flags, column",
                defaults(Qt::MatchFlags(Qt::MatchExactly), 0))
        .method("clear", &QStandardItemModel::clear);
}

} // namespace Torvix::Agent
