#include "tests/core/Duration.h"
#include "transfer/MarkdownReader.h"
#include "transfer/NoteBodyWriter.h"
#include "transfer/PlainTextReader.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
QString readBody(const QString &markdown)
{
    return noteBody(readMarkdown(markdown));
}

const QString box =
    u"<span class=\"chk\" contenteditable=\"false\" role=\"checkbox\" aria-checked=\"false\"></span>"_s;
const QString ticked = u"<span class=\"chk checked\" contenteditable=\"false\" role=\"checkbox\" "
                       "aria-checked=\"true\"></span>"_s;
} // namespace

class TestMarkdownReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void markdownAsNotes_data()
    {
        QTest::addColumn<QString>("markdown");
        QTest::addColumn<QString>("body");
        const auto row = [](const char *name, const QString &markdown, const QString &body) {
            QTest::newRow(name) << markdown << body;
        };
        row("headings", u"a\n=\n\nb\n-\n\n#### c\n"_s, u"<h1>a</h1><h2>b</h2><h3>c</h3>"_s);
        row("formats", u"__a__ *b* ~~c~~ ***d***"_s,
            u"<p><b>a</b> <i>b</i> <s>c</s> <b><i>d</i></b></p>"_s);
        row("lines", u"a\nb  \nc\\\nd"_s, u"<p>a b<br>c<br>d</p>"_s);
        row("lists", u"* a\n  1. b\n* c\n\n3) d"_s,
            u"<ul><li>a</li><ol><li>b</li></ol><li>c</li></ul><ol><li>d</li></ol>"_s);
        row("loose lists", u"- a\n\n- b\n\n  c"_s, u"<ul><li>a</li><li>b<br>c</li></ul>"_s);
        row("tasks", u"- [ ] a\n- [X] b\n"_s,
            u"<ul class=\"checklist\"><li>"_s + box + u"a</li><li class=\"checked\">"_s + ticked +
                u"b</li></ul>"_s);
        row("loose tasks", u"- [x] a\n\n- [ ] b\n"_s,
            u"<ul class=\"checklist\"><li class=\"checked\">"_s + ticked + u"a</li><li>"_s + box +
                u"b</li></ul>"_s);
        row("links", u"[a](https://x.org \"t\") <https://y.org> [b]\n\n[b]: https://z.org"_s,
            u"<p><a href=\"https://x.org\">a</a> <a href=\"https://y.org\">https://y.org</a> "
            "<a href=\"https://z.org\">b</a></p>"_s);
        row("bare links", u"see https://x.org/a(b). Or (www.y.org), or anna@z.org!"_s,
            u"<p>see <a href=\"https://x.org/a(b)\">https://x.org/a(b)</a>. Or (<a "
            "href=\"http://www.y.org\">www.y.org</a>), or <a "
            "href=\"mailto:anna@z.org\">anna@z.org</a>!</p>"_s);
        row("no links", u"http:// www. a@b `https://x.org` [https://y.org](https://z.org)"_s,
            u"<p>http:// www. a@b https://x.org <a href=\"https://z.org\">https://y.org</a></p>"_s);
        row("a link beside marks", u"[a](https://x.org)**_b_**"_s,
            u"<p><a href=\"https://x.org\">a</a><b><i>b</i></b></p>"_s);
        row("pictures", u"![a *b*](c%20d.png) ![](<e f.png>)"_s,
            u"<p><img src=\"c%20d.png\" alt=\"a b\"> <img src=\"e f.png\"></p>"_s);
        row("dividers", u"a\n\n***\n\nb"_s, u"<p>a</p><hr><p>b</p>"_s);
        row("quotes", u"> a\n> b\n>\n> > c"_s, u"<p>a b</p><p>c</p>"_s);
        row("code", u"```cpp\nif (a < b)\n\n    c();\n```"_s,
            u"<p>if (a &lt; b)<br><br>&nbsp;&nbsp;&nbsp;&nbsp;c();</p>"_s);
        row("code that begins with an empty line", u"```\n\na\n```"_s, u"<p><br>a</p>"_s);
        row("inline code", u"a `<b>` c"_s, u"<p>a &lt;b&gt; c</p>"_s);
        row("tables", u"|a|b|\n|---|---|\n|c|*d*|"_s, u"<p>a b</p><p>c <i>d</i></p>"_s);
        row("references", u"&amp; &oacute; &#322; &lt;b>"_s, u"<p>&amp; ó ł &lt;b&gt;</p>"_s);
        row("underlined", u"<u>a *b*</u>"_s, u"<p><u>a <i>b</i></u></p>"_s);
        row("raw blocks", u"<div align=\"center\">\n\n# a\n\n</div>\n\n<ul><li>b</li></ul>"_s,
            u"<h1>a</h1><ul><li>b</li></ul>"_s);
        row("an empty heading", u"#\n\na"_s, u"<h1><br></h1><p>a</p>"_s);
        row("nothing", u"\n \n"_s, u""_s);
    }
    void markdownAsNotes()
    {
        QFETCH(QString, markdown);
        QTEST(readBody(markdown), "body");
    }

    void rawHtmlIsHarmless_data()
    {
        QTest::addColumn<QString>("markdown");
        QTest::addColumn<QString>("body");
        const auto row = [](const char *name, const QString &markdown, const QString &body) {
            QTest::newRow(name) << markdown << body;
        };
        row("a script", u"<script>\na()\n</script>\n\nb"_s, u"<p>b</p>"_s);
        row("a script that does not end", u"<script>\na()\n\nb"_s, u""_s);
        row("a handler", u"<b onclick=\"a()\">b</b>"_s, u"<p><b>b</b></p>"_s);
        row("a script address", u"[a](javascript:b()) <a href=\"javascript:c()\">d</a>"_s,
            u"<p>a d</p>"_s);
        row("words about a title", u"the <title> of *it*"_s, u"<p>the of <i>it</i></p>"_s);
        row("words about a text area", u"a <textarea> b\n\nc <plaintext> d\n\ne"_s,
            u"<p>a b</p><p>c d</p><p>e</p>"_s);
        row("a comment", u"a <!-- b --> c"_s, u"<p>a c</p>"_s);
        row("a frame", u"<iframe src=\"x\">a</iframe>"_s, u""_s);
        row("a style", u"<style>\np {}\n</style>\n\na"_s, u"<p>a</p>"_s);
        row("an end that was not begun", u"- a </li></ul> b\n- c"_s,
            u"<ul><li>a</li></ul><p>b</p><ul><li>c</li></ul>"_s);
    }
    void rawHtmlIsHarmless()
    {
        QFETCH(QString, markdown);
        QTEST(readBody(markdown), "body");
    }

    void deepNestingIsRead_data()
    {
        QTest::addColumn<QString>("markdown");
        QTest::newRow("quotes") << u"> "_s.repeated(5'000) + u"deep"_s;
        QTest::newRow("lists") << u"- "_s.repeated(5'000) + u"deep"_s;
        QTest::newRow("stars") << u"*a "_s.repeated(5'000) + u"deep"_s;
        QTest::newRow("stars and their ends")
            << u"*a _b "_s.repeated(5'000) + u"deep"_s + u"_ * "_s.repeated(5'000);
        QTest::newRow("brackets") << u"["_s.repeated(5'000) + u"deep"_s;
        QTest::newRow("tags") << u"<b>"_s.repeated(5'000) + u"deep"_s;
    }
    void deepNestingIsRead()
    {
        QFETCH(QString, markdown);
        QVERIFY(readBody(markdown).contains(u"deep"_s));
    }

    /// One definition for many references, one wide row for many short ones.
    void whatWouldGrowOutOfProportionIsText_data()
    {
        QTest::addColumn<QString>("markdown");
        QTest::addColumn<QString>("few");
        QTest::newRow("references") << u"[a]: https://x.org/"_s + u"y"_s.repeated(8'000) +
                                           u"\n\n"_s + u"[a] "_s.repeated(2'000)
                                    << u"[a]: b\n\n[a] [a]"_s;
        QTest::newRow("table") << u"|a"_s.repeated(2'000) + u"\n"_s + u"|---"_s.repeated(2'000) +
                                      u"\n"_s + u"|\n"_s.repeated(2'000)
                               << u"|a|b\n|---|---\n|\n"_s;
    }
    void whatWouldGrowOutOfProportionIsText()
    {
        QFETCH(QString, markdown);
        QVERIFY(readMarkdown(markdown) == readPlainText(markdown));
        QFETCH(QString, few);
        QVERIFY(readMarkdown(few) != readPlainText(few));
    }

    void time()
    {
        for (const QString &pattern : {u"a *b* **c** [d](e)\n\n"_s, u"- a\n"_s, u"www."_s, u"a@"_s,
                                       u"https://"_s, u"(http://a"_s, u"<b>a"_s}) {
            const double ratio = growth(
                [&](qsizetype size) { QVERIFY(!readBody(pattern.repeated(size)).isEmpty()); },
                1'000);
            QVERIFY2(ratio < linearGrowthBound,
                     qPrintable(pattern + u": "_s + QString::number(ratio)));
        }
    }
};

QTEST_APPLESS_MAIN(TestMarkdownReader)
#include "tst_markdown_reader.moc"
