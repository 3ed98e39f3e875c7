#include "core/app/InstanceProtocol.h"
#include "core/app/InstanceServer.h"
#include "tests/Patience.h"

#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
const QByteArray ok = InstanceProtocol::encodeAnswer(InstanceProtocol::Answer::Ok);
const QByteArray unknown = InstanceProtocol::encodeAnswer(InstanceProtocol::Answer::Unknown);

/// A later start, or something else that writes to the socket.
class Client
{
public:
    Client(const QString &path, const QByteArray &bytes) : socket(std::make_unique<QLocalSocket>())
    {
        socket->connectToServer(path);
        write(bytes);
    }
    Client(const QString &path, const QString &command)
        : Client(path, InstanceProtocol::encodeRequest({command}))
    {
    }

    Client(const QString &path, const char *bytes) : Client(path, QByteArray(bytes)) {}

    void write(const QByteArray &bytes) const
    {
        socket->write(bytes);
        socket->flush();
    }
    /// Everything so far.
    [[nodiscard]] QByteArray received() const
    {
        m_received += socket->readAll();
        return m_received;
    }
    [[nodiscard]] bool isOver() const { return socket->state() == QLocalSocket::UnconnectedState; }

    std::unique_ptr<QLocalSocket> socket;

private:
    mutable QByteArray m_received;
};
} // namespace

class TestInstanceServer : public QObject
{
    Q_OBJECT

    QTemporaryDir m_directory;
    QString m_path = m_directory.filePath(u"plim-socket"_s);
    QStringList m_done;

    InstanceServer::Handler note()
    {
        return [this](const Invocation &invocation) {
            m_done << invocation.command;
            return true;
        };
    }

private Q_SLOTS:
    void init() { m_done.clear(); }

    void aRequestIsCarriedOutAndAnswered()
    {
        InstanceServer server;
        QVERIFY(server.listen(m_path));
        server.setHandler(note());
        const Client client(m_path, u"new-note"_s);
        QTRY_VERIFY(client.isOver());
        QCOMPARE(client.received(), ok);
        QCOMPARE(m_done, QStringList{u"new-note"_s});
    }

    void whatComesBeforeTheWindowWaits()
    {
        InstanceServer server;
        QVERIFY(server.listen(m_path));
        const Client first(m_path, u"new-note"_s);
        const Client second(m_path, u""_s);
        const Client wrong(m_path, "x\n");
        QTRY_COMPARE(wrong.received(), unknown); // the others have been read by then
        QVERIFY(!first.isOver() && first.socket->bytesAvailable() == 0);
        server.setHandler(note());
        QCOMPARE(m_done, (QStringList{u"new-note"_s, u""_s}));
        QTRY_COMPARE(first.received(), ok);
        QTRY_COMPARE(second.received(), ok);
    }

    void whatCannotBeDoneNowIsDoneLater()
    {
        InstanceServer server;
        QVERIFY(server.listen(m_path));
        int refusals = 3;
        server.setHandler(
            [&](const Invocation &invocation) { return refusals-- <= 0 && note()(invocation); });
        const Client client(m_path, u"quit"_s);
        QTRY_COMPARE(client.received(), ok);
        QCOMPARE(m_done, QStringList{u"quit"_s});
    }

    void whoHasGivenUpIsNotServed()
    {
        InstanceServer server;
        QVERIFY(server.listen(m_path));
        {
            const Client client(m_path, u"quit"_s);
            const Client wrong(m_path, "x\n");
            QTRY_COMPARE(wrong.received(), unknown);
        }
        const Client later(m_path, "x\n");
        QTRY_COMPARE(later.received(), unknown);
        server.setHandler(note());
        QCOMPARE(m_done, QStringList());
    }

    void aRequestMayComeInPieces()
    {
        InstanceServer server;
        QVERIFY(server.listen(m_path));
        server.setHandler(note());
        const QByteArray request = InstanceProtocol::encodeRequest({u"new-note"_s});
        const Client client(m_path, request.first(9));
        const Client other(m_path, u"quit"_s); // is not kept waiting
        QTRY_COMPARE(other.received(), ok);
        QCOMPARE(m_done, QStringList{u"quit"_s});
        client.write(request.mid(9));
        QTRY_COMPARE(client.received(), ok);
        QCOMPARE(m_done, (QStringList{u"quit"_s, u"new-note"_s}));
    }

    void whoSendsNothingIsSentAway()
    {
        InstanceServer server(50ms);
        QVERIFY(server.listen(m_path));
        server.setHandler(note());
        const Client silent(m_path, QByteArray());
        const Client half(m_path, "{\"plim\":1,\"command\":");
        QTRY_VERIFY(silent.isOver() && half.isOver());
        QCOMPARE(half.received(), QByteArray());
        QCOMPARE(m_done, QStringList());
    }

    // The time is for the request: who has made it may have to wait for a window.
    void whoWaitsForTheWindowIsNotSentAway()
    {
        InstanceServer server(50ms);
        QVERIFY(server.listen(m_path));
        const Client client(m_path, u"new-note"_s);
        const Client silent(m_path, QByteArray());
        QTRY_VERIFY(silent.isOver());
        QVERIFY(!client.isOver());
        server.setHandler(note());
        QTRY_COMPARE(client.received(), ok);
    }

    void garbageIsNotCarriedOut_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("words") << QByteArray("quit\n") << unknown;
        QTest::newRow("bytes") << QByteArray("\0\1\2\xff\n", 5) << unknown;
        QTest::newRow("an unknown command")
            << QByteArray("{\"plim\":1,\"command\":\"dance\"}\n") << unknown;
        QTest::newRow("an endless line") << QByteArray(100'000, 'x') << QByteArray();
    }
    void garbageIsNotCarriedOut()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArray, answer);
        InstanceServer server(1h); // what ends it is not the time
        QVERIFY(server.listen(m_path));
        server.setHandler(note());
        const Client client(m_path, bytes);
        QTRY_VERIFY(client.isOver());
        QCOMPARE(client.received(), answer);
        const Client next(m_path, u"quit"_s);
        QTRY_COMPARE(next.received(), ok);
        QCOMPARE(m_done, QStringList{u"quit"_s});
    }

    void oneConnectionIsOneRequest()
    {
        InstanceServer server;
        QVERIFY(server.listen(m_path));
        server.setHandler(note());
        const QByteArray request = InstanceProtocol::encodeRequest({u"new-note"_s});
        const Client client(m_path, request + request + request);
        QTRY_VERIFY(client.isOver());
        QCOMPARE(client.received(), ok);
        QCOMPARE(m_done.size(), 1);
    }

    void aCrowdDoesNotGrow()
    {
        InstanceServer server(1h);
        QVERIFY(server.listen(m_path));
        server.setHandler(note());
        std::vector<Client> crowd;
        for (int count = 0; count < 100; ++count) {
            crowd.emplace_back(m_path, QByteArray("{"));
            QCoreApplication::processEvents(); // so many do not fit into the system's queue
        }
        const auto leftOver = [&] {
            return std::ranges::count_if(crowd, [](const Client &each) { return !each.isOver(); });
        };
        QTRY_VERIFY2(leftOver() <= 40, qPrintable(QString::number(leftOver())));
        crowd.clear();
        const auto isServed = [&] { // once the server knows that they are gone
            const Client client(m_path, u"quit"_s);
            return QTest::qWaitFor([&] { return client.isOver(); }, longEnough) &&
                   client.received() == ok;
        };
        QTRY_VERIFY(isServed());
    }

    void aDeadOnesSocketIsInNobodysWay()
    {
        {
            QFile file(m_path);
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        InstanceServer server;
        QVERIFY(server.listen(m_path));
        server.setHandler(note());
        const Client client(m_path, u"quit"_s);
        QTRY_COMPARE(client.received(), ok);
    }

    void nobodyElseMayTalkToIt()
    {
        InstanceServer server;
        QVERIFY(server.listen(m_path));
        const auto others =
            QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
        QVERIFY(!(QFile::permissions(m_path) & others));
    }

    void withoutAPlaceItDoesNotListen()
    {
        InstanceServer server;
        QVERIFY(!server.listen({}));
        QVERIFY(!server.listen(m_directory.filePath(u"missing/socket"_s)));
    }

    // It tries again, and is the first by then.
    void theEndLetsGoOfWhoStillWaits()
    {
        InstanceServer server;
        QVERIFY(server.listen(m_path));
        const Client client(m_path, u"new-note"_s);
        const Client wrong(m_path, "x\n");
        QTRY_COMPARE(wrong.received(), unknown);
        QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
        QCOMPARE(QCoreApplication::exec(), 0);
        QTRY_VERIFY(client.isOver());
        QCOMPARE(client.received(), QByteArray());
        QVERIFY(!QFile::exists(m_path));
    }
};

QTEST_GUILESS_MAIN(TestInstanceServer)
#include "tst_instance_server.moc"
