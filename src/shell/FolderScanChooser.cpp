#include "shell/FolderScanChooser.h"

#include "core/base/AgentCommands.h"
#include "core/base/Logging.h"
#include "platform/Texts.h"
#include "shell/Resources.h"
#include "tables/WindowLook.h"

namespace korvale {

FolderScanChooser::FolderScanChooser(const Resources& resources, AgentCommands& commands,
                                     QObject* parent)
    : QObject(parent), m_resources(resources), m_commands(commands) {
    connect(&resources, &Resources::darkModeFlipped, this, &FolderScanChooser::showAppearance);
}

FolderScanChooser::~FolderScanChooser() {
    delete m_dialog;
}

void FolderScanChooser::scanSpecificFolder() {
    logLine(LogLevel::Debug, "specificFolder.");
    if (!m_dialog) {
        // Deletes itself when closed; until then this object owns it.
        m_dialog = new QFileDialog(nullptr, localizedText("ChooseFolderTitle"));
        m_dialog->setAttribute(Qt::WA_DeleteOnClose);
        m_dialog->setFileMode(QFileDialog::Directory);
        m_dialog->setOption(QFileDialog::ShowDirsOnly);
        showAppearance();
        connect(m_dialog, &QFileDialog::accepted, this, [this] {
            const QStringList chosen = m_dialog->selectedFiles();
            if (!chosen.isEmpty()) {
                m_commands.forwardFolderScan(chosen.constFirst());
            }
        });
    }
    m_dialog->show();
    m_dialog->raise();
    m_dialog->activateWindow();
}

void FolderScanChooser::showAppearance() {
    if (m_dialog) {
        m_dialog->setPalette(windowPalette(m_resources.isDark()));
    }
}

} // namespace korvale
