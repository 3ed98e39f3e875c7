#pragma once

#include "core/NoteStore.h"
#include "core/app/AppDelegate.h"
#include "core/app/QuitSignals.h"
#include "mainwindow/ContentController.h"
#include "shell/LanguageManager.h"

#include <QObject>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTimer>

/// The application: what lives as long as the process, in the order in which it is made.
class PlimApp : public QObject
{
    Q_OBJECT

public:
    PlimApp();
    ~PlimApp() override;

    /// Opens the main window.
    void show();

private:
    void appearOnceDrawn(QQuickWindow &window);
    void appear();

    NoteStore m_store; ///< loads the notes at once, before there is any window
    LanguageManager &m_languageManager;
    AppDelegate m_appDelegate;
    QuitSignals m_quitSignals;
    ContentController m_content;
    QQmlApplicationEngine m_engine;
    QTimer m_appearAtLast;
};
