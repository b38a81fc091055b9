#pragma once

#include "agent/reflection/value.h"

namespace Torvix::Agent {

class Registry;

/**
 * Registers the actions of scripts as static methods of the global class: mouseClick, doubleClick,
 * mouseDrag, mouseWheel, type, nativeType, clickButton, activateItem, clickItem, doubleClickItem,
 * expandItem, collapseItem, scrollTo, setFocus, closeWindow.
 *
 * Each takes an object of the tree, a QModelIndex, an item of an item widget or a TabItem first. They
 * add steps to the InputQueue; whoever calls them answers when those are done.
 */
void bindActions(Registry& registry);

} // namespace Torvix::Agent
