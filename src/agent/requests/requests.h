#pragma once

namespace Torvix::Agent {

class Dispatcher;

/**
 * Fills the dispatcher with every request of the protocol; and, the first time in a process, the registry
 * with all classes and actions and the list of toolkits.
 */
void registerRequests(Dispatcher& dispatcher);

/** The handlers of the protocol's requests, by field; registerRequests() calls them all. */
void registerClassRequests(Dispatcher& dispatcher);
void registerMemberRequests(Dispatcher& dispatcher);
void registerTreeRequests(Dispatcher& dispatcher);
void registerInputRequests(Dispatcher& dispatcher);
void registerWaitRequests(Dispatcher& dispatcher);
void registerEventRequests(Dispatcher& dispatcher);

} // namespace Torvix::Agent
