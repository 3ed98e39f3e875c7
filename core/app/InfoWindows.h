#pragma once

#include "mainwindow/AboutInfo.h"
#include "shell/Commands.h"

#include <QPointer>
#include <QQmlEngine>
#include <QQuickWindow>

/// The windows that tell something about the program. Each is made when it is asked for, and is
/// there once.
class InfoWindows : public QObject
{
    Q_OBJECT

public:
    InfoWindows(QQmlEngine &engine, const QString &notesFolder, QObject *parent = nullptr);
    ~InfoWindows() override; ///< with its windows, before what they tell of
    Q_DISABLE_COPY_MOVE(InfoWindows)

    void setCommands(Commands &commands) { m_commands = &commands; }

    void showAbout();
    void showShortcuts();

private:
    void show(QPointer<QQuickWindow> &window, const QString &file, const QVariantMap &properties);

    QQmlEngine &m_engine;
    AboutInfo m_info;
    Commands *m_commands = nullptr;
    QPointer<QQuickWindow> m_about;
    QPointer<QQuickWindow> m_shortcuts;
};
