#include "shell/Commands.h"

#include "shell/L10n.h"
#include "shell/LanguageManager.h"

#include <QGuiApplication>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr int linesOfTitle = 2; ///< with the room above it
constexpr auto longestWaitForKeyboard = 500ms;

QVariantMap keyRow(const Command &command)
{
    QStringList keys;
    for (const QKeySequence &sequence : command.keys)
        keys << sequence.toString(QKeySequence::NativeText);
    return {{u"title"_s, command.title.current()}, {u"keys"_s, keys}};
}
} // namespace

const QString &TextPair::current() const
{
    return LanguageManager::shared().isPolish() ? polish : english;
}

Commands::Commands(std::vector<Command> commands, std::vector<CommandMenu> menus, QObject *parent)
    : QObject(parent), m_commands(std::move(commands)), m_menus(std::move(menus))
{
    for (const Command &command : m_commands) {
        auto *action = new QAction(this);
        action->setObjectName(command.id);
        if (!command.keys.isEmpty())
            action->setShortcut(command.keys.constFirst());
        action->setShortcutVisibleInContextMenu(true);
        // Where a menu of the program moves to the menu bar of the system, nothing is guessed.
        action->setMenuRole(QAction::NoRole);
        if (command.action)
            connect(action, &QAction::triggered, this,
                    [this, does = command.action] { perform(does); });
        m_actions.insert(command.id, action);
    }
    retitle();
    connect(&L10n::shared(), &L10n::changed, this, &Commands::retitle);
}

const Command *Commands::command(const QString &id) const
{
    const auto found = std::ranges::find(m_commands, id, &Command::id);
    return found == m_commands.end() ? nullptr : &*found;
}

QAction *Commands::action(const QString &id) const
{
    return m_actions.value(id);
}

void Commands::run(const QString &id)
{
    if (QAction *action = m_actions.value(id))
        action->trigger();
}

bool Commands::runOption(const QString &option)
{
    const auto found = option.isEmpty() ? m_commands.end()
                                        : std::ranges::find(m_commands, option, &Command::option);
    if (found == m_commands.end())
        return false;
    run(found->id);
    return true;
}

QVariantList Commands::keys() const
{
    QVariantList rows;
    for (const Command &command : m_commands) {
        if (!command.action || command.keys.isEmpty())
            continue;
        QStringList sequences;
        for (const QKeySequence &sequence : command.keys)
            sequences << sequence.toString(QKeySequence::PortableText);
        rows << QVariantMap{
            {u"id"_s, command.id}, {u"sequences"_s, sequences}, {u"place"_s, int(command.place)}};
    }
    return rows;
}

QVariantList Commands::groups() const
{
    QVariantList groups;
    QSet<QString> shown;
    const auto append = [&groups](const QString &title, const QVariantList &rows) {
        if (!rows.isEmpty())
            groups << QVariantMap{{u"title"_s, title}, {u"rows"_s, rows}};
    };
    for (const CommandMenu &menu : m_menus) {
        QVariantList rows;
        for (const QString &id : menu.commands) {
            const Command *found = command(id);
            if (!found || found->keys.isEmpty())
                continue;
            shown.insert(id);
            rows << keyRow(*found);
        }
        append(menu.title.current(), rows);
    }
    const std::pair<CommandKeys::Place, QString> places[] = {
        {CommandKeys::Place::MainWindow, L10n::mainWindowKeys()},
        {CommandKeys::Place::List, L10n::listKeys()},
        {CommandKeys::Place::Sticky, L10n::stickyKeys()},
    };
    for (const auto &[place, title] : places) {
        QVariantList rows;
        for (const Command &command : m_commands) {
            if (command.place == place && !command.keys.isEmpty() && !shown.contains(command.id))
                rows << keyRow(command);
        }
        append(title, rows);
    }
    return groups;
}

QVariantList Commands::keyColumns() const
{
    const QVariantList all = groups();
    const auto length = [&all](qsizetype from, qsizetype to) {
        qsizetype lines = 0;
        for (qsizetype index = from; index < to; ++index)
            lines += all[index].toMap().value(u"rows"_s).toList().size() + linesOfTitle;
        return lines;
    };
    qsizetype best = 0;
    for (qsizetype end = 0; end <= all.size(); ++end) {
        if (std::max(length(0, end), length(end, all.size())) <
            std::max(length(0, best), length(best, all.size())))
            best = end;
    }
    return {QVariant(all.first(best)), QVariant(all.sliced(best))};
}

void Commands::perform(const std::function<void()> &action)
{
    if (!m_isMenuOpen || QGuiApplication::focusWindow()) {
        action();
        return;
    }
    // Whichever comes first: the keyboard, or the end of patience with a desktop that gives it to
    // somebody else.
    auto *wait = new QTimer(this);
    wait->setSingleShot(true);
    const auto finish = [wait, action] {
        wait->deleteLater();
        wait->disconnect();
        action();
    };
    connect(wait, &QTimer::timeout, wait, finish);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, wait, [wait](const QWindow *window) {
        if (window) // later: what is in the window hears of it after this
            wait->start(0);
    });
    wait->start(longestWaitForKeyboard);
}

void Commands::retitle()
{
    for (const Command &command : m_commands) {
        QAction *action = m_actions.value(command.id);
        action->setText(command.title.current());
        action->setToolTip(command.help.current());
        action->setStatusTip(command.help.current());
    }
    Q_EMIT retitled();
}
