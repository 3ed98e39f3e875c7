#include "tests/editor/EditorFixture.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace
{
const QString a = u"<h1>a</h1>"_s;
const QString b = u"<h1>b</h1>"_s;
} // namespace

/// From when to when what is typed belongs to a page that is still on its way.
class TestCoordinatorCaret : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAwaitedFromTheQuestionToTheAnswer()
    {
        EditorFixture f;
        f.view.hasCaretAtOnce = false;
        const QSignalSpy changed(&f.coordinator, &RichTextEditorCoordinator::isCaretAwaitedChanged);
        QVERIFY(!f.coordinator.isCaretAwaited());
        f.update(noteA.id, a); // there is no page yet, and maybe not even an engine
        QVERIFY(f.coordinator.isCaretAwaited());
        f.load();
        QVERIFY(f.coordinator.isCaretAwaited());
        QCOMPARE(f.view.questions(), QStringList(Script::focus));
        f.view.answer(QVariant());
        QVERIFY(!f.coordinator.isCaretAwaited());
        QCOMPARE(changed.count(), 2);
    }

    void anEmptyPaneAwaitsNone()
    {
        EditorFixture f;
        f.view.hasCaretAtOnce = false;
        f.load();
        QVERIFY(!f.coordinator.isCaretAwaited());
        f.update(noteA.id, a);
        f.update(std::nullopt, {});
        QVERIFY(!f.coordinator.isCaretAwaited());
    }

    void aNoteThatIsShownAwaitsNone()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteA.id, u"<h1>changed elsewhere</h1>"_s);
        QVERIFY(!f.coordinator.isCaretAwaited());
        f.update(std::nullopt, {});
        f.update(noteA.id, a); // the page has kept it, and its caret
        QVERIFY(!f.coordinator.isCaretAwaited());
    }

    void theLastNoteAskedForIsAwaited()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.view.hasCaretAtOnce = false;
        f.update(noteB.id, b);
        QVERIFY(f.coordinator.isCaretAwaited());
        f.update(noteC.id, u"<h1>c</h1>"_s); // while what the page held is read
        f.view.answer(a);                    // so that B comes first
        QVERIFY(f.coordinator.isCaretAwaited());
        QCOMPARE(f.view.questions(), QStringList({Script::focus, Script::read}));
        f.view.answer(QVariant());
        QVERIFY(f.coordinator.isCaretAwaited()); // B has its caret, and what was typed is for C
        f.view.answer(b);
        QCOMPARE(f.coordinator.loadedNoteID(), noteC.id);
        QCOMPARE(f.view.questions(), QStringList(Script::focus));
        f.view.answer(QVariant());
        QVERIFY(!f.coordinator.isCaretAwaited());
    }

    void whoWritesIntoAPageThatDiesGoesOnWriting_data()
    {
        QTest::addColumn<bool>("hadKeyboard");
        QTest::newRow("with the keyboard") << true;
        QTest::newRow("without it") << false;
    }
    void whoWritesIntoAPageThatDiesGoesOnWriting()
    {
        QFETCH(bool, hadKeyboard);
        QTest::ignoreMessage(QtWarningMsg, "Plim: editor page lost: test");
        EditorFixture f;
        f.showNote(noteA, a);
        f.view.seam.setIsFirstResponder(hadKeyboard);
        f.view.lose();
        f.view.seam.setIsFirstResponder(false); // the dead view is taken away
        QCOMPARE(f.coordinator.isCaretAwaited(), hadKeyboard);
        QTRY_COMPARE(f.view.documents.size(), 2);
        f.view.seam.reportLoaded();
        QCOMPARE(f.coordinator.loadedNoteID(), noteA.id);
        QVERIFY(!f.coordinator.isCaretAwaited());
    }

    void aNoteThatNoPageSurvivesDoesNotKeepTheKeyboard()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.view.seam.setIsFirstResponder(true);
        int losses = 0;
        for (; losses == 0 || f.coordinator.isCaretAwaited(); ++losses) {
            QVERIFY(losses < 5);
            QTest::ignoreMessage(QtWarningMsg, "Plim: editor page lost: test");
            f.view.lose();
        }
        QVERIFY(losses > 1);
    }
};

QTEST_GUILESS_MAIN(TestCoordinatorCaret)
#include "tst_coordinator_caret.moc"
