#pragma once

#include <QProxyStyle>

namespace korvale {

/// Draws menus as the application's style does, but for their frames and those of check boxes: the
/// style derives their colour from the background alone, so that neither an empty box nor where a
/// menu ends is to be seen in a dark palette.
class MenuStyle final : public QProxyStyle {
    Q_OBJECT

public:
    explicit MenuStyle(QObject* parent);

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

} // namespace korvale
