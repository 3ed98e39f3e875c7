#include "core/UsualHTML.h"

#include "tests/core/Duration.h"
#include "tests/core/RandomNoteHTML.h"

#include <QTest>
#include <QTextDocument>

using namespace Qt::Literals::StringLiterals;

namespace
{
QString imported(const QString &html)
{
    QTextDocument document;
    document.setUndoRedoEnabled(false);
    document.setHtml(html);
    return document.toPlainText();
}
} // namespace

/// What it reads it reads as the importer of rich text does, and what it cannot it leaves.
class TestUsualHTML : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatNotesAreMadeOfIsRead_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << u""_s << u""_s;
        QTest::newRow("a note") << u"<h1>Shop</h1><p>a <b>b</b></p><p>c</p>"_s << u"Shop\na b\nc"_s;
        QTest::newRow("an empty line") << u"<p>a</p><p><br></p><p>b</p>"_s << u"a\n\n\nb"_s;
        QTest::newRow("a list") << u"<ul><li>a</li><li>b<ol><li>c</li></ol></li></ul><p>d</p>"_s
                                << u"a\nb\nc\nd"_s;
        QTest::newRow("a checklist")
            << u"<ul class=\"checklist\"><li class=\"checked\"><span class=\"chk checked\" "
               "contenteditable=\"false\" role=\"checkbox\" aria-checked=\"true\"></span>a</li></ul>"_s
            << u"a"_s;
        QTest::newRow("a link") << u"<p><a href=\"https://a.b/?c&amp;d\">e</a></p>"_s << u"e"_s;
        QTest::newRow("references") << u"<p>&lt;&amp;lt;&gt;&nbsp;&quot;</p>"_s << u"<&lt;> \""_s;
        QTest::newRow("white space") << u"<p> a \n b&nbsp; c </p>"_s << u"a b  c "_s;
    }
    void whatNotesAreMadeOfIsRead()
    {
        QFETCH(QString, html);
        QFETCH(QString, text);
        QCOMPARE(plainTextOfUsualHTML(html), std::optional(text));
        QCOMPARE(imported(html), text);
    }

    void theRestIsLeft_data()
    {
        QTest::addColumn<QString>("html");
        for (const char *html : {"a",
                                 "<p>a",
                                 "a</p>",
                                 "<p>a</b></p>",
                                 "<p style=\"display:none\">a</p>",
                                 "<table>",
                                 "<p>&copy;</p>",
                                 "<p>a<p>b</p></p>",
                                 "<p></p>",
                                 "<ul></ul>",
                                 "<ul>a</ul>",
                                 "<ul><li>a<ul><li>b</li></ul>c</li></ul>",
                                 "<p>a",
                                 "<p",
                                 "<",
                                 "<!-- -->",
                                 "<p>a</p> ",
                                 "<p><a href=\"x",
                                 "<p class=\"a\"b>c</p>",
                                 "<p class=\"a\" style=\"b\">c</p>",
                                 "<script>a</script>",
                                 "<pre>a</pre>",
                                 "<P>a</P>",
                                 "<li>a</li>"})
            QTest::newRow(html) << QString::fromUtf8(html);
    }
    void theRestIsLeft()
    {
        QFETCH(QString, html);
        QCOMPARE(plainTextOfUsualHTML(html), std::optional<QString>());
    }

    void everyCharacterIsReadAsTheImporterDoes()
    {
        for (char32_t c = 1; c <= 0xffff; ++c) {
            if (QChar::isSurrogate(c))
                continue;
            const QString html = u"<p>a %1 b%1</p>"_s.arg(QChar(char16_t(c)));
            const auto text = plainTextOfUsualHTML(html);
            if (text && *text != imported(html))
                QFAIL(qPrintable(u"U+%1"_s.arg(uint(c), 4, 16)));
        }
    }

    void everyNoteIsReadAsTheImporterDoes()
    {
        constexpr int notes = 20'000;
        int read = 0;
        for (int seed = 0; seed < notes; ++seed) {
            const QString html = RandomNoteHTML(quint32(seed)).note();
            const auto text = plainTextOfUsualHTML(html);
            read += text.has_value();
            if (text && *text != imported(html)) {
                QCOMPARE(*text, imported(html)); // shows both
                QFAIL(qPrintable(html));
            }
        }
        QVERIFY2(read > notes / 4, qPrintable(QString::number(read)));
    }

    /// The whole reason for reading it here.
    void itIsManyTimesAsFast()
    {
        if constexpr (slowness > 1)
            QSKIP("a sanitizer slows down Plim's own code, and not Qt's");
        const QString html = u"<p>some words <b>milk</b> &amp; bread</p>"_s.repeated(50);
        const double here = bestDuration([&] { (void)plainTextOfUsualHTML(html); });
        const double there = bestDuration([&] { (void)imported(html); });
        QVERIFY2(here * 10 < there, qPrintable(u"%1 of %2 ns"_s.arg(here).arg(there)));
    }
};

QTEST_MAIN(TestUsualHTML)
#include "tst_usual_html.moc"
