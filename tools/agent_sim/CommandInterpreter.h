#pragma once

#include "agent_sim/CommandTable.h"

namespace korvale::sim {

/// A line that was understood, or why it was not.
struct ParsedLine {
    const Command* command = nullptr; ///< null when there is nothing to run
    QStringList arguments;
    QString problem; ///< empty for blank lines and comments too

    [[nodiscard]] bool isEmpty() const { return command == nullptr && problem.isEmpty(); }
};

[[nodiscard]] ParsedLine parseLine(const QString& line);

} // namespace korvale::sim
