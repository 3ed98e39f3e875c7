#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

/// The few words with the X server for which Qt has none. Everything but connection() wants one.
namespace XServer
{
template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

template <typename T>
[[nodiscard]] Reply<T> reply(T *answer)
{
    return {answer, &std::free};
}

/// Qt's own; null when it shows its windows anywhere else.
[[nodiscard]] xcb_connection_t *connection();
[[nodiscard]] int screenNumber();
[[nodiscard]] xcb_window_t root();
[[nodiscard]] xcb_atom_t atom(std::string_view name);

/// A list of numbers, atoms or windows. Empty, too, when there is no such window or property.
[[nodiscard]] std::vector<uint32_t> property(xcb_window_t window, xcb_atom_t name, xcb_atom_t type);
void setProperty(xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                 std::span<const uint32_t> values);
} // namespace XServer
