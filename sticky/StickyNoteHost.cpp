#include "sticky/StickyNoteHost.h"

#include "editor/EditorFlush.h"
#include "shell/SystemPreferences.h"
#include "sticky/StickyLog.h"
#include "sticky/StickyPacking.h"
#include "sticky/WindowTraits.h"

#include <QEvent>
#include <QGuiApplication>
#include <QQmlProperty>
#include <QTimer>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace
{
constexpr auto glideTime = 220ms;

/// A window that its user has closed, until its editor has handed over what was typed last.
class Farewell : public QObject
{
public:
    Farewell(std::unique_ptr<StickyNoteController> controller, std::unique_ptr<QQuickWindow> window,
             QObject *keeper)
        : QObject(keeper), m_controller(std::move(controller)), m_window(std::move(window))
    {
        struct Debt {
            EditorFlush::Debt owed; ///< the end of the program waits for it, too
            QPointer<Farewell> farewell;
            Debt(EditorFlush::Debt debt, Farewell *waiting)
                : owed(std::move(debt)), farewell(waiting)
            {
            }
            ~Debt()
            {
                if (farewell)
                    farewell->deleteLater();
            }
            Q_DISABLE_COPY_MOVE(Debt)
        };
        EditorFlush &flush = EditorFlush::shared();
        auto owed = flush.owe(m_controller->editedNote().html.size());
        // A page may not answer any more.
        QTimer::singleShot(flush.patience(), this, &QObject::deleteLater);
        m_controller->controller()->handOver(std::make_shared<Debt>(std::move(owed), this));
    }

private:
    std::unique_ptr<StickyNoteController> m_controller; ///< outlives the view
    std::unique_ptr<QQuickWindow> m_window;
};
} // namespace

StickyNoteHost::StickyNoteHost(std::unique_ptr<StickyNoteController> controller,
                               std::unique_ptr<QQuickWindow> window, QObject *keeper)
    : m_controller(std::move(controller)), m_window(std::move(window)), m_keeper(keeper)
{
    connect(m_controller.get(), &StickyNoteController::closeRequested, this,
            &StickyWindow::closeRequested);
    connect(m_controller.get(), &StickyNoteController::pinChanged, this, &StickyWindow::pinChanged);
    connect(m_controller.get(), &StickyNoteController::collapseChanged, this,
            &StickyWindow::collapseChanged);
    connect(m_controller.get(), &StickyNoteController::resizingByUser, this, [this] {
        stopGliding();
        m_isResizedByUser = true;
    });

    // The first report comes when the page has its content and its caret.
    connect(
        m_controller->controller(), &EditorController::formatStateChanged, this,
        [this] { Q_EMIT ready(); }, Qt::SingleShotConnection);

    m_glide.setDuration(int(std::chrono::milliseconds(glideTime).count()));
    m_glide.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_glide, &QVariantAnimation::valueChanged, this, [this](const QVariant &topLeft) {
        const QRect at(topLeft.toPoint(), m_frame.size());
        m_window->setGeometry(windowGeometry(at));
    });

    m_window->setProperty("_q_xcb_wm_window_role",
                          QByteArray("sticky")); // for rules of the desktop
    m_frame = m_window->geometry() - margins();
    for (const auto signal :
         {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged, &QWindow::heightChanged})
        connect(m_window.get(), signal, this, &StickyNoteHost::followGeometry);
    QQmlProperty(m_window.get(), QStringLiteral("shadow"))
        .connectNotifySignal(this, SLOT(followShadow()));
    m_window->installEventFilter(this);
    // The window itself does not tell when the keyboard goes from its popover to somebody else.
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
            [this] { m_controller->setIsActive(m_window->isActive()); });
}

StickyNoteHost::~StickyNoteHost()
{
    m_glide.disconnect(this);
    m_glide.stop();
    m_controller->disconnect(this);
    m_controller->controller()->disconnect(this);
    m_window->disconnect(this);
    m_window->removeEventFilter(this);
    if (m_isClosed && m_keeper)
        new Farewell(std::move(m_controller), std::move(m_window), m_keeper);
}

QRect StickyNoteHost::frame() const
{
    return m_frame;
}

// Only the place glides: a page that is drawn anew at every step of its size would lag behind.
void StickyNoteHost::setFrame(const QRect &frame, Motion motion)
{
    stopGliding();
    m_isResizedByUser = false;
    const QPoint from = m_frame.topLeft();
    m_frame = frame;
    m_controller->setHeight(frame.height());
    const bool glides = motion == Motion::Animated && m_window->isVisible() &&
                        from != frame.topLeft() && !SystemPreferences::shared().reducesMotion();
    m_isPlacing = true;
    m_window->setGeometry(windowGeometry(glides ? QRect(from, frame.size()) : frame));
    m_isPlacing = false;
    if (!glides)
        return;
    m_glide.setStartValue(from);
    m_glide.setEndValue(frame.topLeft());
    m_glide.start();
}

void StickyNoteHost::appear()
{
    show(false);
    m_window->raise();
}

void StickyNoteHost::bringToFront()
{
    show(true);
    m_window->raise();
    m_window->requestActivate();
    if (m_controller->showsEditor())
        m_controller->controller()->focusEditor();
}

void StickyNoteHost::show(bool withKeyboard)
{
    m_window->setProperty("_q_showWithoutActivating", !withKeyboard); // known to the platforms
    m_window->setWindowStates(m_window->windowStates() & ~Qt::WindowMinimized);
    keepOutOfTaskSwitcher(*m_window); // there is the main window for all of them
    m_window->setVisible(true);
}

void StickyNoteHost::close()
{
    m_window->close();
    reportClosed(); // a window that was never shown does not tell
}

void StickyNoteHost::setFloating(bool isFloating)
{
    m_window->setFlag(Qt::WindowStaysOnTopHint, isFloating);
}

bool StickyNoteHost::isCollapsed() const
{
    return m_controller->isCollapsed();
}

void StickyNoteHost::setCollapsed(bool isCollapsed)
{
    m_controller->setCollapsed(isCollapsed);
}

bool StickyNoteHost::isHostedBy(const QWindow *window) const
{
    return window == m_window.get();
}

bool StickyNoteHost::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window.get()) {
        if (event->type() == QEvent::Close)
            reportClosed();
        else if (event->type() == QEvent::Expose && m_window->isExposed() &&
                 !std::exchange(m_wasSeen, true))
            qCDebug(stickyLog) << "visible"
                               << m_controller->noteID().toString(QUuid::WithoutBraces);
    }
    return StickyWindow::eventFilter(watched, event);
}

void StickyNoteHost::reportClosed()
{
    if (std::exchange(m_isClosed, true))
        return;
    stopGliding();
    Q_EMIT closed();
}

void StickyNoteHost::followShadow()
{
    m_isPlacing = true;
    m_window->setGeometry(windowGeometry(m_frame));
    m_isPlacing = false;
}

// What the window system says of the window, be it by its user or of its own accord.
void StickyNoteHost::followGeometry()
{
    if (m_isPlacing || isGliding())
        return;
    const QRect before = m_frame;
    m_frame = m_window->geometry() - margins();
    if (!canPlaceWindows())
        m_frame.moveTopLeft(before.topLeft()); // what is said of its place means nothing
    const bool showedEditor = m_controller->showsEditor();
    m_controller->setHeight(m_frame.height());
    if (before.size() != m_frame.size()) {
        followUserResizing(showedEditor);
        Q_EMIT resized();
    }
    if (before.topLeft() != m_frame.topLeft())
        Q_EMIT moved();
}

// Who pulls a capsule open wants to see what is in it. Only then: an event that is late may tell
// the height of a moment ago. While the window system has hold of the edge the window has not got
// the keyboard; afterwards it is to be the page's.
void StickyNoteHost::followUserResizing(bool showedEditor)
{
    if (!m_isResizedByUser)
        return;
    if (isCollapsed() && !StickyPacking::isCollapsed(m_frame.height(), std::nullopt))
        setCollapsed(false);
    if (!showedEditor && m_controller->showsEditor())
        m_controller->controller()->focusEditor();
}

void StickyNoteHost::stopGliding()
{
    if (!isGliding())
        return;
    m_glide.stop();
    followGeometry();
}

QMargins StickyNoteHost::margins() const
{
    const int shadow = m_window->property("shadow").toInt();
    return {shadow, shadow, shadow, shadow};
}
