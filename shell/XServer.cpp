#include "shell/XServer.h"

#include <QGuiApplication>

#include <map>
#include <string>

using namespace Qt::StringLiterals;

xcb_connection_t *XServer::connection()
{
    // Other platforms may have the interface, too, and no connection or windows of their own.
    if (!qGuiApp || QGuiApplication::platformName() != "xcb"_L1)
        return nullptr;
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

// Qt does not say which one it has chosen; it is that of the display's name.
int XServer::screenNumber()
{
    char *host = nullptr;
    int display = 0;
    int screen = 0;
    const bool isUnderstood = xcb_parse_display(nullptr, &host, &display, &screen);
    std::free(host);
    return isUnderstood ? screen : 0;
}

xcb_window_t XServer::root()
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection()));
    for (int before = screenNumber(); before > 0 && screens.rem > 1; --before)
        xcb_screen_next(&screens);
    return screens.data->root;
}

// Asked once each: a server that draws for others may take its time with an answer.
xcb_atom_t XServer::atom(std::string_view name)
{
    static std::map<std::string, xcb_atom_t, std::less<>> known;
    if (const auto found = known.find(name); found != known.end())
        return found->second;
    const auto answer = reply(xcb_intern_atom_reply(
        connection(), xcb_intern_atom(connection(), 0, uint16_t(name.size()), name.data()),
        nullptr));
    return answer ? known.emplace(name, answer->atom).first->second : xcb_atom_t(XCB_ATOM_NONE);
}

std::vector<uint32_t> XServer::property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type)
{
    constexpr uint32_t longest = 4096;
    const auto answer = reply(xcb_get_property_reply(
        connection(), xcb_get_property(connection(), 0, window, name, type, 0, longest), nullptr));
    if (!answer || answer->format != 32)
        return {};
    const auto *values = static_cast<const uint32_t *>(xcb_get_property_value(answer.get()));
    return {values, values + answer->value_len};
}

void XServer::setProperty(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                          std::span<const uint32_t> values)
{
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window, name, type, 32,
                        uint32_t(values.size()), values.data());
    xcb_flush(connection());
}
