#include "agent/requests/requests.h"

#include "agent/actions/actions.h"
#include "agent/bindings/bindings.h"
#include "agent/lookup/windowtoolkit.h"
#include "agent/reflection/registry.h"
#include "agent/session/dispatcher.h"
#include "agent/widgets/widgettoolkit.h"
#include "protocol/applicationmessages.h"

#include <QCoreApplication>

namespace Torvix::Agent {

using namespace Protocol;

/** What the rooms below know of classes and toolkits only by asking. */
static bool fillTables()
{
    Toolkit::add(std::make_unique<WidgetToolkit>());
    Toolkit::add(std::make_unique<WindowToolkit>());
    bindAll(Registry::instance());
    bindActions(Registry::instance());
    return true;
}

void registerRequests(Dispatcher& dispatcher)
{
    static const bool filled = fillTables();
    Q_UNUSED(filled);
    dispatcher.on<Ping>([](Session&, const Ping&) { return Empty(); });
    dispatcher.on<EnvironmentVariable>([](Session&, const EnvironmentVariable& request) {
        return TextReply{qEnvironmentVariable(request.name.toUtf8().constData())};
    });
    registerClassRequests(dispatcher);
    registerMemberRequests(dispatcher);
    registerTreeRequests(dispatcher);
    registerInputRequests(dispatcher);
    registerWaitRequests(dispatcher);
    registerEventRequests(dispatcher);
}

} // namespace Torvix::Agent
