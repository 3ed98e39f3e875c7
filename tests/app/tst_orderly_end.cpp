#include "core/NotesJson.h"
#include "core/NotificationCenter.h"
#include "core/app/AppDelegate.h"
#include "core/app/QuitSignals.h"
#include "editor/EditorFlush.h"
#include "mainwindow/ContentController.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
/// The application's parts that see to its end, in the order in which the application makes them,
/// and an editor that hands over its text 100 ms after it was asked.
struct Application : NoteListFixture {
    Application()
    {
        store.setNotes(notesOf(u"A"_s));
        store.flush();
        QObject::connect(
            &NotificationCenter::shared(), &NotificationCenter::plimFlushEditors, &content, [this] {
                if (!typed.isEmpty()) {
                    QTimer::singleShot(100, &content, [this, debt = EditorFlush::shared().owe()] {
                        content.applyEdit(store.notes()[0].id, typed);
                    });
                }
            });
        QTimer::singleShot(10'000, &content, [] { QCoreApplication::exit(1); });
    }

    /// The body in the file, or of a backup.
    [[nodiscard]] QString body(const QString &name = u"notes.json"_s) const
    {
        const auto notes = decodeNotes(home.read(u"data/Plim/"_s + name), {});
        return notes && !notes->isEmpty() ? (*notes)[0].body : QString();
    }
    [[nodiscard]] QStringList files() const
    {
        return QDir(home.data()).entryList({u"notes.json*"_s}, QDir::Files, QDir::Name);
    }

    AppDelegate delegate;
    QuitSignals quitSignals;
    ContentController content{store, selection};
    QString typed; ///< what the editor has not reported yet
};
} // namespace

class TestOrderlyEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTextTypedLastIsWritten_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("quit") << 0;
        QTest::newRow("SIGTERM") << SIGTERM;
    }
    void theTextTypedLastIsWritten()
    {
        QFETCH(int, signal);
        Application application;
        const QString before = application.body();
        QSignalSpy saved(&application.store, &NoteStore::saved);
        QTimer::singleShot(0, &application.content, [&] {
            application.content.applyEdit(application.store.notes()[0].id, u"<h1>reported</h1>"_s);
            application.typed = u"<h1>typed last</h1>"_s;
            if (signal)
                ::raise(signal);
            else
                QCoreApplication::quit();
        });
        QCOMPARE(QCoreApplication::exec(), 0);
        QCOMPARE(application.body(), u"<h1>typed last</h1>"_s);
        QVERIFY(!application.store.hasPendingSave());
        // One write, and with it one step of the backups.
        QCOMPARE(application.body(u"notes.json.bak.1"_s), before);
        QCOMPARE(application.files(), (QStringList{u"notes.json"_s, u"notes.json.bak.1"_s}));
        QTRY_COMPARE(saved.count(), 1);
    }

    void nothingIsWrittenAfterTheEnd()
    {
        Application application;
        QTimer::singleShot(0, &application.content, [&] {
            application.content.applyEdit(application.store.notes()[0].id, u"<h1>edit</h1>"_s);
            QCoreApplication::quit();
        });
        QCOMPARE(QCoreApplication::exec(), 0);
        QSignalSpy saved(&application.store, &NoteStore::saved);
        QTRY_COMPARE(saved.count(), 1); // of the end itself
        QVERIFY(!saved.wait(700));
        QCOMPARE(application.files(), (QStringList{u"notes.json"_s, u"notes.json.bak.1"_s}));
    }
};

QTEST_MAIN(TestOrderlyEnd)
#include "tst_orderly_end.moc"
