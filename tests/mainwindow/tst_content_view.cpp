#include "mainwindow/ContentController.h"
#include "mainwindow/WindowState.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QQmlApplicationEngine>
#include <QQmlProperty>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QScreen>
#include <QSettings>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

Q_IMPORT_QML_PLUGIN(Plim_EditorPlugin)
Q_IMPORT_QML_PLUGIN(Plim_MainWindowPlugin)
Q_IMPORT_QML_PLUGIN(Plim_ShellPlugin)
Q_IMPORT_QML_PLUGIN(Plim_StickyPlugin)

using namespace Qt::StringLiterals;

namespace
{
/// What a Repeater makes is nobody's child but on the screen.
QQuickItem *below(QQuickItem *parent, const QString &name)
{
    for (QQuickItem *item : parent->childItems()) {
        if (item->objectName() == name)
            return item;
        if (QQuickItem *found = below(item, name))
            return found;
    }
    return nullptr;
}

/// The main window over a store of its own, with no editor in it: the web engine stays out.
struct Window {
    explicit Window(const QString &words, const QRect &lastFrame = {}, bool wasMaximized = false)
    {
        if (!lastFrame.isNull()) {
            QSettings state(WindowState::stateFile(), QSettings::IniFormat);
            state.setValue(u"mainWindow/frame"_s, lastFrame);
            state.setValue(u"mainWindow/isMaximized"_s, wasMaximized);
        }
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        selection.setSelectedNoteID(std::nullopt);
        selection.setSelectedTab(SidebarTab::Notes);
        store.setNotes(notesOf(words));
        engine.addImportPath(u":/qt/qml"_s);
        engine.setInitialProperties({{u"content"_s, QVariant::fromValue(&content)}});
        engine.load(QUrl(u"qrc:/qt/qml/Plim/MainWindow/ContentView.qml"_s));
        QQmlProperty::write(item(u"editor"_s), u"active"_s, false);
        window()->contentItem()->setSize(window()->size()); // which showing it would do
    }

    [[nodiscard]] QQuickWindow *window() const
    {
        return qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    }
    [[nodiscard]] QQuickItem *item(const QString &name) const
    {
        auto *found = below(window()->contentItem(), name);
        if (!found)
            qFatal("There is no %s", qPrintable(name));
        return found;
    }
    void click(const QString &button) const { QMetaObject::invokeMethod(item(button), "clicked"); }
    /// Names of the tab buttons that are drawn lit.
    [[nodiscard]] QStringList litTabs() const
    {
        QStringList lit;
        for (const QString &name : {u"notesTab"_s, u"archiveTab"_s}) {
            if (item(name)->property("isCurrent").toBool())
                lit << item(name)->property("text").toString();
        }
        return lit;
    }

    ThrowAwayHome home;
    NoteStore store{home.data()};
    SelectionManager &selection = SelectionManager::shared();
    ContentController content{store, selection};
    QQmlApplicationEngine engine;
};
} // namespace

class TestContentView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void theSelectedTabIsLit()
    {
        Window w(u"A b"_s);
        QVERIFY(w.window());
        QCOMPARE(w.litTabs(), QStringList{u"NOTATKI"_s});
        w.selection.setSelectedTab(SidebarTab::Archive);
        QCOMPARE(w.litTabs(), QStringList{u"ARCHIWUM"_s});
        w.selection.setSelectedTab(SidebarTab::Notes);
        QCOMPARE(w.litTabs(), QStringList{u"NOTATKI"_s});
    }

    void aTabIsSelectedByItsButton()
    {
        Window w(u"A b C"_s);
        w.click(u"archiveTab"_s);
        QVERIFY(w.selection.selectedTab() == SidebarTab::Archive);
        QCOMPARE(w.item(u"noteList"_s)->property("count").toInt(), 1);
        w.click(u"notesTab"_s);
        QVERIFY(w.selection.selectedTab() == SidebarTab::Notes);
        QCOMPARE(w.item(u"noteList"_s)->property("count").toInt(), 2);
    }

    void aNewNoteComesFromItsButton()
    {
        Window w(u"A"_s);
        w.click(u"archiveTab"_s);
        w.click(u"newNote"_s);
        QCOMPARE(w.store.notes().size(), 2);
        QVERIFY(w.selection.selectedNoteID() == w.store.notes()[0].id);
        QCOMPARE(w.litTabs(), QStringList{u"NOTATKI"_s});
        QCOMPARE(w.item(u"noteList"_s)->property("currentIndex").toInt(), 0);
    }

    void everyTextFollowsTheLanguage()
    {
        Window w(u"A"_s);
        const auto texts = [&] {
            QStringList texts;
            texts << w.item(u"newNote"_s)->property("helpText").toString();
            for (const QString &name : {u"notesTab"_s, u"archiveTab"_s})
                texts << w.item(name)->property("text").toString();
            return texts;
        };
        QCOMPARE(texts(), (QStringList{u"Nowa notatka (Cmd+N)"_s, u"NOTATKI"_s, u"ARCHIWUM"_s}));
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QCOMPARE(texts(), (QStringList{u"New note (Cmd+N)"_s, u"NOTES"_s, u"ARCHIVE"_s}));
    }

    void theListsCurrentRowGoesWithTheSelectedNote()
    {
        Window w(u"A B C"_s);
        const auto current = [&] {
            auto *list = w.item(u"noteList"_s);
            QMetaObject::invokeMethod(list, "forceLayout");
            return list->property("currentIndex").toInt();
        };
        QCOMPARE(current(), -1);
        w.selection.setSelectedNoteID(w.store.notes()[1].id);
        QCOMPARE(current(), 1);
        w.store.addNote();
        QCOMPARE(current(), 2);
        w.store.deleteNote(w.store.notes()[2].id);
        QVERIFY(current() < 3); // the keyboard stays in the list
    }

    void theRowsOnScreenFollowManyChangesAtOnce()
    {
        Window w(u"A B C D E F"_s);
        auto *list = w.item(u"noteList"_s);
        const auto rows = [&] {
            QMetaObject::invokeMethod(list, "forceLayout");
            QStringList rows;
            for (int row = 0; row < list->property("count").toInt(); ++row) {
                QQuickItem *item = nullptr;
                QMetaObject::invokeMethod(list, "itemAtIndex", Q_RETURN_ARG(QQuickItem *, item),
                                          Q_ARG(int, row));
                rows << (item ? item->property("titleText").toString() : u"nothing"_s);
            }
            return rows.join(u' ');
        };
        const QList<Note> notes(w.store.notes().begin(), w.store.notes().end());
        const QSet<QUuid> some{notes[0].id, notes[1].id, notes[4].id};
        w.selection.setSelectedNoteID(notes[4].id);
        QCOMPARE(rows(), u"A B C D E F"_s);
        w.store.setArchived(true, some);
        QCOMPARE(rows(), u"C D F"_s);
        w.store.setArchived(false, some);
        QCOMPARE(rows(), u"A B C D E F"_s);
        w.store.deleteNotes(some);
        QCOMPARE(rows(), u"C D F"_s);
        w.store.moveNoteToEnd(notes[2].id);
        QCOMPARE(rows(), u"D F C"_s);
    }

    // Only a complete window can be put where it was: until then its own size and state win.
    void theWindowComesBackWhereItWas_data()
    {
        QTest::addColumn<bool>("isMaximized");
        QTest::newRow("with its frame") << false;
        QTest::newRow("maximised") << true;
    }
    void theWindowComesBackWhereItWas()
    {
        QFETCH(bool, isMaximized);
        const QRect frame(QGuiApplication::primaryScreen()->availableGeometry().topLeft(),
                          QSize(900, 570));
        Window w(u"A"_s, frame, isMaximized);
        QCOMPARE(w.window()->minimumSize(), QSize(900, 560));
        QCOMPARE(bool(w.window()->windowStates() & Qt::WindowMaximized), isMaximized);
        QCOMPARE(w.window()->geometry(), frame);
    }
};

QTEST_MAIN(TestContentView)
#include "tst_content_view.moc"
