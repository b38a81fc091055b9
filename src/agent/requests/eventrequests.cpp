#include "agent/events/eventhandlers.h"
#include "agent/events/recorder.h"
#include "agent/requests/remotefunctions.h"
#include "agent/requests/requests.h"
#include "agent/session/dispatcher.h"
#include "protocol/applicationmessages.h"
#include "protocol/eventmessages.h"
#include "protocol/usermessages.h"

namespace Torvix::Agent {

using namespace Protocol;

void registerEventRequests(Dispatcher& dispatcher)
{
    dispatcher.on<InstallHandler>([](Session& session, const InstallHandler& request) {
        EventHandlers::instance().install(session, request);
        return Empty();
    });
    dispatcher.on<UninstallHandler>([](Session& session, const UninstallHandler& request) {
        EventHandlers::instance().uninstall(session, request);
        return Empty();
    });
    dispatcher.on<Record>([](Session& session, const Record& request) {
        Recorder::instance().set(request.on ? session.shared_from_this() : nullptr);
        return Empty();
    });
    dispatcher.on<RemoteCall>([](Session&, const RemoteCall& request) {
        return ValueReply{callRemoteFunction(request.function, request.arguments)};
    });
}

} // namespace Torvix::Agent
