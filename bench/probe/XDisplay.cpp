#include "bench/probe/XDisplay.h"

#include <cstdlib>
#include <cstring>

namespace
{
template <typename T>
auto owned(T *reply)
{
    return std::unique_ptr<T, decltype(&std::free)>(reply, &std::free);
}

constexpr std::uint32_t longest = 65536; // of a property, in four bytes
} // namespace

XDisplay::XDisplay() : m_connection(xcb_connect(nullptr, &m_screenNumber), &xcb_disconnect)
{
    if (!isConnected())
        return;
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection()));
    for (int i = 0; i < m_screenNumber; ++i)
        xcb_screen_next(&screen);
    m_screen = screen.data;
    m_windowsAtom = atom("_NET_CLIENT_LIST");
    m_titleAtom = atom("_NET_WM_NAME");
    m_processAtom = atom("_NET_WM_PID");
}

xcb_atom_t XDisplay::atom(const std::string &name) const
{
    const auto cookie =
        xcb_intern_atom(connection(), false, std::uint16_t(name.size()), name.c_str());
    const auto reply = owned(xcb_intern_atom_reply(connection(), cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

template <typename T>
std::vector<T> XDisplay::property(xcb_window_t window, xcb_atom_t name) const
{
    const auto cookie =
        xcb_get_property(connection(), false, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, longest);
    const auto reply = owned(xcb_get_property_reply(connection(), cookie, nullptr));
    if (!reply || reply->format != 8 * sizeof(T))
        return {};
    const auto *begin = static_cast<const T *>(xcb_get_property_value(reply.get()));
    return {begin, begin + reply->value_len};
}

std::vector<xcb_window_t> XDisplay::windows() const
{
    return property<xcb_window_t>(root(), m_windowsAtom);
}

std::string XDisplay::title(xcb_window_t window) const
{
    const auto text = property<char>(window, m_titleAtom);
    return {text.begin(), text.end()};
}

std::uint32_t XDisplay::processId(xcb_window_t window) const
{
    const auto ids = property<std::uint32_t>(window, m_processAtom);
    return ids.empty() ? 0 : ids.front();
}

std::optional<Picture> XDisplay::picture(xcb_window_t window, const std::optional<Area> &area) const
{
    const auto sizeCookie = xcb_get_geometry(connection(), window);
    const auto placeCookie = xcb_translate_coordinates(connection(), window, root(), 0, 0);
    const auto size = owned(xcb_get_geometry_reply(connection(), sizeCookie, nullptr));
    const auto place = owned(xcb_translate_coordinates_reply(connection(), placeCookie, nullptr));
    if (!size || !place)
        return std::nullopt;
    const Area wanted = area.value_or(Area{0, 0, size->width, size->height});
    // The root's pixels are those of the compositor, and so of the screen.
    const auto cookie = xcb_get_image(
        connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, root(), std::int16_t(place->dst_x + wanted.left),
        std::int16_t(place->dst_y + wanted.top), std::uint16_t(wanted.width),
        std::uint16_t(wanted.height), ~0U);
    const auto image = owned(xcb_get_image_reply(connection(), cookie, nullptr));
    const std::size_t count = std::size_t(wanted.width) * std::size_t(wanted.height);
    if (!image || std::size_t(xcb_get_image_data_length(image.get())) != 4 * count)
        return std::nullopt;
    Picture picture{wanted.width, wanted.height, std::vector<std::uint32_t>(count)};
    std::memcpy(picture.pixels.data(), xcb_get_image_data(image.get()), 4 * count);
    for (std::uint32_t &pixel : picture.pixels)
        pixel &= 0xffffffU;
    return picture;
}
