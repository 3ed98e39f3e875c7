#include "editor/EditorPage.h"
#include "tests/editor/EditorFixture.h"

#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString a = u"<h1>a</h1>"_s;
const QString elsewhere = u"<h1>a changed elsewhere</h1>"_s;
} // namespace

class TestCoordinatorShowing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePageIsBuiltOnceWithSizeAndPadding()
    {
        EditorFixture f;
        f.value.bodyFontSize = 19.0;
        f.value.rightPadding = 50.0;
        f.update(noteA.id, a);
        f.coordinator.setWebView(&f.view.seam);
        QVERIFY(f.view.log().isEmpty()); // the view has yet to connect to its requests
        QTRY_COMPARE(f.view.log(), QStringList(FakeView::loads));
        QCOMPARE(f.view.documents, QStringList(editorPageDocument(19.0, 50.0)));
        QVERIFY(!f.view.documents.first().contains(a)); // content comes later
        f.coordinator.setWebView(&f.view.seam);
        f.value.rightPadding = 8.0;
        f.update(noteA.id, a);
        f.view.seam.reportLoaded();
        QCOMPARE(f.view.documents.size(), 1);
    }

    void nothingIsAskedBeforeThePageHasLoaded()
    {
        EditorFixture f;
        f.update(noteB.id, u"<h1>b</h1>"_s);
        f.coordinator.setWebView(&f.view.seam);
        QTRY_COMPARE(f.view.log(), QStringList(FakeView::loads));
        (void)f.view.takeLog();
        f.update(noteB.id, u"<h1>bb</h1>"_s);
        f.update(noteA.id, a);
        f.view.seam.setIsFirstResponder(true);
        f.view.seam.setIsFirstResponder(false);
        QVERIFY(f.view.log().isEmpty());
        QVERIFY(!f.coordinator.loadedNoteID());
        f.view.seam.reportLoaded();
        QCOMPARE(f.view.log().first(), Script::show(noteA.text, a)); // the last one asked for
    }

    void theFirstNote()
    {
        EditorFixture f;
        const QSignalSpy shown(&f.coordinator, &RichTextEditorCoordinator::shown);
        f.value.bodyFontSize = 16.0;
        f.update(noteA.id, a);
        f.coordinator.setWebView(&f.view.seam);
        QTRY_COMPARE(f.view.log(), QStringList(FakeView::loads));
        (void)f.view.takeLog();
        f.view.seam.reportLoaded();
        QCOMPARE(f.view.takeLog(),
                 QStringList({Script::show(noteA.text, a), Script::setFontSize(u"16.0"_s),
                              FakeView::takesKeyboard, Script::focus, Script::reportState}));
        QCOMPARE(f.coordinator.loadedNoteID(), std::optional(noteA.id));
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown[0][0].toUuid(), noteA.id);
        QCOMPARE(f.changes, Changes());
    }

    void theFirstNoteMayComeAfterThePage()
    {
        EditorFixture f;
        f.load();
        QCOMPARE(f.view.takeLog(), QStringList({FakeView::loads, Script::setFontSize(u"15.0"_s)}));
        f.update({}, u"no note"_s);
        QVERIFY(f.view.log().isEmpty());
        f.update(noteA.id, a);
        QCOMPARE(f.view.takeLog(),
                 QStringList({Script::show(noteA.text, a), FakeView::takesKeyboard, Script::focus,
                              Script::reportState}));
    }

    void contentIsQuoted()
    {
        EditorFixture f;
        f.update(noteA.id, u"<h1>it's \"a\\b\"\n</h1>"_s + QChar(0x2028));
        f.load();
        QCOMPARE(f.view.log()[1], u"window.setCurrentID(\"%1\");\n"_s.arg(noteA.text) +
                                      u"window.setContent(\"<h1>it's \\\"a\\\\b\\\"\\n</h1>\\u"_s +
                                      u"2028\");"_s);
    }

    void idsAreWrittenInUpperCase()
    {
        EditorFixture f;
        f.update(QUuid(u"{0f8fad5b-d9cb-469f-a165-70867728950e}"_s), a);
        f.load();
        QVERIFY(f.view.log()[1].startsWith(
            u"window.setCurrentID(\"0F8FAD5B-D9CB-469F-A165-70867728950E\");"_s));
    }

    void theSameAgainAsksNothing()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteA.id, a);
        f.view.seam.setIsFirstResponder(true);
        f.view.seam.setIsFirstResponder(false);
        QVERIFY(f.view.log().isEmpty());
    }

    void theTextSizeIsSentOncePerSize()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        for (const double size : {15.0, 19.0, 19.0, 12.5, 12.5, 19.0}) {
            f.value.bodyFontSize = size;
            f.update(noteA.id, a);
        }
        QCOMPARE(f.view.takeLog(),
                 QStringList({Script::setFontSize(u"19.0"_s), Script::setFontSize(u"12.5"_s),
                              Script::setFontSize(u"19.0"_s)}));
    }

    void theTextSizeDoesNotWaitForTheAnswer()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.value.bodyFontSize = 12.0;
        f.update(noteA.id, elsewhere);
        QCOMPARE(f.view.takeLog(),
                 QStringList({Script::isFocused, Script::setFontSize(u"12.0"_s)}));
    }

    void noNoteLeavesThePageAsItIs()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update({}, {});
        QVERIFY(f.view.log().isEmpty());
        QCOMPARE(f.coordinator.loadedNoteID(), std::optional(noteA.id));
        f.update(noteA.id, a); // asked for again, and still there
        QVERIFY(f.view.log().isEmpty());
    }

    void whoTypesIsNotDisturbed_data()
    {
        QTest::addColumn<QVariant>("pageHasCaret");
        QTest::addColumn<bool>("viewHasKeyboard");
        QTest::addColumn<bool>("isReplaced");
        QTest::newRow("typing") << QVariant(true) << true << false;
        QTest::newRow("the window was left") << QVariant(true) << false << true;
        QTest::newRow("the caret is nowhere") << QVariant(false) << true << true;
        QTest::newRow("neither") << QVariant(false) << false << true;
        QTest::newRow("no answer") << QVariant() << true << true;
        QTest::newRow("a number") << QVariant(1) << true << true;
        QTest::newRow("a word") << QVariant(u"true"_s) << true << true;
    }
    void whoTypesIsNotDisturbed()
    {
        QFETCH(QVariant, pageHasCaret);
        QFETCH(bool, viewHasKeyboard);
        QFETCH(bool, isReplaced);
        EditorFixture f;
        f.showNote(noteA, a);
        f.view.seam.setIsFirstResponder(viewHasKeyboard);
        f.update(noteA.id, elsewhere);
        QCOMPARE(f.view.takeLog(), QStringList(Script::isFocused));
        f.view.answer(pageHasCaret);
        if (isReplaced) {
            // No words are left behind, none are reported late.
            QCOMPARE(f.view.takeLog(), QStringList({Script::cancelDebounce, Script::read}));
            f.view.answer(a);
            QCOMPARE(f.view.takeLog(), QStringList(Script::setContent(elsewhere)));
        }
        QVERIFY(f.view.questions().isEmpty());
        QVERIFY(f.view.log().isEmpty());
        QCOMPARE(f.changes, Changes());
        // The page confirms what it got; that is no news.
        f.view.post(message(noteA, isReplaced ? elsewhere : a));
        QCOMPARE(f.changes, Changes());
    }

    void theNewestTextIsTakenWhenTheAnswerComes()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteA.id, u"<h1>one</h1>"_s);
        f.update(noteA.id, u"<h1>two</h1>"_s);
        QCOMPARE(f.view.questions(), QStringList({Script::isFocused, Script::isFocused}));
        f.view.answer(QVariant(false));
        f.view.answer(QVariant(false));
        f.view.answer(a);
        f.view.answer(a);
        QVERIFY(f.view.questions().isEmpty());
        QCOMPARE(f.view.log().count(Script::setContent(u"<h1>two</h1>"_s)), 1);
        QVERIFY(!f.view.log().contains(Script::setContent(u"<h1>one</h1>"_s)));
    }

    void takenBackWhileAskingIsLeftAlone()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteA.id, elsewhere);
        f.update(noteA.id, a);
        f.view.answer(QVariant(false));
        QCOMPARE(f.view.takeLog(), QStringList(Script::isFocused));
    }

    void wordsNotYetReportedSurviveARefresh()
    {
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1><p>b</p>"_s);
        f.update(noteA.id, u"<h1>a else</h1><p>b</p>"_s);
        f.view.answer(QVariant(true)); // the caret stayed in the page, the keyboard went
        f.view.answer(u"<h1>a</h1><p>b typed</p>");
        const QString both = u"<h1>a else</h1><p>b typed</p>"_s;
        QCOMPARE(f.changes, Changes({{noteA.id, both}}));
        QCOMPARE(f.view.log().count(Script::setContent(both)), 1);
        QCOMPARE(f.view.log().last(), Script::setContent(both));
    }

    void unreadableWordsDoNotHinderARefresh()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteA.id, elsewhere);
        f.view.answer(QVariant(false));
        f.view.answer(QVariant());
        QCOMPARE(f.view.log().last(), Script::setContent(elsewhere));
        QCOMPARE(f.changes, Changes());
    }

    void whatWasKeptBackComesWhenTheKeyboardLeaves()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.view.seam.setIsFirstResponder(true);
        f.update(noteA.id, elsewhere);
        f.view.answer(QVariant(true));
        (void)f.view.takeLog();
        f.view.seam.setIsFirstResponder(false);
        QCOMPARE(f.view.takeLog(), QStringList(Script::isFocused));
        f.view.answer(QVariant(true));
        f.view.answer(a);
        QCOMPARE(f.view.takeLog(), QStringList({Script::cancelDebounce, Script::read,
                                                Script::setContent(elsewhere)}));
        QCOMPARE(f.changes, Changes());
    }

    void typedOverAnOlderTextBothAreKept()
    {
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1><p>b</p>"_s);
        f.view.seam.setIsFirstResponder(true);
        f.update(noteA.id, u"<h1>a else</h1><p>b</p>"_s);
        f.view.answer(QVariant(true));
        (void)f.view.takeLog();
        f.view.post(message(noteA, u"<h1>a</h1><p>b t</p>"_s));
        f.view.post(message(noteA, u"<h1>a</h1><p>b ty</p>"_s));
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>a else</h1><p>b t</p>"_s},
                                     {noteA.id, u"<h1>a else</h1><p>b ty</p>"_s}}));
        // The page is not touched while its user types …
        while (!f.view.questions().isEmpty())
            f.view.answer(QVariant(true));
        for (const QString &script : f.view.takeLog())
            QCOMPARE(script, Script::isFocused);
        // … and gets everything afterwards.
        f.view.seam.setIsFirstResponder(false);
        f.view.answer(QVariant(true));
        f.view.answer(u"<h1>a</h1><p>b ty</p>");
        QCOMPARE(f.view.log().last(), Script::setContent(u"<h1>a else</h1><p>b ty</p>"_s));
        QCOMPARE(f.changes.size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestCoordinatorShowing)
#include "tst_coordinator_showing.moc"
