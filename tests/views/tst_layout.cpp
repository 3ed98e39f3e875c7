#include "shell/Symbol.h"
#include "tests/views/CommandedWindow.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr int rowHeight = 70;
constexpr qreal tolerance = 1; // point

bool isText(const QQuickItem *item)
{
    return item->inherits("QQuickText");
}

/// A text whose note may be longer than there is room.
bool mayBeCut(const QQuickItem *item)
{
    return item->objectName() == "rowTitle"_L1 || item->objectName() == "rowPreview"_L1;
}

/// Where a text or a symbol is painted, in its window.
QRectF paintedFrame(const QQuickItem *item)
{
    QRectF frame(QPointF(0, 0), item->size());
    if (isText(item)) {
        const QSizeF content(item->property("contentWidth").toReal(),
                             item->property("contentHeight").toReal());
        const int across = item->property("effectiveHorizontalAlignment").toInt();
        const int down = item->property("verticalAlignment").toInt();
        const QSizeF room = item->size() - content;
        const qreal x = across & Qt::AlignRight     ? room.width()
                        : across & Qt::AlignHCenter ? room.width() / 2
                                                    : item->property("leftPadding").toReal();
        const qreal y = down & Qt::AlignBottom    ? room.height()
                        : down & Qt::AlignVCenter ? room.height() / 2
                                                  : item->property("topPadding").toReal();
        frame = QRectF(QPointF(x, y), content);
    }
    return item->mapRectToScene(frame);
}

QQuickItem *ancestorNamed(QQuickItem *item, QLatin1StringView name)
{
    while (item && item->objectName() != name)
        item = item->parentItem();
    return item;
}

/// Texts and symbols of one layer: a dialog lies over the rest.
QList<QQuickItem *> marksIn(QQuickItem *layer)
{
    QList<QQuickItem *> marks;
    for (QQuickItem *child : layer->childItems()) {
        visitItems(child, [&](QQuickItem *item) {
            const bool isMark = isText(item) ? !item->property("text").toString().isEmpty()
                                             : qobject_cast<Symbol *>(item) != nullptr;
            if (isMark && isDrawn(item))
                marks << item;
        });
    }
    return marks;
}

QString described(const QQuickItem *item)
{
    const QRectF frame = paintedFrame(item);
    return u"\"%1\" at %2, %3, %4 by %5"_s
        .arg(isText(item) ? item->property("text").toString() : item->property("name").toString())
        .arg(frame.x())
        .arg(frame.y())
        .arg(frame.width())
        .arg(frame.height());
}

/// What is cut off, sticks out of its place, or lies on something else.
QStringList faultsIn(QQuickItem *layer, QSizeF windowSize)
{
    QStringList faults;
    const QRectF window(QPointF(0, 0), windowSize);
    QList<QQuickItem *> marks;
    for (QQuickItem *mark : marksIn(layer)) {
        // The list cuts its first and last row; what is seen of them has its place.
        QQuickItem *row = ancestorNamed(mark, "noteRow"_L1);
        if (row && !frameOf(ancestorNamed(row, "noteList"_L1)).contains(frameOf(row)))
            continue;
        marks << mark;
        const QRectF frame = paintedFrame(mark);
        if (!window.adjusted(-tolerance, -tolerance, tolerance, tolerance).contains(frame))
            faults << u"outside its window: "_s + described(mark);
        for (const QQuickItem *around = mark->parentItem(); around; around = around->parentItem()) {
            const QRectF room =
                frameOf(around).adjusted(-tolerance, -tolerance, tolerance, tolerance);
            if (around->clip() && !room.contains(frame))
                faults << u"cut off by what is around it: "_s + described(mark);
        }
        if (!isText(mark))
            continue;
        if (mark->property("truncated").toBool() && !mayBeCut(mark))
            faults << u"cut off: "_s + described(mark);
        if (mark->property("contentWidth").toReal() > mark->width() + tolerance)
            faults << u"wider than its place: "_s + described(mark);
    }
    for (qsizetype i = 0; i < marks.size(); ++i) {
        for (qsizetype j = i + 1; j < marks.size(); ++j) {
            const QRectF shared = paintedFrame(marks[i]).intersected(paintedFrame(marks[j]));
            // Of lines of text the frames may touch, where letters do not.
            if (shared.width() > tolerance && shared.height() > 2 * tolerance)
                faults << u"one on the other: "_s + described(marks[i]) + u" and "_s +
                              described(marks[j]);
        }
    }
    return faults;
}

NoteArray difficultNotes()
{
    const auto note = [](const QString &heading, const QString &body) {
        Note note = Note::fresh({1000});
        note.body = u"<h1>%1</h1><p>%2</p>"_s.arg(heading, body);
        return note;
    };
    NoteArray notes;
    notes.append(note(u"Milk"_s, u"two bottles"_s));
    notes.append(note(u"x"_s.repeated(300), u"y"_s.repeated(3000)));
    notes.append(note(u"🙂👩‍👩‍👧‍👦🏳️‍🌈 party 🎉"_s.repeated(9),
                      u"🎉 "_s.repeated(99)));
    notes.append(note(u"قائمة المشتريات لهذا الأسبوع والأسبوع القادم "_s.repeated(4),
                      u"חלב ולחם "_s.repeated(40)));
    notes.append(note(u"Zażółć gęślą jaźń ẞ Å̧̂"_s, u"ḍ̇ẓ̈"_s));
    notes.append(note(QString(), QString()));
    notes.append(note(u"日本語のとても長い見出し"_s.repeated(20), u"中文"_s));
    for (int i = 0; i < 20; ++i)
        notes.append(note(u"Note %1"_s.arg(i), u"about it"_s));
    Note archived = note(u"Old"_s, u"gone"_s);
    archived.isArchived = true;
    notes.append(archived);
    return notes;
}

const QStringList states{u"notes"_s, u"archive"_s,       u"open"_s,      u"hovered"_s, u"sticky"_s,
                         u"found"_s, u"nothing found"_s, u"selection"_s, u"delete"_s,  u"batch"_s,
                         u"link"_s,  u"popover"_s,       u"no notes"_s,  u"undo"_s};
} // namespace

class TestLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void everythingHasItsPlace_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QString>("state");
        for (const auto language : allAppLanguages) {
            for (const QSize size : {QSize(900, 560), QSize(1100, 700), QSize(1600, 1000)}) {
                for (const QString &state : states)
                    QTest::addRow("%s, %d, %s", language == AppLanguage::pl ? "pl" : "en",
                                  size.width(), qPrintable(state))
                        << language << size << state;
            }
        }
    }
    void everythingHasItsPlace()
    {
        QFETCH(AppLanguage, language);
        QFETCH(QSize, size);
        QFETCH(QString, state);
        CommandedWindow w(state == u"no notes" ? NoteArray() : difficultNotes(), size, language);
        QQuickWindow *window = w.window();
        moveTo(window, QPoint(size.width() - 100, size.height() - 10));
        const auto untilDrawn = [&](const QString &name) {
            QTRY_VERIFY(isDrawn(itemIn(window, name)));
        };
        if (state != u"notes" && state != u"no notes")
            w.content.selectRow(0);
        if (state == u"archive") {
            w.selectTab(SidebarTab::Archive);
        } else if (state == u"hovered") {
            auto *list = w.item(u"noteList"_s);
            moveTo(window, frameOf(list).topLeft().toPoint() + QPoint(100, rowHeight * 3 / 2));
            QTRY_VERIFY(textsIn(list).size() > 2);
            QTRY_VERIFY(std::ranges::any_of(marksIn(list), [](QQuickItem *mark) {
                return ancestorNamed(mark, "rowDelete"_L1) != nullptr;
            }));
        } else if (state == u"sticky") {
            w.pretendSticky({u"x"_s.repeated(300), u"Milk"_s});
        } else if (state == u"found") {
            w.content.filteredNotes()->setSearchText(u"x"_s);
            QTRY_COMPARE(w.item(u"noteList"_s)->property("count").toInt(), 1);
        } else if (state == u"nothing found") {
            w.content.filteredNotes()->setSearchText(u"qqq"_s);
            untilDrawn(u"emptyList"_s);
        } else if (state == u"selection" || state == u"batch") {
            w.content.multiSelection()->setIsSelectionMode(true);
            w.content.selectAll();
            if (state == u"batch") {
                pictureOf(window);
                click(w.item(u"deleteSelection"_s));
                untilDrawn(u"confirmDeleteAll"_s);
            }
        } else if (state == u"delete") {
            QMetaObject::invokeMethod(w.object(u"deleteNoteDialog"_s), "ask",
                                      Q_ARG(QString, w.store.notes()[0].id.toString()));
            untilDrawn(u"confirmDelete"_s);
        } else if (state == u"link") {
            click(w.item(u"tool.link"_s));
            untilDrawn(u"linkField"_s);
        } else if (state == u"popover") {
            click(w.item(u"noteOptions"_s));
            window = w.window(u"noteOptionsPopover"_s);
            QTRY_VERIFY(window->isVisible());
            QQmlComponent component(&w.engine);
            component.setData("import QtQuick.Templates\nAction {}", {});
            QObject *action = component.create();
            action->setParent(window);
            for (const char *name : {"openNotebook", "newSticky", "sort", "sortRandom",
                                     "sortByColor", "collapseAll", "expandAll"})
                QVERIFY(window->setProperty(name, QVariant::fromValue(action)));
            window->setProperty("showSortMenu", true);
        } else if (state == u"undo") {
            w.content.selectAll();
            w.content.deleteSelection();
            untilDrawn(u"undoDelete"_s);
        }
        pictureOf(window); // drawing puts everything into its place
        pictureOf(window);
        QVERIFY(!marksIn(window->contentItem()).isEmpty());
        // What lies over the window is a layer of its own.
        QQuickItem *overlay = nullptr;
        for (QQuickItem *child : window->contentItem()->childItems()) {
            if (child->inherits("QQuickOverlay"))
                overlay = child;
        }
        if (overlay) {
            QCOMPARE(faultsIn(overlay, window->size()), QStringList());
            overlay->setVisible(false);
        }
        QCOMPARE(faultsIn(window->contentItem(), window->size()), QStringList());
    }

    void theMenusEndBeforeTheOptions()
    {
        for (const auto language : allAppLanguages) {
            CommandedWindow w(difficultNotes(), QSize(900, 560), language); // as small as it can be
            w.content.selectRow(0);
            pictureOf(w.window());
            QCOMPARE(w.window()->size(), w.window()->minimumSize());
            const QRectF row = frameOf(w.item(u"menuRow"_s));
            const QRectF options = frameOf(w.item(u"noteOptions"_s));
            QVERIFY2(row.right() <= options.left(), qPrintable(QDebug::toString(row)));
            for (size_t i = 0; i < w.commands().menus().size(); ++i)
                QVERIFY(row.contains(frameOf(w.button(int(i)))));
            QVERIFY(row.left() >= frameOf(w.item(u"paneDragArea"_s)).left());
        }
    }

    void everyRowHasTheSameHeight()
    {
        const MainWindow w(difficultNotes());
        pictureOf(w.window());
        int rows = 0;
        visitItems(w.item(u"noteList"_s), [&](QQuickItem *row) {
            if (row->objectName() != u"noteRow" || !isDrawn(row))
                return;
            ++rows;
            QCOMPARE(row->height(), rowHeight);
            for (const QString &name : {u"rowTitle"_s, u"rowPreview"_s, u"rowTime"_s}) {
                QQuickItem *text = itemIn(row, name);
                QVERIFY2(frameOf(row).contains(paintedFrame(text)), qPrintable(described(text)));
                QCOMPARE(text->property("lineCount").toInt(), 1);
            }
        });
        QVERIFY(rows >= 7);
    }

    void aLongHeadingIsElided_data()
    {
        QTest::addColumn<QString>("search");
        QTest::newRow("plain") << QString();
        QTest::newRow("with a hit") << u"xx"_s;
    }
    void aLongHeadingIsElided()
    {
        QFETCH(QString, search);
        MainWindow w(difficultNotes());
        w.content.filteredNotes()->setSearchText(search);
        const QString heading = u"x"_s.repeated(300);
        QTRY_VERIFY(w.drawnRows().contains(heading));
        QTRY_COMPARE(w.row(heading)->property("titleMarkup").toString().isEmpty(),
                     search.isEmpty());
        pictureOf(w.window());
        QQuickItem *title = itemIn(w.row(heading), u"rowTitle"_s);
        QVERIFY(title->property("truncated").toBool());
        QVERIFY(title->property("contentWidth").toReal() <= title->width() + tolerance);
        QVERIFY(title->property("contentWidth").toReal() > title->width() / 2);
        QVERIFY(itemIn(w.row(heading), u"rowPreview"_s)->property("truncated").toBool());
        QVERIFY(!itemIn(w.row(heading), u"rowTime"_s)->property("truncated").toBool());
    }

    void theProgramsOwnFontIsUsed()
    {
        const MainWindow w(difficultNotes());
        const QFont font = itemIn(w.row(u"Milk"_s), u"rowTitle"_s)->property("font").value<QFont>();
        QCOMPARE(QFontInfo(font).family(), u"Outfit"_s);
    }
};

QTEST_MAIN(TestLayout)
#include "tst_layout.moc"
