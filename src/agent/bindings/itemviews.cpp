#include "agent/bindings/bindings.h"
#include "agent/reflection/bind.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QListView>
#include <QTableView>
#include <QTreeView>

namespace Torvix::Agent {

static void bindTableAndTree(Registry& registry)
{
    Bind<QTableView>(registry)
        .method("horizontalHeader", &QTableView::horizontalHeader)
        .method("verticalHeader", &QTableView::verticalHeader)
        .method("rowAt", &QTableView::rowAt, "y")
        .method("columnAt", &QTableView::columnAt, "x")
        .method("rowHeight", &QTableView::rowHeight, "row")
        .method("columnWidth", &QTableView::columnWidth, "column")
        .method("setRowHeight", &QTableView::setRowHeight, "row, height")
        .method("setColumnWidth", &QTableView::setColumnWidth, "column, width")
        .method("isRowHidden", &QTableView::isRowHidden, "row")
        .method("isColumnHidden", &QTableView::isColumnHidden, "column")
        .method("rowSpan", &QTableView::rowSpan, "row, column")
        .method("columnSpan", &QTableView::columnSpan, "row, column");
    Bind<QTreeView>(registry)
        .method("header", &QTreeView::header)
        .method("isExpanded", &QTreeView::isExpanded, "index")
        .method("setExpanded", &QTreeView::setExpanded, "index, expanded")
        .method("indexAbove", &QTreeView::indexAbove, "index")
        .method("indexBelow", &QTreeView::indexBelow, "index")
        .method("columnWidth", &QTreeView::columnWidth, "column")
        .method("isColumnHidden", &QTreeView::isColumnHidden, "column")
        .method("isRowHidden", &QTreeView::isRowHidden, "row, parent");
    Bind<QListView>(registry)
        .method("isRowHidden", &QListView::isRowHidden, "row")
        .method("setRowHidden", &QListView::setRowHidden, "row, hidden");
}

void bindItemViews(Registry& registry)
{
    Bind<QAbstractItemView>(registry)
        .method("model", &QAbstractItemView::model)
        .method("selectionModel", &QAbstractItemView::selectionModel)
        .method("currentIndex", &QAbstractItemView::currentIndex)
        .method("rootIndex", &QAbstractItemView::rootIndex)
        .method("indexAt", &QAbstractItemView::indexAt, "point")
        .method("visualRect", &QAbstractItemView::visualRect, "index")
        .method("scrollTo", &QAbstractItemView::scrollTo, "index, hint",
                defaults(QAbstractItemView::EnsureVisible))
        .method("indexWidget", &QAbstractItemView::indexWidget, "index")
        .method("isPersistentEditorOpen",
                qOverload<const QModelIndex&>(&QAbstractItemView::isPersistentEditorOpen), "index")
        .extension(
            "selectedIndexes", +[](QAbstractItemView& view) {
                return view.selectionModel() ? view.selectionModel()->selectedIndexes() : QModelIndexList();
            });
    bindTableAndTree(registry);
    Bind<QHeaderView>(registry)
        .method("count", &QHeaderView::count)
        .method("orientation", &QHeaderView::orientation)
        .method("sectionSize", &QHeaderView::sectionSize, "logicalIndex")
        .method("sectionPosition", &QHeaderView::sectionPosition, "logicalIndex")
        .method("sectionViewportPosition", &QHeaderView::sectionViewportPosition, "logicalIndex")
        .method("resizeSection", &QHeaderView::resizeSection, "logicalIndex, size")
        .method("visualIndex", &QHeaderView::visualIndex, "logicalIndex")
        .method("logicalIndex", &QHeaderView::logicalIndex, "visualIndex")
        .method("logicalIndexAt", qOverload<int>(&QHeaderView::logicalIndexAt), "position")
        .method("isSectionHidden", &QHeaderView::isSectionHidden, "logicalIndex")
        .method("length", &QHeaderView::length)
        .method("sortIndicatorSection", &QHeaderView::sortIndicatorSection)
        .method("sortIndicatorOrder", &QHeaderView::sortIndicatorOrder)
        .extension(
            "sectionText",
            +[](QHeaderView& header, int section) {
                return header.model() ? header.model()->headerData(section, header.orientation()).toString()
                                      : QString();
            },
            "logicalIndex");
}

} // namespace Torvix::Agent
