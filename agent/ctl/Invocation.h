#pragma once

#include <QJsonObject>
#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace korvale::agent {

/// What the command line asks for.
struct Invocation {
    enum class Kind { Call, Help, Version };

    Kind kind = Kind::Call;
    QString method; ///< of the control interface
    QJsonObject arguments;
    bool json = false;    ///< print the answer as it is
    bool wait = false;    ///< for the end of the scan that is begun
    bool confirm = false; ///< ask before it is done
};

/// Reads the words behind the program's name, raw bytes. Nothing, and a sentence in `error`, when
/// they make no sense. Relative paths are made absolute; a link in the path of a file's folder is
/// followed, as the agent knows files by their real folder.
[[nodiscard]] std::optional<Invocation> readCommandLine(const std::vector<std::string>& words,
                                                        std::string& error);

/// The text of --help.
[[nodiscard]] std::string commandHelp();

} // namespace korvale::agent
