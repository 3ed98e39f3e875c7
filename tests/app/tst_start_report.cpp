#include "core/app/StartReport.h"

#include "tests/Patience.h"

#include <QLoggingCategory>
#include <QQuickWindow>
#include <QTest>

using namespace Qt::StringLiterals;

// What is said is caught here.
class TestStartReport : public QObject
{
    Q_OBJECT

    static inline int reports = 0;
    static void count(QtMsgType, const QMessageLogContext &context, const QString &text)
    {
        reports += QLatin1StringView(context.category) == "plim.start"_L1 && text == u"usable"_s;
    }

private Q_SLOTS:
    void init()
    {
        reports = 0;
        qInstallMessageHandler(&count);
        QLoggingCategory::setFilterRules(u"plim.start.debug=true"_s);
    }
    void cleanup() { qInstallMessageHandler(nullptr); }

    void aWindowIsReportedOnceWhenItIsDrawnAndHasTheKeyboard()
    {
        QQuickWindow window;
        int frames = 0;
        connect(&window, &QQuickWindow::frameSwapped, this, [&] { ++frames; });
        reportWhenUsable(window);
        QCoreApplication::processEvents();
        QCOMPARE(reports, 0);
        window.show();
        QTRY_COMPARE(reports, 1);
        QVERIFY(window.isActive());
        QVERIFY(frames > 0);
        const int before = frames;
        window.update();
        QTRY_VERIFY(frames > before);
        QCoreApplication::processEvents();
        QCOMPARE(reports, 1);
    }

    void aWindowThatIsDrawnButHasNoKeyboardIsNotReportedYet()
    {
        QQuickWindow other;
        other.show();
        QVERIFY(QTest::qWaitForWindowActive(&other, longEnough));
        QQuickWindow window;
        window.setFlag(Qt::WindowDoesNotAcceptFocus);
        bool isDrawn = false;
        connect(&window, &QQuickWindow::frameSwapped, this, [&] { isDrawn = true; });
        reportWhenUsable(window);
        window.show();
        other.requestActivate();
        QTRY_VERIFY(isDrawn && other.isActive());
        QTest::qWait(0);
        reports = 0; // the platform may have been generous for a moment
        QVERIFY(!window.isActive());
        QCoreApplication::processEvents();
        QCOMPARE(reports, 0);
    }

    void nobodyWhoDoesNotAskIsTold()
    {
        QLoggingCategory::setFilterRules(u"plim.start.debug=false"_s);
        QQuickWindow window;
        reportWhenUsable(window);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window, longEnough));
        QCoreApplication::processEvents();
        QCOMPARE(reports, 0);
    }
};

QTEST_MAIN(TestStartReport)
#include "tst_start_report.moc"
