#pragma once

#include <QtGlobal>

namespace Torvix::Agent {

class Registry;

/** Classes, or members of classes, that meta-objects don't tell, by field. */
void bindGeometry(Registry& registry);
void bindValues(Registry& registry);
void bindEvents(Registry& registry);
void bindModels(Registry& registry);
void bindItemViews(Registry& registry);
void bindItemWidgets(Registry& registry);
void bindWidgets(Registry& registry);
void bindMenus(Registry& registry);
void bindGraphics(Registry& registry);
void bindText(Registry& registry);
void bindApplication(Registry& registry);

/** All of them; once for a registry. */
void bindAll(Registry& registry);

} // namespace Torvix::Agent
