#include "agent_link/AgentNotificationTable.h"

#include "agent_link/SharedController.h"

#include <algorithm>

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

const AgentNotificationRow* agentNotificationOf(const QString& interface, const QString& signal) {
    const QString name = interface + u'.' + signal;
    const auto* const row = std::find_if(
        agentNotificationTable.begin(), agentNotificationTable.end(),
        [&name](const AgentNotificationRow& known) { return name == QLatin1String(known.name); });
    return row == agentNotificationTable.end() ? nullptr : row;
}

QStringList agentNotificationInterfaces() {
    QStringList interfaces;
    for (const AgentNotificationRow& row : agentNotificationTable) {
        const QString name = QString::fromLatin1(row.name);
        const QString interface = name.left(name.lastIndexOf(u'.'));
        if (!interfaces.contains(interface)) {
            interfaces << interface;
        }
    }
    return interfaces;
}

} // namespace korvale
