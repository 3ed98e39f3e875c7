#include "tests/page/PageFixture.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Keys in the body and in the title, as a table of what stood there and what stands there then.
class TestPageKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void altWithALetterWritesNothing();
    void keysInBody_data();
    void keysInBody();

private:
    PageFixture m_page;
};

void TestPageKeys::initTestCase()
{
    QVERIFY(m_page.open());
}

void TestPageKeys::keysInBody_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("after");

    const auto row = [](const char *name, const QString &before, Qt::Key key, const QString &after,
                        Qt::KeyboardModifiers modifiers = {}) {
        QTest::newRow(name) << before << key << modifiers << after;
    };
    // Enter, outside checklists
    row("Return in a paragraph", u"<p>mil|k</p>"_s, Qt::Key_Return, u"<p>mil</p><p>|k</p>"_s);
    row("Return at the end of a paragraph", u"<p>milk|</p>"_s, Qt::Key_Return, u"<p>milk</p><p>|<br></p>"_s);
    row("Return leaves the heading", u"<h2>mil|k</h2>"_s, Qt::Key_Return, u"<h2>mil</h2><p>|k</p>"_s);
    row("Return at the end of a heading 1", u"<h1>milk|</h1>"_s, Qt::Key_Return, u"<h1>milk</h1><p>|<br></p>"_s);
    row("Return at the start of a heading 3", u"<h3>|milk</h3>"_s, Qt::Key_Return, u"<h3><br></h3><p>|milk</p>"_s);
    row("Return in a list", u"<ul><li>mil|k</li></ul>"_s, Qt::Key_Return, u"<ul><li>mil</li><li>|k</li></ul>"_s);
    row("Return in an empty item leaves the list", u"<ul><li>milk</li><li>|<br></li></ul>"_s, Qt::Key_Return,
        u"<ul><li>milk</li></ul><p>|<br></p>"_s);
    row("Return in an empty item amid a numbered list", u"<ol><li>milk</li><li>|<br></li><li>tea</li></ol>"_s, Qt::Key_Return,
        u"<ol><li>milk</li></ol><p>|<br></p><ol><li>tea</li></ol>"_s);
    row("Return in a line without a block", u"mil|k"_s, Qt::Key_Return, u"mil<p>|k</p>"_s);
    row("Return replaces a selection", u"<p>m[il]k</p>"_s, Qt::Key_Return, u"<p>m</p><p>|k</p>"_s);
    row("Return in bold goes on bold", u"<p><b>mil|k</b></p>"_s, Qt::Key_Return, u"<p><b>mil</b></p><p><b>|k</b></p>"_s);
    row("Ctrl+Return is the engine's", u"<p>mil|k</p>"_s, Qt::Key_Return, u"<p>mil|k</p>"_s, Qt::ControlModifier);

    // Shift+Enter, outside checklists
    row("Shift+Return breaks the line", u"<p>mil|k</p>"_s, Qt::Key_Return, u"<p>mil<br>|k</p>"_s, Qt::ShiftModifier);
    row("Shift+Return at the end opens a line", u"<p>milk|</p>"_s, Qt::Key_Return, u"<p>milk<br>|<br></p>"_s, Qt::ShiftModifier);
    row("Shift+Return keeps an empty last line", u"<p>mi|lk<br><br></p>"_s, Qt::Key_Return, u"<p>mi<br>|lk<br><br></p>"_s, Qt::ShiftModifier);
    row("Shift+Return in a heading stays in it", u"<h2>mil|k</h2>"_s, Qt::Key_Return, u"<h2>mil<br>|k</h2>"_s, Qt::ShiftModifier);
    row("Shift+Return in a list item", u"<ul><li>mil|k</li></ul>"_s, Qt::Key_Return, u"<ul><li>mil<br>|k</li></ul>"_s, Qt::ShiftModifier);

    // Enter in checklists
    row("Return at the end of an item", u"<check><li>☐milk|</li></check>"_s, Qt::Key_Return,
        u"<check><li>☐milk</li><li>☐<br>|</li></check>"_s);
    row("Return splits an item", u"<check><li>☐mil|k</li><li>☐tea</li></check>"_s, Qt::Key_Return,
        u"<check><li>☐mil</li><li>☐k|</li><li>☐tea</li></check>"_s);
    row("Return at the start of an item", u"<check><li>☐|milk</li></check>"_s, Qt::Key_Return,
        u"<check><li>☐<br></li><li>☐milk|</li></check>"_s);
    row("Return after a ticked item makes an unticked one", u"<check><li.checked>☑milk|</li></check>"_s, Qt::Key_Return,
        u"<check><li.checked>☑milk</li><li>☐<br>|</li></check>"_s);
    row("Return splits bold text", u"<check><li>☐<b>mil|k</b></li></check>"_s, Qt::Key_Return,
        u"<check><li>☐<b>mil</b></li><li>☐<b>k</b>|</li></check>"_s);
    row("Return keeps a selection's text", u"<check><li>☐m[il]k</li></check>"_s, Qt::Key_Return,
        u"<check><li>☐mil</li><li>☐k|</li></check>"_s);
    row("Return in a nested item", u"<check><li>☐milk<check><li>☐oa|t</li></check></li></check>"_s, Qt::Key_Return,
        u"<check><li>☐milk<check><li>☐oa</li><li>☐t|</li></check></li></check>"_s);
    row("Return before a nested list takes it along", u"<check><li>☐mi|lk<check><li>☐oat</li></check></li></check>"_s, Qt::Key_Return,
        u"<check><li>☐mi</li><li>☐lk|<check><li>☐oat</li></check></li></check>"_s);
    row("Return into an empty line before a nested list", u"<check><li>☐milk|<check><li>☐oat</li></check></li></check>"_s, Qt::Key_Return,
        u"<check><li>☐milk</li><li>☐<br>|<check><li>☐oat</li></check></li></check>"_s);

    // Shift+Enter in checklists
    row("Shift+Return in the middle", u"<check><li>☐milk</li><li>☐t|ea</li><li.checked>☑oil</li></check>"_s, Qt::Key_Return,
        u"<check><li>☐milk</li><li>☐t</li></check><p>ea|</p><check><li.checked>☑oil</li></check>"_s, Qt::ShiftModifier);
    row("Shift+Return at the end leaves the list", u"<check><li>☐milk|</li></check>"_s, Qt::Key_Return,
        u"<check><li>☐milk</li></check><p><br>|</p>"_s, Qt::ShiftModifier);
    row("Shift+Return in an empty item removes it", u"<check><li>☐milk</li><li>☐|<br></li></check>"_s, Qt::Key_Return,
        u"<check><li>☐milk</li></check><p><br>|</p>"_s, Qt::ShiftModifier);
    row("Shift+Return in the only empty item removes the list", u"<check><li>☐|<br></li></check>"_s, Qt::Key_Return,
        u"<p><br>|</p>"_s, Qt::ShiftModifier);
    row("Shift+Return at the start", u"<check><li>☐|milk</li></check>"_s, Qt::Key_Return,
        u"<p>milk|</p>"_s, Qt::ShiftModifier);

    // Tab
    row("Tab nests an item", u"<ul><li>milk</li><li>oa|t</li></ul>"_s, Qt::Key_Tab,
        u"<ul><li>milk</li><ul><li>oa|t</li></ul></ul>"_s);
    row("Shift+Tab takes it back", u"<ul><li>milk</li><ul><li>oa|t</li></ul></ul>"_s, Qt::Key_Backtab,
        u"<ul><li>milk</li><li>oa|t</li></ul>"_s, Qt::ShiftModifier);
    row("Tab nests a checklist item with its box", u"<check><li>☐milk</li><li.checked>☑oa|t</li></check>"_s, Qt::Key_Tab,
        u"<check><li>☐milk</li><check><li.checked>☑oa|t</li></check></check>"_s);
    row("Tab joins the nested list above", u"<check><li>☐milk</li><check><li>☐oat</li></check><li>☐so|y</li></check>"_s, Qt::Key_Tab,
        u"<check><li>☐milk</li><check><li>☐oat</li><li>☐so|y</li></check></check>"_s);
    row("Tab nests all selected checklist items", u"<check><li>☐milk</li><li>☐o[at</li><li.checked>☑so]y</li></check>"_s, Qt::Key_Tab,
        u"<check><li>☐milk</li><check><li>☐o[at</li><li.checked>☑so]y</li></check></check>"_s);
    row("Shift+Tab takes an item out of the middle of its list", u"<check><li>☐milk</li><check><li>☐oat</li><li>☐so|y</li><li.checked>☑rice</li></check></check>"_s,
        Qt::Key_Backtab, u"<check><li>☐milk</li><check><li>☐oat</li></check><li>☐so|y</li><check><li.checked>☑rice</li></check></check>"_s, Qt::ShiftModifier);
    row("Shift+Tab takes all selected checklist items back", u"<check><li>☐milk</li><check><li>☐o[at</li><li.checked>☑so]y</li></check></check>"_s,
        Qt::Key_Backtab, u"<check><li>☐milk</li><li>☐o[at</li><li.checked>☑so]y</li></check>"_s, Qt::ShiftModifier);
    row("Shift+Tab turns a first level item into a paragraph where it stands", u"<check><li>☐milk</li><li>☐te|a</li><li.checked>☑oil</li></check>"_s,
        Qt::Key_Backtab, u"<check><li>☐milk</li></check><p>te|a</p><check><li.checked>☑oil</li></check>"_s, Qt::ShiftModifier);
    row("Shift+Tab takes a checklist item back", u"<check><li>☐milk</li><check><li.checked>☑oa|t</li></check></check>"_s, Qt::Key_Backtab,
        u"<check><li>☐milk</li><li.checked>☑oa|t</li></check>"_s, Qt::ShiftModifier);
    row("Shift+Tab on the first level leaves a list", u"<ul><li>mi|lk</li></ul>"_s, Qt::Key_Backtab,
        u"<p>mi|lk</p>"_s, Qt::ShiftModifier);
    row("Shift+Tab on the first level of a checklist", u"<check><li>☐mi|lk</li></check>"_s, Qt::Key_Backtab,
        u"<p>mi|lk</p>"_s, Qt::ShiftModifier);
    row("Tab in a paragraph is the engine's", u"<p>mi|lk</p>"_s, Qt::Key_Tab, u"<p>mi|lk</p>"_s);

    // Backspace and Delete at the edges of a checklist item
    row("Backspace joins with the item above", u"<check><li>☐mil</li><li>☐|k</li></check>"_s, Qt::Key_Backspace,
        u"<check><li>☐mil|k</li></check>"_s);
    row("Backspace keeps the upper tick", u"<check><li.checked>☑mil</li><li>☐|k</li></check>"_s, Qt::Key_Backspace,
        u"<check><li.checked>☑mil|k</li></check>"_s);
    row("Backspace in the first item", u"<check><li>☐|milk</li><li.checked>☑tea</li></check>"_s, Qt::Key_Backspace,
        u"<p>|milk</p><check><li.checked>☑tea</li></check>"_s);
    row("Backspace in the only item", u"<check><li.checked>☑|milk</li></check>"_s, Qt::Key_Backspace, u"<p>|milk</p>"_s);
    row("Backspace in an empty item", u"<check><li>☐milk</li><li>☐|<br></li></check>"_s, Qt::Key_Backspace,
        u"<check><li>☐milk|</li></check>"_s);
    row("Backspace right after Return", u"<check><li>☐milk</li><li>☐<br>|</li></check>"_s, Qt::Key_Backspace,
        u"<check><li>☐milk|</li></check>"_s);
    row("Backspace in two empty items", u"<check><li>☐<br></li><li>☐<br>|</li></check>"_s, Qt::Key_Backspace,
        u"<check><li>☐<br>|</li></check>"_s);
    row("Backspace in the only empty item", u"<check><li>☐<br>|</li></check>"_s, Qt::Key_Backspace, u"<p>|<br></p>"_s);
    row("Backspace in the first item of a list", u"<ul><li>|milk</li><li>tea</li></ul>"_s, Qt::Key_Backspace, u"<p>|milk</p><ul><li>tea</li></ul>"_s);
    row("Backspace in the first empty item of a list", u"<p>a</p><ol><li>|<br></li></ol>"_s, Qt::Key_Backspace, u"<p>a</p><p>|<br></p>"_s);
    row("Backspace in the second item of a list", u"<ul><li>milk</li><li>|tea</li></ul>"_s, Qt::Key_Backspace, u"<ul><li>milk|tea</li></ul>"_s);
    row("Backspace below an empty item", u"<check><li>☐milk</li><li>☐<br></li></check><p>|tea</p>"_s, Qt::Key_Backspace,
        u"<check><li>☐milk</li><li>☐|tea</li></check>"_s);
    row("Backspace below a nested checklist", u"<check><li>☐milk</li><check><li.checked>☑oat</li></check></check><h2>|tea</h2>"_s, Qt::Key_Backspace,
        u"<check><li>☐milk</li><check><li.checked>☑oat|tea</li></check></check>"_s);
    row("Backspace below an item with a list in it", u"<ul><li>milk<ul><li>oat</li></ul></li><li>|tea</li></ul>"_s, Qt::Key_Backspace,
        u"<ul><li>milk<ul><li>oat|tea</li></ul></li></ul>"_s);
    row("Backspace below an item with a heading", u"<check><li>☐<h2>milk</h2></li><li>☐|tea</li></check>"_s, Qt::Key_Backspace,
        u"<check><li>☐<h2>milk|tea</h2></li></check>"_s);
    row("Backspace between two dividers", u"<p>milk</p><hr>|<hr><p>tea</p>"_s, Qt::Key_Backspace, u"<p>milk</p>|<hr><p>tea</p>"_s);
    row("Backspace onto an empty item", u"<check><li>☐<br></li><li.checked>☑|tea</li></check>"_s, Qt::Key_Backspace,
        u"<check><li>☐|tea</li></check>"_s);
    row("Backspace inside bold at the start", u"<check><li>☐mil</li><li>☐<b>|k</b></li></check>"_s, Qt::Key_Backspace,
        u"<check><li>☐mil|<b>k</b></li></check>"_s);
    row("Backspace within the text", u"<check><li>☐mi|lk</li></check>"_s, Qt::Key_Backspace, u"<check><li>☐m|lk</li></check>"_s);
    row("Backspace takes the last letter", u"<check><li>☐m|</li></check>"_s, Qt::Key_Backspace, u"<check><li>☐|<br></li></check>"_s);
    row("Delete draws the next item up", u"<check><li>☐mil|</li><li.checked>☑k</li></check>"_s, Qt::Key_Delete,
        u"<check><li>☐mil|k</li></check>"_s);
    row("Delete at the end of the last item", u"<check><li>☐milk|</li></check>"_s, Qt::Key_Delete, u"<check><li>☐milk|</li></check>"_s);
    row("Delete at the end of the last item before text", u"<check><li>☐mil|</li></check><p>k</p>"_s, Qt::Key_Delete,
        u"<check><li>☐mil|k</li></check>"_s);
    row("Delete in a heading above a checklist", u"<h2>mil|</h2><check><li.checked>☑k</li></check>"_s, Qt::Key_Delete, u"<h2>mil|k</h2>"_s);
    row("Delete in an empty paragraph above a checklist", u"<p>|<br></p><check><li.checked>☑k</li></check>"_s, Qt::Key_Delete, u"<p>|k</p>"_s);
    row("Delete in a line without a block above a checklist", u"mil|<check><li>☐k</li><li>☐tea</li></check>"_s, Qt::Key_Delete,
        u"mil|k<check><li>☐tea</li></check>"_s);
    row("Delete in a list above a checklist", u"<ol><li>mil|</li></ol><check><li>☐k</li></check>"_s, Qt::Key_Delete,
        u"<ol><li>mil|k</li></ol>"_s);
    row("Delete between two checklists", u"<check><li.checked>☑mil|</li></check><check><li>☐k</li></check>"_s, Qt::Key_Delete,
        u"<check><li.checked>☑mil|k</li></check>"_s);
    row("Delete before an empty paragraph takes that", u"<p>mil|</p><p><br></p><check><li>☐k</li></check>"_s, Qt::Key_Delete,
        u"<p>mil|</p><check><li>☐k</li></check>"_s);
    row("Delete takes an empty item away", u"<check><li>☐mil|</li><li.checked>☑<br></li></check>"_s, Qt::Key_Delete,
        u"<check><li>☐mil|</li></check>"_s);
    row("Delete into a nested item", u"<check><li>☐mil|<check><li>☐k</li><li>☐tea</li></check></li></check>"_s, Qt::Key_Delete,
        u"<check><li>☐mil|k<check><li>☐tea</li></check></li></check>"_s);
    row("Delete before a divider is the engine's", u"<p>milk|</p><hr><check><li>☐tea</li></check>"_s, Qt::Key_Delete,
        u"<p>milk|</p><check><li>☐tea</li></check>"_s);
    row("Backspace at an item that never got a box", u"<check><li>☐mil</li><li>|k</li></check>"_s, Qt::Key_Backspace,
        u"<check><li>☐mil|k</li></check>"_s);
    row("Backspace at an empty item that never got a box", u"<check><li.checked>☑<br></li><li>|<br></li></check>"_s, Qt::Key_Backspace,
        u"<check><li.checked>☑<br>|</li></check>"_s);
    row("Backspace at a first item that never got a box", u"<p>a</p><check><li>|<br></li><li>☐b</li></check>"_s, Qt::Key_Backspace,
        u"<p>a</p><p>|<br></p><check><li>☐b</li></check>"_s);
    row("Backspace in the first item of a second checklist", u"<check><li>☐milk</li></check><check><li>☐|tea</li><li>☐oil</li></check>"_s,
        Qt::Key_Backspace, u"<check><li>☐milk</li></check><p>|tea</p><check><li>☐oil</li></check>"_s);
    row("Delete in an empty item", u"<check><li>☐|<br></li><li>☐tea</li></check>"_s, Qt::Key_Delete,
        u"<check><li>☐|tea</li></check>"_s);
    row("Backspace in a paragraph below a checklist", u"<check><li>☐mil</li></check><p>|k</p>"_s, Qt::Key_Backspace,
        u"<check><li>☐mil|k</li></check>"_s);
    row("Backspace over a selection across items", u"<check><li>☐mi[lk</li><li.checked>☑te]a</li></check>"_s, Qt::Key_Backspace,
        u"<check><li>☐mi|a</li></check>"_s);
    row("Backspace over a selection from text into an item", u"<p>mi[lk</p><check><li.checked>☑te]a</li><li>☐oil</li></check>"_s, Qt::Key_Backspace,
        u"<p>mi|a</p><check><li>☐oil</li></check>"_s);
    row("Ctrl+Backspace at the start of an item", u"<check><li>☐mil</li><li>☐|k</li></check>"_s, Qt::Key_Backspace,
        u"<check><li>☐mil|k</li></check>"_s, Qt::ControlModifier);
    row("Delete in a paragraph above a checklist", u"<p>mil|</p><check><li>☐k</li><li>☐tea</li></check>"_s, Qt::Key_Delete,
        u"<p>mil|k</p><check><li>☐tea</li></check>"_s);
    row("Backspace at the start of a nested item", u"<check><li>☐mil</li><check><li>☐|k</li></check></check>"_s, Qt::Key_Backspace,
        u"<check><li>☐mil|k</li></check>"_s);
}

// It opens a menu, where there is one by that letter.
void TestPageKeys::altWithALetterWritesNothing()
{
    m_page.load(u"<p>mil|k</p>"_s);
    m_page.press(Qt::Key_O, Qt::AltModifier, u"o"_s);
    m_page.press(Qt::Key_N, {}, u"n"_s);
    QTRY_COMPARE(m_page.body(), u"<p>miln|k</p>"_s);
    m_page.js(u"placeCaretAtEnd(titleEl); null"_s);
    m_page.press(Qt::Key_O, Qt::AltModifier, u"o"_s);
    m_page.press(Qt::Key_N, {}, u"n"_s);
    QTRY_COMPARE(m_page.title(), u"Tn|"_s);
}

void TestPageKeys::keysInBody()
{
    QFETCH(QString, before);
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QString, after);
    m_page.load(before);
    QCOMPARE(m_page.body(), before);
    m_page.press(key, modifiers);
    QTRY_COMPARE(m_page.body(), after);
}

PLIM_PAGE_TEST_MAIN(TestPageKeys)
#include "tst_page_keys.moc"
