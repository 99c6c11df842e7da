#pragma once

#include <QAbstractNativeEventFilter>
#include <QIcon>
#include <QPoint>
#include <QWidget>

namespace korvale {

/// A picture in the X11 tray (System Tray Protocol Specification, XEmbed). It asks the tray to take
/// it in, and shows itself once it has. A tray that has another look than a flat colour shows
/// through where it can show pictures with transparency. Main thread.
class X11Dock final : public QWidget, private QAbstractNativeEventFilter {
    Q_OBJECT

public:
    X11Dock();
    ~X11Dock() override;

    /// Asks the present tray. Without an X server, or a tray, nothing happens.
    void dock();

    void setPicture(const QIcon& picture);

Q_SIGNALS:
    /// The user chose the picture itself.
    void chosen();
    /// The user wants the menu, at that place of the screen.
    void menuWanted(const QPoint& place);
    /// The tray has let it go, or has ended.
    void lost();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void parentIs(bool isTray);

    QIcon m_picture;
    bool m_isDocked = false;
};

} // namespace korvale
