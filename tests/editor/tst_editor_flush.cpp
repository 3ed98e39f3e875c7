#include "editor/EditorFlush.h"

#include "core/NotificationCenter.h"
#include "tests/editor/EditorFixture.h"

#include <QSignalSpy>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace
{
void askForTexts()
{
    Q_EMIT NotificationCenter::shared().plimFlushEditors();
}
} // namespace

class TestEditorFlush : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QVERIFY(EditorFlush::shared().isSettled()); }

    void settlesWithTheLastDebt()
    {
        EditorFlush &flush = EditorFlush::shared();
        const QSignalSpy spy(&flush, &EditorFlush::settled);
        EditorFlush::Debt first = flush.owe();
        EditorFlush::Debt second = flush.owe();
        EditorFlush::Debt copy = first;
        first.reset();
        QVERIFY(!flush.isSettled());
        second.reset();
        QVERIFY(!flush.isSettled()); // the copy is still held
        QCOMPARE(spy.size(), 0);
        copy.reset();
        QVERIFY(flush.isSettled());
        QCOMPARE(spy.size(), 1);
    }

    void answers_data()
    {
        QTest::addColumn<QVariant>("answer");
        QTest::addColumn<QString>("handedOut");
        QTest::newRow("new words") << QVariant(u"<h1>ab</h1>"_s) << u"<h1>ab</h1>"_s;
        QTest::newRow("what is known") << QVariant(u"<h1>a</h1>"_s) << QString();
        QTest::newRow("empty") << QVariant(u""_s) << QString();
        QTest::newRow("nothing") << QVariant() << QString();
        QTest::newRow("a number") << QVariant(12) << QString();
        QTest::newRow("true") << QVariant(true) << QString();
        QTest::newRow("bytes") << QVariant("<h1>ab</h1>"_ba) << QString();
        QTest::newRow("a list") << QVariant(QStringList(u"<h1>ab</h1>"_s)) << QString();
    }
    void answers()
    {
        QFETCH(QVariant, answer);
        QFETCH(QString, handedOut);
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1>"_s);
        askForTexts();
        QCOMPARE(f.view.takeLog(), QStringList(Script::read));
        QVERIFY(!EditorFlush::shared().isSettled());
        f.view.answerAll(answer);
        QVERIFY(EditorFlush::shared().isSettled());
        QCOMPARE(f.changes, handedOut.isEmpty() ? Changes() : Changes({{noteA.id, handedOut}}));

        // What was accepted is known from now on.
        f.view.post(message(noteA, handedOut.isEmpty() ? u"<h1>a</h1>"_s : handedOut));
        QCOMPARE(f.changes.size(), handedOut.isEmpty() ? 0 : 1);
    }

    void aPageWithoutANoteIsNotAsked_data()
    {
        QTest::addColumn<bool>("isLoaded");
        QTest::addColumn<bool>("hasNote");
        QTest::newRow("not loaded") << false << true;
        QTest::newRow("no note") << true << false;
        QTest::newRow("neither") << false << false;
    }
    void aPageWithoutANoteIsNotAsked()
    {
        QFETCH(bool, isLoaded);
        QFETCH(bool, hasNote);
        EditorFixture f;
        if (hasNote)
            f.update(noteA.id, u"<h1>a</h1>"_s);
        if (isLoaded)
            f.load();
        askForTexts();
        QVERIFY(f.view.questions().isEmpty());
        QVERIFY(EditorFlush::shared().isSettled());
    }

    void anEditorWithoutAViewOwesNothing()
    {
        RichTextEditorCoordinator coordinator;
        coordinator.update({.noteID = noteA.id, .html = u"<h1>a</h1>"_s});
        askForTexts();
        QVERIFY(EditorFlush::shared().isSettled());
    }

    void everyEditorIsWaitedFor()
    {
        EditorFixture first;
        EditorFixture second;
        first.showNote(noteA, u"<h1>a</h1>"_s);
        second.showNote(noteB, u"<h1>b</h1>"_s);
        const QSignalSpy spy(&EditorFlush::shared(), &EditorFlush::settled);
        askForTexts();
        second.view.answerAll(u"<h1>bb</h1>"_s);
        QCOMPARE(spy.size(), 0);
        first.view.answerAll(u"<h1>aa</h1>"_s);
        QCOMPARE(spy.size(), 1);
        QCOMPARE(first.changes, Changes({{noteA.id, u"<h1>aa</h1>"_s}}));
        QCOMPARE(second.changes, Changes({{noteB.id, u"<h1>bb</h1>"_s}}));
    }

    void theShownNoteIsCollectedEvenWhenNoneIsAskedFor()
    {
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1>"_s);
        f.update({}, {});
        askForTexts();
        f.view.answer(u"<h1>ab</h1>");
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>ab</h1>"_s}}));
    }

    // The page is asked for the old note's text twice; it never becomes the new note's.
    void whileANoteIsSwitchedTheTextGoesToTheNoteItWasReadFrom()
    {
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1>"_s);
        f.update(noteB.id, u"<h1>b</h1>"_s);
        askForTexts();
        QCOMPARE(f.view.questions(), QStringList({Script::read, Script::read}));
        f.view.answer(u"<h1>ab</h1>");
        QVERIFY(!EditorFlush::shared().isSettled());
        f.view.answer(u"<h1>ab</h1>");
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>ab</h1>"_s}}));
        // The new note's text is still known to be in the page.
        f.changes.clear();
        f.view.post(message(noteB, u"<h1>b</h1>"_s));
        QCOMPARE(f.changes, Changes());
    }

    void aDebtEndsWithThePage_data()
    {
        QTest::addColumn<QString>("end");
        for (const char *end :
             {"lost", "loaded anew", "coordinator gone", "view gone", "another view"})
            QTest::newRow(end) << QString::fromLatin1(end);
    }
    void aDebtEndsWithThePage()
    {
        QFETCH(QString, end);
        auto view = std::make_unique<FakeView>();
        FakeView other;
        auto coordinator = std::make_unique<RichTextEditorCoordinator>();
        const QSignalSpy changes(coordinator.get(), &RichTextEditorCoordinator::change);
        coordinator->update({.noteID = noteA.id, .html = u"<h1>a</h1>"_s});
        coordinator->setWebView(&view->seam);
        QTRY_COMPARE(view->documents.size(), 1);
        view->seam.reportLoaded();
        const QSignalSpy settled(&EditorFlush::shared(), &EditorFlush::settled);
        askForTexts();
        QVERIFY(!EditorFlush::shared().isSettled());
        if (end == u"lost"_s)
            QTest::ignoreMessage(QtWarningMsg, "Plim: editor page lost: test");
        if (end == u"lost"_s)
            view->seam.reportLost(u"test"_s);
        else if (end == u"loaded anew"_s)
            view->seam.reportLoaded();
        else if (end == u"coordinator gone"_s)
            coordinator.reset();
        else if (end == u"view gone"_s)
            view.reset();
        else
            coordinator->setWebView(&other.seam);
        QVERIFY(EditorFlush::shared().isSettled());
        QCOMPARE(settled.size(), 1);
        // An answer that comes all the same finds nobody.
        if (view)
            view->answer(u"<h1>late</h1>");
        QCOMPARE(changes.size(), 0);
    }
};

QTEST_GUILESS_MAIN(TestEditorFlush)
#include "tst_editor_flush.moc"
