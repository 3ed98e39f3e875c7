#include "core/app/WindowSystem.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestWindowSystem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anXServerIsPreferredToWayland_data()
    {
        QTest::addColumn<QStringList>("variables");
        QTest::addColumn<QByteArray>("platforms");
        const auto wayland = u"WAYLAND_DISPLAY=wayland-0"_s;
        const auto x = u"DISPLAY=:0"_s;
        QTest::newRow("both") << QStringList{wayland, x} << "xcb;wayland"_ba;
        QTest::newRow("Wayland alone") << QStringList{wayland} << ""_ba;
        QTest::newRow("X alone") << QStringList{x} << ""_ba;
        QTest::newRow("neither") << QStringList{} << ""_ba;
        QTest::newRow("an empty name is no display")
            << QStringList{wayland, u"DISPLAY="_s} << ""_ba;
        QTest::newRow("no Wayland by an empty name")
            << QStringList{u"WAYLAND_DISPLAY="_s, x} << ""_ba;
        QTest::newRow("the user's own choice")
            << QStringList{wayland, x, u"QT_QPA_PLATFORM=wayland"_s} << ""_ba;
        QTest::newRow("no choice")
            << QStringList{wayland, x, u"QT_QPA_PLATFORM="_s} << "xcb;wayland"_ba;
    }
    void anXServerIsPreferredToWayland()
    {
        QFETCH(QStringList, variables);
        QProcessEnvironment environment;
        for (const QString &variable : variables)
            environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
        QTEST(wantedPlatforms(environment), "platforms");
    }
};

QTEST_GUILESS_MAIN(TestWindowSystem)
#include "tst_window_system.moc"
