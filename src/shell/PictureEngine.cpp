#include "shell/PictureEngine.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace korvale {
namespace {

QSize sizeOf(const PictureRaster& raster) {
    return {raster.width, raster.height};
}

QImage imageOf(const PictureRaster& raster) {
    QImage image(sizeOf(raster), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) { // no memory
        return image;
    }
    void* pixels = image.bits(); // without anything between the rows: each pixel is a word
    auto* to = static_cast<std::uint32_t*>(pixels);
    const std::uint32_t* const end = to + std::ptrdiff_t{raster.width} * raster.height;
    for (const std::uint32_t* from = raster.runs; to != end;) {
        const std::uint32_t count = *from >> 1;
        const bool isOneForAll = (*from++ & 1) != 0;
        to = isOneForAll ? std::fill_n(to, count, *from) : std::copy_n(from, count, to);
        from += isOneForAll ? 1 : count;
    }
    return image;
}

} // namespace

void PictureEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
                          QIcon::State state) {
    const qreal ratio = painter->device()->devicePixelRatioF();
    QPixmap picture = pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state);
    picture.setDevicePixelRatio(ratio);
    QRectF target({}, picture.deviceIndependentSize());
    target.moveCenter(QRectF(rect).center());
    painter->drawPixmap(target.topLeft(), picture);
}

QSize PictureEngine::actualSize(const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/) {
    return sizeOf(m_picture.rasters.back()).scaled(size, Qt::KeepAspectRatio);
}

QPixmap PictureEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) {
    const QSize wanted = actualSize(size, mode, state);
    if (wanted.isEmpty()) {
        return {};
    }
    const auto& rasters = m_picture.rasters;
    const auto ready = std::find_if(rasters.begin(), rasters.end(),
                                    [&](const PictureRaster& r) { return sizeOf(r) == wanted; });
    return QPixmap::fromImage(ready == rasters.end() ? drawn(wanted) : imageOf(*ready));
}

QList<QSize> PictureEngine::availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) {
    QList<QSize> sizes;
    sizes.reserve(static_cast<qsizetype>(m_picture.rasters.size()));
    for (const PictureRaster& raster : m_picture.rasters) {
        sizes.append(sizeOf(raster));
    }
    return sizes;
}

QImage PictureEngine::drawn(const QSize& size) const {
    QBuffer drawing;
    drawing.setData(m_picture.drawing.data(), static_cast<int>(m_picture.drawing.size()));
    QImageReader reader(&drawing, "svg");
    reader.setScaledSize(size);
    QImage image = reader.read();
    if (!image.isNull()) {
        return image;
    }
    // An installation without Qt's SVG reader: the largest ready size, scaled.
    return imageOf(m_picture.rasters.back())
        .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace korvale
