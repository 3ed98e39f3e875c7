#pragma once

#include "mainwindow/ContentController.h"
#include "sticky/WindowHolder.h"
#include "tests/Patience.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QSignalSpy>
#include <QTest>

/// Writes down which windows are asked for.
class StickyRecorder : public StickyNoteManager
{
public:
    StickyRecorder() : StickyNoteManager(nullptr) {}

    void open(const QUuid &noteID, NoteStore &store, QWindow *source,
              std::optional<StickyFrame> frame) override
    {
        opened << noteID;
        stores << &store;
        sources << source;
        QVERIFY(!frame);
    }
    void openAll(const QList<QUuid> &noteIDs, NoteStore &store, QWindow *source) override
    {
        openedTogether << noteIDs;
        stores << &store;
        sources << source;
    }

    QList<QUuid> opened;
    QList<QList<QUuid>> openedTogether;
    QList<NoteStore *> stores;
    QList<QWindow *> sources;
};

/// The main window's decisions over a store of their own.
struct ContentFixture : NoteListFixture {
    explicit ContentFixture(const QString &words = {}) : NoteListFixture(words)
    {
        WindowHolder::shared() = {};
    }
    ~ContentFixture() { WindowHolder::shared() = {}; }
    Q_DISABLE_COPY_MOVE(ContentFixture)

    StickyRecorder sticky;
    ContentController content{store, selection, sticky};
    QSignalSpy edited{&content, &ContentController::editedNoteChanged};
    QSignalSpy rowChanged{&content, &ContentController::selectedRowChanged};
    QSignalSpy saved{&store, &NoteStore::saved};

    void select(const QString &heading) { selection.setSelectedNoteID(id(heading)); }
    [[nodiscard]] QString body(const QString &heading) const
    {
        return store.note(id(heading))->body;
    }
    [[nodiscard]] QSet<QUuid> ids(const QString &words) const
    {
        QSet<QUuid> ids;
        for (const QString &word : words.split(u' ', Qt::SkipEmptyParts))
            ids.insert(id(word));
        return ids;
    }
    /// Every heading in the store's order.
    [[nodiscard]] QString order() const
    {
        QStringList words;
        for (const Note &note : store.notes())
            words << note.headingText();
        return words.join(u' ');
    }
    [[nodiscard]] QString archived() const
    {
        QStringList words;
        for (const Note &note : store.notes()) {
            if (note.isArchived)
                words << note.headingText();
        }
        return words.join(u' ');
    }
    /// The list's headings, once a search has looked at every note.
    [[nodiscard]] QString list()
    {
        if (!QTest::qWaitFor([this] { return content.filteredNotes()->isSearchComplete(); },
                             longEnough))
            qFatal("The search does not end");
        return headings(*content.filteredNotes());
    }
    void tick(const QString &words)
    {
        content.multiSelection()->setIsSelectionMode(true);
        content.multiSelection()->setSelectedIDs({ids(words)});
    }
    [[nodiscard]] bool isTicking() { return content.multiSelection()->isSelectionMode(); }
    void drag(const QString &heading, int toRow)
    {
        auto *reordering = content.reordering();
        reordering->layOutRows(0, 70, 320);
        const int row = content.filteredNotes()->rowOf(id(heading));
        reordering->drag(id(heading), {100, row * 70 + 35.0}, {100, toRow * 70 + 1.0});
    }
};
