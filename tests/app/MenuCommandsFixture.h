#pragma once

#include "core/NotificationCenter.h"
#include "core/app/InfoWindows.h"
#include "core/app/MenuCommands.h"
#include "core/app/NoteTransfer.h"
#include "editor/EditorCommand.h"
#include "mainwindow/ContentController.h"
#include "sticky/StickyNoteManager.h"
#include "sticky/WindowHolder.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QQmlEngine>
#include <QTest>
#include <QWindow>

inline constexpr auto cannotRaise = "This plugin does not support raise()"; // without a screen

/// The program's own commands over a store of their own, and a main window of nothing.
struct MenuCommandsFixture : NoteListFixture {
    explicit MenuCommandsFixture(const QString &words = {}) : NoteListFixture(words)
    {
        selection.setSelectedTab(SidebarTab::Notes);
        WindowHolder::shared() = {};
        WindowHolder::shared().window = &window;
        auto &center = NotificationCenter::shared();
        QObject::connect(&center, &NotificationCenter::plimFormat, &content,
                         [this](const EditorCommand &command) { formats << command; });
        const auto other = [this] { ++otherNews; };
        QObject::connect(&center, &NotificationCenter::plimFocusSearch, &content,
                         [this] { ++searches; });
        QObject::connect(&center, &NotificationCenter::plimFlushEditors, &content, other);
        QObject::connect(&center, &NotificationCenter::plimSelectNote, &content, other);
        QObject::connect(&center, &NotificationCenter::plimCollapseAll, &content, other);
        QObject::connect(&center, &NotificationCenter::plimExpandAll, &content, other);
    }
    ~MenuCommandsFixture()
    {
        WindowHolder::shared() = {};
        StickyNoteManager::shared().setFactory({});
    }
    Q_DISABLE_COPY_MOVE(MenuCommandsFixture)

    void run(const QString &id) { commands.run(id); }
    void runInFront(const QString &id)
    {
        QTest::ignoreMessage(QtWarningMsg, cannotRaise);
        run(id);
    }
    [[nodiscard]] QString order() const
    {
        QStringList words;
        for (const Note &note : store.notes())
            words << note.headingText();
        return words.join(QChar(u' '));
    }

    QWindow window;
    ContentController content{store, selection};
    QQmlEngine engine;
    InfoWindows infoWindows{engine, home.data()};
    NoteTransfer transfer{store, content, [] {}};
    MenuCommands menuCommands{store, content, infoWindows, transfer};
    Commands &commands = menuCommands.commands();
    QList<EditorCommand> formats;
    int searches = 0;
    int otherNews = 0;
};
