#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredNotes.h"
#include "tests/shell/PrivateBus.h"
#include "tests/shell/StatusNotifierHost.h"

#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
using XTools::patience;
// Of the languages below the list, from the main window's upper left corner
const QPoint english(361, 680);
const QPoint polish(407, 680);
const QStringList polishMenu{u"Pokaż / ukryj okno"_s,
                             u"Nowa notatka [Control+N]"_s,
                             u"-"_s,
                             u"Język"_s,
                             u"  * Polski"_s,
                             u"  o English"_s,
                             u"-"_s,
                             u"Zamknij Plim [Control+Q]"_s};
const QStringList englishMenu{
    u"Show / hide window"_s, u"New note [Control+N]"_s, u"-"_s, u"Language"_s,
    u"  o Polski"_s,         u"  * English"_s,          u"-"_s, u"Quit Plim [Control+Q]"_s};
} // namespace

/// The built program's status item, with a desktop's place for it played by the test.
class TestEndToEndTray : public QObject
{
    Q_OBJECT

    std::optional<ThrowAwayHome> m_home;
    std::optional<PrivateBus> m_bus;
    std::unique_ptr<StatusNotifierHost> m_host;
    std::unique_ptr<PlimRun> m_plim;

    [[nodiscard]] bool isSeen() const { return m_plim->mainWindow().id() != XCB_NONE; }
    [[nodiscard]] bool isInFront() const { return isSeen() && m_plim->mainWindow().isActive(); }
    [[nodiscard]] StatusItem item() const
    {
        const auto item = m_host->item();
        if (!item)
            qFatal("there is no status item");
        return *item;
    }
    void start(const QStringList &headings = {u"Tea"_s})
    {
        storeNotesCalled(*m_home, headings);
        QVERIFY(m_plim->open());
    }
    void startWithItem(const QStringList &headings = {u"Tea"_s})
    {
        m_host->appear();
        start(headings);
        QTRY_VERIFY_WITH_TIMEOUT(m_host->item(), patience);
    }
    void hideWindow()
    {
        QVERIFY(item().choose(u"Pokaż / ukryj okno"_s));
        QTRY_VERIFY_WITH_TIMEOUT(!isSeen(), patience);
    }

private Q_SLOTS:
    void init()
    {
        m_home.emplace();
        m_bus.emplace();
        QVERIFY(!m_bus->address().isEmpty());
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus->address().toUtf8());
        m_host = std::make_unique<StatusNotifierHost>(m_bus->address());
        m_plim = std::make_unique<PlimRun>(*m_home);
    }
    void cleanup()
    {
        m_plim.reset();
        m_host.reset();
        m_bus.reset();
        m_home.reset();
    }

    void thePanelIsToldAllAboutTheItem()
    {
        startWithItem();
        QCOMPARE(item().property(u"Title"_s).toString(), u"Plim"_s);
        QCOMPARE(item().property(u"Status"_s).toString(), u"Active"_s);
        QCOMPARE(item().property(u"ItemIsMenu"_s).toBool(), false);
        QCOMPARE(item().property(u"IconName"_s).toString(), QString()); // of a theme without it
        QCOMPARE(item().toolTip(), u"Plim — notatki"_s);
        QCOMPARE(item().menuText(), polishMenu);
        QCOMPARE(m_plim->warnings().join(u'\n'), QString());
    }

    // Light on a dark panel, and of one colour.
    void thePanelIsGivenPictures_data()
    {
        QTest::addColumn<int>("side");
        for (const int side : {16, 22, 24, 32})
            QTest::addRow("%d", side) << side;
    }
    void thePanelIsGivenPictures()
    {
        QFETCH(int, side);
        startWithItem();
        QImage picture;
        for (const QImage &each : item().pixmaps()) {
            if (each.size() == QSize(side, side))
                picture = each;
        }
        QVERIFY(!picture.isNull());
        int covered = 0;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                if (qAlpha(picture.pixel(x, y)) < 255)
                    continue;
                ++covered;
                QCOMPARE(QColor(picture.pixel(x, y)), QColor(0xf2, 0xf2, 0xf2));
            }
        }
        QVERIFY2(covered > 50 && covered < side * side, qPrintable(QString::number(covered)));
    }

    // One that the packages have put into the theme is inked by the panel itself.
    void anIconOfTheThemeIsGoneByItsName()
    {
        const QString folder = m_home->path(u"data/icons/hicolor/symbolic/apps"_s);
        QVERIFY(QDir().mkpath(folder));
        QFile index(m_home->path(u"data/icons/hicolor/index.theme"_s));
        QVERIFY(index.open(QIODevice::WriteOnly));
        index.write("[Icon Theme]\nName=Hicolor\nDirectories=symbolic/apps\n\n[symbolic/apps]\n"
                    "Size=16\nMinSize=8\nMaxSize=512\nType=Scalable\n");
        QFile icon(folder + u"/org.plim.Plim-symbolic.svg"_s);
        QVERIFY(icon.open(QIODevice::WriteOnly));
        icon.write("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\"/>");
        index.close();
        icon.close();
        startWithItem();
        QCOMPARE(item().property(u"IconName"_s).toString(), u"org.plim.Plim-symbolic"_s);
        QVERIFY(!item().pixmaps().isEmpty()); // for a panel that does not find it
    }

    void theWindowIsHiddenAndShown()
    {
        startWithItem();
        const QRect place = m_plim->geometry();
        hideWindow();
        QVERIFY(m_plim->isRunning());
        QVERIFY(item().choose(u"Pokaż / ukryj okno"_s));
        QTRY_VERIFY_WITH_TIMEOUT(isInFront(), patience);
        QTRY_COMPARE(m_plim->geometry(), place);
    }

    void aClickHidesAndShowsTheWindow()
    {
        startWithItem();
        item().activate();
        QTRY_VERIFY_WITH_TIMEOUT(!isSeen(), patience);
        item().activate();
        QTRY_VERIFY_WITH_TIMEOUT(isInFront(), patience);
    }

    void aNewNoteComesWithTheWindow_data()
    {
        QTest::addColumn<bool>("isHidden");
        QTest::addColumn<bool>("isMiddleClick");
        QTest::newRow("menu") << false << false;
        QTest::newRow("menu, window hidden") << true << false;
        QTest::newRow("middle click") << false << true;
        QTest::newRow("middle click, window hidden") << true << true;
    }
    void aNewNoteComesWithTheWindow()
    {
        QFETCH(bool, isHidden);
        QFETCH(bool, isMiddleClick);
        startWithItem();
        if (isHidden)
            hideWindow();
        if (isMiddleClick)
            item().activateSecondary();
        else
            QVERIFY(item().choose(u"Nowa notatka"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_plim->notesOnDisk().size(), 2, patience);
        QTRY_VERIFY_WITH_TIMEOUT(isInFront(), patience);
    }

    void theLanguageIsChosen()
    {
        startWithItem();
        const auto stored = [this] { return m_home->read(u".config/Plim/Plim.conf"_s); };
        QVERIFY(item().choose(u"English"_s));
        QTRY_COMPARE_WITH_TIMEOUT(item().menuText(), englishMenu, patience);
        QTRY_COMPARE(item().toolTip(), u"Plim — notes"_s);
        QTRY_VERIFY(stored().contains("plimLanguage=en"));
        QVERIFY(item().choose(u"Polski"_s));
        QTRY_COMPARE_WITH_TIMEOUT(item().menuText(), polishMenu, patience);
        QTRY_COMPARE(item().toolTip(), u"Plim — notatki"_s);
        QTRY_VERIFY(stored().contains("plimLanguage=pl"));
    }

    void theLanguageIsChosenInTheWindow()
    {
        startWithItem();
        m_plim->click(english);
        QTRY_COMPARE_WITH_TIMEOUT(item().menuText(), englishMenu, patience);
        QTRY_COMPARE(item().toolTip(), u"Plim — notes"_s);
        m_plim->click(polish);
        QTRY_COMPARE_WITH_TIMEOUT(item().menuText(), polishMenu, patience);
        QTRY_COMPARE(item().toolTip(), u"Plim — notatki"_s);
    }

    void quittingWritesWhatWasJustWritten()
    {
        startWithItem();
        QVERIFY(m_plim->addNote());
        m_plim->type(u"Milk"_s);
        QVERIFY(item().choose(u"Zamknij Plim"_s));
        QCOMPARE(m_plim->exitCode(), 0);
        QVERIFY2(m_plim->bodyOnDisk().contains(u"Milk"_s), qPrintable(m_plim->bodyOnDisk()));
        QCOMPARE(m_plim->notesOnDisk().size(), 2);
        QTRY_COMPARE(m_host->services(), QStringList());
    }

    void aHiddenProgramQuitsToo()
    {
        startWithItem();
        hideWindow();
        QVERIFY(item().choose(u"Zamknij Plim"_s));
        QCOMPARE(m_plim->exitCode(), 0);
    }

    void closingTheWindowQuitsWithATray()
    {
        startWithItem();
        m_plim->closeWindow();
        QCOMPARE(m_plim->exitCode(), 0);
    }

    void closingTheWindowQuitsAfterItWasHidden()
    {
        startWithItem();
        hideWindow();
        item().activate();
        QTRY_VERIFY_WITH_TIMEOUT(isInFront(), patience);
        m_plim->closeWindow();
        QCOMPARE(m_plim->exitCode(), 0);
    }

    void theLastStickyLeavesAHiddenProgramRunning()
    {
        startWithItem();
        QVERIFY(m_plim->openSticky(0, storedID(0)));
        hideWindow();
        m_plim->stickies().constFirst().clickControl(StickyOnScreen::Close);
        QTRY_VERIFY_WITH_TIMEOUT(m_plim->stickies().isEmpty(), patience);
        item().activate();
        QTRY_VERIFY_WITH_TIMEOUT(isInFront(), patience);
    }

    void theItemIsBackWhenTheTrayIs()
    {
        startWithItem();
        for (int again = 0; again < 2; ++again) {
            m_host->disappear();
            m_host->appear();
            QTRY_VERIFY_WITH_TIMEOUT(m_host->item(), patience);
            QCOMPARE(item().menuText(), polishMenu);
        }
        // As another process, which is what a new panel is.
        m_host.reset();
        m_host = std::make_unique<StatusNotifierHost>(m_bus->address());
        m_host->appear();
        QTRY_VERIFY_WITH_TIMEOUT(m_host->item(), patience);
        hideWindow();
        item().activate();
        QTRY_VERIFY_WITH_TIMEOUT(isInFront(), patience);
    }

    void theItemComesWithATrayThatComesLate()
    {
        start();
        m_host->appear();
        QTRY_VERIFY_WITH_TIMEOUT(m_host->item(), patience);
        QCOMPARE(item().menuText(), polishMenu);
        hideWindow();
        item().activate();
        QTRY_VERIFY_WITH_TIMEOUT(isInFront(), patience);
    }

    void withTheTrayGoneAHiddenWindowIsBack()
    {
        startWithItem();
        hideWindow();
        m_host->disappear();
        QTRY_VERIFY_WITH_TIMEOUT(isInFront(), patience);
        m_plim->closeWindow();
        QCOMPARE(m_plim->exitCode(), 0);
    }

    // Its user finds the program there.
    void aStickyIsEnoughWithTheTrayGone()
    {
        startWithItem();
        QVERIFY(m_plim->openSticky(0, storedID(0)));
        hideWindow();
        const StatusItem before = item();
        m_host->disappear();
        // The program has heard of it by the first answer, and looked for another by the second.
        for (int again = 0; again < 2; ++again)
            QCOMPARE(before.property(u"Status"_s).toString(), u"Active"_s);
        QVERIFY(!isSeen());
        m_plim->stickies().constFirst().clickControl(StickyOnScreen::Close);
        QCOMPARE(m_plim->exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(TestEndToEndTray)
#include "tst_e2e_tray.moc"
