#pragma once

#include "agent_sim/Outcome.h"

#include <QLatin1String>

#include <span>

namespace korvale::sim {

class Agent;

/// One command: a row of the table that the help text is made of.
struct Command {
    /// From this argument on the rest of the line is one argument, blanks included.
    static constexpr int kNoRest = 99;

    QLatin1String name;
    QLatin1String arguments; ///< as the help text shows them
    int least;               ///< number of arguments
    int most;
    int restFrom;
    QLatin1String help;
    Outcome (*run)(Agent& agent, const QStringList& arguments);
};

[[nodiscard]] std::span<const Command> commands();
[[nodiscard]] const Command* findCommand(const QString& name);
/// The whole table as text, for --help and `help`.
[[nodiscard]] QString commandHelp();

} // namespace korvale::sim
