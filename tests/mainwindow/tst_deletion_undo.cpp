#include "mainwindow/DeletionUndo.h"

#include "tests/mainwindow/NoteListFixture.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
struct Fixture : NoteListFixture {
    explicit Fixture(const QString &words, std::chrono::milliseconds time = 1h)
        : NoteListFixture(words), undo(store, time)
    {
    }

    /// Deletes the notes with these headings, separated by spaces, and offers them.
    void remove(const QString &words)
    {
        QSet<QUuid> ids;
        for (const QString &word : words.split(u' '))
            ids.insert(id(word));
        undo.offer(store.placedNotes(ids));
        store.deleteNotes(ids);
    }
    [[nodiscard]] QString order() const
    {
        QStringList words;
        for (const Note &note : store.notes())
            words << note.headingText();
        return words.join(u' ');
    }

    DeletionUndo undo;
    QSignalSpy offered{&undo, &DeletionUndo::isOfferedChanged};
    QSignalSpy retold{&undo, &DeletionUndo::textChanged};
    QSignalSpy restored{&undo, &DeletionUndo::restored};
};
} // namespace

class TestDeletionUndo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theOfferStandsForEightSeconds() { QCOMPARE(DeletionUndo::defaultOfferTime, 8s); }

    void atFirstNothingIsOffered()
    {
        Fixture f(u"A"_s);
        QVERIFY(!f.undo.isOffered());
        f.undo.undo();
        f.undo.dismiss();
        f.undo.offer({});
        QVERIFY(!f.undo.isOffered());
        QCOMPARE(f.order(), u"A"_s);
        QCOMPARE(f.offered.count() + f.retold.count() + f.restored.count(), 0);
    }

    void notesGoBackToWhereTheyWere_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("deleted");
        QTest::newRow("the only one") << u"A"_s << u"A"_s;
        QTest::newRow("the first") << u"A B C"_s << u"A"_s;
        QTest::newRow("one in the middle") << u"A B C"_s << u"B"_s;
        QTest::newRow("the last") << u"A B C"_s << u"C"_s;
        QTest::newRow("neighbours") << u"A B C D E"_s << u"B C D"_s;
        QTest::newRow("apart") << u"A B C D E"_s << u"A C E"_s;
        QTest::newRow("all") << u"A B C"_s << u"A B C"_s;
        QTest::newRow("of both tabs") << u"A b C d"_s << u"b C"_s;
    }
    void notesGoBackToWhereTheyWere()
    {
        QFETCH(QString, before);
        QFETCH(QString, deleted);
        Fixture f(before);
        const NoteArray notes = f.store.notes();
        f.remove(deleted);
        QVERIFY(f.undo.isOffered());
        QVERIFY(f.store.notes() != notes);
        QSignalSpy changed(&f.store, &NoteStore::notesChanged);
        f.undo.undo();
        QVERIFY(f.store.notes() == notes); // their dates are the old ones as well
        QCOMPARE(changed.count(), 1);
        QVERIFY(!f.undo.isOffered());
        QCOMPARE(f.restored.count(), 1);
        QCOMPARE(f.restored[0][0].value<QList<QUuid>>().size(), deleted.split(u' ').size());
        f.undo.undo(); // once is enough
        QVERIFY(f.store.notes() == notes);
        QCOMPARE(f.offered.count(), 2);
    }

    void whatHappenedMeanwhileStays()
    {
        Fixture f(u"A B C D"_s);
        f.remove(u"B"_s);
        f.store.moveNote(f.id(u"D"_s), f.id(u"A"_s));
        f.undo.undo();
        QCOMPARE(f.order(), u"D A B C"_s);
    }

    void theNotesAreThereBeforeItIsSaid()
    {
        Fixture f(u"A B"_s);
        QStringList seen;
        connect(&f.undo, &DeletionUndo::restored, &f.undo, [&] { seen << f.order(); });
        f.remove(u"A"_s);
        f.undo.undo();
        QCOMPARE(seen, QStringList{u"A B"_s});
    }

    void theOfferEndsByItself()
    {
        Fixture f(u"A B"_s, 1ms);
        f.remove(u"A"_s);
        QVERIFY(f.undo.isOffered());
        QTRY_VERIFY(!f.undo.isOffered());
        QCOMPARE(f.offered.count(), 2);
        f.undo.undo();
        QCOMPARE(f.order(), u"B"_s);
        QCOMPARE(f.restored.count(), 0);
    }

    void theOfferCanBeDeclined()
    {
        Fixture f(u"A B"_s);
        f.remove(u"A"_s);
        f.undo.dismiss();
        f.undo.dismiss();
        QVERIFY(!f.undo.isOffered());
        QCOMPARE(f.offered.count(), 2);
        QCOMPARE(f.undo.text(), u"Note deleted"_s); // while it fades away
        f.undo.undo();
        QCOMPARE(f.order(), u"B"_s);
    }

    void anotherDeletionTakesTheOffersPlace()
    {
        Fixture f(u"A B C"_s);
        f.remove(u"A"_s);
        f.remove(u"B"_s);
        QCOMPARE(f.offered.count(), 1); // there was an offer and there is one
        f.undo.undo();
        QCOMPARE(f.order(), u"B C"_s);
    }

    void anotherDeletionBeginsTheTimeAnew()
    {
        Fixture f(u"A B"_s, 60ms);
        f.remove(u"A"_s);
        QElapsedTimer sinceLast;
        bool isSecond = false;
        // The second one comes late in the first one's time.
        QTimer::singleShot(40ms, &f.undo, [&] {
            f.remove(u"B"_s);
            sinceLast.start();
            isSecond = true;
        });
        QTRY_VERIFY(isSecond && !f.undo.isOffered());
        QVERIFY2(sinceLast.elapsed() >= 50, qPrintable(QString::number(sinceLast.elapsed())));
    }

    void texts_data()
    {
        QTest::addColumn<QString>("deleted");
        QTest::addColumn<QString>("polish");
        QTest::addColumn<QString>("english");
        QTest::newRow("1") << u"A"_s << u"Usunięto notatkę"_s << u"Note deleted"_s;
        QTest::newRow("2") << u"A B"_s << u"Usunięto 2 notatki"_s << u"2 notes deleted"_s;
        QTest::newRow("5") << u"A B C D E"_s << u"Usunięto 5 notatek"_s << u"5 notes deleted"_s;
    }
    void texts()
    {
        QFETCH(QString, deleted);
        Fixture f(u"A B C D E"_s);
        f.remove(deleted);
        QTEST(f.undo.text(), "english");
        QCOMPARE(f.retold.count(), 1);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QTEST(f.undo.text(), "polish");
        QCOMPARE(f.retold.count(), 2);
    }

    void lateWordsGoIntoTheNoteOnOffer()
    {
        Fixture f(u"A B"_s);
        const QUuid note = f.id(u"A"_s);
        QVERIFY(!f.undo.applyEdit(note, u"<h1>early</h1>"_s)); // nothing is on offer
        f.remove(u"A"_s);
        QVERIFY(f.undo.applyEdit(note, u"<h1>late</h1>"_s));
        QVERIFY(!f.undo.applyEdit(f.id(u"B"_s), u"<h1>another's</h1>"_s));
        QCOMPARE(f.order(), u"B"_s);
        f.undo.undo();
        QCOMPARE(f.order(), u"late B"_s);
        QVERIFY(!f.undo.applyEdit(note, u"<h1>too late</h1>"_s));
    }
};

QTEST_GUILESS_MAIN(TestDeletionUndo)
#include "tst_deletion_undo.moc"
