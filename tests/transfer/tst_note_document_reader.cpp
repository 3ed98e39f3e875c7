#include "tests/core/Duration.h"
#include "transfer/NoteBodyWriter.h"
#include "transfer/NoteDocumentReader.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
QString readBody(const QString &html)
{
    return noteBody(readHtml(html).document);
}

const QString box =
    u"<span class=\"chk\" contenteditable=\"false\" role=\"checkbox\" aria-checked=\"false\"></span>"_s;
const QString ticked = u"<span class=\"chk checked\" contenteditable=\"false\" role=\"checkbox\" "
                       "aria-checked=\"true\"></span>"_s;
} // namespace

/// What any HTML says, told by the note that is made of it.
class TestNoteDocumentReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notesStayAsTheyAre_data()
    {
        QTest::addColumn<QString>("html");
        const auto row = [](const char *name, const QString &html) { QTest::newRow(name) << html; };
        row("headings", u"<h1>a</h1><h2>b</h2><h3>c</h3><p>d</p>"_s);
        row("formats",
            u"<p><b>a</b><i>b</i><u>c</u><s>d</s> <b><i>e</i></b> <a href=\"https://x.org\">f</a></p>"_s);
        row("an empty title", u"<h1><br></h1><p>a</p>"_s);
        row("empty lines", u"<h1>a</h1><p><br></p><p><br></p><p>b</p>"_s);
        row("line breaks", u"<p>a<br>b</p><p>a<br><br></p>"_s);
        row("lists", u"<ul><li>a</li><li>b</li></ul><ol><li>c</li></ol>"_s);
        row("lists of one kind", u"<ul><li>a</li></ul><ul><li>b</li></ul>"_s);
        row("nested lists",
            u"<ul><li>a</li><ol><li>b</li><ul><li>c</li></ul></ol><li>d</li></ul>"_s);
        row("nested lists of one kind",
            u"<ul><li>a</li><ul><li>b</li></ul><ul><li>c</li></ul></ul>"_s);
        row("headings in items", u"<ul><li><h2>a</h2></li></ul>"_s);
        row("an empty item", u"<ul><li><br></li></ul>"_s);
        row("checklists", u"<ul class=\"checklist\"><li>"_s + box +
                              u"a</li><li class=\"checked\">"_s + ticked + u"b</li></ul>"_s);
        row("nested checklists", u"<ul class=\"checklist\"><li>"_s + box +
                                     u"a</li><ul class=\"checklist\"><li class=\"checked\">"_s +
                                     ticked + u"b</li></ul></ul>"_s);
        row("dividers", u"<p>a</p><hr><p>b</p>"_s);
        row("pictures", u"<p>a <img src=\"file:///a%20b.png\" alt=\"c\"></p>"_s);
        row("signs", u"<p>&lt;b&gt; &amp;amp; \" '</p>"_s.replace(u"\""_s, u"&quot;"_s));
        row("no-break spaces", u"<p>a&nbsp; b</p>"_s);
    }
    void notesStayAsTheyAre()
    {
        QFETCH(QString, html);
        QCOMPARE(readBody(html), html);
    }

    void otherHtmlIsUnderstood_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("body");
        const auto row = [](const char *name, const QString &html, const QString &body) {
            QTest::newRow(name) << html << body;
        };
        row("a page",
            u"<!DOCTYPE html><html><head><title>t</title><style>p{}</style></head><body "
            "onload=\"x()\"><main><p>a</p></main></body></html>"_s,
            u"<p>a</p>"_s);
        row("lines in divs", u"<div>a</div><div><br></div><div>b</div>"_s,
            u"<p>a</p><p><br></p><p>b</p>"_s);
        row("loose text", u"a<br>b<p>c</p>d"_s, u"<p>a<br>b</p><p>c</p><p>d</p>"_s);
        row("white space", u"<p>\n  a\n  <b> b </b>\n c </p>\n"_s, u"<p>a <b>b</b> c</p>"_s);
        row("other names of formats",
            u"<p><strong>a</strong><em>b</em><del>c</del><ins>d</ins></p>"_s,
            u"<p><b>a</b><i>b</i><s>c</s><u>d</u></p>"_s);
        row("formats by style",
            u"<p><span style=\"font-weight: 700; text-decoration: underline line-through\">a</span></p>"_s,
            u"<p><b><u><s>a</s></u></b></p>"_s);
        row("a style that takes a format back", u"<b style=\"font-weight:normal\"><p>a</p></b>"_s,
            u"<p>a</p>"_s);
        row("bold headings", u"<h2 style=\"font-weight:bold\">a</h2>"_s, u"<h2>a</h2>"_s);
        row("small headings", u"<h4>a</h4><h6>b</h6>"_s, u"<h3>a</h3><h3>b</h3>"_s);
        row("a table",
            u"<table><tr><th>a</th><th>b</th></tr>\n<tr><td>c</td><td>d</td></tr></table>"_s,
            u"<p>a b</p><p>c d</p>"_s);
        row("a quote", u"<blockquote><p>a</p>b</blockquote>"_s, u"<p>a</p><p>b</p>"_s);
        row("code with formats", u"<pre>a <b> </b><i> b</i>  <u>c</u></pre>"_s,
            u"<p>a &nbsp;&nbsp;<i>b</i> &nbsp;<u>c</u></p>"_s);
        row("code", u"<pre>a\n  b  c\n</pre>"_s, u"<p>a<br>&nbsp;&nbsp;b &nbsp;c</p>"_s);
        row("lists within items", u"<ul><li>a<ul><li>b</li></ul></li><li>c</li></ul>"_s,
            u"<ul><li>a</li><ul><li>b</li></ul><li>c</li></ul>"_s);
        row("text behind a nested list", u"<ul><li>a<ul><li>b</li></ul>c</li></ul>"_s,
            u"<ul><li>a</li><ul><li>b</li></ul><li>c</li></ul>"_s);
        row("paragraphs in items", u"<ul><li><p>a</p><p>b</p></li></ul>"_s,
            u"<ul><li>a<br>b</li></ul>"_s);
        row("text in a list", u"<ul>a<li>b</li>c</ul>"_s,
            u"<ul><li>a</li><li>b</li><li>c</li></ul>"_s);
        row("an item without a list", u"<li>a</li>b"_s, u"<ul><li>a</li></ul><p>b</p>"_s);
        row("a list deep from the start", u"<ul><ul><ul><li>a</li><li>b</li></ul></ul></ul>"_s,
            u"<ul><li>a</li><li>b</li></ul>"_s);
        row("an empty item above its list", u"<ul><li><ul><li>a</li></ul></li></ul>"_s,
            u"<ul><li><br></li><ul><li>a</li></ul></ul>"_s);
        row("a divider in an item", u"<ul><li>a<hr>b</li></ul>"_s,
            u"<ul><li>a</li></ul><hr><ul><li>b</li></ul>"_s);
        row("a checklist without boxes",
            u"<ul class=\"checklist\"><li class=\"checked\">a</li></ul>"_s,
            u"<ul class=\"checklist\"><li class=\"checked\">"_s + ticked + u"a</li></ul>"_s);
        row("a box that lost its classes",
            u"<ul class=\"checklist\"><li><span role=\"checkbox\" aria-checked=\"true\"></span>a</li></ul>"_s,
            u"<ul class=\"checklist\"><li class=\"checked\">"_s + ticked + u"a</li></ul>"_s);
        row("check boxes", u"<ul><li><label><input type=checkbox checked> a</label></li></ul>"_s,
            u"<ul class=\"checklist\"><li class=\"checked\">"_s + ticked + u"a</li></ul>"_s);
        row("an item that never had a box",
            u"<ul class=\"checklist\"><li>"_s + box + u"a</li><li>b</li></ul>"_s,
            u"<ul class=\"checklist\"><li>"_s + box + u"a</li></ul><ul><li>b</li></ul>"_s);
        row("hidden text", u"<p>a<span hidden>b</span><i style=\"display: none\">c</i></p>"_s,
            u"<p>a</p>"_s);
        row("unknown elements", u"<p><x-y>a</x-y> <mark>b</mark></p>"_s, u"<p>a b</p>"_s);
        row("comments", u"<p>a<!-- b -->c</p>"_s, u"<p>ac</p>"_s);
        row("nothing", u""_s, u""_s);
    }
    void otherHtmlIsUnderstood()
    {
        QFETCH(QString, html);
        QTEST(readBody(html), "body");
        QCOMPARE(readBody(readBody(html)), readBody(html));
    }

    void nothingHarmfulComesThrough_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("body");
        const auto row = [](const char *name, const QString &html, const QString &body) {
            QTest::newRow(name) << html << body;
        };
        row("a script", u"<p>a<script>b()</script></p>"_s, u"<p>a</p>"_s);
        row("a handler", u"<p onclick=\"b()\">a<img src=x onerror=\"c()\"></p>"_s,
            u"<p>a<img src=\"x\"></p>"_s);
        row("a script address", u"<a href=\"javascript:b()\">a</a>"_s, u"<p>a</p>"_s);
        row("a script address in disguise", u"<a href=\" java\tscript&colon;b()\">a</a>"_s,
            u"<p>a</p>"_s);
        row("a control character in it", u"<a href=\"\x01JavaScript:b()\">a</a>"_s, u"<p>a</p>"_s);
        row("data as a link", u"<a href=\"data:text/html,b\">a</a>"_s, u"<p>a</p>"_s);
        row("a file as a link", u"<a href=\"file:///etc/passwd\">a</a>"_s, u"<p>a</p>"_s);
        row("a script as a picture", u"<img src=\"javascript:b()\" alt=\"a\">"_s, u"<p>a</p>"_s);
        row("a page as a picture", u"<img src=\"data:text/html,b\" alt=\"a\">"_s, u"<p>a</p>"_s);
        row("frames and objects",
            u"a<iframe src=\"b\">c</iframe><object data=\"d\">e</object><embed src=\"f\">"_s,
            u"<p>a</p>"_s);
        row("templates", u"a<template><p>b</p></template>"_s, u"<p>a</p>"_s);
        row("drawings with scripts", u"a<svg><script>b()</script><a href=\"c\">d</a></svg>"_s,
            u"<p>a</p>"_s);
        row("formulas that break out",
            u"a<math><mtext><table><mglyph><style><img src=x onerror=b()>"_s, u"<p>a</p>"_s);
        row("a quote in an address", u"<a href='https://x.org/\" onclick=\"b()'>a</a>"_s,
            u"<p><a href=\"https://x.org/&quot; onclick=&quot;b()\">a</a></p>"_s);
        row("markup as text", u"<p>&lt;script&gt;b()&lt;/script&gt;</p>"_s,
            u"<p>&lt;script&gt;b()&lt;/script&gt;</p>"_s);
    }
    void nothingHarmfulComesThrough()
    {
        QFETCH(QString, html);
        QTEST(readBody(html), "body");
    }

    void titleOfThePage()
    {
        QCOMPARE(readHtml(u"<html><head><title> a\n &amp; b</title></head><p>c"_s).title,
                 u"a & b"_s);
        QCOMPARE(readHtml(u"<p>c</p>"_s).title, QString());
    }

    void deepNestingIsRead_data()
    {
        QTest::addColumn<QString>("tag");
        for (const char *tag : {"div", "b", "ul", "li", "ul><li", "blockquote", "span", "table",
                                "table><tr><td", "a", "p", "font size=1", "svg", "h1", "button"})
            QTest::newRow(tag) << QString::fromLatin1(tag);
    }
    void deepNestingIsRead()
    {
        QFETCH(QString, tag);
        const QString open = u'<' + tag + u'>';
        QVERIFY(readBody(open.repeated(5'000) + u"deep</p>"_s).contains(u"deep"_s) ||
                tag == "svg"_L1);
        QVERIFY(readBody((open + u"x"_s).repeated(5'000)).contains(u"x"_s) || tag == "svg"_L1);
    }

    void listsBeyondTheDeepestStayInOrder()
    {
        const NoteDocument document =
            readHtml(u"<ul><li>a"_s.repeated(100) + u"</ul>"_s.repeated(100)).document;
        QCOMPARE(document.blocks.size(), std::size_t(100));
        QCOMPARE(document.blocks.back().depth, deepestList);
    }

    void time_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::newRow("paragraphs") << u"<p>a <b>b</b> c</p>"_s;
        QTest::newRow("open paragraphs") << u"<p>a"_s;
        QTest::newRow("open formats") << u"<p><b>a<i>b"_s;
        QTest::newRow("open fonts") << u"<p><font size=1>a"_s;
        QTest::newRow("open divs") << u"<div>a"_s;
        QTest::newRow("lists") << u"<ul><li>a"_s;
        QTest::newRow("items") << u"<li>a"_s;
        QTest::newRow("bold in turns") << u"a<b>b </b>"_s;
        QTest::newRow("breaks") << u"<br>"_s;
        QTest::newRow("blanks") << u" <b> </b>"_s;
        QTest::newRow("dividers in a list") << u"<hr>"_s;
    }
    void time()
    {
        QFETCH(QString, pattern);
        const double ratio = growth(
            [&](qsizetype size) {
                QVERIFY(!readBody(u"<ul><li>"_s + pattern.repeated(size)).isEmpty());
            },
            2'000);
        QVERIFY2(ratio < linearGrowthBound, qPrintable(QString::number(ratio)));
    }
};

QTEST_APPLESS_MAIN(TestNoteDocumentReader)
#include "tst_note_document_reader.moc"
