#include "mainwindow/UndoOffer.h"

#include "shell/LanguageManager.h"
#include "tests/ThrowAwayHome.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
class Offer : public UndoOffer
{
public:
    explicit Offer(std::chrono::milliseconds time = 1h) : UndoOffer(time) {}

    [[nodiscard]] QString text() const override { return u"something was done"_s; }
    using UndoOffer::begin;

    QStringList done;

protected:
    void takeBack() override { done << (isOffered() ? u"taken while offered"_s : u"taken"_s); }
    void forget() override { done << u"forgotten"_s; }
};
} // namespace

class TestUndoOffer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsNotOfferedCannotBeTaken()
    {
        Offer offer;
        QSignalSpy changed(&offer, &UndoOffer::isOfferedChanged);
        offer.undo();
        offer.dismiss();
        QVERIFY(!offer.isOffered());
        QCOMPARE(offer.done, QStringList());
        QCOMPARE(changed.count(), 0);
    }

    // By then the offer is over: what comes back may bring another one with it.
    void anOfferIsTakenOnceAndForgotten()
    {
        Offer offer;
        QSignalSpy changed(&offer, &UndoOffer::isOfferedChanged);
        offer.begin();
        QVERIFY(offer.isOffered());
        offer.undo();
        offer.undo();
        QVERIFY(!offer.isOffered());
        QCOMPARE(offer.done, (QStringList{u"taken"_s, u"forgotten"_s}));
        QCOMPARE(changed.count(), 2);
    }

    void aDeclinedOfferIsForgotten()
    {
        Offer offer;
        offer.begin();
        offer.dismiss();
        offer.undo();
        QCOMPARE(offer.done, QStringList{u"forgotten"_s});
    }

    void anOfferEndsByItself()
    {
        Offer offer(1ms);
        offer.begin();
        QTRY_VERIFY(!offer.isOffered());
        QCOMPARE(offer.done, QStringList{u"forgotten"_s});
    }

    void theTextIsToldAnewWithEachOfferAndLanguage()
    {
        const ThrowAwayHome home;
        LanguageManager::shared().setLanguage(AppLanguage::en);
        Offer offer;
        QSignalSpy told(&offer, &UndoOffer::textChanged);
        offer.begin();
        offer.begin();
        QCOMPARE(told.count(), 2);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(told.count(), 3);
    }
};

QTEST_GUILESS_MAIN(TestUndoOffer)
#include "tst_undo_offer.moc"
