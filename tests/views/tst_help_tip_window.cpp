#include "shell/HelpTip.h"
#include "tests/views/Stage.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray views = R"(
    HelpTipWindow {}
    SymbolButton { objectName: "button"; x: 200; y: 100; symbol: "plus"; helpText: "Add" }
    SymbolButton { objectName: "other"; x: 240; y: 100; symbol: "xmark"; helpText: "Close" }
)";

struct Tips : Stage {
    Tips() : Stage(views) { moveTo(window(), QPoint(10, 300)); }
    ~Tips() { moveTo(window(), QPoint(10, 300)); }

    [[nodiscard]] QQuickWindow *tip() const
    {
        return qobject_cast<QQuickWindow *>(object(u"helpTip"_s));
    }
    [[nodiscard]] QString text() const { return textsIn(tip()->contentItem()).join(u' '); }
};
} // namespace

class TestHelpTip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void theTipAppearsWhereThePointerRests()
    {
        const Tips w;
        QVERIFY(!w.tip()->isVisible());
        QElapsedTimer rest;
        rest.start();
        hover(w.item(u"button"_s));
        QVERIFY(!w.tip()->isVisible());
        QTRY_VERIFY(w.tip()->isVisible());
        QVERIFY(rest.elapsed() >= 400); // not for one who merely passes
        QCOMPARE(w.text(), u"Add"_s);
    }

    void theTipGoesWithThePointer()
    {
        const Tips w;
        hover(w.item(u"button"_s));
        QTRY_VERIFY(w.tip()->isVisible());
        moveTo(w.window(), QPoint(10, 300));
        QTRY_VERIFY(!w.tip()->isVisible());
    }

    void aPressPutsTheTipAway()
    {
        const Tips w;
        hover(w.item(u"button"_s));
        QTRY_VERIFY(w.tip()->isVisible());
        click(w.item(u"button"_s));
        QVERIFY(!w.tip()->isVisible());
    }

    void theNextButtonsTipTakesItsPlace()
    {
        const Tips w;
        hover(w.item(u"button"_s));
        QTRY_VERIFY(w.tip()->isVisible());
        hover(w.item(u"other"_s));
        QTRY_COMPARE(w.text(), u"Close"_s);
        QTRY_VERIFY(w.tip()->isVisible());
    }

    void theTipFollowsWhatTheButtonSays()
    {
        const Tips w;
        hover(w.item(u"button"_s));
        QTRY_VERIFY(w.tip()->isVisible());
        const int width = w.tip()->width();
        w.item(u"button"_s)->setProperty("helpText", u"Something much longer than before"_s);
        QCOMPARE(w.text(), u"Something much longer than before"_s);
        QVERIFY(w.tip()->width() > width);
    }

    void theTipIsBelowItsButtonAndOnTheScreen()
    {
        const Tips w;
        w.window()->setPosition(300, 200);
        hover(w.item(u"button"_s));
        QTRY_VERIFY(w.tip()->isVisible());
        const QRect button(w.item(u"button"_s)->mapToGlobal(QPointF(0, 0)).toPoint(),
                           w.item(u"button"_s)->size().toSize());
        QVERIFY(w.tip()->y() > button.bottom());
        QVERIFY(qAbs(w.tip()->geometry().center().x() - button.center().x()) <= 1);
        QVERIFY(w.tip()->screen()->geometry().contains(w.tip()->geometry()));
    }

    void theTipTakesNeitherPointerNorKeyboard()
    {
        const Tips w;
        w.item(u"button"_s)->forceActiveFocus();
        hover(w.item(u"button"_s));
        QTRY_VERIFY(w.tip()->isVisible());
        QVERIFY(w.tip()->flags() & Qt::WindowTransparentForInput);
        QVERIFY(w.tip()->flags() & Qt::WindowDoesNotAcceptFocus);
        QVERIFY(w.window()->isActive());
        QVERIFY(w.item(u"button"_s)->hasActiveFocus());
    }

    void textsAreShownLetterByLetter()
    {
        const Tips w;
        w.item(u"button"_s)->setProperty("helpText", u"<b>Add</b>"_s);
        hover(w.item(u"button"_s));
        QTRY_VERIFY(w.tip()->isVisible());
        visitItems(w.tip()->contentItem(), [](QQuickItem *item) {
            if (item->inherits("QQuickText"))
                QCOMPARE(item->property("textFormat").toInt(), 0);
        });
    }
};

QTEST_MAIN(TestHelpTip)
#include "tst_help_tip_window.moc"
