#include "tables/CellView.h"

#include "platform/SafeText.h"
#include "tables/WindowLook.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace korvale {
namespace {

// Stacked marks can draw far outside their line.
bool mayLeaveItsLine(const QString& text) {
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() >= 0x0300; });
}

} // namespace

void CellView::setText(const QString& text) {
    m_text = text;
    m_shownText = singleLineText(text);
}

void CellView::draw(QPainter& painter, const QRect& frame, Qt::LayoutDirection direction) const {
    painter.fillRect(frame, m_backgroundColor);
    if (m_shownText.isEmpty()) {
        return;
    }
    const QRect place = frame.adjusted(look::cellMargin, 0, -look::cellMargin, 0);
    const bool truncate = m_lineBreakMode == LineBreakMode::TruncateTail;
    const QString line =
        truncate ? painter.fontMetrics().elidedText(m_shownText, Qt::ElideRight, place.width())
                 : m_shownText;
    const bool clip = mayLeaveItsLine(line);
    if (clip) {
        painter.save();
        painter.setClipRect(frame, Qt::IntersectClip);
    }
    painter.setPen(m_textColor);
    painter.setLayoutDirection(direction);
    painter.drawText(place, Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine, line);
    if (clip) {
        painter.restore();
    }
}

} // namespace korvale
