#include "core/app/AppDelegate.h"

#include "core/NotificationCenter.h"
#include "editor/EditorFlush.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QSettings>
#include <QTimer>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace
{
constexpr auto shortestWait = 150ms;
constexpr auto longestWait = 2s;
} // namespace

AppDelegate::AppDelegate(QObject *parent) : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

void AppDelegate::applicationShouldTerminate()
{
    if (m_isTerminating)
        return;
    collectTexts();
    if (std::exchange(m_isQuitPending, false))
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

void AppDelegate::collectTexts()
{
    m_isTerminating = true;
    Q_EMIT NotificationCenter::shared().plimFlushEditors();

    QEventLoop loop;
    auto &flush = EditorFlush::shared();
    bool isLongEnough = false;
    const auto leaveWhenDone = [&] {
        if (isLongEnough && flush.isSettled())
            loop.quit();
    };
    connect(&flush, &EditorFlush::settled, &loop, leaveWhenDone);
    QTimer::singleShot(shortestWait, &loop, [&] {
        isLongEnough = true;
        leaveWhenDone();
    });
    QTimer::singleShot(longestWait, Qt::PreciseTimer, &loop, &QEventLoop::quit); // a coarse one may be late
    loop.exec();

    QSettings().sync();
    m_isTerminating = false;
}

bool AppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance())
        return QObject::eventFilter(watched, event);
    if (m_isTerminating) {
        m_isQuitPending = true;
        return true;
    }
    collectTexts();
    m_isQuitPending = false; // this request is followed now, and it stands for the later ones
    return false;
}
