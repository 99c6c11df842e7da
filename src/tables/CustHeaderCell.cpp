#include "tables/CustHeaderCell.h"

#include "platform/Texts.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QPolygonF>

#include <cmath>

namespace korvale {
namespace {

constexpr qreal separatorHeight = 1.0;
constexpr qreal narrowWidth = 160.0;
constexpr qreal narrowTrim = 0.5; // deliberate: a hair of space beside narrow titles
constexpr qreal sideMargin = 8.0;
constexpr qreal arrowWidth = 8.0;
constexpr qreal arrowHeight = 4.0;

QColor grey(float level, float alpha = 1.0F) {
    return QColor::fromRgbF(level, level, level, alpha);
}

QRectF arrowFrame(const QRectF& interior) {
    return {interior.right() - sideMargin - arrowWidth, interior.center().y() - arrowHeight / 2,
            arrowWidth, arrowHeight};
}

void drawArrow(QPainter& painter, const QRectF& frame, bool ascending) {
    const qreal tip = ascending ? frame.top() : frame.bottom();
    const qreal base = ascending ? frame.bottom() : frame.top();
    painter.setPen(Qt::NoPen);
    painter.setBrush(grey(0.25F));
    painter.drawPolygon(QPolygonF({QPointF(frame.left(), base), QPointF(frame.right(), base),
                                   QPointF(frame.center().x(), tip)}));
}

} // namespace

int CustHeaderCell::fittingWidth(const QFontMetrics& metrics) const {
    static constexpr qreal beside = 3 * sideMargin + arrowWidth + sideMargin / 2 + narrowTrim;
    return metrics.horizontalAdvance(m_title) + static_cast<int>(std::ceil(beside));
}

QString CustHeaderCell::sortOrderText() const {
    if (!m_sortAscending) {
        return {};
    }
    return localizedText(*m_sortAscending ? "HPS_SortedAscending" : "HPS_SortedDescending");
}

QRectF CustHeaderCell::gradientFrame(const QRectF& frame) {
    QRectF remainder = frame.adjusted(0, 0, 0, -separatorHeight);
    if (remainder.width() < narrowWidth) {
        remainder.setWidth(remainder.width() - narrowTrim);
    }
    return remainder;
}

QRectF CustHeaderCell::interiorFrame(const QRectF& frame) {
    return gradientFrame(frame).adjusted(0, 1, 0, -1);
}

void CustHeaderCell::drawWithFrame(QPainter& painter, const QRectF& frame) const {
    drawWithFrame(painter, frame, false);
}

void CustHeaderCell::drawWithFrame(QPainter& painter, const QRectF& frame, bool highlighted) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF remainder = gradientFrame(frame);
    QLinearGradient gradient(remainder.topLeft(), remainder.bottomLeft());
    gradient.setColorAt(0, Qt::white);
    gradient.setColorAt(1, grey(0.6F));
    painter.fillRect(remainder, gradient);
    if (highlighted) {
        painter.fillRect(remainder, grey(0.0F, 0.1F));
    }
    const QRectF separator(frame.left(), frame.bottom() - separatorHeight, frame.width(),
                           separatorHeight);
    painter.fillRect(separator, grey(0.8F));
    drawInterior(painter, interiorFrame(frame));
    painter.restore();
}

void CustHeaderCell::drawInterior(QPainter& painter, const QRectF& frame) const {
    QRectF place = frame.adjusted(sideMargin, 0, -sideMargin, 0);
    if (m_sortAscending) {
        drawArrow(painter, arrowFrame(frame), *m_sortAscending);
        place.setRight(arrowFrame(frame).left() - sideMargin / 2);
    }
    painter.setPen(Qt::black);
    const int width = static_cast<int>(std::floor(place.width()));
    const QString line = painter.fontMetrics().elidedText(m_title, Qt::ElideRight, width);
    painter.drawText(place, Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine, line);
}

} // namespace korvale
