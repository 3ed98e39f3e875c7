#include "sticky/WindowTraits.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

using namespace Qt::StringLiterals;

#ifdef PLIM_HAS_XCB
#include "sticky/NativePixels.h"
#include "shell/XServer.h"

#include <xcb/shape.h>

#include <algorithm>
#include <array>

namespace
{
std::array<uint32_t, 2> switcherStates()
{
    return {XServer::atom("_NET_WM_STATE_SKIP_TASKBAR"), XServer::atom("_NET_WM_STATE_SKIP_PAGER")};
}

/// Says it of a window that nobody manages yet: Qt leaves there what it does not know.
void claimSwitcherStates(QWindow &window)
{
    const auto id = xcb_window_t(window.winId());
    const xcb_atom_t name = XServer::atom("_NET_WM_STATE");
    std::vector<uint32_t> states = XServer::property(id, name, XCB_ATOM_ATOM);
    for (const uint32_t state : switcherStates()) {
        if (std::find(states.begin(), states.end(), state) == states.end())
            states.push_back(state);
    }
    XServer::setProperty(id, name, XCB_ATOM_ATOM, states);
}

/// Asks the window manager for it, once the window is in its hands.
void requestSwitcherStates(QWindow &window)
{
    constexpr uint32_t add = 1;
    constexpr uint32_t fromApplication = 1;
    const auto [taskbar, pager] = switcherStates();
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = xcb_window_t(window.winId());
    message.type = XServer::atom("_NET_WM_STATE");
    message.data.data32[0] = add;
    message.data.data32[1] = taskbar;
    message.data.data32[2] = pager;
    message.data.data32[3] = fromApplication;
    xcb_send_event(XServer::connection(), 0, XServer::root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(XServer::connection());
}

/// Says it again whenever its window is shown: window managers forget what they knew of a window
/// as soon as it is hidden, and a slow one may still do so after it has been said.
class SwitcherKeeper : public QObject
{
public:
    static constexpr auto name = "keptOutOfTaskSwitcher"_L1;

    explicit SwitcherKeeper(QWindow &window) : QObject(&window), m_window(window)
    {
        setObjectName(name);
        window.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show) { // not mapped yet
            claimSwitcherStates(m_window);
            m_isRequested = false;
        } else if (event->type() == QEvent::Expose && m_window.isExposed() && !m_isRequested) {
            m_isRequested = true;
            requestSwitcherStates(m_window);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QWindow &m_window;
    bool m_isRequested = false;
};

bool isWindowManagerAlive()
{
    // One that died leaves the property of the root window behind, but not the other's.
    const xcb_atom_t check = XServer::atom("_NET_SUPPORTING_WM_CHECK");
    const auto named = XServer::property(XServer::root(), check, XCB_ATOM_WINDOW);
    return named.size() == 1 && XServer::property(named[0], check, XCB_ATOM_WINDOW) == named;
}
} // namespace

void setInputRegion(QWindow &window, const QRegion &region)
{
    xcb_connection_t *connection = XServer::connection();
    if (!connection)
        return;
    const auto id = xcb_window_t(window.winId());
    std::vector<xcb_rectangle_t> rectangles;
    for (const QRect &rect : nativePixels(region, window.devicePixelRatio()))
        rectangles.push_back({int16_t(rect.x()), int16_t(rect.y()), uint16_t(rect.width()),
                              uint16_t(rect.height())});
    if (rectangles.empty())
        xcb_shape_mask(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, id, 0, 0, XCB_NONE);
    else
        xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                             XCB_CLIP_ORDERING_UNSORTED, id, 0, 0, uint32_t(rectangles.size()),
                             rectangles.data());
    xcb_flush(connection);
}

void setFrameExtents(QWindow &window, const QMargins &shadow)
{
    xcb_connection_t *connection = XServer::connection();
    if (!connection)
        return;
    const auto id = xcb_window_t(window.winId());
    const xcb_atom_t name = XServer::atom("_GTK_FRAME_EXTENTS");
    if (shadow.isNull()) {
        xcb_delete_property(connection, id, name);
        xcb_flush(connection);
        return;
    }
    const auto native = [scale = window.devicePixelRatio()](int length) {
        return uint32_t(std::max(0, qRound(length * scale)));
    };
    const std::array extents{native(shadow.left()), native(shadow.right()), native(shadow.top()),
                             native(shadow.bottom())};
    XServer::setProperty(id, name, XCB_ATOM_CARDINAL, extents);
}

void keepOutOfTaskSwitcher(QWindow &window)
{
    if (!XServer::connection() ||
        window.findChild<QObject *>(SwitcherKeeper::name, Qt::FindDirectChildrenOnly))
        return;
    new SwitcherKeeper(window);
    if (window.isVisible())
        requestSwitcherStates(window);
}

bool canKeepAbove()
{
    if (!XServer::connection())
        return canPlaceWindows();
    const auto supported =
        XServer::property(XServer::root(), XServer::atom("_NET_SUPPORTED"), XCB_ATOM_ATOM);
    const uint32_t above = XServer::atom("_NET_WM_STATE_ABOVE");
    return isWindowManagerAlive() &&
           std::find(supported.begin(), supported.end(), above) != supported.end();
}
#else
void setInputRegion(QWindow &, const QRegion &) {}

void setFrameExtents(QWindow &, const QMargins &) {}

void keepOutOfTaskSwitcher(QWindow &) {}

bool canKeepAbove()
{
    return canPlaceWindows();
}
#endif

// On Wayland a program has no say in where windows are, nor in their order.
bool canPlaceWindows()
{
    return !QGuiApplication::platformName().startsWith("wayland"_L1);
}
