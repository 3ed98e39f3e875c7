#include "shell/L10n.h"
#include "shell/NoteChoices.h"
#include "tests/page/PageFixture.h"
#include "tests/views/Reachable.h"
#include "tests/views/StickyNotes.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// As a screen reader presses it.
void pressed(QQuickItem *item)
{
    QAccessibleActionInterface *action = interfaceOf(item)->actionInterface();
    QVERIFY(action);
    action->doAction(QAccessibleActionInterface::pressAction());
}

struct Spoken : StickyNotes {
    using StickyNotes::StickyNotes;

    [[nodiscard]] QAccessible::State state(const QString &name) const
    {
        return interfaceOf(item(name))->state();
    }
    [[nodiscard]] QStringList buttons() const { return namesIn(window(), QAccessible::Button); }

    /// Goes where the window offers something else, as its user does.
    QQuickWindow *reach(const QString &state)
    {
        open();
        if (state == "capsule"_L1)
            fold();
        if (state != "options"_L1)
            return window();
        QQuickWindow *options = openOptions();
        click(itemIn(options, u"option.sort"_s)); // all there are
        pictureOf(options);
        return options;
    }
    /// What a press can change, in words.
    [[nodiscard]] QString told() const
    {
        if (!isOpen())
            return u"closed"_s;
        return QStringList{controller().isPinned() ? u"pinned"_s : u"loose"_s,
                           controller().isCollapsed() ? u"collapsed"_s : u"expanded"_s,
                           options() && options()->isVisible() ? u"options"_s : u"none"_s,
                           note().color,
                           QString::number(int(note().textSize)),
                           QString::number(store.notes().size())}
            .join(u' ');
    }
};

const QString notOffered = u"not offered"_s;

/// What comes of an action of a button of that state, by its place among them; without an action,
/// of a click. Empty when there is no such button.
QString outcome(const QString &state, int index, const QString &action)
{
    Spoken s;
    QAccessibleInterface *node = buttonsIn(s.reach(state)).value(index);
    if (!node)
        return {};
    auto *button = qobject_cast<QQuickItem *>(node->object());
    const QString name = nameOf(node);
    QSignalSpy clicks(button, SIGNAL(clicked()));
    if (action.isEmpty())
        click(button);
    else if (node->actionInterface()->actionNames().contains(action))
        node->actionInterface()->doAction(action);
    else
        return notOffered;
    return u"%1: clicked %2, %3"_s.arg(name).arg(clicks.count()).arg(s.told());
}
} // namespace

// A sticky window for those who cannot see it.
class TestStickyAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        setMoving(false);
        QAccessible::setActive(true);
    }
    void init() { failOnWarnings(); }

    void everyControlHasAName_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::addColumn<QString>("state");
        for (const QString &state : {u"expanded"_s, u"collapsed"_s, u"low"_s, u"pinned"_s,
                                     u"options"_s, u"options with sorting"_s}) {
            QTest::addRow("%s, pl", qPrintable(state)) << AppLanguage::pl << state;
            QTest::addRow("%s, en", qPrintable(state)) << AppLanguage::en << state;
        }
    }
    void everyControlHasAName()
    {
        QFETCH(AppLanguage, language);
        QFETCH(QString, state);
        Spoken s(u"Tea"_s, language);
        QQuickWindow *window =
            s.open(0, StickyFrame{400, 700, 300, state == "low"_L1 ? 56. : 340.});
        QStringList wanted{L10n::noteColor(), L10n::pinOnTop(), L10n::collapseNote(),
                           L10n::close()};
        if (state == "collapsed"_L1)
            s.fold();
        if (state == "collapsed"_L1 || state == "low"_L1)
            wanted[2] = L10n::expandNote();
        if (state == "pinned"_L1) {
            click(s.item(u"sticky.pin"_s));
            wanted[1] = L10n::unpin();
        }
        if (state.startsWith("options"_L1)) {
            window = s.openOptions();
            wanted = {L10n::notebook(), L10n::newSticky(), L10n::sort(), L10n::collapse(),
                      L10n::expand()};
            if (state == "options with sorting"_L1) {
                click(itemIn(window, u"option.sort"_s));
                pictureOf(window);
                wanted.insert(3, L10n::sortRandomly());
                wanted.insert(4, L10n::sortByColor());
            }
        }
        QCOMPARE(namesIn(window, QAccessible::Button), wanted);
        QCOMPARE(namelessIn(window), QStringList());
    }

    void namesFollowTheLanguage()
    {
        Spoken s;
        s.open();
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(s.buttons(), (QStringList{u"Kolor notatki"_s, u"Przypnij na górze"_s,
                                           u"Zwiń notatkę"_s, u"Zamknij"_s}));
    }

    void thePinSaysWhetherItIsIn()
    {
        Spoken s;
        s.open();
        QVERIFY(s.state(u"sticky.pin"_s).checkable);
        QVERIFY(!s.state(u"sticky.pin"_s).checked);
        s.controller().togglePin();
        QVERIFY(s.state(u"sticky.pin"_s).checked);
        for (const QString &name : {u"sticky.color"_s, u"sticky.fold"_s, u"sticky.close"_s})
            QVERIFY2(!s.state(name).checkable, qPrintable(name));
    }

    void everyButtonCanBePressed_data()
    {
        QTest::addColumn<QString>("state");
        for (const QString &state : {u"expanded"_s, u"capsule"_s, u"options"_s})
            QTest::addRow("%s", qPrintable(state)) << state;
    }
    void everyButtonCanBePressed()
    {
        QFETCH(QString, state);
        int index = 0;
        for (QString wanted; !(wanted = outcome(state, index, {})).isEmpty(); ++index) {
            QVERIFY2(wanted.contains("clicked 1"_L1), qPrintable(wanted));
            QCOMPARE(outcome(state, index, QAccessibleActionInterface::pressAction()), wanted);
            const QString toggled =
                outcome(state, index, QAccessibleActionInterface::toggleAction());
            if (toggled != notOffered)
                QCOMPARE(toggled, wanted);
        }
        QVERIFY(index >= 4);
    }

    void controlsCanBePressed()
    {
        Spoken s;
        s.open();
        pressed(s.item(u"sticky.pin"_s));
        QVERIFY(s.controller().isPinned());
        pressed(s.item(u"sticky.fold"_s));
        QVERIFY(s.controller().isCollapsed());
        pressed(s.item(u"sticky.close"_s));
        QVERIFY(!s.isOpen());
    }

    void optionsCanBePressed()
    {
        Spoken s;
        s.open();
        QQuickWindow *options = s.openOptions();
        pressed(itemIn(options, u"swatch.blue"_s));
        QCOMPARE(s.note().color, u"blue"_s);
        pressed(itemIn(options, u"size.big"_s));
        QCOMPARE(s.note().textSize, NoteTextSize::big);
        pressed(itemIn(options, u"option.collapseAll"_s));
        QVERIFY(s.controller().isCollapsed());
    }

    void theTextIsADocumentAndHiddenInACapsule()
    {
        Spoken s;
        s.open();
        QCOMPARE(namesIn(s.window(), QAccessible::Document), QStringList{u"Note text"_s});
        QCOMPARE(namesIn(s.window(), QAccessible::StaticText), QStringList());
        s.fold();
        QCOMPARE(namesIn(s.window(), QAccessible::Document), QStringList());
        QCOMPARE(namesIn(s.window(), QAccessible::StaticText), QStringList{u"Tea"_s});
    }

    void theKeyboardIsWhereItIsSaidToBe()
    {
        Spoken s;
        s.openPage();
        s.fold();
        QVERIFY(s.state(u"sticky.fold"_s).focused);
        QVERIFY(!s.state(u"sticky.pin"_s).focused);
    }

    void theNotesColourAndSizeAreChecked()
    {
        Spoken s;
        s.open();
        QQuickWindow *options = s.openOptions();
        for (const QString &name : NoteChoices::colors()) {
            s.controller().setColor(name);
            for (const QString &other : NoteChoices::colors())
                QCOMPARE(bool(interfaceOf(itemIn(options, u"swatch."_s + other))->state().checked),
                         other == name);
        }
        s.controller().setTextSize(u"small"_s);
        QVERIFY(interfaceOf(itemIn(options, u"size.small"_s))->state().checked);
        QVERIFY(!interfaceOf(itemIn(options, u"option.sort"_s))->state().checked);
        click(itemIn(options, u"option.sort"_s));
        QVERIFY(interfaceOf(itemIn(options, u"option.sort"_s))->state().checked);
    }
};

PLIM_PAGE_TEST_MAIN(TestStickyAccessibility)
#include "tst_sticky_accessibility.moc"
