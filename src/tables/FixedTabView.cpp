#include "tables/FixedTabView.h"

#include <QPaintEvent>
#include <QPainter>

namespace korvale {

FixedTabView::FixedTabView(QWidget* parent) : QTabWidget(parent) {}

void FixedTabView::paintEvent(QPaintEvent* event) {
    if (QWidget* behind = parentWidget(); behind != nullptr && !isWindow()) {
        QPainter painter(this);
        const QRegion dirty = event->region().translated(mapToParent(QPoint()));
        behind->render(&painter, event->region().boundingRect().topLeft(), dirty,
                       QWidget::DrawWindowBackground);
    }
    QTabWidget::paintEvent(event);
}

} // namespace korvale
