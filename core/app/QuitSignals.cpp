#include "core/app/QuitSignals.h"

#include <QCoreApplication>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <utility>

namespace
{
constexpr std::array quitSignals{SIGTERM, SIGINT, SIGHUP};
int pipeEnds[2] = {-1, -1};

bool openPipe()
{
    if (::pipe(pipeEnds) != 0)
        return false;
    for (const int end : pipeEnds) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    return true;
}

void handleSignals(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : quitSignals)
        ::sigaction(signal, &action, nullptr);
}

// A signal handler may do next to nothing: it writes one byte, and the event loop does the rest.
extern "C" void passOn(int)
{
    const int interruptedError = errno;
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(pipeEnds[1], &byte, 1);
    errno = interruptedError;
}
} // namespace

QuitSignals::QuitSignals(QObject *parent) : QObject(parent)
{
    if (!openPipe())
        return;
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [] {
        char bytes[16];
        while (::read(pipeEnds[0], bytes, sizeof bytes) > 0) {
        }
        QCoreApplication::quit();
    });
    handleSignals(passOn);
}

QuitSignals::~QuitSignals()
{
    if (!m_notifier)
        return;
    handleSignals(SIG_DFL);
    m_notifier.reset();
    for (int &end : pipeEnds)
        ::close(std::exchange(end, -1));
}
#else
QuitSignals::QuitSignals(QObject *parent) : QObject(parent) {}
QuitSignals::~QuitSignals() = default;
#endif
