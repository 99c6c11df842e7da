#include "tables/FixedTabView.h"

#include "tables/StripStyle.h"

#include <QLayout>
#include <QPaintEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QStyleOptionTabWidgetFrame>
#include <QTabBar>

namespace korvale {

FixedTabView::FixedTabView(QWidget* parent) : QTabWidget(parent) {}

void FixedTabView::setStrip(QWidget* strip) {
    m_style = new StripStyle;
    m_style->setParent(this);
    setStyle(m_style);
    m_strip = strip;
    m_strip->setParent(this);
    m_strip->installEventFilter(this);
    setTabOrder(tabBar(), m_strip);
    m_strip->show();
    placeStrip();
}

bool FixedTabView::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) {
        placeStrip(); // it may want another height
    }
    return QTabWidget::event(event);
}

bool FixedTabView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_strip && event->type() == QEvent::LayoutRequest) {
        // At once: the request that follows for this view would come after the next picture.
        m_strip->layout()->activate();
        placeStrip();
    }
    return QTabWidget::eventFilter(watched, event);
}

void FixedTabView::resizeEvent(QResizeEvent* event) {
    QTabWidget::resizeEvent(event);
    placeStrip();
}

void FixedTabView::placeStrip() {
    if (m_strip == nullptr) {
        return;
    }
    QStyleOptionTabWidgetFrame option;
    initStyleOption(&option);
    m_style->setHeight(0);
    const QRect room = m_style->subElementRect(QStyle::SE_TabWidgetTabContents, &option, this);
    const QLayout& layout = *m_strip->layout();
    const int height = layout.hasHeightForWidth() ? layout.totalHeightForWidth(room.width())
                                                  : m_strip->sizeHint().height();
    m_style->setHeight(height);
    m_strip->setGeometry(room.left(), room.top(), room.width(), height);
    QResizeEvent anew(size(), size());
    QTabWidget::resizeEvent(&anew); // lays the pages out
}

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
