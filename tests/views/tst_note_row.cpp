#include "shell/L10n.h"
#include "shell/LanguageManager.h"
#include "shell/Symbol.h"
#include "tests/views/Stage.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray view = R"(
    NoteRow {
        objectName: "row"
        y: 20
        width: 400
        noteID: "a"
        titleText: "Milk"
        titleMarkup: ""
        previewText: "two bottles"
        previewMarkup: ""
        timestampText: "today, 10:00"
        noteColor: Theme.hit
        colorName: "yellow"
        isArchived: false
        isSelected: false
        isSticky: false
        isDragging: false
        isSelectionMode: false
        isCheckmarked: false
        showTopLine: false
        showBottomLine: false
    }
)";

struct Row : Stage {
    Row() : Stage(view)
    {
        LanguageManager::shared().setLanguage(AppLanguage::en);
        moveTo(window(), QPoint(450, 300)); // the pointer is elsewhere
    }

    [[nodiscard]] QQuickItem *row() const { return item(u"row"_s); }
    void set(const char *name, const QVariant &value) const { row()->setProperty(name, value); }
    /// Names of the buttons that can be seen.
    [[nodiscard]] QString buttons() const
    {
        QStringList seen;
        for (const QString &name : {u"rowSticky"_s, u"rowArchive"_s, u"rowDelete"_s}) {
            if (isDrawn(item(name)))
                seen << name;
        }
        return seen.join(u' ');
    }
    [[nodiscard]] QString symbol(const QString &button) const
    {
        return item(button)->property("symbol").toString();
    }
    [[nodiscard]] QString help(const QString &button) const
    {
        return item(button)->property("helpText").toString();
    }
    /// The names of the symbols drawn outside the buttons.
    [[nodiscard]] QStringList marks() const
    {
        QStringList marks;
        visitItems(row(), [&](QQuickItem *item) {
            auto *symbol = qobject_cast<Symbol *>(item);
            if (symbol && isDrawn(symbol) && symbol->x() + symbol->width() < 60 &&
                frameOf(symbol).x() < 60)
                marks << symbol->name();
        });
        return marks;
    }
};

const QString all = u"rowSticky rowArchive rowDelete"_s;
} // namespace

class TestNoteRow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void headingPreviewAndTimeAreShownInThisOrder()
    {
        const Row w;
        QCOMPARE(textsIn(w.row()), (QStringList{u"Milk"_s, u"two bottles"_s, u"today, 10:00"_s}));
        QVERIFY(frameOf(w.item(u"rowTitle"_s)).bottom() <= frameOf(w.item(u"rowPreview"_s)).top());
        QVERIFY(frameOf(w.item(u"rowPreview"_s)).bottom() <= frameOf(w.item(u"rowTime"_s)).top());
    }

    void textsAreShownLetterByLetter()
    {
        const Row w;
        w.set("titleText", u"<b>1 < 2</b> &amp;"_s);
        w.set("previewText", u"<img src='file:///x'>"_s);
        QVERIFY(w.item(u"rowTitle"_s)->property("textFormat").toInt() == 0); // plain text
        QVERIFY(w.item(u"rowPreview"_s)->property("textFormat").toInt() == 0);
        QCOMPARE(textsIn(w.row()).constFirst(), u"<b>1 < 2</b> &amp;"_s);
    }

    void hitsAreMarked()
    {
        const Row w;
        w.set("titleMarkup", u"M<b>il</b>k"_s);
        QCOMPARE(textsIn(w.row()).constFirst(), u"M<b>il</b>k"_s);
        QVERIFY(w.item(u"rowTitle"_s)->property("textFormat").toInt() != 0);
        QVERIFY(w.item(u"rowPreview"_s)->property("textFormat").toInt() == 0);
    }

    void theColourIsAMarkerAndInSelectionModeATick()
    {
        const Row w;
        QCOMPARE(w.marks(), QStringList());
        w.set("isSelectionMode", true);
        QCOMPARE(w.marks(), QStringList{u"circle"_s});
        w.set("isCheckmarked", true);
        QCOMPARE(w.marks(), QStringList{u"checkmark.circle.fill"_s});
        w.set("isSelectionMode", false);
        QCOMPARE(w.marks(), QStringList());
    }

    void theMarkerHasTheNotesColour()
    {
        const Row w;
        const QColor purple(0xb1, 0x92, 0xff);
        w.set("noteColor", purple);
        const QRectF row = frameOf(w.row());
        QTRY_COMPARE(pictureOf(w.window()).pixelColor(8 + 12 + 7, int(row.center().y())), purple);
    }

    void buttonsAreThereWhileThePointerIs()
    {
        const Row w;
        QCOMPARE(w.buttons(), QString());
        hover(w.row());
        QTRY_COMPARE(w.buttons(), all);
        moveTo(w.window(), QPoint(200, 200));
        QTRY_COMPARE(w.buttons(), QString());
    }

    void thePointerMayGoFromTheRowToItsButtons()
    {
        const Row w;
        hover(w.row());
        QTRY_COMPARE(w.buttons(), all);
        for (const QString &name : all.split(u' ')) {
            hover(w.item(name));
            QTRY_VERIFY(w.item(name)->property("hovered").toBool());
            QCOMPARE(w.buttons(), all);
        }
    }

    void aButtonThatCannotBeSeenCannotBePressed()
    {
        const Row w;
        QSignalSpy deletion(w.row(), SIGNAL(deleteRequested()));
        w.set("isReordering", true);
        click(w.item(u"rowDelete"_s));
        QCOMPARE(deletion.size(), 0);
    }

    void buttonsAskForWhatTheySay_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QByteArray>("signal");
        QTest::newRow("sticky") << u"rowSticky"_s << QByteArray("2stickyRequested()");
        QTest::newRow("archive") << u"rowArchive"_s << QByteArray("2archiveRequested()");
        QTest::newRow("delete") << u"rowDelete"_s << QByteArray("2deleteRequested()");
    }
    void buttonsAskForWhatTheySay()
    {
        QFETCH(QString, button);
        QFETCH(QByteArray, signal);
        const Row w;
        QSignalSpy asked(w.row(), signal.constData());
        QSignalSpy selected(w.row(), SIGNAL(selected()));
        hover(w.row());
        QTRY_COMPARE(w.buttons(), all);
        click(w.item(button));
        QCOMPARE(asked.size(), 1);
        QCOMPARE(selected.size(), 0); // the row below was not meant
    }

    void aStickyNotesButtonIsAlwaysThere()
    {
        const Row w;
        QCOMPARE(w.symbol(u"rowSticky"_s), u"arrow.up.right"_s);
        QCOMPARE(w.help(u"rowSticky"_s), u"Convert to sticky note"_s);
        w.set("isSticky", true);
        QTRY_COMPARE(w.buttons(), u"rowSticky"_s);
        QCOMPARE(w.symbol(u"rowSticky"_s), u"arrow.down.left"_s);
        QCOMPARE(w.help(u"rowSticky"_s), u"Sticky note is open"_s);
        hover(w.row());
        QTRY_COMPARE(w.buttons(), all);
    }

    void theArchiveButtonOfAnArchivedNoteRestores()
    {
        const Row w;
        QCOMPARE(w.symbol(u"rowArchive"_s), u"archivebox"_s);
        QCOMPARE(w.help(u"rowArchive"_s), u"Archive note"_s);
        w.set("isArchived", true);
        QCOMPARE(w.symbol(u"rowArchive"_s), u"tray.and.arrow.up"_s);
        QCOMPARE(w.help(u"rowArchive"_s), u"Restore note"_s);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(w.help(u"rowArchive"_s), u"Przywróć notatkę"_s);
    }

    void textsMakeRoomForTheButtons()
    {
        const Row w;
        const auto title = [&] { return frameOf(w.item(u"rowTitle"_s)); };
        const qreal wide = title().width();
        hover(w.row());
        QTRY_COMPARE(w.buttons(), all);
        QVERIFY(title().right() <= frameOf(w.item(u"rowSticky"_s)).left());
        moveTo(w.window(), QPoint(200, 200));
        QTRY_COMPARE(title().width(), wide);
        w.set("isSticky", true);
        QTRY_VERIFY(title().right() <= frameOf(w.item(u"rowSticky"_s)).left());
    }

    void selectionModeHasNoButtons()
    {
        const Row w;
        w.set("isSelectionMode", true);
        w.set("isSticky", true);
        hover(w.row());
        QTRY_VERIFY(w.row()->property("isHovered").toBool());
        QCOMPARE(w.buttons(), QString());
    }

    void aClickOpensOrTicks()
    {
        const Row w;
        QSignalSpy selected(w.row(), SIGNAL(selected()));
        QSignalSpy ticked(w.row(), SIGNAL(selectionToggled()));
        click(w.row());
        QCOMPARE(selected.size(), 1);
        QCOMPARE(ticked.size(), 0);
        w.set("isSelectionMode", true);
        click(w.row());
        QCOMPARE(selected.size(), 1);
        QCOMPARE(ticked.size(), 1);
    }

    void theDraggedRowIsAGhost()
    {
        const Row w;
        QCOMPARE(opacityOf(w.row()), 1.0);
        w.set("isDragging", true);
        QCOMPARE(opacityOf(w.row()), 0.15);
    }

    void noRowOffersActionsDuringADrag()
    {
        const Row w;
        hover(w.row());
        QTRY_COMPARE(w.buttons(), all);
        w.set("isReordering", true);
        QTRY_COMPARE(w.buttons(), QString());
    }

    void theDropLineIsAtTheRowsEdge()
    {
        const Row w;
        QVERIFY(!isDrawn(w.item(u"topLine"_s)));
        QVERIFY(!isDrawn(w.item(u"bottomLine"_s)));
        w.set("showTopLine", true);
        QVERIFY(isDrawn(w.item(u"topLine"_s)));
        QCOMPARE(frameOf(w.item(u"topLine"_s)).top(), frameOf(w.row()).top());
        w.set("showBottomLine", true);
        QVERIFY(isDrawn(w.item(u"bottomLine"_s)));
        QCOMPARE(frameOf(w.item(u"bottomLine"_s)).bottom(), frameOf(w.row()).bottom());
    }

    void timeIsQuieterThanTheRest()
    {
        const Row w;
        QCOMPARE(opacityOf(w.item(u"rowTitle"_s)), 1.0);
        QCOMPARE(opacityOf(w.item(u"rowTime"_s)), 0.6);
    }

    void theGroundTellsSelectedAndHoveredRowsApart()
    {
        const Row w;
        const QPoint place = frameOf(w.row()).topLeft().toPoint() + QPoint(200, 4);
        const auto ground = [&] { return pictureOf(w.window()).pixelColor(place); };
        const QColor plain = ground();
        hover(w.row());
        QTRY_VERIFY(ground() != plain);
        const QColor hovered = ground();
        w.set("isSelected", true);
        QTRY_VERIFY(ground().lightness() < hovered.lightness());
        moveTo(w.window(), QPoint(200, 200));
        w.set("isSelected", false);
        w.set("isSelectionMode", true);
        w.set("isCheckmarked", true);
        QTRY_VERIFY(ground().lightness() > plain.lightness());
    }

    void aRowOfTheKeyboardOffersItsButtons()
    {
        const Row w;
        w.set("hasKeyboard", true);
        QTRY_COMPARE(w.buttons(), all);
        QSignalSpy asked(w.row(), SIGNAL(archiveRequested()));
        w.item(u"rowArchive"_s)->forceActiveFocus(Qt::TabFocusReason);
        press(w.window(), Qt::Key_Return);
        press(w.window(), Qt::Key_Space);
        QCOMPARE(asked.size(), 2);
    }

    void aRowThatIsPointedOutGlowsInItsColour()
    {
        const Row w;
        QQuickItem *glow = w.item(u"rowGlow"_s);
        QVERIFY(!isDrawn(glow));
        w.set("isPointedOut", true);
        QVERIFY(!isDrawn(glow)); // at first
        w.set("glow", 0.5);
        QVERIFY(isDrawn(glow));
        QCOMPARE(glow->opacity(), 0.5);
        const QColor color = w.row()->property("noteColor").value<QColor>();
        QColor wash = glow->property("color").value<QColor>();
        QVERIFY(wash.alphaF() > 0.05 && wash.alphaF() < 0.2);
        wash.setAlpha(255);
        QCOMPARE(wash, color);
        w.set("isPointedOut", false);
        QVERIFY(!isDrawn(glow));
    }

    // Two lights, one upon the other, would be too light for the texts.
    void aTickedRowGlowsAtItsEdgeAlone()
    {
        const Row w;
        w.set("isPointedOut", true);
        w.set("glow", 1);
        w.set("isCheckmarked", true);
        QVERIFY(w.item(u"rowGlow"_s)->property("color").value<QColor>().alpha() > 0);
        w.set("isSelectionMode", true);
        QVERIFY(isDrawn(w.item(u"rowGlow"_s)));
        QCOMPARE(w.item(u"rowGlow"_s)->property("color").value<QColor>().alpha(), 0);
    }

    void beingPointedOutIsSpokenToNobody()
    {
        const Row w;
        const QString spoken = w.row()->property("spokenText").toString();
        w.set("isPointedOut", true);
        w.set("glow", 1);
        QCOMPARE(w.row()->property("spokenText").toString(), spoken);
    }
};

QTEST_MAIN(TestNoteRow)
#include "tst_note_row.moc"
