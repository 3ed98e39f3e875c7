#include "core/NoteStore.h"

#include "core/NotesJson.h"
#include "tests/Patience.h"
#include "tests/core/DataDirectory.h"
#include "tests/core/FileSizeLimit.h"
#include "tests/faults/BrokenDisk.h"
#include "tests/faults/LogCapture.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString refusal = u"Nie udało się zapisać notatek: "_s;

/// As a small limit on files, without the rights that the others need.
class LimitedFiles : public BrokenDisk
{
    FileSizeLimit m_limit{100};
};

NoteArray notesOnDisk(const DataDirectory &data)
{
    return decodeNotes(data.read(u"notes.json"_s), {}).value_or(NoteArray());
}

/// A store of two notes, saved twice, so that there is a backup.
struct Fixture {
    explicit Fixture(const DataDirectory &data) : store(data.path())
    {
        for (int i = 0; i < 2; ++i) {
            store.addNote();
            store.flush();
        }
        isReady = saved.count() == 2 || saved.wait(longEnough);
        saved.clear();
    }

    NoteStore store;
    QSignalSpy saved{&store, &NoteStore::saved};
    QSignalSpy failing{&store, &NoteStore::savingFailsSinceChanged};
    bool isReady = false;
};

/// Every file by name, with what is in it.
QMap<QString, QByteArray> content(const DataDirectory &data)
{
    QMap<QString, QByteArray> files;
    for (const QString &name : data.names()) {
        if (name != "ballast"_L1)
            files.insert(name, data.read(name));
    }
    return files;
}
} // namespace

class TestFailingSaves : public QObject
{
    Q_OBJECT

public:
    static void initMain() { hidesMounts(); }

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void aSaveIsTriedUntilItWorks_data()
    {
        QTest::addColumn<QString>("fault");
        for (const char *fault : {"full disk", "file size limit", "read-only disk",
                                  "foreign directory", "a file in the directory's place"})
            QTest::newRow(fault) << QString::fromLatin1(fault);
    }
    void aSaveIsTriedUntilItWorks()
    {
        QFETCH(QString, fault);
        const DataDirectory data;
        QVERIFY(QDir().mkpath(data.path()));
        const bool needsDisk = fault.endsWith("disk"_L1);
        if (needsDisk && !FullDisk::prepare(data.path()))
            QSKIP("only root may mount a disk to break");
        Fixture f(data);
        QVERIFY(f.isReady);
        const QMap<QString, QByteArray> before = content(data);
        QCOMPARE(before.size(), 2);
        const LogCapture log;

        std::unique_ptr<BrokenDisk> broken;
        if (fault == "full disk"_L1)
            broken = std::make_unique<FullDisk>(data.path());
        else if (fault == "file size limit"_L1)
            broken = std::make_unique<LimitedFiles>();
        else if (fault == "read-only disk"_L1)
            broken = std::make_unique<ReadOnlyDisk>(data.path());
        else if (fault == "foreign directory"_L1)
            broken = std::make_unique<ForeignDirectory>(data.path());
        else
            broken = std::make_unique<TakenPlace>(data.path());
        QVERIFY(broken->isEffective);
        Note note = f.store.notes()[0];
        note.body = u"<h1>"_s + QString(20'000, u'x') + u"</h1>"_s;
        f.store.updateNote(note);
        f.store.flush();
        QTRY_COMPARE(f.saved.count(), 1);
        QVERIFY(!f.saved[0][0].toBool());
        QVERIFY(f.store.savingFailsSince());
        QVERIFY(f.store.hasPendingSave());
        broken.reset();
        QCOMPARE(content(data), before); // neither the notes nor a backup

        QTRY_COMPARE(f.saved.count(), 2);
        QVERIFY(f.saved[1][0].toBool());
        QVERIFY(!f.store.savingFailsSince());
        QVERIFY(!f.store.hasPendingSave());
        QCOMPARE(f.failing.count(), 2);
        QVERIFY(notesOnDisk(data) == f.store.notes());
        QCOMPARE(data.read(u"notes.json.bak.1"_s), before[u"notes.json"_s]);
        QCOMPARE(data.read(u"notes.json.bak.2"_s), before[u"notes.json.bak.1"_s]);
        QCOMPARE(content(data).size(), 3);
        QCOMPARE(log.lines().size(), 1);
        QVERIFY2(log.lines()[0].startsWith(refusal) && log.lines()[0].size() > refusal.size(),
                 qPrintable(log.lines()[0]));
        umount2(QFile::encodeName(data.path()).constData(), MNT_DETACH);
    }

    void everyRunOfFailuresIsOneLineAndHasItsBeginning()
    {
        const DataDirectory data;
        Fixture f(data);
        QVERIFY(f.isReady);
        const LogCapture log;
        for (int run = 1; run <= 2; ++run) {
            const QDateTime start = QDateTime::currentDateTime();
            auto broken = std::make_unique<TakenPlace>(data.path());
            QVERIFY(broken->isEffective);
            f.store.addNote();
            f.store.flush();
            QTRY_COMPARE(f.saved.count(), 1);
            const std::optional<QDateTime> since = f.store.savingFailsSince();
            QVERIFY(since && *since >= start);
            QTRY_COMPARE(f.saved.count(), 2); // by itself
            QVERIFY(!f.saved[1][0].toBool());
            QCOMPARE(f.store.savingFailsSince(), since);
            QCOMPARE(log.lines().size(), run);
            broken.reset();
            f.store.flush();
            QTRY_COMPARE(f.saved.count(), 3);
            QVERIFY(!f.store.savingFailsSince());
            QCOMPARE(f.failing.count(), 2 * run);
            QVERIFY(notesOnDisk(data) == f.store.notes());
            f.saved.clear();
        }
        QCOMPARE(log.lines().size(), 2);
        QVERIFY(!f.saved.wait(1500)); // no try is left over
    }

    void aChangeDoesNotWaitForTheNextTry()
    {
        const DataDirectory data;
        Fixture f(data);
        QVERIFY(f.isReady);
        const LogCapture log;
        {
            const TakenPlace broken(data.path());
            f.store.addNote();
            for (int i = 0; i < 4; ++i)
                f.store.flush();
            QTRY_COMPARE(f.saved.count(), 4); // the next would be in eight seconds
        }
        QElapsedTimer timer;
        timer.start();
        f.store.addNote();
        f.store.save();
        QTRY_COMPARE(f.saved.count(), 5);
        QVERIFY2(timer.elapsed() < 7000, qPrintable(QString::number(timer.elapsed())));
        QVERIFY(f.saved[4][0].toBool());
        QVERIFY(notesOnDisk(data) == f.store.notes());
        QVERIFY(!f.store.hasPendingSave());
    }

    void theEndTriesOnceMore()
    {
        const DataDirectory data;
        Fixture f(data);
        QVERIFY(f.isReady);
        const LogCapture log;
        {
            const TakenPlace broken(data.path());
            f.store.addNote();
            f.store.flush();
            QTRY_COMPARE(f.saved.count(), 1);
        }
        f.store.settle();
        QVERIFY(notesOnDisk(data) == f.store.notes());
    }

    void aDirectoryThatIsGoneIsMadeAgain()
    {
        const DataDirectory data;
        Fixture f(data);
        QVERIFY(f.isReady);
        QVERIFY(QDir(data.path()).removeRecursively());
        f.store.addNote();
        f.store.flush();
        QVERIFY(notesOnDisk(data) == f.store.notes());
        QVERIFY(QFileInfo(f.store.imagesDirectory()).isDir());
    }
};

QTEST_GUILESS_MAIN(TestFailingSaves)
#include "tst_failing_saves.moc"
