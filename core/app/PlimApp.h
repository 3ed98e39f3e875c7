#pragma once

#include "core/NoteStore.h"
#include "core/app/AppDelegate.h"
#include "core/app/DialogLanguage.h"
#include "core/app/InfoWindows.h"
#include "core/app/Invocation.h"
#include "core/app/MenuCommands.h"
#include "core/app/NoteTransfer.h"
#include "core/app/QuitSignals.h"
#include "mainwindow/ContentController.h"
#include "shell/ApplicationMenus.h"
#include "shell/LanguageManager.h"
#include "shell/NativeMenuBar.h"

#include <QObject>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QThreadPool>
#include <QTimer>

#include <functional>
#include <memory>

/// The application: what lives as long as the process, in the order in which it is made.
class PlimApp : public QObject
{
    Q_OBJECT

public:
    /// The notes may have been read ahead.
    explicit PlimApp(NotesAhead *notes = nullptr);
    ~PlimApp() override;

    /// Opens the main window, and does what the start asks for besides.
    void start(const Invocation &invocation);
    /// Makes the main window and opens it. A hidden one stays so as long as there is a tray, or a
    /// sticky window, by which the program can be reached.
    void show(bool isHidden = false);

    /// Not while the program ends.
    [[nodiscard]] bool canCarryOut() const { return !m_appDelegate.isTerminating(); }
    /// What another start asks for. Wants the main window to have been made.
    void carryOut(const Invocation &invocation);

private:
    class WindowType;

    /// The record that start-up came this far. Failures are ignored.
    void writeTrace(const QString &name, const QString &text);
    void appearOnceDrawn(QQuickWindow &window);
    void appear();

    /// The engine, and the main window's QML in it, which is read before anything else is made: the
    /// notes may still be on their way. The engine itself goes where m_engine says.
    std::unique_ptr<WindowType> m_windowType;
    QThreadPool m_traces; ///< writes them: nobody who waits for a list waits for a disk
    NoteStore m_store;    ///< loads the notes at once, before there is any window
    LanguageManager &m_languageManager;
    DialogLanguage m_dialogLanguage;
    AppDelegate m_appDelegate;
    QuitSignals m_quitSignals;
    ContentController m_content;
    std::unique_ptr<QQmlApplicationEngine> m_engine; ///< goes before what its objects refer to
    InfoWindows m_infoWindows;
    NoteTransfer m_transfer;
    MenuCommands m_menuCommands;
    std::unique_ptr<NativeMenuBar> m_menuBar;  ///< where the system has one
    std::unique_ptr<ApplicationMenus> m_menus; ///< where it has none
    QTimer m_appearAtLast;
};
