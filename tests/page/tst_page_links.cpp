#include "tests/page/PageFixture.h"

#include "editor/ScriptLiteral.h"

#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

using Kind = EditorCommand::Kind;

/// Links: the command that makes and changes them, the pointer over them and the click that opens them.
class TestPageLinks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void addresses_data();
    void addresses();
    void addressesThatDoNothing_data();
    void addressesThatDoNothing();
    void linkCommand_data();
    void linkCommand();
    void linkCommandInTitle_data();
    void linkCommandInTitle();
    void linkIsMadeWhereTheCaretWasLeft();
    void linkAtCaret_data();
    void linkAtCaret();
    void linkAtCaretInTitle();
    void linkAtCaretIsKnownWithoutTheKeyboard();
    void linkAtCaretReachesTheController();
    void controlClickOpens_data();
    void controlClickOpens();
    void otherClicksOpenNothing_data();
    void otherClicksOpenNothing();
    void selectingOpensNothing();
    void plainClickPlacesTheCaret();
    void hoveredLinkIsTold_data();
    void hoveredLinkIsTold();
    void hoveredLinkEndsWithItsNote();
    void handOverLinkWithControl();

private:
    QPoint place(const QString &selector);
    void moveTo(const QPoint &point);
    QUrl hovered() { return m_page.coordinator().hoveredLink(); }

    PageFixture m_page;
};

void TestPageLinks::initTestCase()
{
    QVERIFY(m_page.open(QUuid::createUuid(), u"<h1>T</h1>"_s));
}

void TestPageLinks::addresses_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("address");
    const auto row = [](const char *typed, const QString &address) { QTest::newRow(typed) << QString::fromUtf8(typed) << address; };
    row("https://example.org/", u"https://example.org/"_s);
    row("HTTP://Example.org", u"HTTP://Example.org"_s);
    row(" \t https://example.org/a \n", u"https://example.org/a"_s);
    row("example.org", u"https://example.org"_s);
    row("  example.org  ", u"https://example.org"_s);
    row("example.org/path?x=1", u"https://example.org/path?x=1"_s);
    row("example.org/a:b", u"https://example.org/a:b"_s);
    row("example.org/@ala", u"https://example.org/@ala"_s);
    row("example.org#a", u"https://example.org#a"_s);
    row("//example.org/x", u"https://example.org/x"_s);
    row("localhost", u"https://localhost"_s);
    row("localhost:8080", u"https://localhost:8080"_s);
    row("localhost:8080/a?b#c", u"https://localhost:8080/a?b#c"_s);
    row("example.org:443", u"https://example.org:443"_s);
    row("example.org:8080/a:b", u"https://example.org:8080/a:b"_s);
    row("127.0.0.1:80", u"https://127.0.0.1:80"_s);
    row("[::1]:80", u"https://[::1]:80"_s);
    row("żółw.pl", u"https://żółw.pl"_s);
    row("jan@example.org", u"mailto:jan@example.org"_s);
    row("jan.k+notes@example.org?subject=a:b", u"mailto:jan.k+notes@example.org?subject=a:b"_s);
    row("mailto:jan@example.org", u"mailto:jan@example.org"_s);
    row("ftp://example.org/", u"ftp://example.org/"_s);
    row("tel:112", u"tel:112"_s);
}

void TestPageLinks::addresses()
{
    QFETCH(QString, typed);
    QFETCH(QString, address);
    m_page.load(u"<p>a [milk] b</p>"_s);
    m_page.run(EditorCommand::link(typed));
    QCOMPARE(m_page.body(), u"<p>a <a href=\"%1\">milk|</a> b</p>"_s.arg(address));
}

void TestPageLinks::addressesThatDoNothing_data()
{
    QTest::addColumn<QString>("typed");
    for (const char *typed : {"", " ", " \n\t ", "https://", "http://", " HTTPS:// ", "https:", "https://…", "https://...", "http://…", "…", "//", "mailto:",
                              "javascript:alert(1)", " JavaScript:alert(1)", "java\nscript:alert(1)", "java\tscript:8080", "\x01javascript:1",
                              "vbscript:x", "data:text/html,x", "file:///etc/passwd", "FILE:/etc/passwd", "blob:x", "about:blank", "qrc:/x"})
        QTest::newRow(typed) << QString::fromUtf8(typed);
}

void TestPageLinks::addressesThatDoNothing()
{
    QFETCH(QString, typed);
    const QString before = u"<p>a [milk] <a href=\"https://example.org/\">tea</a></p>"_s;
    m_page.load(before);
    m_page.forgetReports();
    m_page.run(EditorCommand::link(typed));
    QCOMPARE(m_page.body(), before);
    m_page.load(u"<p>a <a href=\"https://example.org/\">te|a</a></p>"_s);
    m_page.run(EditorCommand::link(typed));
    QCOMPARE(m_page.body(), u"<p>a <a href=\"https://example.org/\">te|a</a></p>"_s);
    QCOMPARE(m_page.js(u"past.length"_s).toInt(), 0); // no step either
}

void TestPageLinks::linkCommand_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("afterTyping");
    // A is a link to a.org, N one to the new address.
    const auto row = [](const char *name, QString before, QString after, QString afterTyping) {
        for (QString *text : {&before, &after, &afterTyping}) {
            text->replace(u"<A>"_s, u"<a href=\"https://a.org/\">"_s);
            text->replace(u"<N>"_s, u"<a href=\"https://example.org\">"_s);
        }
        QTest::newRow(name) << before << after << afterTyping;
    };
    row("empty note", u"|"_s, u"<N>https://example.org|</a>"_s, u"<N>https://example.org</a>z|"_s);
    row("empty paragraph", u"<p>|<br></p>"_s, u"<p><N>https://example.org|</a></p>"_s, u"<p><N>https://example.org</a>z|</p>"_s);
    row("within text", u"<p>a|b</p>"_s, u"<p>a<N>https://example.org|</a>b</p>"_s, u"<p>a<N>https://example.org</a>z|b</p>"_s);
    row("within bold", u"<p><b>a|b</b></p>"_s, u"<p><b>a<N>https://example.org|</a>b</b></p>"_s, u"<p><b>a<N>https://example.org</a>z|b</b></p>"_s);
    row("in front of a link", u"<p>a|<A>milk</a></p>"_s, u"<p>a<N>https://example.org|</a><A>milk</a></p>"_s, u"<p>a<N>https://example.org</a>z|<A>milk</a></p>"_s);
    row("in a heading", u"<h2>a|b</h2>"_s, u"<h2>a<N>https://example.org|</a>b</h2>"_s, u"<h2>a<N>https://example.org</a>z|b</h2>"_s);
    row("in an empty item", u"<check><li>☐|<br></li></check>"_s, u"<check><li>☐<N>https://example.org|</a></li></check>"_s,
        u"<check><li>☐<N>https://example.org</a>z|</li></check>"_s);
    row("in a ticked item", u"<check><li.checked>☑a|b</li></check>"_s, u"<check><li.checked>☑a<N>https://example.org|</a>b</li></check>"_s,
        u"<check><li.checked>☑a<N>https://example.org</a>z|b</li></check>"_s);

    row("selection", u"<p>a [milk] b</p>"_s, u"<p>a <N>milk|</a> b</p>"_s, u"<p>a <N>milk</a>z| b</p>"_s);
    row("selection in a heading", u"<h2>[milk]</h2>"_s, u"<h2><N>milk|</a></h2>"_s, u"<h2><N>milk</a>z|</h2>"_s);
    row("selection over paragraphs", u"<p>[a</p><p>b]</p>"_s, u"<p><N>a</a></p><p><N>b|</a></p>"_s, u"<p><N>a</a></p><p><N>b</a>z|</p>"_s);
    row("selection over items", u"<check><li>☐[a</li><li.checked>☑b]</li></check>"_s,
        u"<check><li>☐<N>a</a></li><li.checked>☑<N>b|</a></li></check>"_s, u"<check><li>☐<N>a</a></li><li.checked>☑<N>b</a>z|</li></check>"_s);
    row("selection within a link", u"<p><A>m[il]k</a></p>"_s, u"<p><A>m</a><N>il|</a><A>k</a></p>"_s, u"<p><A>m</a><N>il</a>z|<A>k</a></p>"_s);
    row("selection of a whole link", u"<p>x <A>[milk]</a> y</p>"_s, u"<p>x <N>milk|</a> y</p>"_s, u"<p>x <N>milk</a>z| y</p>"_s);
    row("selection that ends behind a link", u"<p><A>m[ilk</a> y]</p>"_s, u"<p><A>m</a><N>ilk y|</a></p>"_s, u"<p><A>m</a><N>ilk y</a>z|</p>"_s);

    row("caret in a link", u"<p>x<A>mi|lk</a>y</p>"_s, u"<p>x<N>mi|lk</a>y</p>"_s, u"<p>x<N>miz|lk</a>y</p>"_s);
    row("caret in bold in a link", u"<p><A>m<b>i|l</b>k</a></p>"_s, u"<p><N>m<b>i|l</b>k</a></p>"_s, u"<p><N>m<b>iz|l</b>k</a></p>"_s);
    row("caret in a link that is its text", u"<p>x<A>https://|a.org/</a>y</p>"_s, u"<p>x<N>https://example.org|</a>y</p>"_s,
        u"<p>x<N>https://example.org</a>z|y</p>"_s);
    row("caret in a link in an item", u"<check><li>☐<A>mi|lk</a></li></check>"_s, u"<check><li>☐<N>mi|lk</a></li></check>"_s,
        u"<check><li>☐<N>miz|lk</a></li></check>"_s);
    row("caret in a link in a heading", u"<h3><A>mi|lk</a></h3>"_s, u"<h3><N>mi|lk</a></h3>"_s, u"<h3><N>miz|lk</a></h3>"_s);
}

void TestPageLinks::linkCommand()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, afterTyping);
    m_page.load(before);
    m_page.forgetReports();
    m_page.run(EditorCommand::link(u"example.org"_s));
    QCOMPARE(m_page.body(), after);
    QTRY_VERIFY(!m_page.changes.empty());
    m_page.run(Kind::undo);
    QCOMPARE(m_page.body(), before);
    m_page.run(Kind::redo);
    QCOMPARE(m_page.body(), after);
    m_page.type(u"z"_s);
    QTRY_COMPARE(m_page.body(), afterTyping);
}

void TestPageLinks::linkCommandInTitle_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("selection") << u"a[b]c"_s << u"a<a href=\"https://example.org\">b|</a>c"_s;
    QTest::newRow("nothing selected") << u"a|c"_s << u"a<a href=\"https://example.org\">https://example.org|</a>c"_s;
    QTest::newRow("caret in a link") << u"<a href=\"https://a.org\">a|b</a>c"_s << u"<a href=\"https://example.org\">a|b</a>c"_s;
}

void TestPageLinks::linkCommandInTitle()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    m_page.load(u"<p>x</p>"_s, before);
    m_page.run(EditorCommand::link(u"example.org"_s));
    QCOMPARE(m_page.title(), after);
    QCOMPARE(m_page.body(), u"<p>x</p>"_s);
    m_page.run(Kind::undo);
    QCOMPARE(m_page.title(), before);
}

/// The dialog has the keyboard while the address is typed.
void TestPageLinks::linkIsMadeWhereTheCaretWasLeft()
{
    m_page.load(u"<p>a [milk] b</p>"_s);
    m_page.js(u"document.activeElement.blur(); document.getSelection().removeAllRanges(); null"_s);
    m_page.run(EditorCommand::link(u"example.org"_s));
    QCOMPARE(m_page.body(), u"<p>a <a href=\"https://example.org\">milk|</a> b</p>"_s);
}

void TestPageLinks::linkAtCaret_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("address");
    const auto row = [](const char *name, QString body, const QString &address) {
        body.replace(u"<A>"_s, u"<a href=\"a.org/?b=1&c=2\">"_s);
        body.replace(u"<B>"_s, u"<a href=\"https://b.org\">"_s);
        QTest::newRow(name) << body << address;
    };
    const QString a = u"a.org/?b=1&c=2"_s; // as written, not as resolved
    row("no link", u"<p>a|b <A>milk</a></p>"_s, {});
    row("empty note", u"|"_s, {});
    row("caret in a link", u"<p><A>mi|lk</a></p>"_s, a);
    row("caret at its start", u"<p><A>|milk</a></p>"_s, a);
    row("caret at its end", u"<p><A>milk|</a></p>"_s, a);
    row("caret in bold in a link", u"<p><A>m<b>i|l</b>k</a></p>"_s, a);
    row("caret in a link in bold", u"<p><b>x<A>mi|lk</a></b></p>"_s, a);
    row("caret in a link in an item", u"<check><li>☐<A>mi|lk</a></li></check>"_s, a);
    row("selection in a link", u"<p><A>m[il]k</a></p>"_s, a);
    row("selection of a link", u"<p>x[<A>milk</a>]y</p>"_s, a);
    row("selection around a link", u"<p>[x<A>milk</a>y]</p>"_s, a);
    row("selection over two links", u"<p>[x<B>milk</a>y<A>tea</a>]</p>"_s, u"https://b.org"_s);
    row("selection that begins in a link", u"<p><A>mi[lk</a>y]</p>"_s, a);
    row("selection from the end of a link on", u"<p><A>milk[</a>y]</p>"_s, {});
    row("selection beside a link", u"<p>[x]<A>milk</a></p>"_s, {});
    row("selection of a picture in a link", u"<p>x[<A><img src=\"x\"></a>]</p>"_s, a);
}

void TestPageLinks::linkAtCaret()
{
    QFETCH(QString, body);
    QFETCH(QString, address);
    m_page.load(body);
    QCOMPARE(m_page.text(u"linkAtCaret()"_s), address);
    QCOMPARE(m_page.body(), body);
}

void TestPageLinks::linkAtCaretInTitle()
{
    m_page.load(u"<p><a href=\"https://b.org\">b</a></p>"_s, u"<a href=\"https://a.org\">a|b</a>c"_s);
    QCOMPARE(m_page.text(u"linkAtCaret()"_s), u"https://a.org"_s);
}

void TestPageLinks::linkAtCaretIsKnownWithoutTheKeyboard()
{
    m_page.load(u"<p><a href=\"https://b.org\">b|c</a></p>"_s);
    m_page.js(u"document.activeElement.blur(); document.getSelection().removeAllRanges(); null"_s);
    QCOMPARE(m_page.text(u"linkAtCaret()"_s), u"https://b.org"_s);
    m_page.js(u"setContent('<h1>T</h1><p>x</p>')"_s);
    QCOMPARE(m_page.text(u"linkAtCaret()"_s), QString());
}

void TestPageLinks::linkAtCaretReachesTheController()
{
    m_page.load(u"<p><a href=\"https://b.org\">b|c</a></p>"_s);
    EditorController *controller = m_page.coordinator().controller();
    const QSignalSpy answers(controller, &EditorController::linkAtCaretReady);
    controller->requestLinkAtCaret();
    QTRY_COMPARE(answers.size(), 1);
    QCOMPARE(answers[0][0].toString(), u"https://b.org"_s);
}

QPoint TestPageLinks::place(const QString &selector)
{
    const QVariantList at = m_page.js(u"(() => { const r = document.querySelector("_s + jsString(selector)
                                      + u").getBoundingClientRect(); return [r.x + 7, r.y + r.height / 2]; })()"_s).toList();
    return at.size() == 2 ? QPoint(at[0].toInt(), at[1].toInt()) : QPoint();
}

void TestPageLinks::controlClickOpens_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("selector");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QUrl>("opened");
    const auto row = [](const char *name, const QString &title, const QString &body, const QString &opened, const QString &selector = u"a"_s,
                        Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        QTest::newRow(name) << title << body << selector << modifiers << QUrl(opened);
    };
    const QString a = u"<a href=\"https://example.org/a?b=c&amp;d=%20e#f\">link link</a>"_s;
    const QString address = u"https://example.org/a?b=c&d=%20e#f"_s;
    row("in a paragraph", u"T"_s, u"<p>x %1</p>"_s.arg(a), address);
    row("in a heading", u"T"_s, u"<h2>x %1</h2>"_s.arg(a), address);
    row("in an item", u"T"_s, u"<check><li>☐%1</li></check>"_s.arg(a), address);
    row("in the title", a, u"<p>x</p>"_s, address);
    row("bold in it", u"T"_s, u"<p><a href=\"http://example.org\"><b>link link</b></a></p>"_s, u"http://example.org/"_s, u"b"_s);
    row("mail", u"T"_s, u"<p><a href=\"mailto:ala@example.org\">link link</a></p>"_s, u"mailto:ala@example.org"_s);
    row("in capitals", u"T"_s, u"<p><a href=\"HTTPS://EXAMPLE.org/A\">link link</a></p>"_s, u"https://example.org/A"_s);
    row("with the other command key", u"T"_s, u"<p>%1</p>"_s.arg(a), address, u"a"_s, Qt::MetaModifier);
    row("to a file", u"T"_s, u"<p><a href=\"file:///etc/passwd\">link link</a></p>"_s, {});
    row("relative", u"T"_s, u"<p><a href=\"x.html\">link link</a></p>"_s, {});
    row("to another scheme", u"T"_s, u"<p><a href=\"ftp://example.org/\">link link</a></p>"_s, {});
    row("beside the link", u"T"_s, u"<p><i>milk and tea</i> %1</p>"_s.arg(a), {}, u"i"_s);
}

void TestPageLinks::controlClickOpens()
{
    QFETCH(QString, title);
    QFETCH(QString, body);
    QFETCH(QString, selector);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QUrl, opened);
    m_page.load(body, title);
    const QString before = m_page.composed();
    PageFixture::openedLinks().clear();
    QTest::mouseClick(&m_page.view(), Qt::LeftButton, modifiers, place(selector));
    if (opened.isEmpty()) {
        // A click that does open shows that the one before it has been dealt with.
        m_page.js(u"bodyEl.insertAdjacentHTML('beforeend', '<p><a class=\"last\" href=\"https://last.org/\">last last</a></p>'); null"_s);
        QTest::mouseClick(&m_page.view(), Qt::LeftButton, Qt::ControlModifier, place(u".last"_s));
        QTRY_VERIFY(!PageFixture::openedLinks().empty());
        QCOMPARE(PageFixture::openedLinks(), std::vector<QUrl>{QUrl(u"https://last.org/"_s)});
        return;
    }
    QTRY_COMPARE(PageFixture::openedLinks(), std::vector<QUrl>{opened});
    QCOMPARE(m_page.composed(), before);
}

void TestPageLinks::otherClicksOpenNothing_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("plain") << Qt::LeftButton << Qt::KeyboardModifiers();
    QTest::newRow("Shift") << Qt::LeftButton << Qt::KeyboardModifiers(Qt::ShiftModifier);
    QTest::newRow("Alt") << Qt::LeftButton << Qt::KeyboardModifiers(Qt::AltModifier);
    QTest::newRow("middle") << Qt::MiddleButton << Qt::KeyboardModifiers();
    QTest::newRow("middle with Ctrl") << Qt::MiddleButton << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("right with Ctrl") << Qt::RightButton << Qt::KeyboardModifiers(Qt::ControlModifier);
}

void TestPageLinks::otherClicksOpenNothing()
{
    QFETCH(Qt::MouseButton, button);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    m_page.load(u"<p>x <a href=\"https://first.org/\">link link</a></p><p><a class=\"last\" href=\"https://last.org/\">last last</a></p>"_s);
    const QString home = m_page.text(u"location.href"_s);
    PageFixture::openedLinks().clear();
    QTest::mouseClick(&m_page.view(), button, modifiers, place(u"a"_s));
    QTest::mouseClick(&m_page.view(), Qt::LeftButton, Qt::ControlModifier, place(u".last"_s));
    QTRY_VERIFY(!PageFixture::openedLinks().empty());
    QCOMPARE(PageFixture::openedLinks(), std::vector<QUrl>{QUrl(u"https://last.org/"_s)});
    QCOMPARE(m_page.text(u"location.href"_s), home);
}

/// The press and the release of a drag within a link make a click, too.
void TestPageLinks::selectingOpensNothing()
{
    m_page.load(u"<p><a href=\"https://first.org/\">link link link</a></p><p><a class=\"last\" href=\"https://last.org/\">last last</a></p>"_s);
    PageFixture::openedLinks().clear();
    const QPoint from = place(u"a"_s);
    QTest::mousePress(&m_page.view(), Qt::LeftButton, Qt::ControlModifier, from);
    QMouseEvent move(QEvent::MouseMove, from + QPoint(50, 0), m_page.view().mapToGlobal(from + QPoint(50, 0)), Qt::NoButton, Qt::LeftButton,
                     Qt::ControlModifier);
    QCoreApplication::sendEvent(&m_page.view(), &move);
    QTRY_VERIFY(!m_page.js(u"document.getSelection().isCollapsed"_s).toBool());
    QTest::mouseRelease(&m_page.view(), Qt::LeftButton, Qt::ControlModifier, from + QPoint(50, 0));
    QTest::mouseClick(&m_page.view(), Qt::LeftButton, Qt::ControlModifier, place(u".last"_s));
    QTRY_VERIFY(!PageFixture::openedLinks().empty());
    QCOMPARE(PageFixture::openedLinks(), std::vector<QUrl>{QUrl(u"https://last.org/"_s)});
}

void TestPageLinks::plainClickPlacesTheCaret()
{
    m_page.load(u"<p>|x</p><p><a href=\"https://example.org/\">link</a></p>"_s);
    m_page.click(u"a"_s);
    QTRY_COMPARE(m_page.text(u"document.getSelection().anchorNode.data"_s), u"link"_s);
    m_page.type(u"z"_s);
    QTRY_VERIFY(m_page.text(u"document.querySelector('#body a').textContent"_s).contains(u'z'));
}

/// Twice: the page hears of a pointer that moves.
void TestPageLinks::moveTo(const QPoint &point)
{
    QTest::mouseMove(&m_page.view(), point - QPoint(1, 0));
    QTest::mouseMove(&m_page.view(), point);
}

void TestPageLinks::hoveredLinkIsTold_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QUrl>("told");
    QTest::newRow("web") << QString() << u"https://example.org/a"_s << QUrl(u"https://example.org/a"_s);
    QTest::newRow("mail") << QString() << u"mailto:ala@example.org"_s << QUrl(u"mailto:ala@example.org"_s);
    QTest::newRow("file") << QString() << u"file:///etc/passwd"_s << QUrl();
    QTest::newRow("relative") << QString() << u"x.html"_s << QUrl();
    QTest::newRow("in the title") << u"<a class=\"link\" href=\"http://title.org/\">title</a>"_s << u"https://example.org/a"_s << QUrl(u"http://title.org/"_s);
}

void TestPageLinks::hoveredLinkIsTold()
{
    QFETCH(QString, title);
    QFETCH(QString, address);
    QFETCH(QUrl, told);
    m_page.load(u"<p><i>text text</i></p><p><a class=\"link\" href=\"%1\">link link</a></p><p><a class=\"last\" href=\"https://last.org/\">last last</a></p>"_s
                    .arg(address), title);
    moveTo(place(u"i"_s));
    moveTo(place(u".link"_s));
    if (told.isEmpty()) { // told next is the one behind it
        const QSignalSpy changes(&m_page.coordinator(), &RichTextEditorCoordinator::hoveredLinkChanged);
        moveTo(place(u".last"_s));
        QTRY_COMPARE(hovered(), QUrl(u"https://last.org/"_s));
        QCOMPARE(changes.size(), 1);
    } else {
        QTRY_COMPARE(hovered(), told);
    }
    moveTo(place(u"i"_s));
    QTRY_COMPARE(hovered(), QUrl());
}

void TestPageLinks::hoveredLinkEndsWithItsNote()
{
    m_page.load(u"<p>x <a href=\"https://example.org/\">link link</a></p>"_s);
    moveTo(place(u"a"_s));
    QTRY_COMPARE(hovered(), QUrl(u"https://example.org/"_s));
    m_page.ask(QUuid::createUuid(), u"<h1>T</h1><p>no link here at all</p>"_s);
    QTRY_COMPARE(hovered(), QUrl());
}

void TestPageLinks::handOverLinkWithControl()
{
    const QString body = u"<p><i>text text</i></p><p>x <a href=\"https://example.org/\">link link</a></p>"_s;
    m_page.load(body);
    const QString before = m_page.composed();
    const auto cursor = [this] { return m_page.text(u"getComputedStyle(document.querySelector('#body a')).cursor"_s); };
    moveTo(place(u"a"_s));
    QTRY_COMPARE(hovered(), QUrl(u"https://example.org/"_s));
    QCOMPARE(cursor(), u"text"_s);
    QTest::keyPress(&m_page.view(), Qt::Key_Control, Qt::ControlModifier);
    QTRY_COMPARE(cursor(), u"pointer"_s);
    QCOMPARE(m_page.composed(), before);
    QTest::keyRelease(&m_page.view(), Qt::Key_Control);
    QTRY_VERIFY(cursor() != u"pointer"_s);

    // Held before the pointer came.
    QTest::keyPress(&m_page.view(), Qt::Key_Control, Qt::ControlModifier);
    const QPoint point = place(u"a"_s) + QPoint(4, 0);
    QMouseEvent move(QEvent::MouseMove, point, m_page.view().mapToGlobal(point), Qt::NoButton, Qt::NoButton, Qt::ControlModifier);
    QCoreApplication::sendEvent(&m_page.view(), &move);
    QTRY_COMPARE(cursor(), u"pointer"_s);
    moveTo(place(u"i"_s)); // away from it
    QTRY_VERIFY(cursor() != u"pointer"_s);
    QTest::keyRelease(&m_page.view(), Qt::Key_Control);
    QCOMPARE(m_page.composed(), before);
}

PLIM_PAGE_TEST_MAIN(TestPageLinks)
#include "tst_page_links.moc"
