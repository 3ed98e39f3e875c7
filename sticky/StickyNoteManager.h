#pragma once

#include "core/NoteStore.h"
#include "shell/NoteIDSet.h"
#include "sticky/ScreenAreas.h"
#include "sticky/StickyLayoutEntry.h"
#include "sticky/StickyWindow.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUuid>
#include <QWindow>
#include <qqmlregistration.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QJSEngine;
class QQmlEngine;

/// How long the manager waits for more of the same.
struct StickyDelays {
    std::chrono::milliseconds save{350};
    std::chrono::milliseconds appear{300}; ///< at most, for something to show
    std::chrono::milliseconds packAfterOpening{200};
    std::chrono::milliseconds packAfterFolding{100}; ///< that is, collapsing or expanding all
};

/// The notes that are out in windows of their own: opens and closes these, arranges them, and keeps
/// where they are from one start of the program to the next.
class StickyNoteManager : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(NoteIDSet activeNoteIDs READ activeNoteIDs NOTIFY activeNoteIDsChanged)
    Q_PROPERTY(bool canUndoArrange READ canUndoArrange NOTIFY canUndoArrangeChanged)

public:
    using Screens = std::function<ScreenAreas()>;

    [[nodiscard]] static StickyNoteManager &shared();
    static StickyNoteManager *create(QQmlEngine *, QJSEngine *);

    /// Without a default parent: of a class that it can make by itself QML makes one of its own.
    explicit StickyNoteManager(QObject *parent, Screens screens = &ScreenAreas::current,
                               const StickyDelays &delays = {});
    ~StickyNoteManager() override;
    Q_DISABLE_COPY_MOVE(StickyNoteManager)

    /// Starts anew with windows from here. An empty one takes all windows down, and without one
    /// nothing is opened, read or written; what made the windows must outlive them.
    void setFactory(StickyWindowFactory factory);

    /// The notes whose window is open.
    [[nodiscard]] const NoteIDSet &activeNoteIDs() const { return m_activeNoteIDs; }
    /// nullptr when the note has none.
    [[nodiscard]] StickyWindow *window(const QUuid &noteID) const;
    /// In the order in which they were opened.
    [[nodiscard]] QList<QUuid> windowOrder() const;
    /// Of each window the frame that is saved. One that nobody would see there is shown elsewhere,
    /// and still has that frame until its user moves it.
    [[nodiscard]] QHash<QUuid, StickyFrame> lastFrames() const;
    /// Windows of the saved layout are still to be opened.
    [[nodiscard]] bool isRestoring() const { return !m_waiting.isEmpty() || m_isRestoring; }
    [[nodiscard]] bool isTerminating() const { return m_isTerminating; }
    [[nodiscard]] bool canUndoArrange() const { return !m_beforeArranging.isEmpty(); }

    /// Shows the note's window, and brings it to the front when there is one already. A new one is
    /// put into the frame, else beside the source window, else in the middle of the screen.
    virtual void open(const QUuid &noteID, NoteStore &store, QWindow *sourceWindow,
                      std::optional<StickyFrame> frame);
    /// Opens those of the notes that have no window, in this order, and packs the windows. One is made
    /// in each turn of the event loop, and they appear together, once the first has something to show;
    /// the last one gets the keyboard.
    virtual void openAll(const QList<QUuid> &noteIDs, NoteStore &store, QWindow *sourceWindow);
    /// Opens the windows of the saved layout in the same way, but none of them takes the keyboard:
    /// its user may be typing by then.
    void restore(NoteStore &store);

    Q_INVOKABLE void collapseAll();
    Q_INVOKABLE void expandAll();
    Q_INVOKABLE void sortRandomly();
    /// In the order of the colours; windows without a note are the last.
    void sortWindowsByColor(const NoteStore &store);
    /// Puts every window back that the last arrangement has moved, once.
    Q_INVOKABLE void undoArrange();

    /// The application is about to quit: writes the layout, and from now on a window that closes is
    /// not forgotten.
    void prepareForTermination();
    /// It goes on after all. Windows that have closed meanwhile come back.
    void resumeAfterTermination();

    /// Writes the layout once nothing has changed for a while.
    void saveLayout();
    [[nodiscard]] static QList<StickyLayoutEntry> loadLayout();

Q_SIGNALS:
    void activeNoteIDsChanged();
    /// The windows of the saved layout are open.
    void restored();
    void canUndoArrangeChanged();
    /// Somebody has closed the note's window; the note is still there.
    void stickyPutAway(const QUuid &noteID);
    /// The last words of a note that was deleted while its window was open.
    void editedAfterDeletion(const QUuid &noteID, const QString &html);
    void layoutSaved();

protected:
    void setActiveNoteIDs(const NoteIDSet &noteIDs);
    /// The screens have changed: windows that nobody sees any more are shown elsewhere, and those
    /// that were return where they can be seen again.
    void bringIntoView();

private:
    struct Sticky {
        QUuid noteID;
        std::unique_ptr<StickyWindow> window;
        StickyFrame lastFrame{};
        StickyFrame wantedFrame{}; ///< was to be shown where it was put last
        QRect shownFrame{};        ///< was put here instead, or for want of fractions
        bool isElsewhere = false;
        bool isClosed = false;  ///< as the application ends
        bool isAwaited = false; ///< is to be seen once those that come with it are made
    };
    struct Arrangement {
        StickyFrame frame;
        bool isCollapsed = false;
    };

    void reset();
    [[nodiscard]] bool canOpen();
    [[nodiscard]] Sticky *find(const QUuid &noteID);
    void connectWindow(const QUuid &noteID, StickyWindow &window);
    void announceWindows();
    void watch(NoteStore &store);
    void followStore(const NotesChange &change);
    void restoreNext();
    void openNext();
    [[nodiscard]] StickyWindow *make(const QUuid &noteID, NoteStore &store,
                                     const QWindow *sourceWindow, std::optional<StickyFrame> frame);
    void await(const StickyWindow *made);
    void appearTogether();
    void finishOpening();

    // Frames
    [[nodiscard]] StickyFrame newFrame(const QWindow *sourceWindow) const;
    [[nodiscard]] StickyFrame frameToKeep(const Sticky &sticky) const;
    [[nodiscard]] StickyFrame currentFrame(const Sticky &sticky) const;
    void place(Sticky &sticky, const StickyFrame &frame, StickyWindow::Motion motion);
    void writeLayout();

    // What the windows tell
    void windowDidMove(const QUuid &noteID);
    void windowDidResize(const QUuid &noteID);
    void windowWillClose(const QUuid &noteID);
    void changeHeight(const QUuid &noteID, bool isCollapsed);

    // Arranging
    void setAllCollapsed(bool isCollapsed);
    void packWindows(const QList<QUuid> &noteIDs, std::optional<bool> forced = std::nullopt);
    void packSoon(std::chrono::milliseconds delay, const std::function<void()> &pack);
    void rememberArrangement();
    void setBeforeArranging(const QHash<QUuid, Arrangement> &arrangement);

    StickyWindowFactory m_factory;
    Screens m_screens;
    StickyDelays m_delays;
    QPointer<NoteStore> m_store;
    std::vector<Sticky> m_stickies;
    NoteIDSet m_activeNoteIDs;
    QList<StickyLayoutEntry> m_waiting; ///< of the saved layout, and not open yet
    QList<QUuid> m_extracting;          ///< asked for together, and not open yet
    QPointer<QWindow> m_extractionSource;
    std::optional<QUuid> m_keyboardIsFor; ///< once it appears
    QHash<QUuid, Arrangement> m_beforeArranging;
    std::function<void()> m_pack;
    QTimer m_packSoon;
    QTimer m_saveWorkItem;
    QTimer m_restoreNext;
    QTimer m_openNext;
    QTimer m_appear;
    std::unique_ptr<QObject> m_screenWatch;
    bool m_isRestoring = false;
    bool m_isTerminating = false;
    bool m_isRefusalLogged = false;
};
