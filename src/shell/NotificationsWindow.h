#pragma once

#include <QWidget>

QT_BEGIN_NAMESPACE
class QAction;
class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;
QT_END_NAMESPACE

namespace korvale {

class LinkOpener;
class NotificationHistory;
struct NotificationRecord;

/// The last desktop notifications, the newest first, each with its text that can be copied and a
/// button for its link. Never modal; Escape and Ctrl+W close it.
class NotificationsWindow final : public QWidget {
    Q_OBJECT

public:
    /// Has `history` read its file. Both outlive the window.
    NotificationsWindow(NotificationHistory& history, LinkOpener& linkOpener,
                        QWidget* parent = nullptr);

    void setDark(bool dark, bool highContrast = false);

private:
    void makeParts();
    void makeKeys();
    void showAll();
    void showNewest();
    void insertEntry(int position, const NotificationRecord& record);
    void removeEntriesFrom(int position);
    void showWhetherEmpty();
    void copy();

    NotificationHistory& m_history;
    LinkOpener& m_linkOpener;
    QScrollArea* m_area = nullptr;
    QVBoxLayout* m_entries = nullptr; ///< of NotificationEntry, and the space behind them
    QLabel* m_empty = nullptr;
    QPushButton* m_clear = nullptr;
    QAction* m_copy = nullptr; ///< of whatever text has the focus
};

} // namespace korvale
