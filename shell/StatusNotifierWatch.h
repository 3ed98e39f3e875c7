#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

/// Whether somebody on the session bus shows status items. Nobody is waited for: the answer comes
/// by itself, also where there is no bus.
class StatusNotifierWatch : public QObject
{
    Q_OBJECT

public:
    explicit StatusNotifierWatch(const QDBusConnection &bus, QObject *parent = nullptr);

    /// The first answer is there.
    [[nodiscard]] bool isKnown() const { return m_isKnown; }
    [[nodiscard]] bool hasHost() const { return m_hasHost; }

Q_SIGNALS:
    /// One of the two has changed.
    void changed();

private Q_SLOTS:
    void ask();
    void lose();

private:
    void answer(bool hasHost);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    quint64 m_question = 0; ///< the last one; answers to earlier ones are old
    bool m_isKnown = false;
    bool m_hasHost = false;
};
