#pragma once

#include "core/NoteStore.h"
#include "shell/Commands.h"
#include "shell/TrayWatch.h"

#include <QMenu>
#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>

#include <memory>

/// The program's status item, in the tray or the menu bar: the main window and a new note are
/// always at hand. The item is made as soon as there is a place for it, and comes back by itself
/// when that place does.
class MenuBarController : public QObject
{
    Q_OBJECT

public:
    [[nodiscard]] static MenuBarController &shared();

    explicit MenuBarController(QObject *parent = nullptr);
    ~MenuBarController() override;

    /// Neither the store nor the commands are kept alive; with the commands the item goes.
    void install(NoteStore *store, Commands &commands, TrayWatch &tray = TrayWatch::shared());

    /// nullptr until it is installed and there is a place for it.
    [[nodiscard]] QSystemTrayIcon *statusItem() const { return m_statusItem.get(); }
    [[nodiscard]] NoteStore *store() const { return m_store; }

public Q_SLOTS:
    void toggleWindow();
    void newNote();
    void setPolish();
    void setEnglish();
    void quit();

private:
    void makeStatusItem();
    void uninstall();
    void updateMenu();
    [[nodiscard]] std::unique_ptr<QMenu> buildMenu();
    void nameItems();
    QAction *addItem(QMenu &menu, const QString &commandID,
                     void (MenuBarController::*slot)()) const;
    void redraw();
    void answer(QSystemTrayIcon::ActivationReason reason);

    QPointer<NoteStore> m_store;
    QPointer<Commands> m_commands;
    QPointer<TrayWatch> m_tray;
    std::unique_ptr<QMenu> m_menu;
    std::unique_ptr<QSystemTrayIcon> m_statusItem; ///< goes before its menu
};
