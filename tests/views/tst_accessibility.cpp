#include "shell/L10n.h"
#include "shell/NoteChoices.h"
#include "tests/views/MainWindow.h"
#include "tests/views/Reachable.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QStringList states{u"empty pane"_s,    u"open note"_s,     u"hovered row"_s,
                         u"search"_s,        u"nothing found"_s, u"selection mode"_s,
                         u"delete dialog"_s, u"batch dialog"_s,  u"link dialog"_s,
                         u"popover"_s,       u"undo"_s};

const QString notOffered = u"not offered"_s;

bool isInDialog(const QAccessibleInterface *node)
{
    while (node && node->role() != QAccessible::Dialog)
        node = node->parent();
    return node != nullptr;
}

struct Spoken : MainWindow {
    explicit Spoken(AppLanguage language = AppLanguage::en)
        : MainWindow(u"Milk Bread Butter old"_s, QSize(1100, 700), language)
    {
        moveTo(window(), QPoint(800, 600));
    }
    using MainWindow::window;

    [[nodiscard]] QAccessible::State state(const QString &heading) const
    {
        return interfaceOf(row(heading))->state();
    }
    [[nodiscard]] QQuickWindow *popover() const { return window(u"noteOptionsPopover"_s); }

    /// Goes where the program offers something else, as its user does.
    void reach(const QString &state)
    {
        if (state != u"empty pane")
            content.selectNote(id(u"Bread"_s));
        if (state == u"open note") {
            wanted = L10n::strikethrough();
        } else if (state == u"hovered row") {
            hover(row(u"Milk"_s));
            QTRY_VERIFY(isDrawn(rowButton(u"Milk"_s, u"rowDelete"_s)));
            wanted = L10n::archiveNote();
        } else if (state == u"search") {
            content.filteredNotes()->setSearchText(u"mi"_s);
            wanted = L10n::clearSearch();
        } else if (state == u"nothing found") {
            content.filteredNotes()->setSearchText(u"zzz"_s);
            QTRY_VERIFY(isDrawn(item(u"emptyList"_s)));
            wanted = L10n::noResults();
        } else if (state == u"selection mode" || state == u"batch dialog") {
            content.multiSelection()->setIsSelectionMode(true);
            content.selectAll();
            wanted = L10n::selectAll();
            if (state == u"batch dialog") {
                click(item(u"deleteSelection"_s));
                wanted = L10n::deletePermanently();
            }
        } else if (state == u"delete dialog") {
            QMetaObject::invokeMethod(object(u"deleteNoteDialog"_s), "ask",
                                      Q_ARG(QString, id(u"Milk"_s).toString()));
            wanted = L10n::deletePermanently();
        } else if (state == u"link dialog") {
            click(item(u"tool.link"_s));
            wanted = L10n::enterURL();
        } else if (state == u"popover") {
            click(item(u"noteOptions"_s));
            QTRY_VERIFY(popover()->isVisible());
            reached = popover();
            QQmlComponent component(&engine);
            component.setData("import QtQuick.Templates\nAction {}", {});
            QObject *action = component.create();
            action->setParent(reached);
            for (const char *name : {"openNotebook", "newSticky", "sort", "sortRandom",
                                     "sortByColor", "collapseAll", "expandAll"})
                QVERIFY(reached->setProperty(name, QVariant::fromValue(action)));
            reached->setProperty("showSortMenu", true);
            pictureOf(reached);
            wanted = L10n::sortRandomly();
        } else if (state == u"undo") {
            content.deleteNote(id(u"Milk"_s));
            wanted = L10n::undo();
        }
    }

    /// What a press can change, in words.
    [[nodiscard]] QString told()
    {
        const QVariantList told{storedNotes(),
                                openNote(),
                                int(selection.selectedTab()),
                                int(LanguageManager::shared().language()),
                                drawnRows(),
                                content.multiSelection()->isSelectionMode(),
                                object(u"deleteNoteDialog"_s)->property("visible"),
                                object(u"deleteNotesDialog"_s)->property("visible"),
                                object(u"linkDialog"_s)->property("visible"),
                                popover() && popover()->isVisible(),
                                item(u"searchField"_s)->property("text")};
        QStringList texts;
        for (const QVariant &value : told)
            texts << value.toString();
        return texts.join(u" | "_s);
    }

    /// What can be pressed and is not covered by a question.
    [[nodiscard]] QList<QAccessibleInterface *> buttons() const
    {
        const bool isAsking = !namesIn(reached, QAccessible::Dialog).isEmpty();
        QList<QAccessibleInterface *> buttons = buttonsIn(reached);
        buttons.removeIf([&](QAccessibleInterface *node) { return isAsking && !isInDialog(node); });
        return buttons;
    }

    QQuickWindow *reached = window(); ///< the window it is in
    QString wanted;                   ///< there is something of this name then
};

QStringList buttonNames(const QString &state)
{
    Spoken w;
    w.reach(state);
    QStringList names;
    for (QAccessibleInterface *node : w.buttons())
        names << nameOf(node);
    return names;
}

/// What comes of an action of a button of that state, by its place among them; without an action,
/// of a click. Each time in a new window: what one button does may take the others away.
QString outcome(const QString &state, int index, const QString &action)
{
    Spoken w;
    w.reach(state);
    QAccessibleInterface *node = w.buttons().value(index);
    if (!node)
        return u"gone"_s;
    auto *button = qobject_cast<QQuickItem *>(node->object());
    QSignalSpy clicks(button, SIGNAL(clicked()));
    if (action.isEmpty())
        click(button);
    else if (node->actionInterface()->actionNames().contains(action))
        node->actionInterface()->doAction(action);
    else
        return notOffered;
    return u"clicked %1, "_s.arg(clicks.count()) + w.told();
}
} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        setMoving(false);
        QAccessible::setActive(true);
    }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void everyControlHasAName_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::addColumn<QString>("state");
        for (const QString &state : states) {
            QTest::addRow("%s, pl", qPrintable(state)) << AppLanguage::pl << state;
            QTest::addRow("%s, en", qPrintable(state)) << AppLanguage::en << state;
        }
    }
    void everyControlHasAName()
    {
        QFETCH(AppLanguage, language);
        QFETCH(QString, state);
        Spoken w(language);
        w.reach(state);
        QQuickWindow *window = w.reached;
        const QString wanted = w.wanted;
        const auto isThere = [&] {
            const auto shown = shownIn(window);
            return std::ranges::any_of(
                shown, [&](QAccessibleInterface *node) { return nameOf(node) == wanted; });
        };
        if (!wanted.isEmpty())
            QTRY_VERIFY2(isThere(), qPrintable(wanted));
        QCOMPARE(namelessIn(window), QStringList());
    }

    void everyButtonCanBePressed_data()
    {
        QTest::addColumn<QString>("state");
        for (const QString &state : states)
            QTest::addRow("%s", qPrintable(state)) << state;
    }
    void everyButtonCanBePressed()
    {
        QFETCH(QString, state);
        QStringList elsewhere; // what is there nearly always is pressed once
        if (state != "empty pane"_L1)
            elsewhere << buttonNames(u"empty pane"_s);
        if (state != "empty pane"_L1 && state != "open note"_L1)
            elsewhere << buttonNames(u"open note"_s);
        const QStringList names = buttonNames(state);
        int pressed = 0;
        for (int i = 0; i < names.size(); ++i) {
            if (elsewhere.contains(names[i]))
                continue;
            const QString wanted = outcome(state, i, {});
            QVERIFY2(wanted.startsWith("clicked 1"_L1), qPrintable(names[i] + wanted));
            for (const QString &action : {QAccessibleActionInterface::pressAction(),
                                          QAccessibleActionInterface::toggleAction()}) {
                const QString came = outcome(state, i, action);
                if (came != notOffered || action == QAccessibleActionInterface::pressAction())
                    QCOMPARE(names[i] + u' ' + came, names[i] + u' ' + wanted);
            }
            ++pressed;
        }
        QVERIFY(pressed > 0 || state == "nothing found"_L1);
    }

    void aButtonThatIsOffCannotBePressed()
    {
        Spoken w;
        w.content.multiSelection()->setIsSelectionMode(true);
        QQuickItem *button = w.item(u"deleteSelection"_s);
        QVERIFY(isDrawn(button) && !button->isEnabled());
        interfaceOf(button)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(!w.object(u"deleteNotesDialog"_s)->property("visible").toBool());
    }

    void namesAndStatesAreThereWhenAssistanceComesLate()
    {
        QAccessible::setActive(false);
        Spoken w;
        w.content.selectNote(w.id(u"Bread"_s));
        QAccessible::setActive(true);
        QCOMPARE(namelessIn(w.window()), QStringList());
        QVERIFY(interfaceOf(w.item(u"language.en"_s))->state().checked);
        QVERIFY(interfaceOf(w.item(u"notesTab"_s))->state().selected);
        QCOMPARE(namesIn(w.window(), QAccessible::PageTab).size(), 2);
    }

    void aRowReadsItsNote()
    {
        Spoken w;
        const QStringList names = namesIn(w.window(), QAccessible::ListItem);
        QCOMPARE(names.size(), 3);
        const QString time = w.row(u"Milk"_s)->property("timestampText").toString();
        QVERIFY(!time.isEmpty());
        QCOMPARE(names[0], u"Milk, about Milk, "_s + time + u", yellow"_s);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QVERIFY(nameOf(interfaceOf(w.row(u"Milk"_s))).endsWith(u", żółty"_s));
    }

    void aRowSaysThatItsStickyWindowIsOpen()
    {
        Spoken w;
        w.pretendSticky({u"Bread"_s});
        QVERIFY(nameOf(interfaceOf(w.row(u"Bread"_s))).endsWith(u", Sticky note is open"_s));
        QVERIFY(!nameOf(interfaceOf(w.row(u"Milk"_s))).contains(u"Sticky"_s));
        QVERIFY(isDrawn(w.rowButton(u"Bread"_s, u"rowSticky"_s)));
        w.pretendSticky({});
        QVERIFY(!nameOf(interfaceOf(w.row(u"Bread"_s))).contains(u"Sticky"_s));
    }

    void theOpenNotesRowIsSelected()
    {
        Spoken w;
        QVERIFY(!w.state(u"Bread"_s).selected);
        w.content.selectNote(w.id(u"Bread"_s));
        QVERIFY(w.state(u"Bread"_s).selectable);
        QVERIFY(w.state(u"Bread"_s).selected);
        QVERIFY(!w.state(u"Milk"_s).selected);
    }

    void aTickedRowIsChecked()
    {
        Spoken w;
        QVERIFY(!w.state(u"Bread"_s).checkable);
        w.content.multiSelection()->setIsSelectionMode(true);
        QVERIFY(w.state(u"Bread"_s).checkable);
        QVERIFY(!w.state(u"Bread"_s).checked);
        w.content.multiSelection()->toggleSelection(w.id(u"Bread"_s));
        QVERIFY(w.state(u"Bread"_s).checked);
        QVERIFY(!w.state(u"Milk"_s).checked);
    }

    void theRowOfTheKeyboardIsFocused()
    {
        Spoken w;
        w.item(u"noteList"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key_Home);
        press(w.window(), Qt::Key_Down);
        QVERIFY(w.state(u"Bread"_s).focused);
        QVERIFY(!w.state(u"Milk"_s).focused);
    }

    void aRowCanBePressed()
    {
        Spoken w;
        QAccessibleActionInterface *action = interfaceOf(w.row(u"Bread"_s))->actionInterface();
        QVERIFY(action);
        QVERIFY(action->actionNames().contains(QAccessibleActionInterface::pressAction()));
        action->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(w.openNote(), u"Bread"_s);
    }

    void hiddenButtonsOfARowAreNotRead()
    {
        Spoken w;
        QTest::mouseClick(w.window(), Qt::LeftButton, {}, QPoint(5, 5)); // no user of the keyboard
        const QStringList buttons = namesIn(w.window(), QAccessible::Button);
        QVERIFY(!buttons.contains(u"Archive note"_s));
        QVERIFY(buttons.contains(u"New note (Cmd+N)"_s));
    }

    void theShownTabIsSelected()
    {
        Spoken w;
        QCOMPARE(namesIn(w.window(), QAccessible::PageTab),
                 (QStringList{u"NOTES"_s, u"ARCHIVE"_s}));
        QVERIFY(interfaceOf(w.item(u"notesTab"_s))->state().selected);
        QVERIFY(!interfaceOf(w.item(u"archiveTab"_s))->state().selected);
        w.selectTab(SidebarTab::Archive);
        QVERIFY(!interfaceOf(w.item(u"notesTab"_s))->state().selected);
        QVERIFY(interfaceOf(w.item(u"archiveTab"_s))->state().selected);
    }

    void theCurrentLanguageIsChecked()
    {
        Spoken w;
        QCOMPARE(namesIn(w.window(), QAccessible::RadioButton),
                 (QStringList{u"English"_s, u"Polski"_s}));
        QVERIFY(interfaceOf(w.item(u"language.en"_s))->state().checked);
        QVERIFY(!interfaceOf(w.item(u"language.pl"_s))->state().checked);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QVERIFY(interfaceOf(w.item(u"language.pl"_s))->state().checked);
    }

    void theToolbarsButtonsTellWhetherTheyAreLit()
    {
        Spoken w;
        w.content.selectNote(w.id(u"Bread"_s));
        QCOMPARE(namesIn(w.window(), QAccessible::CheckBox).size(), 13);
        QVERIFY(!interfaceOf(w.item(u"tool.bold"_s))->state().checked);
        click(w.item(u"tool.bold"_s));
        QVERIFY(!interfaceOf(w.item(u"tool.bold"_s))->state().checked); // the page has not said so
    }

    void theNotesColourAndSizeAreChecked()
    {
        Spoken w;
        w.content.selectNote(w.id(u"Bread"_s));
        click(w.item(u"noteOptions"_s));
        QTRY_VERIFY(w.popover()->isVisible());
        for (const QString &name : NoteChoices::colors()) {
            w.content.setEditedColor(name);
            for (const QString &other : NoteChoices::colors())
                QCOMPARE(
                    bool(interfaceOf(itemIn(w.popover(), u"swatch."_s + other))->state().checked),
                    other == name);
        }
        const QStringList colours = namesIn(w.popover(), QAccessible::RadioButton).mid(0, 7);
        QCOMPARE(colours.join(u' '), u"red orange yellow green blue purple brown"_s);
        for (const QString &size : NoteChoices::textSizes()) {
            w.content.setEditedTextSize(size);
            QVERIFY(interfaceOf(itemIn(w.popover(), u"size."_s + size))->state().checked);
        }
    }

    void aDialogReadsItsQuestion()
    {
        Spoken w;
        QMetaObject::invokeMethod(w.object(u"deleteNoteDialog"_s), "ask",
                                  Q_ARG(QString, w.id(u"Milk"_s).toString()));
        QTRY_COMPARE(namesIn(w.window(), QAccessible::Dialog),
                     QStringList{u"Delete note permanently?"_s});
    }

    void theOfferToUndoIsAnnounced()
    {
        Spoken w;
        w.content.deleteNote(w.id(u"Milk"_s));
        QTRY_COMPARE(namesIn(w.window(), QAccessible::AlertMessage),
                     QStringList{u"Note deleted"_s});
    }
};

QTEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
