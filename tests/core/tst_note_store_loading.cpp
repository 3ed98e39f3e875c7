#include "core/NoteStore.h"

#include "core/NotesJson.h"
#include "tests/core/DataDirectory.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr Timestamp now{800'000'000.25};
const QString nothingDecoded =
    u"Plim: nie udało się zdekodować notes.json ani backupu — nie nadpisuję pliku"_s;

/// A file of one sound note of which the body is known.
QByteArray fileOf(const QString &heading)
{
    static const QUuid id = QUuid::createUuid();
    Note note = Note::fresh(now);
    note.id = id;
    note.body = u"<h1>"_s + heading + u"</h1>"_s;
    return encodeNotes({note}).value_or(QByteArray());
}

std::unique_ptr<NoteStore> opened(const DataDirectory &data)
{
    return std::make_unique<NoteStore>(data.path(), [] { return now; });
}

QString headings(const NoteStore &store)
{
    QStringList headings;
    for (const Note &note : store.notes())
        headings += note.headingText();
    return headings.join(u',');
}

QStringList logged;
QtMessageHandler previousHandler = nullptr;

/// Collects what is logged while it lives.
class LogCapture
{
public:
    LogCapture()
    {
        logged.clear();
        previousHandler = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext &context, const QString &message) {
                if (qstrcmp(context.category, "plim.core") == 0)
                    logged += message;
                else
                    previousHandler(type, context, message);
            });
    }
    ~LogCapture() { qInstallMessageHandler(previousHandler); }
    Q_DISABLE_COPY_MOVE(LogCapture)
};
} // namespace

class TestNoteStoreLoading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstRun()
    {
        const DataDirectory data;
        const LogCapture log;
        const auto store = opened(data);
        QVERIFY(store->notes().isEmpty());
        QVERIFY(QFileInfo(data.path()).isDir());
        QVERIFY(QFileInfo(data.path(u"images"_s)).isDir());
        QCOMPARE(store->imagesDirectory(), data.path(u"images"_s));
        QCOMPARE(data.names(), QStringList());
        QCOMPARE(logged, QStringList());
    }

    void soundNotesAreNotWrittenAgain()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, fileOf(u"a"_s));
        const LogCapture log;
        const auto store = opened(data);
        QCOMPARE(headings(*store), u"a"_s);
        QCOMPARE(data.names(), QStringList{u"notes.json"_s});
        QCOMPARE(logged, QStringList());
    }

    /// A file put together by hand: every note can be opened.
    void idThatOccursTwiceIsGivenOnce()
    {
        const DataDirectory data;
        const QByteArray note = R"({"id":"11111111-1111-4111-8111-111111111111","body":"<h1>%</h1>"})";
        data.write(u"notes.json"_s, '[' + QByteArray(note).replace('%', "a") + ',' + QByteArray(note).replace('%', "b") + ']');
        const auto store = opened(data);
        QCOMPARE(headings(*store), u"a,b"_s);
        QCOMPARE(store->notes()[0].id, QUuid(u"11111111-1111-4111-8111-111111111111"_s));
        QVERIFY(store->notes()[1].id != store->notes()[0].id);
        QCOMPARE(headings(*opened(data)), u"a,b"_s);
        QCOMPARE(opened(data)->notes()[1].id, store->notes()[1].id); // it was saved
    }

    /// Which file the notes come from, and what is said about it.
    void sources_data()
    {
        using Files = QMap<QString, QByteArray>;
        QTest::addColumn<Files>("files");
        QTest::addColumn<QString>("headings");
        QTest::addColumn<QStringList>("log");
        const QString primary = u"notes.json"_s;
        const QString old = u"notes.json.bak"_s;
        const QString one = u"notes.json.bak.1"_s;
        const QString two = u"notes.json.bak.2"_s;
        const QString three = u"notes.json.bak.3"_s;
        const auto read = [](const QString &name) { return u"Plim: wczytano backup "_s + name; };
        const auto decoded = [](const QString &name) {
            return u"Plim: primary JSON uszkodzony, wczytano backup "_s + name;
        };

        QTest::newRow("missing, second backup")
            << Files{{two, fileOf(u"two"_s)}} << u"two"_s << QStringList{read(two)};
        QTest::newRow("missing, the old backup comes first")
            << Files{{old, fileOf(u"old"_s)}, {one, fileOf(u"one"_s)}} << u"old"_s
            << QStringList{read(old)};
        QTest::newRow("missing, the first backup is damaged")
            << Files{{one, "{"}, {three, fileOf(u"three"_s)}} << u"three"_s
            << QStringList{read(one), decoded(three)};
        QTest::newRow("missing, all damaged")
            << Files{{one, "{"}, {two, "x"}} << u""_s << QStringList{read(one), nothingDecoded};
        QTest::newRow("damaged, first backup") << Files{{primary, "{"}, {one, fileOf(u"one"_s)}}
                                               << u"one"_s << QStringList{decoded(one)};
        QTest::newRow("damaged, the old backup comes first")
            << Files{{primary, "[3]"}, {old, fileOf(u"old"_s)}, {one, fileOf(u"one"_s)}} << u"old"_s
            << QStringList{decoded(old)};
        QTest::newRow("empty") << Files{{primary, ""}, {one, fileOf(u"one"_s)}} << u"one"_s
                               << QStringList{decoded(one)};
        QTest::newRow("cut off") << Files{{primary, fileOf(u"a"_s).chopped(9)},
                                          {two, fileOf(u"two"_s)}}
                                 << u"two"_s << QStringList{decoded(two)};
        QTest::newRow("damaged, no backup")
            << Files{{primary, "{"}} << u""_s << QStringList{nothingDecoded};
        QTest::newRow("everything damaged")
            << Files{{primary, "{"}, {old, ""}, {one, "1"}, {two, "{}"}, {three, "[[]]"}} << u""_s
            << QStringList{nothingDecoded};
    }
    void sources()
    {
        using Files = QMap<QString, QByteArray>;
        QFETCH(Files, files);
        const DataDirectory data;
        for (auto file = files.cbegin(); file != files.cend(); ++file)
            data.write(file.key(), file.value());
        const LogCapture log;
        const auto store = opened(data);
        QTEST(headings(*store), "headings");
        QTEST(logged, "log");
        if (store->notes().isEmpty()) { // nothing was touched, nor is at the end
            store->flush();
            QCOMPARE(data.names(), QStringList(files.keys()));
            for (auto file = files.cbegin(); file != files.cend(); ++file)
                QCOMPARE(data.read(file.key()), file.value());
        } else {
            QVERIFY(decodeNotes(data.read(u"notes.json"_s), {}) == store->notes());
        }
    }

    void theFirstWriteFromABackupDoesNotRotate()
    {
        const DataDirectory data;
        data.write(u"notes.json.bak.2"_s, fileOf(u"two"_s));
        QTest::ignoreMessage(QtWarningMsg, "Plim: wczytano backup notes.json.bak.2");
        const auto store = opened(data);
        QCOMPARE(data.names(), (QStringList{u"notes.json"_s, u"notes.json.bak.2"_s}));
        QCOMPARE(data.read(u"notes.json"_s), fileOf(u"two"_s));
    }

    void aDamagedFileRotatesIntoTheFirstBackupAndIsKept()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "damaged");
        data.write(u"notes.json.bak.1"_s, fileOf(u"one"_s));
        data.write(u"notes.json.bak.2"_s, fileOf(u"two"_s));
        QTest::ignoreMessage(QtWarningMsg,
                             "Plim: primary JSON uszkodzony, wczytano backup notes.json.bak.1");
        const auto store = opened(data);
        QCOMPARE(data.read(u"notes.json"_s), fileOf(u"one"_s));
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "damaged");
        QCOMPARE(data.read(u"notes.json.bak.2"_s), fileOf(u"one"_s));
        QCOMPARE(data.read(u"notes.json.bak.3"_s), fileOf(u"two"_s));
        for (int i = 0; i < 4; ++i)
            store->flush();
        const QStringList kept = data.names().filter(u"damaged"_s);
        QCOMPARE(kept.size(), 1);
        QCOMPARE(data.read(kept[0]), "damaged");
    }

    void aDamagedFileWithoutBackupsIsKeptWhenTheUserWrites()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, "damaged");
        QTest::ignoreMessage(QtWarningMsg, qPrintable(nothingDecoded));
        const auto store = opened(data);
        QCOMPARE(data.names(), QStringList{u"notes.json"_s});
        store->addNote();
        store->flush();
        QCOMPARE(data.read(u"notes.json.bak.1"_s), "damaged");
        const QStringList kept = data.names().filter(u"damaged"_s);
        QCOMPARE(kept.size(), 1);
        QCOMPARE(data.read(kept[0]), "damaged");
        QCOMPARE(decodeNotes(data.read(u"notes.json"_s), {})->size(), 1);
    }

    void aDirectoryInThePlaceOfTheFile()
    {
        const DataDirectory data;
        QVERIFY(QDir().mkpath(data.path(u"notes.json/inside"_s)));
        QVERIFY(QDir().mkpath(data.path(u"notes.json.bak.1"_s)));
        const LogCapture log;
        const auto store = opened(data);
        QVERIFY(store->notes().isEmpty());
        QCOMPARE(logged, QStringList{nothingDecoded});
        store->addNote();
        store->flush();
        QCOMPARE(decodeNotes(data.read(u"notes.json"_s), {})->size(), 1);
        const QStringList kept = data.names().filter(u"damaged"_s);
        QCOMPARE(kept.size(), 1);
        QVERIFY(data.has(kept[0] + u"/inside"_s));
    }

    void aDirectoryInThePlaceOfABackupIsSkipped()
    {
        const DataDirectory data;
        QVERIFY(QDir().mkpath(data.path(u"notes.json.bak"_s)));
        data.write(u"notes.json.bak.1"_s, fileOf(u"one"_s));
        QTest::ignoreMessage(QtWarningMsg, "Plim: wczytano backup notes.json.bak.1");
        QCOMPARE(headings(*opened(data)), u"one"_s);
    }

    void normalising_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("newTitle");
        QTest::addColumn<QString>("newBody");
        const auto row = [](const char *name, const char *title, const char *body,
                            const char *newTitle, const char *newBody) {
            QTest::newRow(name) << QString::fromUtf8(title) << QString::fromUtf8(body)
                                << QString::fromUtf8(newTitle) << QString::fromUtf8(newBody);
        };
        row("an old title", "A<b>", "text", "", "<h1>A&lt;b&gt;</h1>text");
        row("every sign of a title", "&<>\"'", "", "", "<h1>&amp;&lt;&gt;&quot;'</h1>");
        row("a heading already", "old", "<H1>a</H1>", "old", "<H1>a</H1>");
        row("a heading only in what is repaired", "A", "<p style=\"<h1\">b</p>", "",
            "<h1>A</h1><p>b</p>");
        row("a title and no words", "A", " \n", "", "<h1>A</h1> \n");
        row("empty", "", "", "", "<h1><br></h1>");
        row("blank", "", " \n", "", "<h1><br></h1>");
        row("old markup", "", "<h1><div style=\"a\">b</div></h1>", "", "<h1>b</h1>");
        row("sound", "", "<h1>a</h1><div>b</div>", "", "<h1>a</h1><div>b</div>");
    }
    void normalising()
    {
        QFETCH(QString, title);
        QFETCH(QString, body);
        QFETCH(QString, newTitle);
        QFETCH(QString, newBody);
        const DataDirectory data;
        Note note = Note::fresh(now);
        note.title = title;
        note.body = body;
        const QByteArray before = encodeNotes({note}).value_or(QByteArray());
        data.write(u"notes.json"_s, before);

        const auto store = opened(data);
        note.title = newTitle;
        note.body = newBody;
        QVERIFY(store->notes() == NoteArray{note});
        QVERIFY(decodeNotes(data.read(u"notes.json"_s), {}) == NoteArray{note});
        const bool isRewritten = title != newTitle || body != newBody;
        QCOMPARE(data.read(u"notes.json.bak.1"_s), isRewritten ? before : QByteArray());

        const QByteArray after = data.read(u"notes.json"_s);
        const QStringList names = data.names();
        QVERIFY(opened(data)->notes() == store->notes());
        QCOMPARE(data.names(), names);
        QCOMPARE(data.read(u"notes.json"_s), after);
    }

    void inlinePicturesMoveToFiles()
    {
        const DataDirectory data;
        Note note = Note::fresh(now);
        note.body = u"<h1>a</h1><img src=\"data:image/gif;base64,R0lGODlh\">"_s;
        data.write(u"notes.json"_s, encodeNotes({note}).value_or(QByteArray()));
        const auto store = opened(data);
        const QStringList files = QDir(data.path(u"images"_s)).entryList(QDir::Files);
        QCOMPARE(files.size(), 1);
        QVERIFY(files[0].endsWith(u".gif"_s));
        QVERIFY(store->notes()[0].body.contains(
            QUrl::fromLocalFile(data.path(u"images/"_s + files[0])).toString()));
        QVERIFY(store->notes()[0].updatedAt == now);
        QVERIFY(decodeNotes(data.read(u"notes.json"_s), {}) == store->notes());
    }

    void whatThisVersionDoesNotKnowSurvives()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, R"([{"color":"pink","body":"<h1>a<\/h1>","createdAt":0.1}])");
        const auto store = opened(data);
        store->flush();
        QVERIFY(data.read(u"notes.json"_s).contains(R"("color":"pink","createdAt":0.1,)"));
    }

    void aMissingNotesFileIsRestored()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, fileOf(u"a"_s));
        data.write(u"notes.json.bak.1"_s, fileOf(u"b"_s));
        const auto store = opened(data);
        int resets = 0;
        connect(store.get(), &NoteStore::notesChanged, this, [&](const NotesChange &change) {
            resets += change.kind == NotesChange::Kind::Reset ? 1 : 0;
        });
        data.remove(u"notes.json"_s);
        const std::vector<NotesBackup> backups = store->availableBackups();
        QCOMPARE(backups.size(), 1U);
        QVERIFY(store->restore(backups[0].url));
        QCOMPARE(headings(*store), u"b"_s);
        QCOMPARE(resets, 1);
        QCOMPARE(data.names(), (QStringList{u"notes.json"_s, u"notes.json.bak.1"_s}));
    }

    void anExistingNotesFileIsNotReplaced()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, fileOf(u"a"_s));
        data.write(u"notes.json.bak.1"_s, fileOf(u"b"_s));
        const auto store = opened(data);
        const QRegularExpression failure(u"^Restore failed: .*exists"_s);
        QTest::ignoreMessage(QtWarningMsg, failure);
        QVERIFY(!store->restore(data.path(u"notes.json.bak.1"_s)));
        QCOMPARE(headings(*store), u"a"_s);
        QCOMPARE(data.read(u"notes.json"_s), fileOf(u"a"_s));
        QCOMPARE(data.read(u"notes.json.tmp.restore"_s), fileOf(u"a"_s));

        store->addNote();
        store->flush();
        QTest::ignoreMessage(QtWarningMsg, failure);
        QVERIFY(!store->restore(data.path(u"notes.json.bak.1"_s)));
        QCOMPARE(data.read(u"notes.json.tmp.restore"_s), fileOf(u"a"_s));
    }

    void whatIsNoBackupIsNotRestored()
    {
        const DataDirectory data;
        data.write(u"notes.json.bak.1"_s, "damaged");
        const LogCapture log;
        const auto store = opened(data);
        logged.clear();
        QVERIFY(!store->restore(data.path(u"absent"_s)));
        QCOMPARE(logged, QStringList());
        QVERIFY(!store->restore(data.path(u"notes.json.bak.1"_s)));
        QVERIFY(!store->restore(data.path(u"images"_s)));
        QCOMPARE(logged.size(), 2);
        for (const QString &line : std::as_const(logged))
            QVERIFY2(line.startsWith(u"Restore failed: "_s), qPrintable(line));
        QCOMPARE(data.names(), QStringList{u"notes.json.bak.1"_s});
    }

    // Looking into a file, and keeping what is about to be replaced

    void theNotesInAFileAreReadAndNothingElseHappens()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, fileOf(u"a"_s));
        data.write(u"notes.json.bak.1"_s, fileOf(u"b"_s));
        const auto store = opened(data);
        QSignalSpy changed(store.get(), &NoteStore::notesChanged);
        const auto notes = store->notesIn(data.path(u"notes.json.bak.1"_s));
        QVERIFY(notes);
        QCOMPARE(notes->size(), 1);
        QCOMPARE((*notes)[0].headingText(), u"b"_s);
        QCOMPARE(headings(*store), u"a"_s);
        QCOMPARE(changed.count(), 0);
        QVERIFY(!store->hasPendingSave());
        QCOMPARE(data.names(), (QStringList{u"notes.json"_s, u"notes.json.bak.1"_s}));
    }

    void whatCannotBeUnderstoodHasNoNotes()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, fileOf(u"a"_s));
        data.write(u"cut"_s, fileOf(u"b"_s).chopped(5));
        data.write(u"empty"_s, {});
        data.write(u"none"_s, "[]");
        const auto store = opened(data);
        QVERIFY(!store->notesIn(data.path(u"cut"_s)));
        QVERIFY(!store->notesIn(data.path(u"empty"_s)));
        QVERIFY(!store->notesIn(data.path(u"absent"_s)));
        QVERIFY(!store->notesIn(data.path(u"images"_s)));
        QCOMPARE(store->notesIn(data.path(u"none"_s)), NoteArray());
    }

    void whatIsReadFromAFileIsAsLoadingWouldHaveIt()
    {
        const DataDirectory data;
        NoteArray twice = *decodeNotes(fileOf(u"a"_s), now);
        twice.append(twice[0]);
        data.write(u"notes.json.bak.1"_s, *encodeNotes(twice));
        const auto store = opened(data);
        const auto notes = store->notesIn(data.path(u"notes.json.bak.1"_s));
        QVERIFY(notes && notes->size() == 2);
        QVERIFY((*notes)[0].id != (*notes)[1].id); // an id that occurs twice is given once
    }

    void theNotesAreKeptAsTheyAreNow()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, fileOf(u"a"_s));
        const auto store = opened(data);
        Note note = store->notes()[0];
        note.body = u"<h1>not saved yet</h1>"_s;
        store->updateNote(note);
        const auto url = store->keepVersion();
        QVERIFY(url);
        QCOMPARE(store->notesIn(*url), store->notes());
        QCOMPARE(data.read(u"notes.json"_s), fileOf(u"a"_s));
    }

    void aVersionThatCannotBeKeptIsReported()
    {
        const DataDirectory data;
        data.write(u"notes.json"_s, fileOf(u"a"_s));
        const auto store = opened(data);
        QDir(data.path()).removeRecursively(); // nothing can be written there any more
        const LogCapture log;
        QVERIFY(!store->keepVersion());
        QCOMPARE(logged.size(), 1);
        QVERIFY2(!logged[0].contains(u"<h1>"), qPrintable(logged[0]));
        QCOMPARE(headings(*store), u"a"_s);
    }
};

QTEST_MAIN(TestNoteStoreLoading)
#include "tst_note_store_loading.moc"
