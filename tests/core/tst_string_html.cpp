#include "core/String+HTML.h"

#include "tests/core/Duration.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestStringHTML : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fastStripping_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << u""_s << u""_s;
        QTest::newRow("the spaces of tags stay at the ends")
            << u"<h1>Tea</h1><div>milk&nbsp;&amp;&nbsp;sugar</div>"_s << u" Tea milk & sugar "_s;
        QTest::newRow("the eight references")
            << u"a&nbsp;b&#160;c&amp;&lt;&gt;&quot;&#39;&apos;"_s << u"a b c&<>\"''"_s;
        QTest::newRow("amp before lt") << u"&amp;lt;"_s << u"<"_s;
        QTest::newRow("references are case-sensitive") << u"&NBSP;&LT;"_s << u"&NBSP;&LT;"_s;
        QTest::newRow("other names stay") << u"&copy;"_s << u"&copy;"_s;
        QTest::newRow("numbers") << u"&#65;&#x42;"_s << u"AB"_s;
        QTest::newRow("a number behind amp") << u"&amp;#65;"_s << u"A"_s;
        QTest::newRow("runs of spaces are halved") << u"a    b   c"_s << u"a  b  c"_s;
        QTest::newRow("line breaks stay") << u"a\nb"_s << u"a\nb"_s;
        QTest::newRow("no tag without content") << u"<>x"_s << u"<>x"_s;
        QTest::newRow("a tag takes everything to its end") << u"1 << 2 <b> 3"_s << u"1  3"_s;
        QTest::newRow("an unfinished tag stays") << u"<p>a<b"_s << u" a<b"_s;
        QTest::newRow("half a surrogate pair hides no tag")
            << u"<p>a"_s + QChar(0xD83D) + u"</p>"_s
            << u" a"_s + QChar(QChar::ReplacementCharacter) + u" "_s;
    }
    void fastStripping()
    {
        QFETCH(QString, html);
        QTEST(fastStrippingHTML(html), "text");
    }

    void numericEntities_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("decoded");
        QTest::newRow("both bases") << u"&#65;&#x42;"_s << u"AB"_s;
        QTest::newRow("behind the last character") << u"&#1114112;"_s << u"&#1114112;"_s;
        QTest::newRow("the last character") << u"&#x10FFFF;"_s << u"\U0010FFFF"_s;
        QTest::newRow("a surrogate") << u"&#xD800;&#57343;"_s << u"&#xD800;&#57343;"_s;
        QTest::newRow("beyond the plane") << u"&#128512;"_s << u"\U0001F600"_s;
        QTest::newRow("leading zeros") << u"&#0000000000000000000000065;"_s << u"A"_s;
        QTest::newRow("more than an integer")
            << u"&#99999999999999999999999;"_s << u"&#99999999999999999999999;"_s;
        QTest::newRow("between others") << u"x&#1114112;y&#65;z"_s << u"x&#1114112;yAz"_s;
        QTest::newRow("unfinished") << u"&#65 &#; &#x; &#xg;"_s << u"&#65 &#; &#x; &#xg;"_s;
        QTest::newRow("hexadecimal from decimal") << u"&#38;#x41;"_s << u"A"_s;
        QTest::newRow("decimal from hexadecimal") << u"&#x26;#65;"_s << u"&#65;"_s;
        QTest::newRow("capital X") << u"&#X41;"_s << u"&#X41;"_s;
    }
    void numericEntities()
    {
        QFETCH(QString, text);
        QTEST(decodeNumericEntities(text), "decoded");
    }

    void patterns()
    {
        const QRegularExpressionMatch match = h1Regex().match(u"x<H1 class=x>A\nB</H1>"_s);
        QVERIFY(match.hasMatch());
        QCOMPARE(match.captured(1), u"A\nB"_s);
        QCOMPARE(h1FullRegex().match(u"x<H1 class=x>A\nB</H1><h1>C</h1>"_s).captured(),
                 u"<H1 class=x>A\nB</H1>"_s);
        QCOMPARE(tagRegex().match(u"a<b c>d"_s).captured(), u"<b c>"_s);
        QCOMPARE(&tagRegex(), &tagRegex());
    }

    void firstHeading_data()
    {
        QTest::addColumn<QString>("html");
        QTest::newRow("none") << u"<div>a</div>"_s;
        QTest::newRow("plain") << u"a<h1>b</h1>c<h1>d</h1>"_s;
        QTest::newRow("lines and letters") << u"x<H1 class=x>A\nB</H1>"_s;
        QTest::newRow("unclosed before closed") << u"<h1>a<h1 b>c</h1>"_s;
        QTest::newRow("unclosed") << u"<h1>a"_s;
        QTest::newRow("unfinished start") << u"<h1 <p>a</h1>"_s;
        QTest::newRow("unfinished end") << u"<h1>a</h1"_s;
        QTest::newRow("an end before its start") << u"</h1><h1>a"_s;
        QTest::newRow("an end in its start") << u"<h1 </h1>a</H1>"_s;
        QTest::newRow("capitals at the end") << u"<h1>a</H1>b</h1>"_s;
        QTest::newRow("empty") << u"<h1></h1>"_s;
        QTest::newRow("longer name") << u"<h10>a</h1>"_s;
    }
    void firstHeading()
    {
        QFETCH(QString, html);
        const QRegularExpressionMatch full = h1FullRegex().match(html);
        const std::optional<FirstHeading> heading = ::firstHeading(html);
        QCOMPARE(heading.has_value(), full.hasMatch());
        if (!heading)
            return;
        QCOMPARE(heading->start, full.capturedStart());
        QCOMPARE(heading->length, full.capturedLength());
        QCOMPARE(heading->innerHTML.toString(), h1Regex().match(html).captured(1));
    }

    void headingBehindHalfASurrogatePair()
    {
        const QString html = QChar(0xDC00) + u"<h1>a</h1>"_s;
        const std::optional<FirstHeading> heading = ::firstHeading(html);
        QVERIFY(heading);
        QCOMPARE(heading->innerHTML.toString(), u"a"_s);
    }

    void headingOfManyMegabytes()
    {
        const QString inner(8'000'000, u'x');
        const QString html = u"<h1>"_s + inner + u"</h1>"_s;
        const std::optional<FirstHeading> heading = ::firstHeading(html);
        QVERIFY(heading);
        QCOMPARE(heading->innerHTML.size(), inner.size());
    }

    void slowStripping_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << u""_s << u""_s;
        QTest::newRow("blocks are lines") << u"<div>a</div><div>b</div>"_s << u"a\nb"_s;
        QTest::newRow("br is a line") << u"<div>a<br>b</div>"_s << u"a\nb"_s;
        QTest::newRow("items are lines") << u"<ul><li>a</li><li>b</li></ul>"_s << u"a\nb"_s;
        QTest::newRow("inline tags are nothing") << u"<p>a<b>b</b>c</p>"_s << u"abc"_s;
        QTest::newRow("every reference")
            << u"<p>&copy;&amp;&lt;&#65;&#x42;&hellip;&nbsp;z</p>"_s << u"©&<AB… z"_s;
        QTest::newRow("a picture is nothing")
            << u"<p>a<img src=\"file:///nowhere.png\">b</p>"_s << u"ab"_s;
        QTest::newRow("NUL is nothing") << u"<p>a"_s + QChar(QChar::Null) + u"b</p>"_s << u"ab"_s;
        QTest::newRow("Polish") << u"<p>zażółć</p>"_s << u"zażółć"_s;
        const QString broken = u"<p>"_s + QChar(0xD800) + u"</p>"_s;
        QTest::newRow("what is no text stays") << broken << broken;
    }
    void slowStripping()
    {
        QFETCH(QString, html);
        QTEST(slowStrippingHTML(html), "text");
    }

    void replaceEach_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("replaced");
        QTest::newRow("none") << u"abc"_s << u"abc"_s;
        QTest::newRow("everything") << u"xyxy"_s << u"--"_s;
        QTest::newRow("between") << u"axybxyc"_s << u"a-b-c"_s;
    }
    void replaceEach()
    {
        QFETCH(QString, text);
        const QString original = text;
        const QString shared = text;
        ::replaceEach(text, "xy"_L1, u'-');
        QTEST(text, "replaced");
        QCOMPARE(shared, original);
    }

    void fastConversionIsLinear_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::newRow("open tags") << u"<"_s;
        QTest::newRow("tags") << u"<b>"_s;
        QTest::newRow("references") << u"&amp;"_s;
        QTest::newRow("numbers") << u"&#65;"_s;
        QTest::newRow("unfinished numbers") << u"&#6"_s;
        QTest::newRow("digits") << u"6"_s;
        QTest::newRow("spaces") << u" "_s;
        QTest::newRow("headings") << u"<h1>"_s;
        QTest::newRow("unfinished headings") << u"<h1 "_s;
        QTest::newRow("half surrogate pairs") << QString(QChar(0xD800)) + u"<b>"_s;
    }
    void fastConversionIsLinear()
    {
        QFETCH(QString, pattern);
        const double ratio = growth(
            [&](qsizetype size) {
                const QString html = u"&#"_s + pattern.repeated(size);
                QVERIFY(!fastStrippingHTML(html).isNull());
                (void)::firstHeading(html);
            },
            100'000);
        QVERIFY2(ratio < linearGrowthBound, qPrintable(QString::number(ratio)));
    }
};

QTEST_MAIN(TestStringHTML)
#include "tst_string_html.moc"
