#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
struct End {
    int exitCode;
    QString text;
};

/// How a program ends that does this wrong, under the options that the preset gives its tests.
End commit(const QString &fault)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(PLANTED_FAULT), {fault});
    if (!process.waitForFinished(-1))
        return {-1, process.errorString()};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAll())};
}
} // namespace

/// A sanitizer that reports nothing may be one that looks at nothing, or is told to keep silent
/// about everything: it is given faults that it knows.
class TestSanitizers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPlantedFaultIsReported_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("report");
#ifdef __SANITIZE_THREAD__
        QTest::newRow("two threads write one number")
            << u"race"_s << u"ThreadSanitizer: data race"_s;
        QTest::newRow("a job and who started it do") << u"job"_s << u"ThreadSanitizer: data race"_s;
#else
        QTest::newRow("what was freed is read")
            << u"freed"_s << u"AddressSanitizer: heap-use-after-free"_s;
        QTest::newRow("what lies beyond the end is read")
            << u"end"_s << u"AddressSanitizer: heap-buffer-overflow"_s;
        QTest::newRow("a sum that no number can hold")
            << u"overflow"_s << u"runtime error: signed integer overflow"_s;
        QTest::newRow("a shift by more than there is")
            << u"shift"_s << u"runtime error: shift exponent"_s;
        QTest::newRow("nobody knows any more what was made")
            << u"leak"_s << u"LeakSanitizer: detected memory leaks"_s;
#endif
    }
    void aPlantedFaultIsReported()
    {
        QFETCH(QString, fault);
        QFETCH(QString, report);
        const End end = commit(fault);
        QVERIFY2(end.text.contains(report), qPrintable(end.text));
        QVERIFY2(end.text.contains(u"planted_fault.cpp"_s), qPrintable(end.text));
        QVERIFY(end.exitCode > 0); // a report fails the test in which it is made
    }

    void whatIsRightIsNotReported()
    {
        const End end = commit(u"none"_s);
        QCOMPARE(end.text, u"1\n2\n"_s);
        QCOMPARE(end.exitCode, 0);
    }
};

QTEST_GUILESS_MAIN(TestSanitizers)
#include "tst_sanitizers.moc"
