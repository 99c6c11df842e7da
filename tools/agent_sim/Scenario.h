#pragma once

#include "agent_sim/CommandInterpreter.h"

#include <QProcessEnvironment>

#include <vector>

namespace korvale::sim {

/// The lines of a scenario file, all of them understood, or what is wrong with the file.
struct Scenario {
    std::vector<ParsedLine> lines;
    QString problem;
};

/// `${NAME}` in an argument is the value of that environment variable, taken as it is: blanks and
/// quotes in it do not cut the argument. A variable that is not set is a problem.
[[nodiscard]] Scenario readScenario(const QString& text, const QProcessEnvironment& environment);
[[nodiscard]] Scenario loadScenario(const QString& file);

} // namespace korvale::sim
