#include "editor/EditorController.h"

#include "core/NotificationCenter.h"
#include "tests/editor/EditorFixture.h"

#include <QElapsedTimer>
#include <QSignalSpy>

#include <memory>

using namespace Qt::Literals::StringLiterals;
using Kind = EditorCommand::Kind;

class TestEditorController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAnEditorACommandIsDropped()
    {
        EditorController controller;
        QCOMPARE(controller.coordinator(), nullptr);
        controller.run(Kind::bold);
        controller.run(EditorCommand::heading(2));
        controller.runLink(u"https://plim.org"_s);

        // An editor that comes later does not get what was asked of no one.
        EditorFixture f;
        f.coordinator.setController(&controller);
        f.showNote(noteA, u"<h1>a</h1>"_s);
        controller.run(Kind::italic);
        QTRY_COMPARE(f.view.log(),
                     QStringList({FakeView::takesKeyboard, u"window.runCommand(\"italic\");"_s}));
    }

    void commandsRunLaterInOrderEachWithTheKeyboardFirst()
    {
        EditorController controller;
        EditorFixture f;
        f.coordinator.setController(&controller);
        f.showNote(noteA, u"<h1>a</h1>"_s);
        QElapsedTimer sinceAsked;
        sinceAsked.start();
        qint64 ranAfter = -1;
        connect(&f.view.seam, &EditorWebView::focusRequested, this, [&] {
            if (ranAfter < 0)
                ranAfter = sinceAsked.elapsed();
        });
        controller.run(Kind::bold);
        controller.run(EditorCommand::heading(3));
        controller.runLink(u"a\"b"_s);
        controller.run(EditorCommand(Kind::checkbox));
        QVERIFY(f.view.log().isEmpty());
        const QString keyboard = FakeView::takesKeyboard;
        QTRY_COMPARE(f.view.log(),
                     QStringList({keyboard, u"window.runCommand(\"bold\");"_s, keyboard,
                                  u"window.runCommand(\"formatBlock\", \"h3\");"_s, keyboard,
                                  u"window.runCommand(\"createLink\", \"a\\\"b\");"_s, keyboard,
                                  u"window.toggleChecklist(null);"_s}));
        QVERIFY2(ranAfter >= 45, qPrintable(QString::number(ranAfter)));
        QVERIFY(f.view.questions().isEmpty()); // nobody waits for a result
    }

    void anEditorThatIsGoneRunsNothing()
    {
        EditorController controller;
        auto f = std::make_unique<EditorFixture>();
        f->coordinator.setController(&controller);
        QCOMPARE(controller.coordinator(), &f->coordinator);
        controller.run(Kind::bold);
        f.reset();
        QCOMPARE(controller.coordinator(), nullptr);
        controller.run(Kind::bold);
        // What was asked of the editor while it lived finds nobody.
        EditorFixture other;
        other.showNote(noteA, u"<h1>a</h1>"_s);
        other.coordinator.run(Kind::italic);
        QTRY_COMPARE(other.view.log().size(), 2);
    }

    void aViewThatIsGoneRunsNothing()
    {
        RichTextEditorCoordinator coordinator;
        auto view = std::make_unique<FakeView>();
        coordinator.setWebView(&view->seam);
        coordinator.run(Kind::bold);
        view.reset();
        QCOMPARE(coordinator.webView(), nullptr);
        EditorFixture other;
        other.showNote(noteA, u"<h1>a</h1>"_s);
        other.coordinator.run(Kind::italic);
        QTRY_COMPARE(other.view.log().size(), 2);
    }

    void neitherSideKeepsTheOther()
    {
        auto controller = std::make_unique<EditorController>();
        EditorFixture f;
        f.coordinator.setController(controller.get());
        f.showNote(noteA, u"<h1>a</h1>"_s);
        controller->run(Kind::bold);
        f.view.post(u"plimState"_s, u"{\"bold\":true}"_s);
        controller.reset();
        QCOMPARE(f.coordinator.controller(), nullptr);
        // The command was the editor's already; the report is nobody's.
        QTRY_COMPARE(f.view.log(),
                     QStringList({FakeView::takesKeyboard, u"window.runCommand(\"bold\");"_s}));
        f.update(noteA.id, u"<h1>a</h1>"_s);
    }

    void theEditorUpdatedLastIsTheOneInCharge()
    {
        EditorController controller;
        EditorFixture first;
        EditorFixture second;
        first.coordinator.setController(&controller);
        second.coordinator.setController(&controller);
        QCOMPARE(controller.coordinator(), &second.coordinator);
        first.update(noteA.id, u"<h1>a</h1>"_s);
        QCOMPARE(controller.coordinator(), &first.coordinator);
    }

    void reportsReachTheControllerInATaskOfTheirOwn()
    {
        EditorController controller;
        EditorFixture f;
        f.coordinator.setController(&controller);
        f.showNote(noteA, u"<h1>a</h1>"_s);
        const QSignalSpy spy(&controller, &EditorController::formatStateChanged);
        f.view.post(u"plimState"_s, u"{\"bold\":true,\"h2\":true}"_s);
        QCOMPARE(spy.size(), 0);
        QTRY_COMPARE(spy.size(), 1);
        QVERIFY(controller.formatState() == (EditorFormatState{.bold = true, .h2 = true}));
        f.view.post(u"plimState"_s, u"{\"bold\":true,\"h2\":true}"_s);
        QTRY_COMPARE(spy.size(), 2); // the same once more is news as well
    }

    void malformedReportsLeaveTheStateAlone()
    {
        EditorController controller;
        EditorFixture f;
        f.coordinator.setController(&controller);
        f.showNote(noteA, u"<h1>a</h1>"_s);
        const EditorFormatState before{.italic = true, .link = true};
        controller.setFormatState(before);
        const QSignalSpy spy(&controller, &EditorController::formatStateChanged);
        for (const QString &body : {u""_s, u"x"_s, u"[]"_s, u"{\"bold\":1}"_s, u"{\"bold\":true"_s})
            f.view.post(u"plimState"_s, body);
        f.view.post(u"plimState"_s, u"{\"bold\":true}"_s);
        QTRY_COMPARE(spy.size(), 1); // the good one, sent last
        f.view.post(u"other"_s, u"{\"italic\":true}"_s);
        f.view.post(u"plimState"_s, u"{}"_s);
        QTRY_COMPARE(spy.size(), 2);
        QVERIFY(controller.formatState() == EditorFormatState());
    }

    void theMenuReachesTheEditorWithTheKeyboardOnly()
    {
        EditorFixture pane;
        EditorFixture sticky;
        RichTextEditorCoordinator withoutView;
        pane.showNote(noteA, u"<h1>a</h1>"_s);
        sticky.showNote(noteB, u"<h1>b</h1>"_s);
        auto &center = NotificationCenter::shared();

        Q_EMIT center.plimFormat(EditorCommand::heading(1)); // nobody has the keyboard
        sticky.view.seam.setIsFirstResponder(true);
        Q_EMIT center.plimFormat(EditorCommand::heading(2));
        QTRY_COMPARE(sticky.view.log(),
                     QStringList({FakeView::takesKeyboard,
                                  u"window.runCommand(\"formatBlock\", \"h2\");"_s}));
        QVERIFY(pane.view.log().isEmpty());

        sticky.view.seam.setIsFirstResponder(false);
        pane.view.seam.setIsFirstResponder(true);
        Q_EMIT center.plimFormat(Kind::checkbox);
        QTRY_COMPARE(pane.view.log(),
                     QStringList({FakeView::takesKeyboard, u"window.toggleChecklist(null);"_s}));
        QCOMPARE(sticky.view.log().size(), 2);
    }

    // Whether a command is this editor's is decided when it is given, not when it runs.
    void theKeyboardCountsWhenTheMenuIsUsed()
    {
        EditorFixture f;
        f.showNote(noteA, u"<h1>a</h1>"_s);
        f.view.seam.setIsFirstResponder(true);
        Q_EMIT NotificationCenter::shared().plimFormat(Kind::bulletList);
        f.view.seam.setIsFirstResponder(false);
        QTRY_COMPARE(f.view.log(), QStringList({FakeView::takesKeyboard,
                                                u"window.runCommand(\"insertUnorderedList\");"_s}));
    }
};

QTEST_GUILESS_MAIN(TestEditorController)
#include "tst_editor_controller.moc"
