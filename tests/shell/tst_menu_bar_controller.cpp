#include "shell/MenuBarController.h"

#include "core/app/CommandTable.h"
#include "shell/LanguageManager.h"
#include "shell/SystemPreferences.h"
#include "tests/ThrowAwayHome.h"
#include "tests/shell/PrivateBus.h"
#include "tests/shell/StatusNotifierHost.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
/// A line for each item: title, key, mark; what is in a submenu is moved in.
QStringList textOf(const QMenu &menu, const QString &indent = {})
{
    QStringList lines;
    for (const QAction *item : menu.actions()) {
        const QString mark =
            item->isCheckable() ? (item->isChecked() ? u"* "_s : u"o "_s) : QString();
        const QString key =
            item->shortcut().isEmpty() ? QString() : u" ["_s + item->shortcut().toString() + u']';
        lines << indent + (item->isSeparator() ? u"-"_s : mark + item->text() + key);
        if (item->menu())
            lines << textOf(*item->menu(), indent + u"  "_s);
    }
    return lines;
}

const QStringList polishMenu{
    u"Pokaż / ukryj okno"_s, u"Nowa notatka [Ctrl+N]"_s, u"-"_s, u"Język"_s,
    u"  * Polski"_s,         u"  o English"_s,           u"-"_s, u"Zamknij Plim [Ctrl+Q]"_s};
const QStringList englishMenu{
    u"Show / hide window"_s, u"New note [Ctrl+N]"_s, u"-"_s, u"Language"_s,
    u"  o Polski"_s,         u"  * English"_s,       u"-"_s, u"Quit Plim [Ctrl+Q]"_s};
} // namespace

/// With a tray of the test's own; the item itself is shown nowhere.
class TestMenuBarController : public QObject
{
    Q_OBJECT

    std::optional<ThrowAwayHome> m_home;
    std::optional<PrivateBus> m_bus;
    std::unique_ptr<StatusNotifierHost> m_host;
    std::unique_ptr<TrayWatch> m_tray;
    std::unique_ptr<NoteStore> m_store;
    std::unique_ptr<Commands> m_commands;
    std::unique_ptr<MenuBarController> m_controller;
    QStringList m_done;

    [[nodiscard]] std::vector<Command> commandRows()
    {
        const auto recorded = [this](const QString &id) -> std::function<void()> {
            return [this, id] { m_done << id; };
        };
#define PLIM_COMMAND_ROW(name, polish, english, polishHelp, englishHelp, symbolName, keyWords,     \
                         where, optionName, doer)                                                  \
    {.id = QStringLiteral(#name),                                                                  \
     .title = {QStringLiteral(polish), QStringLiteral(english)},                                   \
     .help = {},                                                                                   \
     .symbol = {},                                                                                 \
     .keys = {QKeySequence(QStringLiteral(keyWords), QKeySequence::PortableText)},                 \
     .place = CommandKeys::Place::where,                                                           \
     .option = {},                                                                                 \
     .action = recorded(QStringLiteral(#name))},
        return {PLIM_COMMANDS(PLIM_COMMAND_ROW)};
#undef PLIM_COMMAND_ROW
    }
    [[nodiscard]] static std::vector<CommandMenu> menuRows()
    {
#define PLIM_MENU_ROW(name, polish, english, commandNames)                                         \
    {.id = QStringLiteral(#name),                                                                  \
     .title = {QStringLiteral(polish), QStringLiteral(english)},                                   \
     .commands = {}},
        return {PLIM_MENUS(PLIM_MENU_ROW)};
#undef PLIM_MENU_ROW
    }

    void install()
    {
        m_controller->install(m_store.get(), *m_commands, *m_tray);
        QTRY_VERIFY(m_controller->statusItem());
    }
    [[nodiscard]] QMenu &menu() const
    {
        return *m_controller->statusItem()->contextMenu();
    }
    void choose(const QString &id) const
    {
        auto *item = menu().findChild<QAction *>(id);
        if (!item)
            qFatal("no item %s", qPrintable(id));
        item->trigger();
    }

private Q_SLOTS:
    void init()
    {
        m_home.emplace();
        m_bus.emplace();
        m_host = std::make_unique<StatusNotifierHost>(m_bus->address());
        m_host->appear();
        m_tray =
            std::make_unique<TrayWatch>(QDBusConnection::connectToBus(m_bus->address(), u"tray"_s));
        m_store = std::make_unique<NoteStore>(m_home->data());
        m_commands = std::make_unique<Commands>(commandRows(), menuRows());
        m_controller = std::make_unique<MenuBarController>();
        LanguageManager::shared().setLanguage(AppLanguage::pl);
    }
    void cleanup()
    {
        m_controller.reset();
        m_commands.reset();
        m_store.reset();
        m_tray.reset();
        QDBusConnection::disconnectFromBus(u"tray"_s);
        m_host.reset();
        m_bus.reset();
        m_home.reset();
        m_done.clear();
    }

    void thereIsOneForAll()
    {
        QCOMPARE(&MenuBarController::shared(), &MenuBarController::shared());
    }

    void thereIsNoItemBeforeItIsInstalled()
    {
        QTRY_VERIFY(m_tray->isThere());
        QVERIFY(!m_controller->statusItem());
        QVERIFY(!m_controller->store());
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QVERIFY(!m_controller->statusItem());
    }

    void theMenuIsInTheLanguageOfTheInterface_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::addColumn<QStringList>("menuText");
        QTest::addColumn<QString>("toolTip");
        QTest::newRow("Polish") << AppLanguage::pl << polishMenu << u"Plim — notatki"_s;
        QTest::newRow("English") << AppLanguage::en << englishMenu << u"Plim — notes"_s;
    }
    void theMenuIsInTheLanguageOfTheInterface()
    {
        QFETCH(AppLanguage, language);
        LanguageManager::shared().setLanguage(language);
        install();
        QTEST(textOf(menu()), "menuText");
        QTEST(m_controller->statusItem()->toolTip(), "toolTip");
        QVERIFY(m_controller->statusItem()->isVisible());
    }

    void anotherLanguageRetitlesMenuAndToolTip()
    {
        install();
        const QMenu *first = &menu();
        choose(u"english"_s);
        QCOMPARE(LanguageManager::shared().language(), AppLanguage::en);
        QCOMPARE(textOf(menu()), englishMenu);
        QCOMPARE(&menu(), first); // of another one the panel's questions may come too late
        QCOMPARE(m_controller->statusItem()->toolTip(), u"Plim — notes"_s);
        choose(u"polish"_s);
        QCOMPARE(LanguageManager::shared().language(), AppLanguage::pl);
        QCOMPARE(textOf(menu()), polishMenu);
        QCOMPARE(m_controller->statusItem()->toolTip(), u"Plim — notatki"_s);
    }

    // Choosing it unticks it: the menu says again what is so.
    void theChosenLanguageCanBeChosenAgain()
    {
        install();
        choose(u"polish"_s);
        QCOMPARE(textOf(menu()), polishMenu);
    }

    void itemsDoWhatTheirCommandsDo()
    {
        install();
        choose(u"toggleWindow"_s);
        QCOMPARE(m_done, QStringList{u"toggleWindow"_s});
        choose(u"newNote"_s);
        QCOMPARE(m_done, (QStringList{u"toggleWindow"_s, u"newNote"_s}));
    }

    void aClickIsForTheWindowAndAMiddleClickForANote()
    {
        install();
        Q_EMIT m_controller->statusItem()->activated(QSystemTrayIcon::Trigger);
        QCOMPARE(m_done, QStringList{u"toggleWindow"_s});
        Q_EMIT m_controller->statusItem()->activated(QSystemTrayIcon::MiddleClick);
        QCOMPARE(m_done, (QStringList{u"toggleWindow"_s, u"newNote"_s}));
        Q_EMIT m_controller->statusItem()->activated(QSystemTrayIcon::Context);
        Q_EMIT m_controller->statusItem()->activated(QSystemTrayIcon::DoubleClick);
        QCOMPARE(m_done.size(), 2);
    }

    void withoutTheStoreThereIsNoNewNote()
    {
        install();
        QCOMPARE(m_controller->store(), m_store.get());
        m_store.reset();
        QVERIFY(!m_controller->store());
        choose(u"newNote"_s);
        QCOMPARE(m_done, QStringList());
    }

    void withTheCommandsTheItemGoes()
    {
        install();
        m_commands.reset();
        QVERIFY(!m_controller->statusItem());
        m_controller->toggleWindow();
        m_controller->newNote();
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QCOMPARE(m_done, QStringList());
    }

    void theItemWaitsForATray()
    {
        m_host->disappear();
        QTRY_VERIFY(m_tray->isKnown());
        QTRY_VERIFY(!m_tray->isThere());
        m_controller->install(m_store.get(), *m_commands, *m_tray);
        QVERIFY(!m_controller->statusItem());
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QVERIFY(!m_controller->statusItem());
        m_host->appear();
        QTRY_VERIFY(m_controller->statusItem());
        QCOMPARE(textOf(menu()), englishMenu);
    }

    void theIconIsATemplateAndSharpAtEverySize_data()
    {
        QTest::addColumn<int>("side");
        for (const int side : {16, 22, 24, 32})
            QTest::addRow("%d", side) << side;
    }
    void theIconIsATemplateAndSharpAtEverySize()
    {
        QFETCH(int, side);
        install();
        const QIcon icon = m_controller->statusItem()->icon();
        QVERIFY(icon.isMask());
        QVERIFY(icon.availableSizes().contains(QSize(side, side)));
        const QImage image = icon.pixmap(QSize(side, side), 1.0).toImage();
        QCOMPARE(image.size(), QSize(side, side));
        // Of one colour; what is neither covered nor free is a rounded corner.
        int covered = 0;
        int partly = 0;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                const QColor pixel = image.pixelColor(x, y);
                if (pixel.alpha() == 255) {
                    ++covered;
                    QCOMPARE(pixel, QColor(0xf2, 0xf2, 0xf2));
                } else if (pixel.alpha() > 0) {
                    ++partly;
                }
            }
        }
        QVERIFY2(covered > 50, qPrintable(QString::number(covered)));
        QVERIFY2(partly < covered / 2, qPrintable(QString::number(partly)));
    }

    void onADesktopOfLightColoursTheInkIsDark()
    {
        install();
        const auto ink = [this] {
            return m_controller->statusItem()
                ->icon()
                .pixmap(QSize(16, 16), 1.0)
                .toImage()
                .pixelColor(8, 4);
        };
        const auto tell = [](uint scheme) {
            QMetaObject::invokeMethod(&SystemPreferences::shared(), "follow",
                                      Q_ARG(QString, u"org.freedesktop.appearance"_s),
                                      Q_ARG(QString, u"color-scheme"_s),
                                      Q_ARG(QDBusVariant, QDBusVariant(scheme)));
        };
        QVERIFY(ink().lightness() > 200);
        tell(2);
        QVERIFY(ink().lightness() < 60);
        tell(1);
        QVERIFY(ink().lightness() > 200);
    }

    void theItemQuitsTheProgram()
    {
        install();
        QTimer::singleShot(0, this, [this] { choose(u"quit"_s); });
        QCOMPARE(QApplication::exec(), 0);
    }
};

int main(int argc, char **argv)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); // nothing of the user's desktop
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    TestMenuBarController test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_menu_bar_controller.moc"
