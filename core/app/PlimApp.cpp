#include "core/app/PlimApp.h"

#include "core/ThreadJob.h"
#include "core/app/CommandLine.h"
#include "core/app/PendingSelection.h"
#include "core/app/StartReport.h"
#include "editor/EditorProfile.h"
#include "mainwindow/SelectionManager.h"
#include "shell/Bundle.h"
#include "shell/FontRegistration.h"
#include "shell/MenuBarController.h"
#include "sticky/StickyNoteFactory.h"
#include "sticky/StickyNoteManager.h"
#include "sticky/WindowFront.h"
#include "sticky/WindowHolder.h"

#include <QDateTime>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QSaveFile>
#include <QSessionManager>
#include <QStandardPaths>
#include <QWindow>
#include <QtQml/qqmlextensionplugin.h>

#include <chrono>
#include <cstdlib>

Q_IMPORT_QML_PLUGIN(Plim_EditorPlugin)
Q_IMPORT_QML_PLUGIN(Plim_MainWindowPlugin)
Q_IMPORT_QML_PLUGIN(Plim_ShellPlugin)
Q_IMPORT_QML_PLUGIN(Plim_StickyPlugin)

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr auto longestWaitForFrame = 1s;

#ifdef Q_OS_MACOS
constexpr bool hasSystemMenuBar = true;
#else
constexpr bool hasSystemMenuBar = false;
#endif

NoteStore *liveStore = nullptr;

// A lost display ends the process from inside the windowing library, without an event loop; what
// the store already knows is still written.
void saveAtExit()
{
    if (liveStore)
        liveStore->settle();
}

QUrl mainWindowURL()
{
    return QUrl(u"qrc:/qt/qml/Plim/MainWindow/ContentView.qml"_s);
}

NoteStore storeOf(NotesAhead *notes)
{
    const QString directory = NoteStore::defaultDataDirectory();
    return notes ? NoteStore(directory, *notes) : NoteStore(directory);
}
} // namespace

/// As long as the component lives, the engine has what it has read.
class PlimApp::WindowType
{
public:
    WindowType() : engine(std::make_unique<QQmlApplicationEngine>())
    {
        engine->addImportPath(u":/qt/qml"_s);
        m_component = std::make_unique<QQmlComponent>(engine.get(), mainWindowURL());
    }

    std::unique_ptr<QQmlApplicationEngine> engine;

private:
    std::unique_ptr<QQmlComponent> m_component;
};

PlimApp::PlimApp(NotesAhead *notes)
    : m_windowType(std::make_unique<WindowType>()), m_store(storeOf(notes)),
      m_languageManager(LanguageManager::shared()), m_content(m_store, SelectionManager::shared()),
      m_engine(std::move(m_windowType->engine)),
      m_infoWindows(*m_engine, NoteStore::defaultDataDirectory()),
      m_transfer(m_store, m_content, [this] { m_appDelegate.collectTexts(); }),
      m_menuCommands(m_store, m_content, m_infoWindows, m_transfer)
{
    if constexpr (hasSystemMenuBar)
        m_menuBar = std::make_unique<NativeMenuBar>(m_menuCommands.commands());
    else
        m_menus = std::make_unique<ApplicationMenus>(m_menuCommands.commands());
    m_infoWindows.setCommands(m_menuCommands.commands());
    liveStore = &m_store;
    std::atexit(saveAtExit);
    m_traces.setMaxThreadCount(1); // in order
    writeTrace(u"plim_init.log"_s, u"init called "_s + QDateTime::currentDateTime().toString() +
                                       u" Bundle "_s + Bundle::path());
    registerOutfitFonts();
    writeTrace(u"plim_init2.log"_s, u"after register"_s);

    EditorProfile::shared().setImagesDirectory(m_store.imagesDirectory());
    auto &stickyNotes = StickyNoteManager::shared();
    stickyNotes.setFactory(stickyNoteFactory(*m_engine, m_store, stickyNotes));
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager &) {
        m_appDelegate.applicationShouldTerminate();
        m_store.settle();
    });
}

PlimApp::~PlimApp()
{
    StickyNoteManager::shared().setFactory({}); // its windows are made by the engine
    m_windowType.reset();
    liveStore = nullptr;
}

void PlimApp::writeTrace(const QString &name, const QString &text)
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (documents.isEmpty())
        return;
    startJob(m_traces, [path = documents + u'/' + name, text] {
        QSaveFile file(path);
        if (file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0)
            file.commit();
    });
}

void PlimApp::start(const Invocation &invocation)
{
    show(invocation.isHidden && invocation.command.isEmpty());
    if (invocation.command == newNoteCommand)
        carryOut(invocation);
}

void PlimApp::show(bool isHidden)
{
    m_engine->setInitialProperties(
        {{u"content"_s, QVariant::fromValue(&m_content)},
         {u"commands"_s, QVariant::fromValue(&m_menuCommands.commands())},
         {u"menus"_s, QVariant::fromValue(m_menus.get())}});
    m_engine->load(mainWindowURL());
    m_windowType.reset();
    auto *window = m_engine->rootObjects().isEmpty()
                       ? nullptr
                       : qobject_cast<QQuickWindow *>(m_engine->rootObjects().constFirst());
    if (!window)
        qFatal("the main window could not be made");
    reportWhenUsable(*window);
    appearOnceDrawn(*window);
    if (isHidden) {
        m_menuCommands.mainWindow().hide();
        m_appearAtLast.start(0); // nothing will be drawn
    } else {
        window->setVisible(true); // show() would undo that it was maximised
    }
}

void PlimApp::carryOut(const Invocation &invocation)
{
    if (invocation.command == quitCommand) {
        // Later: who asked is answered first.
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        return;
    }
    QWindow *window = WindowHolder::shared().window;
    if (!window || (invocation.command.isEmpty() && invocation.isHidden))
        return;
    m_menuCommands.commands().runOption(invocation.command);
    const bool isPutAway = invocation.command == toggleWindowCommand && !isOnScreen(*window);
    if (!isPutAway)
        bringToFront(*window, invocation.token);
}

// Nothing else is begun before its user sees the list. A window that comes up minimised, or on
// another desktop, may never be drawn.
void PlimApp::appearOnceDrawn(QQuickWindow &window)
{
    m_appearAtLast.setSingleShot(true);
    m_appearAtLast.setInterval(longestWaitForFrame);
    connect(&m_appearAtLast, &QTimer::timeout, this, &PlimApp::appear);
    connect(
        &window, &QQuickWindow::frameSwapped, &m_appearAtLast,
        [this] {
            if (m_appearAtLast.isActive())
                m_appearAtLast.start(0);
        },
        Qt::SingleShotConnection);
    m_appearAtLast.start();
}

// The main window's content is there for the first time.
void PlimApp::appear()
{
    MenuBarController::shared().install(&m_store, m_menuCommands.commands());
    // Not every desktop keeps the window that has the keyboard in front of new ones that have not.
    connect(
        &StickyNoteManager::shared(), &StickyNoteManager::restored, this,
        [] {
            QWindow *window = WindowHolder::shared().window;
            if (window && window->isActive())
                window->raise();
        },
        Qt::SingleShotConnection);
    StickyNoteManager::shared().restore(m_store);
    selectPending(WindowHolder::shared(), SelectionManager::shared(), m_store);
}
