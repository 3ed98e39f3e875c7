#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredNotes.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
const QString noteID = u"11111111-1111-4111-8111-111111111111"_s;
const QString named = u"notes\\.json\\.[A-Za-z]{6}"_s; ///< a temporary file, once it has a name

/// A call that concerns the data directory: its name, what it was given (without the directory's
/// path) and whether it succeeded.
struct Call {
    QString thread, name, arguments;
    bool isDone = false;

    [[nodiscard]] QString text() const { return name + u'(' + arguments + u')'; }
    /// The whole of the text, whatever stands for a number or a random name in it.
    [[nodiscard]] bool is(const QString &pattern) const
    {
        return QRegularExpression(QRegularExpression::anchoredPattern(pattern))
            .match(text())
            .hasMatch();
    }
    [[nodiscard]] bool opensForWriting() const
    {
        static const QRegularExpression writing(u"O_WRONLY|O_RDWR|O_CREAT|O_TRUNC|O_APPEND"_s);
        return (name.startsWith("open"_L1) && arguments.contains(writing)) || name == "creat"_L1 ||
               name.startsWith("truncate"_L1);
    }
    [[nodiscard]] bool changesNames() const
    {
        return name.startsWith("rename"_L1) || name.startsWith("link"_L1) ||
               name.startsWith("unlink"_L1) || name.startsWith("symlink"_L1);
    }
};

/// What a strace that writes everything into one file has seen, in the order in which it began.
QList<Call> callsIn(const QByteArray &recording, const QString &directory)
{
    static const QRegularExpression whole(u"^(\\d+) +(\\w+)\\((.*)\\) += (-?\\w+)"_s);
    static const QRegularExpression begun(u"^(\\d+) +(\\w+)\\((.*) <unfinished \\.\\.\\.>$"_s);
    static const QRegularExpression ended(
        u"^(\\d+) +<\\.\\.\\. (\\w+) resumed>(.*)\\) += (-?\\w+)"_s);
    QList<Call> calls;
    QHash<QString, qsizetype> open; // by thread
    for (const QString &line : QString::fromUtf8(recording).split(u'\n')) {
        if (const auto call = whole.match(line); call.hasMatch()) {
            calls.append({call.captured(1), call.captured(2), call.captured(3),
                          !call.captured(4).startsWith(u'-')});
        } else if (const auto start = begun.match(line); start.hasMatch()) {
            open.insert(start.captured(1), calls.size());
            calls.append({start.captured(1), start.captured(2), start.captured(3)});
        } else if (const auto end = ended.match(line); end.hasMatch()) {
            const qsizetype at = open.take(end.captured(1));
            calls[at].arguments += end.captured(3);
            calls[at].isDone = !end.captured(4).startsWith(u'-');
        }
    }
    calls.removeIf([&](const Call &call) { return !call.arguments.contains(directory); });
    for (Call &call : calls)
        call.arguments.replace(directory + u'/', QString()).replace(directory, u"DATA"_s);
    return calls;
}

QByteArray description(const QList<Call> &calls)
{
    QStringList lines;
    for (const Call &call : calls)
        lines += call.thread + u' ' + call.text() + (call.isDone ? u""_s : u" failed"_s);
    return lines.join(u'\n').toUtf8();
}
} // namespace

/// The built program while it is watched by strace: what a save really asks of the system.
class TestSaveCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSaveReplacesTheFileAndTouchesNoOther()
    {
        const QString strace = QStandardPaths::findExecutable(u"strace"_s);
        QVERIFY2(!strace.isEmpty(), "strace is not installed");
        QProcess trial;
        trial.start(strace, {u"-f"_s, u"-o"_s, u"/dev/null"_s, u"true"_s});
        QVERIFY(trial.waitForFinished());
        if (trial.exitCode() != 0) {
            const QByteArray reason = trial.readAllStandardError();
            QSKIP(("nobody may be traced here: " + reason).constData());
        }

        const ThrowAwayHome home;
        storeNotes(home, {storedNote(noteID, u"<h1>Watched</h1>"_s)});
        const QString recording = home.path(u"recording"_s);
        PlimRun plim(home);
        plim.setStarter(
            {strace, u"-D"_s, u"-f"_s, u"--seccomp-bpf"_s, u"-y"_s, u"-o"_s, recording, u"-e"_s,
             u"signal=none"_s, u"-e"_s,
             u"trace=open,openat,?openat2,creat,truncate,ftruncate,rename,renameat,renameat2,link,"
             "linkat,symlink,symlinkat,unlink,unlinkat,fsync,fdatasync"_s});
        QVERIFY(plim.open());
        QVERIFY(plim.selectRow(0, noteID));
        for (const QString &word : {u"one"_s, u"two"_s, u"three"_s}) {
            plim.type(word);
            QTRY_VERIFY(plim.bodyOnDisk().contains(word));
            QTest::qWait(700); // nothing is left to be written
        }
        const qint64 id = plim.processId();
        plim.sendSignal(SIGTERM);
        QVERIFY(plim.exitCode() != -1);
        const QRegularExpression end(u"^%1 +\\+\\+\\+ exited"_s.arg(id),
                                     QRegularExpression::MultilineOption);
        QTRY_VERIFY(QString::fromUtf8(home.read(u"recording"_s)).contains(end));

        const QList<Call> calls = callsIn(home.read(u"recording"_s), home.data());
        checkWhatIsOpened(calls);
        checkNames(calls);
        checkSaves(calls);
        if (QTest::currentTestFailed())
            qWarning("%s", description(calls).constData());
    }

private:
    /// The lock, which stays empty, and a new file for every save.
    static void checkWhatIsOpened(const QList<Call> &calls)
    {
        int locks = 0;
        for (const Call &call : calls) {
            if (!call.opensForWriting() || !call.isDone)
                continue;
            const bool isLock = call.is(
                uR"(openat\(AT_FDCWD(<.*>)?, "notes\.json\.lock", O_RDWR\|O_CREAT\|O_CLOEXEC, 0600\))"_s);
            locks += isLock;
            QVERIFY2(isLock || isTemporary(call), qPrintable(call.text()));
        }
        QCOMPARE(locks, 1);
    }

    /// The backups are other names of what was saved before; nothing else comes, goes or moves.
    static void checkNames(const QList<Call> &calls)
    {
        const QStringList allowed{
            uR"(unlink\("notes\.json\.bak\.3"\))"_s,
            uR"(rename\("notes\.json\.bak\.2", "notes\.json\.bak\.3"\))"_s,
            uR"(rename\("notes\.json\.bak\.1", "notes\.json\.bak\.2"\))"_s,
            uR"(link\("notes\.json", "notes\.json\.bak\.1"\))"_s,
            uR"(linkat\(AT_FDCWD(<.*>)?, "/proc/self/fd/\d+", AT_FDCWD(<.*>)?, "%1", AT_SYMLINK_FOLLOW\))"_s
                .arg(named),
            uR"(rename\("%1", "notes\.json"\))"_s.arg(named)};
        for (const Call &call : calls) {
            if (!call.changesNames() || !call.isDone)
                continue;
            QVERIFY2(
                std::ranges::any_of(allowed, [&](const QString &each) { return call.is(each); }),
                qPrintable(call.text()));
        }
    }

    /// For each time that the notes file is replaced, what its thread did since the time before.
    static void checkSaves(const QList<Call> &calls)
    {
        const QString replacing = uR"(rename\("%1", "notes\.json"\))"_s.arg(named);
        int saves = 0;
        for (qsizetype i = 0; i < calls.size(); ++i) {
            if (!calls[i].is(replacing))
                continue;
            ++saves;
            const QString thread = calls[i].thread;
            qsizetype opened = -1, synced = -1, directorySynced = -1;
            for (qsizetype j = i - 1; j >= 0 && opened < 0; --j) {
                if (calls[j].thread == thread && calls[j].isDone && isTemporary(calls[j]))
                    opened = j;
            }
            QVERIFY2(calls[i].isDone && opened >= 0, "no temporary file");
            for (qsizetype j = opened; j < i && synced < 0; ++j) {
                if (calls[j].thread == thread && calls[j].isDone && isSyncOfTemporary(calls[j]))
                    synced = j;
            }
            QVERIFY2(synced > opened, "not on the disk when it got the name");
            for (qsizetype j = opened; j < synced; ++j) // nothing that was there moves before
                QVERIFY2(!calls[j].changesNames(), qPrintable(calls[j].text()));
            for (qsizetype j = i + 1; j < calls.size() && directorySynced < 0; ++j) {
                if (calls[j].thread != thread)
                    continue;
                QVERIFY2(!isTemporary(calls[j]), "the next save, and the name is not on the disk");
                if (calls[j].isDone && calls[j].is(uR"(fsync\(\d+<DATA>\))"_s))
                    directorySynced = j;
            }
            QVERIFY2(directorySynced > i, "the new name is not on the disk");
        }
        QVERIFY2(saves >= 3, qPrintable(QString::number(saves)));
    }

    /// Without a name until it is whole, where the file system knows such files.
    static bool isTemporary(const Call &call)
    {
        return call.is(
                   uR"(openat\(AT_FDCWD(<.*>)?, "DATA", O_RDWR\|O_CLOEXEC\|O_TMPFILE, 0600\))"_s) ||
               call.is(
                   uR"(openat\(AT_FDCWD(<.*>)?, "%1", O_RDWR\|O_CREAT\|O_EXCL\|O_CLOEXEC, 0600\))"_s
                       .arg(named));
    }
    static bool isSyncOfTemporary(const Call &call)
    {
        return call.is(uR"(fsync\(\d+<(%1|#\d+)( \(deleted\))?>(\(deleted\))?\))"_s.arg(named));
    }
};

QTEST_GUILESS_MAIN(TestSaveCalls)
#include "tst_e2e_save_calls.moc"
