#include "core/UsualHTML.h"

#include "tests/core/Duration.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTextDocument>

#include <array>

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

/// HTML as a page writes it, and now and then as it does not.
class Writer
{
public:
    explicit Writer(quint32 seed) : m_random(seed) {}

    QString note()
    {
        static constexpr std::array names{"p"_L1, "h1"_L1, "h2"_L1, "h3"_L1, "div"_L1};
        QString html;
        for (int blocks = m_random.bounded(4); blocks >= 0; --blocks) {
            html += isOnceIn(4) ? list(0) : inside(one(names), words());
            if (isOnceIn(5))
                html += u'\n';
        }
        return isOnceIn(20) ? html.remove(m_random.bounded(html.size()), 1) : html;
    }

private:
    [[nodiscard]] bool isOnceIn(int times) { return m_random.bounded(times) == 0; }
    template <typename Array>
    const typename Array::value_type &one(const Array &array)
    {
        return array[std::size_t(m_random.bounded(int(array.size())))];
    }
    static QString inside(QLatin1StringView name, const QString &content)
    {
        return u'<' + name + u'>' + content + u"</"_s + name + u'>';
    }
    QString words()
    {
        static const std::array pieces{u" "_s,      u"\n "_s,    u"a"_s,         u"b "_s,
                                       u"&nbsp;"_s, u"ż"_s,      u"中"_s,        u"&amp;"_s,
                                       u"—"_s,      u"“c”"_s,    u"&lt;b&gt;"_s, u"&quot;"_s,
                                       u"<br>"_s,   u"\u00a0"_s, u"\U0001F600"_s};
        static const std::array others{u"&#65;"_s, u"\u2003"_s, u"a<b>c"_s, u"<img>"_s};
        static constexpr std::array names{"b"_L1, "i"_L1,  "u"_L1,      "s"_L1,
                                          "a"_L1, "em"_L1, "strong"_L1, "span"_L1};
        QString text;
        for (int count = m_random.bounded(5); count >= 0; --count)
            text += isOnceIn(3) ? inside(one(names), isOnceIn(40) ? one(others) : one(pieces))
                                : one(pieces);
        return text;
    }
    QString list(int depth)
    {
        constexpr int deepest = 4;
        QString html = isOnceIn(2) ? u"<ul class=\"checklist\">"_s : u"<ul>"_s;
        for (int items = m_random.bounded(3); items >= 0; --items) {
            html += isOnceIn(4) ? u"<li>"_s
                                : u"<li><span class=\"chk\" contenteditable=\"false\"></span>"_s;
            html += words();
            if (depth < deepest && isOnceIn(3))
                html += list(depth + 1);
            html += isOnceIn(8) ? words() + u"</li>\n"_s : u"</li>"_s;
        }
        return html + u"</ul>"_s;
    }

    QRandomGenerator m_random;
};
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
            const QString html = Writer(quint32(seed)).note();
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
