#include "editor/RichTextEditorCoordinator.h"
#include "shell/HelpTip.h"
#include "shell/L10n.h"
#include "tests/Patience.h"
#include "tests/page/PageFixture.h"
#include "tests/views/StickyNotes.h"

#include <QQmlComponent>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QStringList controlNames{u"sticky.color"_s, u"sticky.pin"_s, u"sticky.fold"_s,
                               u"sticky.close"_s};

QStringList helpTexts(const QQuickWindow *window)
{
    QStringList texts;
    for (const QString &name : controlNames)
        texts << itemIn(window, name)->property("helpText").toString();
    return texts;
}

QString drawnTitle(const QQuickWindow *window)
{
    const QQuickItem *title = itemIn(window, u"stickyTitle"_s);
    return isDrawn(title) ? title->property("text").toString() : QString();
}

QQuickItem *controlsIn(const QQuickWindow *window)
{
    return itemIn(window, u"sticky.fold"_s)->parentItem();
}

QRectF cardOf(const QQuickWindow *window)
{
    return frameOf(itemIn(window, u"stickyNoteView"_s));
}

/// Where the title's glyphs are, and not merely the room that they have.
QRectF inkOf(const QQuickItem *title)
{
    return title->mapRectToScene(
        QRectF(QPointF(0, 0), QSizeF(title->property("contentWidth").toReal(),
                                     title->property("contentHeight").toReal())));
}

/// A sticky window on a desktop that keeps none above the others.
struct Unpinnable : StickyNotes {
    Unpinnable() : unpinnable(id(), NoteTextSize::medium, store, manager, false)
    {
        QQmlComponent component(&engine, QUrl(u"qrc:/qt/qml/Plim/Sticky/StickyNoteWindow.qml"_s));
        shown.reset(qobject_cast<QQuickWindow *>(component.createWithInitialProperties(
            {{u"note"_s, QVariant::fromValue(&unpinnable)}})));
        if (!shown)
            qFatal("%s", qPrintable(component.errorString()));
        shown->show();
        shown->requestActivate();
        if (!QTest::qWaitForWindowActive(shown.get(), longEnough))
            qFatal("The sticky window does not come up");
        pictureOf(shown.get());
    }

    StickyNoteController unpinnable;
    std::unique_ptr<QQuickWindow> shown;
};
} // namespace

// What a sticky window shows: its controls and what they say, its title, its two forms.
class TestStickyView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { failOnWarnings(); }
    void cleanup() { setMoving(false); }

    // What the controls say

    void everyControlSaysWhatItDoes_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::addColumn<bool>("isCollapsed");
        QTest::addColumn<bool>("isPinned");
        QTest::addColumn<QStringList>("texts");
        const auto pl = AppLanguage::pl;
        const auto en = AppLanguage::en;
        QTest::newRow("en") << en << false << false
                            << QStringList{u"Note color"_s, u"Pin on top"_s, u"Collapse note"_s,
                                           u"Close"_s};
        QTest::newRow("en, collapsed")
            << en << true << false
            << QStringList{u"Note color"_s, u"Pin on top"_s, u"Expand note"_s, u"Close"_s};
        QTest::newRow("en, pinned")
            << en << false << true
            << QStringList{u"Note color"_s, u"Unpin"_s, u"Collapse note"_s, u"Close"_s};
        QTest::newRow("pl") << pl << false << false
                            << QStringList{u"Kolor notatki"_s, u"Przypnij na górze"_s,
                                           u"Zwiń notatkę"_s, u"Zamknij"_s};
        QTest::newRow("pl, collapsed") << pl << true << false
                                       << QStringList{u"Kolor notatki"_s, u"Przypnij na górze"_s,
                                                      u"Rozwiń notatkę"_s, u"Zamknij"_s};
        QTest::newRow("pl, pinned")
            << pl << true << true
            << QStringList{u"Kolor notatki"_s, u"Odepnij"_s, u"Rozwiń notatkę"_s, u"Zamknij"_s};
    }
    void everyControlSaysWhatItDoes()
    {
        QFETCH(AppLanguage, language);
        QFETCH(bool, isCollapsed);
        QFETCH(bool, isPinned);
        StickyNotes s(u"Tea"_s, language);
        const QQuickWindow *window = s.open();
        if (isCollapsed)
            s.fold();
        if (isPinned)
            click(s.item(u"sticky.pin"_s));
        QTEST(helpTexts(window), "texts");
        for (const QString &name : controlNames)
            QVERIFY2(isDrawn(s.item(name)), qPrintable(name));
    }

    void anotherLanguageIsSpokenAtOnce()
    {
        StickyNotes s(u"Tea Milk"_s);
        s.open(0);
        s.open(1);
        s.fold(1);
        const QStringList before = helpTexts(s.window(0)) + helpTexts(s.window(1));
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        const QStringList after = helpTexts(s.window(0)) + helpTexts(s.window(1));
        for (qsizetype i = 0; i < before.size(); ++i)
            QVERIFY2(before[i] != after[i], qPrintable(before[i]));
        QCOMPARE(after.constFirst(), u"Kolor notatki"_s);
    }

    void aTipThatIsShownChangesItsLanguage()
    {
        StickyNotes s;
        s.open();
        hover(s.item(u"sticky.fold"_s));
        QTRY_VERIFY(HelpTip::shared().isShown());
        QCOMPARE(HelpTip::shared().text(), u"Collapse note"_s);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QVERIFY(HelpTip::shared().isShown());
        QCOMPARE(HelpTip::shared().text(), u"Zwiń notatkę"_s);
    }

    void aTipThatIsShownFollowsThePin()
    {
        StickyNotes s;
        s.open();
        hover(s.item(u"sticky.pin"_s));
        QTRY_VERIFY(HelpTip::shared().isShown());
        QCOMPARE(HelpTip::shared().text(), u"Pin on top"_s);
        s.controller().togglePin();
        QCOMPARE(HelpTip::shared().text(), u"Unpin"_s);
    }

    // The title

    void aCapsuleShowsItsNotesTitle()
    {
        StickyNotes s;
        const QQuickWindow *window = s.open();
        QCOMPARE(drawnTitle(window), QString());
        s.fold();
        QCOMPARE(drawnTitle(window), u"Tea"_s);
        s.controller().applyEdit(s.id(), u"<h1>Green &lt;b&gt;tea&lt;/b&gt;</h1>"_s);
        QCOMPARE(drawnTitle(window), u"Green <b>tea</b>"_s);
        QCOMPARE(s.item(u"stickyTitle"_s)->property("textFormat").toInt(), int(Qt::PlainText));
    }

    void aNoteWithoutTitleSaysSoInTheLanguageOfTheMoment()
    {
        StickyNotes s(NoteArray({Note::fresh({1})}), AppLanguage::pl);
        const QQuickWindow *window = s.open();
        s.fold();
        QCOMPARE(drawnTitle(window), u"Bez tytułu"_s);
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QCOMPARE(drawnTitle(window), u"Untitled"_s);
    }

    void titleAndControlsStayClearOfEachOther_data();
    void titleAndControlsStayClearOfEachOther();

    // The controls come and go

    void controlsAreThereForThePointerAndForTheKeyboard()
    {
        StickyNotes s;
        const QQuickWindow *window = s.open();
        const QQuickItem *controls = controlsIn(window);
        QTRY_COMPARE(controls->opacity(), 1.0); // it has the keyboard
        s.leave();
        QTRY_COMPARE(controls->opacity(), 0.0);
        QTest::mouseMove(s.window(), cardOf(window).center().toPoint());
        QTRY_COMPARE(controls->opacity(), 1.0);
        QTest::mouseMove(s.window(), QPoint(1, 1)); // in the shadow
        QTRY_COMPARE(controls->opacity(), 0.0);
        s.window()->requestActivate();
        QTRY_COMPARE(controls->opacity(), 1.0);
    }

    void controlsStayWhilePointerOrKeyboardIsThere()
    {
        StickyNotes s;
        const QQuickWindow *window = s.open();
        hover(s.item(u"sticky.fold"_s));
        QTest::mouseMove(s.window(), QPoint(1, 1));
        QCOMPARE(controlsIn(window)->opacity(), 1.0); // the keyboard is still there
        hover(s.item(u"sticky.fold"_s));
        s.leave();
        QTest::mouseMove(s.window(), cardOf(window).center().toPoint());
        QTRY_COMPARE(controlsIn(window)->opacity(), 1.0); // the pointer is back
    }

    void controlsFadeInAndOut()
    {
        setMoving(true);
        StickyNotes s;
        const QQuickWindow *window = s.openPage();
        QQuickItem *controls = controlsIn(window);
        QTRY_COMPARE(controls->opacity(), 1.0);
        QSignalSpy steps(controls, &QQuickItem::opacityChanged);
        s.leave();
        QTRY_COMPARE(controls->opacity(), 0.0);
        QVERIFY2(steps.count() > 2, qPrintable(QString::number(steps.count())));
        steps.clear();
        QTest::mouseMove(s.window(), cardOf(window).center().toPoint());
        QTRY_COMPARE(controls->opacity(), 1.0);
        QVERIFY2(steps.count() > 2, qPrintable(QString::number(steps.count())));
    }

    void theTitleGetsTheRoomThatControlsLeave()
    {
        StickyNotes s(u"Tea"_s);
        const QQuickWindow *window = s.open();
        s.fold();
        const QQuickItem *title = s.item(u"stickyTitle"_s);
        const qreal narrow = title->width();
        s.leave();
        QTRY_VERIFY(title->width() > narrow + controlsIn(window)->width() / 2);
        QVERIFY(frameOf(title).right() <= cardOf(window).right());
    }

    // The forms

    void aLowWindowShowsTitleAndControls_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::addColumn<QString>("text");
        QTest::newRow("pl") << AppLanguage::pl << u"Rozwiń notatkę"_s;
        QTest::newRow("en") << AppLanguage::en << u"Expand note"_s;
    }
    void aLowWindowShowsTitleAndControls()
    {
        QFETCH(AppLanguage, language);
        StickyNotes s(u"Tea"_s, language);
        const QQuickWindow *window = s.open(0, StickyFrame{400, 800, 300, 56});
        QVERIFY(!s.controller().isCollapsed());
        QCOMPARE(drawnTitle(window), u"Tea"_s);
        QVERIFY(!isDrawn(s.item(u"editor"_s)));
        for (const QString &name : controlNames)
            QVERIFY2(cardOf(window).contains(frameOf(s.item(name))), qPrintable(name));
        QTEST(s.item(u"sticky.fold"_s)->property("helpText").toString(), "text");
        click(s.item(u"sticky.fold"_s));
        QCOMPARE(s.host().frame().height(), StickyNotes::noteHeight);
        QTRY_COMPARE(window->height(), StickyNotes::noteHeight + 2 * StickyNotes::shadow);
        QVERIFY(isDrawn(s.item(u"editor"_s)));
        QCOMPARE(drawnTitle(window), QString());
    }

    void theFoldButtonFoldsAndUnfolds()
    {
        StickyNotes s;
        const QQuickWindow *window = s.open();
        const QRect before = s.host().frame();
        click(s.item(u"sticky.fold"_s));
        QTRY_COMPARE(window->height(), StickyNotes::capsuleHeight + 2 * StickyNotes::shadow);
        QCOMPARE(s.host().frame().topLeft(), before.topLeft());
        QVERIFY(!isDrawn(s.item(u"editor"_s)));
        click(s.item(u"sticky.fold"_s));
        QTRY_COMPARE(s.host().frame(), before);
        QVERIFY(isDrawn(s.item(u"editor"_s)));
    }

    void aDoubleClickOpensACapsuleAndNothingElse()
    {
        StickyNotes s;
        QQuickWindow *window = s.open();
        const QPoint free = cardOf(window).topLeft().toPoint() + QPoint(30, 20);
        const QRect before = s.host().frame();
        QTest::mouseDClick(window, Qt::LeftButton, {}, free);
        QCOMPARE(s.host().frame(), before);
        s.fold();
        QTest::mouseDClick(window, Qt::LeftButton, {}, free);
        QTRY_COMPARE(s.host().frame(), before);
    }

    // A page that grew out of next to nothing may have stayed blank.
    void expandingAllDrawsPagesAnewThatAreExpanded()
    {
        StickyNotes s;
        s.openPage();
        QQuickItem *page = s.item(u"editorWebView"_s);
        const QSizeF before = page->size();
        QSignalSpy widths(page, &QQuickItem::widthChanged);
        QSignalSpy asked(itemIn(s.window(), u"editor"_s)
                             ->property("coordinator")
                             .value<RichTextEditorCoordinator *>()
                             ->webView(),
                         &EditorWebView::layoutRequested);
        QElapsedTimer timer;
        timer.start();
        s.manager.expandAll();
        QCOMPARE(asked.count(), 0); // the window is still growing
        QTRY_COMPARE(asked.count(), 1);
        QVERIFY2(timer.elapsed() >= 50, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(widths.count(), 2); // there and back
        QCOMPARE(page->size(), before);
    }

    // Where windows cannot be pinned

    void aPinThatCanDoNothingSaysWhy()
    {
        const Unpinnable s;
        QQuickItem *pin = itemIn(s.shown.get(), u"sticky.pin"_s);
        QVERIFY(!pin->isEnabled());
        QVERIFY(pin->opacity() < 1);
        hover(pin);
        QTRY_VERIFY(isDrawn(pin));
        QTRY_VERIFY(HelpTip::shared().isShown());
        QCOMPARE(HelpTip::shared().text(), u"This desktop does not let windows be pinned"_s);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(HelpTip::shared().text(), u"Ten pulpit nie pozwala przypinać okien"_s);
        hover(itemIn(s.shown.get(), u"sticky.close"_s));
        QTRY_COMPARE(HelpTip::shared().text(), u"Zamknij"_s);
    }

    void whatCannotBePinnedIsNot()
    {
        const Unpinnable s;
        click(itemIn(s.shown.get(), u"sticky.pin"_s));
        press(s.shown.get(), Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(!s.unpinnable.isPinned());
    }
};

void TestStickyView::titleAndControlsStayClearOfEachOther_data()
{
    QTest::addColumn<AppLanguage>("language");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("title");
    const QList<std::pair<const char *, QString>> titles{
        {"none", QString()},
        {"short", u"Herbata"_s},
        {"long",
         u"Zażółć gęślą jaźń i pójdź po święconą wodę do źródła, gdzie ćwierkają żółtodzioby"_s},
        {"one word", QString(u'Ź').repeated(200)},
        {"RTL", u"רשימת קניות ארוכה מאוד לסוף השבוע הקרוב עם הרבה מאוד דברים שצריך לקנות"_s},
    };
    for (const AppLanguage language : {AppLanguage::pl, AppLanguage::en}) {
        for (const int width : {260, 300, 600}) {
            for (const auto &[name, title] : titles)
                QTest::addRow("%s, %d, %s", language == AppLanguage::pl ? "pl" : "en", width, name)
                    << language << width << title;
        }
    }
}

void TestStickyView::titleAndControlsStayClearOfEachOther()
{
    QFETCH(AppLanguage, language);
    QFETCH(int, width);
    QFETCH(QString, title);
    Note note = Note::fresh({1});
    note.body = u"<h1>"_s + title + u"</h1>"_s;
    StickyNotes s(NoteArray({note}), language);
    QQuickWindow *window = s.open(0, StickyFrame{400, 800, double(width), 56});
    s.controller().setCollapsed(true);
    QTRY_COMPARE(window->width(), width + 2 * StickyNotes::shadow);
    const QQuickItem *drawn = s.item(u"stickyTitle"_s);
    const QRectF card = cardOf(window);

    QTRY_COMPARE(controlsIn(window)->opacity(), 1.0);
    pictureOf(window);
    const QRectF controls = frameOf(controlsIn(window));
    QVERIFY(card.contains(controls));
    QVERIFY(drawn->width() > 0);
    QVERIFY2(frameOf(drawn).right() < controls.left(), "the room of the title");
    QVERIFY2(inkOf(drawn).right() <= controls.left(), "what is drawn of it");
    QVERIFY(inkOf(drawn).top() >= card.top() && inkOf(drawn).bottom() <= card.bottom());
    QVERIFY(qAbs(frameOf(drawn).center().y() - card.center().y()) <= 1);
    QVERIFY(qAbs(controls.center().y() - card.center().y()) <= 1);

    s.leave();
    QTRY_COMPARE(controlsIn(window)->opacity(), 0.0);
    pictureOf(window);
    QVERIFY(card.contains(frameOf(drawn)));
    QVERIFY(inkOf(drawn).right() <= card.right() - 12);
}

PLIM_PAGE_TEST_MAIN(TestStickyView)
#include "tst_sticky_view.moc"
