#include "core/DataLock.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;
using State = DataLock::State;

namespace
{
constexpr auto holdOption = "--hold";

QByteArray nameOf(State state)
{
    switch (state) {
    case State::Taken:
        return "taken";
    case State::HeldElsewhere:
        return "elsewhere";
    case State::Unavailable:
        return "unavailable";
    }
    return {};
}

/// This program once more: it takes the lock, says what came of it, and goes on until it is ended.
class OtherProcess
{
public:
    explicit OtherProcess(const QString &directory)
    {
        m_process.start(QCoreApplication::applicationFilePath(),
                        {QString::fromLatin1(holdOption), directory});
    }
    ~OtherProcess() { kill(); }

    QByteArray said()
    {
        return m_process.canReadLine() || m_process.waitForReadyRead()
                   ? m_process.readLine().trimmed()
                   : QByteArray();
    }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};

int hold(const QString &directory)
{
    DataLock lock(directory);
    std::puts(nameOf(lock.take()).constData());
    std::fflush(stdout);
    std::getchar();
    return 0;
}
} // namespace

class TestDataLock : public QObject
{
    Q_OBJECT

    QTemporaryDir m_directory;

    [[nodiscard]] QString fresh() const
    {
        return m_directory.filePath(QString::fromLatin1(QTest::currentTestFunction()) + u"/Plim"_s);
    }

private Q_SLOTS:
    void theDirectoryIsMade()
    {
        DataLock lock(fresh());
        QVERIFY(!QFile::exists(fresh())); // who only asks for the version leaves nothing behind
        QCOMPARE(lock.take(), State::Taken);
        QCOMPARE(lock.take(), State::Taken);
        QVERIFY(QFile::exists(lock.file()));
    }

    void anotherProcessCannotHaveIt()
    {
        DataLock lock(fresh());
        QCOMPARE(lock.take(), State::Taken);
        QCOMPARE(OtherProcess(fresh()).said(), "elsewhere");
        lock.giveBack();
        QCOMPARE(OtherProcess(fresh()).said(), "taken");
    }

    void whatAnotherProcessHoldsCannotBeTaken()
    {
        OtherProcess other(fresh());
        QCOMPARE(other.said(), "taken");
        DataLock lock(fresh());
        QCOMPARE(lock.take(), State::HeldElsewhere);
        QCOMPARE(lock.take(), State::HeldElsewhere);
    }

    void aKilledHolderHoldsNothing()
    {
        OtherProcess other(fresh());
        QCOMPARE(other.said(), "taken");
        other.kill();
        DataLock lock(fresh());
        QVERIFY(QFile::exists(lock.file()));
        QCOMPARE(lock.take(), State::Taken);
    }

    void theSecondInOneProcessWaitsToo()
    {
        DataLock first(fresh());
        DataLock second(fresh());
        QCOMPARE(first.take(), State::Taken);
        QCOMPARE(second.take(), State::HeldElsewhere);
        first.giveBack();
        QCOMPARE(second.take(), State::Taken);
    }

    void directoriesDoNotMeet()
    {
        DataLock one(fresh() + u'1');
        DataLock two(fresh() + u'2');
        QCOMPARE(one.take(), State::Taken);
        QCOMPARE(two.take(), State::Taken);
    }

    void aLinkToTheDirectoryIsTheDirectory()
    {
        DataLock lock(fresh());
        QCOMPARE(lock.take(), State::Taken);
        const QString link = m_directory.filePath(u"link"_s);
        QVERIFY(QFile::link(fresh(), link));
        QCOMPARE(DataLock(link).take(), State::HeldElsewhere);
    }

    void childrenDoNotInheritIt()
    {
        DataLock lock(fresh());
        QCOMPARE(lock.take(), State::Taken);
        QProcess child;
        child.start(u"cat"_s, QStringList());
        QVERIFY(child.waitForStarted());
        lock.giveBack();
        QCOMPARE(OtherProcess(fresh()).said(), "taken");
        QCOMPARE(child.state(), QProcess::Running);
        child.closeWriteChannel();
        QVERIFY(child.waitForFinished());
    }

    void whereNothingCanBeLockedTheReasonIsTold_data()
    {
        QTest::addColumn<QString>("obstacle");
        QTest::newRow("a file in place of the directory") << QString();
        QTest::newRow("a directory in place of the file") << u"/notes.json.lock/x"_s;
    }
    void whereNothingCanBeLockedTheReasonIsTold()
    {
        QFETCH(QString, obstacle);
        const QString directory = fresh() + QString::number(obstacle.size());
        if (obstacle.isEmpty()) {
            QVERIFY(QDir().mkpath(QFileInfo(directory).path()));
            QFile file(directory);
            QVERIFY(file.open(QIODevice::WriteOnly));
        } else {
            QVERIFY(QDir().mkpath(directory + obstacle));
        }
        DataLock lock(directory);
        QCOMPARE(lock.take(), State::Unavailable);
        QVERIFY(!lock.reason().isEmpty());
    }
};

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QString::fromLatin1(holdOption))
        return hold(arguments.value(2));
    TestDataLock test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_data_lock.moc"
