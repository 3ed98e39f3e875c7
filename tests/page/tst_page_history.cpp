#include "tests/page/PageFixture.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QTest>

using namespace Qt::StringLiterals;

using Kind = EditorCommand::Kind;

/// Undo and redo: every edit can be taken back, and no step of it takes anything else along.
class TestPageHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyEditCanBeTakenBack_data();
    void everyEditCanBeTakenBack();
    void keysUndoAndRedo_data();
    void keysUndoAndRedo();
    void typingIsTakenBackInRuns();
    void typingElsewhereIsAnotherRun();
    void replacedSelectionComesBack();
    void deletingInARowIsOneStep();
    void boxClickCanBeTakenBack();
    void pasteCanBeTakenBack();
    void composedTextCanBeTakenBack();
    void titleAndBodyShareTheHistory();
    void newEditEndsRedo();
    void undoStaysInItsNote();
    void loadingIsNoStep();
    void engineNeverUndoes();
    void longHistoryIsBounded();

private:
    PageFixture m_page;
    const QUuid m_note = QUuid::createUuid();
};

void TestPageHistory::initTestCase()
{
    QVERIFY(m_page.open(m_note, u"<h1>T</h1>"_s));
}

void TestPageHistory::everyEditCanBeTakenBack_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<EditorCommand>("command");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const QString &before, const EditorCommand &command, const QString &after) {
        QTest::newRow(name) << before << command << after;
    };
    row("bold", u"<p>a [milk] b</p>"_s, Kind::bold, u"<p>a <b>[milk]</b> b</p>"_s);
    row("heading", u"<p>mi|lk</p>"_s, EditorCommand::heading(2), u"<h2>mi|lk</h2>"_s);
    row("list of one line", u"<p>mi|lk</p>"_s, Kind::bulletList, u"<ul><li>mi|lk</li></ul>"_s);
    row("list of three lines", u"<p>m[ilk</p><p>tea</p><p>o]il</p>"_s, Kind::numberedList,
        u"<ol><li>m[ilk</li><li>tea</li><li>o]il</li></ol>"_s);
    row("list off", u"<ul><li>milk</li><li>t|ea</li><li>oil</li></ul>"_s, Kind::bulletList,
        u"<ul><li>milk</li></ul><p>t|ea</p><ul><li>oil</li></ul>"_s);
    row("checklist", u"<p>mi|lk</p>"_s, Kind::checkbox, u"<check><li>☐milk|</li></check>"_s);
    row("checklist off", u"<check><li>☐milk</li><li.checked>☑te|a</li></check>"_s, Kind::checkbox,
        u"<p>tea|</p><check><li>☐milk</li></check>"_s);
    row("divider in a checklist", u"<check><li>☐mi|lk</li></check>"_s, Kind::divider,
        u"<check><li>☐mi</li></check><hr><check><li>☐|lk</li></check>"_s);
    row("link", u"<p>a [milk] b</p>"_s, EditorCommand::link(u"https://example.org/"_s),
        u"<p>a <a href=\"https://example.org/\">milk|</a> b</p>"_s);
}

void TestPageHistory::everyEditCanBeTakenBack()
{
    QFETCH(QString, before);
    QFETCH(EditorCommand, command);
    QFETCH(QString, after);
    m_page.load(before);
    m_page.run(command);
    QCOMPARE(m_page.body(), after);
    for (int round = 0; round < 3; ++round) {
        m_page.run(Kind::undo);
        QCOMPARE(m_page.body(), before);
        m_page.run(Kind::redo);
        QCOMPARE(m_page.body(), after);
    }
}

void TestPageHistory::keysUndoAndRedo_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const QString &before, Qt::Key key, const QString &after,
                        Qt::KeyboardModifiers modifiers = {}) {
        QTest::newRow(name) << before << key << modifiers << after;
    };
    row("Return", u"<p>mi|lk</p>"_s, Qt::Key_Return, u"<p>mi</p><p>|lk</p>"_s);
    row("Shift+Return", u"<p>mi|lk</p>"_s, Qt::Key_Return, u"<p>mi<br>|lk</p>"_s, Qt::ShiftModifier);
    row("Return in a heading", u"<h2>mi|lk</h2>"_s, Qt::Key_Return, u"<h2>mi</h2><p>|lk</p>"_s);
    row("Return in a checklist", u"<check><li.checked>☑mi|lk</li></check>"_s, Qt::Key_Return,
        u"<check><li.checked>☑mi</li><li>☐lk|</li></check>"_s);
    row("leaving a checklist", u"<check><li>☐mi|lk</li><li>☐tea</li></check>"_s, Qt::Key_Return,
        u"<check><li>☐mi</li></check><p>lk|</p><check><li>☐tea</li></check>"_s, Qt::ShiftModifier);
    row("Backspace between items", u"<check><li>☐mi</li><li.checked>☑|lk</li></check>"_s, Qt::Key_Backspace,
        u"<check><li>☐mi|lk</li></check>"_s);
    row("Delete between items", u"<check><li>☐mi|</li><li.checked>☑lk</li></check>"_s, Qt::Key_Delete, u"<check><li>☐mi|lk</li></check>"_s);
    row("Backspace", u"<p>mi|lk</p>"_s, Qt::Key_Backspace, u"<p>m|lk</p>"_s);
    row("Delete of a selection", u"<h2>m[i</h2><ul><li>l]k</li></ul>"_s, Qt::Key_Delete, u"<h2>m|k</h2>"_s);
    row("Tab in a checklist", u"<check><li>☐milk</li><li>☐oa|t</li></check>"_s, Qt::Key_Tab,
        u"<check><li>☐milk</li><check><li>☐oa|t</li></check></check>"_s);
    row("Tab in a list", u"<ul><li>milk</li><li>oa|t</li></ul>"_s, Qt::Key_Tab, u"<ul><li>milk</li><ul><li>oa|t</li></ul></ul>"_s);
}

void TestPageHistory::keysUndoAndRedo()
{
    QFETCH(QString, before);
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QString, after);
    m_page.load(before);
    m_page.press(key, modifiers);
    QTRY_COMPARE(m_page.body(), after);
    for (const auto &redo : {std::pair(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier),
                            std::pair(Qt::Key_Y, Qt::KeyboardModifiers(Qt::ControlModifier))}) {
        m_page.press(Qt::Key_Z, Qt::ControlModifier);
        QTRY_COMPARE(m_page.body(), before);
        m_page.press(redo.first, redo.second);
        QTRY_COMPARE(m_page.body(), after);
    }
}

void TestPageHistory::typingIsTakenBackInRuns()
{
    m_page.load(u"<p>|<br></p>"_s);
    m_page.type(u"milk"_s);
    m_page.press(Qt::Key_Return);
    m_page.type(u"tea"_s);
    QTRY_COMPARE(m_page.body(), u"<p>milk</p><p>tea|</p>"_s);
    m_page.press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(m_page.body(), u"<p>milk</p><p>|<br></p>"_s);
    m_page.press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(m_page.body(), u"<p>milk|</p>"_s);
    m_page.press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(m_page.body(), u"<p>|<br></p>"_s);
    m_page.press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_COMPARE(m_page.body(), u"<p>|<br></p>"_s);
}

void TestPageHistory::typingElsewhereIsAnotherRun()
{
    m_page.load(u"<p>mi|lk</p>"_s);
    m_page.type(u"x"_s);
    m_page.press(Qt::Key_Left);
    m_page.press(Qt::Key_Left);
    m_page.type(u"y"_s);
    QTRY_COMPARE(m_page.body(), u"<p>my|ixlk</p>"_s);
    m_page.run(Kind::undo);
    QCOMPARE(m_page.body(), u"<p>m|ixlk</p>"_s);
    m_page.run(Kind::undo);
    QCOMPARE(m_page.body(), u"<p>mi|lk</p>"_s);
}

void TestPageHistory::replacedSelectionComesBack()
{
    m_page.load(u"<p>a [milk] b</p>"_s);
    m_page.type(u"tea"_s);
    QTRY_COMPARE(m_page.body(), u"<p>a tea| b</p>"_s);
    m_page.run(Kind::undo);
    QCOMPARE(m_page.body(), u"<p>a [milk] b</p>"_s);
}

void TestPageHistory::deletingInARowIsOneStep()
{
    m_page.load(u"<p>milk|</p>"_s);
    m_page.press(Qt::Key_Backspace);
    m_page.press(Qt::Key_Backspace);
    m_page.press(Qt::Key_Backspace);
    QTRY_COMPARE(m_page.body(), u"<p>m|</p>"_s);
    m_page.run(Kind::undo);
    QCOMPARE(m_page.body(), u"<p>milk|</p>"_s);
}

void TestPageHistory::boxClickCanBeTakenBack()
{
    m_page.load(u"<p>te|a</p><check><li>☐milk</li></check>"_s);
    m_page.click(u"#body .chk"_s);
    QTRY_COMPARE(m_page.body(), u"<p>te|a</p><check><li.checked>☑milk</li></check>"_s);
    m_page.run(Kind::undo);
    QCOMPARE(m_page.body(), u"<p>te|a</p><check><li>☐milk</li></check>"_s);
}

void TestPageHistory::pasteCanBeTakenBack()
{
    m_page.load(u"<p>a|b</p>"_s);
    m_page.js(u"const data = new DataTransfer(); data.setData('text/html', '<ul><li>x</li><li>y</li></ul>'); "
              "bodyEl.dispatchEvent(new ClipboardEvent('paste', { clipboardData: data, bubbles: true, cancelable: true })); null"_s);
    QVERIFY(m_page.body().contains(u"<li>x</li>"_s));
    m_page.run(Kind::undo);
    QCOMPARE(m_page.body(), u"<p>a|b</p>"_s);
}

void TestPageHistory::composedTextCanBeTakenBack()
{
    m_page.load(u"<p>a|</p>"_s);
    for (const auto &[preedit, commit] : {std::pair(u"´"_s, QString()), std::pair(u"ś"_s, QString()), std::pair(QString(), u"ś"_s)}) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }
    QTRY_COMPARE(m_page.body(), u"<p>aś|</p>"_s);
    m_page.run(Kind::undo);
    QTRY_COMPARE(m_page.body(), u"<p>a|</p>"_s);
}

void TestPageHistory::titleAndBodyShareTheHistory()
{
    m_page.load(u"<p>milk</p>"_s, u"Sho|"_s);
    m_page.type(u"p"_s);
    m_page.press(Qt::Key_Return);
    m_page.type(u"x"_s);
    QTRY_COMPARE(m_page.composed(), u"<h1>Shop</h1><p>xmilk</p>"_s);
    m_page.run(Kind::undo);
    QCOMPARE(m_page.composed(), u"<h1>Shop</h1><p>milk</p>"_s);
    m_page.run(Kind::undo);
    QCOMPARE(m_page.composed(), u"<h1>Sho</h1><p>milk</p>"_s);
    QCOMPARE(m_page.title(), u"Sho|"_s);
}

void TestPageHistory::newEditEndsRedo()
{
    m_page.load(u"<p>milk|</p>"_s);
    m_page.run(EditorCommand::heading(2));
    m_page.run(Kind::undo);
    m_page.type(u"x"_s);
    QTRY_COMPARE(m_page.body(), u"<p>milkx|</p>"_s);
    m_page.run(Kind::redo);
    QCOMPARE(m_page.body(), u"<p>milkx|</p>"_s);
}

void TestPageHistory::undoStaysInItsNote()
{
    const QUuid a = QUuid::createUuid();
    const QUuid b = QUuid::createUuid();
    m_page.ask(a, u"<h1>A</h1><p>milk</p>"_s);
    QTRY_COMPARE(m_page.coordinator().loadedNoteID(), a);
    QTRY_COMPARE(m_page.body(), u"<p>milk|</p>"_s);
    m_page.type(u"tea"_s);
    m_page.forgetReports();
    m_page.ask(b, u"<h1>B</h1><p>oil</p>"_s);
    QTRY_COMPARE(m_page.coordinator().loadedNoteID(), b);
    QTRY_COMPARE(m_page.body(), u"<p>oil|</p>"_s);
    for (int i = 0; i < 10; ++i) {
        m_page.press(Qt::Key_Z, Qt::ControlModifier);
        m_page.run(Kind::undo);
    }
    QCOMPARE(m_page.composed(), u"<h1>B</h1><p>oil</p>"_s);
    for (const PageFixture::Change &change : m_page.changes) {
        if (change.noteID == b)
            QCOMPARE(change.html, u"<h1>B</h1><p>oil</p>"_s);
        else
            QVERIFY2(change.html.contains(u"tea"_s), qPrintable(change.html));
    }
}

void TestPageHistory::loadingIsNoStep()
{
    m_page.load(u"<p>milk|</p>"_s);
    m_page.run(Kind::undo);
    m_page.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_page.body(), u"<p>milk|</p>"_s);
    m_page.run(Kind::redo);
    QCOMPARE(m_page.body(), u"<p>milk|</p>"_s);
}

/// Whatever asks the engine for its own history, a menu of the system for instance, gets the page's.
void TestPageHistory::engineNeverUndoes()
{
    m_page.load(u"<p>mil|k</p>"_s);
    m_page.run(Kind::bulletList);
    m_page.js(u"bodyEl.dispatchEvent(new InputEvent('beforeinput', { inputType: 'historyUndo', bubbles: true, cancelable: true })); null"_s);
    QCOMPARE(m_page.body(), u"<p>mil|k</p>"_s);
    m_page.js(u"bodyEl.dispatchEvent(new InputEvent('beforeinput', { inputType: 'historyRedo', bubbles: true, cancelable: true })); null"_s);
    QCOMPARE(m_page.body(), u"<ul><li>mil|k</li></ul>"_s);
}

void TestPageHistory::longHistoryIsBounded()
{
    m_page.load(u"<p>mi|lk</p>"_s);
    m_page.js(u"for (let i = 0; i < 1000; ++i) runCommand('formatBlock', i % 2 ? 'p' : 'h2'); null"_s);
    QVERIFY(m_page.js(u"past.length"_s).toInt() <= 300);
    m_page.run(Kind::undo);
    QCOMPARE(m_page.body(), u"<h2>mi|lk</h2>"_s);
}

PLIM_PAGE_TEST_MAIN(TestPageHistory)
#include "tst_page_history.moc"
