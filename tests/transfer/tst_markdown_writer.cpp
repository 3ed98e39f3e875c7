#include "transfer/MarkdownReader.h"
#include "transfer/MarkdownWriter.h"
#include "transfer/NoteBodyWriter.h"
#include "transfer/NoteDocumentReader.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
QString asItIs(const QString &source)
{
    return source;
}

QString written(const QString &html)
{
    return markdownText(readHtml(html).document, asItIs);
}
} // namespace

class TestMarkdownWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void notesAsMarkdown_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("markdown");
        const auto row = [](const char *name, const QString &html, const QString &markdown) {
            QTest::newRow(name) << html << markdown;
        };
        row("headings", u"<h1>a</h1><h2>b</h2><h3>c</h3><p>d</p>"_s,
            u"# a\n\n## b\n\n### c\n\nd\n"_s);
        row("formats", u"<p><b>a</b> <i>b</i> <s>c</s> <u>d</u></p>"_s,
            u"**a** *b* ~~c~~ <u>d</u>\n"_s);
        row("formats in one another", u"<p><b>a <i>b</i></b> <b><i>c</i></b></p>"_s,
            u"**a *b*** **_c_**\n"_s.replace(u"*b***"_s, u"_b_**"_s));
        row("a format within a word", u"<p>mi<b>l</b>k</p>"_s, u"mi**l**k\n"_s);
        row("a format that marks cannot say", u"<p>a<b>!</b>b</p>"_s, u"a<b>\\!</b>b\n"_s);
        row("a blank at the end of bold text", u"<p><b>a </b>b</p>"_s, u"**a** b\n"_s);
        row("a link", u"<p><a href=\"https://x.org/a_b\">c</a></p>"_s,
            u"[c](https://x.org/a_b)\n"_s);
        row("a link by its address", u"<p><a href=\"https://x.org\">https://x.org</a></p>"_s,
            u"<https://x.org>\n"_s);
        row("a link with brackets", u"<p><a href=\"https://x.org/(a b)\">[c]</a></p>"_s,
            u"[\\[c\\]](<https://x.org/(a b)>)\n"_s);
        row("a picture", u"<p><img src=\"a b.png\" alt=\"c]\"></p>"_s, u"![c\\]](<a b.png>)\n"_s);
        row("line breaks", u"<p>a<br>b</p><h2>c<br>d</h2>"_s, u"a\\\nb\n\n## c<br>d\n"_s);
        row("empty lines", u"<p>a</p><p><br></p><p>b</p>"_s, u"a\n\nb\n"_s);
        row("a divider", u"<p>a</p><hr><p>b</p>"_s, u"a\n\n---\n\nb\n"_s);
        row("lists", u"<p>x</p><ul><li>a</li><li>b</li></ul><ol><li>c</li><li>d</li></ol>"_s,
            u"x\n\n- a\n- b\n\n1. c\n2. d\n"_s);
        row("two lists of one kind", u"<ul><li>a</li></ul><ul><li>b</li></ul>"_s,
            u"- a\n\n* b\n"_s);
        row("two lists with an empty line between",
            u"<ol><li>a</li></ol><p><br></p><ol><li>b</li></ol>"_s, u"1. a\n\n1) b\n"_s);
        row("nested lists",
            u"<ol><li>a<ul><li>b<br>c<ol><li>d</li></ol></li></ul></li><li>e</li></ol>"_s,
            u"1. a\n   - b\\\n     c\n     1. d\n2. e\n"_s);
        row("nested lists behind ten items",
            u"<ol>"_s + u"<li>a</li>"_s.repeated(9) + u"<li>b<ul><li>c</li></ul></li></ol>"_s,
            u"1. a\n2. a\n3. a\n4. a\n5. a\n6. a\n7. a\n8. a\n9. a\n10. b\n    - c\n"_s);
        row("a checklist",
            u"<ul class=\"checklist\"><li>a</li><li class=\"checked\">b<ul class=\"checklist\"><li>c</li></ul></li></ul>"_s,
            u"- [ ] a\n- [x] b\n  - [ ] c\n"_s);
        row("headings of items", u"<ul><li><h2>a</h2></li></ul>"_s, u"- ## a\n"_s);
        row("empty items", u"<ul><li><br></li></ul><ul class=\"checklist\"><li><br></li></ul>"_s,
            u"- <!-- -->\n- [ ] <!-- -->\n"_s);
        row("an empty title", u"<h1><br></h1><p>a</p>"_s, u"#\n\na\n"_s);
        row("nothing", u""_s, u""_s);
    }
    void notesAsMarkdown()
    {
        QFETCH(QString, html);
        QTEST(written(html), "markdown");
    }

    void textStaysText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("markdown");
        const auto row = [](const char *name, const QString &text, const QString &markdown) {
            QTest::newRow(name) << text << markdown;
        };
        row("words", u"Nothing, to see - here. (Really: 100%)"_s,
            u"Nothing, to see - here. (Really: 100%)"_s);
        row("marks", u"*a* _b_ ~c~ `d`"_s, u"\\*a\\* \\_b\\_ \\~c\\~ \\`d\\`"_s);
        row("within words", u"snake_case_name"_s, u"snake_case_name"_s);
        row("brackets", u"[a](b) ![c]"_s, u"\\[a\\](b) \\!\\[c\\]"_s);
        row("tags", u"a < b <u>"_s, u"a \\< b \\<u>"_s);
        row("references", u"&amp; & &x"_s, u"\\&amp; & &x"_s);
        row("backslashes", u"a\\b"_s, u"a\\\\b"_s);
        row("a heading", u"# a"_s, u"\\# a"_s);
        row("no heading", u"a # b"_s, u"a # b"_s);
        row("a quote", u"> a"_s, u"\\> a"_s);
        row("bullets", u"- a"_s, u"\\- a"_s);
        row("a sum", u"+ 5"_s, u"\\+ 5"_s);
        row("a temperature", u"-5 degrees"_s, u"-5 degrees"_s);
        row("a number", u"1. a"_s, u"1\\. a"_s);
        row("a year alone", u"1989."_s, u"1989\\."_s);
        row("a price", u"1.50"_s, u"1.50"_s);
        row("a rule", u"---"_s, u"\\---"_s);
        row("an underline", u"==="_s, u"\\==="_s);
        row("a task", u"[ ] a"_s, u"\\[ \\] a"_s);
        row("an address", u"see https://x.org"_s, u"see https\\://x.org"_s);
        row("an address without a scheme", u"www.x.org"_s, u"www\\.x.org"_s);
        row("a mail address", u"a@x.org"_s, u"a\\@x.org"_s);
        row("an at sign", u"3 @ 5"_s, u"3 @ 5"_s);
        row("a fence", u"```"_s, u"\\`\\`\\`"_s);
        row("no-break spaces", u"\u00a0\u00a0a"_s, u"\u00a0\u00a0a"_s);
    }
    void textStaysText()
    {
        QFETCH(QString, text);
        NoteDocument document;
        document.blocks.push_back({.inlines = {{.text = text}}});
        const QString markdown = markdownText(document, asItIs);
        QTEST(markdown.chopped(1), "markdown");
        QVERIFY2(readMarkdown(markdown) == document, qPrintable(noteBody(readMarkdown(markdown))));
        // On a line below another one as well.
        document.blocks[0].inlines = {
            {.text = u"x"_s}, {.kind = Inline::Kind::lineBreak}, {.text = text}};
        QVERIFY(readMarkdown(markdownText(document, asItIs)) == document);
    }

    void picturesThatAreNowhereLeaveTheirWords()
    {
        const NoteDocument document =
            readHtml(u"<p>a<img src=\"x\" alt=\"*b*\"></p><p><img src=\"x\"></p>"_s).document;
        QCOMPARE(markdownText(document, [](const QString &) { return QString(); }),
                 u"a\\*b\\*\n"_s);
    }
};

QTEST_APPLESS_MAIN(TestMarkdownWriter)
#include "tst_markdown_writer.moc"
