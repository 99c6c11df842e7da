#pragma once

#include "tables/RowDetails.h"

#include <QTextEdit>

namespace korvale {

/// The details of one row as text that can be selected, by mouse and keyboard, and read by screen
/// readers: a label and its text a line. Texts of others are never markup, and what is copied is
/// plain text.
class DetailsText final : public QTextEdit {
    Q_OBJECT

public:
    explicit DetailsText(QWidget* parent = nullptr);

    /// Of the same details nothing changes: place and selection stay.
    void setDetails(const RowDetails& details);
    /// The file of the line that the cursor is in; else the row's first, or none.
    [[nodiscard]] QString currentPath() const;

Q_SIGNALS:
    void currentPathChanged();
    /// The copy key without a selected text.
    void copyWanted();
    void contextMenuWanted(const QPoint& globalPosition);

protected:
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void write();
    [[nodiscard]] int labelWidth() const;
    void showContextMenuAtCursor();
    void lookAtCursor();

    RowDetails m_details;
    QString m_currentPath;
    bool m_isWriting = false;
};

} // namespace korvale
