#include "mainwindow/VersionRestore.h"

#include "core/NotesJson.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
const QDateTime noon(QDate(2026, 3, 4), QTime(12, 30, 15));

/// Files beside each other in the notes' folder, and a store that has read them.
struct Fixture {
    /// Files by the ends of their names, and the headings in each; nothing but "!" is a damaged
    /// file.
    explicit Fixture(const QList<std::pair<QString, QString>> &files,
                     std::chrono::milliseconds time = 1h)
    {
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QDir().mkpath(home.data());
        for (qsizetype i = 0; i < files.size(); ++i)
            write(files[i].first, files[i].second, noon.addDays(-i));
        store = std::make_unique<NoteStore>(home.data());
        restore = std::make_unique<VersionRestore>(*store, time);
        for (const auto signal : {&VersionRestore::asked, &VersionRestore::failed})
            QObject::connect(restore.get(), signal, restore.get(),
                             [this, isAsked = signal == &VersionRestore::asked] {
                                 told << (isAsked ? u"asked"_s : u"failed"_s);
                             });
        QObject::connect(restore.get(), &VersionRestore::restored, restore.get(),
                         [this](const QString &message) { told << message; });
    }

    [[nodiscard]] QString path(const QString &end) const
    {
        return home.data() + u"/notes.json"_s + end;
    }
    void write(const QString &end, const QString &headings, const QDateTime &date = noon) const
    {
        const QByteArray bytes =
            headings == "!"_L1 ? QByteArray("[{\"id\":") : *encodeNotes(notesOf(headings));
        QFile file(path(end));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() ||
            !file.flush() || !file.setFileTime(date, QFileDevice::FileModificationTime))
            qFatal("The test's own files could not be written");
    }
    void remove(const QString &end) const { QFile::remove(path(end)); }
    [[nodiscard]] QStringList names() const
    {
        return QDir(home.data()).entryList(QDir::Files, QDir::Name);
    }
    [[nodiscard]] QString order() const
    {
        QStringList words;
        for (const Note &note : store->notes())
            words << note.headingText();
        return words.join(u' ');
    }
    [[nodiscard]] QString shown(const char *key) const
    {
        QStringList texts;
        for (const QVariant &version : restore->versions())
            texts << version.toMap().value(QLatin1StringView(key)).toString();
        return texts.join(u" | "_s);
    }

    ThrowAwayHome home;
    std::unique_ptr<NoteStore> store;
    std::unique_ptr<VersionRestore> restore;
    QStringList told;
};

const std::pair<QString, QString> current{QString(), u"A B"_s};
const QRegularExpression restoreFailed(u"^Restore failed: "_s);

QString kept(const Fixture &f)
{
    const QStringList files = f.names().filter(u".replaced-"_s);
    return files.size() == 1 ? files[0] : QString();
}
} // namespace

class TestVersionRestore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutABackupNothingHappens_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::newRow("with notes") << true;
        QTest::newRow("without") << false;
    }
    void withoutABackupNothingHappens()
    {
        QFETCH(bool, isThere);
        Fixture f({current});
        if (!isThere)
            f.remove({});
        const QStringList names = f.names();
        f.restore->begin();
        QCOMPARE(f.told, QStringList());
        QCOMPARE(f.order(), u"A B"_s);
        QVERIFY(!f.restore->isOffered());
        QCOMPARE(f.names(), names);
    }

    void aMissingFileComesBackAtOnce_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::addColumn<QString>("message");
        QTest::newRow("en") << AppLanguage::en
                            << u"Restored notes.json.bak.1 from 3/3/26 12:30 PM"_s;
        QTest::newRow("pl") << AppLanguage::pl
                            << u"Przywrócono notes.json.bak.1 z 3.03.2026 12:30"_s;
    }
    void aMissingFileComesBackAtOnce()
    {
        QFETCH(AppLanguage, language);
        QFETCH(QString, message);
        Fixture f({current, {u".bak.1"_s, u"Old"_s}, {u".bak.2"_s, u"Older"_s}});
        LanguageManager::shared().setLanguage(language);
        f.remove({});
        f.restore->begin();
        QCOMPARE(f.order(), u"Old"_s);
        QVERIFY(f.names().contains(u"notes.json"_s));
        QCOMPARE(f.told.size(), 1);
        // The locale's spaces and commas are its own business.
        QString said = f.told[0];
        QCOMPARE(said.replace(QChar(0x202f), u' ').remove(u','), message);
    }

    void theVersionsAreShownNewestFirst()
    {
        Fixture f({current,
                   {u".bak.1"_s, u"Milk Tea"_s},
                   {u".bak.2"_s, u"One Two Three Four Five"_s},
                   {u".bak.3"_s, u"Last"_s}});
        QTest::ignoreMessage(QtWarningMsg, restoreFailed);
        f.restore->begin();
        QCOMPARE(f.told, QStringList{u"asked"_s});
        QCOMPARE(f.shown("count"), u"2 notes | 5 notes | 1 note"_s);
        QCOMPARE(f.shown("headings"), u"Milk, Tea | One, Two, Three… | Last"_s);
        QCOMPARE(f.shown("date"), u"3/3/26, 12:30:15 | 3/2/26, 12:30:15 | 3/1/26, 12:30:15"_s);
        QCOMPARE(f.order(), u"A B"_s);
        QCOMPARE(kept(f), QString());
        QSignalSpy changed(f.restore.get(), &VersionRestore::versionsChanged);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(f.shown("count"), u"2 notatki | 5 notatek | 1 notatka"_s);
        QVERIFY2(f.shown("date").startsWith(u"3.03.2026"_s), qPrintable(f.shown("date")));
    }

    void aNoteWithoutAHeadingIsCalledSo()
    {
        Fixture f({current});
        Note empty = Note::fresh({1000});
        QFile file(f.path(u".bak.1"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(*encodeNotes({empty})) > 0);
        file.close();
        QTest::ignoreMessage(QtWarningMsg, restoreFailed);
        f.restore->begin();
        QCOMPARE(f.shown("headings"), u"Untitled"_s);
    }

    void damagedBackupsAreLeftOut()
    {
        Fixture f({current, {u".bak.1"_s, u"!"_s}, {u".bak.2"_s, u"Old"_s}});
        QTest::ignoreMessage(QtWarningMsg, restoreFailed);
        f.restore->begin();
        QCOMPARE(f.told, QStringList{u"asked"_s});
        QCOMPARE(f.shown("headings"), u"Old"_s);
        f.restore->replaceNotes(0);
        QCOMPARE(f.order(), u"Old"_s);
    }

    void whereNothingCanBeReadItIsSaid()
    {
        Fixture f({current, {u".bak.1"_s, u"!"_s}, {u".bak.2"_s, u"!"_s}});
        QTest::ignoreMessage(QtWarningMsg, restoreFailed);
        f.restore->begin();
        QCOMPARE(f.told, QStringList{u"failed"_s});
        QCOMPARE(f.order(), u"A B"_s);
        QCOMPARE(f.shown("headings"), QString());
    }

    void theChosenVersionTakesThePlaceOfTheNotes_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("headings");
        QTest::newRow("first") << 0 << u"Old"_s;
        QTest::newRow("last") << 1 << u"Older X"_s;
    }
    void theChosenVersionTakesThePlaceOfTheNotes()
    {
        QFETCH(int, row);
        QFETCH(QString, headings);
        Fixture f({current, {u".bak.1"_s, u"Old"_s}, {u".bak.2"_s, u"Older X"_s}});
        QTest::ignoreMessage(QtWarningMsg, restoreFailed);
        f.restore->begin();
        // What is written until then is kept, too.
        connect(f.restore.get(), &VersionRestore::notesAboutToBeReplaced, f.store.get(), [&] {
            Note note = f.store->notes()[0];
            note.body = u"<h1>Last words</h1>"_s;
            f.store->updateNote(note);
        });
        QSignalSpy changed(f.store.get(), &NoteStore::notesChanged);
        f.restore->replaceNotes(row);
        QCOMPARE(f.order(), headings);
        QCOMPARE(changed.count(), 2); // the last words, and all notes at once
        QVERIFY(f.restore->isOffered());
        QCOMPARE(f.restore->text(), u"Backup restored"_s);
        const auto notes = f.store->notesIn(f.home.data() + u'/' + kept(f));
        QVERIFY(notes && notes->size() == 2);
        QCOMPARE((*notes)[0].headingText(), u"Last words"_s);
        QCOMPARE((*notes)[1].headingText(), u"B"_s);
    }

    void theWayBackBringsExactlyTheFormerNotes()
    {
        Fixture f({current, {u".bak.1"_s, u"Old"_s}});
        const NoteArray before = f.store->notes();
        QTest::ignoreMessage(QtWarningMsg, restoreFailed);
        f.restore->begin();
        f.restore->replaceNotes(0);
        QVERIFY(f.store->notes() != before);
        f.restore->undo();
        QVERIFY(f.store->notes() == before);
        QVERIFY(!f.restore->isOffered());
        f.restore->undo();
        QVERIFY(f.store->notes() == before);
    }

    void whatWasWrittenInBetweenIsKept()
    {
        Fixture f({current, {u".bak.1"_s, u"Old"_s}});
        QTest::ignoreMessage(QtWarningMsg, restoreFailed);
        f.restore->begin();
        f.restore->replaceNotes(0);
        const auto keptFiles = [&f] {
            return QDir(f.home.data()).entryList({u"notes.json.replaced-*"_s}, QDir::Files);
        };
        QCOMPARE(keptFiles().size(), 1);
        f.store->addNote();
        const NoteArray between = f.store->notes();
        f.restore->undo();
        QCOMPARE(f.order(), u"A B"_s);
        QCOMPARE(keptFiles().size(), 2);
        QVERIFY(std::ranges::any_of(keptFiles(), [&](const QString &name) {
            return f.store->notesIn(f.home.data() + u'/' + name) == between;
        }));
    }

    void theWayBackEndsByItself()
    {
        Fixture f({current, {u".bak.1"_s, u"Old"_s}}, 1ms);
        QTest::ignoreMessage(QtWarningMsg, restoreFailed);
        f.restore->begin();
        f.restore->replaceNotes(0);
        QTRY_VERIFY(!f.restore->isOffered());
        f.restore->undo();
        QCOMPARE(f.order(), u"Old"_s);
    }

    void whatCannotBeKeptIsNotReplaced()
    {
        Fixture f({current, {u".bak.1"_s, u"Old"_s}});
        QTest::ignoreMessage(QtWarningMsg, restoreFailed);
        f.restore->begin();
        QVERIFY(QDir(f.home.data()).removeRecursively()); // where nothing can be written
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"could not be kept"_s));
        f.restore->replaceNotes(0);
        QCOMPARE(f.told, (QStringList{u"asked"_s, u"failed"_s}));
        QCOMPARE(f.order(), u"A B"_s);
        QVERIFY(!f.restore->isOffered());
    }

    void aRowThatIsNotThereReplacesNothing()
    {
        Fixture f({current, {u".bak.1"_s, u"Old"_s}});
        f.restore->replaceNotes(0); // before anybody asked
        QTest::ignoreMessage(QtWarningMsg, restoreFailed);
        f.restore->begin();
        f.restore->replaceNotes(-1);
        f.restore->replaceNotes(1);
        QCOMPARE(f.order(), u"A B"_s);
        QCOMPARE(kept(f), QString());
    }
};

QTEST_GUILESS_MAIN(TestVersionRestore)
#include "tst_version_restore.moc"
