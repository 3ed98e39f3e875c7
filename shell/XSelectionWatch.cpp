#include "shell/XSelectionWatch.h"

#include <QCoreApplication>

#ifdef PLIM_HAS_XCB
#include "shell/XServer.h"

#include <xcb/xfixes.h>
#endif

XSelectionWatch::XSelectionWatch(const QByteArray &name, QObject *parent) : QObject(parent)
{
    if (hasServer())
        watch(name);
}

void XSelectionWatch::setIsOwned(bool isOwned)
{
    if (m_isOwned == isOwned)
        return;
    m_isOwned = isOwned;
    Q_EMIT isOwnedChanged();
}

#ifdef PLIM_HAS_XCB
namespace
{
bool hasOwner(xcb_atom_t selection)
{
    xcb_connection_t *connection = XServer::connection();
    const auto answer = XServer::reply(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection), nullptr));
    return answer && answer->owner != XCB_NONE;
}
} // namespace

bool XSelectionWatch::hasServer()
{
    return XServer::connection() != nullptr;
}

void XSelectionWatch::watch(const QByteArray &name)
{
    xcb_connection_t *connection = XServer::connection();
    m_selection = XServer::atom((name + QByteArray::number(XServer::screenNumber())).toStdString());
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
    m_isOwned = hasOwner(m_selection);
}

bool XSelectionWatch::nativeEventFilter(const QByteArray &, void *message, qintptr *)
{
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7f) == m_eventCode) {
        const auto *news = reinterpret_cast<const xcb_xfixes_selection_notify_event_t *>(event);
        if (news->selection == m_selection)
            setIsOwned(hasOwner(m_selection)); // the news itself may be old
    }
    return false;
}
#else
bool XSelectionWatch::hasServer()
{
    return false;
}

void XSelectionWatch::watch(const QByteArray &) {}

bool XSelectionWatch::nativeEventFilter(const QByteArray &, void *, qintptr *)
{
    return false;
}
#endif
