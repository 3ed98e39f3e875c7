#include "core/app/MenuCommands.h"

#include "core/NoteStore.h"
#include "core/NotificationCenter.h"
#include "core/app/CommandTable.h"
#include "core/app/InfoWindows.h"
#include "core/app/NoteTransfer.h"
#include "editor/EditorCommand.h"
#include "mainwindow/ContentController.h"
#include "shell/L10n.h"
#include "shell/LanguageManager.h"
#include "sticky/StickyNoteManager.h"
#include "sticky/WindowHolder.h"

#include <QCoreApplication>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace
{
/// For the editor that has the keyboard, if there is one.
void format(const EditorCommand &command)
{
    Q_EMIT NotificationCenter::shared().plimFormat(command);
}

QList<QKeySequence> keysOf(const QString &words)
{
    QList<QKeySequence> keys;
    for (const QString &word : words.split(u"  "_s, Qt::SkipEmptyParts))
        keys << QKeySequence(word, QKeySequence::PortableText);
    return keys;
}

} // namespace

MenuCommands::MenuCommands(NoteStore &store, ContentController &content, InfoWindows &infoWindows,
                           NoteTransfer &transfer, QObject *parent)
    : QObject(parent), m_store(store), m_content(content), m_infoWindows(infoWindows),
      m_transfer(transfer), m_autostart(Autostart::ofThisProgram()),
      m_commands(makeCommands(), makeMenus())
{
    auto &stickyNotes = StickyNoteManager::shared();
    connect(&LanguageManager::shared(), &LanguageManager::languageChanged, this,
            &MenuCommands::follow);
    connect(&stickyNotes, &StickyNoteManager::canUndoArrangeChanged, this, &MenuCommands::follow);
    // The desktop's own settings write the same file.
    connect(&m_commands, &Commands::menuAboutToShow, this, &MenuCommands::follow);
    for (const QString &id : {u"polish"_s, u"english"_s, u"startAtLogin"_s})
        m_commands.action(id)->setCheckable(true);
    m_commands.action(u"startAtLogin"_s)->setVisible(Autostart::isSupported());
    follow();
}

std::vector<Command> MenuCommands::makeCommands()
{
#define PLIM_COMMAND_ROW(name, polish, english, polishHelp, englishHelp, symbolName, keyWords,     \
                         where, optionName, doer)                                                  \
    {.id = QStringLiteral(#name),                                                                  \
     .title = {QStringLiteral(polish), QStringLiteral(english)},                                   \
     .help = {QStringLiteral(polishHelp), QStringLiteral(englishHelp)},                            \
     .symbol = QStringLiteral(symbolName),                                                         \
     .keys = keysOf(QStringLiteral(keyWords)),                                                     \
     .place = CommandKeys::Place::where,                                                           \
     .option = QStringLiteral(optionName),                                                         \
     .action = bound(&MenuCommands::doer)},
    const auto bound = [this](void (MenuCommands::*method)()) -> std::function<void()> {
        return method == &MenuCommands::none
                   ? nullptr
                   : std::function<void()>([this, method] { (this->*method)(); });
    };
    return {PLIM_COMMANDS(PLIM_COMMAND_ROW)};
#undef PLIM_COMMAND_ROW
}

std::vector<CommandMenu> MenuCommands::makeMenus()
{
#define PLIM_MENU_ROW(name, polish, english, commandNames)                                         \
    {.id = QStringLiteral(#name),                                                                  \
     .title = {QStringLiteral(polish), QStringLiteral(english)},                                   \
     .commands = QStringLiteral(commandNames).replace(u'-', QString()).split(u' ')},
    return {PLIM_MENUS(PLIM_MENU_ROW)};
#undef PLIM_MENU_ROW
}

// What can be done, and what is chosen, as the menus show it.
void MenuCommands::follow()
{
    const bool isPolish = LanguageManager::shared().isPolish();
    m_commands.action(u"polish"_s)->setChecked(isPolish);
    m_commands.action(u"english"_s)->setChecked(!isPolish);
    m_commands.action(u"startAtLogin"_s)->setChecked(m_autostart.isOn());
    m_commands.action(u"undoArrange"_s)->setEnabled(StickyNoteManager::shared().canUndoArrange());
}

void MenuCommands::none() {}

void MenuCommands::showAbout()
{
    m_infoWindows.showAbout();
}

void MenuCommands::showShortcuts()
{
    m_infoWindows.showShortcuts();
}

void MenuCommands::toggleStartAtLogin()
{
    if (const auto error = m_autostart.setOn(!m_autostart.isOn()))
        m_content.notify(L10n::startAtLoginFailed(), *error);
    follow();
}

void MenuCommands::importNotes()
{
    m_transfer.importNotes();
}

void MenuCommands::exportNote()
{
    m_transfer.exportNote();
}

void MenuCommands::exportAll()
{
    m_transfer.exportAll();
}

void MenuCommands::printNote()
{
    m_transfer.printNote();
}

void MenuCommands::quit()
{
    QCoreApplication::quit();
}

void MenuCommands::toggleWindow()
{
    m_mainWindow.toggle();
}

void MenuCommands::newNote()
{
    if (!m_content.isAsking())
        m_content.addNote();
    bringToFront();
}

// What is archived was put away on purpose, and stays so.
void MenuCommands::extractAll()
{
    QList<QUuid> noteIDs;
    for (const Note &note : m_store.notes()) {
        if (!note.isArchived)
            noteIDs << note.id;
    }
    StickyNoteManager::shared().openAll(noteIDs, m_store, WindowHolder::shared().window);
}

void MenuCommands::undo()
{
    m_content.undo();
}

void MenuCommands::redo()
{
    format(EditorCommand::Kind::redo);
}

void MenuCommands::search()
{
    bringToFront();
    if (!m_content.isAsking())
        Q_EMIT NotificationCenter::shared().plimFocusSearch();
}

void MenuCommands::bold()
{
    format(EditorCommand::Kind::bold);
}

void MenuCommands::italic()
{
    format(EditorCommand::Kind::italic);
}

void MenuCommands::underline()
{
    format(EditorCommand::Kind::underline);
}

void MenuCommands::heading1()
{
    format(EditorCommand::heading(1));
}

void MenuCommands::heading2()
{
    format(EditorCommand::heading(2));
}

void MenuCommands::heading3()
{
    format(EditorCommand::heading(3));
}

void MenuCommands::paragraph()
{
    format(EditorCommand::Kind::paragraph);
}

void MenuCommands::bulletList()
{
    format(EditorCommand::Kind::bulletList);
}

void MenuCommands::numberedList()
{
    format(EditorCommand::Kind::numberedList);
}

void MenuCommands::checklist()
{
    format(EditorCommand::Kind::checkbox);
}

// Stickies listen to the same keys themselves.
void MenuCommands::closeWindow()
{
    if (QWindow *window = QGuiApplication::focusWindow())
        window->close();
}

void MenuCommands::undoArrange()
{
    StickyNoteManager::shared().undoArrange();
}

void MenuCommands::restoreVersion()
{
    bringToFront();
    m_content.versionRestore()->begin();
}

void MenuCommands::setPolish()
{
    LanguageManager::shared().setLanguage(AppLanguage::pl);
}

void MenuCommands::setEnglish()
{
    LanguageManager::shared().setLanguage(AppLanguage::en);
}

void MenuCommands::bringToFront()
{
    m_mainWindow.bringToFront();
}
