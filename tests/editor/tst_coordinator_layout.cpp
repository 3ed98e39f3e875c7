#include "tests/editor/EditorFixture.h"

using namespace Qt::Literals::StringLiterals;

/// A page that may have stayed blank is laid out again, and nothing else is done to it.
class TestCoordinatorLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theViewIsLaidOutAndThenThePage()
    {
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1>"_s);
        f.coordinator.layOutAgain();
        QCOMPARE(f.view.takeLog(), QStringList({FakeView::laysOutAgain, Script::layOut}));
        QVERIFY(f.view.questions().isEmpty()); // nobody waits for a result
        QCOMPARE(f.changes, Changes());
    }

    void aPageThatShowsNoNoteIsLaidOutAsWell()
    {
        EditorFixture f;
        f.load();
        (void)f.view.takeLog();
        f.coordinator.layOutAgain();
        QCOMPARE(f.view.takeLog(), QStringList({FakeView::laysOutAgain, Script::layOut}));
    }

    void thereIsNothingToLayOutWithoutAPage()
    {
        EditorFixture f;
        f.coordinator.layOutAgain(); // no view
        f.coordinator.setWebView(&f.view.seam);
        f.coordinator.layOutAgain(); // none yet
        QTRY_COMPARE(f.view.log(), QStringList(FakeView::loads));
        f.coordinator.layOutAgain(); // on its way
        QCOMPARE(f.view.log(), QStringList(FakeView::loads));
        f.view.seam.reportLoaded();
        QTest::ignoreMessage(QtWarningMsg, "Plim: editor page lost: test");
        f.view.lose();
        f.coordinator.layOutAgain(); // gone
        QVERIFY(!f.view.log().contains(FakeView::laysOutAgain));
        QVERIFY(!f.view.log().contains(Script::layOut));
    }

    void theControllerPassesItOn()
    {
        EditorController controller;
        controller.layOutAgain(); // of nobody
        EditorFixture f;
        f.coordinator.setController(&controller);
        f.showNote(noteA, u"<h1>a</h1>"_s);
        controller.layOutAgain();
        QCOMPARE(f.view.takeLog(), QStringList({FakeView::laysOutAgain, Script::layOut}));
    }
};

QTEST_GUILESS_MAIN(TestCoordinatorLayout)
#include "tst_coordinator_layout.moc"
