#include "mainwindow/ContentController.h"

#include "core/NotificationCenter.h"
#include "tests/mainwindow/ContentFixture.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{
using Fixture = ContentFixture;

constexpr auto cannotRaise = "This plugin does not support raise()"; // without a screen
} // namespace

// The note that somebody asks for, and the window that comes to the front with it.
class TestContentShowing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void aNoteIsShownForWhoAsks_data()
    {
        QTest::addColumn<QString>("note");
        QTest::addColumn<bool>("fromArchive");
        QTest::newRow("in its tab") << u"A"_s << false;
        QTest::newRow("a note in the other tab") << u"A"_s << true;
        QTest::newRow("an archived note") << u"b"_s << false;
        QTest::newRow("an archived note in its tab") << u"b"_s << true;
    }
    void aNoteIsShownForWhoAsks()
    {
        QFETCH(QString, note);
        QFETCH(bool, fromArchive);
        Fixture f(u"A b C"_s);
        QWindow window;
        WindowHolder::shared().window = &window;
        f.content.selectTab(fromArchive ? SidebarTab::Archive : SidebarTab::Notes);
        QTest::ignoreMessage(QtWarningMsg, cannotRaise);
        Q_EMIT NotificationCenter::shared().plimSelectNote(f.id(note));
        QVERIFY(f.selection.selectedNoteID() == f.id(note));
        QCOMPARE(f.selection.selectedTab() == SidebarTab::Archive, note == u"b"_s);
        QCOMPARE(f.content.selectedRow(), 0);
        QVERIFY(window.isVisible());
        QTRY_COMPARE(QGuiApplication::focusWindow(), &window);
    }

    void theWindowComesToTheFrontAsItWas_data()
    {
        QTest::addColumn<Qt::WindowStates>("before");
        QTest::addColumn<Qt::WindowStates>("after");
        using States = Qt::WindowStates;
        QTest::newRow("as any") << States(Qt::WindowNoState) << States(Qt::WindowNoState);
        QTest::newRow("maximised") << States(Qt::WindowMaximized) << States(Qt::WindowMaximized);
        QTest::newRow("minimised") << States(Qt::WindowMinimized) << States(Qt::WindowNoState);
        QTest::newRow("minimised from maximised")
            << (Qt::WindowMinimized | Qt::WindowMaximized) << States(Qt::WindowMaximized);
    }
    void theWindowComesToTheFrontAsItWas()
    {
        QFETCH(Qt::WindowStates, before);
        Fixture f(u"A"_s);
        QWindow window;
        window.setVisible(true);
        window.setWindowStates(before);
        WindowHolder::shared().window = &window;
        QTest::ignoreMessage(QtWarningMsg, cannotRaise);
        Q_EMIT NotificationCenter::shared().plimSelectNote(f.id(u"A"_s));
        QTEST(window.windowStates(), "after");
    }

    void anUnknownNoteIsNotShown()
    {
        Fixture f(u"A b"_s);
        QWindow window;
        WindowHolder::shared().window = &window;
        f.select(u"A"_s);
        f.content.selectTab(SidebarTab::Archive);
        f.tick(u"b"_s);
        Q_EMIT NotificationCenter::shared().plimSelectNote(QUuid::createUuid());
        QVERIFY(f.selection.selectedNoteID() == f.id(u"A"_s));
        QVERIFY(f.selection.selectedTab() == SidebarTab::Archive);
        QVERIFY(f.isTicking());
        QVERIFY(!window.isVisible());
    }

    void withoutAWindowANoteIsSelectedAllTheSame()
    {
        Fixture f(u"A b"_s);
        Q_EMIT NotificationCenter::shared().plimSelectNote(f.id(u"b"_s));
        QVERIFY(f.selection.selectedNoteID() == f.id(u"b"_s));
    }

    void aPendingNoteIsSelectedWithTheWindow_data()
    {
        QTest::addColumn<QString>("pending");
        QTest::newRow("a note") << u"B"_s;
        QTest::newRow("an archived one") << u"c"_s;
        QTest::newRow("one that is gone") << QString();
    }
    void aPendingNoteIsSelectedWithTheWindow()
    {
        QFETCH(QString, pending);
        Fixture f(u"A B c"_s);
        f.select(u"A"_s);
        const QUuid expected = pending.isNull() ? f.id(u"A"_s) : f.id(pending);
        WindowHolder::shared().pendingSelectedID =
            pending.isNull() ? QUuid::createUuid() : expected;
        QCoreApplication::processEvents();
        QVERIFY(f.selection.selectedNoteID() == f.id(u"A"_s)); // no window has come
        QWindow window;
        window.setVisible(true);
        window.requestActivate();
        QTRY_VERIFY(!WindowHolder::shared().pendingSelectedID);
        QVERIFY(f.selection.selectedNoteID() == expected);
        QCOMPARE(f.selection.selectedTab() == SidebarTab::Archive, pending == u"c"_s);
    }

    void theMainWindowComesToTheFront_data()
    {
        QTest::addColumn<Qt::WindowStates>("states");
        QTest::addColumn<bool>("isVisible");
        QTest::newRow("hidden") << Qt::WindowStates() << false;
        QTest::newRow("minimised") << Qt::WindowStates(Qt::WindowMinimized) << true;
        QTest::newRow("minimised and maximised")
            << (Qt::WindowMinimized | Qt::WindowMaximized) << true;
    }
    void theMainWindowComesToTheFront()
    {
        QFETCH(Qt::WindowStates, states);
        QFETCH(bool, isVisible);
        Fixture f(u"A"_s);
        QWindow window;
        window.setWindowStates(states);
        window.setVisible(isVisible);
        WindowHolder::shared().window = &window;
        QTest::ignoreMessage(QtWarningMsg, cannotRaise);
        f.content.bringToFront();
        QVERIFY(window.isVisible());
        QCOMPARE(window.windowStates(), states & ~Qt::WindowMinimized);
        QTRY_COMPARE(QGuiApplication::focusWindow(), &window);
    }

    void withoutAMainWindowNothingComesToTheFront()
    {
        Fixture f(u"A"_s);
        f.content.bringToFront();
        QVERIFY(!WindowHolder::shared().window);
    }
};

QTEST_MAIN(TestContentShowing)
#include "tst_content_showing.moc"
