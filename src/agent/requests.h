#pragma once

namespace Torvix::Agent {

class Dispatcher;

/** The handlers of the protocol's requests, by field; registerRequests() calls them all. */
void registerClassRequests(Dispatcher& dispatcher);
void registerMemberRequests(Dispatcher& dispatcher);
void registerTreeRequests(Dispatcher& dispatcher);
void registerInputRequests(Dispatcher& dispatcher);
void registerWaitRequests(Dispatcher& dispatcher);
void registerEventRequests(Dispatcher& dispatcher);

} // namespace Torvix::Agent
