#include "tests/e2e/Keyboard.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredNotes.h"

#include <QDir>
#include <QTest>

#include <chrono>
#include <csignal>
#include <cstdint>

using namespace Qt::StringLiterals;

namespace
{
constexpr double referenceDate = 978'307'200; ///< in seconds of the Unix clock
constexpr std::int64_t day = 86'400;
constexpr std::int64_t year = 365 * day;

/// A clock that can be set, for the program alone.
class WrongClock
{
public:
    explicit WrongClock(const ThrowAwayHome &home) : m_file(home.path(u"clock"_s)) { set(0); }

    void giveTo(PlimRun &plim) const
    {
        plim.setVariable(u"LD_PRELOAD"_s, QStringLiteral(CLOCK_SHIM));
        plim.setVariable(u"CLOCK_SHIM_FILE"_s, m_file);
        // It may come before what the address sanitizer has between a program and the system.
        plim.setVariable(u"ASAN_OPTIONS"_s,
                         u"verify_asan_link_order=0:detect_leaks=0:new_delete_type_mismatch=0"_s);
    }
    void set(std::int64_t seconds) const
    {
        QFile file(m_file);
        // In its place: the program looks at this very file.
        if (!file.open(QIODevice::ReadWrite) ||
            file.write(reinterpret_cast<const char *>(&seconds), sizeof seconds) !=
                qint64(sizeof seconds))
            qFatal("The clock could not be set");
    }
    /// As the notes have it.
    [[nodiscard]] static double now(std::int64_t offset)
    {
        using Seconds = std::chrono::duration<double>;
        return Seconds(std::chrono::system_clock::now().time_since_epoch()).count() -
               referenceDate + double(offset);
    }

private:
    QString m_file;
};
} // namespace

/// Neither a clock that is set nor the dates in the file are to be relied on.
class TestDates : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clockIsSetWhileTyping_data();
    void clockIsSetWhileTyping();
    void datesFromFarAway_data();
    void datesFromFarAway();
};

void TestDates::clockIsSetWhileTyping_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::newRow("back by an hour") << qint64(-3600);
    QTest::newRow("back to a time before there were clocks") << qint64(-60 * year);
    QTest::newRow("forward by a year") << qint64(year);
    QTest::newRow("forward beyond 32 bits") << qint64(200 * year);
}

/// What is typed is reported and saved as before, also where the typing never pauses: whatever
/// waits for a time to pass must not wait for the old time to come again.
void TestDates::clockIsSetWhileTyping()
{
    QFETCH(qint64, offset);
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(storedID(0), u"<h1>A</h1>"_s)});
    const WrongClock clock(home);
    PlimRun plim(home);
    clock.giveTo(plim);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, storedID(0)));
    const Keyboard keyboard;
    keyboard.type("before");
    QTRY_COMPARE(plim.bodyOnDisk(), u"<h1>A</h1>before"_s);
    clock.set(offset);

    // Never long enough without a key for the page to think that the typing pauses.
    const auto reports = plim.said().count("accepted"_L1);
    QByteArray typed;
    const bool isReported = QTest::qWaitFor(
        [&] {
            typed += 'x';
            keyboard.press('x');
            QTest::qWait(10);
            return plim.said().count("accepted"_L1) >= reports + 10;
        },
        XTools::patience);
    QVERIFY(isReported);
    const QString body = u"<h1>A</h1>before"_s + QString::fromLatin1(typed);
    QTRY_COMPARE(plim.bodyOnDisk(), body);
    const double updated = plim.notesOnDisk().at(0).toObject().value("updatedAt"_L1).toDouble();
    QVERIFY2(std::abs(updated - WrongClock::now(offset)) < double(day),
             qPrintable(QString::number(updated)));

    QVERIFY(plim.addNote());
    keyboard.type("new");
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.bodyOnDisk(0), u"<h1>new</h1>"_s);
    QCOMPARE(plim.bodyOnDisk(1), body);
    QCOMPARE(plim.warnings(), QStringList());

    clock.set(-offset);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(1, storedID(0)));
    keyboard.type("after");
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.bodyOnDisk(1), body + u"after"_s);
    QCOMPARE(QDir(home.data()).entryList({u"notes.json.*-*"_s}),
             QStringList()); // nothing was taken for foreign or damaged
}

void TestDates::datesFromFarAway_data()
{
    QTest::addColumn<double>("date");
    QTest::newRow("the year 1") << -63'113'904'000.0;
    QTest::newRow("before the year 1") << -99'999'999'999.0;
    QTest::newRow("the year 9999") << 252'423'993'599.0;
    QTest::newRow("the year 10000") << 252'423'993'600.0;
    QTest::newRow("the last that a calendar knows") << 8.64e12;
    QTest::newRow("milliseconds beyond 64 bits") << 1e16;
    QTest::newRow("seconds beyond 64 bits") << 1e20;
    QTest::newRow("long ago beyond 64 bits") << -1e20;
    QTest::newRow("the largest number") << 1.7e308;
    QTest::newRow("the smallest number") << -1.7e308;
    QTest::newRow("almost nothing") << 5e-324;
}

void TestDates::datesFromFarAway()
{
    QFETCH(double, date);
    const ThrowAwayHome home;
    QJsonArray notes;
    for (int i = 0; i < 2; ++i) {
        QJsonObject note = storedNote(storedID(i), u"<h1>A</h1>"_s);
        note[u"createdAt"_s] = date;
        note[u"updatedAt"_s] = date;
        notes << note;
    }
    storeNotes(home, notes);
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.openSticky(0, storedID(0)));
    QVERIFY(plim.mainWindow().waitUntilActive());
    QVERIFY(plim.selectRow(1, storedID(1)));
    plim.type(u"b"_s);
    QTRY_COMPARE(plim.bodyOnDisk(1), u"<h1>A</h1>b"_s);
    const QJsonArray stored = plim.notesOnDisk();
    for (const auto &[note, key] :
         {std::pair(0, "createdAt"_L1), {0, "updatedAt"_L1}, {1, "createdAt"_L1}})
        QCOMPARE(stored.at(note).toObject().value(key).toDouble(), date);
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.warnings(), QStringList());
}

QTEST_GUILESS_MAIN(TestDates)
#include "tst_e2e_dates.moc"
