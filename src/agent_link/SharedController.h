#pragma once

#include <cstdint>

namespace korvale {

/// What the plain-function notification callbacks reach.
class AgentNotificationHandler {
public:
    virtual ~AgentNotificationHandler() = default;
    virtual void HandleAgentNotification(std::uint32_t code) = 0;
};

/// The process-wide shared controller; nullptr before there is one. Main thread.
[[nodiscard]] AgentNotificationHandler* sharedController();
/// Not owned. nullptr resets it (end of the program, tests).
void setSharedController(AgentNotificationHandler* controller);

} // namespace korvale
