#include "shell/TrayWatch.h"

#include "tests/Patience.h"
#include "tests/shell/PrivateBus.h"
#include "tests/shell/StatusNotifierHost.h"
#include "tests/sticky/XWitness.h"

#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray trayOfWindows = "_NET_SYSTEM_TRAY_S0";
}

/// On an X server and a bus where trays come and go as the test wants.
class TestTrayWatch : public QObject
{
    Q_OBJECT

    XWitness m_witness;
    std::optional<PrivateBus> m_bus;
    std::unique_ptr<StatusNotifierHost> m_host;
    std::unique_ptr<TrayWatch> m_watch;

    void startEmbedder() { m_witness.setSelectionOwner(trayOfWindows, m_witness.makeWindow()); }
    void stopEmbedder() { m_witness.setSelectionOwner(trayOfWindows, XCB_NONE); }
    void startWatch()
    {
        m_watch =
            std::make_unique<TrayWatch>(QDBusConnection::connectToBus(m_bus->address(), u"tray"_s));
    }

private Q_SLOTS:
    void init()
    {
        m_bus.emplace();
        QVERIFY(!m_bus->address().isEmpty());
        m_host = std::make_unique<StatusNotifierHost>(m_bus->address());
    }
    void cleanup()
    {
        m_watch.reset();
        QDBusConnection::disconnectFromBus(u"tray"_s);
        m_host.reset();
        m_bus.reset();
        stopEmbedder();
    }

    void aTrayIsFound_data()
    {
        QTest::addColumn<bool>("hasWatcher");
        QTest::addColumn<bool>("hasHost");
        QTest::addColumn<bool>("hasEmbedder");
        QTest::addColumn<bool>("isThere");
        QTest::newRow("none") << false << false << false << false;
        QTest::newRow("on the bus") << true << true << false << true;
        QTest::newRow("on the bus, with nobody to show anything")
            << true << false << false << false;
        QTest::newRow("on the screen") << false << false << true << true;
        QTest::newRow("on the screen, the other one shows nothing")
            << true << false << true << true;
        QTest::newRow("both") << true << true << true << true;
    }
    void aTrayIsFound()
    {
        QFETCH(bool, hasWatcher);
        QFETCH(bool, hasHost);
        QFETCH(bool, hasEmbedder);
        QFETCH(bool, isThere);
        m_host->setHasHost(hasHost);
        if (hasWatcher)
            m_host->appear();
        if (hasEmbedder)
            startEmbedder();
        startWatch();
        QSignalSpy known(m_watch.get(), &TrayWatch::known);
        QSignalSpy changed(m_watch.get(), &TrayWatch::isThereChanged);
        QVERIFY(!m_watch->isKnown()); // nobody was waited for
        QVERIFY(!m_watch->isThere());
        QVERIFY(known.wait(longEnough));
        QVERIFY(m_watch->isKnown());
        QCOMPARE(m_watch->isThere(), isThere);
        QCOMPARE(changed.count(), isThere ? 1 : 0);
        QCOMPARE(known.count(), 1);
    }

    void aTrayOnTheBusComesAndGoes()
    {
        startWatch();
        QSignalSpy changed(m_watch.get(), &TrayWatch::isThereChanged);
        QTRY_VERIFY(m_watch->isKnown());
        for (int again = 0; again < 2; ++again) {
            m_host->appear();
            QTRY_VERIFY(m_watch->isThere());
            m_host->disappear();
            QTRY_VERIFY(!m_watch->isThere());
        }
        m_host->appear();
        QTRY_VERIFY(m_watch->isThere());
        m_host->setHasHost(false);
        QTRY_VERIFY(!m_watch->isThere());
        m_host->setHasHost(true);
        QTRY_VERIFY(m_watch->isThere());
        m_host.reset(); // as when the panel crashes
        QTRY_VERIFY(!m_watch->isThere());
        QCOMPARE(changed.count(), 8);
    }

    void aTrayOnTheScreenComesAndGoes()
    {
        startWatch();
        QTRY_VERIFY(m_watch->isKnown());
        for (int again = 0; again < 2; ++again) {
            startEmbedder();
            QTRY_VERIFY(m_watch->isThere());
            stopEmbedder();
            QTRY_VERIFY(!m_watch->isThere());
        }
        {
            const XWitness panel;
            panel.setSelectionOwner(trayOfWindows, panel.makeWindow());
            QTRY_VERIFY(m_watch->isThere());
        }
        QTRY_VERIFY(!m_watch->isThere()); // its connection went
    }

    // For Qt does not change from one way of showing items to the other.
    void theFirstTrayDecidesWhichKindCounts()
    {
        m_host->appear();
        startWatch();
        QTRY_VERIFY(m_watch->isThere());
        startEmbedder();
        m_host->disappear();
        QTRY_VERIFY(!m_watch->isThere());
        m_host->appear();
        QTRY_VERIFY(m_watch->isThere());
    }
    void theFirstTrayOnTheScreenDecidesToo()
    {
        startEmbedder();
        startWatch();
        QTRY_VERIFY(m_watch->isThere());
        m_host->appear();
        stopEmbedder();
        QTRY_VERIFY(!m_watch->isThere());
    }

    void withoutABusTheScreenIsLookedAt_data()
    {
        QTest::addColumn<bool>("hasEmbedder");
        QTest::newRow("no tray at all") << false;
        QTest::newRow("a tray on the screen") << true;
    }
    void withoutABusTheScreenIsLookedAt()
    {
        QFETCH(bool, hasEmbedder);
        if (hasEmbedder)
            startEmbedder();
        TrayWatch watch(QDBusConnection::connectToBus(u"unix:path=/nonexistent"_s, u"none"_s));
        QTRY_VERIFY(watch.isKnown());
        QCOMPARE(watch.isThere(), hasEmbedder);
        QDBusConnection::disconnectFromBus(u"none"_s);
    }

    void withTheBusTheTrayGoes()
    {
        m_host->appear();
        startWatch();
        QTRY_VERIFY(m_watch->isThere());
        m_bus->stop();
        QTRY_VERIFY(!m_watch->isThere());
    }
};

int main(int argc, char **argv)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    // Before the application, which then opens its windows there.
    QProcess server;
    server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"640x480x24"_s,
                             u"-nolisten"_s, u"tcp"_s, u"-noreset"_s});
    QByteArray number;
    while (!number.endsWith('\n') && server.waitForReadyRead())
        number += server.readAllStandardOutput();
    if (number.trimmed().isEmpty())
        qFatal("Xvfb did not start");
    qputenv("DISPLAY", ':' + number.trimmed());
    int code = 0;
    {
        QGuiApplication application(argc, argv);
        TestTrayWatch test;
        code = QTest::qExec(&test, argc, argv);
    }
    server.kill();
    server.waitForFinished();
    return code;
}

#include "tst_tray_watch.moc"
