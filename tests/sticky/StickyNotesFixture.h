#pragma once

#include "core/NoteColor.h"
#include "core/NoteStore.h"
#include "sticky/StickyNoteManager.h"
#include "tests/ThrowAwayHome.h"
#include "tests/sticky/FakeStickyWindow.h"
#include "tests/sticky/StickyFrameText.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>
#include <optional>

/// Two frames that are well in view.
inline constexpr StickyFrame somewhere{200, 300, 320, 400};
inline constexpr StickyFrame elsewhere{600, 120.5, 280, 200};

/// A manager of windows that are nowhere but in the test, on a screen of 1600 x 1000 with a panel
/// of 40 points at its bottom. The manager may be ended and begun anew, as the program is.
class StickyNotesFixture
{
public:
    static constexpr QRect primary{0, 0, 1600, 1000};
    static constexpr StickyFrame visible{0, 40, 1600, 960};

    explicit StickyNotesFixture(int noteCount = 0, const StickyDelays &delays = {})
        : m_delays(delays)
    {
        NoteArray notes;
        for (int i = 0; i < noteCount; ++i)
            notes.append(Note::fresh({double(i)}));
        store.setNotes(notes);
        start();
    }

    /// Ends the program without asking, and starts it again.
    void start()
    {
        manager.emplace(m_delays);
        manager->screens = {primary, {visible}};
        manager->setFactory([this](const QUuid &noteID, NoteTextSize textSize) {
            auto window = std::make_unique<FakeStickyWindow>();
            window->noteID = noteID;
            window->textSize = textSize;
            made << noteID;
            if (whenMade)
                whenMade();
            return window;
        });
    }
    /// Quits in good order, and starts again with the windows of before.
    void restart()
    {
        manager->prepareForTermination();
        for (const QUuid &noteID : manager->windowOrder())
            manager->window(noteID)->close();
        startAndRestore();
    }
    void startAndRestore()
    {
        start();
        made.clear();
        manager->restore(store);
    }

    /// The id of a note by its place in the store.
    [[nodiscard]] QUuid id(int index) const { return store.notes()[index].id; }
    [[nodiscard]] QList<QUuid> ids() const
    {
        QList<QUuid> ids;
        for (const Note &note : store.notes())
            ids << note.id;
        return ids;
    }
    FakeStickyWindow &open(int index, std::optional<StickyFrame> frame = std::nullopt)
    {
        manager->open(id(index), store, nullptr, frame);
        return window(index);
    }
    [[nodiscard]] FakeStickyWindow &window(int index) { return window(id(index)); }
    [[nodiscard]] FakeStickyWindow &window(const QUuid &noteID)
    {
        auto *window = static_cast<FakeStickyWindow *>(manager->window(noteID));
        if (!window)
            qFatal("The test's note has no window");
        return *window;
    }
    /// Where the note's window is.
    [[nodiscard]] StickyFrame frame(int index)
    {
        return StickyFrame::fromScreen(window(index).frame(), primary);
    }
    [[nodiscard]] bool isOut(int index) const
    {
        return manager->activeNoteIDs().contains(id(index));
    }
    /// The saved frame of a note, zeros when there is none.
    [[nodiscard]] StickyFrame saved(int index) const
    {
        for (const StickyLayoutEntry &entry : StickyNoteManager::loadLayout()) {
            if (entry.noteID == id(index))
                return entry.frame;
        }
        return {};
    }
    [[nodiscard]] static qsizetype savedCount() { return StickyNoteManager::loadLayout().size(); }
    void setColor(int index, const QString &color)
    {
        Note note = store.notes()[index];
        note.color = color;
        store.updateNote(note);
    }

    struct Manager : StickyNoteManager {
        explicit Manager(const StickyDelays &delays)
            : StickyNoteManager(
                  nullptr, [this] { return screens; }, delays)
        {
        }
        using StickyNoteManager::bringIntoView;
        using StickyNoteManager::setActiveNoteIDs;
        ScreenAreas screens;
    };

    ThrowAwayHome home;
    NoteStore store{home.data()};
    std::optional<Manager> manager;
    QList<QUuid> made;              ///< the notes that windows were made for, in order
    std::function<void()> whenMade; ///< before the manager has it

private:
    StickyDelays m_delays;
};
