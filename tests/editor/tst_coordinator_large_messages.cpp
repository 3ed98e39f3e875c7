#include "editor/MergedHTML.h"
#include "tests/core/LinearWork.h"
#include "tests/editor/EditorFixture.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// A page that was taken over may send megabytes. Whatever they are, twice as much takes about
/// twice as long.
class TestCoordinatorLargeMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void messages_data();
    void messages();
    void pieces_data();
    void pieces();
    void changesOfBothSides_data();
    void changesOfBothSides();

private:
    std::unique_ptr<EditorFixture> m_editor;
    QTemporaryDir m_images;
};

void TestCoordinatorLargeMessages::init()
{
    m_editor = std::make_unique<EditorFixture>();
    m_editor->coordinator.setImagesDirectory(m_images.path());
    m_editor->showNote(noteA, u"<p>a</p>"_s);
}

void TestCoordinatorLargeMessages::cleanup()
{
    m_editor.reset();
}

void TestCoordinatorLargeMessages::messages_data()
{
    QTest::addColumn<QString>("handler");
    QTest::addColumn<QString>("begin");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("end");
    const auto row = [](const char *name, const char16_t *handler, const QString &begin,
                        const QString &pattern, const QString &end = {}) {
        QTest::newRow(name) << QString::fromUtf16(handler) << begin << pattern << end;
    };
    const QString change = u"{\"id\":\"%1\",\"html\":\""_s.arg(noteA.text);
    row("words", u"plim", change, u"milk "_s, u"\"}"_s);
    row("letters", u"plim", change, u"a"_s, u"\"}"_s);
    row("tags", u"plim", change, u"<b>"_s, u"\"}"_s);
    row("ampersands", u"plim", change, u"&a#"_s, u"\"}"_s);
    row("escapes", u"plim", change, u"\\u0061\\n"_s, u"\"}"_s);
    row("no JSON", u"plim", {}, u"<p>a</p>"_s);
    row("brackets", u"plim", {}, u"["_s);
    row("names", u"plim", u"{"_s, u"\"a\":\"b\","_s, u"\"html\":\"c\"}"_s);
    row("numbers", u"plim", u"{\"html\":["_s, u"1,"_s, u"1]}"_s);
    row("formats", u"plimState", u"{"_s, u"\"bold\":true,"_s, u"\"h1\":false}"_s);
    row("formats that are none", u"plimState", u"{\"a\":\""_s, u"a"_s, u"\"}"_s);
    for (const char16_t *handler : {u"plimLink", u"plimHover"}) {
        row("path", handler, u"https://example.org/"_s, u"a/../"_s);
        row("percent signs", handler, u"https://example.org/"_s, u"%"_s);
        row("query", handler, u"https://example.org/?"_s, u"a=b&"_s);
        row("host", handler, u"https://"_s, u"a"_s);
        row("foreign host", handler, u"https://"_s, u"ł"_s);
        row("foreign hosts", handler, u"https://"_s, u"ł."_s);
        QString letters;
        for (char16_t letter = 0x3400; letter < 0x9000; ++letter)
            letters += QChar(letter);
        row("host of many letters", handler, u"https://"_s, letters);
        row("encoded host", handler, u"https://xn--"_s, u"a9"_s);
        row("dots", handler, u"https://"_s, u"."_s);
        row("numbers as host", handler, u"https://"_s, u"1."_s);
        row("colons", handler, u"https://["_s, u":"_s, u"]"_s);
        row("users", handler, u"https://"_s, u"a@"_s);
        row("scheme", handler, {}, u"a"_s, u":"_s);
        row("mail", handler, u"mailto:"_s, u"a@b,"_s);
        row("spaces", handler, {}, u" "_s, u"https://example.org"_s);
    }
    row("picture", u"plimImage", u"{\"ticket\":\"1\",\"data\":\"data:image/png;base64,"_s,
        u"AAAA"_s, u"\"}"_s);
    row("broken picture", u"plimImage", u"{\"ticket\":\"1\",\"data\":\"data:image/png;base64,"_s,
        u"AAA*"_s, u"\"}"_s);
    row("ticket", u"plimImage", u"{\"ticket\":\""_s, u"\\u2028\\n"_s, u"\"}"_s);
}

void TestCoordinatorLargeMessages::messages()
{
    QFETCH(QString, handler);
    QFETCH(QString, begin);
    QFETCH(QString, pattern);
    QFETCH(QString, end);
    const QByteArray fault = againstLinearWork([&](qsizetype size) {
        m_editor->view.post(handler, begin + filled(pattern, size) + end);
        QCoreApplication::processEvents();
        (void)m_editor->view.takeLog();
        m_editor->changes.clear();
    });
    QVERIFY2(fault.isEmpty(), fault);
}

/// Each piece as short as the one pattern; and all of one that is too long, as far as it is kept.
void TestCoordinatorLargeMessages::pieces_data()
{
    QTest::addColumn<QString>("piece");
    QTest::addColumn<qsizetype>("longest");
    QTest::newRow("letters") << u"a"_s << PageMessages::longestMessage;
    QTest::newRow("words") << u"<p>milk and tea</p>"_s << PageMessages::longestMessage;
    QTest::newRow("long ones") << QString(1 << 18, u'a') << PageMessages::longestMessage;
    QTest::newRow("too many") << u"a"_s << megabyte / 2;
}

void TestCoordinatorLargeMessages::pieces()
{
    QFETCH(QString, piece);
    QFETCH(qsizetype, longest);
    auto &page = *qobject_cast<PageMessages *>(m_editor->view.seam.messages());
    page.setLongest(longest);
    const QByteArray fault = againstLinearWork([&](qsizetype size) {
        page.receiveBeginning({});
        for (qsizetype said = 0; said < size; said += piece.size())
            page.receiveMiddle(piece);
        page.receiveEnd(u"plim"_s, {});
        (void)m_editor->view.takeLog();
        m_editor->changes.clear();
    });
    QVERIFY2(fault.isEmpty(), fault);
}

void TestCoordinatorLargeMessages::changesOfBothSides_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("theirs");
    QTest::addColumn<QString>("mine");
    QTest::newRow("other words") << u"a "_s << u"b "_s << u"c "_s;
    QTest::newRow("more of the same") << u"a "_s << u"a a "_s << u"a a a "_s;
    QTest::newRow("in turns") << u"a b c "_s << u"a x c "_s << u"a b y "_s;
    QTest::newRow("insertions") << u"a b "_s << u"a x b "_s << u"a y b "_s;
    QTest::newRow("letters") << u"a"_s << u"ab"_s << u"ca"_s;
    QTest::newRow("tags") << u"<b>a"_s << u"<i>a"_s << u"<u>a"_s;
    QTest::newRow("ampersands") << u"&"_s << u"&a"_s << u"&#"_s;
}

void TestCoordinatorLargeMessages::changesOfBothSides()
{
    QFETCH(QString, base);
    QFETCH(QString, theirs);
    QFETCH(QString, mine);
    const QByteArray fault = againstLinearWork([&](qsizetype size) {
        const qsizetype count = size / 8;
        (void)mergedHTML(base.repeated(count), theirs.repeated(count), mine.repeated(count));
    });
    QVERIFY2(fault.isEmpty(), fault);
}

QTEST_GUILESS_MAIN(TestCoordinatorLargeMessages)
#include "tst_coordinator_large_messages.moc"
