#include "tests/page/PageFixture.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
// X11 codes of physical keys, which the page is told as "KeyB" and so on.
constexpr quint32 physicalA = 38;
constexpr quint32 physicalB = 56;
constexpr quint32 physicalI = 31;
constexpr quint32 physicalU = 30;

const QString polishLetters = u"ąćęłńóśźżĄĆĘŁŃÓŚŹŻ"_s;
} // namespace

/// Typing: the title, letters of every kind, formats by key, boxes by mouse.
class TestPageTyping : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void returnInTitleGoesToBody();
    void otherKeysInTitleAreTheEngines_data();
    void otherKeysInTitleAreTheEngines();
    void linesAreParagraphs();
    void typingAfterLineBreakIsOnTheNewLine();
    void newItemTakesText();
    void typingOverALineLeavesTheNextOne();
    void formatsSwitchedOffStayOnWhatWasWritten();
    void longTitleLeavesRoomForTheBody();
    void altFormatsText_data();
    void altFormatsText();
    void altGrTypes_data();
    void altGrTypes();
    void everyPolishLetterTypes_data();
    void everyPolishLetterTypes();
    void composedTextArrives_data();
    void composedTextArrives();
    void keysWhileComposingAreLeftAlone();
    void clickOnBoxTicksAndKeepsCaret();
    void comingBackWithTabGoesOnWhereItWas();
    void ticksAreToldToScreenReaders();
    void changesAreReported();
    void nothingIsSentWhileNothingChanges();

private:
    void compose(const QString &preedit, const QString &commit);

    PageFixture m_page;
    const QUuid m_note = QUuid::createUuid();
};

void TestPageTyping::initTestCase()
{
    QVERIFY(m_page.open(m_note, u"<h1>T</h1>"_s));
}

void TestPageTyping::init()
{
    m_page.forgetReports();
}

void TestPageTyping::returnInTitleGoesToBody()
{
    m_page.load(u"<p>milk</p>"_s, u"Sho|p"_s);
    m_page.press(Qt::Key_Return);
    QTRY_COMPARE(m_page.body(), u"|<p>milk</p>"_s);
    QCOMPARE(m_page.title(), u"Shop"_s);
    m_page.type(u"x"_s);
    QTRY_COMPARE(m_page.body(), u"<p>x|milk</p>"_s);
}

void TestPageTyping::otherKeysInTitleAreTheEngines_data()
{
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("Ctrl") << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("Alt") << Qt::KeyboardModifiers(Qt::AltModifier);
    QTest::newRow("Shift") << Qt::KeyboardModifiers(Qt::ShiftModifier);
}

void TestPageTyping::otherKeysInTitleAreTheEngines()
{
    QFETCH(Qt::KeyboardModifiers, modifiers);
    m_page.load(u"<p>milk</p>"_s, u"Sho|p"_s);
    m_page.press(Qt::Key_Return, modifiers);
    QCOMPARE(m_page.text(u"document.activeElement.id"_s), u"title"_s);
    QCOMPARE(m_page.body(), u"<p>milk</p>"_s);
}

void TestPageTyping::linesAreParagraphs()
{
    m_page.load({}, u"T|"_s);
    m_page.press(Qt::Key_Return);
    m_page.type(u"one"_s);
    m_page.press(Qt::Key_Return);
    m_page.type(u"two"_s);
    m_page.press(Qt::Key_Return);
    m_page.type(u"three"_s);
    QTRY_COMPARE(m_page.body(), u"one<p>two</p><p>three|</p>"_s);
}

void TestPageTyping::typingAfterLineBreakIsOnTheNewLine()
{
    m_page.load(u"<p>milk|</p>"_s);
    m_page.press(Qt::Key_Return, Qt::ShiftModifier);
    m_page.type(u"x"_s);
    QTRY_COMPARE(m_page.body(), u"<p>milk<br>x|</p>"_s);
}

void TestPageTyping::newItemTakesText()
{
    m_page.load(u"<check><li>☐milk|</li></check>"_s);
    m_page.press(Qt::Key_Return);
    m_page.type(u"tea"_s);
    m_page.press(Qt::Key_Return);
    m_page.press(Qt::Key_Return, Qt::ShiftModifier);
    m_page.type(u"end"_s);
    QTRY_COMPARE(m_page.body(), u"<check><li>☐milk</li><li>☐tea</li></check><p>end|</p>"_s);
}

/// What a triple click selects.
void TestPageTyping::typingOverALineLeavesTheNextOne()
{
    m_page.load(u"<p>one</p><p>[two</p><p>]three</p>"_s);
    m_page.type(u"Z"_s);
    QTRY_COMPARE(m_page.body(), u"<p>one</p><p>Z|</p><p>three</p>"_s);
}

void TestPageTyping::formatsSwitchedOffStayOnWhatWasWritten()
{
    m_page.load(u"<p>a |</p>"_s);
    m_page.run(EditorCommand::Kind::bold);
    m_page.run(EditorCommand::Kind::italic);
    m_page.type(u"both"_s);
    m_page.run(EditorCommand::Kind::italic);
    m_page.run(EditorCommand::Kind::bold);
    m_page.type(u"plain"_s);
    QTRY_VERIFY(m_page.text(u"bodyEl.textContent"_s).endsWith(u"bothplain"_s));
    QCOMPARE(m_page.text(u"[...bodyEl.querySelectorAll('b')].map(e => e.textContent).join()"_s), u"both"_s);
    QCOMPARE(m_page.text(u"[...bodyEl.querySelectorAll('i')].map(e => e.textContent).join()"_s), u"both"_s);
}

void TestPageTyping::longTitleLeavesRoomForTheBody()
{
    m_page.load(u"<p>|<br></p>"_s, QString(u"long title "_s).repeated(300));
    m_page.type(u"body"_s);
    QTRY_COMPARE(m_page.body(), u"<p>body|</p>"_s);
    QVERIFY(m_page.js(u"bodyEl.clientHeight"_s).toInt() > 100);
}

void TestPageTyping::altFormatsText_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<quint32>("scanCode");
    QTest::addColumn<QString>("tag");
    QTest::newRow("bold") << Qt::Key_B << physicalB << u"b"_s;
    QTest::newRow("italic") << Qt::Key_I << physicalI << u"i"_s;
    QTest::newRow("underline") << Qt::Key_U << physicalU << u"u"_s;
}

void TestPageTyping::altFormatsText()
{
    QFETCH(Qt::Key, key);
    QFETCH(quint32, scanCode);
    QFETCH(QString, tag);
    m_page.load(u"<p>a [milk] b</p>"_s);
    m_page.press(key, Qt::AltModifier, {}, scanCode);
    QTRY_COMPARE(m_page.body(), u"<p>a <%1>[milk]</%1> b</p>"_s.arg(tag));
    m_page.press(key, Qt::AltModifier, {}, scanCode);
    QTRY_COMPARE(m_page.body(), u"<p>a [milk] b</p>"_s);
    // With Control it is another shortcut, and in the title nobody's.
    m_page.press(key, Qt::AltModifier | Qt::ControlModifier, {}, scanCode);
    QCOMPARE(m_page.body(), u"<p>a [milk] b</p>"_s);
    m_page.load({}, u"a [milk] b"_s);
    m_page.press(key, Qt::AltModifier, {}, scanCode);
    QCOMPARE(m_page.title(), u"a [milk] b"_s);
}

void TestPageTyping::altGrTypes_data()
{
    QTest::addColumn<quint32>("scanCode");
    QTest::addColumn<QString>("letter");
    QTest::newRow("AltGr+A") << physicalA << u"ą"_s;
    QTest::newRow("AltGr+B") << physicalB << u"”"_s;
    QTest::newRow("AltGr+I") << physicalI << u"→"_s;
    QTest::newRow("AltGr+U") << physicalU << u"↓"_s;
}

void TestPageTyping::altGrTypes()
{
    QFETCH(quint32, scanCode);
    QFETCH(QString, letter);
    for (const Qt::KeyboardModifiers modifiers : {Qt::KeyboardModifiers(Qt::GroupSwitchModifier), Qt::KeyboardModifiers()}) {
        m_page.load(u"<p>a [milk] b</p>"_s);
        m_page.press(Qt::Key(letter[0].unicode()), modifiers, letter, scanCode);
        QTRY_COMPARE(m_page.body(), u"<p>a %1| b</p>"_s.arg(letter));
    }
}

void TestPageTyping::everyPolishLetterTypes_data()
{
    QTest::addColumn<bool>("inTitle");
    QTest::newRow("title") << true;
    QTest::newRow("body") << false;
}

void TestPageTyping::everyPolishLetterTypes()
{
    QFETCH(bool, inTitle);
    if (inTitle)
        m_page.load({}, u"x|"_s);
    else
        m_page.load(u"<p>x|</p>"_s);
    m_page.type(polishLetters);
    QTRY_COMPARE(m_page.js(inTitle ? u"titleEl.textContent"_s : u"bodyEl.textContent"_s).toString(), u'x' + polishLetters);
}

void TestPageTyping::compose(const QString &preedit, const QString &commit)
{
    QInputMethodEvent event(preedit, {QInputMethodEvent::Attribute(QInputMethodEvent::Cursor, int(preedit.size()), 1, {})});
    event.setCommitString(commit);
    QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
}

void TestPageTyping::composedTextArrives_data()
{
    everyPolishLetterTypes_data();
}

void TestPageTyping::composedTextArrives()
{
    QFETCH(bool, inTitle);
    if (inTitle)
        m_page.load({}, u"x|"_s);
    else
        m_page.load(u"<check><li>☐x|</li></check>"_s);
    m_page.forgetReports();
    const QString text = inTitle ? u"titleEl.textContent"_s : u"bodyEl.textContent"_s;
    for (const QChar letter : polishLetters) {
        compose(u"´"_s, {});
        compose({}, letter);
    }
    QTRY_COMPARE(m_page.text(text), u'x' + polishLetters);
    QTRY_VERIFY(!m_page.changes.empty() && m_page.changes.back().html.contains(u'x' + polishLetters));
}

void TestPageTyping::keysWhileComposingAreLeftAlone()
{
    m_page.load(u"<check><li>☐mil|</li></check>"_s);
    // Input methods keep such keys from the page, or mark them so.
    const QString press = u"bodyEl.dispatchEvent(new KeyboardEvent('keydown', "
                          "{ key: 'Enter', isComposing: %1, bubbles: true, cancelable: true }))"_s;
    QCOMPARE(m_page.js(press.arg(u"true"_s)).toBool(), true); // not taken
    QCOMPARE(m_page.body(), u"<check><li>☐mil|</li></check>"_s);
    QCOMPARE(m_page.js(press.arg(u"false"_s)).toBool(), false);
    QCOMPARE(m_page.body(), u"<check><li>☐mil</li><li>☐<br>|</li></check>"_s);
}

void TestPageTyping::comingBackWithTabGoesOnWhereItWas()
{
    // From outside the page, as the engine is told it by the window's Tab order.
    m_page.load(u"<p>one</p><p>tw|o</p>"_s);
    m_page.js(u"document.activeElement.blur(); titleEl.focus();"_s);
    QTRY_COMPARE(m_page.body(), u"<p>one</p><p>tw|o</p>"_s);
    m_page.type(u"X"_s);
    QCOMPARE(m_page.body(), u"<p>one</p><p>twX|o</p>"_s);
}

void TestPageTyping::clickOnBoxTicksAndKeepsCaret()
{
    m_page.load(u"<p>he|re</p><check><li>☐milk</li></check>"_s);
    m_page.forgetReports();
    m_page.click(u"#body .chk"_s);
    QTRY_COMPARE(m_page.body(), u"<p>he|re</p><check><li.checked>☑milk</li></check>"_s);
    QTRY_VERIFY(!m_page.changes.empty());
    m_page.click(u"#body .chk"_s);
    QTRY_COMPARE(m_page.body(), u"<p>he|re</p><check><li>☐milk</li></check>"_s);
}

void TestPageTyping::ticksAreToldToScreenReaders()
{
    m_page.load(u"<check><li>☐milk</li></check>"_s);
    const QString state = u"[...bodyEl.querySelectorAll('.chk')].map(box => box.getAttribute('role') + ' ' "
                          "+ box.getAttribute('aria-checked')).join()"_s;
    QCOMPARE(m_page.text(state), u"checkbox false"_s);
    m_page.click(u"#body .chk"_s);
    QTRY_COMPARE(m_page.text(state), u"checkbox true"_s);
}

void TestPageTyping::changesAreReported()
{
    m_page.load(u"<p>mil|</p>"_s, u"Sh\"op"_s);
    QTRY_VERIFY(!m_page.changes.empty());
    m_page.forgetReports();
    QSignalSpy messages(m_page.coordinator().webView(), &EditorWebView::messageReceived);
    m_page.type(u"k"_s);
    QTRY_VERIFY(!m_page.changes.empty());
    QCOMPARE(m_page.changes.back().noteID, m_note);
    QCOMPARE(m_page.changes.back().html, u"<h1>Sh\"op</h1><p>milk</p>"_s);
    const auto message = std::ranges::find_if(messages, [](const QVariantList &m) { return m[0] == u"plim"_s; });
    QVERIFY(message != messages.end());
    QCOMPARE(message->at(1).toString(), u"{\"id\":\"%1\",\"html\":\"<h1>Sh\\\"op</h1><p>milk</p>\"}"_s.arg(
                                            m_note.toString(QUuid::WithoutBraces).toUpper()));
}

void TestPageTyping::nothingIsSentWhileNothingChanges()
{
    m_page.load(u"<p>milk|</p>"_s);
    m_page.js(u"reportFormatState()"_s);
    // The pending timers have run out once the two that are the longest have.
    m_page.js(u"window.isCalm = false; setTimeout(() => { window.isCalm = true; }, 400); null"_s);
    QTRY_VERIFY(m_page.js(u"window.isCalm"_s).toBool());
    QSignalSpy messages(m_page.coordinator().webView(), &EditorWebView::messageReceived);
    m_page.js(u"window.isCalm = false; setTimeout(() => { window.isCalm = true; }, 1500); null"_s);
    QTRY_VERIFY(m_page.js(u"window.isCalm"_s).toBool());
    QCOMPARE(messages.size(), 0);
}

PLIM_PAGE_TEST_MAIN(TestPageTyping)
#include "tst_page_typing.moc"
