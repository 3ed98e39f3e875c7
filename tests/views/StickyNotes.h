#pragma once

#include "sticky/StickyNoteController.h"
#include "sticky/StickyNoteHost.h"
#include "sticky/StickyNoteManager.h"
#include "tests/mainwindow/NoteListFixture.h"
#include "tests/views/Stage.h"

#include <QRegularExpression>
#include <QTest>

#include <optional>

/// Any warning fails the test but what the platform that shows nothing, and the engine's module at
/// its first use, say of themselves.
inline void failOnWarnings()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(
        "^(?!This plugin does not support|QWebEngine\\w+ is neither|No suitable graphics)")));
}

/// The sticky windows of a store of its own, as the program makes them, with the real page in each.
/// Its tests are run by PLIM_PAGE_TEST_MAIN.
class StickyNotes
{
public:
    static constexpr int shadow = 26; ///< around the card, on every side
    static constexpr int capsuleHeight = 56;
    static constexpr int noteHeight = 340;

    /// A note for each word, none of them with a window yet.
    explicit StickyNotes(const QString &words = QStringLiteral("Tea"),
                         AppLanguage language = AppLanguage::en);
    explicit StickyNotes(const NoteArray &notes, AppLanguage language = AppLanguage::en);
    ~StickyNotes();
    Q_DISABLE_COPY_MOVE(StickyNotes)

    /// Opens a note's window, in its place in the store, and waits until it has the keyboard.
    QQuickWindow *open(int index = 0, std::optional<StickyFrame> frame = std::nullopt);
    /// As open(), and waits until the page shows the note and its caret.
    QQuickWindow *openPage(int index = 0);
    /// Waits until the page of an open window shows the note, in its size, and its caret.
    void settle(int index = 0) const;
    /// The window is collapsed, as by its control.
    void fold(int index = 0) const;
    /// Another window of the program has the keyboard, and the pointer is over none of the
    /// stickies.
    void leave();

    [[nodiscard]] QUuid id(int index = 0) const { return m_ids[index]; }
    [[nodiscard]] const Note &note(int index = 0) const { return *store.note(id(index)); }
    [[nodiscard]] bool isOpen(int index = 0) const { return manager.window(id(index)) != nullptr; }
    [[nodiscard]] StickyNoteHost &host(int index = 0) const;
    [[nodiscard]] QQuickWindow *window(int index = 0) const;
    [[nodiscard]] StickyNoteController &controller(int index = 0) const;
    [[nodiscard]] QQuickItem *item(const QString &name, int index = 0) const
    {
        return itemIn(window(index), name);
    }
    /// nullptr until it was wanted for the first time.
    [[nodiscard]] QQuickWindow *options(int index = 0) const;
    /// Presses the button that opens it.
    QQuickWindow *openOptions(int index = 0) const;
    [[nodiscard]] QString focusedName(int index = 0) const; ///< of what has the keyboard
    [[nodiscard]] QVariant js(const QString &script, int index = 0) const;
    /// What is typed goes into the page.
    [[nodiscard]] bool isWriting(int index = 0) const;
    /// Waits until the page has seen the letter.
    void typeLetter(char letter, int index = 0) const;

    ThrowAwayHome home;
    NoteStore store{home.data()};
    StickyNoteManager &manager = StickyNoteManager::shared();
    QQmlEngine engine;

private:
    QList<QUuid> m_ids;
    QQuickWindow m_other;
};
