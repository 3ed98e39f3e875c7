#include "shell/LanguageManager.h"
#include "shell/Symbol.h"
#include "tests/app/MenuCommandsFixture.h"

#include <QAction>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using Fixture = MenuCommandsFixture;
using Place = CommandKeys::Place;

namespace
{
/// Whether one press can be meant for both.
bool meet(Place a, Place b)
{
    if (a == b || a == Place::Everywhere || b == Place::Everywhere)
        return true;
    const auto are = [&](Place one, Place other) {
        return (a == one && b == other) || (a == other && b == one);
    };
    return are(Place::Editor, Place::MainWindow) || are(Place::Editor, Place::Sticky) ||
           are(Place::List, Place::MainWindow);
}

QString keysOf(const Command &command)
{
    return QKeySequence::listToString(command.keys, QKeySequence::PortableText);
}
} // namespace

/// What every command is called, where it is found and what its keys are.
class TestCommandTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void whatACommandIsCalled_data()
    {
        QTest::addColumn<QString>("polish");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("keys");
        const auto row = [](const char *id, const QString &polish, const QString &english,
                            const QString &keys) {
            QTest::newRow(id) << polish << english << keys;
        };
        row("newNote", u"Nowa notatka"_s, u"New note"_s, u"Ctrl+N"_s);
        row("extractAll", u"Wyciągnij wszystkie jako sticky"_s, u"Extract all as sticky"_s,
            u"Ctrl+Shift+N"_s);
        row("undo", u"Cofnij"_s, u"Undo"_s, u"Ctrl+Z"_s);
        row("redo", u"Ponów"_s, u"Redo"_s, u"Ctrl+Shift+Z; Ctrl+Y"_s);
        row("search", u"Szukaj w notatkach"_s, u"Search in notes"_s, u"Ctrl+F"_s);
        row("bold", u"Pogrubienie"_s, u"Bold"_s, u"Ctrl+B"_s);
        row("italic", u"Kursywa"_s, u"Italic"_s, u"Ctrl+I"_s);
        row("underline", u"Podkreślenie"_s, u"Underline"_s, u"Ctrl+U"_s);
        row("heading1", u"Nagłówek 1"_s, u"Heading 1"_s, u"Ctrl+Alt+1"_s);
        row("heading2", u"Nagłówek 2"_s, u"Heading 2"_s, u"Ctrl+Alt+2"_s);
        row("heading3", u"Nagłówek 3"_s, u"Heading 3"_s, u"Ctrl+Alt+3"_s);
        row("paragraph", u"Akapit"_s, u"Paragraph"_s, u"Ctrl+Alt+0"_s);
        row("bulletList", u"Lista punktowana"_s, u"Bulleted list"_s, u"Ctrl+Shift+L"_s);
        row("numberedList", u"Lista numerowana"_s, u"Numbered list"_s, QString());
        row("checklist", u"Checklista"_s, u"Checklist"_s, u"Ctrl+Shift+C"_s);
        row("closeWindow", u"Zamknij okno"_s, u"Close window"_s, u"Ctrl+W"_s);
        row("restoreVersion", u"Przywróć poprzednią wersję…"_s, u"Restore previous version…"_s,
            QString());
        row("polish", u"Polski"_s, u"Polski"_s, QString());
        row("english", u"English"_s, u"English"_s, QString());
        row("showShortcuts", u"Skróty klawiszowe"_s, u"Keyboard shortcuts"_s, u"F1; Ctrl+?"_s);
        row("quit", u"Zamknij Plim"_s, u"Quit Plim"_s, u"Ctrl+Q"_s);
        row("about", u"O programie Plim"_s, u"About Plim"_s, QString());
        row("startAtLogin", u"Uruchamiaj przy logowaniu"_s, u"Start at login"_s, QString());
        row("importNotes", u"Importuj…"_s, u"Import…"_s, QString());
        row("exportNote", u"Eksportuj notatkę…"_s, u"Export note…"_s, QString());
        row("exportAll", u"Eksportuj wszystkie…"_s, u"Export all…"_s, QString());
        row("printNote", u"Drukuj…"_s, u"Print…"_s, u"Ctrl+P"_s);
    }
    void whatACommandIsCalled()
    {
        Fixture f;
        const QString id = QString::fromLatin1(QTest::currentDataTag());
        const Command *command = f.commands.command(id);
        QVERIFY(command);
        QTEST(keysOf(*command), "keys");
        QTEST(f.commands.action(id)->text(), "english");
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QTEST(f.commands.action(id)->text(), "polish");
    }

    void whatNeedsAWordMoreHasOne_data()
    {
        QTest::addColumn<QString>("polish");
        QTest::addColumn<QString>("english");
        QTest::newRow("extractAll")
            << u"Wyciągnij wszystkie niewyciągnięte notatki"_s << u"Extract all unpinned notes"_s;
        QTest::newRow("restoreVersion") << u"Przywraca ostatni backup rotacyjny (3 wersje)"_s
                                        << u"Restores latest rotating backup (3 versions)"_s;
    }
    void whatNeedsAWordMoreHasOne()
    {
        Fixture f;
        const QAction *action = f.commands.action(QString::fromLatin1(QTest::currentDataTag()));
        QTEST(action->toolTip(), "english");
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QTEST(action->toolTip(), "polish");
        QTEST(action->statusTip(), "polish");
    }

    void whatIsInAMenu_data()
    {
        QTest::addColumn<QString>("polish");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("commands");
        const auto row = [](const char *id, const QString &polish, const QString &english,
                            const QString &commands) {
            QTest::newRow(id) << polish << english << commands;
        };
        row("plim", u"Plim"_s, u"Plim"_s, u"about showShortcuts - startAtLogin - quit"_s);
        row("note", u"Notatka"_s, u"Note"_s,
            u"newNote - extractAll - importNotes exportNote exportAll - printNote"_s);
        row("edit", u"Edycja"_s, u"Edit"_s, u"undo redo - search"_s);
        row("format", u"Format"_s, u"Format"_s,
            u"bold italic underline - heading1 heading2 heading3 paragraph - "
            "bulletList numberedList checklist"_s);
        row("window", u"Okno"_s, u"Window"_s, u"closeWindow - undoArrange restoreVersion"_s);
        row("language", u"Język"_s, u"Language"_s, u"polish english"_s);
    }
    void whatIsInAMenu()
    {
        QFETCH(QString, commands);
        const Fixture f;
        const auto &menus = f.commands.menus();
        const auto menu = std::ranges::find(menus, QString::fromLatin1(QTest::currentDataTag()),
                                            &CommandMenu::id);
        QVERIFY(menu != menus.end());
        QTEST(menu->title.polish, "polish");
        QTEST(menu->title.english, "english");
        QStringList found = menu->commands;
        found.replaceInStrings(QRegularExpression(u"^$"_s), u"-"_s);
        QCOMPARE(found.join(u' '), commands);
    }

    void thereAreTheseMenus()
    {
        const Fixture f;
        QStringList ids;
        for (const CommandMenu &menu : f.commands.menus())
            ids << menu.id;
        QCOMPARE(ids.join(u' '), u"plim note edit format window language"_s);
    }

    void noTwoMenusOfALanguageBeginAlike()
    {
        const Fixture f;
        for (const auto language : {&TextPair::polish, &TextPair::english}) {
            QString letters;
            for (const CommandMenu &menu : f.commands.menus())
                letters += (menu.title.*language).at(0).toUpper();
            for (const QChar letter : letters)
                QVERIFY2(letters.count(letter) == 1, qPrintable(letters));
        }
    }

    // One of them would never be heard.
    void noTwoCommandsOfOnePlaceHaveTheSameKey()
    {
        const Fixture f;
        const auto &commands = f.commands.commands();
        for (auto one = commands.begin(); one != commands.end(); ++one) {
            for (auto other = one + 1; other != commands.end(); ++other) {
                for (const QKeySequence &key : one->keys)
                    QVERIFY2(!other->keys.contains(key) || !meet(one->place, other->place),
                             qPrintable(one->id + u' ' + other->id));
            }
        }
    }

    void noKeyIsALetterOfThePolishKeyboard()
    {
        const Fixture f;
        for (const Command &command : f.commands.commands()) {
            for (const QKeySequence &key : command.keys) {
                QCOMPARE(key.count(), 1);
                QVERIFY2(key[0].key() != Qt::Key_unknown, qPrintable(command.id));
                // What AltGr is on some systems
                const bool isAltGr =
                    key[0].keyboardModifiers() == (Qt::ControlModifier | Qt::AltModifier);
                QVERIFY2(!isAltGr || !QChar(char16_t(key[0].key())).isLetter(),
                         qPrintable(command.id));
            }
        }
    }

    void everyRowOfTheTableIsWhole()
    {
        const Fixture f;
        QSet<QString> ids;
        QSet<QString> options;
        for (const CommandMenu &menu : f.commands.menus()) {
            QVERIFY(!menu.title.polish.isEmpty() && !menu.title.english.isEmpty());
            QVERIFY2(!menu.commands.constFirst().isEmpty() && !menu.commands.constLast().isEmpty(),
                     qPrintable(menu.id)); // a line is between two
            for (const QString &id : menu.commands) {
                if (id.isEmpty())
                    continue;
                const Command *command = f.commands.command(id);
                QVERIFY2(command, qPrintable(id));
                QVERIFY2(command->action, qPrintable(id)); // or choosing it does nothing
            }
        }
        for (const Command &command : f.commands.commands()) {
            const char *id = qPrintable(command.id);
            QVERIFY2(!ids.contains(command.id), id);
            ids.insert(command.id);
            QVERIFY2(!command.title.polish.isEmpty() && !command.title.english.isEmpty(), id);
            QVERIFY2(command.help.polish.isEmpty() == command.help.english.isEmpty(), id);
            QVERIFY2(command.symbol.isEmpty() || Symbol::isKnown(command.symbol), id);
            QVERIFY2(command.option.isEmpty() || !options.contains(command.option), id);
            QVERIFY2(command.option.isEmpty() || command.action, id);
            options.insert(command.option);
            QVERIFY2(command.action || !command.keys.isEmpty(), id);
        }
    }

    void theHelpPageHasEveryKeyOfTheTable_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::newRow("pl") << AppLanguage::pl;
        QTest::newRow("en") << AppLanguage::en;
    }
    void theHelpPageHasEveryKeyOfTheTable()
    {
        QFETCH(AppLanguage, language);
        const Fixture f;
        LanguageManager::shared().setLanguage(language);
        QStringList shown;
        const QVariantList columns = f.commands.keyColumns();
        QCOMPARE(columns.size(), 2);
        for (const QVariant &column : columns) {
            for (const QVariant &group : column.toList()) {
                QVERIFY(!group.toMap()[u"title"_s].toString().isEmpty());
                for (const QVariant &row : group.toMap()[u"rows"_s].toList())
                    shown << row.toMap()[u"title"_s].toString() + u": "_s +
                                 row.toMap()[u"keys"_s].toStringList().join(u", "_s);
            }
        }
        QStringList wanted;
        for (const Command &command : f.commands.commands()) {
            QStringList keys;
            for (const QKeySequence &key : command.keys)
                keys << key.toString(QKeySequence::NativeText);
            if (!keys.isEmpty())
                wanted << command.title.current() + u": "_s + keys.join(u", "_s);
        }
        shown.sort();
        wanted.sort();
        QCOMPARE(shown, wanted);
    }
};

QTEST_MAIN(TestCommandTable)
#include "tst_command_table.moc"
