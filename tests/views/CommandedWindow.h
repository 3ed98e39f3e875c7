#pragma once

#include "core/app/InfoWindows.h"
#include "core/app/MenuCommands.h"
#include "core/app/NoteTransfer.h"
#include "shell/ApplicationMenus.h"
#include "sticky/WindowHolder.h"
#include "tests/views/MainWindow.h"

/// The main window with the program's own commands and menus.
class CommandedWindow : public MainWindow
{
public:
    template <typename... Arguments>
    explicit CommandedWindow(Arguments &&...arguments)
        : MainWindow(std::forward<Arguments>(arguments)...)
    {
        infoWindows.setCommands(commands());
        WindowHolder::shared().window = window();
        window()->setProperty("commands", QVariant::fromValue(&commands()));
        window()->setProperty("menus", QVariant::fromValue(&menus));
    }
    ~CommandedWindow()
    {
        for (const char *name : {"commands", "menus"})
            window()->setProperty(name, QVariant::fromValue<QObject *>(nullptr));
        WindowHolder::shared() = {};
    }
    Q_DISABLE_COPY_MOVE(CommandedWindow)
    using MainWindow::window;

    [[nodiscard]] Commands &commands() { return menuCommands.commands(); }
    /// The button of the menu, by its place in the row.
    [[nodiscard]] QQuickItem *button(int index) const
    {
        return item(QStringLiteral("menu.%1").arg(index));
    }

    InfoWindows infoWindows{engine, home.data()};
    NoteTransfer transfer{store, content, [] {}};
    MenuCommands menuCommands{store, content, infoWindows, transfer};
    ApplicationMenus menus{menuCommands.commands()};
};
