#include "shell/X11Activation.h"

#include "shell/X11Server.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace korvale {
namespace {

/// Anybody in the session may send one, and the X server hangs up on too long a request.
constexpr qsizetype longestId = 1024;

constexpr std::uint8_t bits8 = 8;
constexpr std::uint8_t bits32 = 32;

/// Tells every launcher that the sequence is over. The text goes out in pieces, with its NUL.
void endSequence(const X11Server& server, xcb_window_t window, const QByteArray& id) {
    QByteArray quoted = id;
    quoted.replace('\\', "\\\\").replace('"', "\\\"");
    const QByteArray text = "remove: ID=\"" + quoted + '"' + '\0';
    xcb_client_message_event_t piece{};
    piece.response_type = XCB_CLIENT_MESSAGE;
    piece.format = bits8;
    piece.window = window;
    piece.type = server.atom("_NET_STARTUP_INFO_BEGIN");
    constexpr qsizetype longest = sizeof piece.data.data8;
    for (qsizetype start = 0; start < text.size(); start += longest) {
        const QByteArray part = text.mid(start, longest).leftJustified(longest, '\0');
        std::copy(part.begin(), part.end(), std::begin(piece.data.data8));
        server.send(server.root(), piece, XCB_EVENT_MASK_PROPERTY_CHANGE);
        piece.type = server.atom("_NET_STARTUP_INFO");
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
    const X11Server server;
    if (m_window == 0 || !server.isThere()) {
        return;
    }
    const auto window = static_cast<xcb_window_t>(m_window);
    xcb_change_property(server.connection(), XCB_PROP_MODE_REPLACE, window,
                        server.atom("_NET_STARTUP_ID"), server.atom("UTF8_STRING"), bits8,
                        static_cast<std::uint32_t>(m_id.size()), m_id.constData());
    if (m_time) {
        xcb_change_property(server.connection(), XCB_PROP_MODE_REPLACE, window,
                            server.atom("_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, bits32, 1,
                            &*m_time);
    }
}

void X11Activation::request() const {
    const X11Server server;
    if (m_window == 0 || !server.isThere()) {
        return;
    }
    const auto window = static_cast<xcb_window_t>(m_window);
    if (m_time) {
        static constexpr std::uint32_t fromApplication = 1;
        xcb_client_message_event_t wish{};
        wish.response_type = XCB_CLIENT_MESSAGE;
        wish.format = bits32;
        wish.window = window;
        wish.type = server.atom("_NET_ACTIVE_WINDOW");
        wish.data.data32[0] = fromApplication;
        wish.data.data32[1] = *m_time;
        server.send(server.root(), wish,
                    XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT);
    }
    endSequence(server, window, m_id);
    xcb_flush(server.connection());
}

} // namespace korvale
