#pragma once

#include "core/app/Autostart.h"
#include "core/app/MainWindowHiding.h"
#include "shell/Commands.h"

#include <QObject>

class ContentController;
class InfoWindows;
class NoteStore;
class NoteTransfer;

/// What the commands do. The formatting ones only announce themselves: the editor that has the
/// keyboard follows, the others do not.
class MenuCommands : public QObject
{
    Q_OBJECT

public:
    MenuCommands(NoteStore &store, ContentController &content, InfoWindows &infoWindows,
                 NoteTransfer &transfer, QObject *parent = nullptr);

    /// All commands, in the order of their table.
    [[nodiscard]] Commands &commands() { return m_commands; }
    [[nodiscard]] MainWindowHiding &mainWindow() { return m_mainWindow; }

private:
    void showAbout();
    void showShortcuts();
    void toggleStartAtLogin();
    void importNotes();
    void exportNote();
    void exportAll();
    void printNote();
    void quit();
    void toggleWindow();
    void newNote();
    void extractAll();
    void undo();
    void redo();
    void search();
    void bold();
    void italic();
    void underline();
    void heading1();
    void heading2();
    void heading3();
    void paragraph();
    void bulletList();
    void numberedList();
    void checklist();
    void closeWindow();
    void undoArrange();
    void restoreVersion();
    void setPolish();
    void setEnglish();
    void none(); ///< stands for what is done by whoever has the keyboard
    void bringToFront();

    [[nodiscard]] std::vector<Command> makeCommands();
    [[nodiscard]] static std::vector<CommandMenu> makeMenus();
    void follow();

    NoteStore &m_store;
    ContentController &m_content;
    InfoWindows &m_infoWindows;
    NoteTransfer &m_transfer;
    Autostart m_autostart;
    MainWindowHiding m_mainWindow;
    Commands m_commands;
};
