#include "bench/probe/PauseWatch.h"

#include "bench/probe/Clock.h"
#include "bench/probe/ProcessorTime.h"
#include "bench/probe/XDisplay.h"

#include <poll.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace
{
constexpr int searchInterval = 5; // ms
constexpr int pingInterval = 5;   // ms, between an answer and the next question

/// Waits, not longer than so many milliseconds (-1: for ever), until there is something to read.
bool hasInput(int descriptor, int milliseconds)
{
    pollfd entry{descriptor, POLLIN, 0};
    return poll(&entry, 1, milliseconds) > 0;
}

bool isToldToEnd(int milliseconds)
{
    return hasInput(0, milliseconds);
}

xcb_window_t find(const XDisplay &display, std::uint32_t processId, const std::string &title)
{
    const auto windows = display.windows();
    const auto found = std::ranges::find_if(windows, [&](xcb_window_t window) {
        return display.processId(window) == processId && display.title(window) == title;
    });
    return found == windows.end() ? xcb_window_t(XCB_WINDOW_NONE) : *found;
}

class Pings
{
public:
    Pings(const XDisplay &display, xcb_window_t window)
        : m_display(display), m_window(window), m_protocols(display.atom("WM_PROTOCOLS")),
          m_ping(display.atom("_NET_WM_PING"))
    {
        // Answers go to the root, for the window manager; Qt sends them to whoever hears of the
        // root's own structure, too.
        const std::uint32_t mask =
            XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_display.connection(), m_display.root(), XCB_CW_EVENT_MASK,
                                     &mask);
    }

    void send()
    {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = m_window;
        event.type = m_protocols;
        event.data.data32[0] = m_ping;
        event.data.data32[1] = ++m_number;
        event.data.data32[2] = m_window;
        xcb_send_event(m_display.connection(), false, m_window, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char *>(&event));
        xcb_flush(m_display.connection());
    }

    /// Reads what has come, and returns whether the last question's answer was among it.
    [[nodiscard]] bool takeAnswer()
    {
        bool isAnswered = false;
        while (xcb_generic_event_t *next = xcb_poll_for_event(m_display.connection())) {
            const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event(next,
                                                                                   &std::free);
            if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
                continue;
            const auto &message = *reinterpret_cast<xcb_client_message_event_t *>(event.get());
            isAnswered |= message.type == m_protocols && message.data.data32[0] == m_ping &&
                          message.data.data32[1] == m_number && message.data.data32[2] == m_window;
        }
        return isAnswered;
    }

private:
    const XDisplay &m_display;
    xcb_window_t m_window;
    xcb_atom_t m_protocols;
    xcb_atom_t m_ping;
    std::uint32_t m_number = 0;
};
} // namespace

bool watchPauses(std::uint32_t processId, const std::string &title)
{
    const XDisplay display;
    if (!display.isConnected()) {
        std::fputs("plim_probe: no X display\n", stderr);
        return false;
    }
    xcb_window_t window = XCB_WINDOW_NONE;
    while ((window = find(display, processId, title)) == XCB_WINDOW_NONE) {
        if (isToldToEnd(searchInterval)) {
            std::fprintf(stderr, "plim_probe: the process showed no window \"%s\"\n",
                         title.c_str());
            return false;
        }
    }
    std::printf("window %.4f\n", secondsNow());
    std::fflush(stdout);

    Pings pings(display, window);
    const int descriptor = xcb_get_file_descriptor(display.connection());
    double longest = 0;
    double longestOwn = 0;
    int answers = 0;
    bool isEnding = false;
    while (!isEnding) {
        const ProcessorTime before = ProcessorTime::of(processId);
        const double sent = secondsNow();
        pings.send();
        bool isAnswered = false;
        while (!isAnswered && !isEnding) {
            hasInput(descriptor, pingInterval);
            isAnswered = pings.takeAnswer();
            isEnding = isToldToEnd(0);
        }
        // The last question may be open still: that is how long it has been, at the least.
        const double pause = secondsNow() - sent;
        longest = std::max(longest, pause);
        longestOwn = std::max(longestOwn, ownPause(pause, before, ProcessorTime::of(processId)));
        answers += isAnswered;
        if (isAnswered && answers == 1) {
            std::printf("answered %.4f\n", secondsNow());
            std::fflush(stdout);
        }
        isEnding = isEnding || isToldToEnd(pingInterval);
    }
    std::printf("longest %.4f own %.4f answers %d\n", longest, longestOwn, answers);
    if (answers == 0)
        std::fputs("plim_probe: the window has never answered\n", stderr);
    return answers > 0;
}
