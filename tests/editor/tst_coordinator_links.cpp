#include "tests/editor/EditorFixture.h"

#include <QSignalSpy>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString a = u"<h1>a</h1>"_s;
const QString ask = u"window.linkAtCaret()"_s;
} // namespace

/// What the page tells of links, and what is asked of it.
class TestCoordinatorLinks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aClickedLinkIsOpenedWhenItMayBe_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("isOpened");
        for (const char *address :
             {"https://example.org/a?b=c#d", "http://example.org/", "mailto:ala@example.org"})
            QTest::newRow(address) << QString::fromLatin1(address) << true;
        for (const char *address : {"", "file:///etc/passwd", "javascript:alert(1)",
                                    "data:text/html,x", "ftp://example.org/", "x.html", "{}"})
            QTest::newRow(address) << QString::fromLatin1(address) << false;
    }
    void aClickedLinkIsOpenedWhenItMayBe()
    {
        QFETCH(QString, address);
        QFETCH(bool, isOpened);
        EditorFixture f;
        f.showNote(noteA, a);
        const QSignalSpy opened(&f.coordinator, &RichTextEditorCoordinator::linkActivated);
        f.view.post(u"plimLink"_s, address);
        QCOMPARE(opened.size(), isOpened ? 1 : 0);
        if (isOpened)
            QCOMPARE(opened[0][0].toUrl(), QUrl(address));
        QCOMPARE(f.changes, Changes());
        QVERIFY(f.view.log().isEmpty());
    }

    void theLinkUnderThePointer()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        const QSignalSpy changed(&f.coordinator, &RichTextEditorCoordinator::hoveredLinkChanged);
        QCOMPARE(f.coordinator.hoveredLink(), QUrl());
        f.view.post(u"plimHover"_s, u"https://example.org/"_s);
        f.view.post(u"plimHover"_s, u"https://example.org/"_s);
        QCOMPARE(f.coordinator.hoveredLink(), QUrl(u"https://example.org/"_s));
        QCOMPARE(changed.size(), 1);
        f.view.post(u"plimHover"_s, u"file:///etc/passwd"_s); // none that would be opened
        QCOMPARE(f.coordinator.hoveredLink(), QUrl());
        f.view.post(u"plimHover"_s, u"mailto:ala@example.org"_s);
        f.view.post(u"plimHover"_s, u""_s);
        QCOMPARE(f.coordinator.hoveredLink(), QUrl());
        QCOMPARE(changed.size(), 4);
    }

    void aPageThatIsGoneHasNoLinkUnderThePointer()
    {
        EditorFixture f;
        f.showNote(noteA, a);
        f.view.post(u"plimHover"_s, u"https://example.org/"_s);
        f.view.lose();
        QCOMPARE(f.coordinator.hoveredLink(), QUrl());
    }

    void theLinkAtTheCaretIsAskedOfThePage()
    {
        EditorController controller;
        EditorFixture f;
        f.coordinator.setController(&controller);
        f.showNote(noteA, a);
        const QSignalSpy answers(&controller, &EditorController::linkAtCaretReady);
        controller.requestLinkAtCaret();
        QCOMPARE(f.view.takeLog(), QStringList{ask}); // the keyboard stays where it is
        QCOMPARE(answers.size(), 0);
        f.view.answer(u"example.org/a b"_s);
        QCOMPARE(answers.size(), 1);
        QCOMPARE(answers[0][0].toString(), u"example.org/a b"_s); // as written
        controller.requestLinkAtCaret();
        f.view.answer(QVariant()); // a page that cannot say
        QCOMPARE(answers.size(), 2);
        QCOMPARE(answers[1][0].toString(), QString());
    }

    void withoutAPageThereIsNoLink()
    {
        EditorController controller;
        const QSignalSpy answers(&controller, &EditorController::linkAtCaretReady);
        controller.requestLinkAtCaret(); // no coordinator
        QCOMPARE(answers.size(), 1);
        RichTextEditorCoordinator withoutView;
        withoutView.setController(&controller);
        controller.requestLinkAtCaret();
        QCOMPARE(answers.size(), 2);
        EditorFixture loading;
        loading.coordinator.setController(&controller);
        loading.coordinator.setWebView(&loading.view.seam);
        controller.requestLinkAtCaret();
        QCOMPARE(answers.size(), 3);
        for (const QVariantList &answer : answers)
            QCOMPARE(answer[0].toString(), QString());
        QVERIFY(!loading.view.log().contains(ask));
    }

    void whoeverAsksIsAnsweredThoughThePageDies()
    {
        EditorController controller;
        const QSignalSpy answers(&controller, &EditorController::linkAtCaretReady);
        auto f = std::make_unique<EditorFixture>();
        f->coordinator.setController(&controller);
        f->showNote(noteA, a);
        controller.requestLinkAtCaret();
        f->view.lose();
        QCOMPARE(answers.size(), 1);
        f->load();
        controller.requestLinkAtCaret();
        f.reset();
        QCOMPARE(answers.size(), 2);
    }

    void aControllerThatIsGoneIsNotAnswered()
    {
        auto controller = std::make_unique<EditorController>();
        EditorFixture f;
        f.coordinator.setController(controller.get());
        f.showNote(noteA, a);
        controller->requestLinkAtCaret();
        controller.reset();
        f.view.answer(u"https://example.org/"_s);
    }
};

QTEST_GUILESS_MAIN(TestCoordinatorLinks)
#include "tst_coordinator_links.moc"
