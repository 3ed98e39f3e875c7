#include "transfer/NoteBodyWriter.h"
#include "transfer/NoteDocumentReader.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

/// How a document becomes one with the heading of a note.
class TestNoteDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headings_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("body");
        const auto row = [](const char *name, const QString &html, const QString &title,
                            const QString &body) { QTest::newRow(name) << html << title << body; };
        row("there already", u"<h1>a</h1><p>b</p>"_s, u"t"_s, u"<h1>a</h1><p>b</p>"_s);
        row("empty, but there", u"<h1><br></h1><p>b</p>"_s, u"t"_s, u"<h1><br></h1><p>b</p>"_s);
        row("a small one", u"<h2>a</h2><p>b</p>"_s, u""_s, u"<h1>a</h1><p>b</p>"_s);
        row("below a picture", u"<p><img src=\"x\"></p><h1>a</h1><p>b</p>"_s, u""_s,
            u"<h1>a</h1><p><img src=\"x\"></p><p>b</p>"_s);
        row("below text", u"<p>b</p><h1>a</h1>"_s, u""_s, u"<h1>b</h1><h1>a</h1>"_s);
        row("below text, with a title", u"<p>b</p><h1>a</h1>"_s, u"t"_s,
            u"<h1>t</h1><p>b</p><h1>a</h1>"_s);
        row("the first line", u"<p><br></p><p>a <b>b</b><br>c</p><p>d</p>"_s, u""_s,
            u"<h1>a <b>b</b></h1><p>c</p><p>d</p>"_s);
        row("a line with a picture", u"<p>a<img src=\"x\"><br>b</p>"_s, u""_s,
            u"<h1>a</h1><p><img src=\"x\">b</p>"_s);
        row("a list", u"<ul><li>a</li></ul>"_s, u""_s, u"<h1><br></h1><ul><li>a</li></ul>"_s);
        row("nothing", u""_s, u""_s, u"<h1><br></h1>"_s);
        row("nothing but a title", u""_s, u"t <b>"_s, u"<h1>t &lt;b&gt;</h1>"_s);
    }
    void headings()
    {
        QFETCH(QString, html);
        QFETCH(QString, title);
        QTEST(noteBody(withLeadingHeading(readHtml(html).document, title)), "body");
    }

    void blanksThatMeetAreOne()
    {
        const std::vector<Inline> parts =
            normalized({{.text = u"a "_s},
                        {.text = u" b "_s, .formats = {.isStruck = true}},
                        {.text = u"  c"_s}});
        const std::vector<Inline> expected{
            {.text = u"a "_s}, {.text = u"b "_s, .formats = {.isStruck = true}}, {.text = u"c"_s}};
        QVERIFY(parts == expected);
    }

    void formatsThatNobodySeesGo()
    {
        const std::vector<Inline> parts =
            normalized({{.text = u" a"_s},
                        {.text = u" b "_s, .formats = {.isBold = true}},
                        {.kind = Inline::Kind::lineBreak, .formats = {.isBold = true}},
                        {.text = u" c "_s, .formats = {.isStruck = true}}});
        const std::vector<Inline> expected{{.text = u"a "_s},
                                           {.text = u"b"_s, .formats = {.isBold = true}},
                                           {.kind = Inline::Kind::lineBreak},
                                           {.text = u"c"_s, .formats = {.isStruck = true}}};
        QVERIFY(parts == expected);
        QVERIFY(normalized(parts) == parts);
    }
};

QTEST_APPLESS_MAIN(TestNoteDocument)
#include "tst_note_document.moc"
