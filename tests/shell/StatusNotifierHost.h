#pragma once

#include "tests/shell/StatusItem.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>

#include <optional>

/// A desktop's place for status items, watcher and host in one, on the bus at an address.
class StatusNotifierHost : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ services)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    explicit StatusNotifierHost(const QString &address);
    ~StatusNotifierHost() override;

    /// Takes its name on the bus.
    void appear();
    /// Gives it up; the items are forgotten.
    void disappear();
    [[nodiscard]] bool hasHost() const { return m_hasHost; }
    /// A watcher may be there before, and after, whoever shows the items.
    void setHasHost(bool hasHost);

    [[nodiscard]] const QStringList &services() const { return m_services; }
    /// The only one that is there.
    [[nodiscard]] std::optional<StatusItem> item() const;
    [[nodiscard]] const QDBusConnection &connection() const { return m_connection; }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &service);
    void RegisterStatusNotifierHost(const QString &service);

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString &service);
    void StatusNotifierItemUnregistered(const QString &service);
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

private:
    [[nodiscard]] static int protocolVersion() { return 0; }

    QString m_name; ///< of the connection
    QDBusConnection m_connection;
    QDBusServiceWatcher m_watcher;
    QStringList m_services;
    bool m_hasHost = true;
};
