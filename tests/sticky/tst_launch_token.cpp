#include "sticky/LaunchToken.h"

#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;

class TestLaunchToken : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTimeIsInTheStartupID_data()
    {
        QTest::addColumn<QString>("startupID");
        QTest::addColumn<qint64>("time"); // -1: none
        QTest::newRow("none") << QString() << qint64(-1);
        QTest::newRow("usual") << u"gnome-shell/Plim/1234-5-host_TIME4711"_s << qint64(4711);
        QTest::newRow("the last counts") << u"a_TIME1_b_TIME2"_s << qint64(2);
        QTest::newRow("the largest") << u"a_TIME4294967295"_s << qint64(4294967295);
        QTest::newRow("too large") << u"a_TIME4294967296"_s << qint64(-1);
        QTest::newRow("no number") << u"a_TIME12x"_s << qint64(-1);
        QTest::newRow("nothing behind it") << u"a_TIME"_s << qint64(-1);
        QTest::newRow("without a time") << u"launcher-1"_s << qint64(-1);
    }
    void theTimeIsInTheStartupID()
    {
        QFETCH(QString, startupID);
        QFETCH(qint64, time);
        const auto userTime = LaunchToken{{}, startupID}.userTime();
        QCOMPARE(userTime ? qint64(*userTime) : -1, time);
    }

    void theLauncherGivesItInTheEnvironment()
    {
        const auto restore = qScopeGuard([] {
            qunsetenv("XDG_ACTIVATION_TOKEN");
            qunsetenv("DESKTOP_STARTUP_ID");
        });
        qputenv("XDG_ACTIVATION_TOKEN", "abc");
        qputenv("DESKTOP_STARTUP_ID", "id_TIME3");
        QVERIFY(LaunchToken::fromEnvironment() == (LaunchToken{u"abc"_s, u"id_TIME3"_s}));
    }
};

QTEST_GUILESS_MAIN(TestLaunchToken)
#include "tst_launch_token.moc"
