#pragma once

#include <QProxyStyle>

QT_BEGIN_NAMESPACE
class QStyleOptionTab;
QT_END_NAMESPACE

namespace korvale {

/// Draws a tab bar flat: labels side by side on the window's background, the selected one
/// underlined in the highlight colour, a hairline below all of them.
class TabBarStyle final : public QProxyStyle {
    Q_OBJECT

public:
    /// `line`: colour of the hairline.
    void setLineColor(const QColor& line) { m_line = line; }

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type, const QStyleOption* option,
                                         const QSize& size, const QWidget* widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption* option,
                                  const QWidget* widget) const override;

private:
    void drawTab(const QStyleOptionTab& tab, QPainter& painter) const;

    QColor m_line;
};

} // namespace korvale
