#include "core/NoteEditing.h"
#include "core/NotificationCenter.h"
#include "shell/NoteChoices.h"
#include "sticky/WindowHolder.h"
#include "sticky/WindowShape.h"
#include "tests/page/PageFixture.h"
#include "tests/views/StickyNotes.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
struct Entry {
    const char *name;
    QString polish;
    QString english;
};

const QList<Entry> entries{
    {"notebook", u"NOTATNIK"_s, u"NOTEBOOK"_s},
    {"newSticky", u"NOWE PLIM"_s, u"NEW PLIM"_s},
    {"sort", u"SORTUJ"_s, u"SORT"_s},
    {"sortRandom", u"LOSOWO"_s, u"RANDOM"_s},
    {"sortByColor", u"KOLORAMI"_s, u"BY COLOR"_s},
    {"collapseAll", u"ZWIŃ"_s, u"COLLAPSE"_s},
    {"expandAll", u"ROZWIŃ"_s, u"EXPAND"_s},
};

struct Options : StickyNotes {
    using StickyNotes::StickyNotes;

    [[nodiscard]] QQuickItem *entry(const char *name, int index = 0) const
    {
        return itemIn(options(index), u"option."_s + QLatin1StringView(name));
    }
    void choose(const char *name)
    {
        if (qstrcmp(name, "sortRandom") == 0 || qstrcmp(name, "sortByColor") == 0) {
            click(entry("sort"));
            pictureOf(options());
        }
        click(entry(name));
    }
    [[nodiscard]] bool isShown() const { return options() && options()->isVisible(); }
    [[nodiscard]] QList<QRect> frames() const
    {
        QList<QRect> frames;
        for (const QUuid &noteID : manager.windowOrder())
            frames << manager.window(noteID)->frame();
        return frames;
    }
};
} // namespace

// The options of a sticky window.
class TestStickyOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { failOnWarnings(); }
    void cleanup() { WindowHolder::shared() = {}; }

    void theyAreAWindowOfTheirOwnBelowTheirButton()
    {
        Options s;
        QQuickWindow *window = s.open();
        QVERIFY(!s.options()); // most notes never show it
        const QQuickWindow *options = s.openOptions();
        QVERIFY(options != window);
        QCOMPARE(options->transientParent(), window);
        const QRect button(s.item(u"sticky.color"_s)->mapToGlobal(QPointF(0, 0)).toPoint(),
                           s.item(u"sticky.color"_s)->size().toSize());
        QVERIFY(options->y() > button.bottom());
        QVERIFY(qAbs(options->geometry().center().x() - button.center().x()) <= 1);
    }

    // Without compositing, what would be see-through is black.
    void theirCornersAreCutOffWhereNothingIsSeeThrough()
    {
        Options s;
        s.open();
        const auto *shape = s.openOptions()->findChild<WindowShape *>();
        QVERIFY(shape);
        QCOMPARE(shape->window(), s.options());
        QCOMPARE(shape->radius(), 14);
        QCOMPARE(shape->shadow(), 0);
    }

    void escapeClosesThemAndTheKeyboardGoesBack()
    {
        Options s;
        QQuickWindow *window = s.openPage();
        press(s.openOptions(), Qt::Key_Escape);
        QVERIFY(!s.isShown());
        QTRY_VERIFY(s.isWriting());
        QVERIFY(window->isActive());
    }

    void turningToAnotherWindowClosesThem()
    {
        Options s;
        s.open();
        s.openOptions();
        s.leave();
        QTRY_VERIFY(!s.isShown());
        QVERIFY(!QGuiApplication::focusWindow() ||
                QGuiApplication::focusWindow() != s.window()); // nobody calls the keyboard back
    }

    void theButtonClosesThemToo()
    {
        Options s;
        s.open();
        s.openOptions();
        click(s.item(u"sticky.color"_s));
        QTRY_VERIFY(!s.isShown());
    }

    void controlsStayWhileTheyAreOpen()
    {
        Options s;
        const QQuickWindow *window = s.open();
        s.openOptions();
        QTest::mouseMove(s.window(), QPoint(1, 1));
        QVERIFY(itemIn(window, u"stickyNoteView"_s)->property("showsControls").toBool());
        s.leave();
        QTRY_VERIFY(!s.isShown());
        QTRY_VERIFY(!itemIn(window, u"stickyNoteView"_s)->property("showsControls").toBool());
    }

    void theyWorkFromACapsule()
    {
        Options s;
        s.open();
        s.fold();
        const QQuickWindow *options = s.openOptions();
        QVERIFY(options->height() > s.window()->height());
        click(itemIn(s.options(), u"swatch.blue"_s));
        QCOMPARE(s.note().color, u"blue"_s);
    }

    // What they offer

    void everyEntryIsThereInBothLanguages_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::newRow("pl") << AppLanguage::pl;
        QTest::newRow("en") << AppLanguage::en;
    }
    void everyEntryIsThereInBothLanguages()
    {
        QFETCH(AppLanguage, language);
        Options s(u"Tea"_s, language);
        s.open();
        s.openOptions();
        click(s.entry("sort"));
        pictureOf(s.options());
        for (const Entry &entry : entries) {
            QVERIFY2(isDrawn(s.entry(entry.name)), entry.name);
            QCOMPARE(s.entry(entry.name)->property("text").toString(),
                     language == AppLanguage::pl ? entry.polish : entry.english);
        }
        LanguageManager::shared().setLanguage(language == AppLanguage::pl ? AppLanguage::en
                                                                          : AppLanguage::pl);
        for (const Entry &entry : entries)
            QCOMPARE(s.entry(entry.name)->property("text").toString(),
                     language == AppLanguage::pl ? entry.english : entry.polish);
    }

    void theNotebookOpensAtTheNote()
    {
        Options s;
        QWindow main;
        WindowHolder::shared().window = &main;
        s.open();
        s.openOptions();
        QSignalSpy asked(&NotificationCenter::shared(), &NotificationCenter::plimSelectNote);
        s.choose("notebook");
        QVERIFY(!s.isShown());
        QCOMPARE(asked.value(0).value(0).toUuid(), s.id());
    }

    void aNewNoteOpensBesideTheCard()
    {
        Options s;
        s.open();
        const QRect frame = s.host().frame();
        s.openOptions();
        s.choose("newSticky");
        QVERIFY(!s.isShown());
        QCOMPARE(s.store.notes().size(), 2);
        QCOMPARE(s.manager.windowOrder().size(), 2);
        const QRect beside = s.manager.window(s.manager.windowOrder()[1])->frame();
        QCOMPARE(beside.topLeft() - frame.topLeft(), QPoint(36, 36));
        QCOMPARE(beside.size(), QSize(300, 340));
    }

    void sortingMerelyShowsItsTwoWays()
    {
        Options s(u"Tea Milk"_s);
        s.open(1);
        s.open(0);
        const QList<QRect> before = s.frames();
        s.openOptions();
        QVERIFY(!isDrawn(s.entry("sortRandom")));
        click(s.entry("sort"));
        pictureOf(s.options());
        QVERIFY(isDrawn(s.entry("sortRandom")));
        QVERIFY(isDrawn(s.entry("sortByColor")));
        QVERIFY(s.isShown());
        click(s.entry("sort"));
        pictureOf(s.options());
        QVERIFY(!isDrawn(s.entry("sortRandom")));
        QVERIFY(s.isShown());
        QCOMPARE(s.frames(), before);
        QVERIFY(!s.manager.canUndoArrange());
    }

    void sortingIsFoldedAwayWhenTheyAreOpenedAgain()
    {
        Options s;
        s.open();
        s.openOptions();
        click(s.entry("sort"));
        press(s.options(), Qt::Key_Escape);
        s.openOptions();
        QVERIFY(!isDrawn(s.entry("sortRandom")));
    }

    void arrangingCanBeTakenBackAtOnce_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char *name : {"sortRandom", "sortByColor", "collapseAll", "expandAll"})
            QTest::newRow(name) << QByteArray(name);
    }
    void arrangingCanBeTakenBackAtOnce()
    {
        QFETCH(QByteArray, name);
        Options s(u"Tea Milk"_s);
        s.open(1, StickyFrame{900, 500, 400, 340});
        QQuickWindow *window = s.openPage(0);
        const QList<QRect> before = s.frames();
        s.openOptions();
        s.choose(name);
        QVERIFY(!s.isShown());
        QVERIFY(s.manager.canUndoArrange());
        QTRY_VERIFY(s.frames() != before);
        QTRY_VERIFY(window->isActive());
        QTRY_COMPARE(s.focusedName(), u"sticky.color"_s);
        press(window, Qt::Key_Z, Qt::ControlModifier);
        QTRY_VERIFY(!s.manager.canUndoArrange());
        QTRY_COMPARE(s.frames(), before);
        QTest::qWait(200); // nobody packs the windows once more
        QCOMPARE(s.frames(), before);
    }

    void expandingAllOfACapsuleCanBeTakenBackAtOnce()
    {
        Options s;
        QQuickWindow *window = s.openPage();
        s.fold();
        const QRect before = s.host().frame();
        s.openOptions();
        s.choose("expandAll");
        QTRY_COMPARE(s.host().frame().height(), StickyNotes::noteHeight);
        QTRY_COMPARE(s.focusedName(), u"sticky.color"_s);
        press(window, Qt::Key_Z, Qt::ControlModifier);
        QTRY_COMPARE(s.host().frame(), before);
        QVERIFY(s.host().isCollapsed());
    }

    void allAreCollapsedAndExpanded()
    {
        Options s(u"Tea Milk"_s);
        s.open(1);
        s.open(0);
        s.openOptions();
        s.choose("collapseAll");
        QVERIFY(s.host(0).isCollapsed() && s.host(1).isCollapsed());
        QTRY_COMPARE(s.item(u"stickyNoteView"_s)->height(), StickyNotes::capsuleHeight);
        s.openOptions();
        s.choose("expandAll");
        QVERIFY(!s.host(0).isCollapsed() && !s.host(1).isCollapsed());
        QCOMPARE(s.host(1).frame().height(), StickyNotes::noteHeight);
    }

    void theColoursOrderIsTheirOrder()
    {
        Options s(u"Tea Milk Bread"_s);
        storeColor(s.store, s.id(0), u"brown"_s);
        storeColor(s.store, s.id(1), u"red"_s);
        storeColor(s.store, s.id(2), u"green"_s);
        s.open(2);
        s.open(1);
        s.open(0);
        s.openOptions();
        s.choose("sortByColor");
        const auto topOf = [&](int index) {
            const QRect frame = s.host(index).frame();
            return frame.x() * 10'000 + frame.y();
        };
        QVERIFY(topOf(1) < topOf(2));
        QVERIFY(topOf(2) < topOf(0));
    }

    // Colour and size

    void aColourIsStoredAndShown()
    {
        Options s;
        s.open();
        s.openOptions();
        for (const QString &color : NoteChoices::colors()) {
            click(itemIn(s.options(), u"swatch."_s + color));
            QCOMPARE(s.note().color, color);
            QCOMPARE(s.controller().tint(), NoteChoices::displayColor(color));
        }
        QVERIFY(s.isShown()); // who looks for a colour tries several
    }

    void theColourThatTheNoteHasIsStoredAllTheSame()
    {
        Options s;
        s.open();
        s.openOptions();
        QSignalSpy stored(&s.store, &NoteStore::notesChanged);
        click(itemIn(s.options(), u"swatch."_s + s.note().color));
        QCOMPARE(stored.count(), 1);
    }

    void aTextSizeReachesThePage()
    {
        Options s;
        s.openPage();
        const QString sizeInPage = u"getComputedStyle(document.activeElement).fontSize"_s;
        const QString before = s.js(sizeInPage).toString();
        s.openOptions();
        click(itemIn(s.options(), u"size.big"_s));
        QCOMPARE(s.note().textSize, NoteTextSize::big);
        QTRY_VERIFY(s.js(sizeInPage).toString() != before);
    }

    void oneClosesWithItsNote()
    {
        Options s;
        s.open();
        const QPointer<QQuickWindow> options = s.openOptions();
        s.store.deleteNote(s.id());
        QTRY_VERIFY(!options || !options->isVisible());
    }
};

PLIM_PAGE_TEST_MAIN(TestStickyOptions)
#include "tst_sticky_options.moc"
