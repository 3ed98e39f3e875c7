#include "core/app/Platform.h"
#include "core/app/PlimApp.h"

#include "core/NotesJson.h"
#include "core/NotificationCenter.h"
#include "mainwindow/WindowState.h"
#include "sticky/StickyNoteManager.h"
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
        const PlimApp plim;
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
        const PlimApp plim;
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
        auto *session = qApp->findChild<QSessionManager *>();
        QVERIFY(session);
        QSignalSpy asked(&NotificationCenter::shared(), &NotificationCenter::plimFlushEditors);
        Q_EMIT qApp->commitDataRequest(*session);
        QCOMPARE(asked.count(), 1);
        QCOMPARE(notesFiles(), QStringList{u"notes.json"_s});
    }
};

int main(int argc, char **argv)
{
    preparePlatform(); // the main window starts the web engine once it has been drawn
    const QGuiApplication application(argc, argv);
    TestPlimApp test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_plim_app.moc"
