#include "tests/page/PageFixture.h"

#include "editor/ScriptLiteral.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace Qt::StringLiterals;

/// A hostile note stays a note: nothing in it runs, asks for anything or leads anywhere.
class TestPageLock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void attacksWorkWithoutTheLock();
    void attacksDoNothing_data();
    void attacksDoNothing();
    void attacksInTitleDoNothing_data();
    void attacksInTitleDoNothing();
    void pastedAttacksDoNothing_data();
    void pastedAttacksDoNothing();
    void linksLeadNowhere_data();
    void linksLeadNowhere();
    void harmlessMarkupStaysToTheLetter_data();
    void harmlessMarkupStaysToTheLetter();
    void noteCannotPoseAsThePage();
    void scriptOfThePageCannotReachOut_data();
    void scriptOfThePageCannotReachOut();
    void hostOffersToTakeMessages();

private:
    void settle();
    void checkUntouched();
    void pokeAround();

    PageFixture m_page;
    QTcpServer m_server; ///< whoever connects here has got out
    QString m_home;      ///< the page's own address
};

void TestPageLock::initTestCase()
{
    QVERIFY(m_server.listen(QHostAddress::LocalHost));
    QVERIFY(m_page.open(QUuid::createUuid(), u"<h1>T</h1>"_s));
    m_home = m_page.text(u"location.href"_s);
}

void TestPageLock::init()
{
    m_page.js(u"window.attacked = undefined"_s);
}

/// Longer than anything in the table waits.
void TestPageLock::settle()
{
    m_page.js(u"window.isCalm = false; setTimeout(() => { window.isCalm = true; }, 50); null"_s);
    QTRY_VERIFY(m_page.js(u"window.isCalm"_s).toBool());
}

/// Does to each element what a user might, and some things that nobody does.
void TestPageLock::pokeAround()
{
    m_page.js(u"for (const element of document.querySelectorAll('#title, #title *, #body *')) {"
              "  for (const type of ['click', 'mouseover', 'mouseenter', 'focus', 'focusin', 'pointerover', 'error', 'load', 'toggle',"
              "    'animationstart', 'submit', 'input', 'beforecopy', 'scroll']) {"
              "    element.dispatchEvent(new Event(type, { bubbles: true, cancelable: true }));"
              "  }"
              "  element.click();"
              "} null"_s);
}

void TestPageLock::checkUntouched()
{
    QCOMPARE(m_page.text(u"String(window.attacked)"_s), u"undefined"_s);
    QVERIFY(!m_server.hasPendingConnections());
    QCOMPARE(m_page.text(u"location.href"_s), m_home);
    QCOMPARE(m_page.text(u"String(window.opener) + window.length"_s), u"null0"_s);
}

/// The table's means of noticing do notice.
void TestPageLock::attacksWorkWithoutTheLock()
{
    m_page.js(u"bodyEl.innerHTML = '<img src=\"nowhere.png\" onerror=\"(window.attacked = 1)\"><b onclick=\"(window.attacked = 2)\">a</b>'; null"_s);
    QTRY_COMPARE(m_page.text(u"String(window.attacked)"_s), u"1"_s);
    pokeAround();
    QTRY_COMPARE(m_page.text(u"String(window.attacked)"_s), u"2"_s);
    m_page.js(u"fetch('http://127.0.0.1:1/').catch(() => { window.attacked = 3 }); null"_s);
    QTRY_COMPARE(m_page.text(u"String(window.attacked)"_s), u"3"_s);
}

void TestPageLock::attacksDoNothing_data()
{
    QTest::addColumn<QString>("html");
    const auto row = [this](const char *name, const QString &html) {
        QString text = html;
        text.replace(u"ATTACK"_s, u"(window.attacked = 1)"_s);
        text.replace(u"SERVER"_s, u"http://127.0.0.1:%1"_s.arg(m_server.serverPort()));
        QTest::newRow(name) << text;
    };
    row("script", u"<script>ATTACK</script>"_s);
    row("script from elsewhere", u"<script src=\"SERVER/a.js\"></script>"_s);
    row("module", u"<script type=\"module\">ATTACK</script>"_s);
    row("script in capitals", u"<SCRIPT>ATTACK</SCRIPT>"_s);
    row("script never closed", u"<script>ATTACK"_s);
    row("picture that fails", u"<img src=\"nowhere.png\" onerror=\"ATTACK\">"_s);
    row("picture without quotes", u"<img src=x onerror=ATTACK>"_s);
    row("picture with a slash", u"<img/src=x/onerror=ATTACK>"_s);
    row("attribute in capitals", u"<p ONCLICK=\"ATTACK\" OnMouseOver=ATTACK>a</p>"_s);
    row("attribute after a line break", u"<p\nonclick\n=\n\"ATTACK\">a</p>"_s);
    row("every event", u"<b onfocus=ATTACK onanimationstart=ATTACK onscroll=ATTACK onbeforecopy=ATTACK tabindex=0 autofocus>a</b>"_s);
    row("link to a script", u"<a href=\"javascript:ATTACK\">a</a>"_s);
    row("link to a script, disguised", u"<a href=\" \tJaVa\nScRiPt:ATTACK\">a</a>"_s);
    row("link to a script, as references", u"<a href=\"&#106;avascript&colon;ATTACK\">a</a>"_s);
    row("link to a script, control character", u"<a href=\"\x01javascript:ATTACK\">a</a>"_s);
    row("link to another script", u"<a href=\"vbscript:ATTACK\">a</a>"_s);
    row("link to data", u"<a href=\"data:text/html,<script>parent.attacked=1</script>\">a</a>"_s);
    row("picture of a script", u"<img src=\"javascript:ATTACK\">"_s);
    row("frame", u"<iframe src=\"javascript:parent.attacked=1\"></iframe>"_s);
    row("frame with its document", u"<iframe srcdoc=\"<script>parent.attacked=1</script>\"></iframe>"_s);
    row("frame from elsewhere", u"<iframe src=\"SERVER/\"></iframe>"_s);
    row("frame set", u"<frameset onload=ATTACK><frame src=\"SERVER/\"></frameset>"_s);
    row("object", u"<object data=\"data:text/html,<script>parent.attacked=1</script>\"></object>"_s);
    row("embed", u"<embed src=\"data:text/html,<script>parent.attacked=1</script>\">"_s);
    row("drawing", u"<svg onload=ATTACK><script>ATTACK</script></svg>"_s);
    row("drawing with an animation", u"<svg><animate onbegin=ATTACK attributeName=x dur=1s></svg>"_s);
    row("drawing with a link", u"<svg><a xlink:href=\"javascript:ATTACK\"><text x=0 y=20>a</text></a></svg>"_s);
    row("drawing with foreign content", u"<svg><foreignObject><img src=x onerror=ATTACK></foreignObject></svg>"_s);
    row("formula", u"<math href=\"javascript:ATTACK\"><mtext><img src=x onerror=ATTACK></mtext></math>"_s);
    row("markup that changes when parsed twice",
        u"<math><mtext><table><mglyph><style><!--</style><img title=\"--&gt;&lt;img src=1 onerror=ATTACK&gt;\">"_s);
    row("no-script", u"<noscript><p title=\"</noscript><img src=x onerror=ATTACK>\"></noscript>"_s);
    row("comment", u"<!--><img src=x onerror=ATTACK>-->"_s);
    row("template", u"<template><img src=x onerror=ATTACK></template>"_s);
    row("declared shadow", u"<div><template shadowroot=open><img src=x onerror=ATTACK></template></div>"_s);
    row("refresh", u"<meta http-equiv=\"refresh\" content=\"0;url=SERVER/\">"_s);
    row("base", u"<base href=\"SERVER/\"><img src=a.png><a href=b>b</a>"_s);
    row("style from elsewhere", u"<link rel=\"stylesheet\" href=\"SERVER/a.css\"><style>@import 'SERVER/b.css'; #body { background: url(SERVER/c.png) }</style>"_s);
    row("prefetch", u"<link rel=\"prefetch\" href=\"SERVER/\"><link rel=dns-prefetch href=\"SERVER/\"><link rel=preconnect href=\"SERVER/\">"_s);
    row("style attribute", u"<p style=\"background: url(SERVER/a.png)\">a</p>"_s);
    row("picture from elsewhere", u"<img src=\"SERVER/a.png\" srcset=\"SERVER/b.png 2x\">"_s);
    row("picture set", u"<picture><source srcset=\"SERVER/a.png\"><img src=\"SERVER/b.png\"></picture>"_s);
    row("old background", u"<table background=\"SERVER/a.png\"><tr><td>a</td></tr></table>"_s);
    row("sound and moving picture",
        u"<video src=\"SERVER/a\" poster=\"SERVER/b\" onerror=ATTACK></video><audio src=\"SERVER/c\" onerror=ATTACK><source onerror=ATTACK></audio>"_s);
    row("form", u"<form action=\"SERVER/\"><input name=a autofocus onfocus=ATTACK><button formaction=\"javascript:ATTACK\">a</button></form>"_s);
    row("form that sends itself", u"<form id=f action=\"javascript:ATTACK\"><input type=submit></form>"_s);
    row("input picture", u"<input type=image src=\"SERVER/a.png\" onerror=ATTACK>"_s);
    row("checklist input", u"<ul class=\"checklist\"><li><input type=\"checkbox\" onfocus=ATTACK autofocus onclick=ATTACK>a</li></ul>"_s);
    row("details", u"<details open ontoggle=ATTACK><summary onclick=ATTACK>a</summary></details>"_s);
    row("marquee", u"<marquee onstart=ATTACK loop=1 width=0>a</marquee>"_s);
    row("custom element", u"<x-a onclick=ATTACK is=x-b>a</x-a>"_s);
    row("map", u"<img usemap=\"#m\" src=x><map name=m><area href=\"javascript:ATTACK\" shape=default></map>"_s);
    row("ping", u"<a href=\"https://example.org\" ping=\"SERVER/\">a</a>"_s);
    row("unclosed attribute", u"<p title=\"a><img src=x onerror=ATTACK>\">b</p><img title='\"><img src=x onerror=ATTACK>'>"_s);
    row("foreign attribute prefix", u"<a xlink:href=\"javascript:ATTACK\" xml:base=\"javascript:ATTACK\" href=\"x\">a</a>"_s);
    row("box that is more than a box", u"<ul class=\"checklist\"><li><span class=\"chk\" onclick=ATTACK contenteditable=false>a</span>b</li></ul>"_s);
    row("heading that ends early", u"<p>a</p></h1></div></body></html><img src=x onerror=ATTACK>"_s);
}

void TestPageLock::attacksDoNothing()
{
    QFETCH(QString, html);
    m_page.js(u"setContent("_s + jsString(u"<h1>T</h1><p>before</p>"_s + html + u"<p>after</p>"_s) + u")"_s);
    pokeAround();
    settle();
    checkUntouched();
    QVERIFY(m_page.text(u"bodyEl.textContent"_s).contains(u"before"_s));
    // What the page made of it is harmless as well, and stays as it is.
    const QString composed = m_page.composed();
    m_page.js(u"setContent("_s + jsString(composed) + u")"_s);
    settle();
    checkUntouched();
    QCOMPARE(m_page.composed(), composed);
}

void TestPageLock::attacksInTitleDoNothing_data()
{
    attacksDoNothing_data();
}

void TestPageLock::attacksInTitleDoNothing()
{
    QFETCH(QString, html);
    m_page.js(u"setContent("_s + jsString(u"<h1>before"_s + html + u"</h1><p>after</p>"_s) + u")"_s);
    pokeAround();
    settle();
    checkUntouched();
    QVERIFY(m_page.text(u"document.body.textContent"_s).contains(u"before"_s));
}

void TestPageLock::pastedAttacksDoNothing_data()
{
    attacksDoNothing_data();
}

void TestPageLock::pastedAttacksDoNothing()
{
    QFETCH(QString, html);
    m_page.load(u"<p>a|b</p>"_s);
    m_page.js(u"{ const data = new DataTransfer(); data.setData('text/html', "_s + jsString(html)
              + u"); bodyEl.dispatchEvent(new ClipboardEvent('paste', { clipboardData: data, bubbles: true, cancelable: true })); } "
                "insertHTML("_s + jsString(html) + u")"_s);
    pokeAround();
    settle();
    checkUntouched();
}

void TestPageLock::linksLeadNowhere_data()
{
    QTest::addColumn<QString>("address");
    for (const char *address : {"https://example.org/", "mailto:a@example.org", "file:///etc/passwd", "#x", "?x", "x.html", "about:blank", "blob:null/x"})
        QTest::newRow(address) << QString::fromLatin1(address);
    QTest::newRow("server") << u"http://127.0.0.1:%1/"_s.arg(m_server.serverPort());
}

void TestPageLock::linksLeadNowhere()
{
    QFETCH(QString, address);
    m_page.load(u"<p><a href=\"%1\" target=\"_top\">link</a></p>"_s.arg(address));
    for (const Qt::KeyboardModifiers modifiers : {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::ShiftModifier), Qt::KeyboardModifiers(Qt::ControlModifier)}) {
        const QVariantList at = m_page.js(u"(() => { const r = document.querySelector('#body a').getBoundingClientRect(); return [r.x + 5, r.y + 5]; })()"_s).toList();
        const QPoint point(at[0].toInt(), at[1].toInt());
        QTest::mouseClick(&m_page.view(), Qt::LeftButton, modifiers, point);
        QTest::mouseClick(&m_page.view(), Qt::MiddleButton, modifiers, point);
        settle();
        checkUntouched();
    }
    m_page.js(u"document.querySelector('#body a')?.click(); null"_s);
    settle();
    checkUntouched();
    QCOMPARE(m_page.text(u"bodyEl.textContent"_s), u"link"_s);
}

void TestPageLock::harmlessMarkupStaysToTheLetter_data()
{
    QTest::addColumn<QString>("body");
    for (const char *body : {
             "<p>a &amp; b &lt;c&gt; \"d\" 'e'&nbsp;f</p>",
             "<p class=\"x\" title=\"a &amp; &quot;b&quot;\" data-a=\"1\" lang=\"pl\">żółć</p>",
             "text<br>text<p>a</p>\n  <p>b</p>",
             "<h2>a</h2><h3><b><i><u><s>a</s></u></i></b></h3><hr>",
             "<ul><li>a<ul><li>b</li></ul></li></ul><ol start=\"3\"><li value=\"5\">c</li></ol>",
             "<ul><li>a</li><ul><li>b</li></ul></ul>",
             "<a href=\"https://example.org/a?b=c&amp;d=e#f\">a</a> <a href=\"mailto:a@example.org\">b</a> <a href=\"relative/x\">c</a>",
             "<img src=\"data:image/gif;base64,R0lGODlhAQABAAAAACw=\" alt=\"a\"><img src=\"file:///nowhere/x.png\">",
             "<table><tbody><tr><td colspan=\"2\">a</td></tr></tbody></table><blockquote>b</blockquote><pre>c\n  d</pre><code>e</code>",
             "<ul class=\"checklist\"><li class=\"checked\"><span class=\"chk checked\" contenteditable=\"false\" role=\"checkbox\" aria-checked=\"true\"></span>a</li></ul>",
             "<p>onclick=\"x\" javascript:x &lt;script&gt;</p>",
         })
        QTest::newRow(body) << QString::fromUtf8(body);
}

void TestPageLock::harmlessMarkupStaysToTheLetter()
{
    QFETCH(QString, body);
    m_page.js(u"setContent("_s + jsString(u"<h1>T</h1>"_s + body) + u")"_s);
    QCOMPARE(m_page.composed(), u"<h1>T</h1>"_s + body);
}

/// Names in a note stand for nothing in the page.
void TestPageLock::noteCannotPoseAsThePage()
{
    m_page.js(u"setContent("_s + jsString(u"<h1>T</h1><p id=\"body\">a</p><p id=\"title\">b</p><a name=\"webkit\" id=\"setContent\">c</a>"
                                          "<form name=\"body\"><input name=\"cookie\"></form><img name=\"getSelection\" src=\"x\">"_s) + u")"_s);
    QCOMPARE(m_page.text(u"document.getElementById('body') === bodyEl && document.getElementById('title') === titleEl"_s), u"true"_s);
    QCOMPARE(m_page.text(u"typeof document.getSelection + typeof window.setContent"_s), u"functionfunction"_s);
    QCOMPARE(m_page.text(u"document.body.tagName"_s), u"BODY"_s);
}

/// Even were a script to run: the room has no way out.
void TestPageLock::scriptOfThePageCannotReachOut_data()
{
    QTest::addColumn<QString>("script");
    const QString server = u"'http://127.0.0.1:%1/'"_s.arg(m_server.serverPort());
    const auto row = [&](const char *name, const QString &script) { QTest::newRow(name) << QString(script).replace(u"SERVER"_s, server); };
    row("fetch", u"fetch(SERVER).catch(() => {})"_s);
    row("fetch a file", u"fetch('file:///etc/passwd').then(() => { window.attacked = 1 }, () => {})"_s);
    row("request", u"{ const r = new XMLHttpRequest(); r.onload = () => { window.attacked = 1 }; r.open('GET', 'file:///etc/hostname'); r.send(); }"_s);
    row("beacon", u"navigator.sendBeacon(SERVER, 'x')"_s);
    row("picture", u"new Image().src = SERVER"_s);
    row("socket", u"new WebSocket('ws://127.0.0.1:%1/')"_s.arg(m_server.serverPort()));
    row("event source", u"new EventSource(SERVER)"_s);
    row("navigation", u"location.href = SERVER"_s);
    row("navigation to a file", u"location.href = 'file:///etc/'"_s);
    row("navigation to data", u"location.href = 'data:text/html,x'"_s);
    row("reload", u"location.reload()"_s);
    row("new window", u"window.open(SERVER)"_s);
    row("frame", u"{ const f = document.createElement('iframe'); f.src = SERVER; bodyEl.append(f); }"_s);
    row("frame of a file", u"{ const f = document.createElement('iframe'); f.onload = () => { try { if (f.contentDocument.body.textContent) window.attacked = 1; } catch (e) {} }; "
                           "f.src = 'file:///etc/passwd'; bodyEl.append(f); }"_s);
    row("script element", u"{ const s = document.createElement('script'); s.src = SERVER; document.head.append(s); }"_s);
    row("worker", u"try { new Worker(SERVER); } catch (e) {}"_s);
    row("dialog", u"alert('x'); confirm('x'); prompt('x')"_s);
}

void TestPageLock::scriptOfThePageCannotReachOut()
{
    QFETCH(QString, script);
    m_page.load(u"<p>milk</p>"_s);
    m_page.js(script + u"; null"_s);
    settle();
    settle();
    QVERIFY(!m_server.hasPendingConnections());
    QCOMPARE(m_page.text(u"String(window.attacked)"_s), u"undefined"_s);
    QCOMPARE(m_page.text(u"location.href"_s), m_home);
    QVERIFY(m_page.text(u"bodyEl.textContent"_s).contains(u"milk"_s));
    m_page.js(u"for (const f of document.querySelectorAll('iframe')) f.remove(); null"_s);
}

/// The object that the page talks to can do nothing but take a message.
void TestPageLock::hostOffersToTakeMessages()
{
    m_page.js(u"new QWebChannel(qt.webChannelTransport, channel => { window.offered = Object.keys(channel.objects) + ':' + "
              "Object.keys(channel.objects.host).filter(name => typeof channel.objects.host[name] === 'function' && "
              "!['unwrapQObject', 'unwrapProperties', 'propertyUpdate', 'signalEmitted', 'toJSON'].includes(name)); }); null"_s);
    QTRY_COMPARE(m_page.text(u"String(window.offered)"_s),
                 u"host:deleteLater,deleteLater(),receive,receive(QString,QString),receiveBeginning,receiveBeginning(QString),"
                 "receiveMiddle,receiveMiddle(QString),receiveEnd,receiveEnd(QString,QString)"_s);
    // The channel offers to delete, but does so only with objects of its own making.
    m_page.js(u"new QWebChannel(qt.webChannelTransport, channel => { channel.objects.host.deleteLater(); window.isAsked = true; }); null"_s);
    QTRY_VERIFY(m_page.js(u"window.isAsked"_s).toBool());
    m_page.forgetReports();
    m_page.js(u"post('plimLog', 'still there')"_s);
    QTRY_COMPARE(m_page.logs, std::vector<QString>{u"still there"_s});
}

PLIM_PAGE_TEST_MAIN(TestPageLock)
#include "tst_page_lock.moc"
