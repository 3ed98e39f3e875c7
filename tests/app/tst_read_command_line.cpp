#include "core/app/CommandLine.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestReadCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsAskedFor_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<Invocation>("invocation");
        QTest::newRow("nothing") << QStringList() << Invocation{};
        QTest::newRow("hidden") << QStringList{u"--hidden"_s} << Invocation{{}, true};
        QTest::newRow("a new note") << QStringList{u"--new-note"_s} << Invocation{u"new-note"_s};
        QTest::newRow("the window")
            << QStringList{u"--toggle-window"_s} << Invocation{u"toggle-window"_s};
        QTest::newRow("the end") << QStringList{u"--quit"_s} << Invocation{u"quit"_s};
        QTest::newRow("twice the same")
            << QStringList{u"--quit"_s, u"--quit"_s} << Invocation{u"quit"_s};
        QTest::newRow("hidden, and more")
            << QStringList{u"--hidden"_s, u"--new-note"_s} << Invocation{u"new-note"_s, true};
        QTest::newRow("a session manager's")
            << QStringList{u"-session"_s, u"10a1"_s} << Invocation{};
    }
    void whatIsAskedFor()
    {
        QFETCH(QStringList, arguments);
        QFETCH(Invocation, invocation);
        const auto read = readCommandLine(QStringList{u"plim"_s} + arguments);
        QVERIFY(read == (std::variant<Invocation, int>(invocation)));
    }

    void whatIsRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("two orders") << QStringList{u"--quit"_s, u"--new-note"_s};
        QTest::newRow("a value") << QStringList{u"--quit=now"_s};
        QTest::newRow("an unknown one") << QStringList{u"--quit"_s, u"--frobnicate"_s};
    }
    void whatIsRefused()
    {
        QFETCH(QStringList, arguments);
        QVERIFY(readCommandLine(QStringList{u"plim"_s} + arguments) ==
                (std::variant<Invocation, int>(2)));
    }

    void everyOrderHasAHelpText()
    {
        QCOMPARE(commandOptions().size(), 3);
        for (const CommandOption &option : commandOptions()) {
            QVERIFY(isKnownCommand(option.name));
            QVERIFY(!option.help.isEmpty());
        }
        QVERIFY(!isKnownCommand(u"hidden"));
        QVERIFY(!isKnownCommand({}));
    }
};

QTEST_GUILESS_MAIN(TestReadCommandLine)
#include "tst_read_command_line.moc"
