#include "core/NotesJson.h"
#include "core/NotificationCenter.h"
#include "core/app/AppDelegate.h"
#include "core/app/QuitSignals.h"
#include "editor/EditorFlush.h"
#include "mainwindow/ContentController.h"
#include "tests/Patience.h"
#include "tests/mainwindow/NoteListFixture.h"
#include "tests/sticky/FakeStickyWindow.h"

#include <QCloseEvent>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
/// A sticky window that is among the windows of the application, so that these close it.
class ListedStickyWindow : public FakeStickyWindow
{
public:
    ListedStickyWindow()
    {
        m_window.installEventFilter(this);
        m_window.show();
    }

    bool isRefusing = false;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Close)
            return FakeStickyWindow::eventFilter(watched, event);
        event->setAccepted(!isRefusing);
        if (!isRefusing)
            close();
        return true;
    }

private:
    QWindow m_window;
};

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
        QTimer::singleShot(longEnough, &content, [] { QCoreApplication::exit(1); });
        stickyNotes.setFactory(
            [](const QUuid &, NoteTextSize) { return std::make_unique<ListedStickyWindow>(); });
    }

    ListedStickyWindow &openSticky()
    {
        const QUuid noteID = store.notes()[0].id;
        stickyNotes.open(noteID, store, nullptr, std::nullopt);
        return static_cast<ListedStickyWindow &>(*stickyNotes.window(noteID));
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

    StickyNoteManager stickyNotes{nullptr};
    AppDelegate delegate{stickyNotes};
    QuitSignals quitSignals;
    ContentController content{store, selection, stickyNotes};
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

    void theStickyWindowsAreWrittenBetweenTheTextsAndTheirEnd()
    {
        Application application;
        const ListedStickyWindow &window = application.openSticky();
        QStringList order;
        connect(&application.store, &NoteStore::notesChanged, this, [&] { order << u"text"_s; });
        connect(&application.stickyNotes, &StickyNoteManager::layoutSaved, this,
                [&] { order << u"layout"_s; });
        connect(&window, &StickyWindow::closed, this, [&] { order << u"closed"_s; });
        const auto connection =
            connect(qApp, &QCoreApplication::aboutToQuit, this, [&] { order << u"ended"_s; });
        application.typed = u"<h1>typed last</h1>"_s;
        QTimer::singleShot(0, &application.content, &QCoreApplication::quit);
        QCOMPARE(QCoreApplication::exec(), 0);
        disconnect(connection);
        QCOMPARE(order, (QStringList{u"text"_s, u"layout"_s, u"closed"_s, u"ended"_s}));
        QVERIFY(application.stickyNotes.isTerminating());
        QCOMPARE(StickyNoteManager::loadLayout().size(), 1);
        // The settings are on disk, and not merely about to be.
        QVERIFY(application.home.read(u".config/Plim/Plim.conf"_s).contains("stickyLayout.v1"));
    }

    void aRefusedQuitLeavesTheStickyWindowsAsTheyWere()
    {
        Application application;
        ListedStickyWindow &window = application.openSticky();
        window.isRefusing = true;
        QSignalSpy written(&application.stickyNotes, &StickyNoteManager::layoutSaved);
        connect(&application.stickyNotes, &StickyNoteManager::layoutSaved, this, [&] {
            QVERIFY(application.stickyNotes.isTerminating());
            QTimer::singleShot(100, &application.content, [] { QCoreApplication::exit(3); });
        });
        QTimer::singleShot(0, &application.content, &QCoreApplication::quit);
        QCOMPARE(QCoreApplication::exec(), 3);
        QCOMPARE(written.count(), 1);
        QVERIFY(window.isOpen);
        QVERIFY(!application.stickyNotes.isTerminating());
        application.stickyNotes.disconnect(this);
        window.close();
        QVERIFY(written.wait(longEnough));
        QVERIFY(StickyNoteManager::loadLayout().isEmpty());
    }

    // The session manager asks, and the session may go on all the same.
    void askingForTheTextsWritesTheLayoutAndEndsNothing()
    {
        Application application;
        ListedStickyWindow &window = application.openSticky();
        application.delegate.applicationShouldTerminate();
        QCOMPARE(StickyNoteManager::loadLayout().size(), 1);
        QVERIFY(!application.stickyNotes.isTerminating());
        QSignalSpy written(&application.stickyNotes, &StickyNoteManager::layoutSaved);
        window.close();
        QVERIFY(written.wait(longEnough));
        QVERIFY(StickyNoteManager::loadLayout().isEmpty());
    }
};

QTEST_MAIN(TestOrderlyEnd)
#include "tst_orderly_end.moc"
