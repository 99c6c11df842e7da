#pragma once

#include <QIcon>
#include <QLabel>
#include <QPoint>

#include <optional>

namespace korvale {

/// A picture by which the user can drag the window (X11 and Wayland). A click without dragging, or
/// Space or Return where it can have the focus, is reported.
class KvImageView : public QLabel {
    Q_OBJECT

public:
    explicit KvImageView(QWidget* parent = nullptr);

    /// Drawn sharp at every scale factor; a null icon shows nothing.
    void setImage(const QIcon& image);
    [[nodiscard]] const QIcon& image() const { return m_image; }
    /// In device-independent pixels; 24 x 24 at first.
    void setImageSize(const QSize& size);
    [[nodiscard]] QSize imageSize() const { return m_imageSize; }
    /// Shown as something to click on, and reachable by keyboard. Off at first.
    void setClickable(bool clickable);
    [[nodiscard]] bool isClickable() const { return m_clickable; }

    /// A mouse-down in it may move the window.
    [[nodiscard]] static constexpr bool mouseDownCanMoveWindow() { return true; }

Q_SIGNALS:
    void clicked();

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    /// The picture, and around it a ring while it has the keyboard's focus.
    void paintEvent(QPaintEvent* event) override;
    /// Hands the drag to the window manager; false when it cannot.
    virtual bool startWindowMove();

private:
    void showImage();

    QIcon m_image;
    QSize m_imageSize{24, 24};
    std::optional<QPoint> m_pressed;
    bool m_clickable = false;
};

} // namespace korvale
