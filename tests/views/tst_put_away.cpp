#include "sticky/StickyNoteManager.h"
#include "sticky/WindowHolder.h"
#include "tests/Observation.h"
#include "tests/views/MainWindow.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <optional>

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
    /// The note's window is put away, and its row glows; a machine that stands still for as long as
    /// the glow lasts does not see it.
    [[nodiscard]] bool putAwayWithGlow(const QString &heading) const
    {
        putAway(heading);
        return QTest::qWaitFor([&] { return glowing() == heading; });
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
        QStringList glows;
        connect(itemIn(w.row(u"B"_s), u"rowGlow"_s), &QQuickItem::opacityChanged, this,
                [&] { glows << w.glowing(); });
        w.putAway(u"B"_s);
        QTRY_COMPARE(glows, (QStringList{u"B"_s, QString()}));
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
        QTRY_VERIFY(!strengths.isEmpty() && strengths.constLast() == 0);
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
        QTRY_COMPARE(strengths, (QList<qreal>{1, 0}));
    }

    void aRowOutOfSightIsBroughtIntoIt()
    {
        std::optional<Held> w;
        QVERIFY(isSeenOnce([&w] {
            w.emplace(numbered(80));
            return !w->drawnRows().split(u' ').contains(u"N60"_s) && w->putAwayWithGlow(u"N60"_s);
        }));
        QVERIFY(frameOf(w->item(u"noteList"_s)).contains(frameOf(w->row(u"N60"_s))));
    }

    // A row that leaves the list's sight is soon another note's.
    void theGlowStaysWithItsNote()
    {
        std::optional<Held> w;
        QVERIFY(isSeenOnce([&w] {
            w.emplace(numbered(80));
            return w->putAwayWithGlow(u"N1"_s);
        }));
        w->item(u"noteList"_s)->setProperty("contentY", 3000);
        QVERIFY(!w->drawnRows().split(u' ').contains(u"N1"_s));
        QCOMPARE(w->glowing(), QString());
    }

    void whoIsWritingIsNotDisturbed()
    {
        std::optional<Held> w;
        QVERIFY(isSeenOnce([&w] {
            w.emplace(numbered(80));
            click(w->item(u"searchField"_s));
            return w->putAwayWithGlow(u"N60"_s);
        }));
        QCOMPARE(w->focusedName(), u"searchField"_s);
        QCOMPARE(w->item(u"noteList"_s)->property("currentIndex").toInt(), -1);
        QCOMPARE(w->openNote(), QString());
    }
};

QTEST_MAIN(TestPutAway)
#include "tst_put_away.moc"
