#include "shell/SystemPreferences.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QQmlEngine>
#include <QSettings>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
const QString portalService = u"org.freedesktop.portal.Desktop"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString portalSettings = u"org.freedesktop.portal.Settings"_s;
const QString interfaceSpace = u"org.gnome.desktop.interface"_s;
const QString animationsKey = u"enable-animations"_s;
const QString appearanceSpace = u"org.freedesktop.appearance"_s;
const QString schemeKey = u"color-scheme"_s;
constexpr uint lightScheme = 2;

bool isStillOnKde()
{
    const QString file =
        QStandardPaths::locate(QStandardPaths::GenericConfigLocation, u"kdeglobals"_s);
    if (file.isEmpty())
        return false;
    const QVariant factor =
        QSettings(file, QSettings::IniFormat).value(u"KDE/AnimationDurationFactor"_s);
    bool isNumber = false;
    return factor.toDouble(&isNumber) == 0.0 && isNumber;
}

/// Older portals wrap the value twice.
QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}
} // namespace

SystemPreferences::SystemPreferences(QObject *parent)
    : QObject(parent), m_reducesMotion(isStillOnKde())
{
    askPortal();
}

SystemPreferences &SystemPreferences::shared()
{
    static SystemPreferences preferences(nullptr);
    return preferences;
}

SystemPreferences *SystemPreferences::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}

void SystemPreferences::askPortal()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(portalService, portalPath, portalSettings, u"SettingChanged"_s, this,
                SLOT(follow(QString, QString, QDBusVariant)));
    askFor(interfaceSpace, animationsKey);
    askFor(appearanceSpace, schemeKey);
}

void SystemPreferences::askFor(const QString &space, const QString &key)
{
    auto message =
        QDBusMessage::createMethodCall(portalService, portalPath, portalSettings, u"Read"_s);
    message << space << key;
    message.setAutoStartService(false); // a desktop that has a portal has started it
    const QDBusPendingCall call = QDBusConnection::sessionBus().asyncCall(message);
    auto *watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, space, key] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            follow(space, key, reply.value());
        watcher->deleteLater();
    });
}

void SystemPreferences::follow(const QString &space, const QString &key, const QDBusVariant &value)
{
    const QVariant plain = unwrapped(value.variant());
    if (space == interfaceSpace && key == animationsKey && plain.typeId() == QMetaType::Bool)
        setReducesMotion(!plain.toBool() || isStillOnKde());
    else if (space == appearanceSpace && key == schemeKey && plain.typeId() == QMetaType::UInt)
        setPrefersLight(plain.toUInt() == lightScheme);
}

void SystemPreferences::setReducesMotion(bool reducesMotion)
{
    if (m_reducesMotion == reducesMotion)
        return;
    m_reducesMotion = reducesMotion;
    Q_EMIT reducesMotionChanged();
}

void SystemPreferences::setPrefersLight(bool prefersLight)
{
    if (m_prefersLight == prefersLight)
        return;
    m_prefersLight = prefersLight;
    Q_EMIT prefersLightChanged();
}
