#include "tests/page/PageFixture.h"
#include "tests/views/WaitFor.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

using Kind = EditorCommand::Kind;

/// The thirteen commands as the host sends them, and the report that lights the buttons.
class TestPageCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void commandsInBody_data();
    void commandsInBody();
    void blockCommandsInTitleGoToBody_data();
    void blockCommandsInTitleGoToBody();
    void inlineCommandsWorkInTitle();
    void linkKeepsItsAddress_data();
    void linkKeepsItsAddress();
    void pictureLosesItsStyle();
    void selectionIsRestoredAfterFocusWasLost();
    void aLetterTypedInTheMomentOfACommandKeepsItsPlace();
    void selectionThatLeftTheDocumentIsDropped();
    void undoAndRedo();
    void toggleErrorIsLogged();
    void formatStateReport_data();
    void formatStateReport();
    void formatStateInTitle();
    void formatStateHasTwelveMembersInOrder();
    void formatStateFollowsTheCaret();
    void leavingChecklistIsLogged();

private:
    QJsonObject state();

    PageFixture m_page;
};

void TestPageCommands::initTestCase()
{
    QVERIFY(m_page.open(QUuid::createUuid(), u"<h1>T</h1>"_s));
}

void TestPageCommands::commandsInBody_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<EditorCommand>("command");
    QTest::addColumn<QString>("after");

    const auto row = [](const char *name, const QString &before, const EditorCommand &command, const QString &after) {
        QTest::newRow(name) << before << command << after;
    };
    row("heading 1", u"<p>mi|lk</p>"_s, EditorCommand::heading(1), u"<h1>mi|lk</h1>"_s);
    row("heading 2", u"<p>mi|lk</p>"_s, EditorCommand::heading(2), u"<h2>mi|lk</h2>"_s);
    row("heading 3 of a heading", u"<h1>mi|lk</h1>"_s, EditorCommand::heading(3), u"<h3>mi|lk</h3>"_s);
    row("heading of a line without a block", u"mi|lk"_s, EditorCommand::heading(2), u"<h2>mi|lk</h2>"_s);
    row("paragraph of a heading", u"<h2>mi|lk</h2>"_s, Kind::paragraph, u"<p>mi|lk</p>"_s);
    row("bold", u"<p>a [milk] b</p>"_s, Kind::bold, u"<p>a <b>[milk]</b> b</p>"_s);
    row("bold off", u"<p>a <b>[milk]</b> b</p>"_s, Kind::bold, u"<p>a [milk] b</p>"_s);
    row("italic", u"<p>a [milk] b</p>"_s, Kind::italic, u"<p>a <i>[milk]</i> b</p>"_s);
    row("underline", u"<p>a [milk] b</p>"_s, Kind::underline, u"<p>a <u>[milk]</u> b</p>"_s);
    row("strikethrough", u"<p>a [milk] b</p>"_s, Kind::strikethrough, u"<p>a <strike>[milk]</strike> b</p>"_s);
    row("bold across paragraphs", u"<p>a [milk</p><p>tea] b</p>"_s, Kind::bold, u"<p>a <b>[milk</b></p><p><b>tea]</b> b</p>"_s);
    row("not bold in a heading", u"<h2>a [milk] b</h2>"_s, Kind::bold, u"<h2>a [milk] b</h2>"_s);
    row("bulleted list", u"<p>mi|lk</p>"_s, Kind::bulletList, u"<ul><li>mi|lk</li></ul>"_s);
    row("numbered list", u"<p>mi|lk</p>"_s, Kind::numberedList, u"<ol><li>mi|lk</li></ol>"_s);
    row("bulleted list of three", u"<p>m[ilk</p><p>tea</p><p>o]il</p>"_s, Kind::bulletList,
        u"<ul><li>m[ilk</li><li>tea</li><li>o]il</li></ul>"_s);
    row("bulleted list off", u"<ul><li>milk</li><li>t|ea</li></ul>"_s, Kind::bulletList, u"<ul><li>milk</li></ul><p>t|ea</p>"_s);
    row("numbered to bulleted", u"<ol><li>mi|lk</li></ol>"_s, Kind::bulletList, u"<ul><li>mi|lk</li></ul>"_s);
    row("bulleted list of a line without a block", u"mi|lk"_s, Kind::bulletList, u"<ul><li>mi|lk</li></ul>"_s);
    row("bulleted list of an empty note", u"|"_s, Kind::bulletList, u"<ul><li>|<br></li></ul>"_s);
    row("heading in an item", u"<ul><li>mi|lk</li></ul>"_s, EditorCommand::heading(2), u"<ul><li><h2>mi|lk</h2></li></ul>"_s);
    row("paragraph in an item with a heading", u"<ul><li>tea</li><li><h2>mi|lk</h2></li></ul>"_s, Kind::paragraph, u"<ul><li>tea</li><li>mi|lk</li></ul>"_s);
    row("divider", u"<p>mi|lk</p>"_s, Kind::divider, u"<p>mi</p><hr>|<p>lk</p>"_s);
    row("divider at the end", u"<p>milk|</p>"_s, Kind::divider, u"<p>milk</p><hr>|"_s);
    row("link", u"<p>a [milk] b</p>"_s, EditorCommand::link(u"https://example.org/"_s),
        u"<p>a <a href=\"https://example.org/\">milk|</a> b</p>"_s);
    row("link without a selection", u"<p>a | b</p>"_s, EditorCommand::link(u"https://example.org/"_s),
        u"<p>a <a href=\"https://example.org/\">https://example.org/|</a> b</p>"_s);
    row("link to a script is refused", u"<p>a [milk] b</p>"_s, EditorCommand::link(u"javascript:alert(1)"_s), u"<p>a [milk] b</p>"_s);

    row("checklist of a paragraph", u"<p>mi|lk</p>"_s, Kind::checkbox, u"<check><li>☐milk|</li></check>"_s);
    row("checklist of a heading", u"<h2>mi|lk</h2>"_s, Kind::checkbox, u"<check><li>☐milk|</li></check>"_s);
    row("checklist of an empty note", u"|"_s, Kind::checkbox, u"<check><li>☐<br>|</li></check>"_s);
    row("checklist of a line without a block", u"mi|lk"_s, Kind::checkbox, u"<check><li>☐milk|</li></check>"_s);
    row("checklist of an empty paragraph", u"<p>a</p><p>|<br></p>"_s, Kind::checkbox, u"<p>a</p><check><li>☐<br>|</li></check>"_s);
    row("checklist item to paragraph above its list", u"<check><li>☐milk</li><li.checked>☑te|a</li></check>"_s, Kind::checkbox,
        u"<p>tea|</p><check><li>☐milk</li></check>"_s);
    row("the only checklist item to paragraph", u"<check><li.checked>☑te|a</li></check>"_s, Kind::checkbox, u"<p>tea|</p>"_s);
    row("checklist item with a heading to a heading above its list", u"<check><li>☐milk</li><li>☐<h2>te|a</h2></li></check>"_s, Kind::checkbox,
        u"<h2>tea|</h2><check><li>☐milk</li></check>"_s);
    row("item of a bulleted list to checklist", u"<ul><li>milk</li><li>te|a</li></ul>"_s, Kind::checkbox,
        u"<check><li>milk</li><li>☐tea|</li></check>"_s);
    row("item of a numbered list to checklist", u"<ol><li>milk</li><li>te|a</li></ol>"_s, Kind::checkbox,
        u"<ol><li>milk</li><check><li>☐tea|</li></check></ol>"_s);

    row("numbered list goes on through its middle", u"<ol><li>a</li></ol><p>b|</p><ol><li>c</li></ol>"_s, Kind::numberedList,
        u"<ol><li>a</li><li>b|</li><li>c</li></ol>"_s);
    row("bulleted list within a checklist", u"<check><li>☐milk</li><li.checked>☑te|a</li></check>"_s, Kind::bulletList,
        u"<check><li>☐milk</li></check><p>te|a</p>"_s);
    row("numbered list within a checklist", u"<check><li>☐milk</li><li.checked>☑te|a</li></check>"_s, Kind::numberedList,
        u"<check><li>☐milk</li></check><ol><li>te|a</li></ol>"_s);
    row("heading within a checklist", u"<check><li>☐mi|lk</li></check>"_s, EditorCommand::heading(2), u"<check><li>☐<h2>mi|lk</h2></li></check>"_s);
    row("paragraph within a checklist", u"<check><li>☐mi|lk</li></check>"_s, Kind::paragraph, u"<check><li>☐mi|lk</li></check>"_s);
    row("bold in a checklist", u"<check><li.checked>☑[milk]</li></check>"_s, Kind::bold, u"<check><li.checked>☑<b>[milk]</b></li></check>"_s);
    row("bold across a checklist", u"<p>a[b</p><check><li.checked>☑milk</li><li>☐te]a</li></check>"_s, Kind::bold,
        u"<p>a<b>[b</b></p><check><li.checked>☑<b>milk</b></li><li>☐<b>te]</b>a</li></check>"_s);
    row("divider in a checklist", u"<check><li>☐mi|lk</li></check>"_s, Kind::divider, u"<check><li>☐mi</li></check><hr><check><li>☐|lk</li></check>"_s);
    row("divider at the end of a checklist", u"<check><li.checked>☑milk|</li></check>"_s, Kind::divider,
        u"<check><li.checked>☑milk</li></check><hr><p>|<br></p>"_s);
    row("divider between items", u"<check><li.checked>☑milk|</li><li.checked>☑tea</li></check>"_s, Kind::divider,
        u"<check><li.checked>☑milk</li></check><hr><check><li.checked>☑|tea</li></check>"_s);
    row("bulleted list off for three", u"<p>a</p><ul><li>m[ilk</li><li>tea</li><li>o]il</li></ul><p>b</p>"_s, Kind::bulletList,
        u"<p>a</p><p>m[ilk</p><p>tea</p><p>o]il</p><p>b</p>"_s);
    row("bulleted list off with bold", u"<ul><li>a</li><li>mi|lk <b>oat</b></li></ul>"_s, Kind::bulletList,
        u"<ul><li>a</li></ul><p>mi|lk <b>oat</b></p>"_s);
    row("bulleted list off in an empty item", u"<ul><li>a</li><li>|<br></li></ul>"_s, Kind::bulletList,
        u"<ul><li>a</li></ul><p>|<br></p>"_s);
    row("bulleted list across text and checklist", u"<p>a[b</p><check><li.checked>☑milk</li><li>☐te]a</li></check>"_s, Kind::bulletList,
        u"<ul><li>a[b</li></ul><check><li.checked>☑milk</li><li>☐te]a</li></check>"_s);
}

void TestPageCommands::commandsInBody()
{
    QFETCH(QString, before);
    QFETCH(EditorCommand, command);
    QFETCH(QString, after);
    m_page.load(before);
    QCOMPARE(m_page.body(), before);
    m_page.run(command);
    QCOMPARE(m_page.body(), after);
}

void TestPageCommands::blockCommandsInTitleGoToBody_data()
{
    QTest::addColumn<EditorCommand>("command");
    QTest::addColumn<QString>("after");
    QTest::newRow("heading") << EditorCommand::heading(2) << u"<h2>|milk</h2><p>tea</p>"_s;
    QTest::newRow("paragraph") << EditorCommand(Kind::paragraph) << u"<p>|milk</p><p>tea</p>"_s;
    QTest::newRow("bulleted list") << EditorCommand(Kind::bulletList) << u"<ul><li>|milk</li></ul><p>tea</p>"_s;
    QTest::newRow("numbered list") << EditorCommand(Kind::numberedList) << u"<ol><li>|milk</li></ol><p>tea</p>"_s;
    QTest::newRow("divider") << EditorCommand(Kind::divider) << u"<hr>|<p>milk</p><p>tea</p>"_s;
    QTest::newRow("checklist") << EditorCommand(Kind::checkbox) << u"<p>milk</p><p>tea</p><check><li>☐<br>|</li></check>"_s;
}

void TestPageCommands::blockCommandsInTitleGoToBody()
{
    QFETCH(EditorCommand, command);
    QFETCH(QString, after);
    m_page.load(u"<p>milk</p><p>tea</p>"_s, u"Sh|op"_s);
    QTRY_COMPARE(m_page.text(u"savedEl.id"_s), u"title"_s);
    m_page.run(command);
    QTRY_COMPARE(m_page.body(), after);
    QCOMPARE(m_page.title(), u"Shop"_s);
}

void TestPageCommands::inlineCommandsWorkInTitle()
{
    m_page.load({}, u"[Sh]op"_s);
    QTRY_COMPARE(m_page.text(u"savedEl.id"_s), u"title"_s);
    m_page.run(Kind::italic);
    QCOMPARE(m_page.title(), u"<i>[Sh]</i>op"_s);
}

void TestPageCommands::linkKeepsItsAddress_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("double quote") << u"https://example.org/?q=\"a\""_s;
    QTest::newRow("backslash") << u"https://example.org/\\a\\"_s;
    QTest::newRow("line break") << u"https://example.org/a\nb\r\nc\td"_s;
    QTest::newRow("line separators") << u"https://example.org/\u2028a\u2029"_s;
    QTest::newRow("Polish") << u"https://example.org/żółć?ą=ę&b=c#d"_s;
    QTest::newRow("mail") << u"mailto:ala@example.org"_s;
}

void TestPageCommands::linkKeepsItsAddress()
{
    QFETCH(QString, address);
    m_page.load(u"<p>a [milk] b</p>"_s);
    m_page.run(EditorCommand::link(address));
    QCOMPARE(m_page.text(u"bodyEl.querySelector('a').getAttribute('href')"_s), address);
}

void TestPageCommands::pictureLosesItsStyle()
{
    m_page.load(u"<p>a|b</p>"_s);
    m_page.js(u"insertHTML('<img src=\"data:image/gif;base64,R0lGODlhAQABAAAAACw=\" STYLE = \"width:9000px\" alt=\"x\" style=\\'a\\'>')"_s);
    QCOMPARE(m_page.body(), u"<p>a<img alt=\"x\" src=\"data:image/gif;base64,R0lGODlhAQABAAAAACw=\">|b</p>"_s);
}

void TestPageCommands::selectionIsRestoredAfterFocusWasLost()
{
    m_page.load(u"<p>a [milk] b</p>"_s);
    QTRY_COMPARE(m_page.text(u"String(savedRange)"_s), u"milk"_s);
    m_page.js(u"document.activeElement.blur(); document.getSelection().removeAllRanges(); null"_s);
    m_page.run(Kind::bold);
    QCOMPARE(m_page.body(), u"<p>a <b>[milk]</b> b</p>"_s);
}

// The engine tells of a new selection only later: a command that comes in between must not go back to
// the one before.
void TestPageCommands::aLetterTypedInTheMomentOfACommandKeepsItsPlace()
{
    m_page.load(u"<p>mi|</p>"_s);
    QTRY_COMPARE(m_page.text(u"String(savedRange.startOffset)"_s), u"2"_s);
    m_page.js(u"document.execCommand('insertText', false, 'l'); runCommand('formatBlock', 'h2');"
              u"document.execCommand('insertText', false, 'k'); null"_s);
    QCOMPARE(m_page.body(), u"<h2>milk|</h2>"_s);
}

void TestPageCommands::selectionThatLeftTheDocumentIsDropped()
{
    m_page.load(u"<p>a [milk] b</p><p>tea</p>"_s);
    QTRY_COMPARE(m_page.text(u"String(savedRange)"_s), u"milk"_s);
    m_page.js(u"const kept = savedRange; bodyEl.firstChild.remove(); savedRange = document.createRange(); "
              "savedRange.selectNodeContents(document.createElement('p')); null"_s);
    m_page.run(Kind::checkbox);
    QCOMPARE(m_page.body(), u"<p>tea</p><check><li>☐<br>|</li></check>"_s);
}

void TestPageCommands::undoAndRedo()
{
    m_page.load(u"<p>mi|lk</p>"_s);
    m_page.type(u"x"_s);
    QTRY_COMPARE(m_page.body(), u"<p>mix|lk</p>"_s);
    m_page.run(Kind::undo);
    QCOMPARE(m_page.body(), u"<p>mi|lk</p>"_s);
    m_page.run(Kind::redo);
    QCOMPARE(m_page.body(), u"<p>mix|lk</p>"_s);
    m_page.run(EditorCommand::heading(2));
    m_page.run(Kind::undo);
    QCOMPARE(m_page.body(), u"<p>mix|lk</p>"_s);
}

void TestPageCommands::toggleErrorIsLogged()
{
    m_page.load(u"<p>milk|</p>"_s);
    m_page.forgetReports();
    m_page.js(u"document.getSelection = () => { throw new Error('gone'); }; toggleChecklist(); delete document.getSelection; null"_s);
    QTRY_COMPARE(m_page.logs.size(), 1U);
    QCOMPARE(m_page.logs[0], u"toggle-error: gone"_s);
}

QJsonObject TestPageCommands::state()
{
    m_page.forgetReports();
    m_page.js(u"reportFormatState()"_s);
    if (!waitFor([this] { return !m_page.states.empty(); }))
        return {};
    return QJsonDocument::fromJson(m_page.states.back().toUtf8()).object();
}

void TestPageCommands::formatStateReport_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QStringList>("set");
    QTest::newRow("paragraph") << u"<p>mi|lk</p>"_s << QStringList{u"p"_s};
    QTest::newRow("no block") << u"mi|lk"_s << QStringList{};
    QTest::newRow("heading 1") << u"<h1>mi|lk</h1>"_s << QStringList{u"bold"_s, u"h1"_s};
    QTest::newRow("heading 2") << u"<h2>mi|lk</h2>"_s << QStringList{u"bold"_s, u"h2"_s};
    QTest::newRow("heading 3") << u"<h3>mi|lk</h3>"_s << QStringList{u"bold"_s, u"h3"_s};
    QTest::newRow("inline formats") << u"<p><b><i><u><s>mi|lk</s></u></i></b></p>"_s
                                    << QStringList{u"bold"_s, u"italic"_s, u"p"_s, u"strike"_s, u"underline"_s};
    QTest::newRow("bulleted list") << u"<ul><li>mi|lk</li></ul>"_s << QStringList{u"bullet"_s};
    QTest::newRow("numbered list") << u"<ol><li>mi|lk</li></ol>"_s << QStringList{u"ordered"_s};
    QTest::newRow("checklist") << u"<check><li>☐mi|lk</li></check>"_s << QStringList{u"bullet"_s, u"checklist"_s};
    QTest::newRow("link") << u"<p><a href=\"https://example.org\">mi|lk</a></p>"_s << QStringList{u"link"_s, u"p"_s, u"underline"_s};
    QTest::newRow("link around bold") << u"<p><a href=\"https://example.org\"><b>mi|lk</b></a></p>"_s
                                      << QStringList{u"bold"_s, u"link"_s, u"p"_s, u"underline"_s};
}

void TestPageCommands::formatStateReport()
{
    QFETCH(QString, body);
    QFETCH(QStringList, set);
    m_page.load(body);
    QTRY_COMPARE(m_page.text(u"savedEl.id"_s), u"body"_s);
    const QJsonObject report = state();
    QStringList found;
    for (auto member = report.begin(); member != report.end(); ++member) {
        if (member->toBool())
            found.push_back(member.key());
    }
    QCOMPARE(found, set);
    QCOMPARE(report.size(), 12);
}

void TestPageCommands::formatStateInTitle()
{
    m_page.load(u"<p>milk</p>"_s, u"Sh|op"_s);
    QTRY_COMPARE(m_page.text(u"savedEl.id"_s), u"title"_s);
    QVERIFY(state().value("h1"_L1).toBool());
}

void TestPageCommands::formatStateHasTwelveMembersInOrder()
{
    m_page.forgetReports();
    m_page.load(u"mi|lk"_s);
    QTRY_VERIFY(!m_page.states.empty());
    QTRY_COMPARE(m_page.states.back(), // a command's report takes its time
                 u"{\"bold\":false,\"italic\":false,\"underline\":false,\"strike\":false,\"bullet\":false,\"ordered\":false,"
                 "\"h1\":false,\"h2\":false,\"h3\":false,\"p\":false,\"link\":false,\"checklist\":false}"_s);
}

void TestPageCommands::formatStateFollowsTheCaret()
{
    m_page.load(u"<h2>milk</h2><p>te|a</p>"_s);
    m_page.forgetReports();
    m_page.press(Qt::Key_Up);
    QTRY_VERIFY(!m_page.states.empty() && m_page.states.back().contains("\"h2\":true"_L1));
}

void TestPageCommands::leavingChecklistIsLogged()
{
    m_page.load(u"<check><li>☐milk|</li></check>"_s);
    m_page.forgetReports();
    m_page.press(Qt::Key_Return, Qt::ShiftModifier);
    QTRY_COMPARE(m_page.logs.size(), 1U);
    QCOMPARE(m_page.logs[0], u"after300: anchor=P in DIV in-escP=true"_s);
}

PLIM_PAGE_TEST_MAIN(TestPageCommands)
#include "tst_page_commands.moc"
