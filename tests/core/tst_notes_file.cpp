#include "core/NotesFile.h"

#include "core/NotesJson.h"
#include "tests/core/DataDirectory.h"
#include "tests/core/FileSizeLimit.h"
#include "tests/core/OpenFiles.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <cerrno>
#include <filesystem>

using namespace Qt::Literals::StringLiterals;

namespace
{
void setDate(const QString &path, const QDateTime &date)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(date, QFileDevice::FileModificationTime));
}

NoteArray notes(const QByteArray &body)
{
    static const QUuid id = QUuid::createUuid();
    Note note = Note::fresh({1000});
    note.id = id;
    note.body = QString::fromLatin1(body);
    return {note};
}

QByteArray encoded(const QByteArray &body)
{
    return encodeNotes(notes(body)).value();
}

const QDateTime longAgo = QDateTime::fromSecsSinceEpoch(1'600'000'000);
} // namespace

class TestNotesFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names()
    {
        const NotesFile file(u"/data"_s);
        QCOMPARE(file.fileURL(), u"/data/notes.json"_s);
        QCOMPARE(file.backupURL(), u"/data/notes.json.bak"_s);
        QCOMPARE(file.backupURLs()[0], u"/data/notes.json.bak.1"_s);
        QCOMPARE(file.backupURLs()[1], u"/data/notes.json.bak.2"_s);
        QCOMPARE(file.backupURLs()[2], u"/data/notes.json.bak.3"_s);
        QCOMPARE(file.restoreCopyURL(), u"/data/notes.json.tmp.restore"_s);
        QCOMPARE(file.imagesDirectory(), u"/data/images"_s);
    }

    void everyWriteRotates()
    {
        const DataDirectory data;
        const NotesFile file(data.path());
        file.createDirectories();
        QVERIFY(!file.write(notes("1")));
        QCOMPARE(data.names(), QStringList{u"notes.json"_s});
        for (const char *bytes : {"2", "3", "4", "5"})
            QVERIFY(!file.write(notes(bytes)));
        QCOMPARE(data.read(u"notes.json"_s), encoded("5"));
        QCOMPARE(data.read(u"notes.json.bak.1"_s), encoded("4"));
        QCOMPARE(data.read(u"notes.json.bak.2"_s), encoded("3"));
        QCOMPARE(data.read(u"notes.json.bak.3"_s), encoded("2"));
        QCOMPARE(data.names().size(), 4);
    }

    /// What a deleted backup took is given back beside the writing, but it is given back.
    void noDeletedBackupIsKept_data()
    {
        QTest::addColumn<int>("size");
        QTest::newRow("small") << 1;
        QTest::newRow("large") << (2 << 20);
    }
    void noDeletedBackupIsKept()
    {
        QFETCH(int, size);
        const DataDirectory data;
        const NotesFile file(data.path());
        file.createDirectories();
        for (const char letter : {'1', '2', '3', '4', '5', '6'})
            QVERIFY(!file.write(notes(QByteArray(size, letter))));
        QCOMPARE(data.read(u"notes.json.bak.3"_s), encoded(QByteArray(size, '3')));
        QTRY_VERIFY(!holdsDeletedFile(data.path()));
#ifdef Q_OS_LINUX // else nobody says so
        QFile held(data.path(u"held"_s));
        QVERIFY(held.open(QIODevice::WriteOnly) && QFile::remove(held.fileName()));
        QVERIFY(holdsDeletedFile(data.path()));
#endif
    }

    void aMissingBackupLeavesAGap()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "new");
        data.write(u"notes.json.bak.2"_s, "two");
        QVERIFY(!NotesFile(data.path()).write(notes("newer")));
        QCOMPARE(data.names(),
                 (QStringList{u"notes.json"_s, u"notes.json.bak.1"_s, u"notes.json.bak.3"_s}));
        QCOMPARE(data.read(u"notes.json.bak.3"_s), "two");
    }

    void theOldSingleBackupBecomesTheFirst()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "new");
        data.write(u"notes.json.bak"_s, "old");
        QVERIFY(!NotesFile(data.path()).write(notes("newer")));
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "new");
        QCOMPARE(data.read(u"notes.json.bak.2"_s), "old");
        QVERIFY(!data.has(u"notes.json.bak"_s));
    }

    void theOldSingleBackupGoesWhereThereIsAFirst()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "new");
        data.write(u"notes.json.bak"_s, "[]");
        data.write(u"notes.json.bak.1"_s, "one");
        QVERIFY(!NotesFile(data.path()).write(notes("newer")));
        QCOMPARE(data.names(),
                 (QStringList{u"notes.json"_s, u"notes.json.bak.1"_s, u"notes.json.bak.2"_s}));
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "new");
        QCOMPARE(data.read(u"notes.json.bak.2"_s), "one");
    }

    void nothingRotatesWithoutANotesFile()
    {
        const DataDirectory data;
        data.write(u"notes.json.bak"_s, "old");
        data.write(u"notes.json.bak.1"_s, "one");
        QVERIFY(!NotesFile(data.path()).write(notes("new")));
        QCOMPARE(data.read(u"notes.json.bak"_s), "old");
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "one");
    }

    void aBackupKeepsTheDateOfItsNotes()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "new");
        setDate(data.path(u"notes.json"_s), longAgo);
        const NotesFile file(data.path());
        QVERIFY(!file.write(notes("newer")));
        QCOMPARE(file.availableBackups(),
                 (std::vector<NotesBackup>{{data.path(u"notes.json.bak.1"_s), longAgo}}));
    }

    void aFailedRotationStopsNothing()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "new");
        for (const QString &name :
             {u"notes.json.bak.1"_s, u"notes.json.bak.2"_s, u"notes.json.bak.3"_s})
            QVERIFY(QDir().mkpath(data.path(name + u"/inside"_s)));
        QVERIFY(!NotesFile(data.path()).write(notes("newer")));
        QCOMPARE(data.read(u"notes.json"_s), encoded("newer"));
    }

    void aLinkedNotesFileIsBackedUpAsItWas()
    {
        const DataDirectory data;
        data.write(u"elsewhere.json"_s, "new");
        QVERIFY(QFile::link(data.path(u"elsewhere.json"_s), data.path(u"notes.json"_s)));
        QVERIFY(!NotesFile(data.path()).write(notes("newer")));
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "new");
        QCOMPARE(data.read(u"elsewhere.json"_s), encoded("newer"));
    }

    void availableBackupsAreNewestFirst()
    {
        const DataDirectory data;
        const NotesFile file(data.path());
        QVERIFY(file.availableBackups().empty());
        data.write(u"notes.json.bak"_s, "old");
        data.write(u"notes.json.bak.3"_s, "three");
        QCOMPARE(file.availableBackups().size(), 1U);
        QCOMPARE(file.availableBackups()[0].url, data.path(u"notes.json.bak.3"_s));

        data.write(u"notes.json.bak.1"_s, "one");
        data.write(u"notes.json.bak.2"_s, "two");
        setDate(data.path(u"notes.json.bak.1"_s), longAgo);
        setDate(data.path(u"notes.json.bak.2"_s), longAgo.addSecs(60));
        setDate(data.path(u"notes.json.bak.3"_s), longAgo);
        QStringList urls;
        for (const NotesBackup &backup : file.availableBackups())
            urls += backup.url;
        QCOMPARE(urls,
                 (QStringList{data.path(u"notes.json.bak.2"_s), data.path(u"notes.json.bak.1"_s),
                              data.path(u"notes.json.bak.3"_s)}));
    }

    void aFailedWriteIsReported()
    {
        const DataDirectory data;
        const QTemporaryDir parent;
        QFile notADirectory(parent.path() + u"/Plim"_s);
        QVERIFY(notADirectory.open(QIODevice::WriteOnly));
        const std::optional<QString> error = NotesFile(notADirectory.fileName()).write(notes("1"));
        QVERIFY(error);
        QVERIFY(!error->isEmpty());
    }

    void aFullDiskKeepsTheNotesFile_data()
    {
        QTest::addColumn<qsizetype>("room");
        QTest::newRow("in the first piece") << qsizetype(1000);
        QTest::newRow("between two") << JsonWriter::pieceSize;
        QTest::newRow("in the second") << JsonWriter::pieceSize + 1000;
        QTest::newRow("in the last") << 2 * JsonWriter::pieceSize + 100;
    }
    void aFullDiskKeepsTheNotesFile()
    {
        QFETCH(qsizetype, room);
        const DataDirectory data;
        data.write(u"notes.json"_s, "old");
        std::optional<QString> error;
        {
            const FileSizeLimit limit{rlim_t(room)};
            error = NotesFile(data.path())
                        .write(notes(QByteArray(2 * JsonWriter::pieceSize + 1000, 'x')));
        }
        QCOMPARE(error.value_or(QString()), qt_error_string(EFBIG));
        QCOMPARE(data.read(u"notes.json"_s), "old");
        QCOMPARE(data.names(), QStringList{u"notes.json"_s});
    }

    void notesOfManyPiecesAreWrittenWhole()
    {
        const DataDirectory data;
        const NotesFile file(data.path());
        const QByteArray body(3 * JsonWriter::pieceSize + 1000, 'x');
        QVERIFY(!file.write(notes(body)));
        QVERIFY(data.read(u"notes.json"_s) == encoded(body));
        const QString kept = QFileInfo(file.writeReplaced(notes(body)).value()).fileName();
        QVERIFY(data.read(kept) == encoded(body));
    }

    void whatFailsAgainAndAgainCostsNoBackup()
    {
        const DataDirectory data;
        const NotesFile file(data.path());
        for (const char *bytes : {"1", "2", "3", "4"})
            QVERIFY(!file.write(notes(bytes)));
        {
            const FileSizeLimit limit(1000);
            for (int i = 0; i < 5; ++i)
                QVERIFY(file.write(notes(QByteArray(100'000, 'x'))));
        }
        QCOMPARE(data.read(u"notes.json"_s), encoded("4"));
        QCOMPARE(data.read(u"notes.json.bak.1"_s), encoded("3"));
        QCOMPARE(data.read(u"notes.json.bak.2"_s), encoded("2"));
        QCOMPARE(data.read(u"notes.json.bak.3"_s), encoded("1"));
        QCOMPARE(data.names().size(), 4);
    }

    void backupsThatAreRotatedAlreadyAreNotRotatedAgain()
    {
        // As a write leaves them that was refused at the very end.
        const DataDirectory data;
        data.write(u"notes.json"_s, "3");
        std::filesystem::create_hard_link(data.path(u"notes.json"_s).toStdString(),
                                          data.path(u"notes.json.bak.1"_s).toStdString());
        data.write(u"notes.json.bak.2"_s, "2");
        data.write(u"notes.json.bak.3"_s, "1");
        QVERIFY(!NotesFile(data.path()).write(notes("4")));
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "3");
        QCOMPARE(data.read(u"notes.json.bak.2"_s), "2");
        QCOMPARE(data.read(u"notes.json.bak.3"_s), "1");
    }

    void aDirectoryThatIsGoneIsMadeAgain()
    {
        const DataDirectory data;
        const NotesFile file(data.path());
        file.createDirectories();
        QVERIFY(!file.write(notes("1")));
        QVERIFY(QDir(data.path()).removeRecursively());
        QVERIFY(!file.write(notes("2")));
        QCOMPARE(data.read(u"notes.json"_s), encoded("2"));
        QVERIFY(QFileInfo(file.imagesDirectory()).isDir());
    }

    void aDamagedFileIsKeptOnce()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "damaged");
        NotesFile file(data.path());
        file.setDamaged(true);
        const NotesFile copy = file;
        QVERIFY(!copy.write(notes("1")));
        QVERIFY(!file.write(notes("2")));
        QVERIFY(!file.write(notes("3")));
        QVERIFY(!file.write(notes("4")));
        const QStringList names = data.names();
        QCOMPARE(names.size(), 5);
        QVERIFY2(QRegularExpression(u"^notes\\.json\\.damaged-\\d{8}-\\d{6}$"_s)
                     .match(names.last())
                     .hasMatch(),
                 qPrintable(names.last()));
        QCOMPARE(data.read(names.last()), "damaged");
    }

    void theDamagedFileIsAlsoTheFirstBackup()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "damaged");
        NotesFile file(data.path());
        file.setDamaged(true);
        QVERIFY(!file.write(notes("1")));
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "damaged");
    }

    void twoDamagedFilesOfOneSecondAreBothKept()
    {
        // A second may end between the two; then trying again meets the same one.
        for (int attempt = 0; attempt < 5; ++attempt) {
            const DataDirectory data;
            NotesFile file(data.path());
            for (const char *bytes : {"first", "second"}) {
                data.write(u"notes.json"_s, bytes);
                file.setDamaged(true);
                QVERIFY(!file.write(notes("new")));
                data.remove(u"notes.json"_s);
            }
            const QStringList kept = data.names().filter(u"damaged"_s);
            QCOMPARE(kept.size(), 2);
            QCOMPARE(data.read(kept[0]), "first");
            QCOMPARE(data.read(kept[1]), "second");
            if (kept[1] == kept[0] + u"-2"_s)
                return;
        }
        QFAIL("never within one second");
    }

    void aDirectoryInItsPlaceIsMovedAside()
    {
        const DataDirectory data;
        QVERIFY(QDir().mkpath(data.path(u"notes.json/inside"_s)));
        NotesFile file(data.path());
        file.setDamaged(true);
        QVERIFY(!file.write(notes("new")));
        QCOMPARE(data.read(u"notes.json"_s), encoded("new"));
        const QStringList kept = data.names().filter(u"damaged"_s);
        QCOMPARE(kept.size(), 1);
        QVERIFY(data.has(kept[0] + u"/inside"_s));
    }

    void aDamagedBackupIsKeptWhenItWouldBeDeleted()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "new");
        data.write(u"notes.json.bak"_s, "old");
        data.write(u"notes.json.bak.1"_s, "[]");
        data.write(u"notes.json.bak.3"_s, "three");
        const NotesFile file(data.path());
        QVERIFY(!file.write(notes("newer")));
        const QStringList kept = data.names().filter(u"damaged"_s);
        QCOMPARE(kept.size(), 2);
        QSet<QByteArray> bytes;
        for (const QString &name : kept)
            bytes.insert(data.read(name));
        QCOMPARE(bytes, (QSet<QByteArray>{"old", "three"}));
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "new");
        QCOMPARE(data.read(u"notes.json.bak.2"_s), "[]");
        for (int i = 0; i < 2; ++i)
            QVERIFY(!file.write(notes("newest")));
        QCOMPARE(data.names().filter(u"damaged"_s), kept); // neither "[]" nor what is its own
    }

    void aDamagedBackupThatIsKeptIsNotKeptAgain()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "[]");
        data.write(u"notes.json.bak.3"_s, "three");
        data.write(u"notes.json.damaged-20260101-120000"_s, "three");
        QVERIFY(!NotesFile(data.path()).write(notes("new")));
        QCOMPARE(data.names(), (QStringList{u"notes.json"_s, u"notes.json.bak.1"_s,
                                            u"notes.json.damaged-20260101-120000"_s}));
    }

    void aDamagedFileThatCannotBeKeptIsNotOverwritten()
    {
        // In a directory that takes no new names no way of keeping it works.
        const DataDirectory data;
        data.write(u"notes.json"_s, "damaged");
        NotesFile file(data.path());
        file.setDamaged(true);
        std::filesystem::permissions(data.path().toStdString(),
                                     std::filesystem::perms::owner_read |
                                         std::filesystem::perms::owner_exec);
        const bool isEnforced = !QFile(data.path(u"probe"_s)).open(QIODevice::WriteOnly);
        const std::optional<QString> error = isEnforced ? file.write(notes("new")) : std::nullopt;
        std::filesystem::permissions(data.path().toStdString(), std::filesystem::perms::owner_all);
        if (!isEnforced)
            QSKIP("this user may write everywhere");
        QVERIFY(error);
        QCOMPARE(data.read(u"notes.json"_s), "damaged");
        QCOMPARE(data.names(), QStringList{u"notes.json"_s});
        QVERIFY(!file.write(notes("new")));
        QCOMPARE(data.names().filter(u"damaged"_s).size(), 1);
    }

    void whatIsReplacedIsKeptUnderItsTime()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "current");
        const NotesFile file(data.path());
        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        const auto url = file.writeReplaced(notes("kept"));
        QVERIFY(url);
        const auto match = QRegularExpression(u"^notes\\.json\\.replaced-(\\d{8}-\\d{6})$"_s)
                               .match(QFileInfo(*url).fileName());
        QVERIFY2(match.hasMatch(), qPrintable(*url));
        const QDateTime date = QDateTime::fromString(match.captured(1), u"yyyyMMdd-HHmmss"_s);
        QVERIFY(date >= before && date <= QDateTime::currentDateTime());
        QCOMPARE(data.names(), (QStringList{u"notes.json"_s, QFileInfo(*url).fileName()}));
        QCOMPARE(data.read(u"notes.json"_s), "current");
        QCOMPARE(data.read(QFileInfo(*url).fileName()), encoded("kept"));
    }

    void whatIsReplacedInOneSecondIsAllKept()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "current");
        const NotesFile file(data.path());
        QSet<QString> urls;
        for (const char *bytes : {"1", "2", "3"})
            urls << file.writeReplaced(notes(bytes)).value();
        QCOMPARE(urls.size(), 3);
        QSet<QByteArray> kept;
        for (const QString &url : std::as_const(urls))
            kept << data.read(QFileInfo(url).fileName());
        QCOMPARE(kept, (QSet<QByteArray>{encoded("1"), encoded("2"), encoded("3")}));
    }

    void whatIsReplacedIsNoBackupAndIsNotRotated()
    {
        const DataDirectory data;
        const NotesFile file(data.path());
        file.createDirectories();
        QVERIFY(!file.write(notes("1")));
        const QString kept = QFileInfo(file.writeReplaced(notes("kept")).value()).fileName();
        for (const char *bytes : {"2", "3", "4", "5", "6"})
            QVERIFY(!file.write(notes(bytes)));
        QCOMPARE(data.read(kept), encoded("kept"));
        for (const NotesBackup &backup : file.availableBackups())
            QVERIFY2(!backup.url.contains(u"replaced"), qPrintable(backup.url));
    }

    void aFullDiskKeepsNothingOfWhatIsReplaced()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "current");
        const NotesFile file(data.path());
        std::optional<QString> url;
        {
            const FileSizeLimit limit(1000);
            url = file.writeReplaced(notes(QByteArray(5000, 'x')));
        }
        QVERIFY(!url);
        QCOMPARE(data.names(), QStringList{u"notes.json"_s});
        QCOMPARE(data.read(u"notes.json"_s), "current");
    }
};

QTEST_MAIN(TestNotesFile)
#include "tst_notes_file.moc"
