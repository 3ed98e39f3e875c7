#include "core/app/CommandLine.h"

#include "core/app/CommandTable.h"

#include <QCommandLineParser>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

#define PLIM_COMMAND_OPTION(id, polish, english, polishHelp, englishHelp, symbol, keys, where,     \
                            option, doer)                                                          \
    {QStringLiteral(option), QStringLiteral(english) + u'.'},

QList<CommandOption> commandOptions()
{
    QList<CommandOption> options{PLIM_COMMANDS(PLIM_COMMAND_OPTION)};
    options.removeIf([](const CommandOption &option) { return option.name.isEmpty(); });
    return options;
}
#undef PLIM_COMMAND_OPTION

namespace
{
int refuse(const QString &mistake)
{
    std::fprintf(stderr, "plim: %s Try 'plim --help'.\n", qPrintable(mistake));
    return 2;
}
} // namespace

bool isKnownCommand(QStringView command)
{
    return std::ranges::any_of(commandOptions(),
                               [&](const CommandOption &option) { return option.name == command; });
}

std::variant<Invocation, int> readCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Short notes, to keep."_s);
    const QCommandLineOption help({u"h"_s, u"help"_s}, u"Shows this text."_s);
    const QCommandLineOption version({u"v"_s, u"version"_s}, u"Shows the version."_s);
    const QCommandLineOption hidden(u"hidden"_s,
                                    u"Starts without the main window, where there is a tray."_s);
    // A session manager starts the program again in the toolkit's own words: "-session id".
    QCommandLineOption session(u"session"_s, {}, u"id"_s);
    session.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOptions({help, version, hidden, session});
    const QList<CommandOption> options = commandOptions();
    for (const CommandOption &option : options)
        parser.addOption({option.name, option.help});

    if (!parser.parse(arguments))
        return refuse(parser.errorText());
    if (const QStringList stray = parser.positionalArguments(); !stray.isEmpty())
        return refuse(u"Unexpected argument '%1'."_s.arg(stray.constFirst()));
    if (parser.isSet(help)) {
        std::fputs(qPrintable(parser.helpText()), stdout);
        return 0;
    }
    if (parser.isSet(version)) {
        std::fputs("plim " PLIM_VERSION "\n", stdout);
        return 0;
    }
    Invocation invocation;
    invocation.isHidden = parser.isSet(hidden);
    for (const CommandOption &option : options) {
        const QString &name = option.name;
        if (!parser.isSet(name))
            continue;
        if (!invocation.command.isEmpty())
            return refuse(u"'%1' and '%2' do not go together."_s.arg(invocation.command, name));
        invocation.command = name;
    }
    return invocation;
}
