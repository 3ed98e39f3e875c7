#include "core/NotesFile.h"

#include "tests/core/DataDirectory.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QTest>

#include <csignal>
#include <filesystem>

#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
void setDate(const QString &path, const QDateTime &date)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(date, QFileDevice::FileModificationTime));
}

/// While it lives no file can grow beyond the limit, as on a disk without room.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    rlimit m_before{};
    void (*m_handler)(int);
};

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
        QVERIFY(!file.write("1"));
        QCOMPARE(data.names(), QStringList{u"notes.json"_s});
        for (const char *bytes : {"2", "3", "4", "5"})
            QVERIFY(!file.write(bytes));
        QCOMPARE(data.read(u"notes.json"_s), "5");
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "4");
        QCOMPARE(data.read(u"notes.json.bak.2"_s), "3");
        QCOMPARE(data.read(u"notes.json.bak.3"_s), "2");
        QCOMPARE(data.names().size(), 4);
    }

    void aMissingBackupLeavesAGap()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "new");
        data.write(u"notes.json.bak.2"_s, "two");
        QVERIFY(!NotesFile(data.path()).write("newer"));
        QCOMPARE(data.names(),
                 (QStringList{u"notes.json"_s, u"notes.json.bak.1"_s, u"notes.json.bak.3"_s}));
        QCOMPARE(data.read(u"notes.json.bak.3"_s), "two");
    }

    void theOldSingleBackupBecomesTheFirst()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "new");
        data.write(u"notes.json.bak"_s, "old");
        QVERIFY(!NotesFile(data.path()).write("newer"));
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "new");
        QCOMPARE(data.read(u"notes.json.bak.2"_s), "old");
        QVERIFY(!data.has(u"notes.json.bak"_s));
    }

    void theOldSingleBackupGoesWhereThereIsAFirst()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "new");
        data.write(u"notes.json.bak"_s, "old");
        data.write(u"notes.json.bak.1"_s, "one");
        QVERIFY(!NotesFile(data.path()).write("newer"));
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
        QVERIFY(!NotesFile(data.path()).write("new"));
        QCOMPARE(data.read(u"notes.json.bak"_s), "old");
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "one");
    }

    void aBackupKeepsTheDateOfItsNotes()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "new");
        setDate(data.path(u"notes.json"_s), longAgo);
        const NotesFile file(data.path());
        QVERIFY(!file.write("newer"));
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
        QVERIFY(!NotesFile(data.path()).write("newer"));
        QCOMPARE(data.read(u"notes.json"_s), "newer");
    }

    void aLinkedNotesFileIsBackedUpAsItWas()
    {
        const DataDirectory data;
        data.write(u"elsewhere.json"_s, "new");
        QVERIFY(QFile::link(data.path(u"elsewhere.json"_s), data.path(u"notes.json"_s)));
        QVERIFY(!NotesFile(data.path()).write("newer"));
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "new");
        QCOMPARE(data.read(u"elsewhere.json"_s), "newer");
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
        const std::optional<QString> error = NotesFile(notADirectory.fileName()).write("1");
        QVERIFY(error);
        QVERIFY(!error->isEmpty());
    }

    void aFullDiskKeepsTheNotesFile()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "old");
        std::optional<QString> error;
        {
            const FileSizeLimit limit(1000);
            error = NotesFile(data.path()).write(QByteArray(100'000, 'x'));
        }
        QVERIFY(error);
        QCOMPARE(data.read(u"notes.json"_s), "old");
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "old");
        QCOMPARE(data.names().size(), 2);
    }

    void aDamagedFileIsKeptOnce()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "damaged");
        NotesFile file(data.path());
        file.setDamaged(true);
        const NotesFile copy = file;
        QVERIFY(!copy.write("1"));
        QVERIFY(!file.write("2"));
        QVERIFY(!file.write("3"));
        QVERIFY(!file.write("4"));
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
        QVERIFY(!file.write("1"));
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
                QVERIFY(!file.write("new"));
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
        QVERIFY(!file.write("new"));
        QCOMPARE(data.read(u"notes.json"_s), "new");
        const QStringList kept = data.names().filter(u"damaged"_s);
        QCOMPARE(kept.size(), 1);
        QVERIFY(data.has(kept[0] + u"/inside"_s));
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
        const std::optional<QString> error = isEnforced ? file.write("new") : std::nullopt;
        std::filesystem::permissions(data.path().toStdString(), std::filesystem::perms::owner_all);
        if (!isEnforced)
            QSKIP("this user may write everywhere");
        QVERIFY(error);
        QCOMPARE(data.read(u"notes.json"_s), "damaged");
        QCOMPARE(data.names(), QStringList{u"notes.json"_s});
        QVERIFY(!file.write("new"));
        QCOMPARE(data.names().filter(u"damaged"_s).size(), 1);
    }
};

QTEST_MAIN(TestNotesFile)
#include "tst_notes_file.moc"
