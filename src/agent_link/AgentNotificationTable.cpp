#include "agent_link/AgentNotificationTable.h"

#include "agent_link/SharedController.h"

namespace korvale {
namespace {

void handOver(std::uint32_t code) {
    if (AgentNotificationHandler* const controller = sharedController()) {
        controller->HandleAgentNotification(code);
    }
}

} // namespace

#define KORVALE_CALLBACK(notification, code, name)                                                 \
    void AgentNotification_##notification() {                                                      \
        handOver(code);                                                                            \
    }
KORVALE_AGENT_NOTIFICATIONS(KORVALE_CALLBACK)
#undef KORVALE_CALLBACK

} // namespace korvale
