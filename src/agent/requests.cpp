#include "agent/requests.h"

#include "agent/dispatcher.h"
#include "protocol/applicationmessages.h"

#include <QCoreApplication>

namespace Torvix::Agent {

using namespace Protocol;

void registerRequests(Dispatcher& dispatcher)
{
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
