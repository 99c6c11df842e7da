#include "shell/X11Server.h"

#include <QGuiApplication>
#include <QLibrary>

#include <bit>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace korvale {
namespace {

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply) {
    return {reply, &std::free};
}

const QNativeInterface::QX11Application* x11Application() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
}

xcb_connection_t* connectionToX11() {
    const auto* x11 = x11Application();
    return x11 == nullptr ? nullptr : x11->connection();
}

} // namespace

X11Server::X11Server() : m_connection(connectionToX11()) {}

xcb_window_t X11Server::root() const {
    return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
}

xcb_atom_t X11Server::atom(const char* name) const {
    const auto length = static_cast<std::uint16_t>(std::strlen(name));
    const auto reply = owned(xcb_intern_atom_reply(
        m_connection, xcb_intern_atom(m_connection, 0, length, name), nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

xcb_window_t X11Server::trayWindow() const {
    const auto reply = owned(xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, atom("_NET_SYSTEM_TRAY_S0")), nullptr));
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_NONE);
}

std::optional<std::uint32_t> X11Server::number(xcb_window_t window, const char* property,
                                               xcb_atom_t type) const {
    const auto reply = owned(xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, 0, window, atom(property), type, 0, 1),
        nullptr));
    std::uint32_t value = 0;
    if (!reply || reply->type != type ||
        xcb_get_property_value_length(reply.get()) != sizeof value) {
        return std::nullopt;
    }
    std::memcpy(&value, xcb_get_property_value(reply.get()), sizeof value);
    return value;
}

std::uint8_t X11Server::depthOf(xcb_visualid_t visual) const {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    for (auto depth = xcb_screen_allowed_depths_iterator(screen); depth.rem > 0;
         xcb_depth_next(&depth)) {
        for (auto type = xcb_depth_visuals_iterator(depth.data); type.rem > 0;
             xcb_visualtype_next(&type)) {
            if (type.data->visual_id == visual) {
                return depth.data->depth;
            }
        }
    }
    return 0;
}

void X11Server::forgetAnsweredRequests() const {
    constexpr int xlibVersion = 6;
    QLibrary xlib(QStringLiteral("X11"), xlibVersion); // in memory: the toolkit uses it
    const auto sync = std::bit_cast<int (*)(Display*, int)>(xlib.resolve("XSync"));
    Display* const display = x11Application()->display();
    if (sync != nullptr && display != nullptr) {
        sync(display, 0);
    }
}

void X11Server::send(xcb_window_t receiver, const xcb_client_message_event_t& message,
                     std::uint32_t mask) const {
    const void* const bytes = &message;
    xcb_send_event(m_connection, 0, receiver, mask, static_cast<const char*>(bytes));
}

} // namespace korvale
