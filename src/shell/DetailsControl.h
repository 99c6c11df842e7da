#pragma once

#include "shell/TableControllers.h"
#include "tables/FollowedRow.h"

#include <QObject>

QT_BEGIN_NAMESPACE
class QPoint;
QT_END_NAMESPACE

namespace korvale {

class DetailsPane;
class FileManager;
class MainWindow;
class RowActions;
class ThreatsTableController;

/// Opens and closes the details of a row, keeps them in step with the tables, and offers the menu
/// of rows. The pane is made when it is first opened, the menu's actions when they are first
/// wanted.
///
/// While the pane is open it shows the current row, whichever that becomes; when the rows are
/// others it goes on with the same row, wherever that stands now. A row that leaves the table stays
/// to be read, marked as gone. Another tab closes the pane.
class DetailsControl final : public QObject {
    Q_OBJECT

public:
    /// Everything referred to outlives the object; the tables have their views.
    DetailsControl(MainWindow& window, const TableControllers& tables, FileManager& files);

private:
    void follow(ThreatsTableController& table);
    void open(ThreatsTableController& table, bool byKey);
    void showCurrentRow(ThreatsTableController& table);
    void showRow();
    void close();
    void copyRow();
    void copyPaths();
    void showMenu(ThreatsTableController& table, const QPoint& globalPosition);
    [[nodiscard]] bool isOpen() const;
    void makePane();
    [[nodiscard]] RowActions& menuActions();

    MainWindow& m_window;
    FileManager& m_files;
    DetailsPane* m_pane = nullptr;             ///< the window's
    RowActions* m_menuActions = nullptr;       ///< of the menu on the tables
    ThreatsTableController* m_table = nullptr; ///< whose row the pane shows
    ThreatsTableController* m_menuTable = nullptr;
    FollowedRow m_row;
};

} // namespace korvale
