#include "core/app/PlimApp.h"

#include "core/app/PendingSelection.h"
#include "editor/EditorProfile.h"
#include "mainwindow/SelectionManager.h"
#include "shell/Bundle.h"
#include "shell/FontRegistration.h"
#include "sticky/StickyNoteManager.h"
#include "sticky/WindowHolder.h"

#include <QDateTime>
#include <QGuiApplication>
#include <QSaveFile>
#include <QSessionManager>
#include <QStandardPaths>
#include <QWindow>
#include <QtQml/qqmlextensionplugin.h>

#include <cstdlib>

Q_IMPORT_QML_PLUGIN(Plim_EditorPlugin)
Q_IMPORT_QML_PLUGIN(Plim_MainWindowPlugin)
Q_IMPORT_QML_PLUGIN(Plim_ShellPlugin)
Q_IMPORT_QML_PLUGIN(Plim_StickyPlugin)

using namespace Qt::StringLiterals;

namespace
{
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
                                                    : qobject_cast<QWindow *>(m_engine.rootObjects().constFirst());
    if (!window)
        qFatal("the main window could not be made");
    window->setVisible(true); // show() would undo that it was maximised
    appear();
}

// The main window's content is there for the first time.
void PlimApp::appear()
{
    StickyNoteManager::shared().restore(m_store);
    selectPending(WindowHolder::shared(), SelectionManager::shared(), m_store);
}
