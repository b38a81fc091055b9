#pragma once

#include <functional>

class QGraphicsItem;
class QListWidgetItem;
class QStandardItem;
class QTableWidgetItem;
class QTreeWidgetItem;

namespace Torvix::Agent {

/**
 * Guards of items, see Bind::guard(). Items have no signal for their end, so their owner is asked whether
 * it still holds that address. Null for an item that nobody owns.
 */
namespace Guards {

std::function<bool()> ofTableItem(QTableWidgetItem* item);
std::function<bool()> ofListItem(QListWidgetItem* item);
std::function<bool()> ofTreeItem(QTreeWidgetItem* item);
std::function<bool()> ofStandardItem(QStandardItem* item);
std::function<bool()> ofGraphicsItem(QGraphicsItem* item);

} // namespace Guards

} // namespace Torvix::Agent
