#include "shell/StatusNotifierWatch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace
{
const QString service = u"org.kde.StatusNotifierWatcher"_s;
const QString path = u"/StatusNotifierWatcher"_s;
} // namespace

StatusNotifierWatch::StatusNotifierWatch(const QDBusConnection &bus, QObject *parent)
    : QObject(parent), m_bus(bus)
{
    if (!m_bus.isConnected()) {
        QMetaObject::invokeMethod(this, &StatusNotifierWatch::lose, Qt::QueuedConnection);
        return;
    }
    m_watcher.setConnection(m_bus);
    m_watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    m_watcher.addWatchedService(service);
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, &StatusNotifierWatch::ask);
    // From whoever says so: for a name, Qt would wait here until the bus has told who that is. What
    // is said only makes the program ask.
    for (const QString &news :
         {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s})
        m_bus.connect({}, path, service, news, this, SLOT(ask()));
    m_bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                  u"Disconnected"_s, this, SLOT(lose()));
    ask();
}

void StatusNotifierWatch::ask()
{
    auto message = QDBusMessage::createMethodCall(service, path,
                                                  u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message << service << u"IsStatusNotifierHostRegistered"_s;
    message.setAutoStartService(false); // a desktop that has a tray has started it
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, question = ++m_question] {
                const QDBusPendingReply<QDBusVariant> reply = *watcher;
                if (question == m_question)
                    answer(reply.isValid() && reply.value().variant().toBool());
                watcher->deleteLater();
            });
}

void StatusNotifierWatch::lose()
{
    ++m_question;
    answer(false);
}

void StatusNotifierWatch::answer(bool hasHost)
{
    if (m_isKnown && m_hasHost == hasHost)
        return;
    m_isKnown = true;
    m_hasHost = hasHost;
    Q_EMIT changed();
}
