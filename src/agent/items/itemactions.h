#pragma once

#include "agent/reflection/value.h"

#include <QModelIndex>
#include <QStringList>
#include <Qt>

namespace Torvix::Agent {

/** Brings an item into view in the view that shows it. */
void showIndex(const QModelIndex& index);
void showWidgetItem(const Value& item);

/** False when the target is no entry of a combo box whose list is closed; else chooses it in the list. */
bool chooseInClosedCombo(const Value& target);

/** What is done to an item of a container, by its path of texts. They add steps to the InputQueue. */
namespace ItemActions {

/** Picks a menu entry, a tab or an entry of a combo box; double-clicks an item of a view. */
void activate(QObject* container, const QStringList& path, Qt::MouseButton button,
              Qt::KeyboardModifiers modifiers);
void click(QObject* container, const QStringList& path, Qt::MouseButton button,
           Qt::KeyboardModifiers modifiers);
void doubleClick(QObject* container, const QStringList& path, Qt::MouseButton button,
                 Qt::KeyboardModifiers modifiers);
/** Opens or closes a branch with its own key; the button and modifiers are not used. */
void expand(QObject* container, const QStringList& path, Qt::MouseButton button,
            Qt::KeyboardModifiers modifiers);
void collapse(QObject* container, const QStringList& path, Qt::MouseButton button,
              Qt::KeyboardModifiers modifiers);
void scrollTo(QObject* container, const QStringList& path);

} // namespace ItemActions

} // namespace Torvix::Agent
