#pragma once

#include <QAction>
#include <QMenu>

namespace korvale {

/// A menu item whose check mark only the program sets: a click triggers it, but leaves the mark.
class MarkedAction final : public QAction {
    Q_OBJECT

public:
    explicit MarkedAction(QObject* parent);

    [[nodiscard]] bool mark() const { return m_mark; }
    void setMark(bool isOn);

private:
    bool m_mark = false;
};

/// A menu that never shows, and never tells a panel, the moment in which a clicked item has turned
/// its own mark.
class MarkedMenu final : public QMenu {
    Q_OBJECT

public:
    using QMenu::QMenu;

protected:
    void actionEvent(QActionEvent* event) override;
};

} // namespace korvale
