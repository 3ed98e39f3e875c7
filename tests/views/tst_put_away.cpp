#include "sticky/StickyNoteManager.h"
#include "sticky/WindowHolder.h"
#include "tests/views/MainWindow.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
QString numbered(int count)
{
    QStringList words;
    for (int i = 0; i < count; ++i)
        words << u"N%1"_s.arg(i);
    return words.join(u' ');
}

/// The main window as the sticky windows know it.
struct Held : MainWindow {
    explicit Held(const QString &words) : MainWindow(words)
    {
        WindowHolder::shared().window = window();
        moveTo(window(), QPoint(800, 600));
    }
    ~Held() { WindowHolder::shared() = {}; }
    Q_DISABLE_COPY_MOVE(Held)

    void putAway(const QString &heading) const
    {
        Q_EMIT StickyNoteManager::shared().stickyPutAway(id(heading));
    }
    /// The headings of the rows that glow.
    [[nodiscard]] QString glowing() const
    {
        QStringList headings;
        visitItems(item(u"noteList"_s), [&](QQuickItem *item) {
            if (item->objectName() == u"rowGlow" && isDrawn(item))
                headings << item->parentItem()->parentItem()->property("titleText").toString();
        });
        return headings.join(u' ');
    }
};
} // namespace

/// The list shows where the first note went whose window was put away.
class TestPutAway : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        setMoving(false);
    }
    void cleanup() { setMoving(false); }

    void theRowGlowsForAMomentOnce()
    {
        const Held w(u"A B C"_s);
        QCOMPARE(w.glowing(), QString());
        w.putAway(u"B"_s);
        QTRY_COMPARE(w.glowing(), u"B"_s);
        QTRY_COMPARE(w.glowing(), QString());
        w.putAway(u"B"_s);
        w.putAway(u"C"_s);
        QCOMPARE(w.glowing(), QString());
    }

    void itFadesInAndOut()
    {
        const Held w(u"A B C"_s);
        setMoving(true);
        QQuickItem *glow = itemIn(w.row(u"B"_s), u"rowGlow"_s);
        QList<qreal> strengths;
        connect(glow, &QQuickItem::opacityChanged, this, [&] { strengths << glow->opacity(); });
        QElapsedTimer time;
        time.start();
        w.putAway(u"B"_s);
        QTRY_COMPARE(w.glowing(), u"B"_s);
        QTRY_COMPARE(w.glowing(), QString());
        QVERIFY2(time.elapsed() > 1500, qPrintable(QString::number(time.elapsed())));
        const auto strongest = std::ranges::find(strengths, 1.0);
        QVERIFY(strongest != strengths.end());
        QVERIFY(std::ranges::is_sorted(strengths.begin(), strongest));
        QVERIFY(std::ranges::is_sorted(strongest, strengths.end(), std::greater()));
        QVERIFY(strengths.size() > 6);
    }

    void nothingMovesWhereThatIsNotWanted()
    {
        const Held w(u"A B C"_s);
        QQuickItem *glow = itemIn(w.row(u"B"_s), u"rowGlow"_s);
        QList<qreal> strengths;
        connect(glow, &QQuickItem::opacityChanged, this, [&] { strengths << glow->opacity(); });
        w.putAway(u"B"_s);
        QTRY_COMPARE(w.glowing(), u"B"_s);
        QTRY_COMPARE(w.glowing(), QString());
        QCOMPARE(strengths, (QList<qreal>{1, 0}));
    }

    void aRowOutOfSightIsBroughtIntoIt()
    {
        const Held w(numbered(80));
        QVERIFY(!w.drawnRows().split(u' ').contains(u"N60"_s));
        w.putAway(u"N60"_s);
        QTRY_COMPARE(w.glowing(), u"N60"_s);
        QVERIFY(frameOf(w.item(u"noteList"_s)).contains(frameOf(w.row(u"N60"_s))));
    }

    // A row that leaves the list's sight is soon another note's.
    void theGlowStaysWithItsNote()
    {
        const Held w(numbered(80));
        w.putAway(u"N1"_s);
        QTRY_COMPARE(w.glowing(), u"N1"_s);
        w.item(u"noteList"_s)->setProperty("contentY", 3000);
        QVERIFY(!w.drawnRows().split(u' ').contains(u"N1"_s));
        QCOMPARE(w.glowing(), QString());
    }

    void whoIsWritingIsNotDisturbed()
    {
        const Held w(numbered(80));
        click(w.item(u"searchField"_s));
        w.putAway(u"N60"_s);
        QTRY_COMPARE(w.glowing(), u"N60"_s);
        QCOMPARE(w.focusedName(), u"searchField"_s);
        QCOMPARE(w.item(u"noteList"_s)->property("currentIndex").toInt(), -1);
        QCOMPARE(w.openNote(), QString());
    }
};

QTEST_MAIN(TestPutAway)
#include "tst_put_away.moc"
