#include "shell/X11Dock.h"

#include "shell/X11Server.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>

#include <array>

namespace korvale {
namespace {

constexpr int preferredSide = 22; // pixels; the tray gives another size if it likes
constexpr std::uint8_t bits32 = 32;

/// Trays that can show pictures with transparency say so by naming a visual of 32 bits.
bool hasTransparency(const X11Server& server, xcb_window_t tray) {
    const auto visual = server.number(tray, "_NET_SYSTEM_TRAY_VISUAL", XCB_ATOM_VISUALID);
    return visual && server.depthOf(*visual) == bits32;
}

} // namespace

X11Dock::X11Dock()
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                           Qt::WindowDoesNotAcceptFocus) {
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setFocusPolicy(Qt::NoFocus);
    resize(preferredSide, preferredSide);
    setMinimumSize(preferredSide, preferredSide); // a tray hides what asks for no room
}

X11Dock::~X11Dock() {
    qGuiApp->removeNativeEventFilter(this);
}

void X11Dock::dock() {
    const X11Server server;
    const xcb_window_t tray = server.isThere() ? server.trayWindow() : XCB_NONE;
    if (tray == XCB_NONE) {
        return;
    }
    setAttribute(Qt::WA_TranslucentBackground, hasTransparency(server, tray));
    const auto window = static_cast<xcb_window_t>(winId());
    qGuiApp->installNativeEventFilter(this);
    // Version 0 of XEmbed, and: show it.
    static constexpr std::array<std::uint32_t, 2> embedding{0, 1};
    const xcb_atom_t info = server.atom("_XEMBED_INFO");
    xcb_change_property(server.connection(), XCB_PROP_MODE_REPLACE, window, info, info, bits32,
                        embedding.size(), embedding.data());
    static constexpr std::uint32_t requestDock = 0;
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = bits32;
    request.window = tray;
    request.type = server.atom("_NET_SYSTEM_TRAY_OPCODE");
    request.data.data32[0] = XCB_CURRENT_TIME;
    request.data.data32[1] = requestDock;
    request.data.data32[2] = window;
    server.send(tray, request, XCB_EVENT_MASK_NO_EVENT);
    xcb_flush(server.connection());
}

bool X11Dock::nativeEventFilter(const QByteArray& /*eventType*/, void* message,
                                qintptr* /*result*/) {
    static constexpr std::uint8_t kind = 0x7f; // without the mark of events that others sent
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const auto window = static_cast<xcb_window_t>(internalWinId());
    if ((event->response_type & kind) == XCB_REPARENT_NOTIFY) {
        const auto* moved = static_cast<const xcb_reparent_notify_event_t*>(message);
        if (moved->window == window) {
            parentIs(moved->parent != X11Server().root());
        }
    } else if ((event->response_type & kind) == XCB_DESTROY_NOTIFY) {
        const auto* gone = static_cast<const xcb_destroy_notify_event_t*>(message);
        if (gone->window == window) {
            parentIs(false);
        }
    }
    return false; // the toolkit has its own use for it
}

void X11Dock::parentIs(bool isTray) {
    if (isTray && !m_isDocked) {
        m_isDocked = true;
        // Not inside the event. Only now, as it would stand on the bare screen before.
        QMetaObject::invokeMethod(this, &QWidget::show, Qt::QueuedConnection);
    } else if (!isTray && m_isDocked) {
        m_isDocked = false;
        hide();
        Q_EMIT lost();
    }
}

void X11Dock::setPicture(const QIcon& picture) {
    m_picture = picture;
    update();
}

void X11Dock::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    if (testAttribute(Qt::WA_TranslucentBackground)) {
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(rect(), Qt::transparent);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    m_picture.paint(&painter, rect());
}

void X11Dock::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) {
        Q_EMIT menuWanted(event->globalPosition().toPoint());
    }
}

void X11Dock::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
        Q_EMIT chosen();
    }
}

} // namespace korvale
