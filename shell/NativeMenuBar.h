#pragma once

#include "shell/Commands.h"

#include <QMenu>
#include <QMenuBar>

#include <memory>
#include <vector>

/// The menus in the system's own menu bar, for desktops that have one for every program: nobody's
/// child, it is there whichever window has the keyboard, and when none is open.
class NativeMenuBar : public QObject
{
    Q_OBJECT

public:
    explicit NativeMenuBar(Commands &commands, QObject *parent = nullptr);

    [[nodiscard]] QMenuBar &menuBar() { return m_menuBar; }

private:
    void retitle();

    Commands &m_commands;
    std::vector<std::unique_ptr<QMenu>> m_menus; ///< as the commands have them
    QMenuBar m_menuBar;                          ///< goes before they do
};
