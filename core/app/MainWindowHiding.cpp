#include "core/app/MainWindowHiding.h"

#include "sticky/WindowFront.h"
#include "sticky/WindowHolder.h"

#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

MainWindowHiding::MainWindowHiding(TrayWatch &tray, StickyNoteManager &stickyNotes, QObject *parent)
    : QObject(parent), m_tray(tray), m_stickyNotes(stickyNotes)
{
    m_sinceStart.start();
    m_showAtLast.setSingleShot(true);
    connect(&m_showAtLast, &QTimer::timeout, this, &MainWindowHiding::bringToFront);
    connect(&m_tray, &TrayWatch::isThereChanged, this, &MainWindowHiding::follow);
    connect(&m_tray, &TrayWatch::known, this, &MainWindowHiding::follow);
    connect(&m_stickyNotes, &StickyNoteManager::restored, this, &MainWindowHiding::follow);
}

void MainWindowHiding::toggle()
{
    QWindow *window = WindowHolder::shared().window;
    if (!window)
        return;
    if (!isOnScreen(*window))
        bringToFront();
    else if (m_tray.isThere() || m_stickyNotes.activeNoteIDs().count() > 0)
        hide();
    else
        window->setWindowStates(window->windowStates() | Qt::WindowMinimized);
}

void MainWindowHiding::hide()
{
    QWindow *window = WindowHolder::shared().window;
    if (!window)
        return;
    connect(window, &QWindow::visibleChanged, this, &MainWindowHiding::follow,
            Qt::UniqueConnection);
    window->setVisible(false);
    m_isHidden = true;
    follow();
}

void MainWindowHiding::bringToFront()
{
    if (QWindow *window = WindowHolder::shared().window)
        ::bringToFront(*window, LaunchToken());
}

void MainWindowHiding::follow()
{
    const QWindow *window = WindowHolder::shared().window;
    m_isHidden = m_isHidden && window && !window->isVisible();
    m_hasHadTray = m_hasHadTray || m_tray.isThere();
    QGuiApplication::setQuitOnLastWindowClosed(!(m_isHidden && m_tray.isThere()));
    const bool hasStickies =
        m_stickyNotes.isRestoring() || m_stickyNotes.activeNoteIDs().count() > 0;
    if (!m_isHidden || !m_tray.isKnown() || m_tray.isThere() || hasStickies)
        m_showAtLast.stop();
    else if (!m_showAtLast.isActive())
        m_showAtLast.start(patience());
}

std::chrono::milliseconds MainWindowHiding::patience() const
{
    if (m_hasHadTray)
        return m_patience.withTrayGone;
    return std::max(m_patience.withTrayGone,
                    m_patience.withTrayToCome - std::chrono::milliseconds(m_sinceStart.elapsed()));
}
