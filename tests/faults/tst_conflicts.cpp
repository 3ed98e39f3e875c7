#include "core/NoteStore.h"

#include "core/NotesJson.h"
#include "tests/Patience.h"
#include "tests/core/DataDirectory.h"
#include "tests/core/FileSizeLimit.h"
#include "tests/faults/LogCapture.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <filesystem>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString primary = u"notes.json"_s;
const QByteArray theirs = R"([{"body":"<h1>theirs<\/h1>"}])";

NoteArray notesOnDisk(const DataDirectory &data)
{
    return decodeNotes(data.read(primary), {}).value_or(NoteArray());
}

QStringList conflicts(const DataDirectory &data)
{
    return data.names().filter(u".conflict-"_s);
}

/// As a program writes that saves through a temporary file.
void replace(const DataDirectory &data, const QByteArray &bytes)
{
    data.write(u"theirs.tmp"_s, bytes);
    std::filesystem::rename(data.path(u"theirs.tmp"_s).toStdString(),
                            data.path(primary).toStdString());
}

void touch(const DataDirectory &data)
{
    QFile file(data.path(primary));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(60),
                             QFileDevice::FileModificationTime));
}

/// A store with one note, saved.
struct Fixture {
    Fixture() : store(data.path())
    {
        store.addNote();
        store.flush();
    }
    /// A change of the user's, written; the paths that were told of, at the end.
    QStringList edit()
    {
        store.addNote();
        QSignalSpy saved(&store, &NoteStore::saved);
        store.flush();
        QStringList paths;
        if (saved.count() > 0 || saved.wait(longEnough)) {
            for (const QList<QVariant> &arguments : std::as_const(kept))
                paths += arguments[0].toString();
        }
        return paths;
    }

    DataDirectory data;
    NoteStore store;
    QSignalSpy kept{&store, &NoteStore::conflictKept};
};
} // namespace

class TestConflicts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void whatSomebodyElseWroteIsKept_data()
    {
        QTest::addColumn<bool>("inPlace");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("in place") << true << theirs;
        QTest::newRow("by a new file") << false << theirs;
        QTest::newRow("half of it") << true << theirs.left(10);
        QTest::newRow("emptied") << true << QByteArray();
        QTest::newRow("no notes at all") << false << QByteArray("hello");
    }
    void whatSomebodyElseWroteIsKept()
    {
        QFETCH(bool, inPlace);
        QFETCH(QByteArray, bytes);
        Fixture f;
        if (inPlace)
            f.data.write(primary, bytes);
        else
            replace(f.data, bytes);
        const QStringList told = f.edit();
        QCOMPARE(told.size(), 1);
        const QStringList names = conflicts(f.data);
        QCOMPARE(names.size(), 1);
        QCOMPARE(told[0], f.data.path(names[0]));
        QVERIFY2(QRegularExpression(u"^notes\\.json\\.conflict-\\d{8}-\\d{6}$"_s)
                     .match(names[0])
                     .hasMatch(),
                 qPrintable(names[0]));
        QCOMPARE(f.data.read(names[0]), bytes);
        QVERIFY(notesOnDisk(f.data) == f.store.notes());
        for (int i = 0; i < 5; ++i) // it is told once, and no rotation takes it
            QCOMPARE(f.edit(), told);
        QCOMPARE(f.data.read(names[0]), bytes);
        QCOMPARE(conflicts(f.data), names);
    }

    /// Nor the same moment: a new file is another one.
    void theSameSizeIsNoDisguise()
    {
        Fixture f;
        const QByteArray other = f.data.read(primary).replace("<h1>", "<h2>");
        replace(f.data, other);
        QCOMPARE(f.edit().size(), 1);
        QCOMPARE(f.data.read(conflicts(f.data)[0]), other);
    }

    void everyConflictIsKept()
    {
        Fixture f;
        const QList<QByteArray> versions{"[]", theirs, "[ ]"};
        for (const QByteArray &bytes : versions) {
            f.data.write(primary, bytes);
            f.edit();
        }
        QCOMPARE(f.kept.count(), 3);
        QSet<QByteArray> kept;
        for (const QString &name : conflicts(f.data))
            kept.insert(f.data.read(name));
        QCOMPARE(kept, QSet<QByteArray>(versions.begin(), versions.end()));
    }

    void aFileThatAppearsIsKept()
    {
        const DataDirectory data;
        NoteStore store(data.path());
        QSignalSpy kept(&store, &NoteStore::conflictKept);
        data.write(primary, theirs);
        store.addNote();
        store.flush();
        QTRY_COMPARE(kept.count(), 1);
        QCOMPARE(data.read(conflicts(data)[0]), theirs);
        QVERIFY(notesOnDisk(data) == store.notes());
    }

    void whatWasReadAtTheStartIsNoConflict()
    {
        const DataDirectory data;
        data.write(primary, theirs);
        NoteStore store(data.path());
        QSignalSpy saved(&store, &NoteStore::saved);
        store.addNote();
        store.flush();
        QTRY_VERIFY(saved.count() >= 1);
        QCOMPARE(conflicts(data), QStringList());
    }

    void noConflict_data()
    {
        QTest::addColumn<QString>("change");
        for (const char *change :
             {"nothing", "touched", "written again", "replaced by the same", "deleted"})
            QTest::newRow(change) << QString::fromLatin1(change);
    }
    void noConflict()
    {
        QFETCH(QString, change);
        Fixture f;
        const QByteArray before = f.data.read(primary);
        if (change == "touched"_L1)
            touch(f.data);
        else if (change == "written again"_L1)
            f.data.write(primary, before);
        else if (change == "replaced by the same"_L1)
            replace(f.data, before);
        else if (change == "deleted"_L1)
            f.data.remove(primary);
        QCOMPARE(f.edit(), QStringList());
        QCOMPARE(conflicts(f.data), QStringList());
        QVERIFY(notesOnDisk(f.data) == f.store.notes());
        QCOMPARE(f.edit(), QStringList());
        QCOMPARE(conflicts(f.data), QStringList());
    }

    /// It is written in pieces, and read at once.
    void aLargeFileIsKnownAgain()
    {
        Fixture f;
        Note note = f.store.notes()[0];
        note.body = QString(2 * JsonWriter::pieceSize + 1000, u'x');
        f.store.updateNote(note);
        QCOMPARE(f.edit(), QStringList());
        touch(f.data);
        QCOMPARE(f.edit(), QStringList());
        QByteArray other = f.data.read(primary);
        other[JsonWriter::pieceSize + 1] = 'y';
        replace(f.data, other);
        QCOMPARE(f.edit().size(), 1);
        QVERIFY(f.data.read(conflicts(f.data)[0]) == other);
    }

    void theVeryNotesThatAreToBeWrittenAreNoConflict()
    {
        Fixture f;
        f.store.addNote();
        replace(f.data, encodeNotes(f.store.notes()).value_or(QByteArray()));
        f.store.flush();
        QCOMPARE(f.edit(), QStringList());
        QCOMPARE(conflicts(f.data), QStringList());
    }

    void aDirectoryInItsPlaceIsMovedAside()
    {
        Fixture f;
        f.data.remove(primary);
        QVERIFY(QDir().mkpath(f.data.path(primary + u"/inside"_s)));
        QCOMPARE(f.edit().size(), 1);
        QVERIFY(f.data.has(conflicts(f.data)[0] + u"/inside"_s));
        QVERIFY(notesOnDisk(f.data) == f.store.notes());
    }

    void aDamagedFileThatIsReplacedIsAConflict()
    {
        const DataDirectory data;
        data.write(primary, "{");
        const LogCapture log;
        NoteStore store(data.path());
        QSignalSpy kept(&store, &NoteStore::conflictKept);
        data.write(primary, theirs);
        store.addNote();
        store.flush();
        QTRY_COMPARE(kept.count(), 1);
        QCOMPARE(data.read(conflicts(data)[0]), theirs);
        QCOMPARE(data.names().filter(u"damaged"_s), QStringList());
    }

    /// Each try of a write that fails meets the same file.
    void aConflictOnAFullDiskIsKeptOnce()
    {
        Fixture f;
        f.data.write(primary, theirs);
        const LogCapture log;
        {
            const FileSizeLimit limit(50);
            for (int i = 0; i < 3; ++i)
                QCOMPARE(f.edit().size(), 1);
        }
        QCOMPARE(f.data.read(primary), theirs);
        QCOMPARE(f.edit().size(), 1);
        QCOMPARE(conflicts(f.data).size(), 1);
        QVERIFY(notesOnDisk(f.data) == f.store.notes());
    }
};

QTEST_GUILESS_MAIN(TestConflicts)
#include "tst_conflicts.moc"
