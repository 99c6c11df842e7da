#pragma once

#include <Qt>

QT_BEGIN_NAMESPACE
class QPainter;
class QRect;
class QWidget;
QT_END_NAMESPACE

namespace korvale {

/// Whether a table shows where the keyboard's focus is: always, but while it is worked with the
/// mouse. Whoever comes back from another window, a menu or another tab sees where he is.
class TableFocus {
public:
    /// `table` outlives the object.
    explicit TableFocus(const QWidget& table) : m_table(table) {}

    void keyPressed() { m_byMouse = false; }
    void mousePressed() { m_byMouse = true; }
    void focusCame(Qt::FocusReason reason);

    [[nodiscard]] bool isByMouse() const { return m_byMouse; }
    /// The table has the focus, and its window is the active one.
    [[nodiscard]] bool isInUse() const;
    [[nodiscard]] bool isShown() const { return !m_byMouse && isInUse(); }

    static void paint(QPainter& painter, const QRect& around);

private:
    const QWidget& m_table;
    bool m_byMouse = false;
};

} // namespace korvale
