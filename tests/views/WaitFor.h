#pragma once

#include "tests/Patience.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

/// Waits until the condition holds, in the event loop as the program waits; false when it does not
/// within that time.
///
/// For whatever has a web page in it. QTest's own waiting sleeps 10 ms after each round of the
/// event loop, and the web engine needs some two hundred rounds to bring up a page.
template <typename Condition>
[[nodiscard]] bool
waitFor(Condition holds, std::chrono::milliseconds patience = std::chrono::milliseconds(longEnough))
{
    using namespace std::chrono_literals;
    QTimer lookAgain; // the condition may come true, and the patience end, without an event
    lookAgain.start(10ms);
    for (const QDeadlineTimer end(patience); !holds();) {
        if (end.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(
            nullptr, QEvent::DeferredDelete); // there is no outer loop to do it
    }
    return true;
}
