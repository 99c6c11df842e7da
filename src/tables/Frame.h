#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QColor;
class QPainter;
class QRect;
QT_END_NAMESPACE

namespace korvale {

/// Draws the edge of `rect`, all of it inside, `width` device-independent pixels wide. Unlike a
/// stroked rectangle it has its four sides at any scale of the screen: a stroke is shared between
/// both sides of its middle, and at 1.5 the outer half may be all there is and be cut off.
void paintFrame(QPainter& painter, const QRect& rect, const QColor& color, int width = 1);

} // namespace korvale
