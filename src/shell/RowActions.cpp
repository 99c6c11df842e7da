#include "shell/RowActions.h"

#include "platform/Texts.h"
#include "shell/MenuLabel.h"

#include <QAction>

namespace korvale {
namespace {

constexpr std::array<const char*, rowActionCount> textKeys{"HPS_PaneCopy", "HPS_PaneCopyPath",
                                                           "HPS_PaneSelectAll", "HPS_PaneShow"};

} // namespace

RowActions::RowActions(FileManager& files, QObject* parent) : QObject(parent), m_files(files) {
    for (std::size_t i = 0; i < rowActionCount; ++i) {
        m_actions[i] =
            new QAction(menuLabel(localizedText(textKeys[i]), MenuRenderer::Toolkit), this);
    }
    connect(&action(RowAction::Copy), &QAction::triggered, this, &RowActions::copyWanted);
    connect(&action(RowAction::CopyPath), &QAction::triggered, this, &RowActions::copyPathWanted);
    connect(&action(RowAction::SelectAll), &QAction::triggered, this, &RowActions::selectAllWanted);
    connect(&action(RowAction::Show), &QAction::triggered, this, &RowActions::showFile);
}

void RowActions::setTarget(bool hasRow, const QString& path) {
    m_path = path;
    action(RowAction::Copy).setEnabled(hasRow);
    action(RowAction::CopyPath).setEnabled(!path.isEmpty());
    action(RowAction::Show).setEnabled(false);
    if (!path.isEmpty()) {
        lookForFile();
    }
}

void RowActions::lookForFile() {
    m_files.lookFor(m_path, this, [this, path = m_path](bool isThere) {
        if (path == m_path) {
            action(RowAction::Show).setEnabled(isThere);
        }
    });
}

void RowActions::showFile() {
    m_files.show(m_path, this, [this](bool isShown) {
        if (!isShown) {
            Q_EMIT notShown();
        }
    });
}

} // namespace korvale
