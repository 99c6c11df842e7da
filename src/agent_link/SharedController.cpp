#include "agent_link/SharedController.h"

namespace korvale {
namespace {

AgentNotificationHandler* theSharedController = nullptr;

} // namespace

AgentNotificationHandler* sharedController() {
    return theSharedController;
}
void setSharedController(AgentNotificationHandler* controller) {
    theSharedController = controller;
}

} // namespace korvale
