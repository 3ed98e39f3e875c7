#include "mainwindow/TimestampFormat.h"

#include "shell/LanguageManager.h"
#include "tests/ThrowAwayHome.h"

#include <QTest>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray warsaw = "Europe/Warsaw";

/// The clock of a zone: of Warsaw, where nothing else is said.
QDateTime local(const QString &text, const QByteArray &zone = warsaw)
{
    QDateTime moment = QDateTime::fromString(text, u"yyyy-MM-dd HH:mm:ss"_s);
    moment.setTimeZone(QTimeZone(zone));
    return moment;
}

Timestamp timestamp(const QDateTime &moment)
{
    static const QDateTime reference(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    return {double(reference.msecsTo(moment)) / 1000};
}
} // namespace

class TestTimestampFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("TZ", "Asia/Kolkata"); // what the clock says counts, not the machine
        QVERIFY(QTimeZone(warsaw).isValid());
    }

    void text_data()
    {
        QTest::addColumn<QString>("then");
        QTest::addColumn<QString>("now");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("polish");
        const auto row = [](const char *name, const QString &then, const QString &now,
                            const QString &english, const QString &polish) {
            QTest::newRow(name) << then << now << english << polish;
        };
        const QString noon = u"2024-03-15 12:00:00"_s;
        row("now", noon, noon, u"today, 12:00"_s, u"dzisiaj, 12:00"_s);
        row("a minute into today", u"2024-03-15 00:01:00"_s, noon, u"today, 00:01"_s,
            u"dzisiaj, 00:01"_s);
        row("midnight", u"2024-03-15 00:00:00"_s, noon, u"today, 00:00"_s, u"dzisiaj, 00:00"_s);
        row("later today", u"2024-03-15 23:59:59"_s, noon, u"today, 23:59"_s, u"dzisiaj, 23:59"_s);
        row("a clock of 24 hours", u"2024-03-15 09:05:00"_s, noon, u"today, 09:05"_s,
            u"dzisiaj, 09:05"_s);
        row("a minute before today", u"2024-03-14 23:59:00"_s, noon, u"yesterday"_s, u"wczoraj"_s);
        row("minutes ago, yesterday", u"2024-03-14 23:59:00"_s, u"2024-03-15 00:01:00"_s,
            u"yesterday"_s, u"wczoraj"_s);
        row("47 hours ago", u"2024-03-14 00:00:00"_s, u"2024-03-15 23:59:00"_s, u"yesterday"_s,
            u"wczoraj"_s);
        row("two days ago", u"2024-03-13 23:59:59"_s, u"2024-03-15 00:00:00"_s, u"13 Mar"_s,
            u"13 mar"_s);
        row("this year", u"2024-03-05 10:00:00"_s, noon, u"5 Mar"_s, u"5 mar"_s);
        row("the first of January", u"2024-01-01 00:00:00"_s, noon, u"1 Jan"_s, u"1 sty"_s);
        row("the last of December", u"2023-12-31 23:59:59"_s, noon, u"31 Dec 23"_s, u"31 gru 23"_s);
        row("the last of December, yesterday", u"2023-12-31 10:00:00"_s, u"2024-01-01 10:00:00"_s,
            u"yesterday"_s, u"wczoraj"_s);
        row("less than a year ago, last year", u"2023-12-30 10:00:00"_s, u"2024-01-01 10:00:00"_s,
            u"30 Dec 23"_s, u"30 gru 23"_s);
        row("another year", u"2019-10-05 10:00:00"_s, noon, u"5 Oct 19"_s, u"5 paź 19"_s);
        row("tomorrow", u"2024-03-16 00:00:00"_s, noon, u"16 Mar"_s, u"16 mar"_s);
        row("next year", u"2025-05-06 00:00:00"_s, noon, u"6 May 25"_s, u"6 maj 25"_s);
        // 31 March 2024 had 23 hours, 27 October 25.
        row("the day before the short one", u"2024-03-30 00:30:00"_s, u"2024-03-31 23:30:00"_s,
            u"yesterday"_s, u"wczoraj"_s);
        row("the short day's beginning", u"2024-03-31 00:10:00"_s, u"2024-04-01 23:50:00"_s,
            u"yesterday"_s, u"wczoraj"_s);
        row("23 hours before a midnight", u"2024-03-31 00:30:00"_s, u"2024-04-01 00:10:00"_s,
            u"yesterday"_s, u"wczoraj"_s);
        row("the evening before the short day", u"2024-03-30 23:30:00"_s, u"2024-04-01 00:10:00"_s,
            u"30 Mar"_s, u"30 mar"_s);
        row("within the long day", u"2024-10-27 00:10:00"_s, u"2024-10-27 23:50:00"_s,
            u"today, 00:10"_s, u"dzisiaj, 00:10"_s);
        row("the long day's beginning", u"2024-10-27 00:10:00"_s, u"2024-10-28 23:50:00"_s,
            u"yesterday"_s, u"wczoraj"_s);
        row("the evening before the long day", u"2024-10-26 23:50:00"_s, u"2024-10-27 23:30:00"_s,
            u"yesterday"_s, u"wczoraj"_s);
        row("the hour after the clock went back", u"2024-10-27 03:30:00"_s,
            u"2024-10-27 12:00:00"_s, u"today, 03:30"_s, u"dzisiaj, 03:30"_s);
    }
    void text()
    {
        QFETCH(QString, then);
        QFETCH(QString, now);
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QTEST(TimestampFormat::text(timestamp(local(then)), local(now)), "english");
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QTEST(TimestampFormat::text(timestamp(local(then)), local(now)), "polish");
    }

    void theZoneOfTheClockDecides()
    {
        LanguageManager::shared().setLanguage(AppLanguage::en);
        const Timestamp then = timestamp(local(u"2024-03-14 23:30:00"_s));
        const QDateTime now = local(u"2024-03-15 08:00:00"_s);
        QCOMPARE(TimestampFormat::text(then, now), u"yesterday"_s);
        QCOMPARE(TimestampFormat::text(then, now.toUTC()), u"yesterday"_s);
        QCOMPARE(TimestampFormat::text(then, now.toTimeZone(QTimeZone("Asia/Tokyo"))),
                 u"today, 07:30"_s);
        QCOMPARE(TimestampFormat::text(then, now.toLocalTime()), u"today, 04:00"_s);
    }

    void theFormats()
    {
        QCOMPARE(TimestampFormat::time, u"HH:mm"_s);
        QCOMPARE(TimestampFormat::day, u"d MMM"_s);
        QCOMPARE(TimestampFormat::full, u"d MMM yy"_s);
    }

private:
    ThrowAwayHome m_home;
};

QTEST_MAIN(TestTimestampFormat)
#include "tst_timestamp_format.moc"
