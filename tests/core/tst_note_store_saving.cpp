#include "core/NoteStore.h"

#include "core/NotesJson.h"
#include "tests/Patience.h"
#include "tests/core/NoteStoreFixture.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <limits>
#include <memory>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace
{
using Fixture = NoteStoreFixture;

NoteArray notesIn(const DataDirectory &data, const QString &name = u"notes.json"_s)
{
    return decodeNotes(data.read(name), {}).value_or(NoteArray{named(u"undecodable"_s)});
}

/// Changes ten times a second until the store hands them to the save queue, or is late with that.
///
/// What tells is a second timer that is set as the store's own is, at the same moments. A machine
/// that stands still for seconds makes both wait, and then the earlier one goes first all the same.
class UnbrokenTyping
{
public:
    explicit UnbrokenTyping(NoteStore &store) : m_store(store)
    {
        m_latest.setSingleShot(true);
        m_latest.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_latest, &QTimer::timeout, &m_latest, [this] {
            isLate = m_store.hasPendingSave();
            end();
        });
        QObject::connect(&m_keys, &QTimer::timeout, &m_keys, [this] {
            if (m_store.hasPendingSave())
                press();
            else
                end();
        });
        press();
        m_keys.start(100);
    }

    [[nodiscard]] bool hasEnded() const { return !m_keys.isActive(); }
    [[nodiscard]] std::chrono::milliseconds duration() const { return m_duration; }

    bool isLate = false;

private:
    void press()
    {
        constexpr auto pageDelay = 120ms;   // from the key to the report of it
        constexpr auto writingTime = 100ms; // on a usual machine, and more
        constexpr auto latest = 5s - pageDelay - writingTime;
        m_store.addNote();
        if (!m_since.isValid()) // after the store, which may only ever be ahead of this
            m_since.start();
        const auto left = latest - std::chrono::milliseconds(m_since.elapsed());
        m_latest.start(std::clamp<std::chrono::milliseconds>(left, 0ms, 500ms));
    }
    void end()
    {
        m_duration = std::chrono::milliseconds(m_since.elapsed());
        m_keys.stop();
        m_latest.stop();
    }

    NoteStore &m_store;
    QTimer m_keys, m_latest;
    QElapsedTimer m_since;
    std::chrono::milliseconds m_duration{};
};
} // namespace

// When the notes are written, and what is on the disk then.
class TestNoteStoreSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void operationsWriteNothing()
    {
        Fixture f;
        f.store.addNote();
        f.store.updateNote(f.store.notes()[1]);
        f.store.deleteNote(f.id(0));
        f.store.moveNoteToEnd(f.id(0));
        QVERIFY(!f.store.hasPendingSave());
        QCOMPARE(f.data.names(), QStringList());
    }

    void manyChangesWithinHalfASecondAreOneWrite()
    {
        Fixture f;
        QSignalSpy saved(&f.store, &NoteStore::saved);
        connect(&f.store, &NoteStore::notesChanged, &f.store, &NoteStore::save);
        QElapsedTimer timer;
        for (int i = 0; i < 10; ++i) {
            timer.start();
            f.store.addNote();
            QCoreApplication::processEvents();
        }
        QVERIFY(f.store.hasPendingSave());
        QCOMPARE(f.data.names(), QStringList());
        QTRY_COMPARE(saved.count(), 1);
        QVERIFY2(timer.elapsed() >= 499, qPrintable(QString::number(timer.elapsed())));
        QVERIFY(!f.store.hasPendingSave());
        QVERIFY(saved[0][0].toBool());
        QVERIFY(notesIn(f.data) == f.store.notes());
        QCOMPARE(f.data.names(), QStringList{u"notes.json"_s});
        QVERIFY(!saved.wait(600));
    }

    void changesWithoutAPauseAreWrittenWithinFiveSeconds()
    {
        Fixture f;
        QSignalSpy saved(&f.store, &NoteStore::saved);
        connect(&f.store, &NoteStore::notesChanged, &f.store, &NoteStore::save);
        f.store.addNote();
        for (int round = 1; round <= 2; ++round) { // and so it goes on: from the next change
            QTRY_COMPARE(saved.count(), round);
            UnbrokenTyping typing(f.store);
            QTRY_VERIFY(typing.hasEnded());
            QVERIFY(!typing.isLate);
            QVERIFY2(typing.duration() >= 4500ms,
                     qPrintable(QString::number(typing.duration().count())));
        }
        QTRY_COMPARE(saved.count(), 3);
        f.store.addNote();
        QTRY_COMPARE(saved.count(), 4);
        QVERIFY(notesIn(f.data) == f.store.notes());
        QVERIFY(!saved.wait(700));
    }

    void savesRotate()
    {
        Fixture f(1);
        QSignalSpy saved(&f.store, &NoteStore::saved);
        std::vector<NoteArray> versions;
        for (int i = 0; i < 5; ++i) {
            f.store.addNote();
            versions.push_back(f.store.notes());
            f.store.save();
            QTRY_COMPARE(saved.count(), i + 1);
        }
        QVERIFY(notesIn(f.data) == versions[4]);
        QVERIFY(notesIn(f.data, u"notes.json.bak.1"_s) == versions[3]);
        QVERIFY(notesIn(f.data, u"notes.json.bak.2"_s) == versions[2]);
        QVERIFY(notesIn(f.data, u"notes.json.bak.3"_s) == versions[1]);
        QCOMPARE(f.data.names().size(), 4);
        QCOMPARE(f.store.availableBackups().size(), 3U);
    }

    void aSaveWritesTheNotesOfItsMoment()
    {
        Fixture f(0);
        NoteArray many;
        for (int i = 0; i < 5000; ++i)
            many.append(named(u"x"_s));
        f.store.setNotes(many);
        f.store.save();
        QSignalSpy saved(&f.store, &NoteStore::saved);
        QTRY_VERIFY(!f.store.hasPendingSave());
        for (int i = 0; i < 5000; i += 7) {
            Note note = f.store.notes()[i];
            note.body = u"<h1>changed meanwhile</h1>"_s;
            f.store.updateNote(note);
        }
        QTRY_COMPARE(saved.count(), 1);
        QVERIFY(notesIn(f.data) == many);
    }

    void aDateThatIsNoNumberIsNotWritten()
    {
        Fixture f;
        f.store.flush();
        const QByteArray before = f.data.read(u"notes.json"_s);
        f.now = {std::numeric_limits<double>::quiet_NaN()};
        f.store.addNote();
        QSignalSpy saved(&f.store, &NoteStore::saved);
        QTest::ignoreMessage(QtWarningMsg, "Plim: encode failed");
        f.store.save();
        QTRY_COMPARE(saved.count(), 1 + 1);
        QVERIFY(!saved[1][0].toBool());
        QCOMPARE(f.data.read(u"notes.json"_s), before);
        QCOMPARE(f.data.names(), QStringList{u"notes.json"_s});
    }

    void aFailedWriteIsLoggedAndTried()
    {
        const QTemporaryDir parent;
        const QString path = parent.path() + u"/Plim"_s;
        QFile inItsPlace(path);
        QVERIFY(inItsPlace.open(QIODevice::WriteOnly));
        NoteStore store(path);
        QSignalSpy saved(&store, &NoteStore::saved);
        store.addNote();
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(u"^Nie udało się zapisać notatek: .+"_s));
        store.flush();
        QTRY_COMPARE(saved.count(), 1);
        QVERIFY(!saved[0][0].toBool());
        QCOMPARE(store.notes().size(), 1);

        inItsPlace.remove();
        QVERIFY(QDir().mkpath(path));
        store.flush();
        QTRY_COMPARE(saved.count(), 2);
        QVERIFY(saved[1][0].toBool());
    }

    // The end of the program

    void flushingWritesThePendingEditAtOnce()
    {
        Fixture f;
        QSignalSpy saved(&f.store, &NoteStore::saved);
        f.store.addNote();
        f.store.save();
        f.store.flush();
        QVERIFY(!f.store.hasPendingSave());
        QVERIFY(notesIn(f.data) == f.store.notes());
        QTRY_COMPARE(saved.count(), 1);
        QVERIFY(!saved.wait(600));
    }

    void theApplicationsEndFlushes()
    {
        Fixture f;
        f.store.addNote();
        f.store.save();
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
        QVERIFY(!f.store.hasPendingSave());
        QVERIFY(notesIn(f.data) == f.store.notes());
    }

    void flushingWritesNothingBeforeThereWasAnything()
    {
        const DataDirectory data;
        NoteStore store(data.path());
        store.flush();
        QCOMPARE(data.names(), QStringList());
        const QUuid id = store.addNote();
        store.deleteNote(id);
        store.flush();
        QCOMPARE(data.read(u"notes.json"_s), "[]");
    }

    void aFlushComesBehindTheSavesBeforeIt()
    {
        Fixture f(1);
        NoteArray many;
        for (int i = 0; i < 3000; ++i)
            many.append(named(u"x"_s));
        f.store.setNotes(many);
        f.store.save();
        QSignalSpy saved(&f.store, &NoteStore::saved);
        QTRY_VERIFY(!f.store.hasPendingSave()); // handed to the queue, perhaps still being written
        f.store.deleteNotes({f.id(5)});
        f.store.flush();
        QVERIFY(notesIn(f.data) == f.store.notes());
        QVERIFY(notesIn(f.data, u"notes.json.bak.1"_s) == many);
    }

    void destroyingTheStoreFinishesItsWrites()
    {
        const DataDirectory data;
        auto store = std::make_unique<NoteStore>(data.path());
        store->addNote();
        const NoteArray notes = store->notes();
        store->save();
        QTRY_VERIFY(!store->hasPendingSave());
        store.reset();
        QVERIFY(notesIn(data) == notes);
    }

    void settlingWritesNothingThatIsWritten()
    {
        Fixture f;
        f.store.flush();
        const QByteArray before = f.data.read(u"notes.json"_s);
        const QStringList files = f.data.names();
        f.store.settle();
        QCOMPARE(f.data.names(), files);
        f.store.deleteNote(f.id(0));
        f.store.save();
        f.store.settle();
        QVERIFY(!f.store.hasPendingSave());
        QVERIFY(f.data.read(u"notes.json"_s) != before);
    }

    // A session that ends waits for nobody: what is being written has to be there first.
    void settlingWaitsForTheWriteThatIsUnderWay()
    {
        Fixture f(1);
        Note note = f.store.notes()[0];
        note.body = u"<h1>long</h1>"_s + QString(20'000'000, u'x');
        f.store.updateNote(note);
        f.store.save();
        QVERIFY(f.store.hasPendingSave());
        while (f.store.hasPendingSave())
            QCoreApplication::processEvents();
        f.store.settle();
        QVERIFY(f.data.read(u"notes.json"_s).size() > 20'000'000);
        QCOMPARE(f.data.names(), QStringList{u"notes.json"_s});
    }
};

QTEST_MAIN(TestNoteStoreSaving)
#include "tst_note_store_saving.moc"
