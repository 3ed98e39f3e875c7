#include "shell/SystemPreferences.h"

#include "tests/ThrowAwayHome.h"

#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{
const QString interfaceSpace = u"org.gnome.desktop.interface"_s;
const QString animations = u"enable-animations"_s;
} // namespace

class TestSystemPreferences : public QObject
{
    Q_OBJECT

    std::optional<ThrowAwayHome> m_home;

    void writeGlobals(const QByteArray &text) const
    {
        QDir().mkpath(m_home->path(u".config"_s));
        QFile file(m_home->path(u".config/kdeglobals"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("The test's own settings could not be written");
    }
    /// The desktop says so, as over the bus.
    static void tell(SystemPreferences &preferences, const QString &space, const QString &key,
                     const QVariant &value)
    {
        QVERIFY(QMetaObject::invokeMethod(&preferences, "follow", Q_ARG(QString, space),
                                          Q_ARG(QString, key),
                                          Q_ARG(QDBusVariant, QDBusVariant(value))));
    }

private Q_SLOTS:
    // The test's own desktop has no bus to ask.
    void initTestCase() { qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); }
    void init() { m_home.emplace(); }
    void cleanup() { m_home.reset(); }

    void aDesktopOfKdeSaysItInItsFile_data()
    {
        QTest::addColumn<QByteArray>("globals");
        QTest::addColumn<bool>("reducesMotion");
        QTest::newRow("no file") << QByteArray() << false;
        QTest::newRow("nothing about it") << QByteArray("[KDE]\nSingleClick=true\n") << false;
        QTest::newRow("0") << QByteArray("[KDE]\nAnimationDurationFactor=0\n") << true;
        QTest::newRow("0.0") << QByteArray("[KDE]\nAnimationDurationFactor=0.0\n") << true;
        QTest::newRow("1") << QByteArray("[KDE]\nAnimationDurationFactor=1\n") << false;
        QTest::newRow("0.35") << QByteArray("[KDE]\nAnimationDurationFactor=0.35355\n") << false;
        QTest::newRow("empty") << QByteArray("[KDE]\nAnimationDurationFactor=\n") << false;
        QTest::newRow("a word") << QByteArray("[KDE]\nAnimationDurationFactor=fast\n") << false;
        QTest::newRow("in another group")
            << QByteArray("[General]\nAnimationDurationFactor=0\n") << false;
    }
    void aDesktopOfKdeSaysItInItsFile()
    {
        QFETCH(QByteArray, globals);
        if (!globals.isEmpty())
            writeGlobals(globals);
        const SystemPreferences preferences(nullptr);
        QTEST(preferences.reducesMotion(), "reducesMotion");
    }

    void othersAnswerThroughThePortal()
    {
        SystemPreferences preferences(nullptr);
        QSignalSpy changed(&preferences, &SystemPreferences::reducesMotionChanged);
        tell(preferences, interfaceSpace, animations, true);
        QCOMPARE(changed.count(), 0);
        tell(preferences, interfaceSpace, animations, false);
        QVERIFY(preferences.reducesMotion());
        tell(preferences, interfaceSpace, animations, false);
        QCOMPARE(changed.count(), 1);
        tell(preferences, interfaceSpace, animations, true);
        QVERIFY(!preferences.reducesMotion());
        QCOMPARE(changed.count(), 2);
        // Older portals wrap their answer twice.
        tell(preferences, interfaceSpace, animations,
             QVariant::fromValue(QDBusVariant(QVariant(false))));
        QVERIFY(preferences.reducesMotion());
    }

    void whatIsNotAboutMotionChangesNothing()
    {
        SystemPreferences preferences(nullptr);
        tell(preferences, interfaceSpace, u"font-antialiasing"_s, false);
        tell(preferences, u"org.example"_s, animations, false);
        tell(preferences, interfaceSpace, animations, u"false"_s);
        tell(preferences, interfaceSpace, animations, 0);
        QVERIFY(!preferences.reducesMotion());
    }

    void aDesktopOfLightColoursSaysSo()
    {
        const QString appearance = u"org.freedesktop.appearance"_s;
        const QString scheme = u"color-scheme"_s;
        SystemPreferences preferences(nullptr);
        QSignalSpy changed(&preferences, &SystemPreferences::prefersLightChanged);
        QVERIFY(!preferences.prefersLight());
        tell(preferences, appearance, scheme, 0U); // no preference
        tell(preferences, appearance, scheme, 1U); // dark
        tell(preferences, interfaceSpace, scheme, 2U);
        tell(preferences, appearance, scheme, u"2"_s);
        QCOMPARE(changed.count(), 0);
        tell(preferences, appearance, scheme, 2U);
        tell(preferences, appearance, scheme, 2U);
        QVERIFY(preferences.prefersLight());
        QCOMPARE(changed.count(), 1);
        tell(preferences, appearance, scheme, 1U);
        QVERIFY(!preferences.prefersLight());
        QCOMPARE(changed.count(), 2);
    }

    void thePortalDoesNotOverruleTheFile()
    {
        writeGlobals("[KDE]\nAnimationDurationFactor=0\n");
        SystemPreferences preferences(nullptr);
        tell(preferences, interfaceSpace, animations, true);
        QVERIFY(preferences.reducesMotion());
    }

    void thereIsOneForAll()
    {
        QCOMPARE(SystemPreferences::create(nullptr, nullptr), &SystemPreferences::shared());
    }
};

QTEST_GUILESS_MAIN(TestSystemPreferences)
#include "tst_system_preferences.moc"
