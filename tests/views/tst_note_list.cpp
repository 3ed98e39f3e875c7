#include "shell/InputModality.h"
#include "tests/views/MainWindow.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QString numbered(int count)
{
    QStringList words;
    for (int i = 0; i < count; ++i)
        words << u"N%1"_s.arg(i);
    return words.join(u' ');
}

/// The main window, with the keyboard in its list.
struct List : MainWindow {
    explicit List(const QString &words) : MainWindow(words)
    {
        moveTo(window(), QPoint(800, 600));
        QMetaObject::invokeMethod(list()->parentItem(), "enter");
        if (!list()->hasActiveFocus())
            qFatal("The list does not take the keyboard");
    }

    [[nodiscard]] QQuickItem *list() const { return item(u"noteList"_s); }
    [[nodiscard]] qreal top() const { return list()->property("contentY").toReal(); }
    void scrollTo(qreal top) const { list()->setProperty("contentY", top); }
    /// The heading of the row with the keyboard.
    [[nodiscard]] QString current() const
    {
        auto *row = list()->property("currentItem").value<QQuickItem *>();
        return row ? row->property("titleText").toString() : QString();
    }
    /// The row with the keyboard is in sight as a whole.
    [[nodiscard]] bool seesCurrent() const
    {
        auto *row = list()->property("currentItem").value<QQuickItem *>();
        return row && frameOf(list()).contains(frameOf(row));
    }
    /// Each row in sight, and where it is in the window.
    [[nodiscard]] QMap<QString, qreal> places() const
    {
        QMetaObject::invokeMethod(list(), "forceLayout");
        QMap<QString, qreal> places;
        visitItems(list(), [&](QQuickItem *item) {
            if (item->objectName() == u"noteRow" && isDrawn(item) &&
                frameOf(list()).intersects(frameOf(item)))
                places[item->property("titleText").toString()] = frameOf(item).top();
        });
        return places;
    }
};
} // namespace

class TestNoteList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        setMoving(false);
    }

    void arrowsMoveTheCurrentRowWithoutOpeningIt()
    {
        const List w(u"A B C"_s);
        QCOMPARE(w.current(), u"A"_s);
        press(w.window(), Qt::Key_Down);
        press(w.window(), Qt::Key_Down);
        press(w.window(), Qt::Key_Down); // there is nothing further
        QCOMPARE(w.current(), u"C"_s);
        press(w.window(), Qt::Key_Up);
        QCOMPARE(w.current(), u"B"_s);
        QCOMPARE(w.openNote(), QString());
        press(w.window(), Qt::Key_Return);
        QCOMPARE(w.openNote(), u"B"_s);
        QCOMPARE(w.current(), u"B"_s);
        QVERIFY(w.list()->hasActiveFocus());
    }

    void wholePagesAndEnds()
    {
        const List w(numbered(100));
        press(w.window(), Qt::Key_End);
        QCOMPARE(w.current(), u"N99"_s);
        QTRY_VERIFY(w.seesCurrent());
        press(w.window(), Qt::Key_Home);
        QCOMPARE(w.current(), u"N0"_s);
        QTRY_VERIFY(w.seesCurrent());
        press(w.window(), Qt::Key_PageDown);
        const int page = w.current().mid(1).toInt();
        QVERIFY(page >= 4 && page < w.list()->height() / 70);
        QTRY_VERIFY(w.seesCurrent());
        press(w.window(), Qt::Key_PageDown);
        QCOMPARE(w.current(), u"N%1"_s.arg(2 * page));
        press(w.window(), Qt::Key_PageUp);
        press(w.window(), Qt::Key_PageUp);
        press(w.window(), Qt::Key_PageUp);
        QCOMPARE(w.current(), u"N0"_s);
        for (int i = 0; i < 60; ++i)
            press(w.window(), Qt::Key_PageDown);
        QCOMPARE(w.current(), u"N99"_s);
        QTRY_VERIFY(w.seesCurrent());
    }

    void anEmptyListBearsEveryKey()
    {
        List w(u"A"_s);
        w.store.deleteNote(w.id(u"A"_s));
        for (const Qt::Key key :
             {Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown,
              Qt::Key_Return, Qt::Key_Space, Qt::Key_Delete})
            press(w.window(), key);
        press(w.window(), Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(w.drawnRows(), QString());
        QVERIFY(isDrawn(w.item(u"emptyList"_s)));
    }

    void spaceTicksInSelectionModeOnly()
    {
        List w(u"A B"_s);
        press(w.window(), Qt::Key_Space);
        QCOMPARE(w.content.multiSelection()->selectedIDs().count(), 0);
        w.content.multiSelection()->setIsSelectionMode(true);
        press(w.window(), Qt::Key_Space);
        press(w.window(), Qt::Key_Down);
        press(w.window(), Qt::Key_Return);
        QCOMPARE(w.content.multiSelection()->selectedIDs().count(), 2);
        press(w.window(), Qt::Key_Space);
        QVERIFY(w.content.multiSelection()->selectedIDs().contains(w.id(u"A"_s)));
        QCOMPARE(w.content.multiSelection()->selectedIDs().count(), 1);
        QCOMPARE(w.openNote(), QString());
    }

    void deleteAsks()
    {
        const List w(u"A B"_s);
        press(w.window(), Qt::Key_Down);
        press(w.window(), Qt::Key_Delete);
        QTRY_VERIFY(w.item(u"cancelDelete"_s)->hasActiveFocus());
        QCOMPARE(w.storedNotes(), u"A B"_s);
        click(w.item(u"confirmDelete"_s));
        QCOMPARE(w.storedNotes(), u"A"_s);
        QTRY_VERIFY(w.list()->hasActiveFocus());
    }

    void altAndArrowsMoveTheNote()
    {
        const List w(u"A B C"_s);
        press(w.window(), Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(w.storedNotes(), u"B A C"_s);
        QCOMPARE(w.current(), u"A"_s);
        press(w.window(), Qt::Key_Down, Qt::AltModifier);
        press(w.window(), Qt::Key_Down, Qt::AltModifier); // it is the last one already
        QCOMPARE(w.storedNotes(), u"B C A"_s);
        QCOMPARE(w.drawnRows(), u"B C A"_s);
        press(w.window(), Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(w.storedNotes(), u"B A C"_s);
        QCOMPARE(w.current(), u"A"_s);
        QCOMPARE(w.openNote(), QString());
    }

    void aMovedNoteStaysInSight()
    {
        const List w(numbered(40));
        const auto isIn = [&](int row) {
            return w.store.indexOf(w.id(u"N0"_s)) == row && w.current() == u"N0"_s &&
                   w.list()->property("currentIndex").toInt() == row;
        };
        for (int i = 0; i < 20; ++i) {
            press(w.window(), Qt::Key_Down, Qt::AltModifier);
            QTRY_VERIFY(isIn(i + 1)); // as slowly as anybody presses a key
        }
        QTRY_VERIFY(w.seesCurrent());
        for (int i = 20; i > 0; --i) {
            press(w.window(), Qt::Key_Up, Qt::AltModifier);
            QTRY_VERIFY(isIn(i - 1));
        }
        QTRY_VERIFY(w.seesCurrent());
    }

    void theWheelScrolls()
    {
        const List w(numbered(40));
        const QPoint place = middleOf(w.list());
        const qreal start = w.top();
        turnWheel(w.window(), place, -2);
        QCOMPARE(w.top(), start + 120);
        turnWheel(w.window(), place, 9);
        QCOMPARE(w.top(), start); // and not beyond the end
        turnWheel(w.window(), place, -999);
        QMetaObject::invokeMethod(w.list(), "forceLayout");
        QTRY_VERIFY(w.places().contains(u"N39"_s));
        QCOMPARE(w.places()[u"N39"_s] + 70, frameOf(w.list()).bottom());
    }

    void aShortListDoesNotScroll()
    {
        const List w(u"A B"_s);
        const auto places = w.places();
        turnWheel(w.window(), middleOf(w.list()), -3);
        turnWheel(w.window(), middleOf(w.list()), 5);
        QCOMPARE(w.places(), places);
    }

    void aChangeElsewhereLeavesTheRowsWhereTheyAre_data()
    {
        QTest::addColumn<QString>("change");
        for (const QString &change :
             {u"edit above"_s, u"edit in sight"_s, u"edit below"_s, u"archive above"_s,
              u"archive below"_s, u"delete above"_s, u"move above"_s, u"move below"_s,
              u"restore above"_s, u"add on top"_s})
            QTest::newRow(qPrintable(change)) << change;
    }
    void aChangeElsewhereLeavesTheRowsWhereTheyAre()
    {
        QFETCH(QString, change);
        List w(numbered(60) + u" a"_s);
        w.store.moveNote(w.id(u"a"_s), w.id(u"N2"_s)); // an archived one among the first
        w.scrollTo(20 * 70 + 13);
        const auto before = w.places();
        QVERIFY(before.contains(u"N21"_s));
        const QString where = change.section(u' ', 1);
        const QString heading = where == u"above"   ? u"N3"_s
                                : where == u"below" ? u"N50"_s
                                                    : u"N22"_s;
        if (change.startsWith(u"edit"_s))
            w.content.applyEdit(w.id(heading), u"<h1>%1</h1><p>edited</p>"_s.arg(heading));
        else if (change.startsWith(u"archive"_s))
            w.content.archiveNote(w.id(heading));
        else if (change.startsWith(u"delete"_s))
            w.content.deleteNote(w.id(heading));
        else if (change.startsWith(u"move"_s))
            w.content.moveNoteBy(w.id(heading), 3);
        else if (change.startsWith(u"restore"_s))
            w.content.archiveNote(w.id(u"a"_s));
        else
            w.store.addNote();
        QCOMPARE(w.places(), before);
    }

    void anEditedRowShowsItsNewTextInPlace()
    {
        List w(numbered(60));
        w.scrollTo(20 * 70 + 13);
        auto places = w.places();
        w.content.applyEdit(w.id(u"N22"_s), u"<h1>Other</h1>"_s);
        places[u"Other"_s] = places.take(u"N22"_s);
        QTRY_COMPARE(w.places(), places);
    }

    void whatIsArchivedInSightLeavesARowsRoomAlone()
    {
        List w(numbered(60));
        w.scrollTo(20 * 70);
        const auto before = w.places();
        w.content.archiveNote(w.id(u"N23"_s));
        const auto after = w.places();
        QCOMPARE(after[u"N20"_s], before[u"N20"_s]);
        QCOMPARE(after[u"N22"_s], before[u"N22"_s]);
        QCOMPARE(after[u"N24"_s], before[u"N23"_s]);
    }

    void aRemovedRowIsNotDrawnAnyMore()
    {
        List w(u"Apple Banana Cherry Apricot Blueberry"_s);
        w.content.filteredNotes()->setSearchText(u"ap"_s);
        QTRY_COMPARE(w.drawnRows(), u"Apple Apricot"_s);
        w.content.filteredNotes()->setSearchText(u"b"_s); // "about" is in every note
        QTRY_COMPARE(w.drawnRows(), u"Apple Banana Cherry Apricot Blueberry"_s);
        w.content.filteredNotes()->setSearchText(u"nothing of this"_s);
        QTRY_COMPARE(w.drawnRows(), QString());
        w.content.filteredNotes()->setSearchText({});
        QTRY_COMPARE(w.drawnRows(), u"Apple Banana Cherry Apricot Blueberry"_s);
        w.content.archiveNote(w.id(u"Cherry"_s));
        QCOMPARE(w.drawnRows(), u"Apple Banana Apricot Blueberry"_s);
        w.content.deleteNote(w.id(u"Blueberry"_s));
        QCOMPARE(w.drawnRows(), u"Apple Banana Apricot"_s);
        w.selectTab(SidebarTab::Archive);
        QCOMPARE(w.drawnRows(), u"Cherry"_s);
        w.selectTab(SidebarTab::Notes);
        QCOMPARE(w.drawnRows(), u"Apple Banana Apricot"_s);
    }

    void belowTheLastRowThereIsNothing()
    {
        List w(u"Apple Banana Cherry Apricot Blueberry"_s);
        const QRect below(30, int(frameOf(w.list()).top()) + 3 * 70, 300, 150);
        const auto colours = [&] {
            const QImage picture = pictureOf(w.window()).copy(below);
            QSet<QRgb> colours;
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x)
                    colours.insert(picture.pixel(x, y));
            }
            return colours.size();
        };
        const auto full = colours();
        w.content.filteredNotes()->setSearchText(u"ap"_s);
        QTRY_COMPARE(w.drawnRows(), u"Apple Apricot"_s);
        QTRY_VERIFY(colours() < 16); // the ground's grain alone
        QVERIFY(full > 16);
    }

    void rowsThatAreUsedAgainShowTheirOwnNote()
    {
        List w(numbered(100));
        w.content.selectNote(w.id(u"N2"_s));
        w.pretendSticky({u"N3"_s});
        for (const qreal top : {0., 3000., 700., 5000., 0., 2500., 40.}) {
            w.scrollTo(top);
            const auto places = w.places();
            for (auto place = places.cbegin(); place != places.cend(); ++place) {
                QQuickItem *row = w.row(place.key());
                QCOMPARE(place.value() - frameOf(w.list()).top(),
                         place.key().mid(1).toInt() * 70 - top);
                QCOMPARE(row->property("isSelected").toBool(), place.key() == u"N2");
                QCOMPARE(row->property("isSticky").toBool(), place.key() == u"N3");
                QCOMPARE(textsIn(row).constFirst(), place.key());
            }
        }
    }

    void aRowGlidesToItsNewPlace()
    {
        List w(u"A B C D"_s);
        setMoving(true);
        QQuickItem *row = w.row(u"A"_s);
        QList<qreal> places;
        connect(row, &QQuickItem::yChanged, this, [&] { places << row->y(); });
        w.content.moveNoteBy(w.id(u"A"_s), 3);
        QTRY_COMPARE(w.drawnRows(), u"B C D A"_s);
        QTRY_COMPARE(row->y(), 210);
        QVERIFY(places.size() > 2);
    }

    void theCurrentRowOffersItsButtonsAndTabReachesThem()
    {
        const List w(u"A B C"_s);
        press(w.window(), Qt::Key_Down);
        QVERIFY(InputModality::shared().isKeyboard());
        QTRY_VERIFY(isDrawn(w.rowButton(u"B"_s, u"rowDelete"_s)));
        QVERIFY(!isDrawn(w.rowButton(u"A"_s, u"rowDelete"_s)));
        QStringList walk;
        for (int i = 0; i < 3; ++i) {
            press(w.window(), Qt::Key_Tab);
            walk << w.focusedName();
        }
        QCOMPARE(walk, (QStringList{u"rowSticky"_s, u"rowArchive"_s, u"rowDelete"_s}));
        QVERIFY(isDrawn(w.rowButton(u"B"_s, u"rowDelete"_s)));
        press(w.window(), Qt::Key_Backtab);
        press(w.window(), Qt::Key_Return);
        QVERIFY(w.store.note(w.id(u"B"_s))->isArchived);
    }

    void showingANoteBringsItIntoSight()
    {
        List w(numbered(80));
        w.content.selectNote(w.id(u"N60"_s));
        QTRY_VERIFY(w.places().contains(u"N60"_s));
        QVERIFY(w.seesCurrent());
    }
};

QTEST_MAIN(TestNoteList)
#include "tst_note_list.moc"
