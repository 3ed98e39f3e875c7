#include "editor/MergedHTML.h"

#include "tests/RandomSeed.h"
#include "tests/core/Duration.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestMergedHTML : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void merges_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("theirs");
        QTest::addColumn<QString>("mine");
        QTest::addColumn<QString>("merged");
        const auto row = [](const char *name, const char *base, const char *theirs,
                            const char *mine, const char *merged) {
            QTest::newRow(name) << QString::fromUtf8(base) << QString::fromUtf8(theirs)
                                << QString::fromUtf8(mine) << QString::fromUtf8(merged);
        };
        row("nothing changed", "<h1>a</h1>", "<h1>a</h1>", "<h1>a</h1>", "<h1>a</h1>");
        row("only mine", "<p>a</p>", "<p>a</p>", "<p>ab</p>", "<p>ab</p>");
        row("only theirs", "<p>a</p>", "<p>ab</p>", "<p>a</p>", "<p>ab</p>");
        row("the same", "<p>a</p>", "<p>ab</p>", "<p>ab</p>", "<p>ab</p>");
        row("from nothing", "", "a", "b", "ab");
        row("theirs before", "<h1>a</h1><p>b</p>", "<h1>a x</h1><p>b</p>", "<h1>a</h1><p>b y</p>",
            "<h1>a x</h1><p>b y</p>");
        row("mine before", "<h1>a</h1><p>b</p>", "<h1>a</h1><p>b y</p>", "<h1>a x</h1><p>b</p>",
            "<h1>a x</h1><p>b y</p>");
        row("at the same place", "<p>a</p>", "<p>a x</p>", "<p>a y</p>", "<p>a x y</p>");
        row("in one word", "<p>wo</p>", "<p>woX</p>", "<p>wor</p>", "<p>woXr</p>");
        row("on both sides of mine", "<p>a b c</p>", "<p>x a b c y</p>", "<p>a b z c</p>",
            "<p>x a b z c y</p>");
        row("new paragraphs", "<p>a</p>", "<p>a</p><p>x</p>", "<p>a</p><p>y</p>",
            "<p>a</p><p>x</p><p>y</p>");
        row("a paragraph and its words", "<p>a</p><p>b</p>", "<p>a</p>", "<p>a</p><p>b</p><p>c</p>",
            "<p>a</p><p>c</p>");
        row("bold and typed beside", "<p>a b</p>", "<p><b>a</b> b</p>", "<p>a bc</p>",
            "<p><b>a</b> bc</p>");
        row("bold and typed inside", "<p>abc</p>", "<p><b>abc</b></p>", "<p>abXc</p>",
            "<p><b>abXc</b></p>");
        row("two other words", "<p>a b c</p>", "<p>a X c</p>", "<p>a Y c</p>", "<p>a X Y c</p>");
        row("removed by one, changed by the other", "<p>a bcd e</p>", "<p>a e</p>",
            "<p>a bXd e</p>", "<p>a bXd e</p>");
        row("two tags for one", "<p>a</p>", "<h2>a</h2>", "<h3>a</h3>", "<h2>a</h2>");
        row("a tag is whole", "<p>a</p>", "<p id=\"x\">a</p>", "<p id=\"y\">a b</p>",
            "<p id=\"x\">a b</p>");
        row("a reference is whole", "<p>a</p>", "<p>a&amp;</p>", "<p>a&lt;</p>",
            "<p>a&amp;&lt;</p>");
        row("an ampersand is none", "<p>a &b</p>", "<p>a &b x</p>", "<p>y a &b</p>",
            "<p>y a &b x</p>");
        row("beyond the first plane", "<p>😀</p>", "<p>😀😁</p>", "<p>😀😂</p>", "<p>😀😁😂</p>");
        row("one cleaned up, the other typed", "<h1>a</h1><p style=\"s\">b</p>",
            "<h1>a</h1><p style=\"s\">b c</p>", "<h1>a</h1><p>b</p>", "<h1>a</h1><p>b c</p>");
    }
    void merges()
    {
        QFETCH(QString, base);
        QFETCH(QString, theirs);
        QFETCH(QString, mine);
        QTEST(mergedHTML(base, theirs, mine), "merged");
    }

    // Each side changes its copy at random; no word that either wrote may be missing, none that
    // both left alone may go or come twice.
    void noWordIsLostOrDoubled()
    {
        const quint32 seed = randomSeed();
        QRandomGenerator random(seed);
        for (int round = 0; round < 3'000; ++round) {
            QStringList base;
            for (int i = random.bounded(1, 12); i > 0; --i)
                base += u"w%1"_s.arg(base.size());
            QStringList texts[2] = {base, base};
            QStringList written;
            QStringList removed;
            for (int side = 0; side < 2; ++side) {
                for (int i = random.bounded(5); i > 0; --i) {
                    const qsizetype place = random.bounded(texts[side].size() + 1);
                    if (random.bounded(4) == 0 && place < texts[side].size()) {
                        const QString word = texts[side].takeAt(place);
                        if (!written.removeOne(word))
                            removed += word;
                    } else {
                        written += u"%1%2"_s.arg(QChar(u"xy"[side]))
                                       .arg(written.size() + qsizetype(100) * i);
                        texts[side].insert(place, written.last());
                    }
                }
            }
            const auto html = [](const QStringList &words) {
                return u"<p>"_s + words.join(u' ') + u"</p>"_s;
            };
            const QString merged = mergedHTML(html(base), html(texts[0]), html(texts[1]));
            const auto tell = [&] {
                return qPrintable(u"seed %1: %2 | %3 | %4 -> %5"_s.arg(seed).arg(
                    html(base), html(texts[0]), html(texts[1]), merged));
            };
            // Words may touch where both wrote at one place; they are never torn.
            for (const QString &word : written)
                QVERIFY2(merged.count(word) == 1, tell());
            for (const QString &word : base) {
                if (!removed.contains(word))
                    QVERIFY2(merged.contains(word), tell());
            }
        }
    }

    void mergingIsQuickEvenForStrangers()
    {
        const QString base = u"<p>a b c</p>"_s.repeated(20'000);
        const QString theirs = u"<h2>other words</h2>"_s.repeated(20'000);
        const QString mine = base + u"<p>new</p>"_s;
        const double nanoseconds = bestDuration([&] {
            const QString merged = mergedHTML(base, theirs, mine);
            QVERIFY(merged.contains(u"other words"_s));
            QVERIFY(merged.contains(u"new"_s));
        });
        QVERIFY2(nanoseconds < 2e9 * slowness, qPrintable(QString::number(nanoseconds)));
    }
};

QTEST_GUILESS_MAIN(TestMergedHTML)
#include "tst_merged_html.moc"
