#include "sticky/StickyNoteManager.h"

#include "sticky/StickyLog.h"

#include <QQmlEngine>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace
{
constexpr double cascadeStep = 36; ///< to the right of and below the source window
constexpr int mostTogether = 20; ///< windows that appear in one turn of the event loop
} // namespace

StickyNoteManager &StickyNoteManager::shared()
{
    static StickyNoteManager manager(nullptr);
    return manager;
}

StickyNoteManager *StickyNoteManager::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}

StickyNoteManager::StickyNoteManager(QObject *parent, Screens screens, const StickyDelays &delays)
    : QObject(parent), m_screens(std::move(screens)), m_delays(delays)
{
    m_saveWorkItem.setSingleShot(true);
    m_saveWorkItem.setTimerType(Qt::PreciseTimer);
    connect(&m_saveWorkItem, &QTimer::timeout, this, &StickyNoteManager::writeLayout);
    m_packSoon.setSingleShot(true);
    m_packSoon.setTimerType(Qt::PreciseTimer);
    connect(&m_packSoon, &QTimer::timeout, this, [this] { std::exchange(m_pack, {})(); });
    m_restoreNext.setSingleShot(true); // of no length: other events have their turn in between
    connect(&m_restoreNext, &QTimer::timeout, this, &StickyNoteManager::restoreNext);
    m_openNext.setSingleShot(true);
    connect(&m_openNext, &QTimer::timeout, this, &StickyNoteManager::openNext);
    m_appear.setSingleShot(true);
    connect(&m_appear, &QTimer::timeout, this, &StickyNoteManager::appearTogether);
}

StickyNoteManager::~StickyNoteManager()
{
    m_stickies.clear(); // while there is somebody for their signals
}

void StickyNoteManager::setFactory(StickyWindowFactory factory)
{
    reset();
    m_factory = std::move(factory);
    if (!m_factory)
        return;
    m_waiting = loadLayout(); // saving before they are restored must not lose them
    m_screenWatch = std::make_unique<QObject>();
    ScreenAreas::watch(m_screenWatch.get(), [this] { bringIntoView(); });
}

void StickyNoteManager::reset()
{
    for (QTimer *timer : {&m_packSoon, &m_saveWorkItem, &m_restoreNext, &m_openNext, &m_appear})
        timer->stop();
    m_screenWatch.reset();
    if (m_store)
        m_store->disconnect(this);
    m_store = nullptr;
    for (const Sticky &sticky : m_stickies)
        sticky.window->disconnect(this);
    m_stickies.clear();
    m_waiting.clear();
    m_extracting.clear();
    m_keyboardIsFor.reset();
    m_isRestoring = false;
    m_isTerminating = false;
    setBeforeArranging({});
    announceWindows();
}

StickyWindow *StickyNoteManager::window(const QUuid &noteID) const
{
    const auto found = std::ranges::find(m_stickies, noteID, &Sticky::noteID);
    return found == m_stickies.end() ? nullptr : found->window.get();
}

QList<QUuid> StickyNoteManager::windowOrder() const
{
    QList<QUuid> noteIDs;
    for (const Sticky &sticky : m_stickies)
        noteIDs << sticky.noteID;
    return noteIDs;
}

QHash<QUuid, StickyFrame> StickyNoteManager::lastFrames() const
{
    QHash<QUuid, StickyFrame> frames;
    for (const Sticky &sticky : m_stickies)
        frames.insert(sticky.noteID, sticky.lastFrame);
    return frames;
}

void StickyNoteManager::open(const QUuid &noteID, NoteStore &store, QWindow *sourceWindow,
                             std::optional<StickyFrame> frame)
{
    if (!canOpen())
        return;
    Sticky *sticky = find(noteID);
    if (sticky)
        sticky->isAwaited = false;
    StickyWindow *window =
        sticky ? sticky->window.get() : make(noteID, store, sourceWindow, frame);
    if (window)
        window->bringToFront();
}

StickyWindow *StickyNoteManager::make(const QUuid &noteID, NoteStore &store,
                                      const QWindow *sourceWindow, std::optional<StickyFrame> frame)
{
    watch(store);
    const Note *note = store.note(noteID);
    auto window = m_factory(noteID, note ? note->textSize : NoteTextSize::medium);
    if (!window) {
        qCWarning(stickyLog) << "Plim: no window for" << noteID.toString(QUuid::WithoutBraces);
        return nullptr;
    }
    // Who asks for a note that is about to come back wants it where it was.
    const auto waiting = std::ranges::find(m_waiting, noteID, &StickyLayoutEntry::noteID);
    if (waiting != m_waiting.end()) {
        frame = frame.value_or(waiting->frame);
        m_waiting.erase(waiting);
    }
    connectWindow(noteID, *window);
    StickyWindow *made = window.get();
    m_stickies.push_back({.noteID = noteID, .window = std::move(window)});
    place(m_stickies.back(), frame ? *frame : newFrame(sourceWindow),
          StickyWindow::Motion::Immediate);
    announceWindows();
    saveLayout();
    return made;
}

// Many windows that come one by one keep the desktop busier than all of them at once, and while it
// is busy nobody here gets an answer from it: by then the pages should have all that they need.
void StickyNoteManager::await(const StickyWindow *made)
{
    const auto found = std::ranges::find_if(
        m_stickies, [made](const Sticky &sticky) { return sticky.window.get() == made; });
    if (!made || found == m_stickies.end())
        return;
    found->isAwaited = true;
    if (!m_appear.isActive())
        m_appear.start(m_delays.appear);
}

void StickyNoteManager::appearTogether()
{
    int appeared = 0;
    for (Sticky &sticky : m_stickies) {
        if (!sticky.isAwaited)
            continue;
        if (++appeared > mostTogether) { // too many at once would keep the main window waiting
            m_appear.start(0ms);
            return;
        }
        sticky.isAwaited = false;
        sticky.window->appear();
    }
    if (m_waiting.isEmpty() && m_extracting.isEmpty())
        finishOpening();
}

void StickyNoteManager::finishOpening()
{
    if (const auto noteID = std::exchange(m_keyboardIsFor, std::nullopt)) {
        if (StickyWindow *last = window(*noteID))
            last->bringToFront();
    }
    if (std::exchange(m_isRestoring, false))
        Q_EMIT restored();
}

void StickyNoteManager::openAll(const QList<QUuid> &noteIDs, NoteStore &store,
                                QWindow *sourceWindow)
{
    if (!canOpen())
        return;
    watch(store);
    for (const Sticky &sticky : m_stickies)
        sticky.window->appear(); // they are arranged with the new ones
    m_extractionSource = sourceWindow;
    for (const QUuid &noteID : noteIDs) {
        if (!m_activeNoteIDs.contains(noteID) && !m_extracting.contains(noteID))
            m_extracting << noteID;
    }
    openNext();
}

void StickyNoteManager::openNext()
{
    if (!m_store)
        return;
    // Some may have been opened or deleted since they were asked for.
    m_extracting.removeIf(
        [this](const QUuid &noteID) { return find(noteID) || !m_store->note(noteID); });
    if (!m_extracting.isEmpty()) {
        m_keyboardIsFor = m_extracting.takeFirst(); // it is the last one's
        await(make(*m_keyboardIsFor, *m_store, m_extractionSource, std::nullopt));
    }
    if (!m_extracting.isEmpty()) {
        m_openNext.start();
        return;
    }
    packSoon(m_delays.packAfterOpening, [this] {
        rememberArrangement();
        packWindows(windowOrder());
    });
}

void StickyNoteManager::restore(NoteStore &store)
{
    if (!m_factory)
        return;
    watch(store);
    m_waiting = loadLayout();
    m_isRestoring = true;
    m_restoreNext.start();
}

void StickyNoteManager::restoreNext()
{
    while (m_store && !m_waiting.isEmpty()) {
        const StickyLayoutEntry entry = m_waiting.constFirst();
        const bool isWanted = m_store->note(entry.noteID) && !find(entry.noteID);
        if (isWanted)
            await(make(entry.noteID, *m_store, nullptr, entry.frame));
        m_waiting.removeOne(entry);
        if (isWanted)
            break;
    }
    if (!m_waiting.isEmpty()) {
        m_restoreNext.start();
        return;
    }
    if (!m_appear.isActive())
        finishOpening();
}

void StickyNoteManager::prepareForTermination()
{
    if (!m_factory || m_isTerminating)
        return;
    m_isTerminating = true;
    for (QTimer *timer : {&m_restoreNext, &m_openNext, &m_appear})
        timer->stop();
    for (Sticky &sticky : m_stickies)
        sticky.lastFrame = frameToKeep(sticky);
    m_saveWorkItem.stop();
    writeLayout();
}

void StickyNoteManager::resumeAfterTermination()
{
    if (!std::exchange(m_isTerminating, false))
        return;
    for (const Sticky &sticky : m_stickies) {
        if (sticky.isClosed)
            m_waiting << StickyLayoutEntry{sticky.noteID, sticky.lastFrame};
    }
    std::erase_if(m_stickies, [](Sticky &sticky) {
        if (sticky.isClosed)
            sticky.window.release()->deleteLater();
        return sticky.isClosed;
    });
    announceWindows();
    m_isRestoring = true;
    m_restoreNext.start();
    m_appear.start(m_delays.appear);
    if (!m_extracting.isEmpty())
        m_openNext.start();
}

void StickyNoteManager::saveLayout()
{
    if (m_factory && !m_isTerminating)
        m_saveWorkItem.start(m_delays.save);
}

void StickyNoteManager::writeLayout()
{
    QList<StickyLayoutEntry> entries;
    for (const Sticky &sticky : m_stickies)
        entries << StickyLayoutEntry{sticky.noteID, sticky.lastFrame};
    storeStickyLayout(entries + m_waiting); // who ends the program early loses none of the rest
    Q_EMIT layoutSaved();
}

QList<StickyLayoutEntry> StickyNoteManager::loadLayout()
{
    QList<StickyLayoutEntry> entries = storedStickyLayout();
    qCDebug(stickyLog, "loadLayout: %d entries", int(entries.size()));
    return entries;
}

void StickyNoteManager::setActiveNoteIDs(const NoteIDSet &noteIDs)
{
    if (m_activeNoteIDs == noteIDs)
        return;
    m_activeNoteIDs = noteIDs;
    Q_EMIT activeNoteIDsChanged();
}

bool StickyNoteManager::canOpen()
{
    if (!m_factory && !std::exchange(m_isRefusalLogged, true))
        qCInfo(stickyLog, "Plim: nobody makes sticky windows");
    return bool(m_factory);
}

StickyNoteManager::Sticky *StickyNoteManager::find(const QUuid &noteID)
{
    const auto found = std::ranges::find(m_stickies, noteID, &Sticky::noteID);
    return found == m_stickies.end() ? nullptr : &*found;
}

void StickyNoteManager::connectWindow(const QUuid &noteID, StickyWindow &window)
{
    connect(&window, &StickyWindow::ready, this, [this] {
        if (m_appear.isActive())
            m_appear.start(0ms);
    });
    connect(&window, &StickyWindow::moved, this, [=, this] { windowDidMove(noteID); });
    connect(&window, &StickyWindow::resized, this, [=, this] { windowDidResize(noteID); });
    connect(&window, &StickyWindow::closed, this, [=, this] { windowWillClose(noteID); });
    connect(&window, &StickyWindow::closeRequested, &window, &StickyWindow::close);
    connect(&window, &StickyWindow::pinChanged, &window, &StickyWindow::setFloating);
    connect(&window, &StickyWindow::collapseChanged, this,
            [=, this](bool isCollapsed) { changeHeight(noteID, isCollapsed); });
}

void StickyNoteManager::announceWindows()
{
    NoteIDSet noteIDs;
    for (const Sticky &sticky : m_stickies)
        noteIDs.ids.insert(sticky.noteID);
    setActiveNoteIDs(noteIDs);
}

void StickyNoteManager::watch(NoteStore &store)
{
    if (m_store == &store)
        return;
    if (m_store)
        m_store->disconnect(this);
    m_store = &store;
    connect(&store, &NoteStore::notesChanged, this, &StickyNoteManager::followStore);
}

// A note that is gone takes its window with it, and has none when it comes back.
void StickyNoteManager::followStore(const NotesChange &change)
{
    const bool isReset = change.kind == NotesChange::Kind::Reset;
    if (m_isTerminating || (!isReset && change.kind != NotesChange::Kind::Deleted))
        return;
    const auto isGone = [this, &change, isReset](const QUuid &noteID) {
        return (isReset || change.ids.contains(noteID)) && !m_store->note(noteID);
    };
    m_waiting.removeIf([&](const StickyLayoutEntry &entry) { return isGone(entry.noteID); });
    for (const QUuid &noteID : windowOrder()) {
        StickyWindow *gone = isGone(noteID) ? window(noteID) : nullptr;
        if (gone)
            gone->close();
    }
}

void StickyNoteManager::windowDidMove(const QUuid &noteID)
{
    Sticky *sticky = find(noteID);
    if (!sticky || m_isTerminating)
        return;
    sticky->lastFrame = frameToKeep(*sticky);
    saveLayout();
}

void StickyNoteManager::windowDidResize(const QUuid &noteID)
{
    if (const StickyWindow *resized = window(noteID))
        qCDebug(stickyLog, "windowDidResize h=%d", resized->frame().height());
    windowDidMove(noteID);
}

void StickyNoteManager::windowWillClose(const QUuid &noteID)
{
    Sticky *sticky = find(noteID);
    if (!sticky)
        return;
    if (m_isTerminating) {
        sticky->isClosed = true;
        return;
    }
    sticky->window->disconnect(this);
    sticky->window.release()->deleteLater(); // it is the one that tells
    std::erase_if(m_stickies, [&](const Sticky &each) { return each.noteID == noteID; });
    auto arrangement = m_beforeArranging;
    arrangement.remove(noteID);
    setBeforeArranging(arrangement);
    announceWindows();
    saveLayout();
    if (m_store && m_store->note(noteID))
        Q_EMIT stickyPutAway(noteID);
}

void StickyNoteManager::changeHeight(const QUuid &noteID, bool isCollapsed)
{
    Sticky *sticky = find(noteID);
    if (!sticky)
        return;
    const StickyFrame frame = currentFrame(*sticky);
    const double height = isCollapsed ? StickyFrame::collapsedHeight : StickyFrame::expandedHeight;
    place(*sticky, frame.resizedKeepingTop(frame.width, height), StickyWindow::Motion::Immediate);
    saveLayout();
}

// The origin of a frame is its lower left corner.
StickyFrame StickyNoteManager::newFrame(const QWindow *sourceWindow) const
{
    const ScreenAreas screens = m_screens();
    StickyFrame frame{0, 0, StickyFrame::initialWidth, StickyFrame::expandedHeight};
    if (sourceWindow) {
        const auto sticky = std::ranges::find_if(m_stickies, [&](const Sticky &each) {
            return each.window->isHostedBy(sourceWindow);
        });
        const QRect geometry = sticky == m_stickies.end() ? sourceWindow->frameGeometry()
                                                          : sticky->window->frame();
        const auto source = StickyFrame::fromScreen(geometry, screens.primary);
        frame.x = source.x + cascadeStep;
        frame.y = source.y - cascadeStep;
    } else if (!screens.isEmpty()) {
        frame = StickyFrame::centeredIn(screens.visible.constFirst(), frame.width, frame.height);
    }
    return frame;
}

// A window that is where it was put has not been moved by anybody.
StickyFrame StickyNoteManager::frameToKeep(const Sticky &sticky) const
{
    const QRect frame = sticky.window->frame();
    return frame == sticky.shownFrame ? sticky.wantedFrame
                                      : StickyFrame::fromScreen(frame, m_screens().primary);
}

StickyFrame StickyNoteManager::currentFrame(const Sticky &sticky) const
{
    return sticky.isElsewhere ? StickyFrame::fromScreen(sticky.window->frame(), m_screens().primary)
                              : frameToKeep(sticky);
}

void StickyNoteManager::place(Sticky &sticky, const StickyFrame &frame, StickyWindow::Motion motion)
{
    const ScreenAreas screens = m_screens();
    const StickyFrame shown = frame.broughtIntoView(screens.visible);
    sticky.wantedFrame = frame;
    sticky.shownFrame = shown.toScreen(screens.primary);
    sticky.isElsewhere = shown != frame;
    sticky.lastFrame = frame;
    sticky.window->setFrame(sticky.shownFrame, motion); // which may tell of it at once
}

void StickyNoteManager::bringIntoView()
{
    const ScreenAreas screens = m_screens();
    if (screens.isEmpty())
        return;
    for (Sticky &sticky : m_stickies) {
        const QRect frame = sticky.window->frame();
        const bool isSeen =
            StickyFrame::fromScreen(frame, screens.primary).isInView(screens.visible);
        if (!isSeen || (sticky.isElsewhere && frame == sticky.shownFrame))
            place(sticky, sticky.lastFrame, StickyWindow::Motion::Immediate);
    }
}
