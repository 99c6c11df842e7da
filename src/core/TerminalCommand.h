#pragma once

#include "agent_link/AgentTalk.h"
#include "core/TerminalOptions.h"
#include "core/TerminalStatus.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace korvale {

class TerminalOutput;
class TerminalWait;
class TerminationSignals;

/// Has the agent do what the options ask for and prints what becomes of it. Needs an event loop,
/// and no display. Main thread.
class TerminalCommand final : public QObject {
    Q_OBJECT
public:
    /// `folders` as FolderToScan names them. `output` outlives the object.
    TerminalCommand(TerminalOptions options, QStringList folders, TerminalOutput& output,
                    std::chrono::milliseconds answerLimit = AgentTalk::longestWait);
    ~TerminalCommand() override;

    void begin();
    /// The command ends before it is done: says what goes on without it.
    void interrupt();

Q_SIGNALS:
    /// Once, with the exit status.
    void ended(int status);

private:
    void sendNext();
    void prepareWait();
    void answered(RequestOutcome outcome, const QString& text);
    void waited(int status, const char* complaint);
    void goOn();

    TerminalOptions m_options;
    QStringList m_folders; ///< those that were not asked for yet
    TerminalOutput& m_output;
    AgentTalk m_talk;
    QString m_folder;                     ///< that is asked for
    std::unique_ptr<TerminalWait> m_wait; ///< while something is asked or waited for
    bool m_isWaiting = false;             ///< the agent has said yes
    int m_status = TerminalStatus::good;
};

/// The whole command, after the QCoreApplication and the texts; gives the exit status. A signal of
/// `signalsOfTheSystem` ends it.
[[nodiscard]] int runTerminalCommand(const std::vector<QByteArray>& arguments,
                                     TerminationSignals& signalsOfTheSystem);

} // namespace korvale
