#include "core/NoteStore.h"

#include "core/NotesJson.h"
#include "tests/core/DataDirectory.h"
#include "tests/faults/LogCapture.h"

#include <QTest>

#include <array>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int fileCount = 4;
constexpr int stateCount = 5;
const std::array<QString, fileCount> names{u"notes.json"_s, u"notes.json.bak.1"_s,
                                           u"notes.json.bak.2"_s, u"notes.json.bak.3"_s};
const std::array<QString, stateCount> stateNames{u"sound"_s, u"truncated"_s, u"zeroed"_s,
                                                 u"garbled"_s, u"missing"_s};
enum State { Sound, Truncated, Zeroed, Garbled, Missing };

/// The notes of one of the files; no two of them have the same size.
QByteArray soundBytes(int file)
{
    Note note = Note::fresh(Timestamp{1000});
    note.body = u"<h1>%1</h1>"_s.arg(file) + QString(500 + file, u'x');
    return encodeNotes({note}).value_or(QByteArray());
}

QByteArray bytes(int file, State state)
{
    static const QList<QByteArray> sound{soundBytes(0), soundBytes(1), soundBytes(2),
                                         soundBytes(3)};
    QByteArray bytes = sound[file];
    switch (state) {
    case Sound:
        break;
    case Truncated:
        bytes.truncate(300 + file);
        break;
    case Zeroed:
        bytes.fill('\0');
        break;
    case Garbled:
        for (qsizetype i = 0; i < bytes.size(); i += 7)
            bytes[i] = char(bytes[i] ^ 0x95);
        break;
    case Missing:
        bytes.clear();
    }
    return bytes;
}

using States = std::array<State, fileCount>;

QByteArray description(const States &states)
{
    QStringList parts;
    for (const State state : states)
        parts += stateNames[state];
    return parts.join(u", "_s).toUtf8();
}

bool isOnDisk(const DataDirectory &data, const QByteArray &bytes)
{
    const QStringList names = data.names();
    return std::ranges::any_of(names,
                               [&](const QString &name) { return data.read(name) == bytes; });
}

/// What is damaged and no longer on disk, by name; empty when everything is there.
QByteArray lost(const DataDirectory &data, const States &states)
{
    QStringList lost;
    for (int file = 0; file < fileCount; ++file) {
        const bool isDamaged = states[file] != Sound && states[file] != Missing;
        if (isDamaged && !isOnDisk(data, bytes(file, states[file])))
            lost += names[file];
    }
    return lost.join(u", "_s).toUtf8();
}

/// The heading of the last note: those before it were made since.
QString lastHeading(const NoteStore &store)
{
    return store.notes().isEmpty() ? QString()
                                   : store.notes()[store.notes().size() - 1].headingText();
}
} // namespace

class TestDamagedFiles : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        if (const QFileInfo memory(u"/dev/shm"_s); memory.isWritable())
            qputenv("TMPDIR", "/dev/shm"); // thousands of writes, and no disk is the subject
    }

private Q_SLOTS:
    void theNewestNotesAreFoundAndNothingIsLost_data()
    {
        QTest::addColumn<int>("primary");
        QTest::addColumn<int>("newest");
        for (int primary = 0; primary < stateCount; ++primary) {
            for (int newest = 0; newest < stateCount; ++newest)
                QTest::addRow("%s, %s", qPrintable(stateNames[primary]),
                              qPrintable(stateNames[newest]))
                    << primary << newest;
        }
    }
    /// Each row with every state of the two older backups.
    void theNewestNotesAreFoundAndNothingIsLost()
    {
        QFETCH(int, primary);
        QFETCH(int, newest);
        for (int rest = 0; rest < stateCount * stateCount; ++rest) {
            const States states{State(primary), State(newest), State(rest / stateCount),
                                State(rest % stateCount)};
            const QByteArray where = description(states);
            const DataDirectory data;
            QString expected; // nothing, where nothing is sound
            for (int file = fileCount - 1; file >= 0; --file) {
                if (states[file] != Missing)
                    data.write(names[file], bytes(file, states[file]));
                if (states[file] == Sound)
                    expected = QString::number(file);
            }
            const LogCapture log;
            auto store = std::make_unique<NoteStore>(data.path());
            QVERIFY2(lastHeading(*store) == expected, where);
            QVERIFY2(lost(data, states).isEmpty(), where + ": " + lost(data, states));
            for (int i = 0; i < 5; ++i) {
                if (i == 2)
                    store = std::make_unique<NoteStore>(data.path());
                store->addNote();
                store->flush();
                QVERIFY2(lost(data, states).isEmpty(), where + ": " + lost(data, states));
            }
            const NoteStore again(data.path());
            QVERIFY2(again.notes() == store->notes(), where);
            QVERIFY2(again.notes().size() == (expected.isEmpty() ? 5 : 6), where);
            QVERIFY2(expected.isEmpty() || lastHeading(again) == expected, where);
        }
    }
};

QTEST_GUILESS_MAIN(TestDamagedFiles)
#include "tst_damaged_files.moc"
