#include "core/app/InstanceServer.h"

#include "core/CoreLog.h"
#include "core/app/InstanceProtocol.h"

#include <QCoreApplication>

#include <utility>

using namespace std::chrono_literals;

namespace
{
constexpr qsizetype mostAtOnce = 32;

void answer(QLocalSocket &socket, InstanceProtocol::Answer answer)
{
    socket.write(InstanceProtocol::encodeAnswer(answer));
    socket.disconnectFromServer(); // once that is written
}
} // namespace

InstanceServer::InstanceServer(std::chrono::milliseconds longestRequest, QObject *parent)
    : QObject(parent), m_longestRequest(longestRequest)
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &InstanceServer::acceptAll);
    m_again.setSingleShot(true);
    m_again.setInterval(50ms);
    connect(&m_again, &QTimer::timeout, this, &InstanceServer::carryOutAll);
    // Who is not answered tries again, and starts a Plim of its own as soon as this one has ended.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            &InstanceServer::close);
}

bool InstanceServer::listen(const QString &socketPath)
{
    if (socketPath.isEmpty())
        return false;
    QLocalServer::removeServer(socketPath);
    if (m_server.listen(socketPath))
        return true;
    qCInfo(plimCore).noquote() << "Plim: later starts cannot be heard:" << m_server.errorString();
    return false;
}

void InstanceServer::setHandler(Handler handler)
{
    m_handler = std::move(handler);
    carryOutAll();
}

void InstanceServer::acceptAll()
{
    while (QLocalSocket *socket = m_server.nextPendingConnection())
        accept(*socket);
}

void InstanceServer::accept(QLocalSocket &socket)
{
    connect(&socket, &QLocalSocket::disconnected, &socket, &QObject::deleteLater);
    if (m_server.findChildren<QLocalSocket *>(Qt::FindDirectChildrenOnly).size() > mostAtOnce) {
        socket.abort();
        return;
    }
    socket.setReadBufferSize(InstanceProtocol::longestLine + 1);
    connect(&socket, &QLocalSocket::readyRead, this, [this, &socket] { read(socket); });
    auto *tooLate = new QTimer(&socket);
    tooLate->setSingleShot(true);
    connect(tooLate, &QTimer::timeout, &socket, &QLocalSocket::abort);
    tooLate->start(m_longestRequest);
    read(socket); // it may have been faster than this
}

void InstanceServer::read(QLocalSocket &socket)
{
    if (!socket.canReadLine()) {
        if (socket.bytesAvailable() > InstanceProtocol::longestLine)
            socket.abort();
        return;
    }
    const QByteArray line = socket.readLine(InstanceProtocol::longestLine + 1).trimmed();
    socket.disconnect(this); // one request each
    delete socket.findChild<QTimer *>();
    const auto invocation = InstanceProtocol::decodeRequest(line);
    if (!invocation) {
        answer(socket, InstanceProtocol::Answer::Unknown);
        return;
    }
    m_requests.append({&socket, *invocation});
    carryOutAll();
}

void InstanceServer::carryOutAll()
{
    while (m_handler && !m_requests.isEmpty()) {
        const Request request = m_requests.takeFirst();
        if (!request.socket || request.socket->state() != QLocalSocket::ConnectedState)
            continue; // nobody waits for it any more
        if (!m_handler(request.invocation)) {
            m_requests.prepend(request);
            m_again.start();
            return;
        }
        if (request.socket)
            answer(*request.socket, InstanceProtocol::Answer::Ok);
    }
}

void InstanceServer::close()
{
    m_handler = {};
    m_requests.clear();
    m_server.close();
    for (QLocalSocket *socket : m_server.findChildren<QLocalSocket *>(Qt::FindDirectChildrenOnly))
        socket->abort();
}
