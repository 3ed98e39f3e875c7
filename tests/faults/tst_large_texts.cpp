#include "core/ImageStore.h"
#include "core/NotesJson.h"
#include "core/StoredHTML.h"
#include "core/String+HTML.h"
#include "tests/core/LinearWork.h"

#include <QTemporaryDir>
#include <QTest>

#include <functional>

using namespace Qt::Literals::StringLiterals;

/// A notes file may be any file, and a note's text whatever was once pasted. From one megabyte to
/// eight nothing that is done with them at the start takes more than its share longer.
class TestLargeTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decoding_data()
    {
        QTest::addColumn<QByteArray>("begin");
        QTest::addColumn<QByteArray>("pattern");
        QTest::addColumn<QByteArray>("end");
        const auto row = [](const char *name, const char *begin, const char *pattern,
                            const char *end) {
            QTest::newRow(name) << QByteArray(begin) << QByteArray(pattern) << QByteArray(end);
        };
        row("notes", "[{}", ",{}", "]");
        row("notes with values", "[{}", ",{\"body\":\"a\",\"title\":\"b\",\"color\":\"pink\"}",
            "]");
        row("one text", "[{\"body\":\"", "a", "\"}]");
        row("escapes", "[{\"body\":\"", "\\u00e9\\n\\/", "\"}]");
        row("half surrogate pairs", "[{\"body\":\"", "\\ud800", "\"}]");
        row("names", "[{\"a\":1", ",\"a\":1", "}]");
        row("a note of numbers", "[{\"0\":[0", ",1e5", "]}]");
        row("brackets", "[", "[", "");
        row("braces", "", "{\"a\":", "");
        row("closed brackets", "[{}", ",[]", "]");
        row("spaces", "[", " ", "]");
        row("zeros", "[", "0", "]");
        row("quotes", "[", "\"", "]");
        row("backslashes", "[\"", "\\", "\"]");
        row("broken encoding", "[\"", "\xC3", "\"]");
    }
    void decoding()
    {
        QFETCH(QByteArray, begin);
        QFETCH(QByteArray, pattern);
        QFETCH(QByteArray, end);
        check([&](qsizetype size) {
            (void)decodeNotes(begin + filled(pattern, size) + end, Timestamp{1000});
        });
    }

    /// Every name once: what sorts them must not shift them one by one.
    void decodingDifferentNames()
    {
        check([](qsizetype size) {
            QByteArray bytes = "[{";
            for (quint32 i = 0; bytes.size() < size; ++i)
                bytes += '"' + QByteArray::number(i * 2654435761U) + "\":0,";
            (void)decodeNotes(bytes + "\"z\":0}]", Timestamp{1000});
        });
    }

    void repairing_data()
    {
        QTest::addColumn<QString>("begin");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("end");
        const auto row = [](const char *name, const QString &begin, const QString &pattern,
                            const QString &end = {}) {
            QTest::newRow(name) << begin << pattern << end;
        };
        row("words", {}, u"word "_s);
        row("brackets", {}, u"<"_s);
        row("brackets before the last", {}, u"<"_s, u">"_s);
        row("empty tags", {}, u"<>"_s);
        row("end brackets", {}, u">"_s);
        row("styles", {}, u"<p style=\"a\">"_s);
        row("styles in one tag", u"<p"_s, u" style=\"a\""_s, u">"_s);
        row("styles before spaces", u"<p"_s, u" style=\"a\"        "_s, u">"_s);
        row("styles before equals", u"<p"_s, u" style=\"a\"=\"b\""_s, u">"_s);
        row("quotes not closed", {}, u"<p style=\""_s);
        row("names without an end", {}, u"<p a"_s);
        row("slashes in a tag", u"<p"_s, u"/"_s, u">"_s);
        row("spaces in a tag", u"<p"_s, u" "_s, u">"_s);
        row("headings", {}, u"<h1>a</h1>"_s);
        row("open headings", {}, u"<h1>"_s);
        row("closed headings", u"<h1>"_s, u"</h1>"_s);
        row("open blocks in a heading", u"<h1>"_s, u"<div>"_s, u"</h1>"_s);
        row("blocks in the second heading", u"<h1>a</h1><h1>"_s, u"<div></div>"_s, u"</h1>"_s);
        row("blocks around blocks in the second", u"<h1>a</h1><h1>"_s, u"<div>"_s, u"x</h1>"_s);
        row("names between spans", u"<h1>&"_s, u"a<span>b</span>"_s, u"</h1>"_s);
        row("one name before spans", u"<h1>&"_s, u"a"_s, u"<span>b</span></h1>"_s);
        row("comments not closed", {}, u"<!--"_s);
        row("dashes in a comment", u"<!--"_s, u"-"_s);
        row("declarations", {}, u"<!"_s);
        row("questions", {}, u"<?"_s);
        row("end tags of nothing", {}, u"</"_s);
        row("scripts not closed", {}, u"<script>"_s);
        row("a script with almost an end", u"<script>"_s, u"</scrip"_s);
        row("a script with half an end", u"<script>"_s, u"</scriptx"_s);
        row("titles", {}, u"<title></title>"_s);
        row("pictures", {}, u"<img src=\"a.png\">"_s);
        row("pictures not closed", {}, u"<img src=\"data:image/png;base64,"_s);
        row("pictures without a type", {}, u"<img src=\"data:image/\">"_s);
        row("broken pictures", {}, u"<img src=\"data:image/png;base64,*\">"_s);
        row("broken pictures in one tag", u"<p"_s, u" src=\"data:image/png;base64,*\""_s, u">"_s);
        row("one broken picture", u"<img src=\"data:image/png;base64,"_s, u"AAA*"_s, u"\">"_s);
        row("spaces before a source", u"<img data:image/ "_s, u"src    "_s, u">"_s);
        row("types", u"<img "_s, u"src=\"data:image/a"_s, u">"_s);
        row("ampersands", {}, u"&"_s);
        row("references", {}, u"&amp;#65;&nbsp;"_s);
        row("references not closed", {}, u"&#6"_s);
        row("one long reference", u"&#"_s, u"6"_s, u";"_s);
        row("half surrogate pairs", {}, QString(QChar(0xD800)) + u"<b>"_s);
        row("nothing", {}, QString(QChar::Null));
    }
    void repairing()
    {
        QFETCH(QString, begin);
        QFETCH(QString, pattern);
        QFETCH(QString, end);
        const QTemporaryDir images;
        const auto text = [&](qsizetype size) { return begin + filled(pattern, size) + end; };
        check([&](qsizetype size) { (void)sanitizeStoredHTML(text(size)); }, "sanitizeStoredHTML");
        check([&](qsizetype size) { (void)migrateImages(text(size), images.path()); },
              "migrateImages");
        check([&](qsizetype size) { (void)fastStrippingHTML(text(size)); }, "fastStrippingHTML");
        check([&](qsizetype size) { (void)::firstHeading(text(size)); }, "firstHeading");
    }

    /// Pictures that can be taken out are; there are fewer of them here, for each is a file.
    void migratingPictures()
    {
        const QTemporaryDir images;
        const QString picture =
            u"<img src=\"data:image/png;base64,"_s + QString(40'000, u'A') + u"\">"_s;
        check([&](qsizetype size) {
            QVERIFY(migrateImages(filled(picture, size), images.path()).changed);
        });
    }

private:
    static void check(const std::function<void(qsizetype)> &work, const QByteArray &name = {})
    {
        const QByteArray fault = againstLinearWork(work);
        QVERIFY2(fault.isEmpty(), name + ": " + fault);
    }
};

QTEST_GUILESS_MAIN(TestLargeTexts)
#include "tst_large_texts.moc"
