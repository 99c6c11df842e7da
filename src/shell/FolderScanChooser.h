#pragma once

#include <QFileDialog>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>

namespace korvale {

class AgentCommands;
class Resources;

/// Lets the user choose one folder to be scanned, without holding up anything. Main thread.
class FolderScanChooser : public QObject {
    Q_OBJECT

public:
    /// `commands` gets the chosen folder's path unchanged, and nothing when the user cancels. The
    /// chooser follows the appearance that `resources` know. Both outlive the object.
    FolderScanChooser(const Resources& resources, AgentCommands& commands,
                      QObject* parent = nullptr);
    ~FolderScanChooser() override;

    /// Opens the chooser, or brings the one that is open to the front. The token is what the
    /// desktop handed on with the user's wish, or empty.
    void scanSpecificFolder(const QString& activationToken = {});

    /// The path of the first of these places; empty when there is none, or it is on no local disk.
    [[nodiscard]] static QString localFolder(const QList<QUrl>& chosen);

Q_SIGNALS:
    /// The scan of the chosen folder has been asked for.
    void scanWasAsked();

private:
    void showAppearance();

    const Resources& m_resources;
    AgentCommands& m_commands;
    QPointer<QFileDialog> m_dialog; ///< while open
};

} // namespace korvale
