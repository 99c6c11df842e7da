#include "shell/X11Tray.h"

#include <QByteArray>
#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace korvale {
namespace {

template <typename Reply>
using ReplyPtr = std::unique_ptr<Reply, decltype(&std::free)>;

} // namespace

X11Tray askForX11Tray() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* connection = x11 == nullptr ? nullptr : x11->connection();
    if (connection == nullptr) {
        return X11Tray::NoX11;
    }
    // The tray of the first screen, where Qt docks its items too.
    static constexpr char name[] = "_NET_SYSTEM_TRAY_S0";
    const ReplyPtr<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, sizeof name - 1, name),
                              nullptr),
        &std::free);
    if (!atom) {
        return X11Tray::Absent;
    }
    const ReplyPtr<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom),
                                      nullptr),
        &std::free);
    return owner && owner->owner != XCB_NONE ? X11Tray::Present : X11Tray::Absent;
}

} // namespace korvale
