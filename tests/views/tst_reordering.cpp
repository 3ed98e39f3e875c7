#include "mainwindow/DragOverlayManager.h"
#include "tests/Patience.h"
#include "tests/views/MainWindow.h"

#include <QMouseEvent>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr int rowHeight = 70;

/// Takes the pointer away from whatever follows it.
class Thief : public QObject
{
public:
    explicit Thief(QQuickItem *taker) : m_taker(taker) {}

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::MouseMove) {
            auto *move = static_cast<QMouseEvent *>(event);
            move->setExclusiveGrabber(move->point(0), m_taker);
        }
        return false;
    }

private:
    QQuickItem *m_taker;
};

/// The main window and a pointer that drags rows in its list.
struct Drag : MainWindow {
    explicit Drag(const QString &words) : MainWindow(words) { moveTo(window(), QPoint(800, 600)); }
    ~Drag()
    {
        if (isDown)
            drop();
    }

    [[nodiscard]] QQuickItem *list() const { return item(u"noteList"_s); }
    [[nodiscard]] qreal top() const
    {
        return list()->property("contentY").toReal() - list()->property("originY").toReal();
    }
    [[nodiscard]] SidebarDragState &state() { return *content.reordering()->state(); }
    [[nodiscard]] QQuickWindow *card() const { return window(u"dragOverlay"_s); }
    using MainWindow::window;

    /// A place in the list, in the window.
    [[nodiscard]] QPoint placeAt(int y) const
    {
        return frameOf(list()).topLeft().toPoint() + QPoint(150, y);
    }
    /// A row that still glides to its place is not where its note is.
    [[nodiscard]] bool isAtRest(const QString &heading) const
    {
        const qreal top = list()->property("originY").toReal();
        return row(heading)->y() == top + row(heading)->property("index").toInt() * rowHeight;
    }
    void grab(const QString &heading)
    {
        pictureOf(window()); // drawing puts the rows into their places, and may scroll the list
        if (!QTest::qWaitFor([&] { return isAtRest(heading); }, longEnough))
            qFatal("%s does not come to rest", qPrintable(heading));
        place = frameOf(row(heading)).topLeft().toPoint() + QPoint(150, 30);
        isDown = true;
        QTest::mousePress(window(), Qt::LeftButton, {}, place);
    }
    /// In steps of some pixels, like a hand.
    void carry(QPoint to)
    {
        while (place != to) {
            const QPoint way = to - place;
            place += QPoint(qBound(-9, way.x(), 9), qBound(-9, way.y(), 9));
            QTest::mouseMove(window(), place);
        }
    }
    void drop()
    {
        isDown = false;
        QTest::mouseRelease(window(), Qt::LeftButton, {}, place);
    }
    /// Names of the rows with a line above, and of those with one below.
    [[nodiscard]] QString lines() const
    {
        QStringList lines;
        for (const QString &heading : drawnRows().split(u' ')) {
            if (isDrawn(itemIn(row(heading), u"topLine"_s)))
                lines << u"above "_s + heading;
            if (isDrawn(itemIn(row(heading), u"bottomLine"_s)))
                lines << u"below "_s + heading;
        }
        return lines.join(u", "_s);
    }

    QPoint place;
    bool isDown = false;
};
} // namespace

class TestReordering : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void aRowIsDroppedWhereTheLineIs_data()
    {
        QTest::addColumn<QString>("heading");
        QTest::addColumn<int>("y"); // in the list
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("order");
        const auto row = [](const char *name, const QString &heading, int y, const QString &line,
                            const QString &order) {
            QTest::newRow(name) << heading << y << line << order;
        };
        row("down by one", u"A"_s, 120, u"above C"_s, u"B A C D E"_s);
        row("down by two", u"A"_s, 190, u"above D"_s, u"B C A D E"_s);
        row("to the end", u"A"_s, 330, u"below E"_s, u"B C D E A"_s);
        row("far below the last row", u"B"_s, 480, u"below E"_s, u"A C D E B"_s);
        row("up by one", u"C"_s, 90, u"above B"_s, u"A C B D E"_s);
        row("to the top", u"E"_s, 10, u"above A"_s, u"E A B C D"_s);
        row("above the list", u"D"_s, -60, u"above A"_s, u"D A B C E"_s);
        row("upper half of its neighbour", u"B"_s, 165, u"above C"_s, u"A B C D E"_s);
        row("lower half of its neighbour", u"B"_s, 180, u"above D"_s, u"A C B D E"_s);
        row("its own place", u"C"_s, 165, u"above D"_s, u"A B C D E"_s);
        row("the last to its own place", u"E"_s, 300, u"below D"_s, u"A B C D E"_s);
    }
    void aRowIsDroppedWhereTheLineIs()
    {
        QFETCH(QString, heading);
        QFETCH(int, y);
        QFETCH(QString, line);
        QFETCH(QString, order);
        Drag w(u"A B C D E"_s);
        w.grab(heading);
        w.carry(w.placeAt(240)); // further than a click may stray
        w.carry(w.placeAt(y));
        QCOMPARE(w.lines(), line);
        QCOMPARE(w.storedNotes(), u"A B C D E"_s);
        w.drop();
        QCOMPARE(w.storedNotes(), order);
        QCOMPARE(w.drawnRows(), order);
        QCOMPARE(w.lines(), QString());
        QVERIFY(!w.state().isDragging());
        QCOMPARE(w.openNote(), QString());
    }

    void itsOwnPlaceIsNoChange()
    {
        Drag w(u"A B C"_s);
        QSignalSpy changed(&w.store, &NoteStore::notesChanged);
        w.grab(u"B"_s);
        w.carry(w.placeAt(200));
        w.carry(w.placeAt(100));
        w.drop();
        QCOMPARE(w.storedNotes(), u"A B C"_s);
        QCOMPARE(changed.size(), 0);
    }

    void aSingleRowHasNowhereToGo()
    {
        Drag w(u"A a"_s);
        w.grab(u"A"_s);
        w.carry(w.placeAt(200));
        QCOMPARE(w.lines(), QString());
        w.drop();
        QCOMPARE(w.storedNotes(), u"A a"_s);
    }

    void aClickWithAnUnsteadyHandOpens()
    {
        Drag w(u"A B C"_s);
        w.grab(u"B"_s);
        w.carry(w.place + QPoint(1, 1));
        w.drop();
        QCOMPARE(w.openNote(), u"B"_s);
        QCOMPARE(w.storedNotes(), u"A B C"_s);
    }

    void theDraggedRowIsAGhostAndTheOthersAreNot()
    {
        Drag w(u"A B C"_s);
        w.grab(u"B"_s);
        QCOMPARE(opacityOf(w.row(u"B"_s)), 1.0);
        w.carry(w.placeAt(200));
        QCOMPARE(opacityOf(w.row(u"B"_s)), 0.15);
        QCOMPARE(opacityOf(w.row(u"A"_s)), 1.0);
        w.drop();
        QCOMPARE(opacityOf(w.row(u"B"_s)), 1.0);
    }

    void withASearchTheNoteGoesBeforeTheNeighbourThatIsShown()
    {
        Drag w(u"Xa B Xc D Xe F"_s);
        w.content.filteredNotes()->setSearchText(u"x"_s);
        QTRY_COMPARE(w.drawnRows(), u"Xa Xc Xe"_s);
        w.grab(u"Xe"_s);
        w.carry(w.placeAt(10));
        w.drop();
        QCOMPARE(w.storedNotes(), u"Xe Xa B Xc D F"_s);
        w.grab(u"Xe"_s);
        w.carry(w.placeAt(110));
        w.drop();
        QCOMPARE(w.storedNotes(), u"Xa B Xe Xc D F"_s);
        QCOMPARE(w.drawnRows(), u"Xa Xe Xc"_s);
        w.grab(u"Xa"_s);
        w.carry(w.placeAt(300));
        w.drop();
        QCOMPARE(w.storedNotes(), u"B Xe Xc D F Xa"_s);
    }

    void theArchiveIsReorderedToo()
    {
        Drag w(u"A b C d e"_s);
        w.selectTab(SidebarTab::Archive);
        w.grab(u"e"_s);
        w.carry(w.placeAt(10));
        w.drop();
        QCOMPARE(w.drawnRows(), u"e b d"_s);
        QCOMPARE(w.storedNotes(), u"A e b C d"_s);
    }

    void escGivesTheDragUp()
    {
        Drag w(u"A B C"_s);
        w.grab(u"A"_s);
        w.carry(w.placeAt(200));
        QVERIFY(w.state().isDragging());
        press(w.window(), Qt::Key_Escape);
        QVERIFY(!w.state().isDragging());
        QCOMPARE(w.lines(), QString());
        QVERIFY(!w.card()->isVisible());
        w.carry(w.placeAt(130)); // the button is still down
        QVERIFY(!w.state().isDragging());
        w.drop();
        QCOMPARE(w.storedNotes(), u"A B C"_s);
        w.grab(u"A"_s); // and the next drag is one again
        w.carry(w.placeAt(200));
        w.drop();
        QCOMPARE(w.storedNotes(), u"B C A"_s);
    }

    void losingThePointerGivesTheDragUp()
    {
        Drag w(u"A B C"_s);
        w.grab(u"A"_s);
        w.carry(w.placeAt(200));
        QVERIFY(w.state().isDragging());
        Thief thief(w.item(u"sidebar"_s));
        w.window()->installEventFilter(&thief);
        w.carry(w.place + QPoint(5, 0));
        QVERIFY(!w.state().isDragging());
        QVERIFY(!w.card()->isVisible());
        w.drop();
        QCOMPARE(w.storedNotes(), u"A B C"_s);
    }

    void nothingIsDraggedInSelectionMode()
    {
        Drag w(u"A B C"_s);
        w.content.multiSelection()->setIsSelectionMode(true);
        w.grab(u"A"_s);
        w.carry(w.placeAt(200));
        QVERIFY(!w.state().isDragging());
        QCOMPARE(w.lines(), QString());
        w.drop();
        QCOMPARE(w.storedNotes(), u"A B C"_s);
    }

    void theCardFollowsThePointer()
    {
        Drag w(u"A B C"_s);
        w.window()->setPosition(300, 200);
        const QRectF row = frameOf(w.row(u"B"_s));
        w.grab(u"B"_s);
        QVERIFY(!w.card() || !w.card()->isVisible());
        w.carry(w.placeAt(200));
        QVERIFY(w.card());
        QVERIFY(w.card()->isVisible());
        QCOMPARE(textsIn(w.card()->contentItem()), QStringList{u"B"_s});
        QVERIFY(w.card()->flags() & Qt::WindowTransparentForInput);
        const QPoint grip = QPoint(150, 30); // in the row
        const auto corner = [&] { return DragOverlayManager::shared().corner().toPoint(); };
        QCOMPARE(corner(), w.window()->mapToGlobal(w.place) - grip);
        QCOMPARE(DragOverlayManager::shared().width(), row.width());
        w.carry(w.placeAt(60) + QPoint(300, 0)); // also sideways, out of the sidebar
        QCOMPARE(corner(), w.window()->mapToGlobal(w.place) - grip);
        const QPoint shadow = corner() - w.card()->position();
        QVERIFY(shadow.x() > 0 && shadow.x() == shadow.y());
        w.drop();
        QVERIFY(!w.card()->isVisible());
    }

    void theCardIsNamedInTheLanguage()
    {
        Drag w(u"A B"_s);
        w.content.addNote();
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        w.grab(u"Bez tytułu"_s);
        w.carry(w.placeAt(200));
        QCOMPARE(textsIn(w.card()->contentItem()), QStringList{u"Bez tytułu"_s});
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QCOMPARE(textsIn(w.card()->contentItem()), QStringList{u"Untitled"_s});
        w.drop();
    }

    void aNoteHeldAtTheListsEdgeScrollsIt()
    {
        QStringList words;
        for (int i = 0; i < 200; ++i)
            words << u"N%1"_s.arg(i);
        Drag w(words.join(u' '));
        w.grab(u"N1"_s);
        w.carry(w.placeAt(int(w.list()->height()) - 6));
        QTRY_VERIFY(w.top() > 14 * rowHeight); // without another move of the pointer
        w.carry(w.placeAt(250));
        const qreal rest = w.top();
        QTest::mouseMove(w.window(), w.place + QPoint(1, 0));
        const int above =
            int((rest + 250 + rowHeight / 2.) / rowHeight); // rows with their middle above
        w.drop();
        // The list holds its top where it was, or the rows that are in sight, now that one above
        // them is not there any more; which of them is the view's own affair. It goes nowhere else.
        QVERIFY2(qAbs(w.top() - rest) < rowHeight + 1, qPrintable(QString::number(w.top())));
        // N1 itself was one of those above.
        QCOMPARE(w.store.indexOf(w.id(u"N1"_s)), above - 1);
        QCOMPARE(w.storedNotes().split(u' ')[above], u"N%1"_s.arg(above));

        w.grab(w.store.notes()[above].headingText());
        const QString second = w.store.notes()[above].headingText();
        w.carry(w.placeAt(4));
        QTRY_COMPARE(w.top(), 0);
        w.drop();
        QCOMPARE(w.store.indexOf(w.id(second)), 0);
    }

    void aNoteThatGoesAwayDuringItsDragDoesNoHarm()
    {
        Drag w(u"A B C"_s);
        w.grab(u"B"_s);
        w.carry(w.placeAt(200));
        w.store.deleteNote(w.id(u"B"_s));
        w.carry(w.placeAt(20));
        w.drop();
        QCOMPARE(w.storedNotes(), u"A C"_s);
        QCOMPARE(w.drawnRows(), u"A C"_s);
        QVERIFY(!w.card()->isVisible());
    }

    void rowsThatChangeDuringADragAreMindedAtTheDrop()
    {
        Drag w(u"A B C D"_s);
        w.grab(u"D"_s);
        w.carry(w.placeAt(90));
        QCOMPARE(w.lines(), u"above B"_s);
        w.content.archiveNote(w.id(u"A"_s));
        QCOMPARE(w.lines(), u"above C"_s);
        w.drop();
        QCOMPARE(w.drawnRows(), u"B D C"_s);
    }
};

QTEST_MAIN(TestReordering)
#include "tst_reordering.moc"
