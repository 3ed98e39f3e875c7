#include "mainwindow/NoteTexts.h"

#include "core/SearchQuery.h"
#include "tests/Patience.h"
#include "tests/core/Duration.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
Note noteOf(const QString &body, double changed = 0)
{
    Note note = Note::fresh({1000});
    note.body = body;
    note.updatedAt = {changed};
    return note;
}

struct Fixture {
    /// The ids of derived notes, in the order they came.
    [[nodiscard]] QList<QUuid> order() const
    {
        QList<QUuid> ids;
        for (const QList<QVariant> &arguments : derived)
            ids += arguments[0].value<QList<QUuid>>();
        return ids;
    }
    [[nodiscard]] bool finds(const QUuid &id, const QString &query) const
    {
        const NoteTexts::Searched *searched = texts.searched(id);
        return searched && SearchQuery(query).occursIn(searched->text);
    }

    NoteTexts texts;
    QSignalSpy derived{&texts, &NoteTexts::derived};
};
} // namespace

class TestNoteTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatASearchLooksThrough_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("query");
        QTest::addColumn<bool>("isFound");
        const QString body = u"<h1 class=\"big\">Plan &amp; more</h1><p>Tom&nbsp;&lt;3 "
                             "<b>bo</b>ld</p><ul><li>milk</li><li>tea</li></ul>"
                             "<p><a href=\"https://example.org\">link</a></p>"_s;
        QTest::newRow("the heading") << body << u"plan & m"_s << true;
        QTest::newRow("decoded references") << body << u"tom <3"_s << true;
        QTest::newRow("raw references") << body << u"&amp;"_s << false;
        QTest::newRow("a word with a tag in it") << body << u"bold"_s << true;
        QTest::newRow("a tag's name") << body << u"<b>"_s << false;
        QTest::newRow("an attribute's name") << body << u"href"_s << false;
        QTest::newRow("an attribute's value") << body << u"example.org"_s << false;
        QTest::newRow("a class") << body << u"big"_s << false;
        QTest::newRow("a line of a list") << body << u"tea"_s << true;
        QTest::newRow("two lines as one word") << body << u"milktea"_s << false;
        QTest::newRow("two lines with their break") << body << u"milk\ntea"_s << true;
        QTest::newRow("two lines as the preview joins them") << body << u"milk tea"_s << true;
        const QString words = u"<p>%1</p>"_s.arg(u"word "_s.repeated(50) + u"last"_s);
        QTest::newRow("what the preview leaves out") << words << u"last"_s << true;
        QTest::newRow("nothing") << u""_s << u"p"_s << false;
        QTest::newRow("a fresh note's markup") << u"<h1><br></h1>"_s << u"br"_s << false;
        QTest::newRow("a body that shows nothing")
            << u"<p><img src=\"cat.png\"></p>"_s << u"cat.png"_s << true;
        QTest::newRow("emoji") << u"<p>🎂&#127874;</p>"_s << u"🎂🎂"_s << true;
        QTest::newRow("right to left") << u"<p>אמר <b>שלום</b></p>"_s << u"אמר שלום"_s << true;
    }
    void whatASearchLooksThrough()
    {
        QFETCH(QString, body);
        QFETCH(QString, query);
        Fixture f;
        const Note note = noteOf(body);
        f.texts.setNotes({note});
        QVERIFY(!f.texts.searched(note.id));
        QVERIFY(!f.texts.isDerived(note.id));
        QTRY_VERIFY(f.texts.isDerived(note.id));
        QTEST(f.finds(note.id, query), "isFound");
    }

    void aRowsLinesAreThereAtOnce()
    {
        Fixture f;
        const Note note = noteOf(u"<h1>Tea</h1><p>milk</p>"_s);
        f.texts.setNotes({note});
        QCOMPARE(f.texts.lines(note).heading, u"Tea"_s);
        QCOMPARE(f.texts.lines(note).preview, u"milk"_s);
        QVERIFY(!f.texts.searched(note.id));
        const Note stranger = noteOf(u"<h1>Coffee</h1>"_s);
        QCOMPARE(f.texts.lines(stranger).heading, u"Coffee"_s);
        QCOMPARE(f.texts.lines(stranger).preview, QString());
        QTRY_VERIFY(f.texts.isDerived(stranger.id));
    }

    void theOldTitleCounts()
    {
        Fixture f;
        Note stale = noteOf(u"<h1>Plan</h1>"_s);
        stale.title = u"Old"_s;
        Note titled = noteOf(u"<p>text</p>"_s);
        titled.title = u"Old"_s;
        f.texts.setNotes({stale, titled});
        QTRY_VERIFY(f.texts.isDerived(stale.id) && f.texts.isDerived(titled.id));
        QVERIFY(!f.finds(stale.id, u"old"_s));
        QVERIFY(f.finds(titled.id, u"old"_s));
        titled.title = u"New"_s;
        f.texts.update(titled);
        QCOMPARE(f.texts.lines(titled).heading, u"New"_s);
        QTRY_VERIFY(f.texts.isDerived(titled.id));
        QVERIFY(!f.finds(titled.id, u"old"_s));
    }

    // Their texts lie in one piece of memory.
    void aNoteDoesNotNeedThoseDerivedWithIt()
    {
        Fixture f;
        NoteArray notes;
        for (int i = 0; i < 50; ++i)
            notes.append(noteOf(u"<p>number %1 %2</p>"_s.arg(i).arg(u"word "_s.repeated(200))));
        const Note kept = notes[20];
        f.texts.setNotes(notes);
        QTRY_COMPARE(f.order().size(), notes.size());
        for (const Note &note : notes) {
            if (note.id != kept.id)
                f.texts.remove(note.id);
        }
        QVERIFY(f.finds(kept.id, u"number 20 word"_s));
        f.texts.setNotes({kept});
        QVERIFY(f.finds(kept.id, u"number 20 word"_s));
        QVERIFY(!f.finds(kept.id, u"number 21"_s));
    }

    void thoseChangedLastComeFirst()
    {
        Fixture f;
        NoteArray notes;
        QList<QUuid> wanted;
        for (int i = 0; i < 200; ++i) {
            notes.append(noteOf(u"<p>x</p>"_s, i % 2 == 0 ? i : 400 - i));
            wanted << notes[i].id;
        }
        std::ranges::sort(wanted, {}, [&](const QUuid &id) {
            const auto note = std::find_if(notes.begin(), notes.end(),
                                           [&](const Note &note) { return note.id == id; });
            return -note->updatedAt.secondsSinceReferenceDate;
        });
        f.texts.setNotes(notes);
        QTRY_COMPARE(f.order().size(), notes.size());
        QCOMPARE(f.order(), wanted);
        QVERIFY(f.derived.count() > 1);
    }

    void anEditedNoteDoesNotWaitForTheOthers()
    {
        Fixture f;
        NoteArray notes;
        constexpr int count = 3000;
        for (int i = 0; i < count; ++i)
            notes.append(noteOf(u"<p>x</p>"_s, count - i));
        f.texts.setNotes(notes);
        QVERIFY(f.derived.wait(longEnough));
        const qsizetype before = f.order().size();
        Note edited = notes[count - 1];
        edited.body = u"<p>y</p>"_s;
        f.texts.update(edited);
        QTRY_VERIFY(f.texts.isDerived(edited.id));
        const qsizetype place = f.order().indexOf(edited.id);
        const qsizetype waited = place - before;
        QVERIFY2(waited <= 130, qPrintable(QString::number(waited))); // two batches
    }

    void whatIsDerivedForAnOlderTextIsDropped()
    {
        Fixture f;
        // Long enough not to be done while it is changed.
        Note note = noteOf(u"<p>first %1</p>"_s.arg(u"<b>filler</b> "_s.repeated(20'000)));
        f.texts.setNotes({note});
        QCoreApplication::processEvents(); // it goes to the thread
        note.body = u"<p>second</p>"_s;
        f.texts.update(note);
        QTRY_VERIFY(f.texts.isDerived(note.id));
        QVERIFY(f.finds(note.id, u"second"_s));
        QVERIFY(!f.finds(note.id, u"first"_s));
        QCOMPARE(f.derived.count(), 1);
        QCOMPARE(f.texts.lines(note).preview, u"second"_s);
    }

    void whatIsDerivedForADeletedNoteIsDropped()
    {
        Fixture f;
        const Note note = noteOf(u"<p>%1</p>"_s.arg(u"<b>filler</b> "_s.repeated(20'000)));
        const Note other = noteOf(u"<p>other</p>"_s, -1);
        f.texts.setNotes({note, other});
        QCoreApplication::processEvents();
        f.texts.remove(note.id);
        QTRY_VERIFY(f.texts.isDerived(other.id));
        QVERIFY(!f.texts.searched(note.id));
        QCOMPARE(f.order(), QList{other.id});
    }

    void theTextBeforeAnEditServesUntilTheNewOneIsThere()
    {
        Fixture f;
        Note note = noteOf(u"<p>first</p>"_s);
        f.texts.setNotes({note});
        QTRY_VERIFY(f.texts.isDerived(note.id));
        note.body = u"<p>second</p>"_s;
        f.texts.update(note);
        QVERIFY(!f.texts.isDerived(note.id));
        QVERIFY(f.finds(note.id, u"first"_s));
        QTRY_VERIFY(f.texts.isDerived(note.id));
        QVERIFY(f.finds(note.id, u"second"_s));
    }

    void whatIsNotChangedIsNotDerivedAgain()
    {
        Fixture f;
        Note note = noteOf(u"<p>same</p>"_s);
        Note other = noteOf(u"<p>one</p>"_s);
        f.texts.setNotes({note, other});
        QTRY_COMPARE(f.order().size(), 2);
        note.isArchived = true;
        note.color = u"blue"_s;
        note.updatedAt = {5000};
        f.texts.update(note);
        QVERIFY(f.texts.isDerived(note.id));
        other.body = u"<p>two</p>"_s;
        f.texts.setNotes({other, note}); // a restored backup
        QVERIFY(f.texts.isDerived(note.id));
        QVERIFY(!f.texts.isDerived(other.id));
        QTRY_VERIFY(f.texts.isDerived(other.id));
        QCOMPARE(f.order().size(), 3);
        QCOMPARE(f.order().last(), other.id);
    }

    void anIDTwiceIsTheFirstNote()
    {
        Fixture f;
        const Note note = noteOf(u"<p>first</p>"_s);
        Note twin = note;
        twin.body = u"<p>second</p>"_s;
        f.texts.setNotes({note, twin});
        QTRY_VERIFY(f.texts.isDerived(note.id));
        QVERIFY(f.finds(note.id, u"first"_s));
    }

    // Again and again: under a sanitizer this is where a thread that lives on would show.
    void theEndMayComeAnyTime()
    {
        NoteArray notes;
        for (int i = 0; i < 500; ++i)
            notes.append(noteOf(u"<p>%1</p>"_s.arg(u"<b>filler</b> "_s.repeated(50))));
        for (int round = 0; round < 20; ++round) {
            NoteTexts texts;
            texts.setNotes(notes);
            QSignalSpy derived(&texts, &NoteTexts::derived);
            if (round % 3 > 0)
                QCoreApplication::processEvents();
            if (round % 3 > 1)
                QVERIFY(derived.wait(longEnough));
        }
    }

    void theEndWaitsForOneNoteAtMost()
    {
        NoteArray notes;
        for (int i = 0; i < 2000; ++i)
            notes.append(noteOf(u"<p>%1</p>"_s.arg(u"<b>filler</b> "_s.repeated(100))));
        const auto spent = [](auto work) { // by all threads
            const double start = processorTime(CLOCK_PROCESS_CPUTIME_ID);
            work();
            return processorTime(CLOCK_PROCESS_CPUTIME_ID) - start;
        };
        const double whole = spent([&] {
            Fixture f;
            f.texts.setNotes(notes);
            QTRY_COMPARE(f.order().size(), notes.size());
        });
        double cut = whole;
        // The thread may have been let go on before it was told to end.
        for (int attempt = 0; attempt < 20 && cut * 4 > whole; ++attempt) {
            cut = std::min(cut, spent([&] {
                               NoteTexts texts;
                               texts.setNotes(notes);
                               QCoreApplication::processEvents();
                           }));
        }
        QVERIFY2(cut * 4 < whole, qPrintable(u"%1 ns, %2 ns"_s.arg(whole).arg(cut)));
    }
};

QTEST_MAIN(TestNoteTexts)
#include "tst_note_texts.moc"
