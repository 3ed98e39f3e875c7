#include "tests/editor/EditorFixture.h"

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString a = u"<h1>a</h1>"_s;
const QString b = u"<h1>b</h1>"_s;
const QString c = u"<h1>c</h1>"_s;

QStringList shows(const TestNote &note, const QString &html)
{
    return {Script::show(note.text, html), FakeView::takesKeyboard, Script::focus,
            Script::reportState};
}
} // namespace

class TestCoordinatorSwitching : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theOldNoteIsCollectedBeforeTheNewOneIsShown()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.value.bodyFontSize = 19.0;
        f.update(noteB.id, b);
        QCOMPARE(f.view.takeLog(), QStringList({Script::cancelDebounce, Script::read}));
        QCOMPARE(f.coordinator.loadedNoteID(), std::optional(noteA.id));
        bool wasHandedOutFirst = false;
        connect(&f.coordinator, &RichTextEditorCoordinator::change, this,
                [&] { wasHandedOutFirst = f.view.log().isEmpty(); });
        f.view.answer(u"<h1>a typed</h1>");
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>a typed</h1>"_s}}));
        QVERIFY(wasHandedOutFirst);
        QCOMPARE(f.view.takeLog(),
                 QStringList({Script::show(noteB.text, b), Script::setFontSize(u"19.0"_s),
                              FakeView::takesKeyboard, Script::focus, Script::reportState}));
        QCOMPARE(f.coordinator.loadedNoteID(), std::optional(noteB.id));
        f.view.post(message(noteB, b));
        QCOMPARE(f.changes.size(), 1); // what was pushed is known
    }

    void whateverIsReadTheSwitchCompletes_data()
    {
        QTest::addColumn<QVariant>("answer");
        QTest::addColumn<bool>("isHandedOut");
        QTest::newRow("typed") << QVariant(u"<h1>typed</h1>"_s) << true;
        QTest::newRow("the new note's own text") << QVariant(b) << true;
        QTest::newRow("known") << QVariant(a) << false;
        QTest::newRow("empty") << QVariant(u""_s) << false;
        QTest::newRow("nothing") << QVariant() << false;
        QTest::newRow("no text") << QVariant(5) << false;
        QTest::newRow("bytes") << QVariant("<h1>typed</h1>"_ba) << false;
    }
    void whateverIsReadTheSwitchCompletes()
    {
        QFETCH(QVariant, answer);
        QFETCH(bool, isHandedOut);
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteB.id, b);
        (void)f.view.takeLog();
        f.view.answer(answer);
        QCOMPARE(f.changes, isHandedOut ? Changes({{noteA.id, answer.toString()}}) : Changes());
        QCOMPARE(f.view.takeLog(), shows(noteB, b));
    }

    void anotherNoteAskedForMeanwhileFollows()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteB.id, b);
        f.update(noteC.id, c);
        QCOMPARE(f.view.takeLog(), QStringList({Script::cancelDebounce, Script::read})); // once
        f.view.answer(u"<h1>a typed</h1>");
        QCOMPARE(f.view.takeLog(),
                 shows(noteB, b) + QStringList({Script::cancelDebounce, Script::read}));
        f.view.answer(b);
        QCOMPARE(f.view.takeLog(), shows(noteC, c));
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>a typed</h1>"_s}}));
    }

    void backToTheOldNoteMeanwhile()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteB.id, b);
        f.update(noteA.id, a);
        (void)f.view.takeLog();
        f.view.answer(u"<h1>a typed</h1>");
        // The host has taken the typed text and asks for it since.
        QCOMPARE(f.view.takeLog(),
                 shows(noteB, b) + QStringList({Script::cancelDebounce, Script::read}));
        f.view.answer(b);
        QCOMPARE(f.view.takeLog(), shows(noteA, u"<h1>a typed</h1>"_s));
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>a typed</h1>"_s}}));
    }

    void theNewNoteChangedMeanwhileIsBroughtUpToDate()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteB.id, b);
        f.update(noteB.id, u"<h1>b else</h1>"_s);
        f.view.answer(a);
        QCOMPARE(f.view.questions(), QStringList(Script::isFocused));
        f.view.answer(QVariant(false));
        f.view.answer(b);
        QCOMPARE(f.view.log().last(), Script::setContent(u"<h1>b else</h1>"_s));
        QCOMPARE(f.changes, Changes());
    }

    // The same, but the editor has got the keyboard with the switch and its user types at once.
    void theNewNoteChangedMeanwhileIsNotTypedOver()
    {
        EditorFixture f;
        f.view.getsKeyboardWhenAsked = true;
        f.showNote(noteA, a);
        f.update(noteB.id, b);
        f.update(noteB.id, u"<h1>else b</h1>"_s);
        f.view.answer(a);
        f.view.answer(QVariant(true));
        f.view.post(message(noteB, u"<h1>b typed</h1>"_s));
        QCOMPARE(f.changes, Changes({{noteB.id, u"<h1>else b typed</h1>"_s}}));
    }

    void noNoteAskedForMeanwhile()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteB.id, b);
        f.update({}, {});
        f.view.answer(u"<h1>a typed</h1>");
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>a typed</h1>"_s}}));
        QCOMPARE(f.coordinator.loadedNoteID(), std::optional(noteB.id));
        QVERIFY(f.view.questions().isEmpty());
    }

    void aNewTextSizeMeanwhileFollows()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteB.id, b);
        f.value.bodyFontSize = 12.0;
        f.update(noteB.id, b);
        (void)f.view.takeLog();
        f.view.answer(a);
        QCOMPARE(f.view.takeLog(), shows(noteB, b) + QStringList(Script::setFontSize(u"12.0"_s)));
    }

    void fromNoNoteBackToAnother()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update({}, {});
        f.update(noteB.id, b);
        f.view.answer(u"<h1>a typed</h1>");
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>a typed</h1>"_s}}));
        QCOMPARE(f.coordinator.loadedNoteID(), std::optional(noteB.id));
    }

    void reportsOfTheOldNoteDuringTheSwitchAreItsOwn()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteB.id, b);
        f.view.post(message(noteA, u"<h1>a t</h1>"_s));
        QCOMPARE(f.takeChanges(), Changes({{noteA.id, u"<h1>a t</h1>"_s}}));
        f.view.answer(u"<h1>a t</h1>"); // read after that report: nothing new
        QCOMPARE(f.changes, Changes());
    }

    void reportsOfTheOldNoteAfterTheSwitchAreItsOwn()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteB.id, b);
        f.view.answer(a);
        (void)f.view.takeLog();
        f.view.post(message(noteA, u"<h1>a late</h1>"_s));
        QCOMPARE(f.takeChanges(), Changes({{noteA.id, u"<h1>a late</h1>"_s}}));
        // They say nothing of what the page holds now: it is neither refreshed nor reported again.
        f.view.post(message(noteB, b));
        f.update(noteB.id, b);
        QCOMPARE(f.changes, Changes());
        QVERIFY(f.view.log().isEmpty());
    }

    void aRefreshUnderWayGivesWayToTheSwitch_data()
    {
        QTest::addColumn<int>("answered");
        QTest::newRow("before the caret is known") << 0;
        QTest::newRow("before the words are read") << 1;
    }
    void aRefreshUnderWayGivesWayToTheSwitch()
    {
        QFETCH(int, answered);
        EditorFixture f;
        f.showNote(noteA, a);
        f.update(noteA.id, u"<h1>else a</h1>"_s);
        if (answered == 1)
            f.view.answer(QVariant(false));
        f.update(noteB.id, b);
        (void)f.view.takeLog();
        f.view.answer(answered == 1 ? QVariant(u"<h1>a typed</h1>"_s) : QVariant(false));
        QVERIFY(f.view.log().isEmpty()); // nothing is put into the page before it was read
        f.view.answer(u"<h1>a typed</h1>");
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>else a typed</h1>"_s}})); // no words are lost
        QCOMPARE(f.view.takeLog(), shows(noteB, b));
        QVERIFY(f.view.questions().isEmpty());
    }

    void aKeptBackTextIsNotTypedOverByTheSwitch()
    {
        EditorFixture f;
        f.view.getsKeyboardWhenAsked = true;
        f.showNote(noteA, a);
        f.update(noteA.id, u"<h1>else a</h1>"_s);
        f.view.answer(QVariant(true));
        f.update(noteB.id, b);
        f.view.answer(u"<h1>a typed</h1>");
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>else a typed</h1>"_s}}));
    }

    void theEditorMayGoWhileThePageIsRead()
    {
        FakeView view;
        auto coordinator = std::make_unique<RichTextEditorCoordinator>();
        coordinator->update({.noteID = noteA.id, .html = a});
        coordinator->setWebView(&view.seam);
        QTRY_COMPARE(view.documents.size(), 1);
        view.seam.reportLoaded();
        coordinator->update({.noteID = noteB.id, .html = b});
        (void)view.takeLog();
        coordinator.reset();
        view.answer(u"<h1>late</h1>");
        QVERIFY(view.log().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestCoordinatorSwitching)
#include "tst_coordinator_switching.moc"
