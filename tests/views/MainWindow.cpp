#include "tests/views/MainWindow.h"

#include "mainwindow/DragOverlayManager.h"
#include "shell/FontRegistration.h"
#include "sticky/StickyNoteManager.h"
#include "tests/Patience.h"

#include <QGuiApplication>
#include <QQmlProperty>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
/// What the sticky windows' manager tells when windows open and close.
struct StickyNotes : StickyNoteManager {
    using StickyNoteManager::setActiveNoteIDs;
};

QList<QQuickItem *> drawnRowsOf(const QQuickWindow *window)
{
    QList<QQuickItem *> rows;
    visitItems(itemIn(window, u"noteList"_s), [&](QQuickItem *item) {
        if (item->objectName() == "noteRow"_L1 && isDrawn(item))
            rows << item;
    });
    std::ranges::sort(rows, {}, [](const QQuickItem *row) { return row->y(); });
    return rows;
}
} // namespace

MainWindow::MainWindow(const QString &words, QSize size, AppLanguage language)
{
    show(notesOf(words), size, language);
}

MainWindow::MainWindow(const NoteArray &notes, QSize size, AppLanguage language)
{
    show(notes, size, language);
}

MainWindow::~MainWindow()
{
    (StickyNoteManager::shared().*&StickyNotes::setActiveNoteIDs)({});
    DragOverlayManager::shared().hide();
}

void MainWindow::show(const NoteArray &notes, QSize size, AppLanguage language)
{
    static const bool hasFonts = [] {
        registerOutfitFonts();
        return true;
    }();
    Q_UNUSED(hasFonts)
    LanguageManager::shared().setLanguage(language);
    selection.setSelectedNoteID(std::nullopt);
    selection.setSelectedTab(SidebarTab::Notes);
    store.setNotes(notes);
    engine.addImportPath(u":/qt/qml"_s);
    engine.setInitialProperties({{u"content"_s, QVariant::fromValue(&content)}});
    engine.load(QUrl(u"qrc:/qt/qml/Plim/MainWindow/ContentView.qml"_s));
    if (!window())
        qFatal("The main window cannot be made");
    QQmlProperty::write(item(u"editor"_s), u"active"_s, false);
    window()->resize(size);
    window()->show();
    window()->requestActivate();
    if (!QTest::qWaitForWindowActive(window(), longEnough))
        qFatal("The main window does not come up");
}

QQuickWindow *MainWindow::window() const
{
    return qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
}

QObject *MainWindow::object(const QString &name) const
{
    auto *found = window()->findChild<QObject *>(name);
    if (!found)
        qFatal("There is no %s", qPrintable(name));
    return found;
}

QQuickWindow *MainWindow::window(const QString &name) const
{
    for (QWindow *other : QGuiApplication::allWindows()) {
        if (other->objectName() == name)
            return qobject_cast<QQuickWindow *>(other);
    }
    return nullptr;
}

QQuickItem *MainWindow::row(const QString &heading) const
{
    for (QQuickItem *row : drawnRowsOf(window())) {
        if (row->property("titleText").toString() == heading)
            return row;
    }
    qFatal("There is no row of %s", qPrintable(heading));
}

QQuickItem *MainWindow::rowButton(const QString &heading, const QString &name) const
{
    return itemIn(row(heading), name);
}

QString MainWindow::drawnRows() const
{
    QMetaObject::invokeMethod(item(u"noteList"_s), "forceLayout");
    QStringList headings;
    for (const QQuickItem *row : drawnRowsOf(window()))
        headings << row->property("titleText").toString();
    return headings.join(u' ');
}

QString MainWindow::storedNotes() const
{
    QStringList headings;
    for (const Note &note : store.notes())
        headings << note.headingText();
    return headings.join(u' ');
}

QString MainWindow::openNote() const
{
    const auto id = selection.selectedNoteID();
    const Note *note = id ? store.note(*id) : nullptr;
    return note ? note->headingText() : QString();
}

QUuid MainWindow::id(const QString &heading) const
{
    for (const Note &note : store.notes()) {
        if (note.headingText() == heading)
            return note.id;
    }
    qFatal("There is no note %s", qPrintable(heading));
}

void MainWindow::pretendSticky(const QStringList &headings) const
{
    NoteIDSet ids;
    for (const QString &heading : headings)
        ids.ids.insert(id(heading));
    (StickyNoteManager::shared().*&StickyNotes::setActiveNoteIDs)(ids);
}

QString MainWindow::focusedName() const
{
    const QQuickItem *item = window()->activeFocusItem();
    // Within the list its current row has it.
    while (item && (item->objectName().isEmpty() || item->objectName() == "noteRow"_L1))
        item = item->parentItem();
    return item ? item->objectName() : QString();
}
