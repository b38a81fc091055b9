#pragma once

#include "agent/typename.h"
#include "agent/value.h"

#include <QMetaType>
#include <QModelIndex>
#include <QPointer>
#include <QStringList>
#include <QTabBar>

class QAbstractItemView;
class QAction;
class QWidget;

namespace Torvix::Agent {

/** A tab of a tab bar, which is no object of its own. */
struct TabItem
{
    QPointer<QTabBar> bar;
    int index = -1;

    QString text() const { return bar ? bar->tabText(index) : QString(); }
    int position() const { return index; }
};

template <>
struct TypeName<TabItem>
{
    static QByteArray get() { return "TabItem"; }
};

/** The texts of a path: separated by dots; `\.` is a dot and `\\` a backslash in a text. */
QStringList splitItemPath(const QString& path);
/** The reverse. */
QString joinItemPath(const QStringList& texts);

/** What a person reads: without the mark of the mnemonic and the shortcut. */
QString plainActionText(const QString& text);

/**
 * The item of a view, combo box, menu, menu bar, tab widget or tab bar: by the texts from the top
 * down, or with an empty path by row and column. A QModelIndex, a QAction or a TabItem; none when
 * there is no such item. Throws for a widget that has no items.
 */
Value findItem(QObject* container, const QStringList& path, int row, int column);

/** The item's path in its view, as joinItemPath() takes it. */
QStringList itemPath(const QModelIndex& index);

/** The view of a combo box or the view itself; null for others. */
QAbstractItemView* itemViewOf(QObject* container);

/** Opens all parents of the item and brings it into view. */
void showItem(QAbstractItemView* view, const QModelIndex& index);

} // namespace Torvix::Agent

Q_DECLARE_METATYPE(Torvix::Agent::TabItem)
