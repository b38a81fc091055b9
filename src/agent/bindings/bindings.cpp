#include "agent/bindings/bindings.h"

namespace Torvix::Agent {

void bindAll(Registry& registry)
{
    bindGeometry(registry);
    bindValues(registry);
    bindEvents(registry);
    bindModels(registry);
    bindItemViews(registry);
    bindItemWidgets(registry);
    bindWidgets(registry);
    bindMenus(registry);
    bindGraphics(registry);
    bindText(registry);
    bindApplication(registry);
}

} // namespace Torvix::Agent
