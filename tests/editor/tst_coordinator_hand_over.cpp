#include "editor/EditorFlush.h"
#include "tests/editor/EditorFixture.h"

#include <QSignalSpy>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Owed to a test, which sees whether it is still held.
class Debt
{
public:
    [[nodiscard]] std::shared_ptr<void> take() { return std::exchange(m_debt, {}); }
    [[nodiscard]] bool isOwed() const { return !m_seen.expired(); }

private:
    std::shared_ptr<int> m_debt = std::make_shared<int>(0);
    std::weak_ptr<int> m_seen = m_debt;
};
} // namespace

/// Whoever takes an editor down learns when it has said its last words.
class TestCoordinatorHandOver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lastWordsArriveBeforeTheDebtIsLetGo()
    {
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1>"_s);
        Debt debt;
        bool wasOwed = false;
        connect(&f.coordinator, &RichTextEditorCoordinator::change, this,
                [&] { wasOwed = debt.isOwed(); });
        f.coordinator.handOver(debt.take());
        QCOMPARE(f.view.takeLog(), QStringList(Script::read));
        QVERIFY(debt.isOwed());
        f.view.answer(u"<h1>ab</h1>");
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>ab</h1>"_s}}));
        QVERIFY(wasOwed);
        f.view.answerAll(u"<h1>ab</h1>"_s);
        QVERIFY(!debt.isOwed());
    }

    void aKeyThatTheQuestionHasOvertakenIsWaitedFor()
    {
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1>"_s);
        Debt debt;
        f.coordinator.handOver(debt.take());
        f.view.answer(u"<h1>a</h1>");
        QVERIFY(debt.isOwed());
        QCOMPARE(f.view.questions(), QStringList(Script::readChanged)); // a long text is told once
        f.view.answerAll(u"<h1>ab</h1>"_s);
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>ab</h1>"_s}}));
        QVERIFY(!debt.isOwed());
    }

    void noNewsIsAnAnswer()
    {
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1>"_s);
        Debt debt;
        f.coordinator.handOver(debt.take());
        f.view.answerAll(u"<h1>a</h1>"_s);
        QCOMPARE(f.changes, Changes());
        QVERIFY(!debt.isOwed());
    }

    void thereIsNothingToWaitForWithoutAPageThatShowsANote_data()
    {
        QTest::addColumn<bool>("isLoaded");
        QTest::addColumn<bool>("hasNote");
        QTest::newRow("not loaded") << false << true;
        QTest::newRow("no note") << true << false;
        QTest::newRow("neither") << false << false;
    }
    void thereIsNothingToWaitForWithoutAPageThatShowsANote()
    {
        QFETCH(bool, isLoaded);
        QFETCH(bool, hasNote);
        EditorFixture f;
        if (hasNote)
            f.update(noteA.id, u"<h1>a</h1>"_s);
        if (isLoaded)
            f.load();
        (void)f.view.takeLog();
        Debt debt;
        f.coordinator.handOver(debt.take());
        QVERIFY(!debt.isOwed());
        QCOMPARE(f.view.log(), QStringList());
    }

    void thePageThatGoesAwayOwesNothing_data()
    {
        QTest::addColumn<QString>("end");
        for (const char *end : {"lost", "loaded anew", "coordinator gone", "view gone"})
            QTest::newRow(end) << QString::fromLatin1(end);
    }
    void thePageThatGoesAwayOwesNothing()
    {
        QFETCH(QString, end);
        auto view = std::make_unique<FakeView>();
        auto coordinator = std::make_unique<RichTextEditorCoordinator>();
        coordinator->update({.noteID = noteA.id, .html = u"<h1>a</h1>"_s});
        coordinator->setWebView(&view->seam);
        QTRY_COMPARE(view->documents.size(), 1);
        view->seam.reportLoaded();
        Debt debt;
        coordinator->handOver(debt.take());
        QVERIFY(debt.isOwed());
        if (end == u"lost"_s) {
            QTest::ignoreMessage(QtWarningMsg, "Plim: editor page lost: test");
            view->lose();
        } else if (end == u"loaded anew"_s) {
            view->seam.reportLoaded();
        } else if (end == u"coordinator gone"_s) {
            coordinator.reset();
        } else {
            view.reset();
        }
        QVERIFY(!debt.isOwed());
    }

    void everyoneWhoWaitsIsAnswered()
    {
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1>"_s);
        Debt first;
        Debt second;
        f.coordinator.handOver(first.take());
        f.coordinator.handOver(second.take());
        f.view.answer(u"<h1>ab</h1>");
        QVERIFY(first.isOwed());
        QVERIFY(second.isOwed());
        f.view.answerAll(u"<h1>abc</h1>"_s);
        QVERIFY(!first.isOwed());
        QVERIFY(!second.isOwed());
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>ab</h1>"_s}, {noteA.id, u"<h1>abc</h1>"_s}}));
    }

    // An editor of which only the debt is left is ended by the answer.
    void whoIsHeldByTheDebtAloneEndsWithIt()
    {
        auto f = std::make_shared<EditorFixture>();
        f->showNote(noteA, u"<h1>a</h1>"_s);
        const std::weak_ptr<EditorFixture> seen = f;
        FakeView &view = f->view;
        RichTextEditorCoordinator &coordinator = f->coordinator;
        Changes changes;
        connect(&coordinator, &RichTextEditorCoordinator::change, this,
                [&](const QUuid &id, const QString &html) {
                    changes.append({id, html});
                });
        coordinator.handOver(std::move(f));
        QVERIFY(!seen.expired());
        while (!seen.expired())
            view.answer(u"<h1>ab</h1>");
        QCOMPARE(changes, Changes({{noteA.id, u"<h1>ab</h1>"_s}}));
    }

    void theEndOfTheProgramWaitsForADebtThatHoldsItsOwn()
    {
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1>"_s);
        const QSignalSpy settled(&EditorFlush::shared(), &EditorFlush::settled);
        struct Both {
            std::shared_ptr<void> window;
            EditorFlush::Debt end;
        };
        Debt debt;
        f.coordinator.handOver(
            std::make_shared<Both>(Both{debt.take(), EditorFlush::shared().owe()}));
        QVERIFY(!EditorFlush::shared().isSettled());
        f.view.answerAll(u"<h1>ab</h1>"_s);
        QVERIFY(!debt.isOwed());
        QCOMPARE(settled.size(), 1);
    }

    void theControllerPassesItOn()
    {
        EditorController controller;
        Debt dropped;
        controller.handOver(dropped.take());
        QVERIFY(!dropped.isOwed());

        EditorFixture f;
        f.coordinator.setController(&controller);
        f.showNote(noteA, u"<h1>a</h1>"_s);
        Debt debt;
        controller.handOver(debt.take());
        QVERIFY(debt.isOwed());
        f.view.answerAll(u"<h1>ab</h1>"_s);
        QVERIFY(!debt.isOwed());
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>ab</h1>"_s}}));
    }
};

QTEST_GUILESS_MAIN(TestCoordinatorHandOver)
#include "tst_coordinator_hand_over.moc"
