#include "shell/LanguageManager.h"
#include "shell/NoteChoices.h"
#include "tests/views/WholeWindow.h"

#include <QAccessible>
#include <QQmlComponent>
#include <QRegularExpression>
#include <QSignalSpy>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
using Whole = WholeWindow;
} // namespace

// What is done in the main window; tst_main_window_keyboard has where the keyboard goes.
class TestMainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // What this display cannot do is none of the program's business.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
        setMoving(false);
    }
    void cleanup() { setMoving(false); }

    // Opening, adding, searching

    void aClickOpensANote()
    {
        const Whole w;
        QVERIFY(w.shows(u"Select or add a note"_s));
        w.openNote(u"B"_s);
        QCOMPARE(w.openNote(), u"B"_s);
        QVERIFY(!w.shows(u"Select or add a note"_s));
        QVERIFY(isDrawn(w.item(u"editorToolbar"_s)));
        QVERIFY(w.row(u"B"_s)->property("isSelected").toBool());
        w.openNote(u"A"_s);
        QCOMPARE(w.openNote(), u"A"_s);
    }

    void thePaneHasTheNotesColour()
    {
        Whole w;
        w.openNote(u"B"_s);
        const QPoint place(700, 300);
        QTRY_COMPARE(pictureOf(w.window()).pixelColor(place).rgb(),
                     NoteChoices().displayColor(w.store.note(w.id(u"B"_s))->color).rgb());
        w.content.setEditedColor(u"blue"_s);
        QTRY_COMPARE(pictureOf(w.window()).pixelColor(place).rgb(),
                     NoteChoices().displayColor(u"blue"_s).rgb());
    }

    void aNewNoteComesByButtonAndKey()
    {
        Whole w;
        w.selectTab(SidebarTab::Archive);
        w.content.filteredNotes()->setSearchText(u"a"_s);
        click(w.item(u"newNote"_s));
        QCOMPARE(w.store.notes().size(), 6);
        QVERIFY(w.selection.selectedNoteID() == w.store.notes()[0].id);
        QCOMPARE(w.drawnRows(), u"Untitled A B C"_s);
        w.ticks().setIsSelectionMode(true);
        press(w.window(), Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(w.store.notes().size(), 7);
        QVERIFY(!w.ticks().isSelectionMode());
        QVERIFY(w.selection.selectedNoteID() == w.store.notes()[0].id);
    }

    void typingNarrowsTheList()
    {
        const Whole w(u"Milk Bread Butter"_s);
        press(w.window(), Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(w.focusedName(), u"searchField"_s);
        type(w.window(), u"br"_s);
        QTRY_COMPARE(w.drawnRows(), u"Bread"_s);
        QVERIFY(w.row(u"Bread"_s)->property("titleMarkup").toString().contains(u"<b>"_s));
        press(w.window(), Qt::Key_Return);
        QCOMPARE(w.focusedName(), u"noteList"_s);
        press(w.window(), Qt::Key_Return);
        QCOMPARE(w.openNote(), u"Bread"_s);
        press(w.window(), Qt::Key_F, Qt::ControlModifier);
        type(w.window(), u"zzz"_s);
        QTRY_COMPARE(w.drawnRows(), QString());
        QVERIFY(w.shows(u"No results"_s));
        press(w.window(), Qt::Key_Escape);
        QTRY_COMPARE(w.drawnRows(), u"Milk Bread Butter"_s);
        QCOMPARE(w.focusedName(), u"searchField"_s);
        press(w.window(), Qt::Key_Escape);
        QCOMPARE(w.focusedName(), u"noteList"_s);
    }

    void theSearchStaysWhenTheTabChanges()
    {
        const Whole w(u"Milk Bread milky"_s);
        click(w.item(u"searchField"_s));
        type(w.window(), u"mil"_s);
        QTRY_COMPARE(w.drawnRows(), u"Milk"_s);
        click(w.item(u"archiveTab"_s));
        QTRY_COMPARE(w.drawnRows(), u"milky"_s);
        QCOMPARE(w.item(u"searchField"_s)->property("text").toString(), u"mil"_s);
    }

    void leavingASearchThatFoundNothingKeepsTheKeyboard()
    {
        const Whole w;
        click(w.item(u"searchField"_s));
        type(w.window(), u"qqq"_s);
        QTRY_COMPARE(w.item(u"noteList"_s)->property("count").toInt(), 0);
        press(w.window(), Qt::Key_Return);
        QVERIFY(!w.item(u"searchField"_s)->hasActiveFocus());
        QTRY_VERIFY(w.window()->activeFocusItem() && isDrawn(w.window()->activeFocusItem()));
        press(w.window(), Qt::Key_Escape);
        QTRY_VERIFY(w.item(u"noteList"_s)->property("count").toInt() > 0);
    }

    void anEmptyTabSaysSo()
    {
        const Whole w(u"A"_s);
        QVERIFY(!isDrawn(w.item(u"emptyList"_s)));
        click(w.item(u"archiveTab"_s));
        QVERIFY(w.shows(u"No notes"_s));
        type(w.window(), u"x"_s);
    }

    // A save that fails

    void aNoticeSaysSinceWhenSavingFails()
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Nie udało się zapisać notatek"_s));
        Whole w;
        QQuickItem *notice = w.item(u"savingNotice"_s);
        w.store.flush();
        QVERIFY(!isDrawn(notice));
        QVERIFY(QDir(w.home.data()).removeRecursively());
        QFile inItsPlace(w.home.data());
        QVERIFY(inItsPlace.open(QIODevice::WriteOnly));
        w.store.addNote();
        w.store.flush();
        QTRY_VERIFY(isDrawn(notice));
        const QString since = w.store.savingFailsSince()->toString(u"HH:mm"_s);
        const QList<std::pair<AppLanguage, QString>> words{
            {AppLanguage::pl, u"Zapisywanie nie udaje się od %1. "_s.arg(since)},
            {AppLanguage::en, u"Saving has been failing since %1. "_s.arg(since)}};
        for (const auto &[language, start] : words) {
            LanguageManager::shared().setLanguage(language);
            const QString text = textsIn(notice).join(u'|');
            QVERIFY2(text.startsWith(start) && text.size() > start.size(), qPrintable(text));
            QCOMPARE(QAccessible::queryAccessibleInterface(notice)->text(QAccessible::Name), text);
            pictureOf(w.window()); // with the new text in its place
            QVERIFY(QRectF(QPointF(), w.window()->size()).contains(frameOf(notice)));
        }
        w.store.flush(); // another try that fails
        QTest::qWait(100);
        QVERIFY(isDrawn(notice));
        QVERIFY(inItsPlace.remove());
        QTRY_VERIFY(!isDrawn(notice)); // by itself
        QVERIFY(QFile::exists(w.home.data() + u"/notes.json"_s));
    }

    // Buttons of a row

    void hoverShowsAndUsesTheButtons()
    {
        const Whole w;
        QVERIFY(!isDrawn(w.rowButton(u"B"_s, u"rowArchive"_s)));
        hover(w.row(u"B"_s));
        QTRY_VERIFY(isDrawn(w.rowButton(u"B"_s, u"rowArchive"_s)));
        QVERIFY(!isDrawn(w.rowButton(u"A"_s, u"rowArchive"_s)));
        click(w.rowButton(u"B"_s, u"rowArchive"_s));
        QCOMPARE(w.drawnRows(), u"A C"_s);
        QCOMPARE(w.openNote(), QString());
        click(w.item(u"archiveTab"_s));
        hover(w.row(u"B"_s));
        QTRY_VERIFY(isDrawn(w.rowButton(u"B"_s, u"rowArchive"_s)));
        click(w.rowButton(u"B"_s, u"rowArchive"_s));
        QCOMPARE(w.drawnRows(), u"a b"_s);
    }

    // The pointer rests, and each step of the glide is told of it.
    void theRowThatComesBelowThePointerOffersItsButtons()
    {
        setMoving(true);
        const Whole w;
        hover(w.row(u"B"_s));
        QTRY_VERIFY(isDrawn(w.rowButton(u"B"_s, u"rowArchive"_s)));
        click(w.rowButton(u"B"_s, u"rowArchive"_s));
        QTRY_VERIFY(isDrawn(w.rowButton(u"C"_s, u"rowArchive"_s)));
    }

    // Deleting

    void aDeletedNoteCanBePutBack()
    {
        Whole w;
        w.openNote(u"B"_s);
        const NoteArray before = w.store.notes();
        hover(w.row(u"B"_s));
        QTRY_VERIFY(isDrawn(w.rowButton(u"B"_s, u"rowDelete"_s)));
        click(w.rowButton(u"B"_s, u"rowDelete"_s));
        QTRY_VERIFY(w.shows(u"Delete note permanently?"_s));
        QCOMPARE(w.storedNotes(), u"A B C a b"_s);
        click(w.item(u"confirmDelete"_s));
        QCOMPARE(w.storedNotes(), u"A C a b"_s);
        QCOMPARE(w.openNote(), QString());
        QTRY_VERIFY(isDrawn(w.item(u"undoDelete"_s)));
        QTRY_VERIFY(!w.shows(u"Delete note permanently?"_s));
        click(w.item(u"undoDelete"_s));
        QVERIFY(w.store.notes() == before);
        QCOMPARE(w.openNote(), u"B"_s);
        QCOMPARE(w.drawnRows(), u"A B C"_s);
        QTRY_VERIFY(!isDrawn(w.item(u"undoBar"_s)));
    }

    void theDialogArchivesInstead()
    {
        const Whole w;
        hover(w.row(u"B"_s));
        QTRY_VERIFY(isDrawn(w.rowButton(u"B"_s, u"rowDelete"_s)));
        click(w.rowButton(u"B"_s, u"rowDelete"_s));
        QTRY_VERIFY(w.shows(u"Delete note permanently?"_s));
        click(w.item(u"archiveInstead"_s));
        QCOMPARE(w.drawnRows(), u"A C"_s);
        QVERIFY(w.store.note(w.id(u"B"_s))->isArchived);
        QVERIFY(!isDrawn(w.item(u"undoBar"_s)));
    }

    // Several notes

    void selectionModeFromBeginningToEnd()
    {
        Whole w;
        w.openNote(u"A"_s);
        click(w.item(u"selectionMode"_s));
        QVERIFY(w.shows(u"Select notes"_s));
        QVERIFY(w.shows(u"0 notes selected"_s));
        QVERIFY(!isDrawn(w.item(u"editorToolbar"_s)));
        click(w.row(u"B"_s));
        QVERIFY(w.shows(u"1 note selected"_s));
        QCOMPARE(w.openNote(), u"A"_s); // as it was
        QVERIFY(w.row(u"B"_s)->property("isCheckmarked").toBool());
        hover(w.row(u"C"_s));
        QVERIFY(!isDrawn(w.rowButton(u"C"_s, u"rowDelete"_s)));
        click(w.item(u"selectAll"_s));
        QVERIFY(w.shows(u"3 notes selected"_s));
        click(w.row(u"C"_s));
        QVERIFY(w.shows(u"2 notes selected"_s));
        click(w.item(u"archiveSelection"_s));
        QCOMPARE(w.drawnRows(), u"C"_s);
        QVERIFY(!w.ticks().isSelectionMode());
        QVERIFY(!w.shows(u"Select notes"_s));

        click(w.item(u"archiveTab"_s));
        click(w.item(u"selectionMode"_s));
        click(w.row(u"B"_s));
        QVERIFY(w.shows(u"Restore"_s));
        click(w.item(u"archiveSelection"_s));
        QCOMPARE(w.drawnRows(), u"A a b"_s);
    }

    void severalNotesAreDeletedAndPutBack()
    {
        Whole w;
        const NoteArray before = w.store.notes();
        click(w.item(u"selectionMode"_s));
        click(w.row(u"A"_s));
        click(w.row(u"C"_s));
        click(w.item(u"deleteSelection"_s));
        QTRY_VERIFY(w.item(u"cancelDeleteAll"_s)->hasActiveFocus());
        press(w.window(), Qt::Key_Escape);
        QTRY_VERIFY(!w.shows(u"Delete selected notes permanently?"_s));
        QVERIFY(w.ticks().isSelectionMode()); // Esc was for the dialog
        QCOMPARE(w.storedNotes(), u"A B C a b"_s);
        click(w.item(u"deleteSelection"_s));
        QTRY_VERIFY(w.item(u"cancelDeleteAll"_s)->hasActiveFocus());
        click(w.item(u"confirmDeleteAll"_s));
        QCOMPARE(w.storedNotes(), u"B a b"_s);
        QVERIFY(!w.ticks().isSelectionMode());
        QTRY_VERIFY(isDrawn(w.item(u"undoDelete"_s)));
        click(w.item(u"undoDelete"_s));
        QVERIFY(w.store.notes() == before);
    }

    void selectAllTicksWhatTheSearchShows()
    {
        Whole w(u"Milk Bread Milkshake"_s);
        w.content.filteredNotes()->setSearchText(u"milk"_s);
        QTRY_COMPARE(w.drawnRows(), u"Milk Milkshake"_s);
        click(w.item(u"selectionMode"_s));
        click(w.item(u"selectAll"_s));
        QCOMPARE(w.ticks().selectedIDs().count(), 2);
        QVERIFY(!w.ticks().selectedIDs().contains(w.id(u"Bread"_s)));
    }

    void selectionModeEndsInEveryWay()
    {
        Whole w;
        const auto begin = [&] {
            w.ticks().setIsSelectionMode(true);
            w.ticks().toggleSelection(w.id(u"A"_s));
        };
        begin();
        press(w.window(), Qt::Key_Escape);
        QVERIFY(!w.ticks().isSelectionMode());
        begin();
        click(w.item(u"endSelection"_s));
        QVERIFY(!w.ticks().isSelectionMode());
        begin();
        click(w.item(u"selectionMode"_s));
        QVERIFY(!w.ticks().isSelectionMode());
        begin();
        click(w.item(u"archiveTab"_s));
        QVERIFY(!w.ticks().isSelectionMode());
        QCOMPARE(w.ticks().selectedIDs().count(), 0);
    }

    void escEndsSelectionModeWhereverTheKeyboardIs()
    {
        Whole w;
        for (const QString &name :
             {u"noteList"_s, u"newNote"_s, u"language.pl"_s, u"selectAll"_s}) {
            w.ticks().setIsSelectionMode(true);
            w.item(name)->forceActiveFocus(Qt::TabFocusReason);
            press(w.window(), Qt::Key_Escape);
            QVERIFY2(!w.ticks().isSelectionMode(), qPrintable(name));
        }
    }

    // The options of a note

    void theButtonOpensAndClosesTheOptions()
    {
        const Whole w;
        w.openNote(u"A"_s);
        w.openPopover();
        QVERIFY(w.popover()->isVisible());
        click(w.item(u"noteOptions"_s)); // closes it, and does not open it again
        QVERIFY(!w.popover()->isVisible());
        QTRY_VERIFY(!w.popover()->property("justClosed").toBool());
        w.openPopover();
        press(w.popover(), Qt::Key_Escape);
        QVERIFY(!w.popover()->isVisible());
        w.openPopover();
        QTest::mouseClick(w.window(), Qt::LeftButton, {}, QPoint(800, 600));
        QVERIFY(!w.popover()->isVisible());
    }

    void theOptionsChangeTheNote()
    {
        Whole w;
        w.openNote(u"A"_s);
        w.openPopover();
        click(itemIn(w.popover(), u"swatch.purple"_s));
        QCOMPARE(w.store.note(w.id(u"A"_s))->color, u"purple"_s);
        click(itemIn(w.popover(), u"size.big"_s));
        QVERIFY(w.store.note(w.id(u"A"_s))->textSize == NoteTextSize::big);
        QVERIFY(w.popover()->isVisible());
        QTRY_COMPARE(frameOf(itemIn(w.popover(), u"sizePill"_s)),
                     frameOf(itemIn(w.popover(), u"size.big"_s)));
    }

    void theLanguageOfOpenOptionsChangesAtOnce()
    {
        Whole w;
        QQmlComponent component(&w.engine);
        component.setData("import QtQuick.Templates\nAction {}", {});
        const std::unique_ptr<QObject> action(component.create());
        QVERIFY2(action, qPrintable(component.errorString()));
        for (const char *name : {"openNotebook", "newSticky", "sort", "collapseAll"})
            QVERIFY(w.popover()->setProperty(name, QVariant::fromValue(action.get())));
        w.openNote(u"A"_s);
        w.openPopover();
        const auto texts = [&] {
            return textsIn(itemIn(w.popover(), u"option.notebook"_s)) +
                   textsIn(itemIn(w.popover(), u"option.newSticky"_s)) +
                   textsIn(itemIn(w.popover(), u"option.collapseAll"_s));
        };
        QCOMPARE(texts(), (QStringList{u"NOTEBOOK"_s, u"NEW PLIM"_s, u"COLLAPSE"_s}));
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(texts(), (QStringList{u"NOTATNIK"_s, u"NOWE PLIM"_s, u"ZWIŃ"_s}));
        QVERIFY(w.popover()->isVisible());
        w.popover()->setVisible(false);
        for (const char *name : {"openNotebook", "newSticky", "sort", "collapseAll"})
            w.popover()->setProperty(name, QVariant::fromValue<QObject *>(nullptr));
    }

    void theLanguageIsChosenInTheSidebar()
    {
        const Whole w;
        click(w.item(u"language.pl"_s));
        QVERIFY(w.shows(u"NOTATKI"_s));
        QVERIFY(w.shows(u"Szukaj notatek…"_s));
        QVERIFY(w.shows(u"Wybierz lub dodaj notatkę"_s));
        click(w.item(u"language.en"_s));
        QVERIFY(w.shows(u"NOTES"_s));
        QVERIFY(w.shows(u"Select or add a note"_s));
    }

    // The window

    void aDoubleClickOnFreeGroundMaximises_data()
    {
        QTest::addColumn<QPoint>("place");
        QTest::addColumn<QPoint>("placeWhenMaximised");
        QTest::newRow("header") << QPoint(270, 8) << QPoint(300, 8);
        QTest::newRow("above the editor") // beside the menus
            << QPoint(950, 20) << QPoint(2000, 20);
    }
    void aDoubleClickOnFreeGroundMaximises()
    {
        QFETCH(QPoint, place);
        QFETCH(QPoint, placeWhenMaximised);
        const Whole w;
        w.openNote(u"A"_s);
        QTest::mouseDClick(w.window(), Qt::LeftButton, {}, place);
        QTRY_COMPARE(w.window()->visibility(), QWindow::Maximized);
        QTRY_COMPARE(w.window()->size(), QSize(2400, 1500));
        QTest::mouseDClick(w.window(), Qt::LeftButton, {}, placeWhenMaximised);
        QTRY_COMPARE(w.window()->visibility(), QWindow::Windowed);
    }

    void aDoubleClickOnAButtonDoesNotMaximise()
    {
        const Whole w;
        QTest::mouseDClick(w.window(), Qt::LeftButton, {}, middleOf(w.item(u"archiveTab"_s)));
        QCOMPARE(w.window()->visibility(), QWindow::Windowed);
        QVERIFY(w.selection.selectedTab() == SidebarTab::Archive);
    }

    void theCloseButtonClosesTheWindow()
    {
        const Whole w;
        QSignalSpy closing(w.window(), SIGNAL(closing(QQuickCloseEvent *)));
        click(w.item(u"closeWindow"_s));
        QCOMPARE(closing.size(), 1);
        QVERIFY(!w.window()->isVisible());
    }

    void theSidebarTakesItsShareOfAnyWidth()
    {
        const Whole w;
        for (const int width : {900, 1100, 1600}) {
            w.window()->resize(width, 700);
            QTRY_COMPARE(w.item(u"sidebar"_s)->width(), qRound(width * 0.4));
        }
        QCOMPARE(w.window()->minimumSize(), QSize(900, 560));
        QVERIFY(w.window()->flags() & Qt::FramelessWindowHint);
    }
};

QTEST_MAIN(TestMainWindow)
#include "tst_main_window.moc"
