#include "agent/dispatcher.h"
#include "agent/error.h"
#include "agent/eventhandlers.h"
#include "agent/recorder.h"
#include "agent/registry.h"
#include "agent/requests.h"
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
        if (request.function == QLatin1String("addToObjectMap"))
            return ValueReply(); // the map is the runner's; the agent names objects by their real names
        if (request.function != QLatin1String("classNames"))
            throw Error(QStringLiteral("unknown function '%1'").arg(request.function));
        QVector<Protocol::Value> names;
        for (const QByteArray& name : Registry::instance().names())
            names.append(Protocol::Value::ofString(QString::fromLatin1(name)));
        return ValueReply{Protocol::Value::ofArray(names)};
    });
}

} // namespace Torvix::Agent
