#include "core/HtmlTokens.h"

#include "tests/core/Duration.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// One letter a token: s(tart), e(nd), t(ext), v(erbatim), then its source.
QStringList described(const QString &html)
{
    QStringList tokens;
    for (const HtmlToken &token : htmlTokens(html))
        tokens += u"tsev"_s.at(int(token.kind)) + token.source.toString();
    return tokens;
}
} // namespace

class TestHtmlTokens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tokens_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QStringList>("tokens");
        QTest::newRow("empty") << u""_s << QStringList{};
        QTest::newRow("text") << u"a & b > c"_s << QStringList{u"ta & b > c"_s};
        QTest::newRow("tags") << u"<p>a</p>"_s << QStringList{u"s<p>"_s, u"ta"_s, u"e</p>"_s};
        QTest::newRow("a bracket among words")
            << u"1 < 2 <3<b>"_s << QStringList{u"t1 < 2 <3"_s, u"s<b>"_s};
        QTest::newRow("a bracket at the end") << u"a<"_s << QStringList{u"ta<"_s};
        QTest::newRow("a slash at the end") << u"a</"_s << QStringList{u"ta</"_s};
        QTest::newRow("a quoted bracket")
            << u"<a b=\"x>y\" c='>'>z"_s << QStringList{u"s<a b=\"x>y\" c='>'>"_s, u"tz"_s};
        QTest::newRow("an unquoted bracket")
            << u"<a b=x>y"_s << QStringList{u"s<a b=x>"_s, u"ty"_s};
        QTest::newRow("a missing value") << u"<a b=>y"_s << QStringList{u"s<a b=>"_s, u"ty"_s};
        QTest::newRow("an unfinished tag")
            << u"a<p b=\"x>y<b>"_s << QStringList{u"ta"_s, u"v<p b=\"x>y<b>"_s};
        QTest::newRow("a comment")
            << u"a<!-- <b> --><i>"_s << QStringList{u"ta"_s, u"v<!-- <b> -->"_s, u"s<i>"_s};
        QTest::newRow("abrupt comments")
            << u"<!--><!---><!----><!--a--!><b>"_s
            << QStringList{u"v<!-->"_s, u"v<!--->"_s, u"v<!---->"_s, u"v<!--a--!>"_s, u"s<b>"_s};
        QTest::newRow("an open comment") << u"<!-- <b>"_s << QStringList{u"v<!-- <b>"_s};
        QTest::newRow("declarations")
            << u"<!x><?y></ z><b>"_s << QStringList{u"v<!x>"_s, u"v<?y>"_s, u"v</ z>"_s, u"s<b>"_s};
        QTest::newRow("raw text") << u"<style>a<b></styles></STYLE >c"_s
                                  << QStringList{u"s<style>"_s, u"va<b></styles>"_s,
                                                 u"e</STYLE >"_s, u"tc"_s};
        QTest::newRow("open raw text")
            << u"<script><b>"_s << QStringList{u"s<script>"_s, u"v<b>"_s};
    }
    void tokens()
    {
        QFETCH(QString, html);
        QTEST(described(html), "tokens");
    }

    void attributes()
    {
        const QString html = u"<p  a=\"1\"b='2' c = \"3\" d=4/ e/f =5 =g style>"_s;
        const std::vector<HtmlToken> tokens = htmlTokens(html);
        QCOMPARE(tokens.size(), 1U);
        QStringList found;
        for (const HtmlAttribute &attribute : htmlAttributes(tokens[0]))
            found += (attribute.isQuoted ? u"q:"_s : u"-:"_s) + attribute.name.toString() + u":"_s +
                     html.sliced(attribute.start, attribute.end - attribute.start);
        QCOMPARE(found, (QStringList{u"q:a:  a=\"1\""_s, u"q:b:b='2'"_s, u"q:c: c = \"3\""_s,
                                     u"-:d: d=4/"_s, u"-:e: e"_s, u"-:f:f =5"_s, u"-:=g: =g"_s,
                                     u"-:style: style"_s}));
    }

    void time_data()
    {
        QTest::addColumn<QString>("pattern");
        for (const char *pattern :
             {"<", "<a ", "<a b=\"", "<a b=\"x\" ", "<!--", "<!--a--!>", "<!x", "</", "<style>",
              "<style></style>", "<script></scripts", "<a>", "<?", "<title>x</title "})
            QTest::newRow(pattern) << QString::fromLatin1(pattern);
    }
    void time()
    {
        QFETCH(QString, pattern);
        const double ratio = growth(
            [&](qsizetype size) {
                const QString html = pattern.repeated(size);
                QVERIFY(!htmlTokens(html).empty());
            },
            50'000);
        QVERIFY2(ratio < linearGrowthBound, qPrintable(QString::number(ratio)));
    }
};

QTEST_MAIN(TestHtmlTokens)
#include "tst_html_tokens.moc"
