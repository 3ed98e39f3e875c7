#include "core/app/Autostart.h"
#include "shell/ApplicationMenus.h"
#include "shell/L10n.h"
#include "shell/LanguageManager.h"
#include "sticky/WindowFront.h"
#include "tests/app/MenuCommandsFixture.h"
#include "tests/sticky/FakeStickyWindow.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <algorithm>

using namespace Qt::StringLiterals;
using Fixture = MenuCommandsFixture;

Q_DECLARE_METATYPE(EditorCommand)

/// What the commands do.
class TestMenuCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    // The session

    void startingAtLoginIsSwitchedAndMarked()
    {
        Fixture f;
        const QAction *action = f.commands.action(u"startAtLogin"_s);
        QVERIFY(!action->isChecked());
        f.run(u"startAtLogin"_s);
        QVERIFY(QFile::exists(Autostart::file()));
        QVERIFY(action->isChecked());
        f.run(u"startAtLogin"_s);
        QVERIFY(!QFile::exists(Autostart::file()));
        QVERIFY(!action->isChecked());
    }

    // The desktop's own settings take the file away, or put it there.
    void theMarkIsRightWheneverTheMenuOpens()
    {
        Fixture f;
        ApplicationMenus menus(f.commands);
        const QAction *action = f.commands.action(u"startAtLogin"_s);
        f.run(u"startAtLogin"_s);
        QVERIFY(QFile::remove(Autostart::file()));
        QMenu *menu = menus.menu(0);
        QVERIFY(menu->actions().contains(action));
        QTest::ignoreMessage(QtWarningMsg, cannotRaise);
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
        menu->popup({});
        QVERIFY(!action->isChecked());
        menu->hide();
        f.run(u"startAtLogin"_s);
        QVERIFY(action->isChecked());
        QVERIFY(QFile::exists(Autostart::file()));
    }

    void aStartAtLoginThatCannotBeIsSaid()
    {
        Fixture f;
        QFile blocker(f.home.path(u".config/autostart"_s));
        QVERIFY(QDir().mkpath(f.home.path(u".config"_s)) && blocker.open(QIODevice::WriteOnly));
        QSignalSpy notices(&f.content, &ContentController::noticeRequested);
        f.runInFront(u"startAtLogin"_s);
        QCOMPARE(notices.count(), 1);
        QCOMPARE(notices[0][0].toString(), L10n::startAtLoginFailed());
        QVERIFY(!notices[0][1].toString().isEmpty());
        QVERIFY(!f.commands.action(u"startAtLogin"_s)->isChecked());
    }

    // Languages

    void theLanguageIsChosenAndMarked()
    {
        Fixture f;
        const auto marked = [&] {
            return QStringList{f.commands.action(u"polish"_s)->isChecked() ? u"pl"_s : u""_s,
                               f.commands.action(u"english"_s)->isChecked() ? u"en"_s : u""_s}
                .join(QString());
        };
        QCOMPARE(marked(), u"en"_s);
        f.run(u"polish"_s);
        QVERIFY(LanguageManager::shared().isPolish());
        QCOMPARE(marked(), u"pl"_s);
        f.run(u"polish"_s); // what is marked stays so
        QCOMPARE(marked(), u"pl"_s);
        f.run(u"english"_s);
        QVERIFY(!LanguageManager::shared().isPolish());
        QCOMPARE(marked(), u"en"_s);
        f.run(u"english"_s);
        QCOMPARE(marked(), u"en"_s);
        LanguageManager::shared().setLanguage(AppLanguage::pl); // from elsewhere
        QCOMPARE(marked(), u"pl"_s);
    }

    void everyTitleSpeaksTheNewLanguage()
    {
        Fixture f;
        f.run(u"polish"_s);
        for (const Command &command : f.commands.commands()) {
            QCOMPARE(f.commands.action(command.id)->text(), command.title.polish);
            QCOMPARE(f.commands.action(command.id)->toolTip(),
                     command.help.polish.isEmpty() ? command.title.polish : command.help.polish);
        }
    }

    // Formatting

    void formattingIsForTheEditorAndNothingElseHappens_data()
    {
        QTest::addColumn<EditorCommand>("command");
        using Kind = EditorCommand::Kind;
        QTest::newRow("bold") << EditorCommand(Kind::bold);
        QTest::newRow("italic") << EditorCommand(Kind::italic);
        QTest::newRow("underline") << EditorCommand(Kind::underline);
        QTest::newRow("heading1") << EditorCommand::heading(1);
        QTest::newRow("heading2") << EditorCommand::heading(2);
        QTest::newRow("heading3") << EditorCommand::heading(3);
        QTest::newRow("paragraph") << EditorCommand(Kind::paragraph);
        QTest::newRow("bulletList") << EditorCommand(Kind::bulletList);
        QTest::newRow("numberedList") << EditorCommand(Kind::numberedList);
        QTest::newRow("checklist") << EditorCommand(Kind::checkbox);
        QTest::newRow("undo") << EditorCommand(Kind::undo);
        QTest::newRow("redo") << EditorCommand(Kind::redo);
    }
    void formattingIsForTheEditorAndNothingElseHappens()
    {
        QFETCH(EditorCommand, command);
        Fixture f(u"A B"_s);
        f.selection.setSelectedNoteID(f.id(u"A"_s));
        const NoteArray before = f.store.notes();
        QSignalSpy changed(&f.store, &NoteStore::notesChanged);
        f.run(QString::fromLatin1(QTest::currentDataTag()));
        QVERIFY(f.formats == QList<EditorCommand>{command});
        QCOMPARE(f.otherNews + f.searches, 0);
        QVERIFY(f.store.notes() == before);
        QCOMPARE(changed.count(), 0);
        QVERIFY(f.selection.selectedNoteID() == f.id(u"A"_s));
        QVERIFY(!f.window.isVisible());
    }

    // Notes and windows

    void aNewNoteIsMadeInFront()
    {
        Fixture f(u"A"_s);
        f.runInFront(u"newNote"_s);
        QCOMPARE(f.store.notes().size(), 2);
        QVERIFY(f.selection.selectedNoteID() == f.store.notes()[0].id);
        QVERIFY(f.window.isVisible());
        QTRY_COMPARE(QGuiApplication::focusWindow(), &f.window);
    }

    void theSearchComesInFront_data()
    {
        QTest::addColumn<bool>("isVisible");
        QTest::addColumn<Qt::WindowStates>("states");
        QTest::newRow("hidden") << false << Qt::WindowStates();
        QTest::newRow("minimised") << true << Qt::WindowStates(Qt::WindowMinimized);
    }
    void theSearchComesInFront()
    {
        QFETCH(bool, isVisible);
        QFETCH(Qt::WindowStates, states);
        Fixture f(u"A"_s);
        f.window.setWindowStates(states);
        f.window.setVisible(isVisible);
        f.runInFront(u"search"_s);
        QCOMPARE(f.searches, 1);
        QVERIFY(f.window.isVisible());
        QVERIFY(!(f.window.windowStates() & Qt::WindowMinimized));
    }

    void theNotesThatAreNotPutAwayBecomeStickies()
    {
        Fixture f(u"A b C"_s);
        QSet<QUuid> made;
        StickyNoteManager::shared().setFactory([&](const QUuid &noteID, NoteTextSize) {
            made.insert(noteID);
            return std::make_unique<FakeStickyWindow>();
        });
        f.run(u"extractAll"_s);
        QTRY_COMPARE(made, (QSet<QUuid>{f.id(u"A"_s), f.id(u"C"_s)}));
        made.clear();
        f.run(u"extractAll"_s); // they are there already
        QCoreApplication::processEvents();
        QCOMPARE(made, QSet<QUuid>());
    }

    void theArrangementIsTakenBackWhereNothingElseIs()
    {
        Fixture f(u"A B"_s);
        auto &stickies = StickyNoteManager::shared();
        stickies.setFactory(
            [](const QUuid &, NoteTextSize) { return std::make_unique<FakeStickyWindow>(); });
        QAction *undoArrange = f.commands.action(u"undoArrange"_s);
        QVERIFY(!undoArrange->isEnabled());
        stickies.open(f.id(u"A"_s), f.store, nullptr, StickyFrame{300, 300, 300, 340});
        stickies.open(f.id(u"B"_s), f.store, nullptr, StickyFrame{340, 260, 300, 340});
        const auto frames = [&] {
            return QList<QRect>{stickies.window(f.id(u"A"_s))->frame(),
                                stickies.window(f.id(u"B"_s))->frame()};
        };
        const QList<QRect> before = frames();
        for (const QString &id : {u"undo"_s, u"undoArrange"_s}) {
            stickies.sortRandomly();
            QVERIFY(undoArrange->isEnabled());
            QVERIFY(frames() != before);
            f.run(id);
            QCOMPARE(frames(), before);
            QVERIFY(!undoArrange->isEnabled());
        }
        // What was deleted since comes back first.
        stickies.sortRandomly();
        const QList<QRect> arranged = frames();
        f.store.addNote();
        const QString order = f.order();
        f.content.deleteNote(f.store.notes()[0].id);
        f.run(u"undo"_s);
        QCOMPARE(f.order(), order);
        QCOMPARE(frames(), arranged);
        f.run(u"undo"_s);
        QCOMPARE(frames(), before);
    }

    void theWindowWithTheKeyboardIsClosed()
    {
        Fixture f;
        f.run(u"closeWindow"_s); // no window has it
        QWindow other;
        f.window.show();
        other.show();
        other.requestActivate();
        QTRY_COMPARE(QGuiApplication::focusWindow(), &other);
        f.run(u"closeWindow"_s);
        QVERIFY(!other.isVisible());
        QVERIFY(f.window.isVisible());
    }

    void theWindowIsShownAndHidden()
    {
        Fixture f;
        f.runInFront(u"toggleWindow"_s);
        QVERIFY(isOnScreen(f.window));
        f.run(u"toggleWindow"_s); // without a tray it is minimised
        QVERIFY(!isOnScreen(f.window));
    }

    void earlierVersionsAreLookedForInFront()
    {
        Fixture f(u"A"_s);
        QSignalSpy asked(f.content.versionRestore(), &VersionRestore::asked);
        f.runInFront(u"restoreVersion"_s);
        QVERIFY(f.window.isVisible());
        QCOMPARE(asked.count(), 0); // there is none
        QCOMPARE(f.order(), u"A"_s);
    }

    void quittingEndsTheProgram()
    {
        Fixture f;
        QTimer::singleShot(0, &f.content, [&] { f.run(u"quit"_s); });
        QCOMPARE(QCoreApplication::exec(), 0);
    }
};

QTEST_MAIN(TestMenuCommands)
#include "tst_menu_commands.moc"
