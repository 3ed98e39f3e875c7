#include "tests/shell/StatusNotifierHost.h"

#include <QUuid>

using namespace Qt::StringLiterals;

namespace
{
const QString serviceName = u"org.kde.StatusNotifierWatcher"_s;
const QString path = u"/StatusNotifierWatcher"_s;
} // namespace

StatusNotifierHost::StatusNotifierHost(const QString &address)
    : m_name(QUuid::createUuid().toString()),
      m_connection(QDBusConnection::connectToBus(address, m_name))
{
    m_watcher.setConnection(m_connection);
    m_watcher.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [this](const QString &service) {
                m_services.removeAll(service);
                Q_EMIT StatusNotifierItemUnregistered(service);
            });
    m_connection.registerObject(path, this, QDBusConnection::ExportAllContents);
}

StatusNotifierHost::~StatusNotifierHost()
{
    QDBusConnection::disconnectFromBus(m_name);
}

void StatusNotifierHost::appear()
{
    m_connection.registerService(serviceName);
}

void StatusNotifierHost::disappear()
{
    m_connection.unregisterService(serviceName);
    m_services.clear();
}

void StatusNotifierHost::setHasHost(bool hasHost)
{
    m_hasHost = hasHost;
    if (hasHost)
        Q_EMIT StatusNotifierHostRegistered();
    else
        Q_EMIT StatusNotifierHostUnregistered();
}

std::optional<StatusItem> StatusNotifierHost::item() const
{
    if (m_services.size() != 1)
        return std::nullopt;
    return StatusItem(m_connection, m_services.constFirst());
}

void StatusNotifierHost::RegisterStatusNotifierItem(const QString &service)
{
    if (!m_services.contains(service))
        m_services << service;
    m_watcher.addWatchedService(service);
    Q_EMIT StatusNotifierItemRegistered(service);
}

void StatusNotifierHost::RegisterStatusNotifierHost(const QString &)
{
    setHasHost(true);
}
