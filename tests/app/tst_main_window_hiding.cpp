#include "core/app/MainWindowHiding.h"

#include "sticky/WindowHolder.h"
#include "tests/mainwindow/NoteListFixture.h"
#include "tests/shell/PrivateBus.h"
#include "tests/shell/StatusNotifierHost.h"
#include "tests/sticky/FakeStickyWindow.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// With a window, sticky windows and a tray that are the test's own.
class TestMainWindowHiding : public QObject
{
    Q_OBJECT

    std::optional<ThrowAwayHome> m_home;
    std::optional<PrivateBus> m_bus;
    std::unique_ptr<StatusNotifierHost> m_host;
    std::unique_ptr<TrayWatch> m_tray;
    std::unique_ptr<NoteStore> m_store;
    std::unique_ptr<StickyNoteManager> m_stickyNotes;
    std::unique_ptr<QWindow> m_window;
    std::unique_ptr<MainWindowHiding> m_hiding;

    void start(const MainWindowHiding::Patience &patience = {0ms, 0ms})
    {
        m_tray =
            std::make_unique<TrayWatch>(QDBusConnection::connectToBus(m_bus->address(), u"tray"_s));
        m_hiding = std::make_unique<MainWindowHiding>(*m_tray, *m_stickyNotes);
        m_hiding->setPatience(patience);
    }
    void setTray(bool isThere)
    {
        if (isThere)
            m_host->appear();
        else
            m_host->disappear();
        if (!m_tray)
            start();
        QTRY_VERIFY(m_tray->isKnown());
        QTRY_COMPARE(m_tray->isThere(), isThere);
    }
    void openSticky()
    {
        m_stickyNotes->open(m_store->addNote(), *m_store, nullptr, std::nullopt);
        QTRY_COMPARE(m_stickyNotes->activeNoteIDs().count(), 1);
    }
    [[nodiscard]] bool isMinimised() const
    {
        return m_window->windowStates().testFlag(Qt::WindowMinimized);
    }

private Q_SLOTS:
    void init()
    {
        m_home.emplace();
        m_bus.emplace();
        m_host = std::make_unique<StatusNotifierHost>(m_bus->address());
        m_store = std::make_unique<NoteStore>(m_home->data());
        m_stickyNotes = std::make_unique<StickyNoteManager>(nullptr);
        m_stickyNotes->setFactory(
            [](const QUuid &, NoteTextSize) { return std::make_unique<FakeStickyWindow>(); });
        m_window = std::make_unique<QWindow>();
        WindowHolder::shared().window = m_window.get();
        m_window->show();
    }
    void cleanup()
    {
        m_hiding.reset();
        m_window.reset();
        m_stickyNotes.reset();
        m_store.reset();
        m_tray.reset();
        QDBusConnection::disconnectFromBus(u"tray"_s);
        m_host.reset();
        m_bus.reset();
        m_home.reset();
        QGuiApplication::setQuitOnLastWindowClosed(true);
    }

    void theWindowIsHiddenAndShown()
    {
        setTray(true);
        m_hiding->toggle();
        QVERIFY(!m_window->isVisible());
        m_hiding->toggle();
        QVERIFY(m_window->isVisible());
    }

    void withoutATrayTheOnlyWindowIsMinimised()
    {
        setTray(false);
        m_hiding->toggle();
        QVERIFY(m_window->isVisible());
        QVERIFY(isMinimised());
        m_hiding->toggle();
        QVERIFY(m_window->isVisible());
        QVERIFY(!isMinimised());
    }

    void aMaximisedWindowComesBackAsOne()
    {
        setTray(false);
        m_window->setWindowStates(Qt::WindowMaximized);
        m_hiding->toggle();
        QVERIFY(isMinimised());
        m_hiding->toggle();
        QCOMPARE(m_window->windowStates(), Qt::WindowStates(Qt::WindowMaximized));
    }

    void aMinimisedWindowIsShown()
    {
        setTray(true);
        m_window->setWindowStates(Qt::WindowMinimized);
        m_hiding->toggle();
        QVERIFY(m_window->isVisible());
        QVERIFY(!isMinimised());
    }

    void besideAStickyTheWindowIsHiddenWithoutATray()
    {
        setTray(false);
        openSticky();
        m_hiding->toggle();
        QVERIFY(!m_window->isVisible());
        m_hiding->toggle();
        QVERIFY(m_window->isVisible());
    }

    void theTrayGoes_data()
    {
        QTest::addColumn<bool>("isHidden");
        QTest::addColumn<bool>("hasSticky");
        QTest::addColumn<bool>("isShown");
        QTest::newRow("window hidden") << true << false << true;
        QTest::newRow("window hidden, a sticky is open") << true << true << false;
        QTest::newRow("window closed, a sticky is open") << false << true << false;
    }
    void theTrayGoes()
    {
        QFETCH(bool, isHidden);
        QFETCH(bool, hasSticky);
        QFETCH(bool, isShown);
        setTray(true);
        if (hasSticky)
            openSticky();
        if (isHidden)
            m_hiding->toggle();
        else
            m_window->setVisible(false);
        QVERIFY(!m_window->isVisible());
        setTray(false);
        if (isShown)
            QTRY_VERIFY(m_window->isVisible());
        QCoreApplication::processEvents();
        QCOMPARE(m_window->isVisible(), isShown);
    }

    void aPanelThatIsStartedAnewChangesNothing()
    {
        constexpr auto moment = 1s;
        start({moment, 0ms});
        setTray(true);
        m_hiding->toggle();
        QElapsedTimer gone;
        gone.start();
        setTray(false);
        setTray(true);
        if (gone.elapsed() > moment / 2ms)
            QSKIP("this machine is too slow for that");
        QVERIFY(!QTest::qWaitFor([this] { return m_window->isVisible(); },
                                 int((moment * 3 / 2) / 1ms)));
    }

    // Hidden by its user, the program has no window to lose; otherwise the last one ends it.
    void theLastWindowEndsTheProgramUnlessItIsHidden()
    {
        setTray(true);
        QVERIFY(QGuiApplication::quitOnLastWindowClosed());
        m_hiding->toggle();
        QVERIFY(!QGuiApplication::quitOnLastWindowClosed());
        m_hiding->toggle();
        QVERIFY(QGuiApplication::quitOnLastWindowClosed());
        openSticky();
        m_hiding->toggle();
        QVERIFY(!QGuiApplication::quitOnLastWindowClosed());
        setTray(false);
        QVERIFY(QGuiApplication::quitOnLastWindowClosed());
        setTray(true);
        QVERIFY(!QGuiApplication::quitOnLastWindowClosed());
        m_window->setVisible(true); // by whomever
        QVERIFY(QGuiApplication::quitOnLastWindowClosed());
    }

    void aWindowHiddenFromTheStartIsShownOnceThereIsNoTray()
    {
        start();
        m_window->setVisible(false);
        m_hiding->hide();
        QVERIFY(!m_window->isVisible());
        QVERIFY(!m_tray->isKnown());
        QTRY_VERIFY(m_window->isVisible());
    }
    void aWindowHiddenFromTheStartStaysSoWithATray()
    {
        m_host->appear();
        start();
        m_window->setVisible(false);
        m_hiding->hide();
        QTRY_VERIFY(m_tray->isKnown());
        QCoreApplication::processEvents();
        QVERIFY(!m_window->isVisible());
    }
    // The panel may be started after Plim is.
    void aSessionThatBeginsHasTimeForItsTray()
    {
        start({0ms, 1h});
        m_window->setVisible(false);
        m_hiding->hide();
        QTRY_VERIFY(m_tray->isKnown());
        QVERIFY(!QTest::qWaitFor([this] { return m_window->isVisible(); }, 200));
        setTray(true);
        QCoreApplication::processEvents();
        QVERIFY(!m_window->isVisible());
        setTray(false); // it has been there, and is gone
        QTRY_VERIFY(m_window->isVisible());
    }

    void withoutAWindowNothingHappens()
    {
        setTray(true);
        WindowHolder::shared().window = nullptr;
        m_hiding->toggle();
        m_hiding->hide();
        setTray(false);
        QVERIFY(m_window->isVisible());
        QVERIFY(QGuiApplication::quitOnLastWindowClosed());
    }
};

int main(int argc, char **argv)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); // nothing of the user's desktop
    const QGuiApplication application(argc, argv);
    TestMainWindowHiding test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_main_window_hiding.moc"
