#include "core/app/QuitSignals.h"

#include <QCoreApplication>

#ifdef Q_OS_UNIX
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{
int pipeEnds[2] = {-1, -1};

// A signal handler may do next to nothing: it writes one byte, and the event loop does the rest.
extern "C" void passOn(int)
{
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(pipeEnds[1], &byte, 1);
}
} // namespace

QuitSignals::QuitSignals(QObject *parent) : QObject(parent)
{
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [] {
        char bytes[16];
        while (::read(pipeEnds[0], bytes, sizeof bytes) > 0) {
        }
        QCoreApplication::quit();
    });
    struct sigaction action = {};
    action.sa_handler = passOn;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(signal, &action, nullptr);
}
#else
QuitSignals::QuitSignals(QObject *parent) : QObject(parent) {}
#endif
