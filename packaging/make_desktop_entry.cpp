#include "core/app/CommandTable.h"

#include <QString>

#include <array>
#include <iostream>

using namespace Qt::StringLiterals;

namespace
{
struct Action {
    QString option; ///< of the command line; empty where there is none
    QString polish;
    QString english;
};

#define PLIM_ACTION(id, polish, english, polishHelp, englishHelp, symbol, keys, where, option,     \
                    doer)                                                                          \
    Action{QStringLiteral(option), QStringLiteral(polish), QStringLiteral(english)},
const std::array commands{PLIM_COMMANDS(PLIM_ACTION)};
#undef PLIM_ACTION

/// What makes sense without the program in sight, too: to end it there are other ways.
bool isOffered(const Action &action)
{
    return !action.option.isEmpty() && action.option != "quit"_L1;
}

// Of one main window, the format itself speaks since 1.5 only, which Debian 12 does not know;
// desktops that know either word know this one.
constexpr const char *entry = R"([Desktop Entry]
Version=1.4
Type=Application
Name=Plim
GenericName=Notes
GenericName[pl]=Notatki
Comment=Short notes on your desktop, to keep
Comment[pl]=Krótkie notatki na pulpicie, na zawsze pod ręką
Exec=plim
TryExec=plim
Icon=org.plim.Plim
Terminal=false
Categories=Qt;Utility;
Keywords=notes;sticky;memo;checklist;reminder;todo;
Keywords[pl]=notatki;karteczki;przyklejane;lista;zapiski;przypomnienie;
StartupNotify=true
StartupWMClass=Plim
X-GNOME-SingleWindow=true
)";
} // namespace

// Writes the desktop entry on standard output.
int main()
{
    QString text = QString::fromUtf8(entry) + u"Actions="_s;
    for (const Action &action : commands) {
        if (isOffered(action))
            text += action.option + u';';
    }
    text += u'\n';
    for (const Action &action : commands) {
        if (!isOffered(action))
            continue;
        text += u"\n[Desktop Action "_s + action.option + u"]\nName="_s + action.english +
                u"\nName[pl]="_s + action.polish + u"\nExec=plim --"_s + action.option + u'\n';
    }
    std::cout << text.toStdString();
    return std::cout.flush() ? 0 : 1;
}
