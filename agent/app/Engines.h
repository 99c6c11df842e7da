#pragma once

#include "agent/app/Configuration.h"
#include "agent/engine/BuiltInEngine.h"
#include "agent/engine/ClamdEngine.h"
#include "agent/engine/CombinedEngine.h"

namespace korvale::agent {

/// The engines that judge, as the configuration wants them.
struct Engines {
    explicit Engines(const Configuration& configuration)
        : builtIn(configuration.hashLists),
          clamd({configuration.engineConfiguration, configuration.engineSocket,
                 std::chrono::seconds(2), configuration.state}) {}

    BuiltInEngine builtIn;
    ClamdEngine clamd;
    CombinedEngine both{builtIn, &clamd};
};

} // namespace korvale::agent
