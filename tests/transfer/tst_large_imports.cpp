#include "tests/core/LinearWork.h"
#include "transfer/NoteImport.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

using namespace Qt::Literals::StringLiterals;

using Text = std::function<QByteArray(qsizetype)>; ///< of about that size
Q_DECLARE_METATYPE(Text)

/// A file that is imported may hold anything. However bad it is, twice as much of it takes about
/// twice as long, and what comes of it is no more than some times as large.
class TestLargeImports : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void imports_data();
    void imports();
    void worstImports_data();
    void worstImports();

private:
    void check(const QString &suffix, const Text &text, qsizetype smallest);

    QTemporaryDir m_folder;
};

void TestLargeImports::imports_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<Text>("text");
    const auto row = [](const char *suffix, const char *name, const Text &text) {
        QTest::addRow("%s, %s", suffix, name) << QString::fromLatin1(suffix) << text;
    };
    const auto repeated = [&row](const char *suffix, const char *name, const QByteArray &begin,
                                 const QByteArray &pattern, const QByteArray &end = {}) {
        row(suffix, name, [=](qsizetype size) { return begin + filled(pattern, size) + end; });
    };
    // So many names as have about that size, each another one.
    const auto names = [](qsizetype size) {
        QByteArray text;
        for (quint32 i = 0; text.size() < size; ++i)
            text += " a" + QByteArray::number(i * 2654435761U, 36);
        return text;
    };

    repeated("txt", "empty lines", {}, "\n", "a");
    repeated("txt", "tabs", {}, "\t");
    repeated("txt", "spaces", "a", " ", "b");
    repeated("txt", "bytes of an old encoding", {}, "\xB9\xE6");

    repeated("md", "words", {}, "milk and tea\n");
    repeated("md", "stars", {}, "*a ");
    repeated("md", "stars and underscores", {}, "**a _b ");
    repeated("md", "closing stars", "*", "a* ");
    repeated("md", "tildes", {}, "~~a ~");
    repeated("md", "brackets", {}, "[");
    repeated("md", "closing brackets", {}, "]");
    repeated("md", "links not closed", {}, "[a](");
    repeated("md", "links in brackets", {}, "[a](<b");
    repeated("md", "pictures not closed", {}, "![a](b \"");
    repeated("md", "ticks", {}, "`a``b");
    repeated("md", "angles", {}, "<a b=\"");
    repeated("md", "comments", {}, "<!--");
    repeated("md", "declarations", {}, "a <?x <!X ");
    repeated("md", "references", {}, "&amp;&#65;&");
    repeated("md", "backslashes", {}, "\\*");
    repeated("md", "quotes", {}, "> ");
    repeated("md", "quotes in lines", {}, ">>>>a\n\n");
    repeated("md", "items", {}, "- a\n");
    repeated("md", "items in one line", {}, "- ");
    repeated("md", "bars", {}, "|a");
    repeated("md", "tables", {}, "|a|\n|---|\n|b|\n\n");
    repeated("md", "bare links", {}, "www.a.b https://c.d e@f.g ");
    repeated("md", "brackets of bare links", {}, "https://a(", ")");
    repeated("md", "definitions", {}, "[a]: b\n");
    repeated("md", "open tags", {}, "<b><i>a\n\n");
    repeated("md", "rules above", "---\n", "a: b\n");
    row("md", "long address, often referred to", [](qsizetype size) {
        return "[a]: " + QByteArray(size / 2, 'x') + "\n\n" + filled<QByteArray>("[a] ", size / 2);
    });
    row("md", "long address, often referred to by pictures", [](qsizetype size) {
        return "![" + filled<QByteArray>("[a] ", size / 2) + "](b)\n\n[a]: x&amp;" +
               QByteArray(size / 2, 'x') + '\n';
    });
    row("md", "short rows of a wide table", [](qsizetype size) {
        const qsizetype columns = size / 12;
        return QByteArray("|a").repeated(columns) + '\n' + QByteArray("|---").repeated(columns) +
               '\n' + QByteArray("|\n").repeated(3 * columns);
    });

    repeated("html", "paragraphs", {}, "<p>a <b>b</b> c</p>");
    repeated("html", "empty paragraphs", {}, "<p><br></p>", "a");
    repeated("html", "words before rows", "<table>", "a<tr>");
    repeated("html", "cells", "<table>", "<td>a");
    repeated("html", "links in links", {}, "<a href=b>a<div>");
    repeated("html", "formats around blocks", {}, "<b><p>a</b>");
    repeated("html", "formats of many fonts", {}, "<p><font size=1>a<font size=2>b");
    repeated("html", "brackets", {}, "<");
    repeated("html", "comments", {}, "<!-->a<!--");
    repeated("html", "references", {}, "&amp;&ltx&#65;&");
    repeated("html", "styles", {}, "<p style=\"font-weight:bold;a\">a");
    repeated("html", "one style", "<p style=\"", "a:b;", "\">a");
    repeated("html", "one class", "<ul><li class=\"", "a ", "\">a");
    repeated("html", "comments in an item", "<ul><li>", "<!--a--> ", "a");
    repeated("html", "options", "<select>", "<option>a");
    repeated("html", "cells in a drawing", "<svg>", "<td>");
    repeated("html", "blocks in a drawing's title", "<svg><title>", "<div>");
    repeated("html", "blocks behind what is a comment in a drawing", "<svg><![CDATA[><!--]]>",
             "<div>");
    repeated("html", "blocks behind what is a value in a drawing", "<svg><![CDATA[><a b=']]>",
             "<div>");
    repeated("html", "blocks behind half a script", "<script><!--<script></script>a='--></script>",
             "<div>");
    repeated("html", "blocks in a title that is none", "<select><title></select>", "<div>");
    row("html", "names in a tag", [names](qsizetype size) { return "<p" + names(size) + ">a"; });
    row("html", "names in an unfinished tag",
        [names](qsizetype size) { return "a<p" + names(size); });
    for (const QByteArray after : {"<p>a", "a<br>", "<div>a</div>", "<b>a</b>", "<li>a"}) {
        row("html", ("long address before " + after).constData(), [after](qsizetype size) {
            return "<a href=\"" + QByteArray(size / 2, 'x') + "\">" + filled(after, size / 2);
        });
    }
    row("html", "long format before paragraphs", [](qsizetype size) {
        return "<b x=\"" + QByteArray(size / 2, 'x') + "\">" + filled<QByteArray>("<p>a", size / 2);
    });
    row("html", "many formats before paragraphs", [](qsizetype size) {
        QByteArray formats;
        for (int i = 0; i < 24; ++i)
            formats += "<font size=" + QByteArray::number(i) + '>';
        return formats + filled<QByteArray>("<p>a", size);
    });
}

void TestLargeImports::imports()
{
    QFETCH(QString, suffix);
    QFETCH(Text, text);
    // Eight megabytes of each would take minutes; one is enough to tell.
    check(suffix, text, megabyte / 8);
}

/// The texts of each format that take longest.
void TestLargeImports::worstImports_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QByteArray>("pattern");
    QTest::newRow("txt, empty lines") << u"txt"_s << "\n"_ba;
    QTest::newRow("md, quotes in lines") << u"md"_s << ">>>>a\n\n"_ba;
    QTest::newRow("md, tables") << u"md"_s << "|a|\n|---|\n|b|\n\n"_ba;
    QTest::newRow("html, formats around blocks") << u"html"_s << "<b><p>a</b>"_ba;
    QTest::newRow("html, paragraphs") << u"html"_s << "<p>a <b>b</b> c</p>"_ba;
}

void TestLargeImports::worstImports()
{
    QFETCH(QString, suffix);
    QFETCH(QByteArray, pattern);
    check(
        suffix, [&pattern](qsizetype size) { return filled(pattern, size) + 'a'; }, megabyte);
}

void TestLargeImports::check(const QString &suffix, const Text &text, qsizetype smallest)
{
    const QString path = m_folder.path() + u"/a."_s + suffix;
    const QByteArray fault = againstLinearWork(
        [&](qsizetype size) {
            const QByteArray bytes = text(size);
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
            file.close();
            const auto imported = importNote(path, m_folder.path(), Timestamp{1000});
            const auto *note = std::get_if<Note>(&imported);
            QVERIFY(note && note->body.size() <= 64 * bytes.size() + megabyte);
        },
        smallest);
    QVERIFY2(fault.isEmpty(), fault);
}

QTEST_GUILESS_MAIN(TestLargeImports)
#include "tst_large_imports.moc"
