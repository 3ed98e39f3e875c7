#include "tests/page/PageFixture.h"

#include "core/NotificationCenter.h"
#include "tests/Patience.h"

#include <QHash>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
/// What the application does with the editors' changes: the last one counts, and every editor that
/// shows the note is told.
class Desk
{
public:
    explicit Desk(std::vector<PageFixture *> editors) : m_editors(std::move(editors))
    {
        for (PageFixture *editor : m_editors) {
            QObject::connect(&editor->coordinator(), &RichTextEditorCoordinator::change, &editor->coordinator(),
                             [this](const QUuid &id, const QString &html) { set(id, html); });
        }
    }

    void set(const QUuid &id, const QString &html)
    {
        bodies[id] = html;
        for (PageFixture *editor : m_editors) {
            if (m_shown.value(editor) == id)
                editor->ask(id, html);
        }
    }
    void show(PageFixture &editor, const QUuid &id)
    {
        m_shown[&editor] = id;
        editor.ask(id, bodies[id]);
    }

    QHash<QUuid, QString> bodies;

private:
    std::vector<PageFixture *> m_editors;
    QHash<PageFixture *, QUuid> m_shown;
};
} // namespace

/// What could cost a user words: editors that meet, notes that change under them, pages that die.
class TestPageTraps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void typedTextStaysWithItsNote();
    void sameNoteInTwoEditors();
    void lettersTypedInTurnsInTwoEditors();
    void outsideChangeReplacesUnfocusedContentOnly();
    void textTypedAfterTheReadOfASwitchIsSent();
    void threeLinesSurviveSwitching();
    void deadPageComesBackWithTheLastKnownText();
    void deadPageWhileSwitchingLosesNothing();
    void reloadedPageIsNotTakenForTheNote();
    void aPageWithoutItsScriptIsMadeAnew();
    void flushDeliversWhatIsPending();
    void textSizeIsSentOnce();
    void aNoteOfVeryManyLinesIsShownWhole();
    void aVeryLongWordIsWrittenOn_data();
    void aVeryLongWordIsWrittenOn();
    void aLongReportArrivesWhole_data();
    void aLongReportArrivesWhole();
    void aReportIsThereBeforeALaterAnswer_data();
    void aReportIsThereBeforeALaterAnswer();
    void whatIsKnownIsNotToldAgain();
    void aNoteThatCouldNotBeShownIsNotTakenForAnother();

private:
    std::unique_ptr<PageFixture> m_left;
    std::unique_ptr<PageFixture> m_right;
    std::unique_ptr<Desk> m_desk;
    const QUuid m_a = QUuid::createUuid();
    const QUuid m_b = QUuid::createUuid();
};

void TestPageTraps::init()
{
    m_left = std::make_unique<PageFixture>();
    m_right = std::make_unique<PageFixture>();
    QVERIFY(m_left->open());
    QVERIFY(m_right->open());
    m_desk = std::make_unique<Desk>(std::vector{m_left.get(), m_right.get()});
    m_desk->bodies = {{m_a, u"<h1>A</h1><p>a</p>"_s}, {m_b, u"<h1>B</h1><p>b</p>"_s}};
    m_desk->show(*m_left, m_a);
    QTRY_COMPARE(m_left->coordinator().loadedNoteID(), m_a);
    QVERIFY(m_left->activate());
    QTRY_VERIFY(m_left->body().contains(u'|'));
}

void TestPageTraps::cleanup()
{
    m_desk.reset();
    m_left.reset();
    m_right.reset();
}

void TestPageTraps::typedTextStaysWithItsNote()
{
    for (int round = 0; round < 5; ++round) {
        m_left->type(u"x"_s);
        m_desk->show(*m_left, m_b);
        QTRY_COMPARE(m_left->coordinator().loadedNoteID(), m_b);
        QTRY_VERIFY(m_left->body().contains(u'|'));
        m_left->type(u"y"_s);
        m_desk->show(*m_left, m_a);
        QTRY_COMPARE(m_left->coordinator().loadedNoteID(), m_a);
        QTRY_VERIFY(m_left->body().contains(u'|'));
    }
    QTRY_COMPARE(m_desk->bodies[m_a], u"<h1>A</h1><p>axxxxx</p>"_s);
    QTRY_COMPARE(m_desk->bodies[m_b], u"<h1>B</h1><p>byyyyy</p>"_s);
}

void TestPageTraps::sameNoteInTwoEditors()
{
    m_desk->show(*m_right, m_a);
    QTRY_COMPARE(m_right->coordinator().loadedNoteID(), m_a);
    QVERIFY(m_left->activate());
    m_left->js(u"placeCaretAtTextEnd()"_s);
    m_left->type(u" one"_s);
    QTRY_COMPARE(m_right->composed(), u"<h1>A</h1><p>a one</p>"_s);
    QVERIFY(m_right->activate());
    m_right->js(u"placeCaretAtTextEnd()"_s);
    m_right->type(u" two"_s);
    QTRY_COMPARE(m_left->composed(), u"<h1>A</h1><p>a one two</p>"_s);
    QVERIFY(m_left->activate());
    m_left->js(u"placeCaretAtTextEnd()"_s);
    m_left->type(u" three"_s);
    QTRY_COMPARE(m_desk->bodies[m_a], u"<h1>A</h1><p>a one two three</p>"_s);
    QTRY_COMPARE(m_right->composed(), u"<h1>A</h1><p>a one two three</p>"_s);
}

/// As fast as windows can be changed, without waiting for the other page to follow.
void TestPageTraps::lettersTypedInTurnsInTwoEditors()
{
    m_desk->show(*m_right, m_a);
    QTRY_COMPARE(m_right->coordinator().loadedNoteID(), m_a);
    for (int round = 0; round < 6; ++round) {
        PageFixture &editor = round % 2 == 0 ? *m_left : *m_right;
        QVERIFY(editor.activate());
        editor.js(u"placeCaretAtTextEnd()"_s);
        editor.type(QString(u"abcdef"_s[round]));
    }
    const auto hasAll = [this] {
        return std::ranges::all_of(u"abcdef"_s, [this](QChar c) { return m_desk->bodies[m_a].contains(c); });
    };
    QTRY_VERIFY2(hasAll(), qPrintable(m_desk->bodies[m_a]));
    // The last letter comes to the page that nobody writes in; once it has the keyboard, it would not.
    QTRY_COMPARE(m_left->composed(), m_desk->bodies[m_a]);
    QVERIFY(m_left->activate()); // the page that is left takes over what was kept from it
    QTRY_COMPARE(m_right->composed(), m_desk->bodies[m_a]);
    QTRY_COMPARE(m_left->composed(), m_desk->bodies[m_a]);
}

void TestPageTraps::outsideChangeReplacesUnfocusedContentOnly()
{
    m_desk->show(*m_right, m_a);
    QTRY_COMPARE(m_right->coordinator().loadedNoteID(), m_a);
    QVERIFY(m_left->activate());
    m_desk->set(m_a, u"<h1>A</h1><p>changed</p>"_s);
    QTRY_COMPARE(m_right->composed(), u"<h1>A</h1><p>changed</p>"_s);
    QCOMPARE(m_left->composed(), u"<h1>A</h1><p>a</p>"_s);
}

void TestPageTraps::textTypedAfterTheReadOfASwitchIsSent()
{
    m_left->forgetReports();
    const QString b = m_b.toString(QUuid::WithoutBraces).toUpper();
    // The mutation is noticed, and its report waits, when the next note's id and content come.
    m_left->js(u"bodyEl.firstChild.append('x'); Promise.resolve().then(() => { setCurrentID('%1'); setContent('<h1>B</h1>'); }); null"_s.arg(b));
    QTRY_VERIFY(!m_left->changes.empty());
    QCOMPARE(m_left->changes[0].noteID, m_a);
    QCOMPARE(m_left->changes[0].html, u"<h1>A</h1><p>ax</p>"_s);
}

void TestPageTraps::threeLinesSurviveSwitching()
{
    m_left->press(Qt::Key_Return);
    m_left->type(u"one"_s);
    m_left->press(Qt::Key_Return);
    m_left->type(u"two"_s);
    m_left->press(Qt::Key_Return);
    m_left->type(u"three"_s);
    m_desk->show(*m_left, m_b);
    QTRY_COMPARE(m_left->coordinator().loadedNoteID(), m_b);
    m_desk->show(*m_left, m_a);
    QTRY_COMPARE(m_left->coordinator().loadedNoteID(), m_a);
    QTRY_COMPARE(m_left->composed(), u"<h1>A</h1><p>a</p><p>one</p><p>two</p><p>three</p>"_s);
    QCOMPARE(m_desk->bodies[m_a], m_left->composed());
}

void TestPageTraps::deadPageComesBackWithTheLastKnownText()
{
    m_left->type(u"x"_s);
    QTRY_COMPARE(m_desk->bodies[m_a], u"<h1>A</h1><p>ax</p>"_s);
    m_left->forgetReports();
    QSignalSpy shown(&m_left->coordinator(), &RichTextEditorCoordinator::shown);
    ::kill(m_left->webEngineView()->property("renderProcessPid").value<qint64>(), SIGKILL);
    QTRY_COMPARE(shown.size(), 1);
    QVERIFY(m_left->prepare());
    QTRY_COMPARE(m_left->composed(), u"<h1>A</h1><p>ax</p>"_s);
    QVERIFY(m_left->changes.empty());
    QVERIFY(m_left->activate());
    m_left->js(u"placeCaretAtTextEnd()"_s);
    m_left->type(u"y"_s);
    QTRY_COMPARE(m_desk->bodies[m_a], u"<h1>A</h1><p>axy</p>"_s);
}

void TestPageTraps::deadPageWhileSwitchingLosesNothing()
{
    m_left->type(u"x"_s);
    QTRY_COMPARE(m_desk->bodies[m_a], u"<h1>A</h1><p>ax</p>"_s);
    QSignalSpy shown(&m_left->coordinator(), &RichTextEditorCoordinator::shown);
    ::kill(m_left->webEngineView()->property("renderProcessPid").value<qint64>(), SIGKILL);
    m_desk->show(*m_left, m_b); // its question for the old text will never be answered
    QTRY_COMPARE(m_left->coordinator().loadedNoteID(), m_b);
    QVERIFY(m_left->prepare());
    QTRY_COMPARE(m_left->composed(), u"<h1>B</h1><p>b</p>"_s);
    QCOMPARE(m_desk->bodies[m_a], u"<h1>A</h1><p>ax</p>"_s);
    QCOMPARE(m_desk->bodies[m_b], u"<h1>B</h1><p>b</p>"_s);
}

void TestPageTraps::reloadedPageIsNotTakenForTheNote()
{
    for (int round = 0; round < 3; ++round) {
        QSignalSpy shown(&m_left->coordinator(), &RichTextEditorCoordinator::shown);
        ::kill(m_left->webEngineView()->property("renderProcessPid").value<qint64>(), SIGKILL);
        QTRY_VERIFY(!shown.isEmpty());
        QVERIFY(m_left->prepare());
        QTRY_COMPARE(m_left->composed(), u"<h1>A</h1><p>a</p>"_s);
    }
    QCOMPARE(m_desk->bodies[m_a], u"<h1>A</h1><p>a</p>"_s);
}

void TestPageTraps::aPageWithoutItsScriptIsMadeAnew()
{
    QTest::ignoreMessage(QtWarningMsg, "Plim: editor page lost: without its script");
    const QPointer<QQuickItem> first = m_left->webEngineView();
    auto *scripts = first->property("userScripts").value<QObject *>();
    QVERIFY(scripts && QMetaObject::invokeMethod(scripts, "clear"));
    QVERIFY(QMetaObject::invokeMethod(first, "loadPage", Q_ARG(QString, u"<div id=title></div><div id=body></div>"_s)));
    QTRY_VERIFY(!first);
    QTRY_VERIFY(m_left->prepare());
    QTRY_COMPARE(m_left->composed(), u"<h1>A</h1><p>a</p>"_s);
    QTRY_VERIFY(m_left->body().contains(u'|'));
    m_left->type(u"x"_s);
    QTRY_COMPARE(m_desk->bodies[m_a], u"<h1>A</h1><p>ax</p>"_s);
}

void TestPageTraps::flushDeliversWhatIsPending()
{
    m_left->js(u"bodyEl.firstChild.append('x'); Promise.resolve().then(cancelDebounce); null"_s); // never reported by itself
    QCOMPARE(m_desk->bodies[m_a], u"<h1>A</h1><p>a</p>"_s);
    Q_EMIT NotificationCenter::shared().plimFlushEditors();
    QTRY_COMPARE(m_desk->bodies[m_a], u"<h1>A</h1><p>ax</p>"_s);
}

void TestPageTraps::textSizeIsSentOnce()
{
    QCOMPARE(m_left->text(u"document.documentElement.style.getPropertyValue('--base')"_s), u"15px"_s);
    QSignalSpy scripts(m_left->coordinator().webView(), &EditorWebView::scriptRequestedWithoutResult);
    for (const double size : {19.0, 19.0, 19.0})
        m_left->ask(m_a, m_desk->bodies[m_a], size);
    QCOMPARE(std::ranges::count_if(scripts, [](const QVariantList &s) { return s[0].toString().startsWith(u"window.setFontSize"_s); }), 1);
    QTRY_COMPARE(m_left->text(u"getComputedStyle(bodyEl).fontSize"_s), u"19px"_s);
}

// A call takes no more than some 100,000 arguments, and such a note was once shown as the one before.
void TestPageTraps::aNoteOfVeryManyLinesIsShownWhole()
{
    constexpr int count = 200000;
    const QString html = u"<h1>B</h1>"_s + QString(u"<p>x</p>"_s).repeated(count);
    m_desk->bodies[m_b] = html;
    m_desk->show(*m_left, m_b);
    QTRY_COMPARE_WITH_TIMEOUT(m_left->js(u"bodyEl.childElementCount"_s).toInt(), count, 4 * longEnough);
    m_desk->show(*m_left, m_a);
    QTRY_COMPARE_WITH_TIMEOUT(m_left->composed(), u"<h1>A</h1><p>a</p>"_s, 4 * longEnough);
    QVERIFY(m_desk->bodies[m_b] == html);
}

void TestPageTraps::aVeryLongWordIsWrittenOn_data()
{
    QTest::addColumn<QString>("html");
    QTest::addColumn<QString>("region");
    const QString word(1'000'000, u'x');
    QTest::newRow("title") << u"<h1>"_s + word + u"</h1><p>a</p>"_s << u"titleEl"_s;
    QTest::newRow("body") << u"<h1>T</h1><p>"_s + word + u"</p>"_s << u"bodyEl"_s;
}

/// In seconds; it took the engine minutes for every letter, before words.js.
void TestPageTraps::aVeryLongWordIsWrittenOn()
{
    QFETCH(QString, html);
    QFETCH(QString, region);
    m_desk->bodies[m_b] = html;
    m_desk->show(*m_left, m_b);
    QTRY_COMPARE(m_left->coordinator().loadedNoteID(), m_b);
    m_left->js(u"placeCaretAtEnd(%1); null"_s.arg(region));
    m_left->type(u"yz"_s);
    QTRY_VERIFY(m_desk->bodies[m_b].contains(u"xyz"_s));
    QCOMPARE(m_desk->bodies[m_b].size(), html.size() + 2);
}

// It comes in pieces, none of which may end within a character of two units.
void TestPageTraps::aLongReportArrivesWhole_data()
{
    QTest::addColumn<QString>("begin");
    QTest::newRow("even") << u""_s;
    QTest::newRow("odd") << u"x"_s;
}

void TestPageTraps::aLongReportArrivesWhole()
{
    QFETCH(QString, begin);
    const QString text = begin + u"\U0001F600"_s.repeated(500'000);
    m_left->js(u"bodyEl.lastChild.textContent = '%1' + '\U0001F600'.repeat(500000); flushNow(); null"_s.arg(begin));
    QTRY_VERIFY(m_desk->bodies[m_a].size() > text.size());
    QVERIFY(m_desk->bodies[m_a] == u"<h1>A</h1><p>%1</p>"_s.arg(text));
    m_left->js(u"bodyEl.lastChild.textContent = 'b'; flushNow(); null"_s);
    QTRY_COMPARE(m_desk->bodies[m_a], u"<h1>A</h1><p>b</p>"_s);
}

// Else a report would undo what was typed between it and the answer that a switch of notes waits for.
void TestPageTraps::aReportIsThereBeforeALaterAnswer_data()
{
    QTest::addColumn<int>("words");
    QTest::addColumn<int>("count");
    QTest::newRow("a few words") << 3 << 200;
    QTest::newRow("a long note") << 20'000 << 50;
    QTest::newRow("in pieces") << 500'000 << 5;
}

void TestPageTraps::aReportIsThereBeforeALaterAnswer()
{
    QFETCH(int, words);
    QFETCH(int, count);
    for (int i = 0; i < count; ++i) {
        const QString begin = QString::number(i) + u'x';
        QVERIFY(m_left->js(u"bodyEl.lastChild.textContent = '%1' + 'words '.repeat(%2); flushNow(); true"_s.arg(begin).arg(words)).toBool());
        QVERIFY(!m_left->changes.empty());
        QVERIFY(m_left->changes.back().html.startsWith(u"<h1>A</h1><p>"_s + begin));
    }
}

void TestPageTraps::whatIsKnownIsNotToldAgain()
{
    const auto changed = [this] { return m_left->text(u"getChangedHTML()"_s); };
    QCOMPARE(m_left->composed(), u"<h1>A</h1><p>a</p>"_s);
    QCOMPARE(changed(), QString());
    QCOMPARE(changed(), QString());
    m_left->js(u"bodyEl.lastChild.textContent = 'ab'; null"_s);
    QCOMPARE(changed(), u"<h1>A</h1><p>ab</p>"_s);
    QCOMPARE(changed(), QString());
    m_desk->show(*m_left, m_b); // which is told whole, as is what comes after it
    QTRY_COMPARE(m_left->coordinator().loadedNoteID(), m_b);
    QTRY_COMPARE(m_left->text(u"shownNoteID"_s).toUpper(), m_b.toString(QUuid::WithoutBraces).toUpper());
    QCOMPARE(changed(), u"<h1>B</h1><p>b</p>"_s);
}

void TestPageTraps::aNoteThatCouldNotBeShownIsNotTakenForAnother()
{
    const auto pageIsAskedFor = [this](const QUuid &noteID) {
        return m_left->text(u"String(currentNoteID)"_s).toUpper() ==
               noteID.toString(QUuid::WithoutBraces).toUpper();
    };
    m_left->js(u"sanitizeCurrentBody = () => { throw new Error('for the test'); }; null"_s);
    QSignalSpy changed(&m_left->coordinator(), &RichTextEditorCoordinator::change);
    m_desk->show(*m_left, m_b);
    QTRY_VERIFY(pageIsAskedFor(m_b));
    m_left->js(u"bodyEl.append('more'); notifyChange(); null"_s);
    QVERIFY(m_left->text(u"getComposedHTML()"_s).isEmpty());
    m_desk->show(*m_left, m_a); // and whoever reads the page at a switch gets nothing from it
    QTRY_VERIFY(pageIsAskedFor(m_a));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(m_desk->bodies[m_b], u"<h1>B</h1><p>b</p>"_s);
    QCOMPARE(m_desk->bodies[m_a], u"<h1>A</h1><p>a</p>"_s);
}

PLIM_PAGE_TEST_MAIN(TestPageTraps)
#include "tst_page_traps.moc"
