#include "bench/probe/CaretWatch.h"

#include "bench/probe/Clock.h"
#include "bench/probe/XDisplay.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>

using namespace std::chrono_literals;

namespace
{
constexpr auto lookInterval = 4ms;
constexpr double patience = 20;   // seconds, until the window comes
constexpr double settling = 1.6;  // seconds, in which all but the caret comes to rest
constexpr double observing = 2.2; // seconds, in which a caret comes and goes twice

/// nullopt when none comes.
std::optional<xcb_window_t> nextWindow(const XDisplay &display)
{
    auto before = display.windows();
    std::puts("watching");
    std::fflush(stdout);
    const double end = secondsNow() + patience;
    while (secondsNow() < end) {
        const auto now = display.windows();
        const auto fresh = std::ranges::find_if(now, [&](xcb_window_t window) {
            return std::ranges::find(before, window) == before.end();
        });
        if (fresh != now.end())
            return *fresh;
        before = now; // the server gives a closed window's number to another
        std::this_thread::sleep_for(lookInterval);
    }
    return std::nullopt;
}

/// Only what differs from the look before is kept.
std::vector<Frame> film(const XDisplay &display, xcb_window_t window,
                        const std::optional<Area> &area, double end)
{
    std::vector<Frame> frames;
    while (secondsNow() < end) {
        auto picture = display.picture(window, area);
        const double seconds = secondsNow();
        if (picture && (frames.empty() || frames.back().picture != *picture))
            frames.push_back({seconds, std::move(*picture)});
        std::this_thread::sleep_for(lookInterval);
    }
    return frames;
}
} // namespace

bool watchForCaret(const std::optional<Area> &area)
{
    const XDisplay display;
    if (!display.isConnected()) {
        std::fputs("plim_probe: no X display\n", stderr);
        return false;
    }
    const auto window = nextWindow(display);
    if (!window) {
        std::fputs("plim_probe: no new window came\n", stderr);
        return false;
    }
    const double opened = secondsNow();
    const auto frames = film(display, *window, area, opened + settling + observing);
    const auto caret = caretAppearance(frames, opened + settling);
    std::printf("window %.4f\n", opened);
    if (!caret) {
        std::fprintf(stderr, "plim_probe: no caret blinks in the new window \"%s\" (%zu looks)\n",
                     display.title(*window).c_str(), frames.size());
        return false;
    }
    std::printf("caret %.4f\n", caret->seconds);
    std::printf("left %d\ntop %d\nwidth %d\nheight %d\n", caret->area.left, caret->area.top,
                caret->area.width, caret->area.height);
    return true;
}
