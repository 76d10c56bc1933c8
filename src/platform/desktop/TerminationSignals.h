#pragma once

#include <functional>

// Turns SIGTERM, SIGINT and SIGHUP into a call on the event loop, so that a desktop logout or
// a kill ends the program as its Exit button does (the strip given back, the settings saved).
namespace TerminationSignals {
void install(std::function<void()> onSignal);
}
