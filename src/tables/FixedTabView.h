#pragma once

#include <QTabWidget>

namespace korvale {

/// The tab view of the details window: before each redraw what lies behind it is drawn anew.
class FixedTabView : public QTabWidget {
    Q_OBJECT

public:
    explicit FixedTabView(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace korvale
