#pragma once

#include "core/app/Invocation.h"

#include <QList>
#include <QStringList>
#include <QStringView>

#include <variant>

/// An option that is an order, to this start or to the Plim that runs already.
struct CommandOption {
    QString name; ///< without its dashes
    QString help;
};

/// Those of the table of commands.
[[nodiscard]] QList<CommandOption> commandOptions();

inline constexpr QStringView newNoteCommand = u"new-note";
inline constexpr QStringView toggleWindowCommand = u"toggle-window";
inline constexpr QStringView quitCommand = u"quit";

/// Whether a command of the table has this option.
[[nodiscard]] bool isKnownCommand(QStringView command);

/// What the command line asks for; or the exit code, when its answer was all there is to do:
/// --version and --help on standard output, anything unknown in one line on standard error. Needs
/// no display. The first argument is the program's name.
[[nodiscard]] std::variant<Invocation, int> readCommandLine(const QStringList &arguments);
