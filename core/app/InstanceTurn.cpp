#include "core/app/InstanceTurn.h"

#include "core/app/InstanceProtocol.h"

#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QThread>

#include <algorithm>
#include <optional>

using namespace std::chrono_literals;

namespace
{
constexpr auto betweenTries = 20ms;

enum class Reply { Ok, Unknown, NobodyThere, Silence };

Reply ask(const QString &socketPath, const Invocation &invocation,
          std::chrono::milliseconds patience)
{
    if (socketPath.isEmpty())
        return Reply::NobodyThere;
    const QDeadlineTimer end(patience);
    const auto left = [&end] { return int(std::max<qint64>(end.remainingTime(), 0)); };
    QLocalSocket socket;
    socket.setReadBufferSize(InstanceProtocol::longestLine + 1);
    socket.connectToServer(socketPath);
    if (!socket.waitForConnected(left()))
        return Reply::NobodyThere;
    socket.write(InstanceProtocol::encodeRequest(invocation));
    while (!socket.canReadLine() && socket.bytesAvailable() <= InstanceProtocol::longestLine) {
        if (socket.waitForReadyRead(left()))
            continue;
        // One that ends just now closes without an answer.
        return socket.state() == QLocalSocket::ConnectedState ? Reply::Silence : Reply::NobodyThere;
    }
    const auto answer =
        InstanceProtocol::decodeAnswer(socket.readLine(InstanceProtocol::longestLine).trimmed());
    return answer == InstanceProtocol::Answer::Ok ? Reply::Ok : Reply::Unknown;
}
} // namespace

InstanceTurn takeTurn(DataLock &lock, const Invocation &invocation,
                      const InstancePatience &patience)
{
    const QDeadlineTimer end(patience.reach);
    QString socketPath;
    for (;;) {
        const DataLock::State state = lock.take();
        if (socketPath.isNull()) // of a directory that is there by now
            socketPath = InstanceProtocol::socketPath(lock.dataDirectory());
        // Also with the lock: somebody may have deleted the file of the one that runs.
        switch (ask(socketPath, invocation, patience.answer)) {
        case Reply::Ok:
            lock.giveBack();
            return InstanceTurn::Answered;
        case Reply::Unknown:
            lock.giveBack();
            return InstanceTurn::NotUnderstood;
        case Reply::Silence:
            lock.giveBack();
            return InstanceTurn::Elsewhere;
        case Reply::NobodyThere:
            break;
        }
        if (state != DataLock::State::HeldElsewhere)
            return InstanceTurn::First;
        if (end.hasExpired())
            return InstanceTurn::Elsewhere;
        QThread::msleep(betweenTries.count());
    }
}
