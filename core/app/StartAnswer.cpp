#include "core/app/StartAnswer.h"

#include "core/CoreLog.h"
#include "core/app/AlreadyOpenMessage.h"
#include "core/app/CommandLine.h"
#include "core/app/InstanceTurn.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

namespace
{
void say(const char *text, const QString &detail)
{
    std::fprintf(stderr, text, qPrintable(detail));
}
} // namespace

std::variant<Invocation, int> answerStart(int argc, char **argv, DataLock &lock)
{
    std::variant<Invocation, int> start;
    auto turn = InstanceTurn::First;
    {
        const QCoreApplication application(argc, argv);
        start = readCommandLine(QCoreApplication::arguments());
        auto *invocation = std::get_if<Invocation>(&start);
        if (!invocation)
            return start;
        if (invocation->command == quitCommand && !QFile::exists(lock.file()))
            return 0; // there has never been one
        invocation->token = LaunchToken::fromEnvironment();
        turn = takeTurn(lock, *invocation);
    }
    switch (turn) {
    case InstanceTurn::First:
        break;
    case InstanceTurn::Answered:
        return 0;
    case InstanceTurn::NotUnderstood:
        say("plim: The Plim that is running does not know '%s'. Please quit it and start anew.\n",
            std::get<Invocation>(start).command);
        return 1;
    case InstanceTurn::Elsewhere:
        say("plim: Plim is already open elsewhere with the notes in %s, and does not answer.\n",
            lock.dataDirectory());
        showAlreadyOpen(argc, argv);
        return 1;
    }
    if (std::get<Invocation>(start).command == quitCommand)
        return 0;
    if (!lock.reason().isEmpty())
        qCInfo(plimCore).noquote() << "Plim: the notes cannot be locked:" << lock.reason();
    return start;
}
