#include "shell/Commands.h"

#include "shell/L10n.h"
#include "shell/LanguageManager.h"
#include "tests/ThrowAwayHome.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;
using Place = CommandKeys::Place;

namespace
{
/// A few commands of every kind, in two menus.
struct Fixture {
    Fixture() { LanguageManager::shared().setLanguage(AppLanguage::en); }

    [[nodiscard]] Command made(const QString &id, const QString &keys, Place place,
                               bool isSomebodyElses = false)
    {
        Command command;
        command.id = id;
        command.title = {id + u" po polsku"_s, id + u" in English"_s};
        if (!keys.isEmpty())
            command.keys = QKeySequence::listFromString(keys);
        command.place = place;
        if (!isSomebodyElses)
            command.action = [this, id] { done << id; };
        return command;
    }
    [[nodiscard]] std::vector<Command> table()
    {
        std::vector<Command> table{made(u"add"_s, u"Ctrl+N; F5"_s, Place::Everywhere),
                                   made(u"close"_s, u"Ctrl+W"_s, Place::MainWindow),
                                   made(u"bold"_s, u"Ctrl+B"_s, Place::Editor),
                                   made(u"plain"_s, QString(), Place::Everywhere),
                                   made(u"up"_s, u"Alt+Up"_s, Place::List, true),
                                   made(u"fold"_s, u"Ctrl+M"_s, Place::Sticky, true)};
        table[0].help = {u"pomoc"_s, u"help"_s};
        table[0].option = u"add-it"_s;
        return table;
    }
    static std::vector<CommandMenu> menus()
    {
        return {{u"one"_s, {u"Jeden"_s, u"One"_s}, {u"add"_s, QString(), u"plain"_s}},
                {u"two"_s, {u"Dwa"_s, u"Two"_s}, {u"bold"_s}}};
    }

    ThrowAwayHome home;
    QStringList done;
    Commands commands{table(), menus()};
};

/// "title: row (keys), row (keys)" of each group.
QStringList written(const QVariantList &groups)
{
    QStringList lines;
    for (const QVariant &group : groups) {
        QStringList rows;
        for (const QVariant &row : group.toMap()[u"rows"_s].toList())
            rows << u"%1 (%2)"_s.arg(row.toMap()[u"title"_s].toString(),
                                     row.toMap()[u"keys"_s].toStringList().join(u' '));
        lines << group.toMap()[u"title"_s].toString() + u": "_s + rows.join(u", "_s);
    }
    return lines;
}
} // namespace

class TestCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aCommandIsDoneByItsNameAndByItsAction()
    {
        Fixture f;
        f.commands.run(u"add"_s);
        f.commands.action(u"bold"_s)->trigger();
        f.commands.run(u"unknown"_s);
        f.commands.run(u"up"_s); // somebody else's
        QCOMPARE(f.done, (QStringList{u"add"_s, u"bold"_s}));
        QVERIFY(!f.commands.action(u"unknown"_s));
        QVERIFY(!f.commands.command(u"unknown"_s));
    }

    void whatIsDisabledIsNotDone()
    {
        Fixture f;
        f.commands.action(u"add"_s)->setEnabled(false);
        f.commands.run(u"add"_s);
        QCOMPARE(f.done, QStringList());
    }

    void anOptionOfTheCommandLineIsACommand()
    {
        Fixture f;
        QVERIFY(f.commands.runOption(u"add-it"_s));
        QVERIFY(!f.commands.runOption(u"add"_s));
        QVERIFY(!f.commands.runOption(QString())); // the name of those that have none
        QCOMPARE(f.done, QStringList{u"add"_s});
    }

    void actionsSpeakTheLanguage()
    {
        Fixture f;
        QSignalSpy retitled(&f.commands, &Commands::retitled);
        QAction *action = f.commands.action(u"add"_s);
        QCOMPARE(action->text(), u"add in English"_s);
        QCOMPARE(action->toolTip(), u"help"_s);
        QCOMPARE(action->shortcut(), QKeySequence(u"Ctrl+N"_s));
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(retitled.count(), 1);
        QCOMPARE(f.commands.action(u"add"_s), action);
        QCOMPARE(action->text(), u"add po polsku"_s);
        QCOMPARE(action->toolTip(), u"pomoc"_s);
        QCOMPARE(f.commands.menus()[0].title.current(), u"Jeden"_s);
    }

    void whatIsDoneElsewhereHasNoKeyToListenTo()
    {
        Fixture f;
        QStringList rows;
        for (const QVariant &row : f.commands.keys())
            rows << row.toMap()[u"id"_s].toString() + u' ' +
                        row.toMap()[u"sequences"_s].toStringList().join(u'|') + u' ' +
                        QString::number(row.toMap()[u"place"_s].toInt());
        QCOMPARE(rows, (QStringList{u"add Ctrl+N|F5 %1"_s.arg(int(Place::Everywhere)),
                                    u"close Ctrl+W %1"_s.arg(int(Place::MainWindow)),
                                    u"bold Ctrl+B %1"_s.arg(int(Place::Editor))}));
    }

    void keysAreShownByMenuOrByPlace()
    {
        Fixture f;
        const QStringList wanted{u"One: add in English (Ctrl+N F5)"_s,
                                 u"Two: bold in English (Ctrl+B)"_s,
                                 L10n::mainWindowKeys() + u": close in English (Ctrl+W)"_s,
                                 L10n::listKeys() + u": up in English (Alt+Up)"_s,
                                 L10n::stickyKeys() + u": fold in English (Ctrl+M)"_s};
        QCOMPARE(written(f.commands.groups()), wanted);
        QStringList inColumns;
        QList<qsizetype> lengths;
        for (const QVariant &column : f.commands.keyColumns()) {
            inColumns << written(column.toList());
            lengths << column.toList().size();
        }
        QCOMPARE(inColumns, wanted); // in their order
        QCOMPARE(lengths.size(), 2);
        QCOMPARE(qAbs(lengths[0] - lengths[1]), 1);
    }

    // Somebody's editor has to have the keyboard back to be the one that is meant.
    void whatIsChosenInAMenuWaitsForTheKeyboard()
    {
        Fixture f;
        QVERIFY(!QGuiApplication::focusWindow());
        f.commands.setIsMenuOpen(true);
        f.commands.run(u"add"_s);
        QCOMPARE(f.done, QStringList());
        QWindow window;
        window.show();
        window.requestActivate();
        QTRY_COMPARE(QGuiApplication::focusWindow(), &window);
        QTRY_COMPARE(f.done, QStringList{u"add"_s});
        f.commands.run(u"bold"_s); // now there is nothing to wait for
        QCOMPARE(f.done, (QStringList{u"add"_s, u"bold"_s}));
        QTest::qWait(600); // longer than the patience: once is enough
        QCOMPARE(f.done.size(), 2);
    }

    void theKeyboardIsNotWaitedForForEver()
    {
        Fixture f;
        QVERIFY(!QGuiApplication::focusWindow());
        f.commands.setIsMenuOpen(true);
        f.commands.run(u"add"_s);
        QCOMPARE(f.done, QStringList());
        QTRY_COMPARE(f.done, QStringList{u"add"_s});
    }

    void withoutAMenuNothingWaits()
    {
        Fixture f;
        QVERIFY(!QGuiApplication::focusWindow());
        f.commands.setIsMenuOpen(true);
        f.commands.setIsMenuOpen(false);
        f.commands.run(u"add"_s);
        QCOMPARE(f.done, QStringList{u"add"_s});
    }
};

QTEST_MAIN(TestCommands)
#include "tst_commands.moc"
