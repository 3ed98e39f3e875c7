#include "sticky/StickyNoteController.h"
#include "tests/page/PageFixture.h"
#include "tests/views/StickyNotes.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// Gives the keyboard to a control, as the Tab key does.
void focusControl(const StickyNotes &s, const QString &name)
{
    s.item(name)->forceActiveFocus(Qt::TabFocusReason);
    QCOMPARE(s.focusedName(), name);
}
} // namespace

// A sticky window without a pointer.
class TestStickyKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { failOnWarnings(); }

    // Where the keyboard is

    void whoOpensANoteCanWriteInIt()
    {
        StickyNotes s;
        s.openPage();
        s.typeLetter('x');
        QTRY_VERIFY(s.note().body.contains(u'x'));
    }

    void whoExpandsANoteCanWriteInIt_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("by a click") << false;
        QTest::newRow("by a key") << true;
    }
    void whoExpandsANoteCanWriteInIt()
    {
        QFETCH(bool, byKey);
        StickyNotes s;
        QQuickWindow *window = s.openPage();
        s.fold();
        QCOMPARE(s.focusedName(), u"sticky.fold"_s);
        if (byKey)
            press(window, Qt::Key_Return);
        else
            click(s.item(u"sticky.fold"_s));
        QTRY_COMPARE(s.host().frame().height(), StickyNotes::noteHeight);
        QTRY_VERIFY(s.isWriting());
        s.typeLetter('x');
    }

    void aNoteThatComesToTheFrontAgainHasTheKeyboardInItsText()
    {
        StickyNotes s;
        s.openPage();
        focusControl(s, u"sticky.pin"_s);
        s.leave();
        s.manager.open(s.id(), s.store, nullptr, std::nullopt);
        QTRY_VERIFY(s.isWriting());
    }

    // The controls go out of sight with the keyboard, and what is not to be seen cannot have it.
    void aCapsuleThatIsTurnedToAgainHasTheKeyboardOnItsButton()
    {
        StickyNotes s;
        QQuickWindow *window = s.openPage();
        s.fold();
        s.leave();
        QTRY_VERIFY(!s.item(u"sticky.fold"_s)->isVisible());
        window->requestActivate();
        QTRY_COMPARE(s.focusedName(), u"sticky.fold"_s);
    }

    void theTabKeyReachesEveryControlAndComesBack()
    {
        StickyNotes s;
        QQuickWindow *window = s.openPage();
        QStringList reached;
        focusControl(s, u"sticky.color"_s);
        do {
            reached << s.focusedName();
            press(window, Qt::Key_Tab);
        } while (reached.size() < 10 && s.focusedName() != "editorWebView"_L1);
        QCOMPARE(reached, (QStringList{u"sticky.color"_s, u"sticky.pin"_s, u"sticky.fold"_s,
                                       u"sticky.close"_s}));
        QTRY_VERIFY(s.isWriting());
    }

    // Tab writes in the text; Shift+Tab at its start, or F6, leaves it.
    void controlsCanBeReachedFromTheText()
    {
        StickyNotes s;
        QQuickWindow *window = s.openPage();
        press(window, Qt::Key_Home, Qt::ControlModifier);
        const QStringList controls{u"sticky.color"_s, u"sticky.pin"_s, u"sticky.fold"_s,
                                   u"sticky.close"_s};
        for (int i = 0; i < 5 && !controls.contains(s.focusedName()); ++i) {
            press(window, Qt::Key_Tab, Qt::ShiftModifier);
            (void)QTest::qWaitFor([&] { return controls.contains(s.focusedName()); });
        }
        QVERIFY2(controls.contains(s.focusedName()), qPrintable(s.focusedName()));
    }

    void controlsOfACapsuleAreReachedInTurn()
    {
        StickyNotes s;
        QQuickWindow *window = s.openPage();
        s.fold();
        QStringList reached;
        for (int i = 0; i < 4; ++i) {
            reached << s.focusedName();
            press(window, Qt::Key_Tab);
        }
        reached.sort();
        QCOMPARE(reached, (QStringList{u"sticky.close"_s, u"sticky.color"_s, u"sticky.fold"_s,
                                       u"sticky.pin"_s}));
    }

    // What keys do

    void keysPressWhatHasTheKeyboard_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Return") << Qt::Key_Return;
        QTest::newRow("Enter") << Qt::Key_Enter;
        QTest::newRow("Space") << Qt::Key_Space;
    }
    void keysPressWhatHasTheKeyboard()
    {
        QFETCH(Qt::Key, key);
        StickyNotes s;
        QQuickWindow *window = s.openPage();
        focusControl(s, u"sticky.pin"_s);
        press(window, key);
        QVERIFY(s.controller().isPinned());
        press(window, key);
        QVERIFY(!s.controller().isPinned());
        focusControl(s, u"sticky.fold"_s);
        press(window, key);
        QVERIFY(s.controller().isCollapsed());
        focusControl(s, u"sticky.color"_s);
        press(window, key);
        QTRY_VERIFY(s.options() && s.options()->isVisible());
        press(s.options(), Qt::Key_Escape);
        QTRY_VERIFY(window->isActive());
        focusControl(s, u"sticky.close"_s);
        press(window, key);
        QVERIFY(!s.isOpen());
    }

    void shortcutsWorkInEitherForm_data()
    {
        QTest::addColumn<QString>("where");
        QTest::newRow("in the text") << u"text"_s;
        QTest::newRow("on a control") << u"control"_s;
        QTest::newRow("in a capsule") << u"capsule"_s;
    }
    void shortcutsWorkInEitherForm()
    {
        QFETCH(QString, where);
        StickyNotes s;
        QQuickWindow *window = s.openPage();
        if (where == "control"_L1)
            focusControl(s, u"sticky.color"_s);
        else if (where == "capsule"_L1)
            s.fold();
        const bool wasCollapsed = s.controller().isCollapsed();

        press(window, Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_VERIFY(s.controller().isPinned());
        QVERIFY(window->flags() & Qt::WindowStaysOnTopHint);
        press(window, Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_VERIFY(!s.controller().isPinned());
        QVERIFY(!(window->flags() & Qt::WindowStaysOnTopHint));

        press(window, Qt::Key_M, Qt::ControlModifier);
        QTRY_COMPARE(s.controller().isCollapsed(), !wasCollapsed);
        press(window, Qt::Key_M, Qt::ControlModifier);
        QTRY_COMPARE(s.controller().isCollapsed(), wasCollapsed);

        press(window, Qt::Key_W, Qt::ControlModifier);
        QTRY_VERIFY(!s.isOpen());
        QCOMPARE(s.note().body, noteNamed(u"Tea"_s).body);
    }

    void takingBackIsTheTextsWhileItHasTheKeyboard()
    {
        StickyNotes s(u"Tea Milk"_s);
        s.open(1);
        QQuickWindow *window = s.openPage(0);
        s.manager.sortRandomly();
        QVERIFY(s.manager.canUndoArrange());
        s.typeLetter('x');
        press(window, Qt::Key_Z, Qt::ControlModifier);
        QTRY_VERIFY(!s.js(u"getComposedHTML()"_s).toString().contains(u'x'));
        QVERIFY(s.manager.canUndoArrange());
        focusControl(s, u"sticky.color"_s);
        press(window, Qt::Key_Z, Qt::ControlModifier);
        QTRY_VERIFY(!s.manager.canUndoArrange());
    }

    // Last words

    void whatWasTypedRightBeforeClosingIsKept_data()
    {
        QTest::addColumn<QString>("by");
        QTest::newRow("Ctrl+W") << u"key"_s;
        QTest::newRow("the control") << u"control"_s;
        QTest::newRow("the desktop") << u"desktop"_s;
    }
    void whatWasTypedRightBeforeClosingIsKept()
    {
        QFETCH(QString, by);
        StickyNotes s;
        QQuickWindow *window = s.openPage();
        for (const char letter : {'q', 'u', 'i', 'c', 'k'})
            QTest::keyClick(window, letter);
        if (by == "key"_L1)
            press(window, Qt::Key_W, Qt::ControlModifier);
        else if (by == "control"_L1)
            click(s.item(u"sticky.close"_s));
        else
            window->close();
        QTRY_VERIFY(!s.isOpen());
        QTRY_VERIFY2(s.note().body.contains(u"quick"_s), qPrintable(s.note().body));
    }

    void lastWordsOfADeletedNoteAreToldToWhoeverWantsThem()
    {
        StickyNotes s;
        QQuickWindow *window = s.openPage();
        QSignalSpy late(&s.manager, &StickyNoteManager::editedAfterDeletion);
        QTest::keyClick(window, 'x');
        s.store.deleteNote(s.id());
        QVERIFY(!s.isOpen());
        QTRY_COMPARE(late.count(), 1);
        QCOMPARE(late[0][0].toUuid(), s.id());
        QVERIFY2(late[0][1].toString().contains(u'x'), qPrintable(late[0][1].toString()));
        QVERIFY(s.store.notes().isEmpty());
    }

    void aNoteThatIsDeletedUntouchedHasNoLastWords()
    {
        StickyNotes s;
        const QPointer<QQuickWindow> window = s.openPage();
        QSignalSpy late(&s.manager, &StickyNoteManager::editedAfterDeletion);
        s.store.deleteNote(s.id());
        QTRY_VERIFY(!window); // it has said farewell
        QCOMPARE(late.count(), 0);
    }
};

PLIM_PAGE_TEST_MAIN(TestStickyKeys)
#include "tst_sticky_keys.moc"
