#include "core/app/CommandLine.h"
#include "core/app/InstanceProtocol.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace InstanceProtocol;
using namespace Qt::StringLiterals;

class TestInstanceProtocol : public QObject
{
    Q_OBJECT

    QTemporaryDir m_runtime;
    QTemporaryDir m_directory;

private Q_SLOTS:
    void initTestCase() { qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime.path())); }
    void oneDirectoryHasOneSocket()
    {
        const QString data = m_directory.filePath(u"data"_s);
        QVERIFY(QDir().mkpath(data + u"/Plim"_s));
        QVERIFY(QFile::link(data, m_directory.filePath(u"link"_s)));
        const QString path = socketPath(data + u"/Plim"_s);
        QVERIFY(!path.isEmpty());
        QCOMPARE(socketPath(data + u"/Plim/"_s), path);
        QCOMPARE(socketPath(data + u"/./x/../Plim"_s), path);
        QCOMPARE(socketPath(m_directory.filePath(u"link/Plim"_s)), path);
        QVERIFY(socketPath(data) != path);
        QVERIFY(socketPath(data + u"/plim"_s) != path);
        QCOMPARE(QFileInfo(path).path(),
                 QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation));
    }

    void theSocketsNameIsShort()
    {
        const QString data = m_directory.filePath(QString(150, u'ż'));
        QVERIFY(QFileInfo(socketPath(data)).fileName().toUtf8().size() <= 32);
    }

    void whatIsAskedForArrives_data()
    {
        QTest::addColumn<Invocation>("invocation");
        QTest::newRow("a plain start") << Invocation{};
        QTest::newRow("hidden") << Invocation{{}, true};
        for (const CommandOption &option : commandOptions())
            QTest::addRow("%s", qPrintable(option.name)) << Invocation{option.name, false};
        QTest::newRow("with the launcher's token")
            << Invocation{{}, false, {u"zażółć \"1\"\n"_s, u"host-1_TIME77"_s}};
    }
    void whatIsAskedForArrives()
    {
        QFETCH(Invocation, invocation);
        const QByteArray line = encodeRequest(invocation);
        QVERIFY(line.endsWith('\n'));
        QCOMPARE(line.count('\n'), 1);
        QVERIFY(decodeRequest(line.trimmed()) == invocation);
    }

    void whatIsNoRequestIsNone_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("words") << QByteArray("quit");
        QTest::newRow("bytes") << QByteArray("\0\xff\xfe{", 4);
        QTest::newRow("cut off") << QByteArray("{\"plim\":1,\"command\":\"qui");
        QTest::newRow("an array") << QByteArray("[{\"plim\":1,\"command\":\"\"}]");
        QTest::newRow("another version") << QByteArray("{\"plim\":2,\"command\":\"quit\"}");
        QTest::newRow("no version") << QByteArray("{\"command\":\"quit\"}");
        QTest::newRow("no command") << QByteArray("{\"plim\":1}");
        QTest::newRow("a number for a command") << QByteArray("{\"plim\":1,\"command\":3}");
        QTest::newRow("an unknown command")
            << QByteArray("{\"plim\":1,\"command\":\"format-disk\"}");
        QTest::newRow("too long") << "{\"plim\":1,\"command\":\"quit\",\"x\":\"" +
                                         QByteArray(longestLine, 'x') + "\"}";
    }
    void whatIsNoRequestIsNone()
    {
        QFETCH(QByteArray, line);
        QVERIFY(!decodeRequest(line));
        QVERIFY(!decodeAnswer(line));
    }

    void whatALaterVersionAddsDoesNotMatter()
    {
        const auto invocation =
            decodeRequest("{\"plim\":1,\"command\":\"quit\",\"colour\":\"red\"}");
        QVERIFY(invocation == (Invocation{u"quit"_s}));
    }

    void answersArrive()
    {
        for (const Answer answer : {Answer::Ok, Answer::Unknown}) {
            const QByteArray line = encodeAnswer(answer);
            QVERIFY(line.endsWith('\n'));
            QVERIFY(decodeAnswer(line.trimmed()) == answer);
        }
        QVERIFY(!decodeAnswer("{\"plim\":1,\"answer\":\"maybe\"}"));
    }
};

QTEST_GUILESS_MAIN(TestInstanceProtocol)
#include "tst_instance_protocol.moc"
