#include "tests/page/PageFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTest>

using namespace Qt::StringLiterals;

/// Pasting from the real clipboard with the real key.
class TestPagePaste : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void pasteIntoBody_data();
    void pasteIntoBody();
    void pasteIntoTitle_data();
    void pasteIntoTitle();
    void longWordIsPastedInLinearTime_data();
    void longWordIsPastedInLinearTime();
    void pasteIsReported();
    void copiedTextComesBackWhole_data();
    void copiedTextComesBackWhole();
    void droppedTextIsTreatedAsPasted();
    void droppedFilesDoNothing();

private:
    void paste(const QString &html, const QString &plain);

    PageFixture m_page;
};

void TestPagePaste::initTestCase()
{
    QVERIFY(m_page.open(QUuid::createUuid(), u"<h1>T</h1>"_s));
}

void TestPagePaste::paste(const QString &html, const QString &plain)
{
    auto *data = new QMimeData;
    if (!html.isNull())
        data->setHtml(html);
    if (!plain.isNull())
        data->setText(plain);
    QGuiApplication::clipboard()->setMimeData(data);
    m_page.press(Qt::Key_V, Qt::ControlModifier);
}

void TestPagePaste::pasteIntoBody_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const QString &before, const QString &html, const QString &plain, const QString &after) {
        QTest::newRow(name) << before << html << plain << after;
    };
    row("one line of text", u"<p>a|b</p>"_s, {}, u"milk"_s, u"<p>amilk|b</p>"_s);
    row("text with markup in it", u"<p>a|b</p>"_s, {}, u"<b>&amp; \"x\"</b>"_s, u"<p>a<b>&amp; \"x\"</b>|b</p>"_s);
    row("lines of text", u"<p>a|</p>"_s, {}, u"milk\n\ntea"_s, u"<p>amilk</p><p><br></p><p>tea|</p>"_s);
    row("lines with carriage returns", u"|"_s, {}, u"milk\r\ntea"_s, u"<p>milk</p><p>tea|</p>"_s);
    row("lines with markup in them", u"|"_s, {}, u"<b>\n&amp;"_s, u"<p><b></p><p>&amp;|</p>"_s);
    row("lines into an empty paragraph", u"<p>x</p><p>|<br></p>"_s, {}, u"milk\ntea"_s, u"<p>x</p><p>milk</p><p>tea|</p>"_s);
    row("formatted text", u"<p>a|</p>"_s, u"<b>milk</b> tea"_s, u"milk tea"_s, u"<p>a<b>milk</b> tea|</p>"_s);
    row("a heading of the web", u"|"_s, u"<h2 style=\"color:red\" class=\"x\">milk</h2><p>tea</p>"_s, u"milk\ntea"_s, u"<h2>milk</h2><p>tea|</p>"_s);
    row("a list", u"|"_s, u"<ul><li>milk</li><li>tea</li></ul>"_s, u"milk\ntea"_s, u"<ul><li>milk</li><li>tea|</li></ul>"_s);
    row("span with formats", u"<p>a|</p>"_s, u"<span style=\"font-weight:700\">milk</span>"_s, u"milk"_s, u"<p>a<b>milk|</b></p>"_s);
    row("markup without any tag left", u"|"_s, u"<span>milk</span><span>tea</span>"_s, u"milk\n\ntea"_s, u"<p>milk</p><p><br></p><p>tea|</p>"_s);
    row("one line without any tag left", u"<p>a|b</p>"_s, u"<span>milk</span>"_s, u"milk"_s, u"<p>amilk|b</p>"_s);
    row("markup of lines in wrappers", u"|"_s, u"<div>milk</div><div><b>tea</b></div>"_s, u"milk\ntea"_s, u"<p>milk</p><p><b>tea|</b></p>"_s);
    row("blank markup falls back to text", u"<p>a|</p>"_s, u"<!-- x -->"_s, u"milk"_s, u"<p>amilk|</p>"_s);
    row("markup without text beside it", u"<p>a|</p>"_s, u"<i>milk</i>"_s, {}, u"<p>a<i>milk|</i></p>"_s);
    row("link", u"<p>a|</p>"_s, u"<a href=\"https://example.org/\" target=\"_blank\">milk</a>"_s, u"milk"_s,
        u"<p>a<a href=\"https://example.org/\">milk|</a></p>"_s);
    row("script", u"<p>a|</p>"_s, u"<b>milk</b><script>window.attacked = 1</script><img src=x onerror=\"window.attacked = 1\">"_s, u"milk"_s,
        u"<p>a<b>milk</b><img src=\"x\">|</p>"_s);
    row("over a selection", u"<p>a[b</p><p>c]d</p>"_s, {}, u"milk"_s, u"<p>amilk|d</p>"_s);

    row("blanks at the ends of a piece", u"<p>|one</p>"_s, u"<span>two </span>"_s, u"two "_s, u"<p>two |one</p>"_s);
    row("a table's rows are lines", u"|"_s, u"<table><tr><td><b>a</b></td><td>b</td></tr><tr><td>c</td><td>d</td></tr></table>"_s, u"a\tb\nc\td"_s,
        u"<p><b>a</b> b</p><p>c d|</p>"_s);
    row("foreign blocks are lines", u"|"_s, u"<h4>four</h4>after<blockquote>quote</blockquote><section>one</section><pre><b>x</b>\ny</pre>"_s, u"x"_s,
        u"<p>four</p>after<p>quote</p><p>one</p><p><b>x</b><br>y|</p>"_s);
    row("the clipboard's own break", u"<check><li>☐a|</li></check>"_s, u"<br class=\"Apple-interchange-newline\"><b>b</b>"_s, u"b"_s,
        u"<check><li>☐a<b>b</b>|</li></check>"_s);
    row("text into a checklist item", u"<check><li>☐a|</li></check>"_s, {}, u"milk"_s, u"<check><li>☐amilk|</li></check>"_s);
    row("lines into a checklist item", u"<check><li>☐a|</li><li.checked>☑z</li></check>"_s, {}, u"milk\ntea"_s,
        u"<check><li>☐amilk</li><li>☐tea|</li><li.checked>☑z</li></check>"_s);
    row("lines into the middle of an item", u"<check><li.checked>☑a|b</li></check>"_s, {}, u"milk\ntea"_s,
        u"<check><li.checked>☑amilk</li><li>☐tea|b</li></check>"_s);
    row("lines into an empty item", u"<check><li>☐|<br></li></check>"_s, {}, u"milk\ntea"_s, u"<check><li>☐milk</li><li>☐tea|</li></check>"_s);
    row("a list into a checklist item", u"<check><li>☐a|</li></check>"_s, u"<ul><li>milk</li><li>tea</li></ul>"_s, u"milk\ntea"_s,
        u"<check><li>☐amilk</li><li>☐tea|</li></check>"_s);
    row("a pasted checklist", u"<p>a</p><p>|<br></p>"_s,
        u"<ul class=\"checklist\"><li class=\"checked\"><span class=\"chk checked\" contenteditable=\"false\"></span>milk</li>"
        "<li><span class=\"chk\" contenteditable=\"false\"></span>tea</li></ul>"_s, u"milk\ntea"_s,
        u"<p>a</p><check><li.checked>☑milk</li><li>☐tea|</li></check>"_s);
}

void TestPagePaste::pasteIntoBody()
{
    QFETCH(QString, before);
    QFETCH(QString, html);
    QFETCH(QString, plain);
    QFETCH(QString, after);
    m_page.load(before);
    paste(html, plain);
    QTRY_COMPARE(m_page.body(), after);
    QCOMPARE(m_page.text(u"String(window.attacked)"_s), u"undefined"_s);
}

void TestPagePaste::pasteIntoTitle_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("after");
    QTest::newRow("text") << QString() << u"milk"_s << u"Shmilk|op"_s;
    QTest::newRow("lines") << QString() << u" milk\ntea\n"_s << u"Shmilk tea|op"_s;
    QTest::newRow("formatted") << u"<b>milk</b>\n<i>tea</i>"_s << u"milk\ntea"_s << u"Shmilk tea|op"_s;
    QTest::newRow("markup only") << u"<p>milk</p>\n<p>tea</p>"_s << QString() << u"Shmilk tea|op"_s;
}

void TestPagePaste::pasteIntoTitle()
{
    QFETCH(QString, html);
    QFETCH(QString, plain);
    QFETCH(QString, after);
    m_page.load(u"<p>x</p>"_s, u"Sh|op"_s);
    paste(html, plain);
    QTRY_COMPARE(m_page.title(), after);
    QCOMPARE(m_page.body(), u"<p>x</p>"_s);
}

void TestPagePaste::longWordIsPastedInLinearTime_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<bool>("inTitle");
    const QString word(1'000'000, u'x');
    QTest::newRow("plain") << QString() << word << false;
    QTest::newRow("plain lines") << QString() << word + u'\n' + word << false;
    QTest::newRow("markup") << u"<p>"_s + word + u"</p>"_s << word << false;
    QTest::newRow("markup alone") << u"<p>"_s + word + u"</p>"_s << QString() << false;
    QTest::newRow("title") << QString() << word << true;
}

/// The square of it would be minutes.
void TestPagePaste::longWordIsPastedInLinearTime()
{
    QFETCH(QString, html);
    QFETCH(QString, plain);
    QFETCH(bool, inTitle);
    m_page.load(inTitle ? u"<p>a</p>"_s : u"<p>a|</p>"_s, inTitle ? u"T|"_s : u"T"_s);
    paste(html, plain);
    QTRY_VERIFY(m_page.js(u"%1.textContent.length"_s.arg(inTitle ? u"titleEl"_s : u"bodyEl"_s)).toInt() > 1'000'000);
    m_page.load(u"<p>a|</p>"_s);
}

void TestPagePaste::pasteIsReported()
{
    m_page.load(u"<p>a|</p>"_s);
    m_page.forgetReports();
    paste({}, u"milk"_s);
    QTRY_VERIFY(!m_page.changes.empty());
    QCOMPARE(m_page.changes.back().html, u"<h1>T</h1><p>amilk</p>"_s);
}

void TestPagePaste::copiedTextComesBackWhole_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("paragraphs") << u"<p>[milk</p><p>tea]</p><p>x</p>"_s << u"<p>milk</p><p>tea</p><p>x</p><p>milk</p><p>tea|</p>"_s;
    QTest::newRow("checklist") << u"<check><li.checked>☑[milk</li><li>☐tea]</li></check><p>x</p>"_s
                               << u"<check><li.checked>☑milk</li><li>☐tea</li></check><p>x</p><check><li.checked>☑milk</li><li>☐tea|</li></check>"_s;
    QTest::newRow("list") << u"<ol><li>[milk</li><li>tea]</li></ol><p>x</p>"_s
                          << u"<ol><li>milk</li><li>tea</li></ol><p>x</p><ol><li>milk</li><li>tea|</li></ol>"_s;
    QTest::newRow("formats") << u"<p>[a <b>milk</b> <i>tea</i>]</p><p>x</p>"_s << u"<p>a <b>milk</b> <i>tea</i></p><p>x</p><p>a·<b>milk</b>·<i>tea|</i></p>"_s; // the engine copies so
}

/// Copied here, pasted on a line of its own at the end.
void TestPagePaste::copiedTextComesBackWhole()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    m_page.load(before);
    QGuiApplication::clipboard()->clear();
    m_page.press(Qt::Key_C, Qt::ControlModifier);
    QTRY_VERIFY(QGuiApplication::clipboard()->mimeData() && QGuiApplication::clipboard()->mimeData()->hasHtml());
    m_page.js(u"{ const p = document.createElement('p'); p.append(document.createElement('br')); bodyEl.append(p); placeCaretAtStart(p); } null"_s);
    m_page.press(Qt::Key_V, Qt::ControlModifier);
    QTRY_COMPARE(m_page.body(), after);
}

void TestPagePaste::droppedTextIsTreatedAsPasted()
{
    m_page.load(u"<p>milk</p>"_s);
    m_page.js(u"{ const data = new DataTransfer(); data.setData('text/html', '<b onclick=\"x()\">tea</b><script>1</script>'); "
              "const r = bodyEl.firstChild.getBoundingClientRect(); "
              "bodyEl.firstChild.dispatchEvent(new DragEvent('drop', { dataTransfer: data, bubbles: true, cancelable: true, "
              "clientX: r.left, clientY: r.top + r.height / 2 })); } null"_s);
    QCOMPARE(m_page.body(), u"<p><b>tea|</b>milk</p>"_s);
}

void TestPagePaste::droppedFilesDoNothing()
{
    m_page.load(u"<p>milk</p>"_s);
    QVERIFY(!m_page.js(u"{ const data = new DataTransfer(); data.items.add(new File(['x'], 'x.html', { type: 'text/html' })); "
                       "bodyEl.dispatchEvent(new DragEvent('drop', { dataTransfer: data, bubbles: true, cancelable: true })); }"_s).toBool());
    QCOMPARE(m_page.text(u"bodyEl.innerHTML"_s), u"<p>milk</p>"_s);
}

PLIM_PAGE_TEST_MAIN(TestPagePaste)
#include "tst_page_paste.moc"
