#include "core/app/InstanceProtocol.h"
#include "core/app/InstanceServer.h"
#include "core/app/InstanceTurn.h"

#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr InstancePatience brief{300ms, 300ms};
constexpr InstancePatience ample{60s, 60s};

/// Another start at the same time; what came of it, once it is over.
class OtherStart
{
public:
    OtherStart(const QString &directory, const Invocation &invocation,
               const InstancePatience &patience)
        : m_lock(directory), m_thread(QThread::create([this, invocation, patience] {
              m_turn = takeTurn(m_lock, invocation, patience);
          }))
    {
        m_thread->start();
    }
    ~OtherStart() { m_thread->wait(); }

    [[nodiscard]] std::optional<InstanceTurn> turn() const
    {
        return m_thread->isFinished() ? m_turn : std::nullopt;
    }
    void giveBack() { m_lock.giveBack(); }

private:
    DataLock m_lock;
    std::optional<InstanceTurn> m_turn;
    std::unique_ptr<QThread> m_thread;
};
} // namespace

class TestInstanceTurn : public QObject
{
    Q_OBJECT

    QTemporaryDir m_runtime;
    std::unique_ptr<QTemporaryDir> m_directory;
    QList<Invocation> m_done;

    [[nodiscard]] QString data() const { return m_directory->filePath(u"Plim"_s); }
    [[nodiscard]] QString socket() const { return InstanceProtocol::socketPath(data()); }
    InstanceServer::Handler note()
    {
        return [this](const Invocation &invocation) {
            m_done << invocation;
            return true;
        };
    }

private Q_SLOTS:
    void initTestCase() { qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime.path())); }
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_done.clear();
    }

    void aloneOneIsTheFirst()
    {
        DataLock lock(data());
        QCOMPARE(takeTurn(lock, {}, brief), InstanceTurn::First);
        QCOMPARE(DataLock(data()).take(), DataLock::State::HeldElsewhere);
    }

    void theOneThatRunsDoesIt()
    {
        DataLock lock(data());
        QCOMPARE(takeTurn(lock, {}, brief), InstanceTurn::First);
        InstanceServer server;
        QVERIFY(server.listen(socket()));
        server.setHandler(note());
        const Invocation invocation{u"new-note"_s, true, {u"token"_s, u"id_TIME5"_s}};
        const OtherStart start(data(), invocation, ample);
        QTRY_VERIFY(start.turn() == InstanceTurn::Answered);
        QVERIFY(m_done == QList{invocation});
    }

    // Nobody listens yet when the other start asks for the first time.
    void oneThatIsStillStartingIsWaitedFor()
    {
        DataLock lock(data());
        QCOMPARE(takeTurn(lock, {}, brief), InstanceTurn::First);
        const OtherStart start(data(), {}, ample);
        InstanceServer server;
        QTest::qWait(100); // some tries come to nothing
        QVERIFY(!start.turn());
        QVERIFY(server.listen(socket()));
        server.setHandler(note());
        QTRY_VERIFY(start.turn() == InstanceTurn::Answered);
        QCOMPARE(m_done.size(), 1);
    }

    void ofSeveralAtOnceOneIsTheFirst()
    {
        std::vector<std::unique_ptr<OtherStart>> starts;
        starts.reserve(8);
        for (int count = 0; count < 8; ++count)
            starts.push_back(std::make_unique<OtherStart>(data(), Invocation{}, ample));
        const auto countOf = [&](InstanceTurn turn) {
            return std::ranges::count_if(starts,
                                         [&](const auto &each) { return each->turn() == turn; });
        };
        QTRY_COMPARE(countOf(InstanceTurn::First), 1);
        InstanceServer server;
        QVERIFY(server.listen(socket()));
        server.setHandler(note());
        QTRY_COMPARE(countOf(InstanceTurn::Answered), 7);
        QCOMPARE(countOf(InstanceTurn::First), 1);
        QCOMPARE(m_done.size(), 7);
    }

    void whoWaitedForOneThatEndedIsTheFirst()
    {
        auto lock = std::make_unique<DataLock>(data());
        QCOMPARE(takeTurn(*lock, {}, brief), InstanceTurn::First);
        auto server = std::make_unique<InstanceServer>();
        QVERIFY(server->listen(socket()));
        bool isAsked = false;
        server->setHandler([&](const Invocation &) { // as while it ends
            isAsked = true;
            return false;
        });
        const OtherStart start(data(), {}, ample);
        QTRY_VERIFY(isAsked);
        server.reset();
        QVERIFY(!start.turn());
        lock.reset();
        QTRY_VERIFY(start.turn() == InstanceTurn::First);
    }

    void aLockWithNobodyBehindItIsElsewhere()
    {
        DataLock lock(data());
        QCOMPARE(lock.take(), DataLock::State::Taken);
        const OtherStart start(data(), {}, brief);
        QTRY_VERIFY(start.turn() == InstanceTurn::Elsewhere);
    }

    void oneThatHangsIsElsewhere()
    {
        DataLock lock(data());
        QCOMPARE(lock.take(), DataLock::State::Taken);
        InstanceServer server; // never comes to answer
        QVERIFY(server.listen(socket()));
        const OtherStart start(data(), {}, brief);
        QTRY_VERIFY(start.turn() == InstanceTurn::Elsewhere);
    }

    void anAnswerThatIsNoneIsNotUnderstood_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("unknown") << InstanceProtocol::encodeAnswer(
            InstanceProtocol::Answer::Unknown);
        QTest::newRow("something else") << QByteArray("hello\n");
        QTest::newRow("without an end") << QByteArray(100'000, 'x');
    }
    void anAnswerThatIsNoneIsNotUnderstood()
    {
        QFETCH(QByteArray, answer);
        QVERIFY(QDir().mkpath(data()));
        QLocalServer server;
        QVERIFY(server.listen(socket()));
        connect(&server, &QLocalServer::newConnection, this,
                [&] { server.nextPendingConnection()->write(answer); });
        const OtherStart start(data(), {}, ample);
        QTRY_VERIFY(start.turn() == InstanceTurn::NotUnderstood);
        QCOMPARE(DataLock(data()).take(), DataLock::State::Taken);
    }

    // Of somebody who tidied up in the data directory.
    void aDeletedLockMakesNoSecondPlim()
    {
        DataLock lock(data());
        QCOMPARE(takeTurn(lock, {}, brief), InstanceTurn::First);
        InstanceServer server;
        QVERIFY(server.listen(socket()));
        server.setHandler(note());
        QVERIFY(QFile::remove(lock.file()));
        const OtherStart start(data(), {}, ample);
        QTRY_VERIFY(start.turn() == InstanceTurn::Answered);
    }

    void whereNothingCanBeLockedPlimStartsAllTheSame()
    {
        QVERIFY(QDir().mkpath(data() + u"/notes.json.lock"_s));
        DataLock lock(data());
        QCOMPARE(takeTurn(lock, {}, brief), InstanceTurn::First);
        InstanceServer server;
        QVERIFY(server.listen(socket()));
        server.setHandler(note());
        const OtherStart start(data(), {}, ample);
        QTRY_VERIFY(start.turn() == InstanceTurn::Answered);
    }
};

QTEST_GUILESS_MAIN(TestInstanceTurn)
#include "tst_instance_turn.moc"
