#include "tests/ThrowAwayHome.h"

#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

// Through the built program, in a home of its own and without any display.
class TestCommandLine : public QObject
{
    Q_OBJECT

    struct Answer {
        int code = -1;
        QString output;
        QString error;
    };
    static Answer ask(const ThrowAwayHome &home, const QStringList &arguments)
    {
        QProcess process;
        process.setProcessEnvironment(home.environment());
        process.start(QStringLiteral(PLIM), arguments);
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

private Q_SLOTS:
    void theVersion_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("long") << QStringList{u"--version"_s};
        QTest::newRow("short") << QStringList{u"-v"_s};
    }
    void theVersion()
    {
        QFETCH(QStringList, arguments);
        const ThrowAwayHome home;
        const Answer answer = ask(home, arguments);
        QCOMPARE(answer.code, 0);
        QCOMPARE(answer.output, QStringLiteral("plim " PLIM_VERSION "\n"));
        QCOMPARE(answer.error, QString());
    }

    void theHelp_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("long") << QStringList{u"--help"_s};
        QTest::newRow("short") << QStringList{u"-h"_s};
        QTest::newRow("with the version") << QStringList{u"--version"_s, u"--help"_s};
    }
    void theHelp()
    {
        QFETCH(QStringList, arguments);
        const ThrowAwayHome home;
        const Answer answer = ask(home, arguments);
        QCOMPARE(answer.code, 0);
        for (const QString &part :
             {u"plim [options]"_s, u"--help"_s, u"--version"_s, u"--new-note"_s,
              u"--toggle-window"_s, u"--quit"_s, u"--hidden"_s})
            QVERIFY2(answer.output.contains(part), qPrintable(answer.output));
        QVERIFY2(!answer.output.contains(u"--session"_s), qPrintable(answer.output));
        QCOMPARE(answer.error, QString());
    }

    void whatIsNotUnderstood_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("named");
        QTest::newRow("an unknown option") << QStringList{u"--frobnicate"_s} << u"frobnicate"_s;
        QTest::newRow("an unknown short option") << QStringList{u"-x"_s} << u"'x'"_s;
        QTest::newRow("two unknown options")
            << QStringList{u"--one"_s, u"--two"_s} << u"one, two"_s;
        QTest::newRow("a stray argument") << QStringList{u"notes.json"_s} << u"'notes.json'"_s;
        QTest::newRow("a stray empty argument") << QStringList{u""_s} << u"''"_s;
        QTest::newRow("a stray argument behind an option")
            << QStringList{u"--version"_s, u"now"_s} << u"'now'"_s;
        QTest::newRow("a value too much") << QStringList{u"--version=2"_s} << u"version"_s;
        QTest::newRow("two orders") << QStringList{u"--quit"_s, u"--new-note"_s} << u"'new-note'"_s;
        QTest::newRow("a value missing") << QStringList{u"-session"_s} << u"session"_s;
    }
    void whatIsNotUnderstood()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, named);
        const ThrowAwayHome home;
        const Answer answer = ask(home, arguments);
        QCOMPARE(answer.code, 2);
        QCOMPARE(answer.output, QString());
        QVERIFY2(answer.error.startsWith(u"plim: "_s) && answer.error.endsWith(u"\n"_s),
                 qPrintable(answer.error));
        QCOMPARE(answer.error.count(u'\n'), 1);
        QVERIFY2(answer.error.contains(named), qPrintable(answer.error));
        QVERIFY2(answer.error.contains(u"plim --help"_s), qPrintable(answer.error));
    }

    void anAnswerLeavesNothingBehind()
    {
        const ThrowAwayHome home;
        for (const QString &argument : {u"--version"_s, u"--help"_s, u"--wrong"_s})
            QVERIFY(ask(home, {argument}).code >= 0);
        QVERIFY(!QFile::exists(home.data()));
        QVERIFY(QDir(home.documents()).isEmpty());
    }

    void thereIsNothingToQuit()
    {
        const ThrowAwayHome home;
        const Answer answer = ask(home, {u"--quit"_s});
        QCOMPARE(answer.code, 0);
        QCOMPARE(answer.output + answer.error, QString());
        QVERIFY(!QFile::exists(home.data()));
    }

    // A lock file without a lock is what every earlier run leaves behind.
    void nobodyHoldsAnOldLockFile()
    {
        const ThrowAwayHome home;
        QVERIFY(QDir().mkpath(home.data()));
        QFile file(home.data() + u"/notes.json.lock"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(ask(home, {u"--quit"_s}).code, 0);
        QCOMPARE(QDir(home.data()).entryList(QDir::Files), QStringList{u"notes.json.lock"_s});
    }

    // In the toolkit's own words. It goes on to open a window, for which there is no display here.
    void aSessionManagersStartIsAStart()
    {
        const ThrowAwayHome home;
        const Answer answer = ask(home, {u"-session"_s, u"10a1_1700000000"_s});
        QVERIFY(answer.code != 2);
        QVERIFY2(!answer.error.contains(u"plim --help"_s), qPrintable(answer.error));
        QVERIFY(
            ask(home, {u"-session"_s, u"10a1"_s, u"--version"_s}).output.startsWith(u"plim "_s));
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_command_line.moc"
