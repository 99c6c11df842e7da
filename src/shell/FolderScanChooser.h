#pragma once

#include <QFileDialog>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

namespace korvale {

/// Lets the user choose one folder to be scanned, without holding up anything. Main thread.
class FolderScanChooser : public QObject {
    Q_OBJECT

public:
    /// `forwardFolderScan` gets the chosen folder's path unchanged; not called when the user
    /// cancels.
    explicit FolderScanChooser(std::function<void(const QString& folder)> forwardFolderScan,
                               QObject* parent = nullptr);
    ~FolderScanChooser() override;

    /// Opens the chooser, or brings the one that is open to the front.
    void scanSpecificFolder();

private:
    std::function<void(const QString&)> m_forwardFolderScan;
    QPointer<QFileDialog> m_dialog; ///< while open
};

} // namespace korvale
