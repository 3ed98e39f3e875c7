#include "transfer/PlainMarkup.h"

#include "core/HtmlTokens.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestPlainMarkup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void markup_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("plain");
        const auto row = [](const char *name, const char16_t *html, const char16_t *plain) {
            QTest::newRow(name) << QString::fromUtf16(html) << QString::fromUtf16(plain);
        };
        row("words and tags", u"a &amp; <b c='d'>e</b> < f", u"a &amp; <b c='d'>e</b> < f");
        row("the kind of document", u"<!DOCTYPE html><p>a", u"<!DOCTYPE html><p>a");
        row("comments", u"a<!--<b>-->b<!c>d<?e>f", u"a<!---->b<!---->d<!---->f");
        row("a comment that does not end", u"a<!--<b>", u"a<!---->");
        row("a tag that does not end", u"a<b c=\"", u"a<!---->");
        row("a style", u"<style><b></style>a", u"<style>&lt;b></style>a");
        row("a field's text", u"<textarea><b>&amp;</textarea>a",
            u"<textarea>&lt;b>&amp;</textarea>a");
        row("text as it is", u"<xmp a><b>&amp;</xmp>a", u"<pre>&lt;b>&amp;amp;</pre>a");
        row("an empty title and a comment", u"<title></title><!--a-->", u"<title></title><!---->");
        row("a drawing", u"a<svg b><text>c</text><style><d></style></svg>e", u"a<!---->e");
        row("a drawing without content", u"a<svg/>e", u"a<!---->e");
        row("drawings within one another", u"a<svg><svg>b</svg>c</svg>d", u"a<!----><!---->d");
        row("a formula", u"a<MATH><mi>b</mi></MATH>c", u"a<!---->c");
        row("a drawing that does not end", u"a<svg><g><p>b<td>c", u"a<!----><p>b<td>c");
        row("a drawing that ends with a paragraph", u"a<svg><g></p>b", u"a<!----></p>b");
        row("HTML in a drawing", u"a<svg><foreignObject><p>b</p></foreignObject><desc/></svg>c",
            u"a<!---->c");
        row("HTML that does not end in a drawing", u"a<svg><desc><p>b</svg>c<p>d",
            u"a<!---->c<p>d");
        row("data in a drawing", u"<svg><![CDATA[><!--]]></svg>-->a</svg>b", u"<!---->b");
    }
    void markup()
    {
        QFETCH(QString, html);
        const QString plain = plainMarkup(html);
        QTEST(plain, "plain");
        QCOMPARE(plainMarkup(plain), plain);
    }

    void controlCharacters_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("without");
        const auto row = [](const char *name, const QString &text, const QString &without) {
            QTest::newRow(name) << text << without;
        };
        row("nothing", {}, {});
        row("words and white space", u"za\u017c\u00f3\u0142\u0107 \t\n\r\fa\u00a0b"_s,
            u"za\u017c\u00f3\u0142\u0107 \t\n\r\fa\u00a0b"_s);
        row("controls", QString(QChar(1)) + u"a\u007fb\u0085c\u009fd"_s + QChar(0), u"abcd"_s);
        row("no characters", u"a\ufdd0\ufdefb\ufffe\uffffc\ufffd"_s, u"abc\ufffd"_s);
        row("no characters beyond", u"a\U0001fffeb\U0010ffffc\U0001f600"_s, u"abc\U0001f600"_s);
        row("marks of the byte order", u"\ufeffa\ufeff\ufeffb"_s, u"ab"_s);
        row("half pairs", QString(QChar(0xd83f)) + u'a' + QChar(0xdfff),
            QString(QChar(0xd83f)) + u'a' + QChar(0xdfff));
    }
    void controlCharacters()
    {
        QFETCH(QString, text);
        QTEST(withoutControlCharacters(text), "without");
    }

    void fewAttributesStay()
    {
        QString tag = u"<p"_s;
        for (int i = 0; i < 64; ++i)
            tag += u" a%1='>'"_s.arg(i);
        QCOMPARE(plainMarkup(tag + u">b</p>"_s), tag + u">b</p>"_s);
        QCOMPARE(plainMarkup(tag + u" c d=e>b</p>"_s), tag + u">b</p>"_s);
        const QString endTag = u"</p"_s + tag.sliced(2);
        QCOMPARE(plainMarkup(endTag + u" c d=e>b"_s), endTag + u">b"_s);
    }
};

QTEST_APPLESS_MAIN(TestPlainMarkup)
#include "tst_plain_markup.moc"
