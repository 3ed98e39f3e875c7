#include "sticky/StickyNoteFactory.h"
#include "tests/page/PageFixture.h"
#include "tests/views/StickyNotes.h"
#include "tests/views/WaitFor.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr double lowest = 56; ///< too low for the text

/// Each longer than its window, by more and more.
NoteArray longNotes(int count)
{
    NoteArray notes;
    for (int i = 0; i < count; ++i) {
        Note note = noteNamed(u"Note"_s);
        note.body = u"<h1>Note</h1>"_s + u"<p>a line</p>"_s.repeated(9 + 3 * i);
        notes.append(note);
    }
    return notes;
}

struct LongNotes : StickyNotes {
    explicit LongNotes(int count = 1) : StickyNotes(longNotes(count)), count(count) {}

    /// As the list's button does it.
    void openAll()
    {
        QList<QUuid> ids;
        for (int i = 0; i < count; ++i)
            ids << id(i);
        manager.openAll(ids, store, nullptr);
        settleAll();
    }
    /// The program ends and starts again.
    void startAgain()
    {
        manager.prepareForTermination();
        manager.setFactory(stickyNoteFactory(engine, store, manager));
        manager.restore(store);
        settleAll();
    }
    void settleAll() const
    {
        const auto areSeen = [this] {
            for (int i = 0; i < count; ++i) {
                if (!isOpen(i) || !window(i)->isExposed())
                    return false;
            }
            return true;
        };
        QVERIFY(waitFor(areSeen));
        for (int i = 0; i < count; ++i)
            settle(i);
    }

    /// How far the text is scrolled, and how much of it there is below its region; in pixels.
    [[nodiscard]] int scrolled(int index = 0) const
    {
        return js(u"bodyEl.scrollTop"_s, index).toInt();
    }
    [[nodiscard]] int hidden(int index = 0) const
    {
        return js(u"bodyEl.scrollHeight - bodyEl.clientHeight"_s, index).toInt();
    }
    void scrollTo(int place) const
    {
        (void)js(u"bodyEl.scrollTop = %1; null"_s.arg(place));
        QCOMPARE(scrolled(), place);
    }
    /// Waits until the page has the height that goes with the card's.
    void setHeight(int height)
    {
        const QRect frame = host().frame();
        host().setFrame(QRect(frame.topLeft(), QSize(frame.width(), height)),
                        StickyWindow::Motion::Immediate);
        const QQuickItem *page = item(u"editorWebView"_s);
        QVERIFY(waitFor([&] { return js(u"innerHeight"_s).toInt() == qRound(page->height()); }));
    }
    [[nodiscard]] bool hasCaretAtEnd(int index = 0) const
    {
        return js(u"(() => { const rest = document.createRange();"
                  "rest.setStart(getSelection().focusNode, getSelection().focusOffset);"
                  "rest.setEnd(bodyEl, bodyEl.childNodes.length);"
                  "return bodyEl.contains(getSelection().focusNode) && rest.toString() === ''; })()"_s,
                  index)
            .toBool();
    }

    int count;
};

/// A note that has just been opened, and does not fit into its window.
void verifyAtTop(const LongNotes &s, int index = 0)
{
    QVERIFY(s.hidden(index) > 0);
    QCOMPARE(s.scrolled(index), 0);
    QCOMPARE(
        s.js(u"document.scrollingElement.scrollTop + document.body.scrollTop"_s, index).toInt(), 0);
    QVERIFY(s.hasCaretAtEnd(index));
}
} // namespace

// Where in its text a note is.
class TestStickyScrolling : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { failOnWarnings(); }

    void aNoteOpensAtItsTopWithTheCaretAtItsEnd()
    {
        LongNotes s;
        s.openPage();
        verifyAtTop(s);
    }

    // Their pages get their text while nobody sees them, and have no size then.
    void notesThatComeTogetherAreAtTheirTop()
    {
        LongNotes s(5);
        s.openAll();
        for (int i = 0; i < s.count; ++i)
            verifyAtTop(s, i);
    }

    void notesThatComeBackAreAtTheirTop()
    {
        LongNotes s(3);
        s.openAll();
        s.startAgain();
        for (int i = 0; i < s.count; ++i)
            verifyAtTop(s, i);
    }

    void aCapsuleThatIsOpenedForTheFirstTimeIsAtItsTop()
    {
        LongNotes s;
        s.open(0, StickyFrame{400, 900, 300, lowest});
        s.settle();
        click(s.item(u"sticky.fold"_s));
        QTRY_COMPARE(s.host().frame().height(), StickyNotes::noteHeight);
        QTRY_VERIFY(s.isWriting());
        s.setHeight(StickyNotes::noteHeight);
        verifyAtTop(s);
    }

    void foldingKeepsThePlace_data()
    {
        QTest::addColumn<int>("place");
        QTest::newRow("at the top") << 0;
        QTest::newRow("where its user scrolled") << 10;
    }
    void foldingKeepsThePlace()
    {
        QFETCH(int, place);
        LongNotes s;
        s.openPage();
        s.scrollTo(place);
        s.fold();
        click(s.item(u"sticky.fold"_s));
        QTRY_COMPARE(s.host().frame().height(), StickyNotes::noteHeight);
        QTRY_VERIFY(s.isWriting());
        s.setHeight(StickyNotes::noteHeight);
        QCOMPARE(s.scrolled(), place);
    }

    void anotherHeightKeepsTheTop_data()
    {
        QTest::addColumn<int>("height");
        QTest::newRow("lower") << 200;
        QTest::newRow("higher") << 360;
    }
    void anotherHeightKeepsTheTop()
    {
        QFETCH(int, height);
        LongNotes s(4);
        s.openPage(3);
        const QRect frame = s.host(3).frame();
        s.host(3).setFrame(QRect(frame.topLeft(), QSize(frame.width(), height)),
                           StickyWindow::Motion::Immediate);
        const QQuickItem *page = s.item(u"editorWebView"_s, 3);
        QVERIFY(
            waitFor([&] { return s.js(u"innerHeight"_s, 3).toInt() == qRound(page->height()); }));
        verifyAtTop(s, 3);
    }

    void whoTypesSeesWhatIsTyped()
    {
        LongNotes s;
        s.openPage();
        s.typeLetter('x');
        QVERIFY(waitFor([&] { return s.scrolled() > 0; }));
    }

    void whoComesBackFromTheControlsFindsThePlace()
    {
        LongNotes s;
        QQuickWindow *window = s.openPage();
        s.scrollTo(10);
        s.item(u"sticky.close"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(window, Qt::Key_Tab);
        QVERIFY(waitFor([&] { return s.isWriting() && s.hasCaretAtEnd(); }));
        QCOMPARE(s.scrolled(), 10);
    }
};

PLIM_PAGE_TEST_MAIN(TestStickyScrolling)
#include "tst_sticky_scrolling.moc"
