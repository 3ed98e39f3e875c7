#include "core/NotesReading.h"

#include "core/NoteStore.h"
#include "core/NotesJson.h"
#include "tests/core/DataDirectory.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr Timestamp written{800'000'000.25};

Note noteOf(const QString &body)
{
    Note note = Note::fresh(written);
    note.body = body;
    return note;
}

QByteArray fileOf(const NoteArray &notes)
{
    return encodeNotes(notes).value_or(QByteArray());
}

/// What a store has, and what is on the disk then.
struct Outcome {
    QStringList bodies;
    QStringList files;

    [[nodiscard]] bool operator==(const Outcome &) const = default;
};

Outcome outcomeOf(const NoteStore &store, const DataDirectory &data)
{
    Outcome outcome;
    for (const Note &note : store.notes())
        outcome.bodies += note.body;
    QDir directory(data.path());
    // The second may change between two stores.
    static const QRegularExpression date(u"-\\d{8}-\\d{6}"_s);
    for (const QString &name : directory.entryList(QDir::Files, QDir::Name)) {
        QFile file(directory.filePath(name));
        if (file.open(QIODevice::ReadOnly))
            outcome.files +=
                QString(name).remove(date) + u": "_s + QString::fromUtf8(file.readAll());
    }
    return outcome;
}
} // namespace

/// The notes file, read while the program comes up.
class TestNotesReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsReadAheadIsWhatLoadingFinds_data()
    {
        using Files = QMap<QString, QByteArray>;
        QTest::addColumn<Files>("files");
        const QByteArray sound = fileOf({noteOf(u"<h1>a</h1>x"_s), noteOf(u"<h1>b</h1>"_s)});
        const QByteArray older = fileOf({noteOf(u"<h1>older</h1>"_s)});
        const QByteArray torn = sound.first(sound.size() / 2);
        QTest::newRow("nothing") << Files{};
        QTest::newRow("sound") << Files{{u"notes.json"_s, sound}};
        QTest::newRow("no notes") << Files{{u"notes.json"_s, fileOf({})}};
        QTest::newRow("to be repaired")
            << Files{{u"notes.json"_s, fileOf({noteOf(u"<h1><div>a</div></h1>"_s)})}};
        QTest::newRow("torn") << Files{{u"notes.json"_s, torn}};
        QTest::newRow("torn, with a backup")
            << Files{{u"notes.json"_s, torn}, {u"notes.json.bak.1"_s, older}};
        QTest::newRow("torn, with a torn backup and a sound one") << Files{
            {u"notes.json"_s, torn}, {u"notes.json.bak.1"_s, torn}, {u"notes.json.bak.2"_s, older}};
        QTest::newRow("only a backup") << Files{{u"notes.json.bak.2"_s, older}};
    }
    void whatIsReadAheadIsWhatLoadingFinds()
    {
        using Files = QMap<QString, QByteArray>;
        QFETCH(Files, files);
        const DataDirectory plain;
        const DataDirectory ahead;
        for (auto file = files.begin(); file != files.end(); ++file) {
            plain.write(file.key(), file.value());
            ahead.write(file.key(), file.value());
        }
        const NoteStore loaded(plain.path());
        NotesAhead notes(ahead.path());
        const NoteStore taken(ahead.path(), notes);
        const Outcome expected = outcomeOf(loaded, plain);
        const Outcome found = outcomeOf(taken, ahead);
        QCOMPARE(found.bodies, expected.bodies);
        QCOMPARE(found.files, expected.files);
    }

    void aConflictIsNoticedAllTheSame()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, fileOf({noteOf(u"<h1>a</h1>"_s)}));
        NotesAhead notes(data.path());
        NoteStore store(data.path(), notes);
        data.write(u"notes.json"_s, fileOf({noteOf(u"<h1>somebody else's</h1>"_s)}));
        store.addNote();
        store.flush();
        QCOMPARE(QDir(data.path()).entryList({u"notes.json.conflict-*"_s}).size(), 1);
    }

    // Enough of them for more than one thread.
    void manyNotesAreRepairedInTheirOrder()
    {
        constexpr int count = 2001;
        NoteArray stored;
        for (int i = 0; i < count; ++i)
            stored.append(noteOf(u"<h1><div>note %1</div></h1>"_s.arg(i)));
        Note twin = noteOf(u"<h1>twin</h1>"_s);
        twin.id = stored[0].id;
        stored.append(twin);
        const ReadNotes read =
            understood({u"notes.json"_s, fileOf(stored), {}, {}}, QString(), written);
        QVERIFY(read.notes && read.isRepaired);
        QCOMPARE(read.notes->size(), qsizetype(count + 1));
        QSet<QUuid> ids;
        for (qsizetype i = 0; i < count; ++i) {
            const Note &note = (*read.notes)[i];
            QCOMPARE(note.body, u"<h1>note %1</h1>"_s.arg(i));
            QCOMPARE(note.id, stored[i].id);
            ids.insert(note.id);
        }
        QVERIFY(!ids.contains((*read.notes)[count].id));
    }

    void whatNobodyTakesHarmsNobody()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, fileOf({noteOf(u"<h1>a</h1>"_s)}));
        const NotesAhead notes(data.path());
    }
};

QTEST_GUILESS_MAIN(TestNotesReading)
#include "tst_notes_reading.moc"
