#include "tests/page/PageFixture.h"

#include "editor/ScriptLiteral.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

/// What goes into the page comes out again: loading, cleaning, composing.
class TestPageContent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void contentIsSplitAndComposed_data();
    void contentIsSplitAndComposed();
    void titleIsComposedWithoutWrappers_data();
    void titleIsComposedWithoutWrappers();
    void markupIsCleaned_data();
    void markupIsCleaned();
    void bodyIsCleanedOnlyWhenMarked_data();
    void bodyIsCleanedOnlyWhenMarked();
    void textThatSpeaksOfMarkupStays_data();
    void textThatSpeaksOfMarkupStays();
    void checklistsAreMadeWhole_data();
    void checklistsAreMadeWhole();
    void caretGoesWhereTheUserWillType_data();
    void caretGoesWhereTheUserWillType();
    void fontSizeIsTheBase();
    void numbersOfListsAreWhole_data();
    void numbersOfListsAreWhole();
    void loadingReportsTheNormalizedForm();
    void longWordsGoWithoutKerning_data();
    void longWordsGoWithoutKerning();
    void wordThatGrowsLongGoesWithoutKerning();
    void cancelledReportIsNotSent();
    void flushSendsAtOnce();

private:
    PageFixture m_page;
    const QUuid m_note = QUuid::createUuid();
};

void TestPageContent::initTestCase()
{
    QVERIFY(m_page.open(m_note, u"<h1>T</h1>"_s));
}

void TestPageContent::contentIsSplitAndComposed_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("composed");
    QTest::newRow("heading and text") << u"<h1>Tea</h1><p>milk</p>"_s << u"Tea"_s << u"<p>milk</p>"_s << u"<h1>Tea</h1><p>milk</p>"_s;
    QTest::newRow("nothing") << QString() << QString() << QString() << u"<h1><br></h1>"_s;
    QTest::newRow("empty title") << u"<h1></h1><p>a</p>"_s << QString() << u"<p>a</p>"_s << u"<h1><br></h1><p>a</p>"_s;
    QTest::newRow("title of a break") << u"<h1> <br/> </h1><p>a</p>"_s << u" <br> "_s << u"<p>a</p>"_s << u"<h1><br></h1><p>a</p>"_s;
    QTest::newRow("no heading") << u"<p>milk</p>"_s << QString() << u"<p>milk</p>"_s << u"<h1><br></h1><p>milk</p>"_s;
    QTest::newRow("heading below") << u"<p>a</p><h1>b</h1>"_s << QString() << u"<p>a</p><h1>b</h1>"_s
                                   << u"<h1><br></h1><p>a</p><h1>b</h1>"_s;
    QTest::newRow("white space above") << u" \n\t<h1>Tea</h1>milk"_s << u"Tea"_s << u"milk"_s << u"<h1>Tea</h1>milk"_s;
    QTest::newRow("attributes") << u"<H1 class=\"x\"\nstyle=\"color:red\">Tea</H1>milk"_s << u"Tea"_s << u"milk"_s << u"<h1>Tea</h1>milk"_s;
    QTest::newRow("two headings") << u"<h1>A</h1><h1>B</h1>"_s << u"A"_s << u"<h1>B</h1>"_s << u"<h1>A</h1><h1>B</h1>"_s;
    QTest::newRow("title in wrappers") << u"<h1><div>Te</div><DIV class=x>a</DIV></h1>"_s << u"Tea"_s << QString() << u"<h1>Tea</h1>"_s;
    QTest::newRow("title with formats") << u"<h1>T<b>e</b>a &amp; &lt;oil&gt;</h1>"_s << u"T<b>e</b>a & <oil>"_s << QString()
                                        << u"<h1>T<b>e</b>a &amp; &lt;oil&gt;</h1>"_s;
    QTest::newRow("padded title") << u"<h1>  Tea  </h1>"_s << u"  Tea  "_s << QString() << u"<h1>Tea</h1>"_s;
    QTest::newRow("heading over lines") << u"<h1>Te\na</h1>b"_s << u"Te\na"_s << u"b"_s << u"<h1>Te\na</h1>b"_s;
}

void TestPageContent::contentIsSplitAndComposed()
{
    QFETCH(QString, html);
    QFETCH(QString, title);
    QFETCH(QString, body);
    QFETCH(QString, composed);
    m_page.js(u"document.getSelection().removeAllRanges(); setContent("_s + jsString(html) + u")"_s);
    QCOMPARE(m_page.title(), title);
    QCOMPARE(m_page.body(), body);
    QCOMPARE(m_page.composed(), composed);
}

void TestPageContent::titleIsComposedWithoutWrappers_data()
{
    QTest::addColumn<QString>("inner");
    QTest::addColumn<QString>("composed");
    QTest::newRow("lines") << u"<div>Tea</div><div>Milk</div>"_s << u"<h1>TeaMilk</h1>"_s;
    QTest::newRow("only a break") << u"<br>"_s << u"<h1><br></h1>"_s;
    QTest::newRow("a break among blanks") << u"  <br>  "_s << u"<h1><br></h1>"_s;
    QTest::newRow("nothing") << QString() << u"<h1><br></h1>"_s;
}

void TestPageContent::titleIsComposedWithoutWrappers()
{
    QFETCH(QString, inner);
    QFETCH(QString, composed);
    m_page.load({}, {});
    m_page.js(u"titleEl.innerHTML = "_s + jsString(inner));
    QCOMPARE(m_page.composed(), composed);
}

void TestPageContent::markupIsCleaned_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("clean");
    const auto row = [](const char *name, const QString &html, const QString &clean) { QTest::newRow(name) << html << clean; };
    const QString all = u"<p>a</p><h1>a</h1><h2>a</h2><h3>a</h3><br><b>a</b><strong>a</strong><i>a</i><em>a</em><u>a</u><s>a</s>"
                        "<strike>a</strike><del>a</del><a href=\"https://example.org\">a</a><ul><li>a</li></ul><ol><li>a</li></ol><hr>"
                        "<img src=\"data:image/gif;base64,R0lGODlhAQABAAAAACw=\" alt=\"a\">"_s;
    row("what stays", all, all);
    row("attributes", u"<p class=\"x\" style=\"color:red\" data-a=\"b\">a</p>"_s, u"<p>a</p>"_s);
    row("attributes of links", u"<a href=\"https://example.org\" class=\"x\" target=\"_blank\" rel=\"y\">a</a>"_s,
        u"<a href=\"https://example.org\">a</a>"_s);
    row("link without an address", u"<a href=\"\" name=\"x\">a</a>"_s, u"<a>a</a>"_s);
    row("attributes of pictures", u"<img src=\"data:image/gif;base64,R0lGODlhAQABAAAAACw=\" alt=\"\" width=\"3\" style=\"x\">"_s,
        u"<img src=\"data:image/gif;base64,R0lGODlhAQABAAAAACw=\">"_s);
    row("wrappers", u"<div>a<span>b</span></div>"_s, u"ab"_s);
    row("nested wrappers", u"<div><div><p>a</p></div><span><span>b</span></span></div>"_s, u"<p>a</p>b"_s);
    row("other elements", u"<section><article>a <code>b</code> <font color=\"red\">c</font></article></section>"_s, u"a b c"_s);
    row("table", u"<table><tbody><tr><td>a</td><td>b</td></tr></tbody></table>"_s, u"ab"_s);
    row("comments", u"a<!-- b -->c"_s, u"ac"_s);
    row("checklist", u"<ul class=\"checklist x\"><li class=\"checked y\">a</li></ul>"_s,
        u"<ul class=\"checklist\"><li class=\"checked\">a</li></ul>"_s);
    row("boxes go", u"<ul class=\"checklist\"><li class=\"checked\"><span class=\"chk checked\" contenteditable=\"false\"></span>a</li></ul>"_s,
        u"<ul class=\"checklist\"><li class=\"checked\">a</li></ul>"_s);
    row("another list's class", u"<ul class=\"x\"><li class=\"y\">a</li></ul>"_s, u"<ul><li>a</li></ul>"_s);
    row("all formats", u"<span style=\"font-weight: 700; font-style: italic; text-decoration: underline line-through\">a</span>"_s,
        u"<b><i><u><s>a</s></u></i></b>"_s);
    row("bold by word", u"<span style=\"font-weight:bold\">a</span>"_s, u"<b>a</b>"_s);
    row("bold by number", u"<span style=\"font-weight :  600\">a</span>"_s, u"<b>a</b>"_s);
    row("bold by a high number", u"<span style=\"font-weight: 800\">a</span>"_s, u"<b>a</b>"_s);
    row("bold in capitals", u"<span style=\"FONT-WEIGHT: BOLD\">a</span>"_s, u"<b>a</b>"_s);
    row("not bold", u"<span style=\"font-weight: 400\">a</span>"_s, u"a"_s);
    row("italic", u"<span style=\"font-style: italic\">a</span>"_s, u"<i>a</i>"_s);
    row("underline by line", u"<span style=\"text-decoration-line: underline\">a</span>"_s, u"<u>a</u>"_s);
    row("decoration ends with its declaration", u"<span style=\"text-decoration: none; x: underline\">a</span>"_s, u"a"_s);
    row("wrapper of a block", u"<div style=\"font-weight: bold\"><p>a</p></div>"_s, u"<b><p>a</p></b>"_s);
    row("nested formats", u"<span style=\"font-weight: bold\">a<span style=\"font-style: italic\">b</span></span>"_s, u"<b>a<i>b</i></b>"_s);
}

void TestPageContent::markupIsCleaned()
{
    QFETCH(QString, html);
    QFETCH(QString, clean);
    const auto sanitized = [this](const QString &text) { return m_page.text(u"sanitizeHTML("_s + jsString(text) + u")"_s); };
    QCOMPARE(sanitized(html), clean);
    QCOMPARE(sanitized(clean), clean);
}

void TestPageContent::bodyIsCleanedOnlyWhenMarked_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("composed");
    const QString box = u"<span class=\"chk checked\" contenteditable=\"false\" role=\"checkbox\" aria-checked=\"true\"></span>"_s;
    const QString list = u"<ul class=\"checklist\"><li class=\"checked\">%1a</li></ul>"_s.arg(box);
    QTest::newRow("a clean one stays to the letter") << u"<p class=\"x\">a</p><p>b</p>"_s << u"<p class=\"x\">a</p><p>b</p>"_s;
    QTest::newRow("style") << u"<p style=\"color: red\">a</p>"_s << u"<p>a</p>"_s;
    QTest::newRow("class of foreign text") << u"<p class=\"text-content x\">a</p>"_s << u"<p>a</p>"_s;
    QTest::newRow("lines in wrappers stay lines") << u"<div>a</div><div>b</div>"_s << u"<p>a</p><p>b</p>"_s;
    QTest::newRow("an empty line in a wrapper") << u"<div>a</div><div><br></div><div>b</div>"_s << u"<p>a</p><p><br></p><p>b</p>"_s;
    QTest::newRow("first line without a wrapper") << u"a<div>b</div><div>c</div>"_s << u"a<p>b</p><p>c</p>"_s;
    QTest::newRow("a checklist") << list << list;
    QTest::newRow("a checklist beside a wrapper loses its boxes and keeps its ticks")
        << list + u"<div>x</div>"_s << u"<ul class=\"checklist\"><li class=\"checked\">a</li></ul><p>x</p>"_s;
}

void TestPageContent::bodyIsCleanedOnlyWhenMarked()
{
    QFETCH(QString, html);
    QFETCH(QString, composed);
    m_page.js(u"setContent("_s + jsString(u"<h1>T</h1>"_s + html) + u")"_s);
    QCOMPARE(m_page.composed(), u"<h1>T</h1>"_s + composed);
    m_page.js(u"setContent(getComposedHTML())"_s);
    QCOMPARE(m_page.composed(), u"<h1>T</h1>"_s + composed);
}

void TestPageContent::textThatSpeaksOfMarkupStays_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"style=\"color:red\"", "class='x'", "class=\"text-content\"", "<div>", "</div><h1>x</h1>", "&amp;lt;", "&lt;b&gt;",
                             "<script>alert(1)</script>", "a < b > c", "--> <!--", "\\n \\u2028 \" '", "javascript:alert(1)", "|☑ ☐"})
        QTest::newRow(text) << QString::fromUtf8(text);
}

void TestPageContent::textThatSpeaksOfMarkupStays()
{
    QFETCH(QString, text);
    for (const QString &block : {u"<p>%1</p>"_s, u"<ul><li>%1</li></ul>"_s, u"%1"_s}) {
        QString html = u"<h1>"_s + text.toHtmlEscaped() + u"</h1>"_s + block.arg(text.toHtmlEscaped());
        for (int round = 0; round < 3; ++round) {
            m_page.js(u"setContent("_s + jsString(html) + u")"_s);
            QCOMPARE(m_page.text(u"titleEl.textContent"_s), text);
            QCOMPARE(m_page.text(u"bodyEl.textContent"_s), text);
            html = m_page.composed();
        }
    }
}

void TestPageContent::checklistsAreMadeWhole_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("body");
    const auto list = [](const QString &items) { return u"<ul class=\"checklist\">"_s + items + u"</ul>"_s; };
    QTest::newRow("old form") << list(u"<li><input type=\"checkbox\">a</li><li><input type=\"checkbox\" checked>b</li>"_s)
                              << u"<check><li>☐a</li><li.checked>☑b</li></check>"_s;
    QTest::newRow("item follows its box") << list(u"<li class=\"checked\"><span class=\"chk\" contenteditable=\"false\"></span>a</li>"
                                                  "<li><span class=\"chk checked\" contenteditable=\"false\"></span>b</li>"_s)
                                          << u"<check><li>☐a</li><li.checked>☑b</li></check>"_s;
    QTest::newRow("empty item gets somewhere to type") << list(u"<li><span class=\"chk\" contenteditable=\"false\"></span> </li>"_s)
                                                       << u"<check><li>☐ <br></li></check>"_s;
    QTest::newRow("a picture is enough") << list(u"<li><span class=\"chk\" contenteditable=\"false\"></span><img></li>"_s)
                                         << u"<check><li>☐<img></li></check>"_s;
    // The repair of stored notes takes away the classes of boxes and items.
    QTest::newRow("after the repair") << list(u"<li><span contenteditable=\"false\" role=\"checkbox\" aria-checked=\"false\"></span>a</li>"
                                              "<li><span contenteditable=\"false\" role=\"checkbox\" aria-checked=\"true\"></span>b</li>"_s)
                                      << u"<check><li>☐a</li><li.checked>☑b</li></check>"_s;
    QTest::newRow("box without a role, after the repair") << list(u"<li><span contenteditable=\"false\"></span>a</li>"_s)
                                                          << u"<check><li>☐a</li></check>"_s;
    QTest::newRow("nested, after the repair")
        << list(u"<li>x</li><ul class=\"checklist\"><li><span contenteditable=\"false\" role=\"checkbox\" aria-checked=\"true\"></span>b</li></ul>"_s)
        << u"<check><li>x</li><check><li.checked>☑b</li></check></check>"_s;
    QTest::newRow("inputs elsewhere are no boxes") << u"<ul><li><input type=\"checkbox\">a</li></ul>"_s << u"<ul><li>a</li></ul>"_s;
}

void TestPageContent::checklistsAreMadeWhole()
{
    QFETCH(QString, html);
    QFETCH(QString, body);
    m_page.js(u"document.getSelection().removeAllRanges(); setContent("_s + jsString(u"<h1>T</h1>"_s + html) + u")"_s);
    QCOMPARE(m_page.body(), body);
    m_page.js(u"setContent(getComposedHTML())"_s);
    QCOMPARE(m_page.body(), body);
}

void TestPageContent::caretGoesWhereTheUserWillType_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("body");
    QTest::newRow("a new note") << u"<h1><br></h1>"_s << u"<br>|"_s << QString();
    QTest::newRow("blanks") << u"<h1>  </h1> <p> </p>"_s << u"  |"_s << u" <p> </p>"_s;
    QTest::newRow("only a title") << u"<h1>T</h1>"_s << u"T"_s << u"|"_s;
    QTest::newRow("only a body") << u"<h1><br></h1><p>a</p>"_s << u"<br>"_s << u"<p>a|</p>"_s;
    QTest::newRow("both") << u"<h1>T</h1>x<p>a</p>"_s << u"T"_s << u"x<p>a|</p>"_s;
    QTest::newRow("a heading") << u"<h1>T</h1><h2>a<b>b</b></h2>"_s << u"T"_s << u"<h2>a<b>b|</b></h2>"_s;
    QTest::newRow("an empty line") << u"<h1>T</h1><p>a</p><p><br></p>"_s << u"T"_s << u"<p>a</p><p>|<br></p>"_s;
    QTest::newRow("a nested list") << u"<h1>T</h1><ul><li>a</li><ul><li>b</li></ul></ul>"_s << u"T"_s << u"<ul><li>a</li><ul><li>b|</li></ul></ul>"_s;
    QTest::newRow("an empty item") << u"<h1>T</h1><ul class=\"checklist\"><li><span class=\"chk\"></span><br></li></ul>"_s << u"T"_s
                                   << u"<check><li>☐|<br></li></check>"_s;
    QTest::newRow("a divider") << u"<h1>T</h1><p>a</p><hr>"_s << u"T"_s << u"<p>a</p><hr>|"_s;
}

void TestPageContent::caretGoesWhereTheUserWillType()
{
    QFETCH(QString, html);
    QFETCH(QString, title);
    QFETCH(QString, body);
    m_page.js(u"document.activeElement.blur(); document.getSelection().removeAllRanges(); setContent("_s + jsString(html) + u"); focusBodyAtEnd()"_s);
    QTRY_COMPARE(m_page.title(), title);
    QTRY_COMPARE(m_page.body(), body);
    QCOMPARE(m_page.text(u"document.activeElement.id"_s), title.contains(u'|') ? u"title"_s : u"body"_s);
}

void TestPageContent::fontSizeIsTheBase()
{
    m_page.js(u"setFontSize(20.5)"_s);
    QCOMPARE(m_page.text(u"getComputedStyle(bodyEl).fontSize"_s), u"20.5px"_s);
    QCOMPARE(m_page.js(u"Math.round(parseFloat(getComputedStyle(titleEl).fontSize) * 1000)"_s).toInt(), 38335);
    m_page.js(u"setFontSize(15)"_s);
}

void TestPageContent::loadingReportsTheNormalizedForm()
{
    const QUuid note = QUuid::createUuid();
    m_page.ask(note, u"<h1>T</h1>"_s);
    QTRY_COMPARE(m_page.coordinator().loadedNoteID(), note);
    m_page.forgetReports();
    const QUuid other = QUuid::createUuid();
    m_page.ask(other, u"<h1 class=\"x\">T</h1><div>a</div>"_s);
    QTRY_COMPARE(m_page.changes.size(), 1U);
    QCOMPARE(m_page.changes[0].noteID, other);
    QCOMPARE(m_page.changes[0].html, u"<h1>T</h1><p>a</p>"_s);
}

void TestPageContent::numbersOfListsAreWhole_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("fontSize");
    for (const int count : {1, 9, 10, 48, 99, 100, 488}) {
        for (const double fontSize : {12.0, 15.0, 19.0})
            QTest::addRow("%d items, %g px", count, fontSize) << count << fontSize;
    }
}

/// Nothing to the left of the body is drawn: the widest number has to find room within it.
void TestPageContent::numbersOfListsAreWhole()
{
    QFETCH(int, count);
    QFETCH(double, fontSize);
    m_page.load(u"<ol>"_s + u"<li>a</li>"_s.repeated(count) + u"</ol><ul><li>b</li></ul>"_s);
    m_page.js(u"setFontSize(%1)"_s.arg(fontSize));
    const QVariantList widths = m_page.js(u"(() => { const probe = document.createElement('span'); probe.style.cssText = 'position: absolute; white-space: pre'; document.body.append(probe); "
                                          "const width = n => { probe.textContent = n + '. '; return probe.getBoundingClientRect().width; }; "
                                          "const items = [...bodyEl.querySelectorAll('ol > li')]; const widest = Math.max(...items.map((item, i) => width(i + 1))); "
                                          "probe.remove(); const left = bodyEl.getBoundingClientRect().left; const rooms = items.map(item => item.getBoundingClientRect().left - left); "
                                          "return [widest, Math.min(...rooms), Math.max(...rooms), bodyEl.querySelector('ul > li').getBoundingClientRect().left - left]; })()"_s).toList();
    QCOMPARE(widths.size(), 4);
    QVERIFY2(widths[0].toDouble() <= widths[1].toDouble(), qPrintable(u"%1 in %2"_s.arg(widths[0].toDouble()).arg(widths[1].toDouble())));
    QCOMPARE(widths[1].toDouble(), widths[2].toDouble()); // all items of a list in one line
    QCOMPARE(widths[3].toDouble(), 24.0);
    if (count < 10)
        QCOMPARE(widths[1].toDouble(), 24.0);
    m_page.js(u"setFontSize(15)"_s);
}

void TestPageContent::longWordsGoWithoutKerning_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("kerning");
    const QString shorter(1999, u'x');
    const QString longer(2000, u'x');
    const auto paragraph = [](const QString &text) { return u"<p>"_s + text + u"</p>"_s; };
    QTest::newRow("words") << u"T"_s << paragraph(u"milk and "_s.repeated(1000)) << u"auto"_s;
    QTest::newRow("short in the body") << u"T"_s << paragraph(shorter) << u"auto"_s;
    QTest::newRow("long in the body") << u"T"_s << paragraph(longer) << u"none"_s;
    QTest::newRow("short in the title") << shorter << paragraph(u"a"_s) << u"auto"_s;
    QTest::newRow("long in the title") << longer << paragraph(u"a"_s) << u"none"_s;
    QTest::newRow("long in front") << u"T"_s << paragraph(longer + u" a b"_s) << u"none"_s;
    QTest::newRow("long behind") << u"T"_s << paragraph(u"a b "_s + longer) << u"none"_s;
    QTest::newRow("long between") << u"T"_s << paragraph(u"a\n"_s + longer + u"\u00a0b"_s) << u"none"_s;
    QTest::newRow("short on both sides") << u"T"_s << paragraph(shorter + u' ' + shorter) << u"auto"_s;
    QTest::newRow("short in two lines") << u"T"_s << paragraph(shorter).repeated(2) << u"auto"_s;
    QTest::newRow("long in an item") << u"T"_s << u"<check><li>☐a</li><li>☐b<b>"_s + longer + u"</b></li></check>"_s << u"none"_s;
    QTest::newRow("a picture's address") << u"T"_s << u"<p>a<img src=\"data:image/gif;base64,"_s + longer + u"\"></p>"_s << u"auto"_s;
}

/// As it is asked for of the engine, whose time with a kerned word grows with the square of its length.
void TestPageContent::longWordsGoWithoutKerning()
{
    QFETCH(QString, title);
    QFETCH(QString, body);
    m_page.load(body, title);
    for (const QString &region : {u"titleEl"_s, u"bodyEl"_s})
        QTEST(m_page.text(u"getComputedStyle(%1).fontKerning"_s.arg(region)), "kerning");
}

void TestPageContent::wordThatGrowsLongGoesWithoutKerning()
{
    const auto kerning = [this] { return m_page.text(u"getComputedStyle(bodyEl).fontKerning"_s); };
    m_page.load(u"<p>"_s + QString(1998, u'x') + u"|</p>"_s);
    m_page.type(u"x"_s);
    QCOMPARE(kerning(), u"auto"_s);
    m_page.type(u"x"_s);
    QCOMPARE(kerning(), u"none"_s);
    m_page.run(EditorCommand::Kind::undo);
    m_page.load(u"<p>a</p>"_s);
    QCOMPARE(kerning(), u"auto"_s);
}

void TestPageContent::cancelledReportIsNotSent()
{
    m_page.load(u"<p>a|</p>"_s);
    QTRY_VERIFY(m_page.js(u"debounceTimer === null"_s).toBool());
    QSignalSpy messages(m_page.coordinator().webView(), &EditorWebView::messageReceived);
    m_page.js(u"bodyEl.append('x'); Promise.resolve().then(() => { window.wasPending = debounceTimer !== null; cancelDebounce(); "
              "setTimeout(() => { window.isOver = true; }, 2 * CHANGE_DEBOUNCE); }); null"_s);
    QTRY_VERIFY(m_page.js(u"window.isOver"_s).toBool());
    QVERIFY(m_page.js(u"window.wasPending"_s).toBool());
    QCOMPARE(std::ranges::count_if(messages, [](const QVariantList &m) { return m[0] == u"plim"_s; }), 0);
}

void TestPageContent::flushSendsAtOnce()
{
    m_page.load(u"<p>a|</p>"_s);
    m_page.forgetReports();
    m_page.js(u"bodyEl.firstChild.append('x'); flushNow(); cancelDebounce()"_s);
    QTRY_VERIFY(!m_page.changes.empty());
    QCOMPARE(m_page.changes.back().html, u"<h1>T</h1><p>ax</p>"_s);
}

PLIM_PAGE_TEST_MAIN(TestPageContent)
#include "tst_page_content.moc"
