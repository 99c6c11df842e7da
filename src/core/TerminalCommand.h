#pragma once

#include "agent_link/AgentTalk.h"
#include "core/TerminalOptions.h"

#include <QObject>
#include <QString>
#include <QStringList>

namespace korvale {

class TerminalOutput;
class TerminationSignals;

/// Exit status of a terminal command.
namespace TerminalStatus {
inline constexpr int good = 0;
inline constexpr int found = 1;   ///< the scan did
inline constexpr int refused = 2; ///< by the agent, or used wrongly
inline constexpr int noAgent = 3;
inline constexpr int noAnswer = 4;
inline constexpr int interrupted = 128; ///< and the number of the signal
} // namespace TerminalStatus

/// Has the agent do what the options ask for and prints what becomes of it. Needs an event loop,
/// and no display. Main thread.
class TerminalCommand final : public QObject {
    Q_OBJECT
public:
    /// `folders` as FolderToScan names them. `output` outlives the object.
    TerminalCommand(TerminalOptions options, QStringList folders, TerminalOutput& output,
                    std::chrono::milliseconds answerLimit = AgentTalk::longestWait);

    void begin();

Q_SIGNALS:
    /// Once, with the exit status.
    void ended(int status);

private:
    void sendNext();
    void answered(RequestOutcome outcome, const QString& text);

    TerminalOptions m_options;
    QStringList m_folders; ///< those that were not asked for yet
    TerminalOutput& m_output;
    AgentTalk m_talk;
    QString m_folder; ///< that is asked for
    int m_status = TerminalStatus::good;
};

/// The whole command, after the QCoreApplication and the texts; gives the exit status. A signal of
/// `signalsOfTheSystem` ends it.
[[nodiscard]] int runTerminalCommand(const std::vector<QByteArray>& arguments,
                                     TerminationSignals& signalsOfTheSystem);

} // namespace korvale
