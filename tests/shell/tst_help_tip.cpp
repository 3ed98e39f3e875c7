#include "shell/HelpTip.h"

#include "shell/AnchoredPlacement.h"
#include "tests/Patience.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <chrono>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
struct Fixture {
    explicit Fixture(std::chrono::milliseconds delay = 20ms) : tip(nullptr, delay)
    {
        window.setGeometry(100, 100, 400, 300);
        item = std::make_unique<QQuickItem>(window.contentItem());
        item->setPosition({10, 20});
        item->setSize({30, 30});
        other.setParentItem(window.contentItem());
        window.setVisible(true);
    }

    QQuickWindow window;
    std::unique_ptr<QQuickItem> item;
    QQuickItem other;
    HelpTip tip;
    QSignalSpy shown{&tip, &HelpTip::isShownChanged};
    QSignalSpy told{&tip, &HelpTip::textChanged};
};

using Action = std::function<void(Fixture &)>;
} // namespace

Q_DECLARE_METATYPE(Action)

class TestHelpTip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTipComesAfterAWhile()
    {
        Fixture f(HelpTip::defaultDelay);
        QElapsedTimer timer;
        timer.start();
        f.tip.show(f.item.get(), u"Close"_s);
        QVERIFY(!f.tip.isShown());
        QCOMPARE(f.tip.text(), u"Close"_s);
        QVERIFY(f.shown.wait(longEnough));
        QVERIFY(f.tip.isShown());
        QVERIFY2(timer.elapsed() >= 500, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(f.tip.host(), &f.window);
        const AnchoredPlacement placement;
        QCOMPARE(f.tip.placeFor({50, 20}), placement.below(f.item.get(), {50, 20}));
        f.tip.hide(f.item.get());
        QVERIFY(!f.tip.isShown());
        QCOMPARE(f.tip.host(), nullptr);
        QCOMPARE(f.shown.count(), 2);
        QCOMPARE(f.tip.text(), u"Close"_s); // while it fades away
    }

    void theTipGoes_data()
    {
        QTest::addColumn<Action>("action");
        QTest::newRow("when the pointer leaves")
            << Action([](auto &f) { f.tip.hide(f.item.get()); });
        QTest::newRow("when the item is hidden")
            << Action([](auto &f) { f.item->setVisible(false); });
        QTest::newRow("with the item") << Action([](auto &f) { f.item.reset(); });
        QTest::newRow("when another item is told of")
            << Action([](auto &f) { f.tip.show(&f.other, u"other"_s); });
    }
    void theTipGoes()
    {
        QFETCH(Action, action);
        Fixture f;
        f.tip.show(f.item.get(), u"Close"_s);
        QVERIFY(f.shown.wait(longEnough));
        action(f);
        QVERIFY(!f.tip.isShown());
        QCOMPARE(f.shown.count(), 2);
    }

    void noTipComes_data()
    {
        QTest::addColumn<Action>("action");
        QTest::newRow("when the pointer has left")
            << Action([](auto &f) { f.tip.hide(f.item.get()); });
        QTest::newRow("when the item was hidden")
            << Action([](auto &f) { f.item->setVisible(false); });
        QTest::newRow("when the item is gone") << Action([](auto &f) { f.item.reset(); });
        QTest::newRow("when the window was hidden")
            << Action([](auto &f) { f.window.setVisible(false); });
        QTest::newRow("for no item") << Action([](auto &f) { f.tip.show(nullptr, u"Close"_s); });
    }
    void noTipComes()
    {
        QFETCH(Action, action);
        Fixture f;
        f.tip.show(f.item.get(), u"Close"_s);
        action(f);
        // A tip that is asked for later in another place would come later than this one.
        Fixture later;
        later.tip.show(later.item.get(), u"later"_s);
        QVERIFY(later.shown.wait(longEnough));
        QCOMPARE(f.shown.count(), 0);
    }

    void onlyTheOwnerHidesAndRenames()
    {
        Fixture f;
        f.tip.show(f.item.get(), u"Close"_s);
        QVERIFY(f.shown.wait(longEnough));
        f.tip.hide(&f.other);
        f.tip.hide(nullptr);
        f.tip.update(&f.other, u"Other"_s);
        f.tip.update(nullptr, u"Nobody"_s);
        QVERIFY(f.tip.isShown());
        QCOMPARE(f.tip.text(), u"Close"_s);
        f.told.clear();
        f.tip.update(f.item.get(), u"Zamknij"_s);
        f.tip.update(f.item.get(), u"Zamknij"_s);
        QCOMPARE(f.tip.text(), u"Zamknij"_s);
        QCOMPARE(f.told.count(), 1);
        QVERIFY(f.tip.isShown());
    }

    void theItemBeforeHasNoSayAnyMore()
    {
        Fixture f;
        f.tip.show(f.item.get(), u"Close"_s);
        f.tip.show(&f.other, u"Other"_s);
        QVERIFY(f.shown.wait(longEnough));
        f.tip.hide(f.item.get());
        f.item->setVisible(false);
        f.item.reset();
        QVERIFY(f.tip.isShown());
        QCOMPARE(f.tip.text(), u"Other"_s);
    }

    void aTipMayBelongToThePointer()
    {
        Fixture f;
        const AnchoredPlacement placement;
        f.tip.showAtPointer(f.item.get(), u"Open the link"_s);
        QCOMPARE(f.tip.placeFor({50, 20}), placement.belowPointer({50, 20}));
        f.tip.show(f.item.get(), u"Close"_s);
        QCOMPARE(f.tip.placeFor({50, 20}), placement.below(f.item.get(), {50, 20}));
    }

    void thereIsOneForAll() { QCOMPARE(HelpTip::create(nullptr, nullptr), &HelpTip::shared()); }
};

QTEST_MAIN(TestHelpTip)
#include "tst_help_tip.moc"
