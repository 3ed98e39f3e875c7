#pragma once

#include "mainwindow/ContentController.h"
#include "tests/mainwindow/NoteListFixture.h"
#include "tests/views/Stage.h"

#include <QQmlApplicationEngine>

/// The whole main window, shown, over a store of its own. Its editor stays empty, so that the web
/// engine stays out.
class MainWindow
{
public:
    /// A note for each word: in capitals it is in the notes tab, else in the archive.
    explicit MainWindow(const QString &words, QSize size = QSize(1100, 700),
                        AppLanguage language = AppLanguage::en);
    explicit MainWindow(const NoteArray &notes, QSize size = QSize(1100, 700),
                        AppLanguage language = AppLanguage::en);
    ~MainWindow();
    Q_DISABLE_COPY_MOVE(MainWindow)

    [[nodiscard]] QQuickWindow *window() const;
    [[nodiscard]] QQuickItem *item(const QString &name) const { return itemIn(window(), name); }
    [[nodiscard]] QObject *object(const QString &name) const;
    /// Another window that belongs to this one, by its object name; nullptr when there is none.
    [[nodiscard]] QQuickWindow *window(const QString &name) const;

    /// The row of the note with the heading, which must be on screen.
    [[nodiscard]] QQuickItem *row(const QString &heading) const;
    [[nodiscard]] QQuickItem *rowButton(const QString &heading, const QString &name) const;
    /// Headings of the rows that are drawn, from top to bottom.
    [[nodiscard]] QString drawnRows() const;
    /// Headings of all notes in the store's order.
    [[nodiscard]] QString storedNotes() const;
    [[nodiscard]] QString openNote() const; ///< its heading; empty when none is open
    [[nodiscard]] QUuid id(const QString &heading) const;

    /// The note has a sticky window.
    void pretendSticky(const QStringList &headings) const;
    void selectTab(SidebarTab tab) { content.selectTab(tab); }
    [[nodiscard]] QString focusedName() const; ///< of the item that has the keyboard

    ThrowAwayHome home;
    NoteStore store{home.data()};
    SelectionManager &selection = SelectionManager::shared();
    ContentController content{store, selection};
    QQmlApplicationEngine engine;

private:
    void show(const NoteArray &notes, QSize size, AppLanguage language);
};
