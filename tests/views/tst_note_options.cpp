#include "shell/LanguageManager.h"
#include "shell/NoteChoices.h"
#include "shell/Symbol.h"
#include "tests/Observation.h"
#include "tests/views/Stage.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray actions = R"(
    property T.Action notebook: T.Action { objectName: "notebook" }
    property T.Action newSticky: T.Action { objectName: "newSticky" }
    property T.Action sort: T.Action { objectName: "sort" }
    property T.Action sortRandom: T.Action { objectName: "sortRandom" }
    property T.Action sortByColor: T.Action { objectName: "sortByColor" }
    property T.Action collapseAll: T.Action { objectName: "collapseAll" }
    property T.Action expandAll: T.Action { objectName: "expandAll" }
    SymbolButton { id: anchor; objectName: "anchor"; x: 300; y: 60; symbol: "plus"; helpText: "Options" }
    NoteOptionsPopover {
        objectName: "popover"
        anchor: anchor
        noteColor: "green"
        size: "small"
    }
)";

const QStringList entries{u"notebook"_s,    u"newSticky"_s,   u"sort"_s,     u"sortRandom"_s,
                          u"sortByColor"_s, u"collapseAll"_s, u"expandAll"_s};

struct Options : Stage {
    Options() : Stage(actions, QSize(900, 560))
    {
        LanguageManager::shared().setLanguage(AppLanguage::en);
        window()->setPosition(200, 100);
        moveTo(window(), QPoint(10, 500));
    }

    [[nodiscard]] QQuickWindow *popover() const
    {
        return qobject_cast<QQuickWindow *>(object(u"popover"_s));
    }
    void open() const
    {
        QMetaObject::invokeMethod(popover(), "open");
        // A window counts as active while its parent is.
        QTRY_COMPARE(QGuiApplication::focusWindow(), popover());
        layOut();
    }
    /// Drawing puts everything into its place.
    void layOut() const { pictureOf(popover()); }
    [[nodiscard]] QQuickItem *part(const QString &name) const { return itemIn(popover(), name); }
    /// Gives the popover the actions.
    void give(const QStringList &names) const
    {
        for (const QString &name : names) {
            const QByteArray property =
                name == u"notebook" ? QByteArray("openNotebook") : name.toUtf8();
            QVERIFY(popover()->setProperty(property, window()->property(name.toUtf8())));
        }
    }
    [[nodiscard]] QString shownEntries() const
    {
        QStringList shown;
        for (const QString &name : entries) {
            if (isDrawn(part(u"option."_s + name)))
                shown << name;
        }
        return shown.join(u' ');
    }
};
} // namespace

class TestNoteOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { setMoving(false); }

    void coloursStandInTheirOrder()
    {
        const Options w;
        w.open();
        qreal right = 0;
        for (const QString &name : NoteChoices::colors()) {
            const QRectF frame = frameOf(w.part(u"swatch."_s + name));
            QVERIFY2(frame.left() > right, qPrintable(name));
            right = frame.right();
        }
        QVERIFY(right <= w.popover()->width());
    }

    void aColourIsChosenByMouseAndKeys()
    {
        const Options w;
        QSignalSpy chosen(w.popover(), SIGNAL(update(QString)));
        w.open();
        click(w.part(u"swatch.blue"_s));
        click(w.part(u"swatch.green"_s)); // also the one that it has
        w.part(u"swatch.red"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.popover(), Qt::Key_Left); // there is nothing further
        press(w.popover(), Qt::Key_Right);
        press(w.popover(), Qt::Key_Return);
        press(w.popover(), Qt::Key_Right);
        press(w.popover(), Qt::Key_Space);
        QStringList names;
        for (const auto &arguments : chosen)
            names << arguments[0].toString();
        QCOMPARE(names, (QStringList{u"blue"_s, u"green"_s, u"orange"_s, u"yellow"_s}));
        QVERIFY(w.popover()->isVisible()); // one may look at several
    }

    void aSizeIsChosenByMouseAndKeys()
    {
        const Options w;
        QSignalSpy chosen(w.popover(), SIGNAL(sizeChange(QString)));
        w.open();
        const QStringList sizes = NoteChoices::textSizes();
        QStringList texts;
        for (const QString &size : sizes)
            texts << textsIn(w.part(u"size."_s + size));
        QCOMPARE(texts, (QStringList{u"X-SMALL"_s, u"SMALL"_s, u"MEDIUM"_s, u"BIG"_s}));
        click(w.part(u"size."_s + sizes[3]));
        w.part(u"size."_s + sizes[1])->forceActiveFocus(Qt::TabFocusReason);
        press(w.popover(), Qt::Key_Right);
        press(w.popover(), Qt::Key_Return);
        QCOMPARE(chosen.size(), 2);
        QCOMPARE(chosen[0][0].toString(), sizes[3]);
        QCOMPARE(chosen[1][0].toString(), sizes[2]);
    }

    void theRingIsAroundTheNotesColour()
    {
        const Options w;
        w.open();
        QQuickItem *ring = w.part(u"swatchRing"_s);
        for (const QString &name : NoteChoices::colors()) {
            w.popover()->setProperty("noteColor", name);
            QTRY_COMPARE(frameOf(ring).center(), frameOf(w.part(u"swatch."_s + name)).center());
        }
        w.popover()->setProperty("noteColor", u"chartreuse"_s); // from some other program
        QVERIFY(!isDrawn(ring));
        QSignalSpy chosen(w.popover(), SIGNAL(update(QString)));
        click(w.part(u"swatch.red"_s));
        QCOMPARE(chosen.size(), 1);
    }

    void theHighlightIsUnderTheNotesSize()
    {
        const Options w;
        w.open();
        for (const QString &size : NoteChoices::textSizes()) {
            w.popover()->setProperty("size", size);
            QTRY_COMPARE(frameOf(w.part(u"sizePill"_s)), frameOf(w.part(u"size."_s + size)));
        }
        w.popover()->setProperty("size", u"huge"_s);
        QVERIFY(!isDrawn(w.part(u"sizePill"_s)));
    }

    void ringAndHighlightGlide()
    {
        const Options w;
        w.open();
        setMoving(true);
        for (const auto &[mark, property, value] :
             {std::tuple(u"swatchRing"_s, "noteColor", u"brown"_s),
              std::tuple(u"sizePill"_s, "size", u"big"_s)}) {
            QQuickItem *item = w.part(mark);
            QQuickItem *goal = w.part((mark == u"sizePill" ? u"size."_s : u"swatch."_s) + value);
            QList<qreal> places{item->x()};
            connect(item, &QQuickItem::xChanged, this, [&] { places << item->x(); });
            w.popover()->setProperty(property, value);
            QTRY_COMPARE(frameOf(item).center(), frameOf(goal).center());
            QVERIFY(places.size() > 3);
            QVERIFY(std::ranges::is_sorted(places));
            item->disconnect(this);
        }
    }

    void onlyWhatSomebodyHasTakenUpIsOffered_data()
    {
        QTest::addColumn<QStringList>("given");
        QTest::addColumn<QString>("shown");
        QTest::newRow("nothing") << QStringList() << QString();
        for (const QString &name :
             {u"notebook"_s, u"newSticky"_s, u"collapseAll"_s, u"expandAll"_s})
            QTest::newRow(qPrintable(name)) << QStringList{name} << name;
        QTest::newRow("sort") << QStringList{u"sort"_s} << u"sort"_s;
        QTest::newRow("all") << entries << u"notebook newSticky sort collapseAll expandAll"_s;
    }
    void onlyWhatSomebodyHasTakenUpIsOffered()
    {
        QFETCH(QStringList, given);
        QFETCH(QString, shown);
        const Options w;
        w.give(given);
        w.open();
        QCOMPARE(w.shownEntries(), shown);
        const QRectF window(QPointF(0, 0), QSizeF(w.popover()->size()));
        for (const QString &name : shown.split(u' ', Qt::SkipEmptyParts))
            QVERIFY(window.contains(frameOf(w.part(u"option."_s + name))));
    }

    void theSortMenuIsClosedAtEachOpening()
    {
        const Options w;
        w.give(entries);
        w.open();
        QVERIFY(!w.shownEntries().contains(u"sortRandom"_s));
        const int height = w.popover()->height();
        click(w.part(u"option.sort"_s));
        QTRY_VERIFY(w.shownEntries().contains(u"sortRandom sortByColor"_s));
        QTRY_VERIFY(w.popover()->height() > height);
        w.layOut();
        click(w.part(u"option.sort"_s));
        QTRY_VERIFY(!w.shownEntries().contains(u"sortRandom"_s));
        click(w.part(u"option.sort"_s));
        press(w.popover(), Qt::Key_Escape);
        w.open();
        QVERIFY(!w.shownEntries().contains(u"sortRandom"_s));
        QTRY_COMPARE(w.popover()->height(), height);
    }

    void entriesDoWhatTheySay_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<bool>("closes");
        QTest::newRow("notebook") << u"notebook"_s << true;
        QTest::newRow("new") << u"newSticky"_s << true;
        QTest::newRow("sort") << u"sort"_s << false;
        QTest::newRow("random") << u"sortRandom"_s << false;
        QTest::newRow("by color") << u"sortByColor"_s << false;
        QTest::newRow("collapse") << u"collapseAll"_s << false;
        QTest::newRow("expand") << u"expandAll"_s << false;
    }
    void entriesDoWhatTheySay()
    {
        QFETCH(QString, entry);
        QFETCH(bool, closes);
        const Options w;
        w.give(entries);
        w.open();
        w.popover()->setProperty("showSortMenu", entry.startsWith(u"sort"_s) && entry != u"sort");
        QSignalSpy triggered(w.window()->property(entry.toUtf8()).value<QObject *>(),
                             SIGNAL(triggered(QObject *)));
        QVERIFY(isDrawn(w.part(u"option."_s + entry)));
        w.layOut();
        click(w.part(u"option."_s + entry));
        QCOMPARE(triggered.size(), 1);
        QCOMPARE(w.popover()->isVisible(), !closes);
    }

    void everySymbolIsKnown()
    {
        const Options w;
        w.give(entries);
        w.open();
        int count = 0;
        visitItems(w.popover()->contentItem(), [&](QQuickItem *item) {
            if (const auto *symbol = qobject_cast<Symbol *>(item)) {
                ++count;
                QVERIFY2(Symbol::isKnown(symbol->name()), qPrintable(symbol->name()));
            }
        });
        QCOMPARE(count, entries.size());
    }

    void tabGoesThroughTheWholePopover()
    {
        const Options w;
        w.give(entries);
        w.open();
        QSet<QString> met;
        for (int i = 0; i < 20; ++i) {
            press(w.popover(), Qt::Key_Tab);
            met.insert(w.popover()->activeFocusItem()->objectName());
        }
        QSet<QString> wanted;
        for (const QString &name : NoteChoices::colors())
            wanted.insert(u"swatch."_s + name);
        for (const QString &size : NoteChoices::textSizes())
            wanted.insert(u"size."_s + size);
        for (const QString &name :
             {u"notebook"_s, u"newSticky"_s, u"sort"_s, u"collapseAll"_s, u"expandAll"_s})
            wanted.insert(u"option."_s + name);
        QCOMPARE(met, wanted);
    }

    // The window of it

    void theDesktopMayCloseIt()
    {
        const Options w;
        QSignalSpy closed(w.popover(), SIGNAL(closed()));
        w.open();
        w.popover()->close();
        QVERIFY(!w.popover()->isVisible());
        QCOMPARE(closed.size(), 1);
        QVERIFY(!w.popover()->property("isOpen").toBool());
        w.open();
        QVERIFY(w.popover()->isVisible());
    }

    void escClosesIt()
    {
        const Options w;
        QSignalSpy closed(w.popover(), SIGNAL(closed()));
        w.open();
        press(w.popover(), Qt::Key_Escape);
        QVERIFY(!w.popover()->isVisible());
        QCOMPARE(closed.size(), 1);
    }

    void escClosesItFromAnyOfItsControls()
    {
        const Options w;
        w.open();
        w.part(u"swatch.red"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.popover(), Qt::Key_Escape);
        QVERIFY(!w.popover()->isVisible());
    }

    void turningToSomethingElseClosesIt()
    {
        const Options w;
        QSignalSpy closed(w.popover(), SIGNAL(closed()));
        w.open();
        QTest::mouseClick(w.window(), Qt::LeftButton, {}, QPoint(10, 500));
        QTRY_VERIFY(!w.popover()->isVisible());
        w.open();
        w.window()->requestActivate();
        QTRY_VERIFY(!w.popover()->isVisible());
        QCOMPARE(closed.size(), 2);
    }

    void aPressThatClosesItIsRemembered()
    {
        const Options w;
        const auto isRemembered = [&w] { // for a moment
            w.open();
            if (w.popover()->property("justClosed").toBool())
                return false;
            QTest::mousePress(w.window(), Qt::LeftButton, {}, middleOf(w.item(u"anchor"_s)));
            const bool isSo =
                !w.popover()->isVisible() && w.popover()->property("justClosed").toBool();
            QTest::mouseRelease(w.window(), Qt::LeftButton, {}, middleOf(w.item(u"anchor"_s)));
            return isSo;
        };
        QVERIFY(isSeenOnce(isRemembered));
        QTRY_VERIFY(!w.popover()->property("justClosed").toBool());
    }

    void itIsBelowItsAnchorAndOnTheScreen()
    {
        const Options w;
        w.open();
        const QRect anchor(w.item(u"anchor"_s)->mapToGlobal(QPointF(0, 0)).toPoint(),
                           w.item(u"anchor"_s)->size().toSize());
        QVERIFY(w.popover()->y() > anchor.bottom());
        QVERIFY(qAbs(w.popover()->geometry().center().x() - anchor.center().x()) <= 1);
        QVERIFY(w.popover()->transientParent() == w.window());
    }
};

QTEST_MAIN(TestNoteOptions)
#include "tst_note_options.moc"
