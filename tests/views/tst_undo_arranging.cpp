#include "sticky/StickyNoteManager.h"
#include "tests/sticky/FakeStickyWindow.h"
#include "tests/views/MainWindow.h"

#include <QKeyEvent>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
StickyNoteManager &stickies()
{
    return StickyNoteManager::shared();
}

/// The main window, and two sticky windows that were put in order.
struct Arranged : MainWindow {
    Arranged() : MainWindow(u"A B C"_s)
    {
        moveTo(window(), QPoint(800, 600));
        stickies().setFactory([](const QUuid &noteID, NoteTextSize) {
            auto window = std::make_unique<FakeStickyWindow>();
            window->noteID = noteID;
            return window;
        });
        stickies().open(id(u"A"_s), store, nullptr, StickyFrame{300, 300, 300, 340});
        stickies().open(id(u"B"_s), store, nullptr, StickyFrame{340, 260, 300, 340});
        before = frames();
        stickies().sortRandomly();
        if (!stickies().canUndoArrange() || frames() == before)
            qFatal("The windows were not arranged");
    }
    ~Arranged() { stickies().setFactory({}); }
    Q_DISABLE_COPY_MOVE(Arranged)

    [[nodiscard]] QList<QRect> frames() const
    {
        return {stickies().window(id(u"A"_s))->frame(), stickies().window(id(u"B"_s))->frame()};
    }
    void pressUndo() const { press(window(), Qt::Key_Z, Qt::ControlModifier); }

    QList<QRect> before;
};

/// Writes down the keys that reach an item.
class Keys : public QObject
{
public:
    explicit Keys(QQuickItem *item) { item->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress)
            keys << static_cast<QKeyEvent *>(event)->key();
        return false;
    }
    QList<int> keys;
};
} // namespace

/// Ctrl+Z in the main window takes back what was done to the sticky windows as a whole.
class TestUndoArranging : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        setMoving(false);
    }

    void theWindowsGoBackOnce()
    {
        const Arranged w;
        click(w.row(u"C"_s)); // the keyboard is the list's
        QMetaObject::invokeMethod(w.item(u"noteList"_s)->parentItem(), "enter");
        w.pressUndo();
        QCOMPARE(w.frames(), w.before);
        QVERIFY(!stickies().canUndoArrange());
        w.pressUndo();
        QCOMPARE(w.frames(), w.before);
    }

    void aButtonWithTheKeyboardDoesNotMind()
    {
        const Arranged w;
        w.item(u"archiveTab"_s)->forceActiveFocus(Qt::TabFocusReason);
        w.pressUndo();
        QCOMPARE(w.frames(), w.before);
    }

    void inTheSearchTypingIsTakenBack()
    {
        const Arranged w;
        click(w.item(u"searchField"_s));
        type(w.window(), u"c"_s);
        QCOMPARE(w.item(u"searchField"_s)->property("text").toString(), u"c"_s);
        w.pressUndo();
        QCOMPARE(w.item(u"searchField"_s)->property("text").toString(), QString());
        w.pressUndo(); // there is nothing more to take back
        QVERIFY(stickies().canUndoArrange());
        QVERIFY(w.frames() != w.before);
    }

    void theEditorGetsTheKey()
    {
        const Arranged w;
        click(w.row(u"C"_s));
        QQuickItem *editor = w.item(u"editor"_s);
        QTRY_VERIFY(isDrawn(editor));
        editor->forceActiveFocus(Qt::MouseFocusReason);
        Keys seen(editor);
        w.pressUndo();
        QVERIFY(seen.keys.contains(Qt::Key_Z));
        QVERIFY(stickies().canUndoArrange());
        QVERIFY(w.frames() != w.before);
    }

    void withoutAnArrangementTheKeyIsFree()
    {
        const Arranged w;
        stickies().undoArrange();
        QQuickItem *tab = w.item(u"archiveTab"_s);
        tab->forceActiveFocus(Qt::TabFocusReason);
        Keys seen(tab);
        w.pressUndo();
        QVERIFY(seen.keys.contains(Qt::Key_Z));
    }
};

QTEST_MAIN(TestUndoArranging)
#include "tst_undo_arranging.moc"
