#pragma once

#include <QProxyStyle>

namespace korvale {

/// Draws menus as the application's style does, but for the frame of a check box: the style derives
/// its colour from the background alone, so that in a dark palette an empty box is not to be seen.
class MenuStyle final : public QProxyStyle {
    Q_OBJECT

public:
    explicit MenuStyle(QObject* parent);

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

} // namespace korvale
