#include "sticky/StickyNoteController.h"

#include "core/NotificationCenter.h"
#include "shell/L10n.h"
#include "shell/LanguageManager.h"
#include "sticky/WindowHolder.h"
#include "tests/sticky/StickyNotesFixture.h"

#include <QElapsedTimer>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{
constexpr int collapsedHeight = 56;
constexpr int expandedHeight = 340;

Note noteOf(const QString &body, const QString &title = {})
{
    Note note = Note::fresh({1.0});
    note.body = body;
    note.title = title;
    return note;
}

QList<bool> answers(const QSignalSpy &spy)
{
    QList<bool> answers;
    for (const QVariantList &arguments : spy)
        answers << arguments.constFirst().toBool();
    return answers;
}

struct Fixture : StickyNotesFixture {
    explicit Fixture(const Note &note = noteOf(u"<h1>Tea</h1><p>green</p>"_s))
    {
        store.setNotes({note});
        controller.emplace(note.id, note.textSize, store, *manager);
    }
    [[nodiscard]] Note note() const { return store.notes()[0]; }

    std::optional<StickyNoteController> controller;
};
} // namespace

// What a sticky window's view shows and does, without a window.
class TestStickyNoteController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { LanguageManager::shared().setLanguage(AppLanguage::pl); }

    void itShowsItsNote()
    {
        Note note = noteOf(u"<h1>Tea</h1>"_s);
        note.color = u"blue"_s;
        note.textSize = NoteTextSize::big;
        const Fixture f(note);
        QVERIFY(f.controller->hasNote());
        QCOMPARE(f.controller->color(), u"blue"_s);
        QCOMPARE(f.controller->tint(), displayColor(NoteColor::blue));
        QCOMPARE(f.controller->textSize(), u"big"_s);
        QCOMPARE(f.controller->editedNote().noteID, note.id);
        QCOMPARE(f.controller->editedNote().html, note.body);
        QCOMPARE(f.controller->editedNote().bodyFontSize, 19.0);
        QVERIFY(!f.controller->isPinned() && !f.controller->isCollapsed());
    }

    void withoutItsNoteItShowsNothing()
    {
        Fixture f;
        f.store.setNotes({});
        QVERIFY(!f.controller->hasNote());
        QVERIFY(!f.controller->editedNote().noteID);
        QCOMPARE(f.controller->color(), QString());
        QCOMPARE(f.controller->textSize(), u"medium"_s);
        QVERIFY(f.controller->tint().isValid());
        f.controller->setColor(u"red"_s);
        f.controller->setTextSize(u"big"_s);
        QVERIFY(f.store.notes().isEmpty());
    }

    void theTitleIsTheHeadingAsPlainText_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("storedTitle");
        QTest::addColumn<QString>("title");
        QTest::newRow("heading") << u"<h1>Tea</h1><p>x</p>"_s << u""_s << u"Tea"_s;
        QTest::newRow("formats") << u"<h1><b>Tea</b> &amp; <i>milk</i></h1>"_s << u""_s
                                 << u"Tea & milk"_s;
        QTest::newRow("only a stored title") << u"<p>x</p>"_s << u"Cup"_s << u"Cup"_s;
        QTest::newRow("a new note") << u"<h1><br></h1>"_s << u""_s << u"Bez tytułu"_s;
        QTest::newRow("nothing at all") << u""_s << u""_s << u"Bez tytułu"_s;
    }
    void theTitleIsTheHeadingAsPlainText()
    {
        QFETCH(QString, body);
        QFETCH(QString, storedTitle);
        QFETCH(QString, title);
        const Fixture f(noteOf(body, storedTitle));
        QCOMPARE(f.controller->title(), title);
    }

    void aNewLanguageNamesTheUntitledAnew()
    {
        Fixture f(noteOf(u"<h1><br></h1>"_s));
        QSignalSpy changed(&*f.controller, &StickyNoteController::titleChanged);
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QCOMPARE(f.controller->title(), u"Untitled"_s);
        QVERIFY(!changed.isEmpty());
    }

    void onlyChangesOfItsNoteAreNews()
    {
        Fixture f;
        const QUuid other = f.store.addNote();
        QSignalSpy changed(&*f.controller, &StickyNoteController::noteChanged);
        Note edited = *f.store.note(other);
        edited.body = u"<h1>Other</h1>"_s;
        f.store.updateNote(edited);
        QCOMPARE(changed.count(), 0);
        f.setColor(1, u"red"_s);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(f.controller->tint(), displayColor(NoteColor::red));
    }

    // Its two forms

    void collapsingAsksForTheHeightThatGoesWithIt()
    {
        Fixture f;
        QSignalSpy asked(&*f.controller, &StickyNoteController::collapseChanged);
        f.controller->toggleCollapse();
        QVERIFY(f.controller->isCollapsed() && !f.controller->showsEditor());
        QCOMPARE(answers(asked), QList{true});
        f.controller->setHeight(collapsedHeight);
        f.controller->toggleCollapse();
        QVERIFY(!f.controller->isCollapsed());
        QCOMPARE(asked.constLast(), QVariantList{false});
        f.controller->setHeight(expandedHeight);
        QVERIFY(f.controller->showsEditor() && f.controller->isUnfolded());
    }

    void settingTheFormAsksForNothing()
    {
        Fixture f;
        QSignalSpy asked(&*f.controller, &StickyNoteController::collapseChanged);
        f.controller->setCollapsed(true);
        f.controller->setCollapsed(false);
        QCOMPARE(asked.count(), 0);
    }

    // It comes back so when it was collapsed as the program ended.
    void oneThatIsExpandedButLowIsExpandedInOneStep()
    {
        Fixture f;
        f.controller->setHeight(collapsedHeight);
        QVERIFY(!f.controller->isCollapsed());
        QVERIFY(!f.controller->isUnfolded() && !f.controller->showsEditor());
        QSignalSpy asked(&*f.controller, &StickyNoteController::collapseChanged);
        f.controller->toggleCollapse();
        QVERIFY(!f.controller->isCollapsed());
        QCOMPARE(answers(asked), QList{false});
    }

    void theHeightSaysWhatThereIsRoomFor_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<bool>("showsEditor");
        QTest::addColumn<bool>("isUnfolded");
        QTest::newRow("as if collapsed") << 56 << false << false;
        QTest::newRow("too low for a line") << 79 << false << false;
        QTest::newRow("a line") << 80 << true << false;
        QTest::newRow("still counts as collapsed") << 99 << true << false;
        QTest::newRow("unfolded") << 100 << true << true;
    }
    void theHeightSaysWhatThereIsRoomFor()
    {
        QFETCH(int, height);
        Fixture f;
        f.controller->setHeight(height);
        QTEST(f.controller->showsEditor(), "showsEditor");
        QTEST(f.controller->isUnfolded(), "isUnfolded");
    }

    void allCanBeCollapsedAndExpandedAtOnce()
    {
        Fixture f;
        QSignalSpy asked(&*f.controller, &StickyNoteController::collapseChanged);
        auto &center = NotificationCenter::shared();
        Q_EMIT center.plimExpandAll();
        QCOMPARE(asked.count(), 0); // it is
        Q_EMIT center.plimCollapseAll();
        Q_EMIT center.plimCollapseAll();
        QCOMPARE(answers(asked), QList{true});
        Q_EMIT center.plimExpandAll();
        QVERIFY(!f.controller->isCollapsed());
        QCOMPARE(asked.constLast(), QVariantList{false});
    }

    // Its controls

    void pinningTellsTheWindow()
    {
        Fixture f;
        QSignalSpy told(&*f.controller, &StickyNoteController::pinChanged);
        f.controller->togglePin();
        QVERIFY(f.controller->isPinned());
        f.controller->togglePin();
        QVERIFY(!f.controller->isPinned());
        QCOMPARE(answers(told), (QList{true, false}));
    }

    void optionsAreStoredInTheNote()
    {
        Fixture f;
        f.controller->setColor(u"purple"_s);
        f.controller->setTextSize(u"small"_s);
        QCOMPARE(f.note().color, u"purple"_s);
        QCOMPARE(f.note().textSize, NoteTextSize::small);
        QCOMPARE(f.controller->textSize(), u"small"_s);
        QCOMPARE(f.controller->editedNote().bodyFontSize, 14.0);
        f.controller->setColor(u"pink"_s);
        QCOMPARE(f.note().color, u"purple"_s);
    }

    void theColourThatItHasIsStoredAllTheSame()
    {
        Fixture f;
        const Note before = f.note();
        QSignalSpy stored(&f.store, &NoteStore::notesChanged);
        f.controller->setColor(before.color);
        QCOMPARE(stored.count(), 1);
        QCOMPARE(f.note().body, before.body);
        QCOMPARE(f.note().color, before.color);
    }

    void aNewStickyLiesBesideThisOne()
    {
        Fixture f;
        FakeStickyWindow &window = f.open(0, StickyFrame{200, 300, 320, 400});
        QWindow host;
        host.setGeometry(0, 0, 900, 900); // with what is around the card
        window.host = &host;
        f.controller->newSticky(&host);
        QCOMPARE(f.store.notes().size(), 2);
        const QUuid created = f.made.constLast();
        QVERIFY(created != f.note().id || f.store.notes()[1].id == f.made.constFirst());
        const StickyFrame frame =
            StickyFrame::fromScreen(f.window(created).frame(), Fixture::primary);
        QCOMPARE(frame, (StickyFrame{236, 264, 300, 340}));
        QCOMPARE(f.window(created).timesInFront, 1);
    }

    void theMainWindowIsAskedTwiceForTheNote()
    {
        Fixture f;
        QWindow main;
        WindowHolder::shared().window = &main;
        QSignalSpy asked(&NotificationCenter::shared(), &NotificationCenter::plimSelectNote);
        QElapsedTimer timer;
        timer.start();
        f.controller->openNotebook();
        QCOMPARE(asked.count(), 1);
        f.controller.reset(); // a window that is closed meanwhile has asked all the same
        QTRY_COMPARE(asked.count(), 2);
        QVERIFY2(timer.elapsed() >= 150, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(asked[0], asked[1]);
        QCOMPARE(asked[0][0].toUuid(), f.note().id);
    }

    void withoutAMainWindowTheNoteWaitsForIt()
    {
        Fixture f;
        WindowHolder::shared() = {};
        QSignalSpy asked(&NotificationCenter::shared(), &NotificationCenter::plimSelectNote);
        f.controller->openNotebook();
        QCOMPARE(WindowHolder::shared().pendingSelectedID, f.note().id);
        QCOMPARE(asked.count(), 0);
        WindowHolder::shared() = {};
    }

    // What is written in it

    void anEditIsStored()
    {
        Fixture f;
        f.controller->applyEdit(f.note().id, u"<h1>Milk</h1>"_s);
        QCOMPARE(f.note().body, u"<h1>Milk</h1>"_s);
        QCOMPARE(f.controller->editedNote().html, u"<h1>Milk</h1>"_s);
    }

    void theLastWordsOfADeletedNoteArePassedOn()
    {
        Fixture f;
        const QUuid id = f.note().id;
        f.store.deleteNotes({id});
        QSignalSpy late(&*f.controller, &StickyNoteController::editedAfterDeletion);
        f.controller->applyEdit(id, u"<h1>Late</h1>"_s);
        QCOMPARE(late.count(), 1);
        QCOMPARE(late[0][1].toString(), u"<h1>Late</h1>"_s);
        QVERIFY(f.store.notes().isEmpty());
    }
};

QTEST_MAIN(TestStickyNoteController)
#include "tst_sticky_note_controller.moc"
