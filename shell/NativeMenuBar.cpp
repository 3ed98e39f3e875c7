#include "shell/NativeMenuBar.h"

#include <utility>

NativeMenuBar::NativeMenuBar(Commands &commands, QObject *parent)
    : QObject(parent), m_commands(commands)
{
    for (const CommandMenu &plan : m_commands.menus()) {
        auto menu = std::make_unique<QMenu>();
        menu->setObjectName(plan.id);
        for (const QString &id : plan.commands) {
            if (id.isEmpty())
                menu->addSeparator();
            else
                menu->addAction(m_commands.action(id));
        }
        connect(menu.get(), &QMenu::aboutToShow, &m_commands, &Commands::menuAboutToShow);
        m_menuBar.addMenu(menu.get());
        m_menus.push_back(std::move(menu));
    }
    retitle();
    connect(&m_commands, &Commands::retitled, this, &NativeMenuBar::retitle);
}

void NativeMenuBar::retitle()
{
    for (std::size_t index = 0; index < m_menus.size(); ++index)
        m_menus[index]->setTitle(m_commands.menus()[index].title.current());
}
