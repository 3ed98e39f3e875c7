#include "shell/MenuBarController.h"

#include "core/NotificationCenter.h"
#include "shell/L10n.h"
#include "shell/LanguageManager.h"
#include "shell/SymbolIconEngine.h"
#include "shell/SystemPreferences.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
const QString themeName = u"org.plim.Plim-symbolic"_s;
const QColor lightInk(0xf2, 0xf2, 0xf2);
const QColor darkInk(0x2e, 0x2e, 0x2e);

// A tray that takes pictures knows nothing of templates, so the picture has the ink of its likely
// ground: most panels are dark, unless the whole desktop is asked to be light. One that finds the
// icon in the theme by its name inks it itself.
QIcon statusIcon()
{
    const QColor &ink = SystemPreferences::shared().prefersLight() ? darkInk : lightInk;
    auto *engine = new SymbolIconEngine(u"refrigerator.fill"_s, ink);
    if (QIcon::hasThemeIcon(themeName))
        engine->setThemeName(themeName);
    QIcon icon(engine);
    icon.setIsMask(true);
    return icon;
}
} // namespace

MenuBarController::MenuBarController(QObject *parent) : QObject(parent) {}

MenuBarController::~MenuBarController() = default;

MenuBarController &MenuBarController::shared()
{
    static MenuBarController controller;
    return controller;
}

void MenuBarController::install(NoteStore *store, Commands &commands, TrayWatch &tray)
{
    uninstall();
    m_store = store;
    m_commands = &commands;
    m_tray = &tray;
    // Whatever shows something has to go before the application does.
    connect(&commands, &QObject::destroyed, this, &MenuBarController::uninstall);
    connect(&tray, &TrayWatch::isThereChanged, this, &MenuBarController::makeStatusItem);
    connect(&NotificationCenter::shared(), &NotificationCenter::plimLanguageChanged, this,
            &MenuBarController::updateMenu, Qt::UniqueConnection);
    connect(&SystemPreferences::shared(), &SystemPreferences::prefersLightChanged, this,
            &MenuBarController::redraw, Qt::UniqueConnection);
    makeStatusItem();
}

void MenuBarController::uninstall()
{
    if (m_commands)
        disconnect(m_commands, nullptr, this, nullptr);
    if (m_tray)
        disconnect(m_tray, nullptr, this, nullptr);
    m_statusItem.reset();
    m_menu.reset();
}

// Once it is made it stays: Qt puts it back when a tray that was gone is there again.
void MenuBarController::makeStatusItem()
{
    if (m_statusItem || !m_tray->isThere())
        return;
    m_statusItem = std::make_unique<QSystemTrayIcon>();
    m_statusItem->setObjectName(QCoreApplication::applicationName());
    connect(m_statusItem.get(), &QSystemTrayIcon::activated, this, &MenuBarController::answer);
    redraw();
    updateMenu();
    m_statusItem->show();
}

void MenuBarController::redraw()
{
    if (m_statusItem)
        m_statusItem->setIcon(statusIcon());
}

void MenuBarController::updateMenu()
{
    if (!m_statusItem)
        return;
    if (!m_menu) {
        m_menu = buildMenu();
        m_statusItem->setContextMenu(m_menu.get());
    }
    nameItems();
    m_statusItem->setToolTip(L10n::statusItemHelp());
}

// In the menu that there is: Qt does not bear a question of the panel's that has come for another
// one.
void MenuBarController::nameItems()
{
    for (QAction *item : m_menu->findChildren<QAction *>()) {
        if (const Command *command = m_commands->command(item->objectName())) {
            item->setText(command->title.current());
            item->setShortcut(command->keys.value(0));
        }
        if (item->objectName() == "polish"_L1)
            item->setChecked(LanguageManager::shared().isPolish());
        else if (item->objectName() == "english"_L1)
            item->setChecked(!LanguageManager::shared().isPolish());
    }
    const auto &menus = m_commands->menus();
    const auto languages = std::ranges::find(menus, u"language"_s, &CommandMenu::id);
    if (languages != menus.end())
        m_menu->findChild<QMenu *>()->setTitle(languages->title.current());
}

std::unique_ptr<QMenu> MenuBarController::buildMenu()
{
    auto menu = std::make_unique<QMenu>();
    addItem(*menu, u"toggleWindow"_s, &MenuBarController::toggleWindow);
    addItem(*menu, u"newNote"_s, &MenuBarController::newNote);
    menu->addSeparator();
    QMenu *submenu = menu->addMenu(QString());
    addItem(*submenu, u"polish"_s, &MenuBarController::setPolish)->setCheckable(true);
    addItem(*submenu, u"english"_s, &MenuBarController::setEnglish)->setCheckable(true);
    menu->addSeparator();
    addItem(*menu, u"quit"_s, &MenuBarController::quit);
    return menu;
}

QAction *MenuBarController::addItem(QMenu &menu, const QString &commandID,
                                    void (MenuBarController::*slot)()) const
{
    QAction *item = menu.addAction(QString());
    item->setObjectName(commandID);
    item->setMenuRole(QAction::NoRole);
    connect(item, &QAction::triggered, this, slot);
    return item;
}

// macOS opens the menu on every click by itself; elsewhere a click is for the window.
void MenuBarController::answer(QSystemTrayIcon::ActivationReason reason)
{
#ifndef Q_OS_MACOS
    if (reason == QSystemTrayIcon::Trigger)
        toggleWindow();
#endif
    if (reason == QSystemTrayIcon::MiddleClick)
        newNote();
}

void MenuBarController::toggleWindow()
{
    if (m_commands)
        m_commands->run(u"toggleWindow"_s);
}

void MenuBarController::newNote()
{
    if (m_store && m_commands)
        m_commands->run(u"newNote"_s);
}

void MenuBarController::setPolish()
{
    LanguageManager::shared().setLanguage(AppLanguage::pl);
}

void MenuBarController::setEnglish()
{
    LanguageManager::shared().setLanguage(AppLanguage::en);
}

void MenuBarController::quit()
{
    QCoreApplication::quit();
}
