#include "tests/page/PageFixture.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QString longNote(const QString &heading)
{
    return u"<h1>%1</h1>"_s.arg(heading) + u"<p>a line</p>"_s.repeated(60);
}
} // namespace

/// Where in a text that is longer than its page somebody is.
class TestPageScrolling : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void aNoteOpensAtItsTop();
    void anotherNoteOpensAtItsTop_data();
    void anotherNoteOpensAtItsTop();
    void theSameNoteChangedElsewhereKeepsItsPlace();
    void aNoteThatIsTurnedToAgainKeepsItsPlace();

private:
    [[nodiscard]] int scrolled() { return m_page->js(u"bodyEl.scrollTop"_s).toInt(); }
    void scrollTo(int place);
    void show(const QUuid &note, const QString &html);

    std::unique_ptr<PageFixture> m_page;
    const QUuid m_note = QUuid::createUuid();
};

void TestPageScrolling::init()
{
    m_page = std::make_unique<PageFixture>();
    QVERIFY(m_page->open(m_note, longNote(u"Tea"_s)));
    QVERIFY(m_page->js(u"bodyEl.scrollHeight > bodyEl.clientHeight + 500"_s).toBool());
}

void TestPageScrolling::scrollTo(int place)
{
    m_page->js(u"bodyEl.scrollTop = %1; null"_s.arg(place));
    QCOMPARE(scrolled(), place);
}

/// Waits until its caret is there for good.
void TestPageScrolling::show(const QUuid &note, const QString &html)
{
    m_page->ask(note, html);
    QTRY_COMPARE(m_page->composed(), html);
    m_page->js(
        u"window.isOver = false; setTimeout(() => { window.isOver = true; }, 2 * FOCUS_DELAY); null"_s);
    QTRY_VERIFY(m_page->js(u"window.isOver"_s).toBool());
}

void TestPageScrolling::aNoteOpensAtItsTop()
{
    QCOMPARE(scrolled(), 0);
    QCOMPARE(m_page->text(u"document.activeElement.id"_s), u"body"_s);
}

void TestPageScrolling::anotherNoteOpensAtItsTop_data()
{
    QTest::addColumn<QString>("region");
    QTest::newRow("while the text has the caret") << u"bodyEl"_s;
    QTest::newRow("while the title has it") << u"titleEl"_s;
}

void TestPageScrolling::anotherNoteOpensAtItsTop()
{
    QFETCH(QString, region);
    m_page->js(u"placeCaretAtEnd(%1); null"_s.arg(region));
    scrollTo(300);
    show(QUuid::createUuid(), longNote(u"Milk"_s));
    QCOMPARE(scrolled(), 0);
    QCOMPARE(m_page->text(u"document.activeElement.id"_s), u"body"_s);
}

void TestPageScrolling::theSameNoteChangedElsewhereKeepsItsPlace()
{
    m_page->js(u"document.activeElement.blur(); null"_s);
    scrollTo(300);
    show(m_note, longNote(u"Milk"_s));
    QCOMPARE(scrolled(), 300);
}

void TestPageScrolling::aNoteThatIsTurnedToAgainKeepsItsPlace()
{
    scrollTo(300);
    m_page->js(
        u"document.activeElement.blur(); titleEl.focus({ preventScroll: true }); null"_s); // as Tab
                                                                                           // does
    QTRY_COMPARE(m_page->text(u"document.activeElement.id"_s), u"body"_s);
    QCOMPARE(scrolled(), 300);
}

PLIM_PAGE_TEST_MAIN(TestPageScrolling)
#include "tst_page_scrolling.moc"
