#include "sticky/Compositing.h"

#include <QCoreApplication>
#include <QQmlEngine>

#ifdef PLIM_HAS_XCB
#include "sticky/XServer.h"

#include <xcb/xfixes.h>

#include <string>
#endif

Compositing::Compositing(QObject *parent) : QObject(parent)
{
    watch();
}

Compositing &Compositing::shared()
{
    static Compositing compositing(nullptr);
    return compositing;
}

Compositing *Compositing::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}

void Compositing::setIsRunning(bool isRunning)
{
    if (m_isRunning == isRunning)
        return;
    m_isRunning = isRunning;
    Q_EMIT isRunningChanged();
}

#ifdef PLIM_HAS_XCB
namespace
{
bool isOwned(xcb_atom_t selection)
{
    xcb_connection_t *connection = XServer::connection();
    const auto answer = XServer::reply(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection), nullptr));
    return answer && answer->owner != XCB_NONE;
}
} // namespace

void Compositing::watch()
{
    xcb_connection_t *connection = XServer::connection();
    if (!connection)
        return;
    m_selection = XServer::atom("_NET_WM_CM_S" + std::to_string(XServer::screenNumber()));
    const auto *fixes = xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (fixes && fixes->present) {
        // The server wants to hear a version before anything else.
        const auto version = xcb_xfixes_query_version(connection, XCB_XFIXES_MAJOR_VERSION,
                                                      XCB_XFIXES_MINOR_VERSION);
        xcb_discard_reply(connection, version.sequence);
        m_eventCode = fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
        qApp->installNativeEventFilter(this);
        xcb_xfixes_select_selection_input(
            connection, XServer::root(), m_selection,
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    // Only now: nobody can come or go in between without being heard of.
    m_isRunning = isOwned(m_selection);
}

bool Compositing::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7f) == m_eventCode) {
        const auto *news = reinterpret_cast<const xcb_xfixes_selection_notify_event_t *>(event);
        if (news->selection == m_selection)
            setIsRunning(isOwned(m_selection)); // the news itself may be old
    }
    return false;
}
#else
void Compositing::watch() {}

bool Compositing::nativeEventFilter(const QByteArray &, void *, qintptr *)
{
    return false;
}
#endif
