#include "agent_sim/Publishing.h"

#include "agent_sim/Agent.h"

namespace korvale::sim {

Outcome publishWhenRead(Agent& agent, std::optional<std::uint32_t> mask) {
    if (agent.lastBatchIsRead()) {
        return Outcome::of(agent.publish(mask));
    }
    return Outcome::waiting([&agent, mask] {
        return agent.lastBatchIsRead() ? Outcome::of(agent.publish(mask)) : Outcome::waiting({});
    });
}

Outcome publishChange(Agent& agent) {
    return agent.collectsChanges() ? Outcome::ok() : publishWhenRead(agent);
}

} // namespace korvale::sim
