#pragma once

#include "core/app/Invocation.h"

#include <QList>
#include <QLocalServer>
#include <QLocalSocket>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <chrono>
#include <functional>

/// Where the Plim that runs hears from later starts. Whoever makes one holds the lock on the notes,
/// so that a socket that is there already is a dead one's.
class InstanceServer : public QObject
{
    Q_OBJECT

public:
    /// Carries a request out. False means not now: it is asked again a little later.
    using Handler = std::function<bool(const Invocation &)>;

    explicit InstanceServer(std::chrono::milliseconds longestRequest = std::chrono::seconds(5),
                            QObject *parent = nullptr);

    /// Until the application ends. False when nobody can be heard there.
    bool listen(const QString &socketPath);
    /// Requests that came before are carried out now.
    void setHandler(Handler handler);

private:
    struct Request {
        QPointer<QLocalSocket> socket;
        Invocation invocation;
    };

    void acceptAll();
    void accept(QLocalSocket &socket);
    void read(QLocalSocket &socket);
    void carryOutAll();
    void close();

    QLocalServer m_server;
    Handler m_handler;
    QList<Request> m_requests; ///< understood, and not yet carried out
    QTimer m_again;
    std::chrono::milliseconds m_longestRequest;
};
