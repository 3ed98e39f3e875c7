#include "tests/views/WholeWindow.h"

#include <QGuiApplication>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
using Whole = WholeWindow;
} // namespace

// Where the keyboard is in the main window, where it goes, and that it is never lost.
class TestMainWindowKeyboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // What this display cannot do is none of the program's business.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
        setMoving(false);
    }

    void tabComesRoundAndMissesNothing()
    {
        const Whole w;
        w.openNote(u"A"_s);
        w.item(u"closeWindow"_s)->forceActiveFocus(Qt::TabFocusReason);
        QStringList walk;
        for (int i = 0; i < 60 && (walk.isEmpty() || walk.last() != u"closeWindow"); ++i)
            walk += w.walk(Qt::Key_Tab, 1);
        QCOMPARE(walk.last(), u"closeWindow"_s);
        const QStringList wanted{u"notesTab"_s,         u"archiveTab"_s,
                                 u"selectionMode"_s,    u"makeAllSticky"_s,
                                 u"newNote"_s,          u"searchField"_s,
                                 u"noteList"_s,         u"rowSticky"_s,
                                 u"rowArchive"_s,       u"rowDelete"_s,
                                 u"language.en"_s,      u"language.pl"_s,
                                 u"tool.H1"_s,          u"tool.H2"_s,
                                 u"tool.H3"_s,          u"tool.P"_s,
                                 u"tool.bold"_s,        u"tool.italic"_s,
                                 u"tool.underline"_s,   u"tool.strikethrough"_s,
                                 u"tool.list.bullet"_s, u"tool.list.number"_s,
                                 u"tool.checklist"_s,   u"tool.link"_s,
                                 u"tool.divide"_s,      u"noteOptions"_s,
                                 u"closeWindow"_s};
        QCOMPARE(walk, wanted);
        // The other way the list is entered by its row's buttons, whose keys are the list's, too.
        QStringList others = wanted;
        others.removeOne(u"noteList"_s);
        QStringList back = w.walk(Qt::Key_Backtab, int(others.size()));
        std::ranges::reverse(back);
        back.move(0, back.size() - 1);
        QCOMPARE(back, others);
    }

    void tabComesRoundInSelectionMode()
    {
        Whole w;
        w.ticks().setIsSelectionMode(true);
        w.ticks().toggleSelection(w.id(u"A"_s));
        w.item(u"noteList"_s)->forceActiveFocus(Qt::TabFocusReason);
        const QStringList walk = w.walk(Qt::Key_Tab, 16);
        for (const QString &name : {u"selectAll"_s, u"archiveSelection"_s, u"deleteSelection"_s,
                                    u"endSelection"_s, u"closeWindow"_s, u"noteList"_s})
            QVERIFY2(walk.contains(name), qPrintable(name + u" in "_s + walk.join(u' ')));
        QVERIFY(!walk.contains(u"rowDelete"_s));
    }

    void theKeyboardIsInTheListFromTheBeginning()
    {
        const Whole w;
        QCOMPARE(w.focusedName(), u"noteList"_s);
        press(w.window(), Qt::Key_Down);
        press(w.window(), Qt::Key_Return);
        QVERIFY(!w.openNote().isEmpty());
    }

    void theUndoIsReachedByTab()
    {
        Whole w;
        w.content.deleteNote(w.id(u"A"_s));
        QTRY_VERIFY(isDrawn(w.item(u"undoDelete"_s)));
        w.item(u"noteList"_s)->forceActiveFocus(Qt::TabFocusReason);
        QVERIFY(w.walk(Qt::Key_Tab, 16).contains(u"undoDelete"_s));
        w.item(u"undoDelete"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key_Return);
        QCOMPARE(w.storedNotes(), u"A B C a b"_s);
    }

    void theKeyboardComesBackAfterADialog_data()
    {
        QTest::addColumn<QString>("from");
        QTest::newRow("list") << u"noteList"_s;
        QTest::newRow("search") << u"searchField"_s;
        QTest::newRow("header") << u"newNote"_s;
        QTest::newRow("footer") << u"language.pl"_s;
        QTest::newRow("toolbar") << u"tool.bold"_s;
    }
    void theKeyboardComesBackAfterADialog()
    {
        QFETCH(QString, from);
        const Whole w;
        w.openNote(u"B"_s);
        w.item(from)->forceActiveFocus(Qt::TabFocusReason);
        QMetaObject::invokeMethod(w.object(u"deleteNoteDialog"_s), "ask",
                                  Q_ARG(QString, w.id(u"B"_s).toString()));
        QTRY_VERIFY(w.item(u"cancelDelete"_s)->hasActiveFocus());
        press(w.window(), Qt::Key_Escape);
        QTRY_COMPARE(w.focusedName(), from);
        QVERIFY(w.item(from)->hasActiveFocus());
    }

    void theKeyboardIsNotLostWithWhatItWasOn()
    {
        Whole w;
        // The button of a row that is deleted.
        w.item(u"noteList"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key_Home);
        QCOMPARE(w.walk(Qt::Key_Tab, 3).last(), u"rowDelete"_s);
        press(w.window(), Qt::Key_Return);
        QTRY_VERIFY(w.item(u"cancelDelete"_s)->hasActiveFocus());
        click(w.item(u"confirmDelete"_s));
        QTRY_COMPARE(w.focusedName(), u"noteList"_s);
        QCOMPARE(w.storedNotes(), u"B C a b"_s);
        // The button of a row that is archived, and comes back.
        press(w.window(), Qt::Key_Home);
        QCOMPARE(w.walk(Qt::Key_Tab, 2).last(), u"rowArchive"_s);
        press(w.window(), Qt::Key_Return);
        QCOMPARE(w.storedNotes(), u"B C a b"_s);
        QCOMPARE(w.drawnRows(), u"C"_s);
        QTRY_COMPARE(w.focusedName(), u"noteList"_s);
        QVERIFY(isDrawn(w.window()->activeFocusItem()));
        w.content.archiveNote(w.id(u"B"_s));
        // The editor of a note that goes away.
        w.content.selectNote(w.id(u"B"_s));
        w.item(u"tool.bold"_s)->forceActiveFocus(Qt::TabFocusReason);
        w.selection.setSelectedNoteID(std::nullopt);
        QTRY_COMPARE(w.focusedName(), u"noteList"_s);
        // The offer of undoing that is over.
        QVERIFY(isDrawn(w.item(u"undoDelete"_s)));
        w.item(u"undoDelete"_s)->forceActiveFocus(Qt::TabFocusReason);
        w.content.deletionUndo()->dismiss();
        QTRY_COMPARE(w.focusedName(), u"noteList"_s);
        // The panel of a selection that is over.
        w.ticks().setIsSelectionMode(true);
        w.ticks().toggleSelection(w.id(u"B"_s));
        w.item(u"archiveSelection"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key_Return);
        QVERIFY(!w.ticks().isSelectionMode());
        QTRY_COMPARE(w.focusedName(), u"noteList"_s);
        // The same, with a question before it.
        w.ticks().setIsSelectionMode(true);
        w.ticks().toggleSelection(w.id(u"C"_s));
        w.item(u"deleteSelection"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key_Return);
        QTRY_VERIFY(w.item(u"cancelDeleteAll"_s)->hasActiveFocus());
        press(w.window(), Qt::Key_Tab);
        press(w.window(), Qt::Key_Return);
        QCOMPARE(w.storedNotes(), u"B a b"_s);
        QTRY_VERIFY(w.window()->activeFocusItem() && isDrawn(w.window()->activeFocusItem()));
        QVERIFY(w.walk(Qt::Key_Tab, 16).contains(u"newNote"_s));
    }

    void theKeyboardComesBackAfterTheOptions()
    {
        const Whole w;
        w.openNote(u"A"_s);
        w.item(u"noteOptions"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key_Return);
        QTRY_COMPARE(QGuiApplication::focusWindow(), w.popover());
        press(w.popover(), Qt::Key_Escape);
        QTRY_COMPARE(QGuiApplication::focusWindow(), w.window());
        QCOMPARE(w.focusedName(), u"noteOptions"_s);
    }

    void theLinkButtonAsksAndEscGoesBack()
    {
        const Whole w;
        w.openNote(u"A"_s);
        w.item(u"tool.link"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key_Return);
        QTRY_COMPARE(w.focusedName(), u"linkField"_s);
        press(w.window(), Qt::Key_Escape);
        QTRY_COMPARE(w.focusedName(), u"tool.link"_s);
    }
};

QTEST_MAIN(TestMainWindowKeyboard)
#include "tst_main_window_keyboard.moc"
