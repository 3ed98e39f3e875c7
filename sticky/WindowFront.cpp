#include "sticky/WindowFront.h"

#include <QWindow>

#ifdef PLIM_HAS_XCB
#include "shell/XServer.h"

#include <algorithm>
#include <array>

namespace
{
constexpr auto toRoot = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;

xcb_client_message_event_t messageOf(xcb_window_t window, uint8_t format, xcb_atom_t type)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = format;
    message.window = window;
    message.type = type;
    return message;
}

void sendToRoot(const xcb_client_message_event_t &message, uint32_t mask)
{
    xcb_send_event(XServer::connection(), 0, XServer::root(), mask,
                   reinterpret_cast<const char *>(&message));
}

/// Qt would give the time of the last event that the program itself had, which is long ago.
void requestActivation(QWindow &window, std::optional<quint32> userTime)
{
    // Without a time one speaks for the user: who starts the program by hand wants to see it.
    constexpr uint32_t application = 1;
    constexpr uint32_t user = 2;
    auto message = messageOf(xcb_window_t(window.winId()), 32, XServer::atom("_NET_ACTIVE_WINDOW"));
    message.data.data32[0] = userTime ? application : user;
    message.data.data32[1] = userTime.value_or(XCB_CURRENT_TIME);
    sendToRoot(message, toRoot);
}

/// Or the launcher shows its busy pointer until it loses patience. In pieces of 20 bytes.
void endLaunch(const QString &startupID, xcb_window_t sender)
{
    if (startupID.isEmpty())
        return;
    QByteArray text = "remove: ID=\"";
    for (const char byte : startupID.toUtf8()) {
        if (byte == '"' || byte == '\\')
            text += '\\';
        text += byte;
    }
    text += '"';
    text += '\0';
    auto message = messageOf(sender, 8, XServer::atom("_NET_STARTUP_INFO_BEGIN"));
    constexpr qsizetype piece = sizeof message.data.data8;
    for (qsizetype from = 0; from < text.size(); from += piece) {
        std::ranges::fill(message.data.data8, uint8_t(0));
        std::copy_n(text.constData() + from, std::min(piece, text.size() - from),
                    message.data.data8);
        sendToRoot(message, XCB_EVENT_MASK_PROPERTY_CHANGE);
        message.type = XServer::atom("_NET_STARTUP_INFO");
    }
}

void tellDesktop(QWindow &window, const LaunchToken &token)
{
    if (!XServer::connection())
        return;
    requestActivation(window, token.userTime());
    endLaunch(token.startupID, xcb_window_t(window.winId()));
    xcb_flush(XServer::connection());
}
} // namespace
#else
namespace
{
void tellDesktop(QWindow &, const LaunchToken &) {}
} // namespace
#endif

bool isOnScreen(const QWindow &window)
{
    return window.isVisible() && !(window.windowStates() & Qt::WindowMinimized);
}

void bringToFront(QWindow &window)
{
    window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
    if (!window.isVisible())
        window.setPosition(window.position()); // or the window manager places it anew
    window.setVisible(true);                   // show() would undo that it is maximised
    window.raise();
    window.requestActivate();
}

void bringToFront(QWindow &window, const LaunchToken &token)
{
    constexpr auto variable = "XDG_ACTIVATION_TOKEN"; // where Qt's Wayland looks for it
    if (!token.activationToken.isEmpty())
        qputenv(variable, token.activationToken.toLocal8Bit());
    bringToFront(window);
    if (!token.activationToken.isEmpty())
        qunsetenv(variable);
    tellDesktop(window, token);
}
