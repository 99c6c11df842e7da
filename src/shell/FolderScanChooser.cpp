#include "shell/FolderScanChooser.h"

#include "core/base/AgentCommands.h"
#include "core/base/Logging.h"
#include "platform/Texts.h"

namespace korvale {

FolderScanChooser::FolderScanChooser(AgentCommands& commands, QObject* parent)
    : QObject(parent), m_commands(commands) {}

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

} // namespace korvale
