#pragma once

#include "bench/probe/CaretSearch.h"

#include <xcb/xcb.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The X server in DISPLAY, and what its window manager tells of its windows.
class XDisplay
{
public:
    XDisplay();

    [[nodiscard]] bool isConnected() const { return !xcb_connection_has_error(m_connection.get()); }
    [[nodiscard]] xcb_connection_t *connection() const { return m_connection.get(); }
    [[nodiscard]] xcb_window_t root() const { return m_screen->root; }
    [[nodiscard]] xcb_atom_t atom(const std::string &name) const;

    /// The programs' windows, as far as they are shown.
    [[nodiscard]] std::vector<xcb_window_t> windows() const;
    [[nodiscard]] std::string title(xcb_window_t window) const;
    [[nodiscard]] std::uint32_t processId(xcb_window_t window) const; ///< 0 when it does not tell
    /// What the user sees in the window's place, or in an area of it. nullopt when that is not
    /// wholly on the screen.
    [[nodiscard]] std::optional<Picture> picture(xcb_window_t window,
                                                 const std::optional<Area> &area) const;

private:
    template <typename T>
    [[nodiscard]] std::vector<T> property(xcb_window_t window, xcb_atom_t name) const;

    int m_screenNumber = 0;
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_connection;
    xcb_screen_t *m_screen = nullptr;
    xcb_atom_t m_windowsAtom{};
    xcb_atom_t m_titleAtom{};
    xcb_atom_t m_processAtom{};
};
