#include "core/app/Platform.h"
#include "core/app/PlimApp.h"

#include "core/NotesJson.h"
#include "core/NotificationCenter.h"
#include "core/app/CommandLine.h"
#include "editor/EditorFlush.h"
#include "mainwindow/ContentController.h"
#include "mainwindow/WindowState.h"
#include "sticky/StickyNoteManager.h"
#include "sticky/WindowFront.h"
#include "sticky/WindowHolder.h"
#include "tests/mainwindow/NoteListFixture.h"
#include "tests/sticky/FakeStickyWindow.h"

#include <QGuiApplication>
#include <QPointer>
#include <QRegularExpression>
#include <QSessionManager>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

// The application, most often without its window.
class TestPlimApp : public QObject
{
    Q_OBJECT

    std::optional<ThrowAwayHome> m_home;

    void writeNotes() const
    {
        QDir().mkpath(m_home->data());
        QFile file(m_home->data() + u"/notes.json"_s);
        if (!file.open(QIODevice::WriteOnly) || file.write(*encodeNotes(notesOf(u"A"_s))) <= 0)
            qFatal("The test's own notes could not be written");
    }
    [[nodiscard]] NoteArray notesOnDisk() const
    {
        return decodeNotes(m_home->read(u"data/Plim/notes.json"_s), {}).value_or(NoteArray());
    }
    [[nodiscard]] static Invocation order(QStringView command) { return {command.toString()}; }
    [[nodiscard]] static QWindow *window() { return WindowHolder::shared().window; }
    [[nodiscard]] static ContentController *content()
    {
        return window()->property("content").value<ContentController *>();
    }
    [[nodiscard]] QStringList notesFiles() const
    {
        return QDir(m_home->data()).entryList({u"notes.json*"_s}, QDir::Files, QDir::Name);
    }

private Q_SLOTS:
    void init() { m_home.emplace(); }
    void cleanup() { m_home.reset(); }

    void theStartLeavesItsTraces()
    {
        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        { // who ends waits for them
            const PlimApp plim;
        }
        const QString trace = QString::fromUtf8(m_home->read(u"Documents/plim_init.log"_s));
        const auto match = QRegularExpression(u"^init called (.+) Bundle (.+)$"_s).match(trace);
        QVERIFY2(match.hasMatch(), qPrintable(trace));
        const QDateTime date = QDateTime::fromString(match.captured(1));
        QVERIFY2(date >= before && date <= QDateTime::currentDateTime(), qPrintable(trace));
        QCOMPARE(match.captured(2), QCoreApplication::applicationDirPath());
        QCOMPARE(m_home->read(u"Documents/plim_init2.log"_s), "after register");
        QVERIFY(m_home->read(u"Documents/plim_font.log"_s).startsWith("[FONT] register start "));
    }

    void theNextStartWritesItsTracesAnew()
    {
        for (const QString &name : {u"plim_init.log"_s, u"plim_init2.log"_s}) {
            QFile old(m_home->documents() + u'/' + name);
            QVERIFY(old.open(QIODevice::WriteOnly) && old.write(QByteArray(1000, 'x')) == 1000);
        }
        {
            const PlimApp plim;
        }
        QVERIFY(m_home->read(u"Documents/plim_init.log"_s).startsWith("init called "));
        QVERIFY(!m_home->read(u"Documents/plim_init.log"_s).contains('x'));
        QCOMPARE(m_home->read(u"Documents/plim_init2.log"_s), "after register");
    }

    void tracesThatCannotBeWrittenStopNothing_data()
    {
        QTest::addColumn<QString>("obstacle");
        QTest::newRow("no documents directory") << QString();
        QTest::newRow("a file in its place") << u"Documents"_s;
        QTest::newRow("a directory in a trace's place") << u"Documents/plim_init.log/x"_s;
    }
    void tracesThatCannotBeWrittenStopNothing()
    {
        QFETCH(QString, obstacle);
        QDir(m_home->documents()).removeRecursively();
        if (obstacle == u"Documents"_s) {
            QFile file(m_home->documents());
            QVERIFY(file.open(QIODevice::WriteOnly));
        } else if (!obstacle.isEmpty()) {
            QVERIFY(QDir().mkpath(m_home->path(obstacle)));
        }
        const PlimApp plim;
        QVERIFY(QFile::exists(m_home->data() + u"/images"_s));
        QCOMPARE(QFile::exists(m_home->documents()), !obstacle.isEmpty());
    }

    void aStartWritesNoNotes()
    {
        writeNotes();
        const QByteArray before = m_home->read(u"data/Plim/notes.json"_s);
        {
            const PlimApp plim;
        }
        QCOMPARE(m_home->read(u"data/Plim/notes.json"_s), before);
        QCOMPARE(notesFiles(), QStringList{u"notes.json"_s});
    }

    void theEndWritesTheNotesOnce()
    {
        writeNotes();
        const PlimApp plim;
        QTimer::singleShot(0, &plim, &QCoreApplication::quit);
        QCOMPARE(QCoreApplication::exec(), 0);
        QCOMPARE(notesFiles(), (QStringList{u"notes.json"_s, u"notes.json.bak.1"_s}));
    }

    void theWindowIsShownAsItWasLastTime_data()
    {
        QTest::addColumn<bool>("wasMaximized");
        QTest::newRow("in its frame") << false;
        QTest::newRow("maximised") << true;
    }
    void theWindowIsShownAsItWasLastTime()
    {
        QFETCH(bool, wasMaximized);
        QSettings(WindowState::stateFile(), QSettings::IniFormat)
            .setValue(u"mainWindow/isMaximized"_s, wasMaximized);
        PlimApp plim;
        plim.show();
        const QWindow *window = WindowHolder::shared().window;
        QVERIFY(window && window->isVisible());
        QVERIFY(window->flags() & Qt::FramelessWindowHint);
        QCOMPARE(bool(window->windowStates() & Qt::WindowMaximized), wasMaximized);
    }

    void theStickyWindowsComeBackOnceTheWindowIsShown()
    {
        writeNotes();
        const auto notes = decodeNotes(m_home->read(u"data/Plim/notes.json"_s), {});
        const QUuid noteID = (*notes)[0].id;
        storeStickyLayout({{noteID, {100, 100, 300, 340}}});
        auto &stickyNotes = StickyNoteManager::shared();
        QPointer<StickyWindow> made;
        {
            PlimApp plim;
            stickyNotes.setFactory([&](const QUuid &, NoteTextSize) {
                auto window = std::make_unique<FakeStickyWindow>();
                made = window.get();
                return window;
            });
            QCoreApplication::processEvents();
            QVERIFY(!made);
            plim.show();
            QVERIFY(!made); // the main window is there first
            QTRY_VERIFY(stickyNotes.activeNoteIDs().contains(noteID));
        }
        QVERIFY(!made);
        QCOMPARE(stickyNotes.activeNoteIDs().count(), 0);
        QCOMPARE(storedStickyLayout().size(), 1);
    }

    void theSessionManagerIsGivenTheTextsAndCostsNoBackup()
    {
        writeNotes();
        const PlimApp plim;
        auto *session = qGuiApp->findChild<QSessionManager *>();
        QVERIFY(session);
        QSignalSpy asked(&NotificationCenter::shared(), &NotificationCenter::plimFlushEditors);
        Q_EMIT qGuiApp->commitDataRequest(*session);
        QCOMPARE(asked.count(), 1);
        QCOMPARE(notesFiles(), QStringList{u"notes.json"_s});
    }

    // The session manager ends the program, or the machine, as soon as it has its answer.
    void theTextTypedLastIsOnDiskBeforeTheSessionManagerIsAnswered()
    {
        writeNotes();
        PlimApp plim;
        plim.show();
        QTRY_VERIFY(window()->isExposed());
        const QUuid noteID = notesOnDisk()[0].id;
        const QObject context;
        connect(&NotificationCenter::shared(), &NotificationCenter::plimFlushEditors, &context,
                [&context, noteID] {
                    QTimer::singleShot(100, &context, [noteID, debt = EditorFlush::shared().owe()] {
                        content()->applyEdit(noteID, u"<h1>typed last</h1>"_s);
                    });
                });
        Q_EMIT qGuiApp->commitDataRequest(*qGuiApp->findChild<QSessionManager *>());
        QCOMPARE(notesOnDisk()[0].body, u"<h1>typed last</h1>"_s);
        QCOMPARE(notesFiles(), (QStringList{u"notes.json"_s, u"notes.json.bak.1"_s}));
        QVERIFY(plim.canCarryOut()); // the session may go on
    }

    void aStartShowsTheWindow_data()
    {
        QTest::addColumn<Invocation>("invocation");
        QTest::addColumn<bool>("isVisible");
        QTest::addColumn<int>("noteCount");
        QTest::newRow("plain") << Invocation{} << true << 1;
        QTest::newRow("hidden") << Invocation{{}, true} << false << 1;
        QTest::newRow("a new note") << order(newNoteCommand) << true << 2;
        QTest::newRow("a new note, hidden")
            << Invocation{newNoteCommand.toString(), true} << true << 2;
        QTest::newRow("toggled") << order(toggleWindowCommand) << true << 1;
    }
    void aStartShowsTheWindow()
    {
        QFETCH(Invocation, invocation);
        QFETCH(bool, isVisible);
        QFETCH(int, noteCount);
        writeNotes();
        PlimApp plim;
        plim.start(invocation);
        QVERIFY(window());
        QCOMPARE(window()->isVisible(), isVisible);
        QCOMPARE(content()->filteredNotes()->rowCount(), noteCount);
    }

    void theStickyWindowsOfAHiddenStartComeBack()
    {
        writeNotes();
        const QUuid noteID = notesOnDisk()[0].id;
        storeStickyLayout({{noteID, {100, 100, 300, 340}}});
        PlimApp plim;
        StickyNoteManager::shared().setFactory(
            [](const QUuid &, NoteTextSize) { return std::make_unique<FakeStickyWindow>(); });
        plim.start({{}, true});
        QTRY_VERIFY(StickyNoteManager::shared().activeNoteIDs().contains(noteID));
        QVERIFY(!window()->isVisible());
    }

    void laterStartsAreCarriedOut()
    {
        writeNotes();
        PlimApp plim;
        plim.start({});
        window()->setVisible(false);
        plim.carryOut({{}, true});
        QVERIFY(!window()->isVisible());
        plim.carryOut({});
        QVERIFY(window()->isVisible());
        plim.carryOut(order(toggleWindowCommand));
        QVERIFY(!isOnScreen(*window()));
        plim.carryOut(order(toggleWindowCommand));
        QVERIFY(isOnScreen(*window()));
        window()->setWindowStates(Qt::WindowMinimized);
        plim.carryOut(order(toggleWindowCommand));
        QVERIFY(window()->isVisible() && !(window()->windowStates() & Qt::WindowMinimized));
        window()->setVisible(false);
        plim.carryOut(order(newNoteCommand));
        QVERIFY(window()->isVisible());
        QCOMPARE(content()->filteredNotes()->rowCount(), 2);
    }

    void anOrderToQuitIsAnOrdinaryEnd()
    {
        writeNotes();
        PlimApp plim;
        plim.start({});
        bool couldCarryOut = true;
        connect(&NotificationCenter::shared(), &NotificationCenter::plimFlushEditors, &plim,
                [&] { couldCarryOut = plim.canCarryOut(); });
        QTimer::singleShot(0, &plim, [&] {
            plim.carryOut(order(quitCommand));
            QVERIFY(plim.canCarryOut()); // it begins once this is answered
        });
        QCOMPARE(QCoreApplication::exec(), 0);
        QVERIFY(!couldCarryOut);
        QCOMPARE(notesFiles(), (QStringList{u"notes.json"_s, u"notes.json.bak.1"_s}));
    }
};

int main(int argc, char **argv)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); // nothing of the user's desktop
    preparePlatform(); // the main window starts the web engine once it has been drawn
    const QGuiApplication application(argc, argv);
    TestPlimApp test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_plim_app.moc"
