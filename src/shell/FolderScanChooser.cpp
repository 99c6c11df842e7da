#include "shell/FolderScanChooser.h"

#include "core/base/AgentCommands.h"
#include "core/base/Logging.h"
#include "platform/Texts.h"
#include "shell/Resources.h"
#include "shell/WindowActivation.h"
#include "tables/WindowLook.h"

#include <QDir>

namespace korvale {

FolderScanChooser::FolderScanChooser(const Resources& resources, AgentCommands& commands,
                                     QObject* parent)
    : QObject(parent), m_resources(resources), m_commands(commands) {
    connect(&resources, &Resources::darkModeFlipped, this, &FolderScanChooser::showAppearance);
}

FolderScanChooser::~FolderScanChooser() {
    delete m_dialog;
}

// A desktop's own dialog may offer other machines' folders all the same.
QString FolderScanChooser::localFolder(const QList<QUrl>& chosen) {
    return chosen.isEmpty() ? QString() : chosen.constFirst().toLocalFile();
}

void FolderScanChooser::scanSpecificFolder(const QString& activationToken) {
    logLine(LogLevel::Debug, "specificFolder.");
    if (!m_dialog) {
        // Deletes itself when closed; until then this object owns it.
        m_dialog = new QFileDialog(nullptr, localizedText("ChooseFolderTitle"));
        m_dialog->setAttribute(Qt::WA_DeleteOnClose);
        m_dialog->setWindowIcon(m_resources.programIcon());
        m_dialog->setDirectory(QDir::homePath()); // whoever started the program may be anywhere
        m_dialog->setFileMode(QFileDialog::Directory);
        m_dialog->setOption(QFileDialog::ShowDirsOnly);
        m_dialog->setSupportedSchemes({QStringLiteral("file")}); // the agent scans this machine
        showAppearance();
        connect(m_dialog, &QFileDialog::accepted, this, [this] {
            const QString folder = localFolder(m_dialog->selectedUrls());
            if (!folder.isEmpty()) {
                m_commands.forwardFolderScan(folder);
                Q_EMIT scanWasAsked();
            }
        });
    }
    bringToFront(*m_dialog, activationToken);
}

void FolderScanChooser::showAppearance() {
    if (m_dialog) {
        m_dialog->setPalette(windowPalette(m_resources.isDark(), m_resources.isHighContrast()));
    }
}

} // namespace korvale
