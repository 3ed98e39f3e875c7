#pragma once

#include <QDBusConnection>
#include <QImage>
#include <QList>
#include <QString>
#include <QVariant>

/// An entry of a menu that is read over the bus.
struct MenuEntry {
    int id = 0;
    QVariantMap properties;
    QList<MenuEntry> children;

    [[nodiscard]] QString label() const
    {
        return properties.value(QStringLiteral("label")).toString();
    }
};

/// Another program's status item, as the desktop sees it.
class StatusItem
{
public:
    StatusItem(const QDBusConnection &connection, const QString &service)
        : m_connection(connection), m_service(service)
    {
    }

    [[nodiscard]] const QString &service() const { return m_service; }
    [[nodiscard]] QVariant property(const QString &name) const;
    [[nodiscard]] QString toolTip() const;
    [[nodiscard]] QList<QImage> pixmaps() const;
    [[nodiscard]] MenuEntry menu() const;
    /// A line for each entry, those of a submenu moved in: "Bold [Control+B]", "* Polski" where one
    /// of several is chosen, "o English" where it is not, and "-".
    [[nodiscard]] QStringList menuText() const;

    /// Chooses the entry with that label, in whatever submenu; false when there is none.
    bool choose(const QString &label) const;
    void activate() const { send(QStringLiteral("Activate")); }
    void activateSecondary() const { send(QStringLiteral("SecondaryActivate")); }

private:
    void send(const QString &method) const;
    [[nodiscard]] QString menuPath() const;

    QDBusConnection m_connection;
    QString m_service;
};
