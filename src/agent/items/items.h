#pragma once

#include "agent/reflection/typename.h"
#include "agent/reflection/value.h"
#include "protocol/itempath.h"

#include <QHeaderView>
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

/** A section of the header of a view: the head of a column or row. */
struct SectionItem
{
    QPointer<QHeaderView> header;
    int index = -1;

    QString text() const;
    int position() const { return index; }
    /** In the header's viewport; empty for a hidden section. */
    QRect rect() const;
};

template <>
struct TypeName<SectionItem>
{
    static QByteArray get() { return "SectionItem"; }
};

template <>
struct TypeName<TabItem>
{
    static QByteArray get() { return "TabItem"; }
};

using Protocol::joinItemPath;
using Protocol::splitItemPath;

/** What a person reads: without the mark of the mnemonic and the shortcut. */
QString plainActionText(const QString& text);

/**
 * The item of a view, header, combo box, menu, menu bar, tab widget or tab bar: by the texts from the top
 * down, or with an empty path by row and column. A QModelIndex, a QAction, a TabItem or a SectionItem; none
 * when there is no such item. Throws for a widget that has no items.
 */
Value findItem(QObject* container, const QStringList& path, int row, int column);

/**
 * The end of the message for an item that is not there, as a sentence: what is below the part of the path
 * that does exist, what resembles the missing text most first.
 */
QString itemsInstead(QObject* container, const QStringList& path);

/** The item's path in its view, as joinItemPath() takes it. */
QStringList itemPath(const QModelIndex& index);

/** The view of a combo box or the view itself; null for others. */
QAbstractItemView* itemViewOf(QObject* container);

/**
 * The view that shows the index: the one that findItem() found it in last, else the first visible one in
 * tree order with its model; null when there is none.
 */
QAbstractItemView* viewOf(const QModelIndex& index);

/** Opens all parents of the item and brings it into view. */
void showItem(QAbstractItemView* view, const QModelIndex& index);

} // namespace Torvix::Agent

Q_DECLARE_METATYPE(Torvix::Agent::TabItem)
Q_DECLARE_METATYPE(Torvix::Agent::SectionItem)
