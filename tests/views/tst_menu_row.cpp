#include "core/NotificationCenter.h"
#include "editor/EditorCommand.h"
#include "tests/Observation.h"
#include "tests/Patience.h"
#include "tests/views/CommandedWindow.h"
#include "tests/views/Reachable.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
/// The main window, its row of menus, and what their commands say.
struct Row : CommandedWindow {
    explicit Row(AppLanguage language = AppLanguage::en)
        : CommandedWindow(u"Milk Bread"_s, QSize(1100, 700), language)
    {
        QObject::connect(&NotificationCenter::shared(), &NotificationCenter::plimFormat, &content,
                         [this](const EditorCommand &command) { formats << command; });
        QObject::connect(&NotificationCenter::shared(), &NotificationCenter::plimFocusSearch,
                         &content, [this] { ++searches; });
        moveTo(window(), QPoint(800, 600));
    }

    [[nodiscard]] int count() { return int(commands().menus().size()); }
    [[nodiscard]] int indexOf(const QString &id)
    {
        const auto &all = commands().menus();
        return int(std::ranges::find(all, id, &CommandMenu::id) - all.begin());
    }
    [[nodiscard]] QStringList titles()
    {
        QStringList titles;
        for (int i = 0; i < count(); ++i)
            titles << button(i)->property("text").toString();
        return titles;
    }
    [[nodiscard]] bool isOpen(int index)
    {
        return menus.openIndex() == index && menus.menu(index)->isVisible();
    }
    [[nodiscard]] bool isClosed()
    {
        for (int i = 0; i < count(); ++i) {
            if (menus.menu(i)->isVisible())
                return false;
        }
        return menus.openIndex() == -1;
    }
    /// A key, where the keyboard is while a menu is open.
    void pressInMenu(Qt::Key key) { QTest::keyClick(menus.menu(menus.openIndex()), key); }
    void close()
    {
        if (menus.openIndex() >= 0)
            menus.menu(menus.openIndex())->hide();
    }
    /// A desktop gives the keyboard back when a popup closes; here nobody does.
    void takeKeyboardBack()
    {
        window()->requestActivate();
        if (!QTest::qWaitForWindowActive(window(), longEnough))
            qFatal("The main window does not come back");
    }

    QList<EditorCommand> formats;
    int searches = 0;
};
} // namespace

class TestMenuRow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    // What this display cannot do is none of the program's business.
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    }

    void theTitlesFollowTheLanguage()
    {
        Row w;
        QStringList polish;
        QStringList english;
        for (const CommandMenu &menu : w.commands().menus()) {
            polish << menu.title.polish;
            english << menu.title.english;
        }
        QCOMPARE(w.titles(), english);
        w.commands().run(u"polish"_s);
        QCOMPARE(w.titles(), polish);
        pictureOf(w.window()); // drawing puts them into their places
        click(w.button(1));
        QTRY_VERIFY(w.isOpen(1));
        w.close();
        w.commands().run(u"english"_s);
        QCOMPARE(w.titles(), english);
    }

    void aClickOpensTheMenuBelowItsTitle()
    {
        Row w;
        click(w.button(1));
        QTRY_VERIFY(w.isOpen(1));
        const QQuickItem *button = w.button(1);
        QCOMPARE(w.menus.menu(1)->pos(),
                 button->mapToGlobal(QPointF(0, button->height())).toPoint());
        QVERIFY(!w.menus.menu(1)->activeAction()); // the pointer chooses
    }

    // The press closes the popup before its button hears of it.
    void aSecondPressOnTheSameTitleClosesIt()
    {
        Row w;
        const auto opens = [&] {
            if (!w.isOpen(1))
                click(w.button(1));
            return w.isOpen(1);
        };
        QTRY_VERIFY(opens());
        const QPoint place = middleOf(w.button(1));
        // The one that comes later is another press.
        const auto isOnePress = [&] {
            if (!QTest::qWaitFor(opens, longEnough))
                return false;
            w.close();
            QTest::mouseClick(w.window(), Qt::LeftButton, {}, place);
            return w.isClosed();
        };
        QVERIFY(isSeenOnce(isOnePress));
        QTRY_VERIFY(opens());
    }

    void anotherTitleOpensItsMenuInstead()
    {
        Row w;
        click(w.button(1));
        QTRY_VERIFY(w.isOpen(1));
        w.close();
        click(w.button(2));
        QTRY_VERIFY(w.isOpen(2));
    }

    void keysOpenTheMenus_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::newRow("pl") << AppLanguage::pl;
        QTest::newRow("en") << AppLanguage::en;
    }
    void keysOpenTheMenus()
    {
        QFETCH(AppLanguage, language);
        Row w(language);
        press(w.window(), Qt::Key_F10);
        QTRY_VERIFY(w.isOpen(0));
        QCOMPARE(w.menus.menu(0)->activeAction(), w.menus.menu(0)->actions().constFirst());
        w.pressInMenu(Qt::Key_F10);
        QTRY_VERIFY(w.isClosed());
        w.takeKeyboardBack();
        for (int i = 0; i < w.count(); ++i) {
            const QChar letter = w.titles().at(i).at(0);
            press(w.window(), Qt::Key(letter.toUpper().unicode()), Qt::AltModifier);
            QTRY_VERIFY2(w.isOpen(i), qPrintable(w.titles().at(i)));
            QVERIFY(w.menus.menu(i)->activeAction());
            w.pressInMenu(Qt::Key_Escape);
            QTRY_VERIFY(w.isClosed());
            w.takeKeyboardBack();
        }
    }

    void arrowKeysGoFromMenuToMenu()
    {
        Row w;
        press(w.window(), Qt::Key_F10);
        QTRY_VERIFY(w.isOpen(0));
        for (int i = 1; i < w.count(); ++i) {
            w.pressInMenu(Qt::Key_Right);
            QTRY_VERIFY(w.isOpen(i));
        }
        w.pressInMenu(Qt::Key_Right);
        QTRY_VERIFY(w.isOpen(0));
        w.pressInMenu(Qt::Key_Left);
        QTRY_VERIFY(w.isOpen(w.count() - 1));
        w.pressInMenu(Qt::Key_Escape);
        QTRY_VERIFY(w.isClosed());
    }

    void thePointerGoesFromMenuToMenu()
    {
        Row w;
        click(w.button(1));
        QTRY_VERIFY(w.isOpen(1));
        const auto pointAt = [&](const QQuickItem *item) {
            const QPointF place = item->mapToGlobal(QPointF(item->width() / 2, item->height() / 2));
            QMenu *menu = w.menus.menu(w.menus.openIndex());
            // While a popup is open it is told of every movement.
            QMouseEvent move(QEvent::MouseMove, menu->mapFromGlobal(place), place, Qt::NoButton,
                             Qt::NoButton, {});
            QCoreApplication::sendEvent(menu, &move);
        };
        pointAt(w.button(3));
        QTRY_VERIFY(w.isOpen(3));
        pointAt(w.button(0));
        QTRY_VERIFY(w.isOpen(0));
        pointAt(w.item(u"noteList"_s)); // beside the row nothing changes
        QVERIFY(w.isOpen(0));
    }

    void whatIsChosenIsDone()
    {
        Row w;
        click(w.button(w.indexOf(u"note"_s)));
        QTRY_VERIFY(w.isOpen(w.indexOf(u"note"_s)));
        w.pressInMenu(Qt::Key_Down);
        w.pressInMenu(Qt::Key_Return);
        QTRY_COMPARE(w.store.notes().size(), 3);
        QTRY_VERIFY(w.isClosed());
    }

    void theKeyboardStaysWhereItIs()
    {
        Row w;
        w.content.selectNote(w.id(u"Milk"_s));
        QQuickItem *search = w.item(u"searchField"_s);
        click(search);
        type(w.window(), u"mi"_s);
        QMetaObject::invokeMethod(search, "selectAll");
        click(w.button(1));
        QTRY_VERIFY(w.isOpen(1));
        w.pressInMenu(Qt::Key_Escape);
        QTRY_VERIFY(w.isClosed());
        w.takeKeyboardBack();
        QCOMPARE(w.window()->activeFocusItem(), search);
        QCOMPARE(search->property("selectedText").toString(), u"mi"_s);
    }

    void everyKeyOfTheTableWorksInTheMainWindow()
    {
        Row w;
        QHash<QString, int> done;
        for (const Command &command : w.commands().commands()) {
            QAction *action = w.commands().action(command.id);
            action->disconnect(&w.commands()); // only that they are heard is looked at
            connect(action, &QAction::triggered, &w.content, [&, id = command.id] { ++done[id]; });
        }
        int count = 0;
        for (const Command &command : w.commands().commands()) {
            if (!command.action)
                continue;
            const bool isHeard = command.place == CommandKeys::Place::Everywhere ||
                                 command.place == CommandKeys::Place::MainWindow;
            for (const QKeySequence &key : command.keys) {
                done.clear();
                press(w.window(), key[0].key(), key[0].keyboardModifiers());
                QHash<QString, int> wanted;
                if (isHeard)
                    wanted.insert(command.id, 1);
                QVERIFY2(done == wanted, qPrintable(command.id + u' ' + key.toString()));
                ++count;
            }
        }
        QVERIFY(count > 12);
    }

    void keysWithAltGrDoNothing()
    {
        Row w;
        int done = 0;
        for (const Command &command : w.commands().commands()) {
            QAction *action = w.commands().action(command.id);
            action->disconnect(&w.commands());
            connect(action, &QAction::triggered, &w.content, [&] { ++done; });
        }
        for (int key = Qt::Key_A; key <= Qt::Key_Z; ++key) {
            press(w.window(), Qt::Key(key), Qt::GroupSwitchModifier);
            press(w.window(), Qt::Key(key), Qt::GroupSwitchModifier | Qt::ShiftModifier);
        }
        QCOMPARE(done, 0);
        QVERIFY(w.isClosed());
    }

    void aQuestionIsNotPassedOver_data()
    {
        QTest::addColumn<QString>("dialog");
        for (const QString &dialog : {u"deleteNoteDialog"_s, u"deleteNotesDialog"_s,
                                      u"linkDialog"_s, u"restoreDialog"_s, u"noticeDialog"_s})
            QTest::addRow("%s", qPrintable(dialog)) << dialog;
    }
    void aQuestionIsNotPassedOver()
    {
        QFETCH(QString, dialog);
        Row w;
        w.content.selectNote(w.id(u"Milk"_s));
        int done = 0;
        for (const Command &command : w.commands().commands()) {
            QAction *action = w.commands().action(command.id);
            action->disconnect(&w.commands());
            connect(action, &QAction::triggered, &w.content, [&] { ++done; });
        }
        w.content.deleteNote(w.id(u"Bread"_s)); // there is something to take back
        QObject *asking = w.object(dialog);
        QMetaObject::invokeMethod(asking, "open");
        QTRY_VERIFY(asking->property("opened").toBool());
        for (const Command &command : w.commands().commands()) {
            for (const QKeySequence &key : command.keys) {
                if (command.action)
                    press(w.window(), key[0].key(), key[0].keyboardModifiers());
            }
        }
        press(w.window(), Qt::Key_F10);
        for (const QString &title : w.titles())
            press(w.window(), Qt::Key(title[0].toUpper().unicode()), Qt::AltModifier);
        QCOMPARE(done, 0);
        QVERIFY(w.isClosed());
        QCOMPARE(w.storedNotes(), u"Milk"_s);
        QMetaObject::invokeMethod(asking, "close");
        QTRY_VERIFY(!asking->property("visible").toBool());
        press(w.window(), Qt::Key_N, Qt::ControlModifier);
        QCOMPARE(done, 1);
    }

    void undoTakesBackADeletionWhereNobodyWrites()
    {
        Row w;
        w.content.deleteNote(w.id(u"Milk"_s));
        QMetaObject::invokeMethod(w.item(u"sidebar"_s), "enterList");
        press(w.window(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(w.storedNotes(), u"Milk Bread"_s);
    }

    void undoInTheSearchLeavesTheNotesAlone()
    {
        Row w;
        w.content.deleteNote(w.id(u"Milk"_s));
        click(w.item(u"searchField"_s));
        type(w.window(), u"x"_s);
        press(w.window(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(w.item(u"searchField"_s)->property("text").toString(), QString());
        w.commands().run(u"undo"_s);
        QCOMPARE(w.storedNotes(), u"Bread"_s);
    }

    void whoCannotSeeTheRowHearsIt()
    {
        QAccessible::setActive(true);
        Row w;
        QAccessibleInterface *row = interfaceOf(w.item(u"menuRow"_s));
        QCOMPARE(row->role(), QAccessible::MenuBar);
        QCOMPARE(nameOf(row), u"Menu"_s);
        for (int i = 0; i < w.count(); ++i) {
            QAccessibleInterface *button = interfaceOf(w.button(i));
            QCOMPARE(button->role(), QAccessible::MenuItem);
            QCOMPARE(nameOf(button), w.titles().at(i));
            button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
            QTRY_VERIFY(w.isOpen(i));
            QAccessibleInterface *menu = QAccessible::queryAccessibleInterface(w.menus.menu(i));
            QCOMPARE(menu->role(), QAccessible::PopupMenu);
            QStringList items;
            for (int child = 0; child < menu->childCount(); ++child) {
                if (menu->child(child)->role() == QAccessible::MenuItem)
                    items << menu->child(child)->text(QAccessible::Name);
            }
            QStringList wanted;
            for (const QString &id : w.commands().menus()[size_t(i)].commands) {
                if (!id.isEmpty())
                    wanted << w.commands().action(id)->text();
            }
            QCOMPARE(items, wanted);
            w.pressInMenu(Qt::Key_Escape);
            QTRY_VERIFY(w.isClosed());
        }
        QCOMPARE(namelessIn(w.window()), QStringList());
    }
};

QTEST_MAIN(TestMenuRow)
#include "tst_menu_row.moc"
