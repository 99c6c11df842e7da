#pragma once

#include "shell/Pictures.h"

#include <QIconEngine>
#include <QImage>

namespace korvale {

/// Draws a compiled-in picture: at its ready sizes from their runs of pixels, at others from its
/// drawing, for which Qt's SVG reader is loaded at the first need. Keeps the picture's proportions.
class PictureEngine final : public QIconEngine {
public:
    /// `picture` outlives the engine.
    explicit PictureEngine(const Picture& picture) : m_picture(picture) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;
    QIconEngine* clone() const override { return new PictureEngine(m_picture); }
    QString key() const override { return QStringLiteral("KorvalePicture"); }
    bool isNull() override { return false; }

private:
    [[nodiscard]] QImage drawn(const QSize& size) const;

    const Picture& m_picture;
};

} // namespace korvale
