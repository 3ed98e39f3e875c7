#include "shell/ApplicationMenus.h"

#include "shell/Symbol.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QQuickWindow>
#include <QTimer>
#include <QWindow>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr auto onePress =
    100ms; ///< between a menu's closing and the news of the press that closed it
}

ApplicationMenus::ApplicationMenus(Commands &commands, QObject *parent)
    : QObject(parent), m_commands(commands), m_menus(commands.menus().size()),
      m_buttons(commands.menus().size())
{
    connect(&m_commands, &Commands::retitled, this, &ApplicationMenus::titlesChanged);
}

ApplicationMenus::~ApplicationMenus() = default;

QStringList ApplicationMenus::titles() const
{
    QStringList titles;
    for (const CommandMenu &menu : m_commands.menus())
        titles << menu.title.current();
    return titles;
}

void ApplicationMenus::attach(int index, QQuickItem *button)
{
    m_buttons.at(size_t(index)) = button;
}

void ApplicationMenus::press(int index)
{
    if (m_justClosed != index)
        open(index);
}

void ApplicationMenus::openByKey(int index)
{
    open(index);
    for (QAction *action : menu(index)->actions()) {
        if (action->isSeparator() || !action->isEnabled())
            continue;
        menu(index)->setActiveAction(action);
        break;
    }
}

void ApplicationMenus::setLook(const QString &styleSheet, const QColor &ink)
{
    m_styleSheet = styleSheet;
    m_ink = ink;
    for (const auto &menu : m_menus) {
        if (menu)
            menu->setStyleSheet(m_styleSheet);
    }
}

QMenu *ApplicationMenus::menu(int index)
{
    auto &menu = m_menus.at(size_t(index));
    if (menu)
        return menu.get();
    const CommandMenu &plan = m_commands.menus().at(size_t(index));
    menu = std::make_unique<QMenu>();
    menu->setObjectName(plan.id);
    menu->setWindowFlags(menu->windowFlags() | Qt::FramelessWindowHint |
                         Qt::NoDropShadowWindowHint);
    menu->setAttribute(Qt::WA_TranslucentBackground);
    menu->setAttribute(Qt::WA_X11NetWmWindowTypePopupMenu); // or it is a window like any other
    menu->setToolTipsVisible(true);
    menu->setStyleSheet(m_styleSheet);
    for (const QString &id : plan.commands) {
        if (id.isEmpty()) {
            menu->addSeparator();
            continue;
        }
        QAction *action = m_commands.action(id);
        const Command *command = m_commands.command(id);
        // Beside the mark of what is chosen there is no room for anything else.
        if (!action->isCheckable() && !command->symbol.isEmpty())
            action->setIcon(Symbol::icon(command->symbol, m_ink));
        menu->addAction(action);
    }
    menu->installEventFilter(this);
    connect(menu.get(), &QMenu::aboutToShow, &m_commands, &Commands::menuAboutToShow);
    connect(menu.get(), &QMenu::aboutToHide, this, [this, index] {
        m_justClosed = index;
        QTimer::singleShot(onePress, this, [this] { m_justClosed = -1; });
        if (m_openIndex == index)
            setOpenIndex(-1);
        // What was chosen is told only after this.
        QTimer::singleShot(0, this, [this] { m_commands.setIsMenuOpen(m_openIndex >= 0); });
    });
    return menu.get();
}

void ApplicationMenus::open(int index)
{
    QQuickItem *button = m_buttons.at(size_t(index));
    if (!button || !button->window())
        return;
    QMenu *opened = menu(index);
    if (m_openIndex >= 0 && m_openIndex != index)
        menu(m_openIndex)->hide();
    opened->winId(); // it has a window from now on
    opened->windowHandle()->setTransientParent(button->window());
    setOpenIndex(index);
    m_commands.setIsMenuOpen(true);
    opened->popup(button->mapToGlobal(QPointF(0, button->height())).toPoint());
}

void ApplicationMenus::setOpenIndex(int index)
{
    if (m_openIndex == index)
        return;
    m_openIndex = index;
    Q_EMIT openIndexChanged();
}

void ApplicationMenus::goBy(int step)
{
    const int count = int(m_menus.size());
    openByKey((m_openIndex + step + count) % count);
}

int ApplicationMenus::buttonAt(const QPoint &globalPosition) const
{
    for (size_t index = 0; index < m_buttons.size(); ++index) {
        const QQuickItem *button = m_buttons[index];
        if (button && button->isVisible() &&
            button->contains(button->mapFromGlobal(globalPosition)))
            return int(index);
    }
    return -1;
}

// As in any row of menus: an open one makes way for the next by the arrow keys, and by the pointer
// that comes to its button.
bool ApplicationMenus::eventFilter(QObject *watched, QEvent *event)
{
    if (m_openIndex < 0 || watched != m_menus.at(size_t(m_openIndex)).get())
        return QObject::eventFilter(watched, event);
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Left || key == Qt::Key_Right) {
            goBy(key == Qt::Key_Left ? -1 : 1);
            return true;
        }
        if (key == Qt::Key_F10) {
            menu(m_openIndex)->hide();
            return true;
        }
    } else if (event->type() == QEvent::MouseMove) {
        const int index = buttonAt(static_cast<QMouseEvent *>(event)->globalPosition().toPoint());
        if (index >= 0 && index != m_openIndex) {
            open(index);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
