#pragma once

#include "platform/FileManager.h"

#include <QObject>
#include <QString>

#include <array>
#include <cstdint>
#include <functional>

QT_BEGIN_NAMESPACE
class QAction;
QT_END_NAMESPACE

namespace korvale {

/// What can be done with a row, as actions for menus and buttons.
enum class RowAction : std::uint8_t { Copy, CopyPath, SelectAll, Show };
inline constexpr std::size_t rowActionCount = 4;

/// The actions of one place where rows are worked with: the pane, or a menu on the table. "Show in
/// file manager" is offered once it is known that the file is there.
class RowActions final : public QObject {
    Q_OBJECT

public:
    /// `files` outlives the object.
    explicit RowActions(FileManager& files, QObject* parent = nullptr);

    [[nodiscard]] QAction& action(RowAction action) const {
        return *m_actions[static_cast<std::size_t>(action)];
    }
    /// Whether there is a row at all, and the file that "Show in File Manager" means: empty for
    /// none.
    void setTarget(bool hasRow, const QString& path);

Q_SIGNALS:
    void copyWanted();
    void copyPathWanted();
    void selectAllWanted();
    /// Neither the file nor its folder could be shown.
    void notShown();

private:
    void lookForFile();
    void showFile();

    FileManager& m_files;
    std::array<QAction*, rowActionCount> m_actions;
    QString m_path;
};

} // namespace korvale
