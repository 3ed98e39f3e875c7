#include "core/NoteStore.h"

#include "core/JsonWriter.h"
#include "core/NotesJson.h"
#include "tests/core/DataDirectory.h"
#include "tests/faults/LogCapture.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <memory>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int killed = 9;
const QByteArray damaged = "[{damaged";
const QByteArray theirs = "[ ]";
const QRegularExpression temporaryName(u"^notes\\.json\\.[A-Za-z]{6}$"_s);

QByteArray fileOf(const QString &heading)
{
    static const QUuid id = QUuid::createUuid();
    Note note = Note::fresh(Timestamp{1000});
    note.id = id;
    note.body = u"<h1>"_s + heading + u"</h1>"_s;
    return encodeNotes({note}).value_or(QByteArray());
}

/// A data directory as a scenario has it before, and the program that saves in it.
class Run
{
public:
    explicit Run(QString scenario) : m_scenario(std::move(scenario))
    {
        QDir().mkpath(data.path(u"images"_s));
        if (m_scenario == "first"_L1)
            return;
        old = m_scenario == "damaged"_L1 ? u"older"_s : u"old"_s;
        data.write(u"notes.json"_s, m_scenario == "damaged"_L1 ? damaged : fileOf(u"old"_s));
        data.write(u"notes.json.bak.1"_s, fileOf(u"older"_s));
        data.write(u"notes.json.bak.2"_s, fileOf(u"oldest"_s));
        data.write(u"notes.json.bak.3"_s, fileOf(u"ancient"_s));
    }

    /// Has the call with that number fail, none when it is 0. Returns the program's exit code.
    int save(int at, const QString &kind, int tries) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"LD_PRELOAD"_s, QStringLiteral(FAULT_SHIM));
        environment.insert(u"ASAN_OPTIONS"_s, u"verify_asan_link_order=0:detect_leaks=0"_s);
        // It would wait for a second each time for what threads may still report.
        environment.insert(u"TSAN_OPTIONS"_s,
                           environment.value(u"TSAN_OPTIONS"_s) + ":atexit_sleep_ms=0"_L1);
        environment.insert(u"FAULTS_DIRECTORY"_s, data.path());
        environment.insert(u"FAULTS_LOG"_s, m_log.path() + u"/calls"_s);
        environment.insert(u"FAULTS_AT"_s, QString::number(at));
        environment.insert(u"FAULTS_KIND"_s, kind);
        if (m_scenario == "plain"_L1)
            environment.insert(u"FAULTS_PLAIN"_s, u"1"_s);
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(SAVE_ONCE),
                      {data.path(), u"new"_s, QString::number(tries), m_scenario});
        const bool hasEnded =
            program.waitForFinished() && program.exitStatus() == QProcess::NormalExit;
        return hasEnded ? program.exitCode() : -1;
    }

    /// Each call with its path and what else is to be said of it; the directory is taken off.
    [[nodiscard]] QList<QStringList> calls() const
    {
        QFile file(m_log.path() + u"/calls"_s);
        if (!file.open(QIODevice::ReadOnly))
            return {};
        QList<QStringList> calls;
        for (QString line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts))
            calls += line.replace(data.path() + u'/', QString()).split(u'\t');
        return calls;
    }

    [[nodiscard]] bool isOnDisk(const QByteArray &bytes) const
    {
        const QStringList names = data.names();
        return std::ranges::any_of(names,
                                   [&](const QString &name) { return data.read(name) == bytes; });
    }

    DataDirectory data;
    QString old; ///< the heading that is found when nothing was saved

private:
    QString m_scenario;
    QTemporaryDir m_log;
};

/// The headings that a start finds; "torn" stands for a note that is not whole.
QStringList found(const DataDirectory &data)
{
    const LogCapture log;
    const NoteStore store(data.path());
    QStringList headings;
    for (const Note &note : store.notes()) {
        const bool isWhole =
            note.headingText() != "new"_L1 ||
            (note.body.size() > 2 * JsonWriter::pieceSize && note.body.endsWith("<p>end</p>"_L1));
        headings += isWhole ? note.headingText() : u"torn"_s;
    }
    return headings;
}

QString description(const QList<QStringList> &calls)
{
    QStringList lines;
    for (const QStringList &call : calls)
        lines += call.join(u' ');
    return lines.join(u'\n');
}
} // namespace

class TestCrashes : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        if (const QFileInfo memory(u"/dev/shm"_s); memory.isWritable())
            qputenv("TMPDIR", "/dev/shm"); // thousands of saves, none of which may wait for a disk
    }

private Q_SLOTS:
    void aSaveInItsOrder_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::newRow("the first") << u"first"_s;
        QTest::newRow("as usual") << u"usual"_s;
    }
    /// What a power cut leaves behind depends on what was on the disk before what.
    void aSaveInItsOrder()
    {
        QFETCH(QString, scenario);
        const Run run(scenario);
        QCOMPARE(run.save(0, {}, 1), 0);
        const QList<QStringList> calls = run.calls();
        const QByteArray all = description(calls).toUtf8();
        int lastWrite = -1, sync = -1, rotation = -1, inPlace = -1, directorySync = -1;
        for (int i = 0; i < calls.size(); ++i) {
            const QString &name = calls[i][0];
            const QString &path = calls[i][1];
            const QString &more = calls[i][2];
            if (name == "open"_L1 && more == "write"_L1)
                QVERIFY2(temporaryName.match(path).hasMatch(), all); // the backups are links
            if (name == "write"_L1)
                lastWrite = i;
            if (name == "fsync"_L1 && path != run.data.path() && sync < 0)
                sync = i;
            if (more.startsWith("notes.json.bak"_L1) && rotation < 0)
                rotation = i;
            if (more == "notes.json"_L1)
                inPlace = i;
        }
        // A temporary file without a name goes by that of its directory, whose own fsync is the
        // last.
        for (int i = 0; i < calls.size(); ++i) {
            if (calls[i][0] == "fsync"_L1 && calls[i][1] == run.data.path())
                (i > inPlace ? directorySync : sync) = i;
        }
        QVERIFY2(lastWrite >= 0 && lastWrite < sync, all);
        QVERIFY2(sync < inPlace, all);
        QVERIFY2(directorySync > inPlace, all);
        QCOMPARE(rotation >= 0, scenario == "usual"_L1);
        if (rotation >= 0) {
            const auto firstSync = std::ranges::find(
                calls, u"fsync"_s, [](const QStringList &call) { return call[0]; });
            QVERIFY2(firstSync - calls.begin() < rotation && rotation < inPlace, all);
        }
        QCOMPARE(run.data.read(u"notes.json.bak.1"_s).isEmpty(), scenario == "first"_L1);
    }

    void aCallThatGoesWrong_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<QString>("kind");
        for (const char *scenario : {"first", "usual", "plain", "conflict", "damaged"}) {
            for (const char *kind : {"kill", "tear", "fill", "EIO", "ENOSPC"})
                QTest::addRow("%s, %s", scenario, kind)
                    << QString::fromLatin1(scenario) << QString::fromLatin1(kind);
        }
    }
    /// Each call in turn. The next start finds the old notes or the new ones.
    void aCallThatGoesWrong()
    {
        QFETCH(QString, scenario);
        QFETCH(QString, kind);
        const Run whole(scenario);
        QCOMPARE(whole.save(0, {}, 1), 0);
        const QList<QStringList> calls = whole.calls();
        QVERIFY(calls.size() > 5);
        const bool kills = kind == "kill"_L1;
        for (int at = 1; at <= calls.size(); ++at) {
            const bool isOfWrites = kind == "tear"_L1 || kind == "fill"_L1;
            if (isOfWrites && calls[at - 1][0] != "write"_L1)
                continue;
            const Run run(scenario);
            const QByteArray before = run.data.read(u"notes.json"_s);
            const int exitCode = run.save(at, kind, 1);
            const QString &name = calls[at - 1][0];
            const QString &path = calls[at - 1][1];
            const QByteArray where = calls[at - 1].join(u' ').toUtf8();
            // The copy that is a backup where there are no links comes when there is room for all.
            const bool isOfCopy = path.startsWith("qt_temp."_L1);
            if (kills || kind == "tear"_L1)
                QVERIFY2(exitCode == killed, where);
            else
                QVERIFY2((exitCode == 0 && (kind != "fill"_L1 || isOfCopy)) || exitCode == 1,
                         where);
            if (scenario == "damaged"_L1)
                QVERIFY2(run.isOnDisk(damaged), where);
            if (scenario == "conflict"_L1)
                QVERIFY2(run.isOnDisk(theirs), where);

            // Old are theirs, too, which are none.
            QStringList headings = found(run.data);
            const bool isNew = headings.value(0) == "new"_L1;
            if (isNew)
                headings.removeFirst();
            QStringList expected = run.old.isEmpty() || (scenario == "conflict"_L1 && !isNew)
                                       ? QStringList()
                                       : QStringList{run.old};
            // When a backup could not be read the next one is the newest.
            const bool mayHide = scenario == "damaged"_L1 && path == "notes.json.bak.1"_L1 &&
                                 (name == "open"_L1 || name == "read"_L1);
            if (mayHide && !kills && headings == QStringList{u"oldest"_s}) {
                expected = headings;
                QVERIFY2(run.isOnDisk(fileOf(run.old)), where);
            }
            QVERIFY2(headings == expected, where + ": " + headings.join(u',').toUtf8());
            QVERIFY2(isNew || exitCode != 0, where);
            // What was there before is a backup at least, but for a backup that would not make
            // room.
            const bool hasRoom = calls[at - 1].last() != "notes.json.bak.2"_L1 || kills;
            if (scenario == "usual"_L1 && hasRoom)
                QVERIFY2(run.isOnDisk(before), where);
        }
    }

    void whatCannotBeLookedAtIsNotReplaced_data()
    {
        QTest::addColumn<QString>("scenario");
        for (const char *scenario : {"usual", "plain", "conflict", "damaged"})
            QTest::newRow(scenario) << QString::fromLatin1(scenario);
    }
    /// Nobody is told any more what there is, from the first moment on, from the second on, …
    void whatCannotBeLookedAtIsNotReplaced()
    {
        QFETCH(QString, scenario);
        const Run whole(scenario);
        QCOMPARE(whole.save(0, {}, 1), 0);
        const QList<QStringList> calls = whole.calls();
        int refusals = 0;
        for (int at = 1; at <= calls.size(); ++at) {
            if (calls[at - 1][0] != "look"_L1)
                continue;
            const Run run(scenario);
            const QByteArray where = calls[at - 1].join(u' ').toUtf8();
            const QByteArray before =
                scenario == "conflict"_L1 ? theirs : run.data.read(u"notes.json"_s);
            const int exitCode = run.save(at, u"blind"_s, 1);
            QVERIFY2(exitCode == 0 || exitCode == 1, where);
            QVERIFY2(run.isOnDisk(before), where);
            if (exitCode == 0)
                continue;
            ++refusals;
            if (scenario == "damaged"_L1) // the loading may have saved what it found
                QVERIFY2(found(run.data) == QStringList{run.old}, where);
            else
                QVERIFY2(run.data.read(u"notes.json"_s) == before, where);
            QVERIFY2(run.data.names().filter(temporaryName).isEmpty(), where);
            if (scenario == "conflict"_L1)
                continue; // the other program would come again
            QVERIFY2(run.save(0, {}, 1) == 0, where);
            QVERIFY2((found(run.data) == QStringList{u"new"_s, run.old}), where);
            QVERIFY2(run.isOnDisk(before), where);
        }
        QVERIFY(refusals >= 2);
    }

    /// Each piece of the file in turn.
    void whatTakesAPartIsGivenTheRest()
    {
        const Run whole(u"usual"_s);
        QCOMPARE(whole.save(0, {}, 1), 0);
        const QList<QStringList> calls = whole.calls();
        int writes = 0;
        for (int at = 1; at <= calls.size(); ++at) {
            if (calls[at - 1][0] != "write"_L1)
                continue;
            ++writes;
            const Run run(u"usual"_s);
            QCOMPARE(run.save(at, u"short"_s, 1), 0);
            QCOMPARE(run.calls().size(), calls.size() + 1);
            QCOMPARE(found(run.data), (QStringList{u"new"_s, u"old"_s}));
        }
        QCOMPARE(writes, 3);
    }

    /// Some disks are full, or broken, only when they are asked whether everything is there.
    void aDiskThatRefusesAtLastIsBelieved()
    {
        const Run whole(u"usual"_s);
        QCOMPARE(whole.save(0, {}, 1), 0);
        const QList<QStringList> calls = whole.calls();
        const auto isSync = [](const QStringList &call) { return call[0] == "fsync"_L1; };
        const auto sync = std::ranges::find_if(calls, isSync);
        QVERIFY(sync != calls.end());
        const Run run(u"usual"_s);
        QCOMPARE(run.save(int(sync - calls.begin()) + 1, u"EIO"_s, 1), 1);
        QCOMPARE(run.data.read(u"notes.json"_s), fileOf(u"old"_s));
        QCOMPARE(run.data.read(u"notes.json.bak.1"_s), fileOf(u"older"_s));
        QCOMPARE(run.data.names().size(), 4);
    }

    void theNextTrySucceeds_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<QString>("kind");
        for (const char *scenario : {"usual", "plain"}) {
            for (const char *kind : {"EIO", "ENOSPC"})
                QTest::addRow("%s, %s", scenario, kind)
                    << QString::fromLatin1(scenario) << QString::fromLatin1(kind);
        }
    }
    void theNextTrySucceeds()
    {
        QFETCH(QString, scenario);
        QFETCH(QString, kind);
        const Run whole(scenario);
        QCOMPARE(whole.save(0, {}, 1), 0);
        const QList<QStringList> calls = whole.calls();
        for (int at = 1; at <= calls.size(); ++at) {
            const Run run(scenario);
            const QByteArray where = calls[at - 1].join(u' ').toUtf8();
            QVERIFY2(run.save(at, kind, 2) == 0, where);
            const QStringList headings = found(run.data);
            QVERIFY2((headings == QStringList{u"new"_s, u"old"_s}), where);
            const QStringList left = run.data.names().filter(temporaryName);
            QVERIFY2(left.isEmpty(), where + ": " + left.join(u',').toUtf8());
        }
    }
};

QTEST_GUILESS_MAIN(TestCrashes)
#include "tst_crashes.moc"
