#include "core/app/PlimApp.h"

#include "core/app/PendingSelection.h"
#include "editor/EditorProfile.h"
#include "mainwindow/SelectionManager.h"
#include "shell/Bundle.h"
#include "shell/FontRegistration.h"
#include "sticky/StickyNoteFactory.h"
#include "sticky/StickyNoteManager.h"
#include "sticky/WindowHolder.h"

#include <QDateTime>
#include <QGuiApplication>
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

NoteStore *liveStore = nullptr;

// A lost display ends the process from inside the windowing library, without an event loop; what
// the store already knows is still written.
void saveAtExit()
{
    if (liveStore && liveStore->hasPendingSave())
        liveStore->flush();
}

/// The record that start-up came this far. Failures are ignored.
void writeTrace(const QString &name, const QString &text)
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (documents.isEmpty())
        return;
    QSaveFile file(documents + u'/' + name);
    if (file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0)
        file.commit();
}
} // namespace

PlimApp::PlimApp()
    : m_store(NoteStore::defaultDataDirectory()), m_languageManager(LanguageManager::shared()),
      m_content(m_store, SelectionManager::shared())
{
    liveStore = &m_store;
    std::atexit(saveAtExit);
    writeTrace(u"plim_init.log"_s,
               u"init called "_s + QDateTime::currentDateTime().toString() + u" Bundle "_s + Bundle::path());
    registerOutfitFonts();
    writeTrace(u"plim_init2.log"_s, u"after register"_s);

    EditorProfile::shared().setImagesDirectory(m_store.imagesDirectory());
    auto &stickyNotes = StickyNoteManager::shared();
    stickyNotes.setFactory(stickyNoteFactory(m_engine, m_store, stickyNotes));
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager &) {
        m_appDelegate.applicationShouldTerminate();
        if (m_store.hasPendingSave()) // each write costs the oldest backup
            m_store.flush();
    });
}

PlimApp::~PlimApp()
{
    StickyNoteManager::shared().setFactory({}); // its windows are made by the engine
    liveStore = nullptr;
}

void PlimApp::show()
{
    m_engine.addImportPath(u":/qt/qml"_s);
    m_engine.setInitialProperties({{u"content"_s, QVariant::fromValue(&m_content)}});
    m_engine.load(QUrl(u"qrc:/qt/qml/Plim/MainWindow/ContentView.qml"_s));
    auto *window = m_engine.rootObjects().isEmpty() ? nullptr
                                                    : qobject_cast<QQuickWindow *>(m_engine.rootObjects().constFirst());
    if (!window)
        qFatal("the main window could not be made");
    appearOnceDrawn(*window);
    window->setVisible(true); // show() would undo that it was maximised
}

// Nothing else is begun before its user sees the list. A window that comes up minimised, or on
// another desktop, may never be drawn.
void PlimApp::appearOnceDrawn(QQuickWindow &window)
{
    m_appearAtLast.setSingleShot(true);
    m_appearAtLast.setInterval(longestWaitForFrame);
    connect(&m_appearAtLast, &QTimer::timeout, this, &PlimApp::appear);
    connect(&window, &QQuickWindow::frameSwapped, &m_appearAtLast,
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
    // Not every desktop keeps the window that has the keyboard in front of new ones that have not.
    connect(&StickyNoteManager::shared(), &StickyNoteManager::restored, this, [] {
        QWindow *window = WindowHolder::shared().window;
        if (window && window->isActive())
            window->raise();
    }, Qt::SingleShotConnection);
    StickyNoteManager::shared().restore(m_store);
    selectPending(WindowHolder::shared(), SelectionManager::shared(), m_store);
}
