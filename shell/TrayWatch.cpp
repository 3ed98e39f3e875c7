#include "shell/TrayWatch.h"

TrayWatch &TrayWatch::shared()
{
    static TrayWatch watch(QDBusConnection::sessionBus());
    return watch;
}

TrayWatch::TrayWatch(const QDBusConnection &bus, QObject *parent)
    : QObject(parent), m_statusNotifier(bus), m_embedder("_NET_SYSTEM_TRAY_S")
{
    connect(&m_statusNotifier, &StatusNotifierWatch::changed, this, &TrayWatch::follow);
    connect(&m_embedder, &XSelectionWatch::isOwnedChanged, this, &TrayWatch::follow);
}

void TrayWatch::follow()
{
    if (!m_statusNotifier.isKnown())
        return; // Qt asks the bus first
    if (const bool isThere = look(); m_isThere != isThere) {
        m_isThere = isThere;
        Q_EMIT isThereChanged();
    }
    if (!m_isKnown) {
        m_isKnown = true;
        Q_EMIT known();
    }
}

bool TrayWatch::look()
{
#if defined(Q_OS_MACOS) || defined(Q_OS_WIN)
    return true;
#else
    if (m_way == Way::None && m_statusNotifier.hasHost())
        m_way = Way::Bus;
    else if (m_way == Way::None && m_embedder.isOwned())
        m_way = Way::Window;
    switch (m_way) {
    case Way::Bus:
        return m_statusNotifier.hasHost();
    case Way::Window:
        return m_embedder.isOwned();
    case Way::None:
        break;
    }
    return false;
#endif
}
