#pragma once

#include <QTabWidget>

namespace korvale {

class StripStyle;

/// The tab view of the details window: before each redraw what lies behind it is drawn anew, and
/// one widget, the strip, stands between the tabs and every page.
class FixedTabView : public QTabWidget {
    Q_OBJECT

public:
    explicit FixedTabView(QWidget* parent = nullptr);

    /// The strip becomes this view's child, as high as its layout wants to be. Once.
    void setStrip(QWidget* strip);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void placeStrip();

    StripStyle* m_style = nullptr; ///< with the strip
    QWidget* m_strip = nullptr;
};

} // namespace korvale
