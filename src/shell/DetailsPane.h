#pragma once

#include "shell/RowActions.h"
#include "tables/RowDetails.h"

#include <QWidget>

QT_BEGIN_NAMESPACE
class QLabel;
QT_END_NAMESPACE

namespace korvale {

class DetailsText;

/// The pane below the tables: everything about one row, what its category means, and what can be
/// done. Knows no table; whoever opened it says what it shows.
class DetailsPane final : public QWidget {
    Q_OBJECT

public:
    /// `files` outlives the pane.
    explicit DetailsPane(FileManager& files, QWidget* parent = nullptr);

    void setDetails(const RowDetails& details);
    /// The row has left its table: its texts stay to be read, and a line says so.
    void setGone();
    /// Neither a file nor its folder could be shown.
    void sayNotShown();
    /// The texts get the focus.
    void focusText();
    [[nodiscard]] const RowActions& actions() const { return *m_actions; }

Q_SIGNALS:
    /// The row is to be copied, or its paths.
    void copyRowWanted();
    void copyPathWanted();
    void closeWanted();

private:
    struct Target {
        bool hasRow = false;
        QString path;
        friend bool operator==(const Target&, const Target&) = default;
    };

    void makeButtons();
    void showMenu(const QPoint& globalPosition);
    void copy();
    void retarget();
    void say(const QString& notice);

    RowActions* m_actions = nullptr;
    QLabel* m_notice = nullptr;
    DetailsText* m_text = nullptr;
    Target m_target;
    bool m_hasRow = false;
};

} // namespace korvale
