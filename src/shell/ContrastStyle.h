#pragma once

#include <QProxyStyle>

namespace korvale {

/// The desktop's style with edges that can be seen while the desktop asks for high contrast: the
/// toolkit derives them from the background, and between black and black, or white and light grey,
/// fields, buttons and scroll bars would be known from their texts alone. Everything is drawn in
/// the palette of the widget.
class ContrastStyle final : public QProxyStyle {
    Q_OBJECT

public:
    /// Puts it between the program and its style, or takes it away again. Does nothing otherwise.
    static void setInUse(bool isInUse);

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;

private:
    explicit ContrastStyle(const QString& base);

    void drawScrollBar(const QStyleOptionComplex& option, QPainter& painter,
                       const QWidget* widget) const;

    QString m_base; ///< the name of the program's style
};

} // namespace korvale
