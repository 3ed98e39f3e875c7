#include "tests/shell/ShellProbe.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestSystemLanguage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFirstStartSpeaksTheSystemsLanguage_data()
    {
        QTest::addColumn<QStringList>("variables");
        QTest::addColumn<QString>("language");
        QTest::newRow("English") << QStringList{u"LANG=en_US.UTF-8"_s} << u"en"_s;
        QTest::newRow("Polish") << QStringList{u"LANG=pl_PL.UTF-8"_s} << u"pl"_s;
        QTest::newRow("German") << QStringList{u"LANG=de_DE.UTF-8"_s} << u"pl"_s;
        QTest::newRow("English with German numbers")
            << QStringList{u"LANG=en_GB.UTF-8"_s, u"LC_NUMERIC=de_DE.UTF-8"_s} << u"en"_s;
        QTest::newRow("Polish with English messages")
            << QStringList{u"LANG=pl_PL.UTF-8"_s, u"LC_MESSAGES=en_GB.UTF-8"_s} << u"en"_s;
        QTest::newRow("no language") << QStringList{u"LANG=C"_s} << u"pl"_s;
        QTest::newRow("nothing said") << QStringList{} << u"pl"_s;
    }
    void aFirstStartSpeaksTheSystemsLanguage()
    {
        QFETCH(QStringList, variables);
        ShellProbe probe;
        for (const QString &variable : variables)
            probe.environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
        QVERIFY2(probe.run(QStringLiteral(SHELL_PROBE), {u"language"_s}), qPrintable(probe.log));
        QTEST(probe.lines.join(u' '), "language");
        QVERIFY(!QFile::exists(probe.home.path(u".config/Plim"_s)));
    }
};

QTEST_GUILESS_MAIN(TestSystemLanguage)
#include "tst_system_language.moc"
