#include "tables/KvImageView.h"

#include "tables/Access.h"
#include "tables/WindowLook.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

namespace korvale {

KvImageView::KvImageView(QWidget* parent) : QLabel(parent) {
    setAlignment(Qt::AlignCenter);
    installAccess();
}

void KvImageView::setImage(const QIcon& image) {
    m_image = image;
    showImage();
}

void KvImageView::setImageSize(const QSize& size) {
    m_imageSize = size;
    showImage();
}

void KvImageView::setClickable(bool clickable) {
    m_clickable = clickable;
    setFocusPolicy(clickable ? Qt::TabFocus : Qt::NoFocus);
    if (clickable) {
        setCursor(Qt::PointingHandCursor);
    } else {
        unsetCursor();
    }
}

void KvImageView::showImage() {
    setPixmap(m_image.isNull() ? QPixmap() : m_image.pixmap(m_imageSize, devicePixelRatioF()));
}

bool KvImageView::event(QEvent* event) {
    // The scale factor of the screen is known once there is a window, and may change with the
    // screen.
    if (event->type() == QEvent::Show || event->type() == QEvent::ScreenChangeInternal) {
        showImage();
    }
    return QLabel::event(event);
}

void KvImageView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_pressed = event->position().toPoint();
    }
    event->accept();
}

void KvImageView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_pressed) {
        return;
    }
    const QPoint distance = event->position().toPoint() - *m_pressed;
    if (distance.manhattanLength() >= QApplication::startDragDistance()) {
        m_pressed.reset(); // from here on the window manager has the pointer
        startWindowMove();
    }
}

void KvImageView::mouseReleaseEvent(QMouseEvent* event) {
    const bool wasPressed = m_pressed.has_value();
    m_pressed.reset();
    if (wasPressed && event->button() == Qt::LeftButton &&
        rect().contains(event->position().toPoint())) {
        Q_EMIT clicked();
    }
}

void KvImageView::keyPressEvent(QKeyEvent* event) {
    const bool activates = event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
                           event->key() == Qt::Key_Enter;
    if (m_clickable && activates) {
        Q_EMIT clicked();
    } else {
        event->ignore();
    }
}

void KvImageView::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    if (!hasFocus()) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), look::focusRingWidth));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), look::focusRingRadius,
                            look::focusRingRadius);
}

bool KvImageView::startWindowMove() {
    QWindow* handle = window()->windowHandle();
    return handle != nullptr && handle->startSystemMove();
}

} // namespace korvale
