#include "shell/X11Activation.h"

#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>
#include <xcb/xcb.h>

namespace korvale {
namespace {

/// Anybody in the session may send one, and the X server hangs up on too long a request.
constexpr qsizetype longestId = 1024;

constexpr std::uint8_t bits8 = 8;
constexpr std::uint8_t bits32 = 32;

xcb_connection_t* connectionToX11() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

xcb_atom_t atom(xcb_connection_t* connection, const char* name) {
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(
            connection,
            xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
            nullptr),
        &std::free);
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

xcb_window_t rootOf(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

void send(xcb_connection_t* connection, const xcb_client_message_event_t& message,
          std::uint32_t mask) {
    const void* const bytes = &message;
    xcb_send_event(connection, 0, rootOf(connection), mask, static_cast<const char*>(bytes));
}

/// Tells every launcher that the sequence is over. The text goes out in pieces, with its NUL.
void endSequence(xcb_connection_t* connection, xcb_window_t window, const QByteArray& id) {
    QByteArray quoted = id;
    quoted.replace('\\', "\\\\").replace('"', "\\\"");
    const QByteArray text = "remove: ID=\"" + quoted + '"' + '\0';
    xcb_client_message_event_t piece{};
    piece.response_type = XCB_CLIENT_MESSAGE;
    piece.format = bits8;
    piece.window = window;
    piece.type = atom(connection, "_NET_STARTUP_INFO_BEGIN");
    constexpr qsizetype longest = sizeof piece.data.data8;
    for (qsizetype start = 0; start < text.size(); start += longest) {
        const QByteArray part = text.mid(start, longest).leftJustified(longest, '\0');
        std::copy(part.begin(), part.end(), std::begin(piece.data.data8));
        send(connection, piece, XCB_EVENT_MASK_PROPERTY_CHANGE);
        piece.type = atom(connection, "_NET_STARTUP_INFO");
    }
}

} // namespace

std::optional<std::uint32_t> timeOfStartupId(const QByteArray& startupId) {
    static const QByteArray mark("_TIME");
    const qsizetype place = startupId.lastIndexOf(mark);
    if (place < 0) {
        return std::nullopt;
    }
    bool isNumber = false;
    const uint time = startupId.mid(place + mark.size()).toUInt(&isNumber);
    return isNumber ? std::optional<std::uint32_t>(time) : std::nullopt;
}

X11Activation::X11Activation(WId window, QByteArray startupId)
    : m_window(startupId.isEmpty() || startupId.size() > longestId ? 0 : window),
      m_id(std::move(startupId)),
      m_time(timeOfStartupId(m_id)) {}

void X11Activation::announce() const {
    xcb_connection_t* connection = connectionToX11();
    if (connection == nullptr || m_window == 0) {
        return;
    }
    const auto window = static_cast<xcb_window_t>(m_window);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window,
                        atom(connection, "_NET_STARTUP_ID"), atom(connection, "UTF8_STRING"), bits8,
                        static_cast<std::uint32_t>(m_id.size()), m_id.constData());
    if (m_time) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window,
                            atom(connection, "_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, bits32, 1,
                            &*m_time);
    }
}

void X11Activation::request() const {
    xcb_connection_t* connection = connectionToX11();
    if (connection == nullptr || m_window == 0) {
        return;
    }
    const auto window = static_cast<xcb_window_t>(m_window);
    if (m_time) {
        static constexpr std::uint32_t fromApplication = 1;
        xcb_client_message_event_t wish{};
        wish.response_type = XCB_CLIENT_MESSAGE;
        wish.format = bits32;
        wish.window = window;
        wish.type = atom(connection, "_NET_ACTIVE_WINDOW");
        wish.data.data32[0] = fromApplication;
        wish.data.data32[1] = *m_time;
        send(connection, wish,
             XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT);
    }
    endSequence(connection, window, m_id);
    xcb_flush(connection);
}

} // namespace korvale
