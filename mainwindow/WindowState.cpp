#include "mainwindow/WindowState.h"

#include <QDir>
#include <QGuiApplication>
#include <QScreen>
#include <QStandardPaths>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr auto frameKey = "mainWindow/frame"_L1;
constexpr auto maximizedKey = "mainWindow/isMaximized"_L1;
constexpr int visiblePart = 64; // points of a frame that must lie on a screen to count as seen

QList<QRect> screenAreas()
{
    QList<QRect> areas;
    for (const QScreen *screen : QGuiApplication::screens())
        areas << screen->availableGeometry();
    return areas;
}
} // namespace

WindowState::WindowState(QObject *parent) : QObject(parent)
{
    m_write.setSingleShot(true);
    m_write.setInterval(400ms);
    connect(&m_write, &QTimer::timeout, this, &WindowState::write);
}

WindowState::~WindowState()
{
    if (m_write.isActive())
        write();
}

// The freedesktop directory for state; other systems keep it with the program's data.
QString WindowState::stateFile()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    QString directory = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(directory))
        directory = QDir::homePath() + u"/.local/state"_s;
    return directory + u"/Plim/window.ini"_s;
#else
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           u"/Plim/window.ini"_s;
#endif
}

void WindowState::setWindow(QQuickWindow *window)
{
    if (m_window == window)
        return;
    if (m_window)
        m_window->disconnect(this);
    m_window = window;
    if (m_window) {
        for (const auto signal : {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged,
                                  &QWindow::heightChanged})
            connect(m_window, signal, this, &WindowState::remember);
        connect(m_window, &QWindow::windowStateChanged, this, &WindowState::remember);
    }
    Q_EMIT windowChanged();
}

std::optional<QRect> WindowState::visibleFrame(const QRect &frame, const QList<QRect> &screens,
                                               QSize minimum)
{
    const auto visibleArea = [&frame](const QRect &screen) {
        const QRect part = screen.intersected(frame);
        const bool isSeen = part.width() >= visiblePart && part.height() >= visiblePart;
        return isSeen ? qint64(part.width()) * part.height() : 0;
    };
    const auto best = std::ranges::max_element(screens, {}, visibleArea);
    if (best == screens.end() || visibleArea(*best) == 0)
        return std::nullopt;
    const QRect &screen = *best;
    QRect fitted(frame.topLeft(), frame.size().boundedTo(screen.size()).expandedTo(minimum));
    fitted.moveLeft(std::clamp(fitted.left(), screen.left(),
                               std::max(screen.left(), screen.right() + 1 - fitted.width())));
    fitted.moveTop(std::clamp(fitted.top(), screen.top(),
                              std::max(screen.top(), screen.bottom() + 1 - fitted.height())));
    return fitted;
}

void WindowState::restore()
{
    if (!m_window)
        return;
    const QSettings settings(stateFile(), QSettings::IniFormat);
    const auto frame =
        visibleFrame(settings.value(frameKey).toRect(), screenAreas(), m_window->minimumSize());
    // The first time the window system chooses the place, but nobody makes a large window fit.
    if (!frame && m_window->screen())
        m_window->resize(m_window->size()
                             .boundedTo(m_window->screen()->availableSize())
                             .expandedTo(m_window->minimumSize()));
    m_frame = frame.value_or(m_window->geometry());
    m_newest = m_frame;
    m_isMaximized = settings.value(maximizedKey).toBool();
    if (frame)
        m_window->setGeometry(*frame);
    if (m_isMaximized)
        m_window->setWindowStates(Qt::WindowMaximized);
}

void WindowState::remember()
{
    if (!m_window->isVisible())
        return;
    const Qt::WindowStates states = m_window->windowStates();
    if (states & (Qt::WindowMinimized | Qt::WindowFullScreen))
        return;
    m_isMaximized = states & Qt::WindowMaximized;
    if (!m_isMaximized)
        m_newest = m_window->geometry();
    m_write.start();
}

// A maximised window may have its new size before it knows that it is maximised.
void WindowState::write()
{
    if (!m_isMaximized)
        m_frame = m_newest;
    QSettings settings(stateFile(), QSettings::IniFormat);
    settings.setValue(frameKey, m_frame);
    settings.setValue(maximizedKey, m_isMaximized);
}
