#pragma once

#include <Qt>

QT_BEGIN_NAMESPACE
class QPainter;
class QRect;
class QWidget;
QT_END_NAMESPACE

namespace korvale {

/// Whether a table shows where the keyboard's focus is: to those who come by keyboard.
class TableFocus {
public:
    /// `table` outlives the object.
    explicit TableFocus(const QWidget& table) : m_table(table) {}

    void keyPressed() { m_byKeyboard = true; }
    void mousePressed() { m_byKeyboard = false; }
    void focusCame(Qt::FocusReason reason);

    /// The table has the focus, and its window is the active one.
    [[nodiscard]] bool isInUse() const;
    [[nodiscard]] bool isShown() const { return m_byKeyboard && isInUse(); }

    static void paint(QPainter& painter, const QRect& around);

private:
    const QWidget& m_table;
    bool m_byKeyboard = false;
};

} // namespace korvale
