#include "mainwindow/MarkedText.h"

#include <QColor>
#include <QTest>
#include <QTextDocument>

using namespace Qt::StringLiterals;

class TestMarkedText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // In the table a hit stands in brackets for its markup.
    void hitsAreMarked_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("markup");
        QTest::newRow("no hit") << u"milk"_s << u"tea"_s << u""_s;
        QTest::newRow("no query") << u"milk"_s << u"  "_s << u""_s;
        QTest::newRow("no text") << u""_s << u"milk"_s << u""_s;
        QTest::newRow("everything") << u"Milk"_s << u"milk"_s << u"[Milk]"_s;
        QTest::newRow("several") << u"a milk B MILK c"_s << u" milk "_s << u"a [milk] B [MILK] c"_s;
        QTest::newRow("neighbours") << u"aaaa"_s << u"aa"_s << u"[aa][aa]"_s;
        QTest::newRow("an odd one stays") << u"aaa"_s << u"aa"_s << u"[aa]a"_s;
        QTest::newRow("markup around")
            << u"<b>milk</b> & tea"_s << u"milk"_s << u"&lt;b&gt;[milk]&lt;/b&gt; &amp; tea"_s;
        QTest::newRow("markup found") << u"a<b>c"_s << u"<B>"_s << u"a[&lt;b&gt;]c"_s;
        QTest::newRow("an ampersand") << u"Fish & chips"_s << u"&"_s << u"Fish [&amp;] chips"_s;
        QTest::newRow("no hit inside a reference") << u"a&b"_s << u"amp"_s << u""_s;
        QTest::newRow("letters of a reference") << u"a&b amp"_s << u"amp"_s << u"a&amp;b [amp]"_s;
        QTest::newRow("quotes") << u"say \"hi\""_s << u"hi"_s << u"say &quot;[hi]&quot;"_s;
        QTest::newRow("a pattern") << u"a.*b"_s << u".*"_s << u"a[.*]b"_s;
        QTest::newRow("emoji") << u"🎂🎁🎂"_s << u"🎁"_s << u"🎂[🎁]🎂"_s;
        QTest::newRow("behind emoji") << u"🎂🎂 Ab"_s << u"b"_s << u"🎂🎂 A[b]"_s;
        QTest::newRow("right to left") << u"אמר שלום"_s << u"שלום"_s << u"אמר [שלום]"_s;
        QTest::newRow("longer by capitals elsewhere") << u"ẞ łódź"_s << u"ŁÓDŹ"_s << u"ẞ [łódź]"_s;
        QTest::newRow("spaces are kept")
            << u"a   b  c"_s << u"c"_s << u"a&nbsp;&nbsp; b&nbsp; [c]"_s;
    }
    void hitsAreMarked()
    {
        QFETCH(QString, text);
        QFETCH(QString, typed);
        QFETCH(QString, markup);
        markup.replace(u'[', u"<font color=\"#ffd66b\"><b>"_s).replace(u']', u"</b></font>"_s);
        const QString marked = markedText(text, SearchQuery(typed), QColor(u"#ffd66b"_s));
        QCOMPARE(marked, markup);
        if (marked.isEmpty())
            return;
        QTextDocument document;
        document.setHtml(marked);
        QCOMPARE(document.toPlainText(), text);
    }

    void theColourIsTheGivenOne()
    {
        QCOMPARE(markedText(u"a"_s, SearchQuery(u"a"_s), QColor(Qt::red)),
                 u"<font color=\"#ff0000\"><b>a</b></font>"_s);
    }
};

QTEST_MAIN(TestMarkedText)
#include "tst_marked_text.moc"
