#include "shell/LanguageManager.h"
#include "tests/views/Stage.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray behind = R"(
    SymbolButton { objectName: "behind"; symbol: "plus"; helpText: "Add"; x: 5; y: 5 }
)";

/// A dialog over a window in which a button has the keyboard.
struct Dialog : Stage {
    Dialog(const QByteArray &view, const QString &name)
        : Stage(behind + view, QSize(700, 500)), dialog(object(name))
    {
        LanguageManager::shared().setLanguage(AppLanguage::en);
        item(u"behind"_s)->forceActiveFocus(Qt::TabFocusReason);
    }

    [[nodiscard]] bool isOpen() const { return dialog->property("opened").toBool(); }
    [[nodiscard]] bool isGone() const { return !dialog->property("visible").toBool(); }
    void open() const { QMetaObject::invokeMethod(dialog, "open"); }
    void pressBeside() const
    {
        QTest::mouseClick(window(), Qt::LeftButton, {}, QPoint(20, window()->height() - 20));
    }
    [[nodiscard]] bool focusIsBack() const { return item(u"behind"_s)->hasActiveFocus(); }

    QObject *dialog;
};

struct DeleteNote : Dialog {
    DeleteNote() : Dialog("DeleteNoteDialog {}", u"deleteNoteDialog"_s) {}

    void ask() const
    {
        QMetaObject::invokeMethod(dialog, "ask", Q_ARG(QString, u"a"_s));
        QTRY_VERIFY(isOpen());
    }
    [[nodiscard]] QString pending() const
    {
        return dialog->property("notePendingDeletion").toString();
    }
};

struct DeleteNotes : Dialog {
    DeleteNotes() : Dialog("DeleteNotesDialog {}", u"deleteNotesDialog"_s) {}
};

struct Link : Dialog {
    Link() : Dialog("LinkDialog {}", u"linkDialog"_s) {}

    void ask(const QString &address) const
    {
        dialog->setProperty("linkURL", address);
        open();
        QTRY_VERIFY(isOpen());
    }
    [[nodiscard]] QString text() const { return item(u"linkField"_s)->property("text").toString(); }
};
} // namespace

class TestDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    // Deleting one note

    void deletingANoteSaysWhatItMeans()
    {
        const DeleteNote w;
        w.ask();
        const QStringList texts = textsIn(w.window()->contentItem());
        for (const QString &text :
             {u"Delete note permanently?"_s, u"Delete permanently"_s, u"Archive"_s, u"Cancel"_s})
            QVERIFY2(texts.contains(text), qPrintable(text));
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QVERIFY(textsIn(w.window()->contentItem()).contains(u"Usuń na stałe"_s));
    }

    void eachButtonAnswersAndCloses_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("deletions");
        QTest::addColumn<int>("archivings");
        QTest::newRow("delete") << u"confirmDelete"_s << 1 << 0;
        QTest::newRow("archive") << u"archiveInstead"_s << 0 << 1;
        QTest::newRow("cancel") << u"cancelDelete"_s << 0 << 0;
    }
    void eachButtonAnswersAndCloses()
    {
        QFETCH(QString, button);
        QFETCH(int, deletions);
        QFETCH(int, archivings);
        const DeleteNote w;
        QSignalSpy deleted(w.dialog, SIGNAL(deleteConfirmed(QString)));
        QSignalSpy archived(w.dialog, SIGNAL(archiveChosen(QString)));
        w.ask();
        QCOMPARE(w.pending(), u"a"_s);
        click(w.item(button));
        QTRY_VERIFY(w.isGone());
        QCOMPARE(deleted.size(), deletions);
        QCOMPARE(archived.size(), archivings);
        for (const auto &answer : deleted + archived)
            QCOMPARE(answer[0].toString(), u"a"_s);
        QCOMPARE(w.pending(), QString());
        QVERIFY(w.focusIsBack());
    }

    void escAndAPressBesideItAnswerNothing()
    {
        const DeleteNote w;
        QSignalSpy deleted(w.dialog, SIGNAL(deleteConfirmed(QString)));
        QSignalSpy archived(w.dialog, SIGNAL(archiveChosen(QString)));
        w.ask();
        press(w.window(), Qt::Key_Escape);
        QTRY_VERIFY(w.isGone());
        QCOMPARE(w.pending(), QString());
        QVERIFY(w.focusIsBack());
        w.ask();
        w.pressBeside();
        QTRY_VERIFY(w.isGone());
        QCOMPARE(w.pending(), QString());
        QVERIFY(w.focusIsBack());
        QCOMPARE(deleted.size() + archived.size(), 0);
    }

    void theHarmlessButtonHasTheKeyboard()
    {
        const DeleteNote w;
        w.ask();
        QTRY_VERIFY(w.item(u"cancelDelete"_s)->hasActiveFocus());
        press(w.window(), Qt::Key_Return);
        QTRY_VERIFY(w.isGone());
    }

    void theKeyboardStaysInTheDialog()
    {
        const DeleteNote w;
        w.ask();
        QTRY_VERIFY(w.item(u"cancelDelete"_s)->hasActiveFocus());
        QStringList walk;
        for (int i = 0; i < 3; ++i) {
            press(w.window(), Qt::Key_Tab);
            walk << w.window()->activeFocusItem()->objectName();
        }
        QCOMPARE(walk, (QStringList{u"confirmDelete"_s, u"archiveInstead"_s, u"cancelDelete"_s}));
        press(w.window(), Qt::Key_Backtab);
        QCOMPARE(w.window()->activeFocusItem()->objectName(), u"archiveInstead"_s);
    }

    void keysConfirm()
    {
        const DeleteNote w;
        QSignalSpy deleted(w.dialog, SIGNAL(deleteConfirmed(QString)));
        w.ask();
        QTRY_VERIFY(w.item(u"cancelDelete"_s)->hasActiveFocus());
        press(w.window(), Qt::Key_Tab);
        press(w.window(), Qt::Key_Space);
        QTRY_VERIFY(w.isGone());
        QCOMPARE(deleted.size(), 1);
    }

    void nothingBehindTheDialogIsPressed()
    {
        const DeleteNote w;
        QSignalSpy clicked(w.item(u"behind"_s), SIGNAL(clicked()));
        w.ask();
        click(w.item(u"behind"_s));
        QTRY_VERIFY(w.isGone());
        QCOMPARE(clicked.size(), 0);
    }

    void theDialogLiesWithinItsWindow()
    {
        const DeleteNote w;
        for (const auto language : {AppLanguage::en, AppLanguage::pl}) {
            LanguageManager::shared().setLanguage(language);
            w.ask();
            const QRectF window(QPointF(0, 0), QSizeF(w.window()->size()));
            for (const QString &name : {u"confirmDelete"_s, u"archiveInstead"_s, u"cancelDelete"_s})
                QVERIFY(window.contains(frameOf(w.item(name))));
            press(w.window(), Qt::Key_Escape);
            QTRY_VERIFY(w.isGone());
        }
    }

    // Deleting several

    void deletingSeveralIsConfirmedOrNot()
    {
        const DeleteNotes w;
        QSignalSpy confirmed(w.dialog, SIGNAL(confirmed()));
        const auto ask = [&] {
            w.open();
            QTRY_VERIFY(w.item(u"cancelDeleteAll"_s)->hasActiveFocus());
        };
        ask();
        click(w.item(u"cancelDeleteAll"_s));
        QTRY_VERIFY(w.isGone());
        ask();
        press(w.window(), Qt::Key_Escape);
        QTRY_VERIFY(w.isGone());
        ask();
        w.pressBeside();
        QTRY_VERIFY(w.isGone());
        QCOMPARE(confirmed.size(), 0);
        ask();
        click(w.item(u"confirmDeleteAll"_s));
        QTRY_VERIFY(w.isGone());
        QCOMPARE(confirmed.size(), 1);
        QVERIFY(w.focusIsBack());
    }

    // Links

    void anAddressIsTypedAndConfirmedByReturn()
    {
        const Link w;
        QSignalSpy confirmed(w.dialog, SIGNAL(confirmed(QString)));
        w.ask({});
        QTRY_VERIFY(w.item(u"linkField"_s)->hasActiveFocus());
        type(w.window(), u"plim.example"_s);
        press(w.window(), Qt::Key_Return);
        QTRY_VERIFY(w.isGone());
        QCOMPARE(confirmed.size(), 1);
        QCOMPARE(confirmed[0][0].toString(), u"plim.example"_s);
        QVERIFY(w.focusIsBack());
    }

    void theGivenAddressIsSelectedSoThatTypingReplacesIt()
    {
        const Link w;
        QSignalSpy confirmed(w.dialog, SIGNAL(confirmed(QString)));
        w.ask(u"https://old.example"_s);
        QTRY_VERIFY(w.item(u"linkField"_s)->hasActiveFocus());
        QCOMPARE(w.item(u"linkField"_s)->property("selectedText").toString(),
                 u"https://old.example"_s);
        type(w.window(), u"new"_s);
        click(w.item(u"linkInsert"_s));
        QTRY_VERIFY(w.isGone());
        QCOMPARE(confirmed.size(), 1);
        QCOMPARE(confirmed[0][0].toString(), u"new"_s);
    }

    void aSecondAddressReplacesWhatWasTypedForTheFirst()
    {
        const Link w;
        w.ask(u"https://one.example"_s);
        QTRY_VERIFY(w.item(u"linkField"_s)->hasActiveFocus());
        type(w.window(), u"typed"_s);
        press(w.window(), Qt::Key_Escape);
        QTRY_VERIFY(w.isGone());
        w.ask(u"https://two.example"_s);
        QCOMPARE(w.text(), u"https://two.example"_s);
        press(w.window(), Qt::Key_Escape);
        QTRY_VERIFY(w.isGone());
        w.ask({});
        QCOMPARE(w.text(), QString());
    }

    void aLinkThatIsGivenUpIsNotInserted()
    {
        const Link w;
        QSignalSpy confirmed(w.dialog, SIGNAL(confirmed(QString)));
        w.ask(u"https://old.example"_s);
        press(w.window(), Qt::Key_Escape);
        QTRY_VERIFY(w.isGone());
        w.ask({});
        click(w.item(u"linkCancel"_s));
        QTRY_VERIFY(w.isGone());
        w.ask({});
        w.pressBeside();
        QTRY_VERIFY(w.isGone());
        QCOMPARE(confirmed.size(), 0);
        QVERIFY(w.focusIsBack());
    }
};

QTEST_MAIN(TestDialogs)
#include "tst_dialogs.moc"
