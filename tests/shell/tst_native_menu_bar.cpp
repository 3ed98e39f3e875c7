#include "shell/NativeMenuBar.h"

#include "shell/LanguageManager.h"
#include "tests/ThrowAwayHome.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
struct Fixture {
    Fixture() { LanguageManager::shared().setLanguage(AppLanguage::en); }

    [[nodiscard]] std::vector<Command> table()
    {
        std::vector<Command> table;
        for (const QString &id : {u"a"_s, u"b"_s, u"c"_s}) {
            Command command;
            command.id = id;
            command.title = {id + u" po polsku"_s, id};
            command.action = [this, id] { done << id; };
            table.push_back(command);
        }
        return table;
    }
    static std::vector<CommandMenu> plan()
    {
        return {{u"first"_s, {u"Pierwsze"_s, u"First"_s}, {u"a"_s, QString(), u"b"_s}},
                {u"second"_s, {u"Drugie"_s, u"Second"_s}, {u"c"_s}}};
    }
    [[nodiscard]] QMenu *menu(int index) { return bar.menuBar().actions().at(index)->menu(); }
    [[nodiscard]] QStringList titles()
    {
        QStringList titles;
        for (const QAction *action : bar.menuBar().actions())
            titles << action->text();
        return titles;
    }
    [[nodiscard]] QStringList itemsOf(int index)
    {
        QStringList items;
        for (const QAction *action : menu(index)->actions())
            items << (action->isSeparator() ? u"-"_s : action->text());
        return items;
    }

    ThrowAwayHome home;
    QStringList done;
    Commands commands{table(), plan()};
    NativeMenuBar bar{commands};
};
} // namespace

// What can be seen of it without a system that has such a bar.
class TestNativeMenuBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itBelongsToNoWindow()
    {
        Fixture f;
        QCOMPARE(f.bar.menuBar().parentWidget(), nullptr);
    }

    void itHasEveryMenuWithItsCommandsAndLines()
    {
        Fixture f;
        QCOMPARE(f.titles(), (QStringList{u"First"_s, u"Second"_s}));
        QCOMPARE(f.itemsOf(0), (QStringList{u"a"_s, u"-"_s, u"b"_s}));
        QCOMPARE(f.itemsOf(1), QStringList{u"c"_s});
        QCOMPARE(f.menu(0)->objectName(), u"first"_s);
        for (const QAction *action : f.menu(0)->actions()) // none moves where the system likes it
            QVERIFY(action->isSeparator() || action->menuRole() == QAction::NoRole);
    }

    void itFollowsTheLanguage()
    {
        Fixture f;
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(f.titles(), (QStringList{u"Pierwsze"_s, u"Drugie"_s}));
        QCOMPARE(f.itemsOf(1), QStringList{u"c po polsku"_s});
    }

    void itTellsBeforeAMenuIsLookedAtAndDoesWhatIsChosen()
    {
        Fixture f;
        QSignalSpy aboutToShow(&f.commands, &Commands::menuAboutToShow);
        Q_EMIT f.menu(0)->aboutToShow();
        QCOMPARE(aboutToShow.count(), 1);
        f.menu(0)->actions().constLast()->trigger();
        QCOMPARE(f.done, QStringList{u"b"_s});
    }
};

QTEST_MAIN(TestNativeMenuBar)
#include "tst_native_menu_bar.moc"
