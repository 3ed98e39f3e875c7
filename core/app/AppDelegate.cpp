#include "core/app/AppDelegate.h"

#include "core/NotificationCenter.h"
#include "editor/EditorFlush.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QGuiApplication>
#include <QSettings>
#include <QTimer>
#include <QWindow>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace
{
constexpr auto shortestWait = 150ms;

/// Asks one window after the other to close; false as soon as one refuses.
bool closeWindows()
{
    QWindowList asked;
    const auto next = [&asked] {
        for (QWindow *window : QGuiApplication::topLevelWindows()) { // each may take others along
            if (window->isVisible() && !asked.contains(window))
                return window;
        }
        return static_cast<QWindow *>(nullptr);
    };
    while (QWindow *window = next()) {
        asked << window;
        if (!window->close())
            return false;
    }
    return true;
}
} // namespace

AppDelegate::AppDelegate(StickyNoteManager &stickyNotes, QObject *parent)
    : QObject(parent), m_stickyNotes(stickyNotes)
{
    // A window may refuse to close, and with that the quit; nobody is told of that.
    m_goOn.setSingleShot(true);
    connect(&m_goOn, &QTimer::timeout, &m_stickyNotes, &StickyNoteManager::resumeAfterTermination);
    connect(qApp, &QCoreApplication::aboutToQuit, &m_goOn, &QTimer::stop);
    QCoreApplication::instance()->installEventFilter(this);
}

void AppDelegate::applicationShouldTerminate()
{
    if (m_isTerminating)
        return;
    prepareForTermination();
    m_stickyNotes.resumeAfterTermination();
    if (std::exchange(m_isQuitPending, false))
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

void AppDelegate::prepareForTermination()
{
    m_goOn.stop();
    m_isTerminating = true;
    collectTexts();
    m_stickyNotes.prepareForTermination();
    QSettings().sync();
    m_isTerminating = false;
}

void AppDelegate::collectTexts()
{
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
    QTimer::singleShot(flush.patience(), Qt::PreciseTimer, &loop,
                       &QEventLoop::quit); // a coarse one may be late
    loop.exec();
}

bool AppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Quit || watched != QCoreApplication::instance())
        return QObject::eventFilter(watched, event);
    if (m_isTerminating) {
        m_isQuitPending = true;
        return true;
    }
    prepareForTermination();
    m_isQuitPending = false; // this request is followed now, and it stands for the later ones
    m_goOn.start();
    // An application with menus goes on to its end without asking windows that are no widgets.
    if (!closeWindows()) {
        event->ignore();
        return true;
    }
    return false;
}
