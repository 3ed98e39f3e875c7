#include "tests/Patience.h"
#include "tests/views/CommandedWindow.h"
#include "tests/views/Reachable.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QPointer>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
struct Informed : CommandedWindow {
    explicit Informed(AppLanguage language = AppLanguage::en)
        : CommandedWindow(u"Milk"_s, QSize(1100, 700), language)
    {
    }

    /// The window by its object name, shown and drawn.
    QQuickWindow *show(const QString &command, const QString &name)
    {
        commands().run(command);
        QQuickWindow *shown = window(name);
        if (!shown || !QTest::qWaitForWindowActive(shown, longEnough))
            qFatal("%s does not come up", qPrintable(name));
        pictureOf(shown);
        return shown;
    }
    QQuickWindow *showShortcuts() { return show(u"showShortcuts"_s, u"shortcutsWindow"_s); }
    QQuickWindow *showAbout() { return show(u"about"_s, u"aboutWindow"_s); }
};

/// What is cut off or sticks out of its window.
QStringList faultsIn(QQuickWindow *window)
{
    QStringList faults;
    const QRectF room(QPointF(0, 0), QSizeF(window->size()));
    visitItems(window->contentItem(), [&](QQuickItem *item) {
        if (!item->inherits("QQuickText") || !isDrawn(item))
            return;
        const QString text = item->property("text").toString();
        if (item->property("truncated").toBool())
            faults << u"cut off: "_s + text;
        if (item->property("contentWidth").toReal() > item->width() + 1)
            faults << u"wider than its place: "_s + text;
        if (!room.contains(frameOf(item)))
            faults << u"outside its window: "_s + text;
    });
    return faults;
}

int windowsCalled(const QString &name)
{
    int count = 0;
    for (const QWindow *window : QGuiApplication::allWindows()) {
        if (window->objectName() == name && window->isVisible())
            ++count;
    }
    return count;
}
} // namespace

/// The windows that tell something about the program.
class TestInfoWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    // What this display cannot do is none of the program's business.
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    }

    void everyKeyIsShownAndNothingIsCut_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::newRow("pl") << AppLanguage::pl;
        QTest::newRow("en") << AppLanguage::en;
    }
    void everyKeyIsShownAndNothingIsCut()
    {
        QFETCH(AppLanguage, language);
        Informed w(language);
        QQuickWindow *page = w.showShortcuts();
        QCOMPARE(faultsIn(page), QStringList());
        const QStringList shown = textsIn(page->contentItem());
        QVERIFY(shown.contains(language == AppLanguage::pl ? u"Skróty klawiszowe"_s
                                                           : u"Keyboard shortcuts"_s));
        for (const Command &command : w.commands().commands()) {
            if (command.keys.isEmpty())
                continue;
            QVERIFY2(shown.contains(command.title.current()), qPrintable(command.id));
            for (const QKeySequence &key : command.keys)
                QVERIFY2(shown.contains(key.toString(QKeySequence::NativeText)),
                         qPrintable(key.toString()));
        }
    }

    void thePageSpeaksTheNewLanguage()
    {
        Informed w;
        QQuickWindow *page = w.showShortcuts();
        w.commands().run(u"polish"_s);
        pictureOf(page);
        QVERIFY(textsIn(page->contentItem()).contains(u"Nowa notatka"_s));
        QVERIFY(!textsIn(page->contentItem()).contains(u"New note"_s));
        QCOMPARE(faultsIn(page), QStringList());
    }

    void bothKeysOpenThePageOnce_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("F1") << Qt::Key_F1 << Qt::KeyboardModifiers();
        QTest::newRow("Ctrl+?") << Qt::Key_Question << Qt::KeyboardModifiers(Qt::ControlModifier);
    }
    void bothKeysOpenThePageOnce()
    {
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        Informed w;
        const auto pressIt = [&](QWindow *window) { QTest::keyClick(window, key, modifiers); };
        pressIt(w.window());
        QTRY_COMPARE(windowsCalled(u"shortcutsWindow"_s), 1);
        QQuickWindow *page = w.window(u"shortcutsWindow"_s);
        QVERIFY(QTest::qWaitForWindowActive(page, longEnough));
        pressIt(page);
        w.window()->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(w.window(), longEnough));
        pressIt(w.window());
        QVERIFY(QTest::qWaitForWindowActive(page, longEnough)); // the same one, in front again
        QCOMPARE(windowsCalled(u"shortcutsWindow"_s), 1);
    }

    void keysAndButtonClose_data()
    {
        QTest::addColumn<QString>("window");
        QTest::addColumn<QString>("way");
        for (const QString &window : {u"about"_s, u"showShortcuts"_s}) {
            for (const QString &way : {u"Esc"_s, u"Ctrl+W"_s, u"button"_s})
                QTest::addRow("%s, %s", qPrintable(window), qPrintable(way)) << window << way;
        }
    }
    void keysAndButtonClose()
    {
        QFETCH(QString, window);
        QFETCH(QString, way);
        Informed w;
        QPointer<QQuickWindow> shown = window == "about"_L1 ? w.showAbout() : w.showShortcuts();
        if (way == "Esc"_L1)
            press(shown, Qt::Key_Escape);
        else if (way == "button"_L1)
            click(itemIn(shown, u"closeInfo"_s));
        else
            press(shown, Qt::Key_W, Qt::ControlModifier);
        QTRY_VERIFY(!shown); // and it costs nothing any more
        QVERIFY(w.window()->isVisible());
        // It can be opened again.
        QVERIFY(window == "about"_L1 ? w.showAbout() : w.showShortcuts());
    }

    void thePageScrollsWhereItIsLow()
    {
        Informed w(AppLanguage::pl);
        QQuickWindow *page = w.showShortcuts();
        page->resize(page->width(), 300);
        pictureOf(page);
        QQuickItem *flickable = page->activeFocusItem();
        QVERIFY(flickable && flickable->inherits("QQuickFlickable"));
        for (int i = 0; i < 50; ++i)
            press(page, Qt::Key_Down);
        const qreal end = flickable->property("contentHeight").toReal() - flickable->height();
        QVERIFY(end > 0);
        QCOMPARE(flickable->property("contentY").toReal(), end);
        for (int i = 0; i < 50; ++i)
            press(page, Qt::Key_Up);
        QCOMPARE(flickable->property("contentY").toReal(), 0.0);
    }

    void aboutTellsVersionAndFolder_data() { everyKeyIsShownAndNothingIsCut_data(); }
    void aboutTellsVersionAndFolder()
    {
        QFETCH(AppLanguage, language);
        QCoreApplication::setApplicationVersion(u"12.34"_s);
        Informed w(language);
        QQuickWindow *about = w.showAbout();
        const QString shown = textsIn(about->contentItem()).join(u'\n');
        QVERIFY2(
            shown.contains(language == AppLanguage::pl ? u"Wersja 12.34"_s : u"Version 12.34"_s),
            qPrintable(shown));
        QVERIFY2(shown.contains(w.home.data()), qPrintable(shown));
        QCOMPARE(faultsIn(about), QStringList());
    }

    void aboutTellsTheLicencesOfWhatIsInside()
    {
        Informed w;
        const QString shown = textsIn(w.showAbout()->contentItem()).join(u'\n');
        const QString qt = u"Qt "_s + QString::fromLatin1(qVersion());
        for (const QString &part :
             {u"Plim"_s, qt, u"Qt WebEngine (Chromium)"_s, u"Qt PDF (PDFium)"_s, u"Outfit"_s,
              u"Bootstrap Icons"_s, u"Gumbo"_s, u"MD4C"_s, u"XCB"_s})
            QVERIFY2(shown.contains(part + u" — "_s), qPrintable(part));
    }

    void theFolderIsOpened()
    {
        Informed w;
        QQuickWindow *about = w.showAbout();
        QDesktopServices::setUrlHandler(u"file"_s, this, "remember");
        m_opened.clear();
        click(itemIn(about, u"openFolder"_s));
        press(about, Qt::Key_Space); // it has the keyboard
        QDesktopServices::unsetUrlHandler(u"file"_s);
        const QUrl folder = QUrl::fromLocalFile(w.home.data());
        QCOMPARE(m_opened, (QList<QUrl>{folder, folder}));
    }

    void theyLieOverTheMiddleOfTheMainWindow()
    {
        Informed w;
        const QQuickWindow *about = w.showAbout();
        const QPoint off = about->geometry().center() - w.window()->geometry().center();
        QVERIFY2(off.manhattanLength() <= 2, qPrintable(QDebug::toString(off)));
    }

    void everythingHasAName()
    {
        QAccessible::setActive(true);
        Informed w;
        for (QQuickWindow *window : {w.showAbout(), w.showShortcuts()}) {
            QCOMPARE(namelessIn(window), QStringList());
            QVERIFY(namesIn(window, QAccessible::Button).contains(u"Close"_s));
        }
        QVERIFY(namesIn(w.window(u"shortcutsWindow"_s), QAccessible::StaticText)
                    .contains(u"New note: Ctrl+N"_s));
    }

public Q_SLOTS:
    void remember(const QUrl &url) { m_opened << url; }

private:
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestInfoWindows)
#include "tst_info_windows.moc"
