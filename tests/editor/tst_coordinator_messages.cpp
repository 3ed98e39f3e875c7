#include "tests/editor/EditorFixture.h"
#include "tests/editor/StandardOutput.h"

#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString a = u"<h1>a</h1>"_s;
const char *const tooLong = "Plim: a message of the page is dropped, it has more than 10 letters";

/// As the page does.
void postInPieces(PageMessages &page, const QString &handler, const QString &body)
{
    constexpr qsizetype longestPiece = 1 << 18;
    qsizetype begin = 0;
    for (; body.size() - begin > longestPiece; begin += longestPiece) {
        const QString piece = body.sliced(begin, longestPiece);
        if (begin == 0)
            page.receiveBeginning(piece);
        else
            page.receiveMiddle(piece);
    }
    page.receiveEnd(handler, body.sliced(begin));
}
} // namespace

class TestCoordinatorMessages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changes_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QUuid>("id");
        QTest::addColumn<QString>("html");
        const auto row = [](const char *name, const QString &body, const TestNote &note,
                            const QString &html) {
            QTest::newRow(name) << body << note.id << html;
        };
        const auto whole = [&](const char *name, const QString &body) {
            row(name, body, noteA, body);
        };

        row("id and html", message(noteA, u"<h1>x</h1>"_s), noteA, u"<h1>x</h1>"_s);
        row("another note's", message(noteB, u"<h1>x</h1>"_s), noteB, u"<h1>x</h1>"_s);
        row("id in small letters", u"{\"id\":\"%1\",\"html\":\"x\"}"_s.arg(noteB.text.toLower()),
            noteB, u"x"_s);
        row("html alone", u"{\"html\":\"x\"}"_s, noteA, u"x"_s);
        row("an id that is none", u"{\"id\":\"12\",\"html\":\"x\"}"_s, noteA, u"x"_s);
        row("an empty id", u"{\"id\":\"\",\"html\":\"x\"}"_s, noteA, u"x"_s);
        row("more members", u"{\"html\":\"x\",\"a\":\"b\",\"id\":\"%1\"}"_s.arg(noteB.text), noteB,
            u"x"_s);
        row("escapes", u"{\"html\":\"\\u00f3\\n\\\"<\\/p>😀\"}"_s, noteA, u"\u00f3\n\"</p>😀"_s);
        whole("plain HTML", u"<h1>plain</h1>"_s);
        whole("a null id", u"{\"id\":null,\"html\":\"x\"}"_s);
        whole("a member that is no text",
              u"{\"id\":\"%1\",\"html\":\"x\",\"n\":1}"_s.arg(noteB.text));
        whole("html that is no text", u"{\"html\":7}"_s);
        whole("no html", u"{\"id\":\"%1\"}"_s.arg(noteB.text));
        whole("an empty object", u"{}"_s);
        whole("an array", u"[\"html\"]"_s);
        whole("a text", u"\"x\""_s);
        whole("cut off", u"{\"html\":\"x\""_s);
    }
    void changes()
    {
        QFETCH(QString, body);
        QFETCH(QUuid, id);
        QFETCH(QString, html);
        EditorFixture f;
        f.showNote(noteA, a);
        f.view.post(body);
        QCOMPARE(f.changes, Changes({{id, html}}));
    }

    void whatIsKnownIsNoChange()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.view.post(message(noteA, a)); // as pushed
        f.view.post(a);
        f.view.post(u"{\"html\":\"%1\"}"_s.arg(a));
        QCOMPARE(f.changes, Changes());
        f.view.post(message(noteA, u"<h1>ab</h1>"_s));
        f.view.post(message(noteA, u"<h1>ab</h1>"_s)); // as accepted
        QCOMPARE(f.takeChanges(), Changes({{noteA.id, u"<h1>ab</h1>"_s}}));
        f.view.post(message(noteA, a)); // and back
        QCOMPARE(f.takeChanges(), Changes({{noteA.id, a}}));
    }

    void theNormalizedFormIsOneChange()
    {
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1><p style=x>b</p>"_s);
        f.view.post(message(noteA, u"<h1>a</h1><p>b</p>"_s));
        f.view.post(message(noteA, u"<h1>a</h1><p>b</p>"_s));
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>a</h1><p>b</p>"_s}}));
        QVERIFY(f.view.log().isEmpty()); // and the page, which has it, is not given it
    }

    void withoutAnIdTheNoteAskedForIsMeant()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.update({}, {});
        f.view.post(u"<h1>x</h1>"_s);
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>x</h1>"_s}})); // none is: the one in the page
    }

    void nothingEmptyIsHandedOut_data()
    {
        QTest::addColumn<QString>("body");
        QTest::newRow("no body") << u""_s;
        QTest::newRow("html") << message(noteA, {});
        QTest::newRow("another note's html") << message(noteB, {});
        QTest::newRow("without id") << u"{\"html\":\"\"}"_s;
    }
    void nothingEmptyIsHandedOut()
    {
        QFETCH(QString, body);
        EditorFixture f;
        f.showNote(noteA, a);
        f.view.post(body);
        QCOMPARE(f.changes, Changes());
    }

    void aPageWithoutANoteSaysNothing_data()
    {
        QTest::addColumn<bool>("isLoaded");
        QTest::addColumn<QString>("body");
        for (const bool isLoaded : {false, true}) {
            const char *when = isLoaded ? "loaded" : "loading";
            QTest::addRow("%s, null id", when)
                << isLoaded << u"{\"id\":null,\"html\":\"<h1><br></h1>\"}"_s;
            QTest::addRow("%s, plain", when) << isLoaded << u"<h1><br></h1>"_s;
            QTest::addRow("%s, no id", when) << isLoaded << u"{\"html\":\"<h1><br></h1>\"}"_s;
        }
    }
    void aPageWithoutANoteSaysNothing()
    {
        QFETCH(bool, isLoaded);
        QFETCH(QString, body);
        EditorFixture f;
        if (isLoaded)
            f.load();
        else
            f.update(noteA.id, a);
        f.view.post(body);
        QCOMPARE(f.changes, Changes());
    }

    void aLongMessageComesInPieces()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        auto &page = *qobject_cast<PageMessages *>(f.view.seam.messages());
        page.receiveBeginning(u"<p>"_s);
        page.receiveMiddle(u"long"_s);
        page.receiveMiddle(u"er "_s);
        QCOMPARE(f.changes, Changes());
        page.receiveEnd(u"plim"_s, u"text</p>"_s);
        QCOMPARE(f.changes, Changes({{noteA.id, u"<p>longer text</p>"_s}}));
    }

    void aMessageWithoutItsBeginningOrEndIsNone()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        auto &page = *qobject_cast<PageMessages *>(f.view.seam.messages());
        page.receiveMiddle(u"<p>the rest"_s);
        page.receiveEnd(u"plim"_s, u"of a page that died</p>"_s);
        QCOMPARE(f.changes, Changes());
        page.receiveBeginning(u"<p>cut off"_s);
        page.receiveBeginning(u"<p>anew"_s);
        page.receive(u"plim"_s, u"<p>short</p>"_s);
        page.receiveEnd(u"plim"_s, u"</p>"_s);
        QCOMPARE(f.changes, Changes({{noteA.id, u"<p>short</p>"_s}}));
    }

    /// A page that was taken over may begin a message and never end it.
    void aMessageWithoutMeasureIsDropped()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        auto &page = *qobject_cast<PageMessages *>(f.view.seam.messages());
        page.setLongest(10);
        QTest::ignoreMessage(QtWarningMsg, tooLong);
        page.receiveBeginning(u"<p>12345"_s);
        for (int i = 0; i < 1000; ++i) {
            page.receiveMiddle(u"678"_s);
            QVERIFY(page.keptSize() <= 10);
        }
        QCOMPARE(page.keptSize(), 0);
        page.receiveEnd(u"plim"_s, u"</p>"_s);
        page.receiveMiddle(u"<p>9"_s); // has no beginning any more
        page.receiveEnd(u"plim"_s, u"</p>"_s);
        QCOMPARE(f.takeChanges(), Changes());
        // The next one is heard, up to the last letter that there is room for.
        page.receiveBeginning(u"<p>12"_s);
        page.receiveEnd(u"plim"_s, u"3</p>"_s);
        QCOMPARE(f.takeChanges(), Changes({{noteA.id, u"<p>123</p>"_s}}));
        QTest::ignoreMessage(QtWarningMsg, tooLong);
        page.receiveBeginning(u"<p>1234"_s);
        page.receiveEnd(u"plim"_s, u"</p>"_s);
        QTest::ignoreMessage(QtWarningMsg, tooLong);
        page.receive(u"plim"_s, u"<p>1234</p>"_s);
        QCOMPARE(f.takeChanges(), Changes());
    }

    void theWordsOfAMessageThatWasTooLongAreAskedFor()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        auto &page = *qobject_cast<PageMessages *>(f.view.seam.messages());
        page.setLongest(10);
        for (const QString &handler : {u"plimImage"_s, u"plimLog"_s, u"plim"_s}) {
            QTest::ignoreMessage(QtWarningMsg, tooLong);
            page.receiveBeginning(u"<p>typed"_s);
            QCOMPARE(f.view.questions(), QStringList());
            page.receiveEnd(handler, u" words</p>"_s);
        }
        QCOMPARE(f.view.questions(), QStringList{Script::read});
        f.view.answer(u"<h1>a</h1><p>typed words</p>");
        QCOMPARE(f.changes, Changes({{noteA.id, u"<h1>a</h1><p>typed words</p>"_s}}));
        QCOMPARE(f.view.questions(), QStringList());
    }

    void noWordsAreAskedOfAPageWithoutANote()
    {
        EditorFixture f;
        f.load();
        (void)f.view.takeLog();
        auto &page = *qobject_cast<PageMessages *>(f.view.seam.messages());
        page.setLongest(10);
        QTest::ignoreMessage(QtWarningMsg, tooLong);
        page.receive(u"plim"_s, u"<p>nobody's</p>"_s);
        QCOMPARE(f.view.log(), QStringList());
    }

    /// Of 20 MB, in twenty million letters; and the largest picture that the page sends.
    void theLargestNoteAndPictureHaveRoom()
    {
        constexpr qsizetype largestNote = 20'000'000;
        constexpr qsizetype largestPicture = qsizetype(48) << 20; // pictures.js
        EditorFixture f;
        f.showNote(noteA, a);
        const QString html = u"<h1>a</h1><p>"_s + QString(largestNote, u'x') + u"</p>"_s;
        auto &page = *qobject_cast<PageMessages *>(f.view.seam.messages());
        postInPieces(page, u"plim"_s, message(noteA, html));
        QCOMPARE(f.changes.size(), 1);
        QVERIFY(f.changes.front().second == html);

        const QSignalSpy received(&page, &PageMessages::received);
        postInPieces(page, u"none"_s, QString(largestPicture / 3 * 4 + 1000, u'A'));
        QCOMPARE(received.size(), 1);
    }

    void otherHandlersChangeNothing()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        StandardOutput output;
        for (const QString &handler : {u"plimstate"_s, u"PLIM"_s, u""_s, u"plimState"_s, u"x"_s})
            f.view.post(handler, message(noteA, u"<h1>x</h1>"_s));
        QCOMPARE(output.release(), QByteArray());
        QCOMPARE(f.changes, Changes());
    }

    void diagnosticsArePrinted_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("plain") << u"after300: anchor=P in DIV in-escP=true"_s
                               << "[PLIM-LOG] after300: anchor=P in DIV in-escP=true\n"_ba;
        QTest::newRow("empty") << u""_s << "[PLIM-LOG] \n"_ba;
        QTest::newRow("no format")
            << u"toggle-error: 100%s %n"_s << "[PLIM-LOG] toggle-error: 100%s %n\n"_ba;
        QTest::newRow("accents") << u"zażółć"_s
                                 << "[PLIM-LOG] za\xc5\xbc\xc3\xb3\xc5\x82\xc4\x87\n"_ba;
    }
    void diagnosticsArePrinted()
    {
        QFETCH(QString, body);
        EditorFixture f;
        f.showNote(noteA, a);
        StandardOutput output;
        f.view.post(u"plimLog"_s, body);
        QTEST(output.release(), "line");
        QCOMPARE(f.changes, Changes());
    }
};

QTEST_GUILESS_MAIN(TestCoordinatorMessages)
#include "tst_coordinator_messages.moc"
