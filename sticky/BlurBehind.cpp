#include "sticky/BlurBehind.h"

#include <QGuiApplication>
#include <QWindow>

#ifdef PLIM_HAS_XCB
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string_view>

using namespace Qt::StringLiterals;

// The hint of KWin and of compositors that took it over: an empty region means the whole window.
void blurBehind(QWindow &window)
{
    // Other platforms may have the interface, too, and no connection or windows of their own.
    if (QGuiApplication::platformName() != "xcb"_L1)
        return;
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return;
    constexpr std::string_view name = "_KDE_NET_WM_BLUR_BEHIND_REGION";
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, name.size(), name.data()),
                              nullptr),
        &std::free);
    if (atom)
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, xcb_window_t(window.winId()),
                            atom->atom, XCB_ATOM_CARDINAL, 32, 0, nullptr);
}
#else
void blurBehind(QWindow &) {}
#endif
