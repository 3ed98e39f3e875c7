#include "core/app/Autostart.h"
#include "tests/Patience.h"
#include "tests/ThrowAwayHome.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{
const QString entryName = u".config/autostart/org.plim.Plim.desktop"_s;

void makeProgram(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        qFatal("The test's own program could not be made");
}
} // namespace

class TestAutostart : public QObject
{
    Q_OBJECT

    std::optional<ThrowAwayHome> m_home;
    QByteArray m_path = qgetenv("PATH");

    void writeEntry(const QByteArray &bytes) const
    {
        QDir().mkpath(m_home->path(u".config/autostart"_s));
        QFile file(m_home->path(entryName));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("The test's own entry could not be written");
    }
    [[nodiscard]] QByteArray exec() const
    {
        for (const QByteArray &line : m_home->read(entryName).split('\n')) {
            if (line.startsWith("Exec="))
                return line.mid(5);
        }
        return {};
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (!Autostart::isSupported())
            QSKIP("this system starts programs in another way");
    }
    void init() { m_home.emplace(); }
    void cleanup()
    {
        m_home.reset();
        qputenv("PATH", m_path);
    }

    void itIsOffUntilSwitchedOn()
    {
        const Autostart autostart(u"/opt/plim/plim"_s);
        QVERIFY(!autostart.isOn());
        QVERIFY(!autostart.setOn(false));
        QVERIFY(!QFile::exists(m_home->path(u".config/autostart"_s)));
        QVERIFY(!autostart.setOn(true));
        QVERIFY(autostart.isOn());
        QVERIFY(!autostart.setOn(true));
        QCOMPARE(
            QDir(m_home->path(u".config/autostart"_s)).entryList(QDir::Files | QDir::Hidden).size(),
            1);
        QVERIFY(!autostart.setOn(false));
        QVERIFY(!autostart.isOn());
        QVERIFY(!QFile::exists(m_home->path(entryName)));
    }

    void anEntryOfTheDesktopsOwnCounts_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<bool>("isOn");
        const QByteArray begin = "[Desktop Entry]\nType=Application\nExec=plim\n";
        QTest::newRow("plain") << begin << true;
        QTest::newRow("shown") << begin + "Hidden=false\n" << true;
        QTest::newRow("hidden") << begin + "Hidden=true\n" << false;
        QTest::newRow("hidden, with spaces") << begin + " Hidden = true \r\n" << false;
        QTest::newRow("switched off") << begin + "X-GNOME-Autostart-enabled=false\n" << false;
        QTest::newRow("another group's key") << begin + "[Desktop Action x]\nHidden=true\n" << true;
        QTest::newRow("hidden and nothing else")
            << QByteArray("[Desktop Entry]\nHidden=true\n") << false;
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("nonsense") << QByteArray("\0\xff=\n=", 5) << false;
    }
    void anEntryOfTheDesktopsOwnCounts()
    {
        QFETCH(QByteArray, entry);
        QFETCH(bool, isOn);
        writeEntry(entry);
        const Autostart autostart(u"/opt/plim/plim"_s);
        QCOMPARE(autostart.isOn(), isOn);
        QVERIFY(!autostart.setOn(true));
        QVERIFY(autostart.isOn());
    }

    void theProgramIsNamedSoThatTheDesktopFindsIt_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QByteArray>("exec");
        QTest::newRow("plain") << u"/opt/plim-1.0/bin/plim"_s
                               << QByteArray("/opt/plim-1.0/bin/plim --hidden");
        QTest::newRow("space") << u"/opt/my plim"_s << QByteArray("\"/opt/my plim\" --hidden");
        QTest::newRow("percent") << u"/opt/100%u"_s << QByteArray("\"/opt/100%%u\" --hidden");
        QTest::newRow("quote and dollar")
            << u"/o\"p/$HOME"_s << QByteArray("\"/o\\\\\"p/\\\\$HOME\" --hidden");
        QTest::newRow("backtick") << u"/o`p"_s << QByteArray("\"/o\\\\`p\" --hidden");
        QTest::newRow("backslash") << u"/o\\p"_s << QByteArray("\"/o\\\\\\\\p\" --hidden");
        QTest::newRow("semicolon") << u"/o;p&"_s << QByteArray("\"/o;p&\" --hidden");
        QTest::newRow("new line") << u"/o\np"_s << QByteArray("\"/o\\np\" --hidden");
        QTest::newRow("letters") << u"/opt/żółw"_s << QByteArray("\"/opt/żółw\" --hidden");
    }
    void theProgramIsNamedSoThatTheDesktopFindsIt()
    {
        QFETCH(QString, program);
        QFETCH(QByteArray, exec);
        const Autostart autostart(program);
        QVERIFY(!autostart.setOn(true));
        QCOMPARE(this->exec(), exec);
        QVERIFY(autostart.isOn());
    }

    void theProgramOfThePathGoesByItsName()
    {
        const QString program = m_home->path(u"lib/plim/plim"_s);
        makeProgram(program);
        qputenv("PATH", QFile::encodeName(m_home->path(u"bin"_s)));
        QDir().mkpath(m_home->path(u"bin"_s));
        QVERIFY(!Autostart(program).setOn(true));
        QCOMPARE(exec(), QFile::encodeName(program) + " --hidden");
        QVERIFY(QFile::link(program, m_home->path(u"bin/plim"_s)));
        QVERIFY(!Autostart(program).setOn(true));
        QCOMPARE(exec(), "plim --hidden");
        const QString other = m_home->path(u"other/plim"_s);
        makeProgram(other);
        QVERIFY(!Autostart(other).setOn(true));
        QCOMPARE(exec(), QFile::encodeName(other) + " --hidden");
    }

    void theEntryIsValid_data()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("plain") << u"/opt/plim/plim"_s;
        QTest::newRow("awkward") << u"/opt/my \"plim\"/$1 `x` \\ 100%/żółw;"_s;
    }
    void theEntryIsValid()
    {
        QFETCH(QString, program);
        if (QStandardPaths::findExecutable(u"desktop-file-validate"_s).isEmpty())
            QSKIP("desktop-file-validate is not installed");
        QVERIFY(!Autostart(program).setOn(true));
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(u"desktop-file-validate"_s, {m_home->path(entryName)});
        QVERIFY(process.waitForFinished(longEnough));
        QCOMPARE(process.readAll(), QByteArray());
        QCOMPARE(process.exitCode(), 0);
    }

    void aFailureIsTold()
    {
        QFile obstacle(m_home->path(u".config"_s));
        QVERIFY(obstacle.open(QIODevice::WriteOnly));
        const Autostart autostart(u"/opt/plim/plim"_s);
        QVERIFY(autostart.setOn(true));
        QVERIFY(!autostart.isOn());
        QVERIFY(!autostart.setOn(false));
    }

    void aFailureToSwitchOffIsTold()
    {
        QVERIFY(QDir().mkpath(m_home->path(entryName) + u"/inside"_s));
        const Autostart autostart(u"/opt/plim/plim"_s);
        QVERIFY(autostart.setOn(false));
        QVERIFY(autostart.setOn(true));
        QVERIFY(!autostart.isOn());
    }
};

QTEST_GUILESS_MAIN(TestAutostart)
#include "tst_autostart.moc"
