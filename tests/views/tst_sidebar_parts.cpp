#include "mainwindow/SidebarTab.h"
#include "shell/LanguageManager.h"
#include "shell/Symbol.h"
#include "tests/views/Stage.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray tabs = R"(
    TabSelector { objectName: "tabs"; x: 20; y: 20; selectedTab: SidebarTab.Notes }
)";

// As the sidebar wires it: what is typed comes back as the text.
const QByteArray search = R"(
    SearchField {
        id: search
        objectName: "search"
        property string kept: ""
        width: 300
        onEdited: text => search.kept = text
        Binding { target: search; property: "text"; value: search.kept }
    }
)";

QString contentText(QQuickItem *button)
{
    return textsIn(button).join(u' ');
}

qreal textOpacity(QQuickItem *button)
{
    return button->property("contentItem").value<QQuickItem *>()->opacity();
}
} // namespace

class TestSidebarParts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        LanguageManager::shared().setLanguage(AppLanguage::en);
    }
    void cleanup() { setMoving(false); }

    // The tabs

    void thePillLiesUnderTheTabThatIsShown()
    {
        const Stage w(tabs);
        QQuickItem *pill = w.item(u"tabPill"_s);
        QTRY_COMPARE(frameOf(pill), frameOf(w.item(u"notesTab"_s)));
        w.item(u"tabs"_s)->setProperty("selectedTab", int(SidebarTab::Archive));
        QTRY_COMPARE(frameOf(pill), frameOf(w.item(u"archiveTab"_s)));
    }

    void thePillGlides()
    {
        const Stage w(tabs);
        setMoving(true);
        QQuickItem *pill = w.item(u"tabPill"_s);
        QList<qreal> places;
        connect(pill, &QQuickItem::xChanged, this, [&] { places << pill->x(); });
        w.item(u"tabs"_s)->setProperty("selectedTab", int(SidebarTab::Archive));
        QTRY_COMPARE(frameOf(pill), frameOf(w.item(u"archiveTab"_s)));
        QVERIFY(places.size() > 2);
        QVERIFY(std::ranges::is_sorted(places));
    }

    void aTabIsAskedForByMouseAndKeys()
    {
        const Stage w(tabs);
        QSignalSpy selected(w.item(u"tabs"_s), SIGNAL(tabSelected(int)));
        click(w.item(u"archiveTab"_s));
        w.item(u"notesTab"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key_Right);
        QVERIFY(w.item(u"archiveTab"_s)->hasActiveFocus());
        press(w.window(), Qt::Key_Right); // there is nothing further
        press(w.window(), Qt::Key_Return);
        press(w.window(), Qt::Key_Left);
        QVERIFY(w.item(u"notesTab"_s)->hasActiveFocus());
        press(w.window(), Qt::Key_Space);
        QList<int> asked;
        for (const auto &arguments : selected)
            asked << arguments[0].toInt();
        QCOMPARE(asked, (QList<int>{1, 1, 0}));
    }

    void theOtherTabIsQuiet()
    {
        const Stage w(tabs);
        moveTo(w.window(), QPoint(400, 300));
        QTRY_COMPARE(textOpacity(w.item(u"notesTab"_s)), 1.0);
        QTRY_COMPARE(textOpacity(w.item(u"archiveTab"_s)), 0.6);
        w.item(u"tabs"_s)->setProperty("selectedTab", int(SidebarTab::Archive));
        QTRY_COMPARE(textOpacity(w.item(u"notesTab"_s)), 0.6);
        QTRY_COMPARE(textOpacity(w.item(u"archiveTab"_s)), 1.0);
    }

    void tabsAreNamedInTheLanguage()
    {
        const Stage w(tabs);
        QCOMPARE(contentText(w.item(u"tabs"_s)), u"NOTES ARCHIVE"_s);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(contentText(w.item(u"tabs"_s)), u"NOTATKI ARCHIWUM"_s);
    }

    // The search field

    void whatIsTypedIsTold()
    {
        const Stage w(search);
        QSignalSpy edited(w.item(u"search"_s), SIGNAL(edited(QString)));
        click(w.item(u"searchField"_s));
        type(w.window(), u"mi"_s);
        QCOMPARE(edited.size(), 2);
        QCOMPARE(edited.last()[0].toString(), u"mi"_s);
    }

    void anEmptyFieldSaysWhatItIsFor()
    {
        const Stage w(search);
        QVERIFY(textsIn(w.item(u"search"_s)).contains(u"Search notes…"_s));
        w.item(u"search"_s)->setProperty("kept", u" "_s);
        QVERIFY(!textsIn(w.item(u"search"_s)).contains(u"Search notes…"_s));
    }

    void theClearButtonIsThereWhileThereIsSomethingToClear()
    {
        const Stage w(search);
        QVERIFY(!isDrawn(w.item(u"clearSearch"_s)));
        click(w.item(u"searchField"_s));
        type(w.window(), u"milk"_s);
        QVERIFY(isDrawn(w.item(u"clearSearch"_s)));
        QVERIFY(frameOf(w.item(u"searchField"_s)).right() <=
                frameOf(w.item(u"clearSearch"_s)).left());
        click(w.item(u"clearSearch"_s));
        QCOMPARE(w.item(u"search"_s)->property("text").toString(), QString());
        QVERIFY(!isDrawn(w.item(u"clearSearch"_s)));
        QVERIFY(w.item(u"searchField"_s)->hasActiveFocus()); // one goes on typing
        type(w.window(), u"x"_s);
        QCOMPARE(w.item(u"search"_s)->property("text").toString(), u"x"_s);
    }

    void keysLeaveTheField_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Enter") << int(Qt::Key_Enter);
        QTest::newRow("Down") << int(Qt::Key_Down);
    }
    void keysLeaveTheField()
    {
        QFETCH(int, key);
        const Stage w(search);
        QSignalSpy left(w.item(u"search"_s), SIGNAL(leaveRequested()));
        click(w.item(u"searchField"_s));
        type(w.window(), u"milk"_s);
        press(w.window(), Qt::Key(key));
        QCOMPARE(left.size(), 1);
        QCOMPARE(w.item(u"search"_s)->property("text").toString(), u"milk"_s);
    }

    void escClearsAndThenLeaves()
    {
        const Stage w(search);
        QSignalSpy left(w.item(u"search"_s), SIGNAL(leaveRequested()));
        click(w.item(u"searchField"_s));
        type(w.window(), u"milk"_s);
        press(w.window(), Qt::Key_Escape);
        QCOMPARE(w.item(u"search"_s)->property("text").toString(), QString());
        QCOMPARE(left.size(), 0);
        press(w.window(), Qt::Key_Escape);
        QCOMPARE(left.size(), 1);
    }

    void goingToTheFieldSelectsWhatIsInIt()
    {
        const Stage w(search);
        w.item(u"search"_s)->setProperty("kept", u"milk"_s);
        QMetaObject::invokeMethod(w.item(u"search"_s), "focusSearch");
        QVERIFY(w.item(u"searchField"_s)->hasActiveFocus());
        QCOMPARE(w.item(u"searchField"_s)->property("selectedText").toString(), u"milk"_s);
        type(w.window(), u"x"_s);
        QCOMPARE(w.item(u"search"_s)->property("text").toString(), u"x"_s);
    }

    // The empty list

    void anEmptyListSaysWhy()
    {
        const Stage w("EmptyList { objectName: \"empty\"; isSearching: false }");
        const auto symbol = [&] { return w.item(u"emptyListSymbol"_s)->property("name"); };
        QCOMPARE(textsIn(w.item(u"empty"_s)), QStringList{u"No notes"_s});
        QCOMPARE(symbol(), u"tray"_s);
        w.item(u"empty"_s)->setProperty("isSearching", true);
        QCOMPARE(textsIn(w.item(u"empty"_s)), QStringList{u"No results"_s});
        QCOMPARE(symbol(), u"magnifyingglass"_s);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(textsIn(w.item(u"empty"_s)), QStringList{u"Brak wyników"_s});
        w.item(u"empty"_s)->setProperty("isSearching", false);
        QCOMPARE(textsIn(w.item(u"empty"_s)), QStringList{u"Brak notatek"_s});
    }

    // The languages

    void aLanguageIsChosenByMouseAndKeys()
    {
        const Stage w("LanguageFooter { objectName: \"footer\"; width: 440; y: 300 }");
        QVERIFY(textsIn(w.item(u"footer"_s)).contains(u"Language"_s));
        click(w.item(u"language.pl"_s));
        QVERIFY(LanguageManager::shared().isPolish());
        QVERIFY(textsIn(w.item(u"footer"_s)).contains(u"Język"_s));
        w.item(u"language.en"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key_Return);
        QVERIFY(!LanguageManager::shared().isPolish());
        w.item(u"language.pl"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key_Space);
        QVERIFY(LanguageManager::shared().isPolish());
    }

    void theOtherLanguageIsQuiet()
    {
        const Stage w("LanguageFooter { objectName: \"footer\"; width: 440; y: 300 }");
        moveTo(w.window(), QPoint(10, 10));
        QTRY_COMPARE(textOpacity(w.item(u"language.en"_s)), 1.0);
        QCOMPARE(textOpacity(w.item(u"language.pl"_s)), 0.5);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(textOpacity(w.item(u"language.en"_s)), 0.5);
        QCOMPARE(textOpacity(w.item(u"language.pl"_s)), 1.0);
    }

    // The header

    void headerButtonsAskForWhatTheySay()
    {
        const Stage w("SidebarHeader { objectName: \"header\"; width: 440; "
                      "selectedTab: SidebarTab.Notes; isSelectionMode: false }");
        QQuickItem *header = w.item(u"header"_s);
        const QList<std::pair<QString, const char *>> buttons{
            {u"closeWindow"_s, SIGNAL(closeRequested())},
            {u"selectionMode"_s, SIGNAL(selectionModeToggled())},
            {u"makeAllSticky"_s, SIGNAL(makeAllStickyRequested())},
            {u"newNote"_s, SIGNAL(addRequested())},
        };
        for (const auto &[name, signal] : buttons) {
            QSignalSpy asked(header, signal);
            click(w.item(name));
            QCOMPARE(asked.size(), 1);
        }
        QSignalSpy selected(header, SIGNAL(tabSelected(int)));
        click(w.item(u"archiveTab"_s));
        QCOMPARE(selected.size(), 1);
        QCOMPARE(selected[0][0].toInt(), int(SidebarTab::Archive));
    }

    void theSelectionButtonTellsTheMode()
    {
        const Stage w("SidebarHeader { objectName: \"header\"; width: 440; "
                      "selectedTab: SidebarTab.Notes; isSelectionMode: false }");
        QQuickItem *button = w.item(u"selectionMode"_s);
        QCOMPARE(button->property("symbol").toString(), u"checkmark.circle"_s);
        QCOMPARE(button->property("helpText").toString(), u"Select multiple notes"_s);
        w.item(u"header"_s)->setProperty("isSelectionMode", true);
        QCOMPARE(button->property("symbol").toString(), u"checkmark.circle.fill"_s);
        QCOMPARE(button->property("helpText").toString(), u"End selection"_s);
    }

    void everySymbolOfTheHeaderIsDrawn()
    {
        const Stage w("SidebarHeader { objectName: \"header\"; width: 440; "
                      "selectedTab: SidebarTab.Notes; isSelectionMode: false }");
        visitItems(w.item(u"header"_s), [](QQuickItem *item) {
            if (const auto *symbol = qobject_cast<Symbol *>(item))
                QVERIFY2(Symbol::isKnown(symbol->name()), qPrintable(symbol->name()));
        });
    }
};

QTEST_MAIN(TestSidebarParts)
#include "tst_sidebar_parts.moc"
