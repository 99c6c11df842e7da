#pragma once

#include <QFileDialog>
#include <QObject>
#include <QPointer>

namespace korvale {

class AgentCommands;

/// Lets the user choose one folder to be scanned, without holding up anything. Main thread.
class FolderScanChooser : public QObject {
    Q_OBJECT

public:
    /// `commands` gets the chosen folder's path unchanged, and nothing when the user cancels.
    explicit FolderScanChooser(AgentCommands& commands, QObject* parent = nullptr);
    ~FolderScanChooser() override;

    /// Opens the chooser, or brings the one that is open to the front.
    void scanSpecificFolder();

private:
    AgentCommands& m_commands;
    QPointer<QFileDialog> m_dialog; ///< while open
};

} // namespace korvale
