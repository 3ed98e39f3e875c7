#pragma once

#include <QAction>
#include <QKeySequence>
#include <QObject>
#include <QVariantList>
#include <qqmlregistration.h>

#include <functional>
#include <vector>

namespace CommandKeys
{
Q_NAMESPACE
QML_ELEMENT

/// Where a command's keys are listened to.
enum class Place {
    Everywhere, ///< in every window
    MainWindow,
    Editor, ///< by the page that has the keyboard
    List,
    Sticky,
};
Q_ENUM_NS(Place)
} // namespace CommandKeys

/// A text in both languages.
struct TextPair {
    QString polish;
    QString english;

    [[nodiscard]] const QString &current() const; ///< in the language of the interface
};

/// What can be done from a menu, by keys, from the status item or from the command line.
struct Command {
    QString id;
    TextPair title;
    TextPair help; ///< empty where the title says it all
    QString symbol;
    QList<QKeySequence> keys; ///< the first is shown in menus
    CommandKeys::Place place = CommandKeys::Place::Everywhere;
    QString option; ///< of the command line, without its dashes; empty when it has none
    std::function<void()> action; ///< empty where what has the keyboard does it
};

/// One menu: its commands' ids in their order, an empty one for a line between them.
struct CommandMenu {
    QString id;
    TextPair title;
    QStringList commands;
};

/// All commands and the menus that they are in, as actions whose texts follow the language. There
/// is one action for each command, shared by every menu that shows it.
class Commands : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes one.")
    Q_PROPERTY(QVariantList keys READ keys CONSTANT)
    Q_PROPERTY(QVariantList keyColumns READ keyColumns NOTIFY retitled)

public:
    Commands(std::vector<Command> commands, std::vector<CommandMenu> menus,
             QObject *parent = nullptr);

    [[nodiscard]] const std::vector<Command> &commands() const { return m_commands; }
    [[nodiscard]] const std::vector<CommandMenu> &menus() const { return m_menus; }
    [[nodiscard]] const Command *command(const QString &id) const; ///< nullptr when there is none

    /// The action of a command; the same for everyone who asks.
    [[nodiscard]] QAction *action(const QString &id) const;
    /// A menu is open. While it closes, the window under it may not have the keyboard back yet, and a
    /// command that is chosen in it waits for that.
    void setIsMenuOpen(bool isMenuOpen) { m_isMenuOpen = isMenuOpen; }

    /// Does what the command does, unless its action is disabled.
    Q_INVOKABLE void run(const QString &id);
    /// The same, by the command line's name for it; false when no command has it.
    bool runOption(const QString &option);

    /// The keys that windows have to listen to: maps of id, sequences and place.
    [[nodiscard]] QVariantList keys() const;
    /// What the page of shortcuts shows: groups as maps of title and rows, the rows as maps of title
    /// and keys.
    [[nodiscard]] QVariantList groups() const;
    /// The groups in their order in two columns that are as equally long as can be.
    [[nodiscard]] QVariantList keyColumns() const;

Q_SIGNALS:
    /// A menu is about to be looked at: what it shows of things that others change is asked for now.
    void menuAboutToShow();
    /// Every text is in another language now.
    void retitled();

private:
    void perform(const std::function<void()> &action);
    void retitle();

    std::vector<Command> m_commands;
    std::vector<CommandMenu> m_menus;
    QHash<QString, QAction *> m_actions;
    bool m_isMenuOpen = false;
};
