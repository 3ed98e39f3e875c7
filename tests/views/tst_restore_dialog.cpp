#include "core/NotesJson.h"
#include "tests/views/CommandedWindow.h"
#include "tests/views/Reachable.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// The main window over notes that are on the disk, with two versions before them.
struct Asked : CommandedWindow {
    explicit Asked(AppLanguage language = AppLanguage::en)
        : CommandedWindow(u"Now Then"_s, QSize(900, 560), language)
    {
        QDir().mkpath(home.data());
        write({}, u"Now Then"_s);
        write(u".bak.1"_s, u"Milk Tea Bread Butter"_s);
        write(u".bak.2"_s, u"Old"_s);
    }

    void write(const QString &end, const QString &headings) const
    {
        QFile file(home.data() + u"/notes.json"_s + end);
        const QByteArray bytes =
            headings == "!"_L1 ? QByteArray("[{") : *encodeNotes(notesOf(headings));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("The test's own files could not be written");
        // The higher the number, the older: in one go they may have any order.
        const qint64 minutes = end.isEmpty() ? 0 : end.last(1).toInt();
        if (!file.flush() || !file.setFileTime(QDateTime::currentDateTime().addSecs(-60 * minutes),
                                               QFileDevice::FileModificationTime))
            qFatal("The test's own files could not be dated");
    }
    void ask()
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Restore failed: "_s));
        begin();
    }
    void begin() { commands().run(u"restoreVersion"_s); }
    [[nodiscard]] bool isOpen(const QString &name) const
    {
        return object(name)->property("opened").toBool();
    }
    [[nodiscard]] bool isGone(const QString &name) const
    {
        return !object(name)->property("visible").toBool();
    }
    [[nodiscard]] int chosen() const { return object(dialog)->property("chosen").toInt(); }
    [[nodiscard]] QStringList kept() const
    {
        return QDir(home.data()).entryList({u"*.replaced-*"_s});
    }

    const QString dialog = u"restoreDialog"_s;
    const QString notice = u"noticeDialog"_s;
};
} // namespace

class TestRestoreDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    // What this display cannot do is none of the program's business.
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    }

    void everyVersionIsShown_data()
    {
        QTest::addColumn<AppLanguage>("language");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("en") << AppLanguage::en
                            << QStringList{u"Replace the current notes?"_s, u"Milk, Tea, Bread…"_s,
                                           u"Old"_s, u"Replace"_s, u"Cancel"_s};
        QTest::newRow("pl") << AppLanguage::pl
                            << QStringList{u"Zastąpić bieżące notatki?"_s, u"Milk, Tea, Bread…"_s,
                                           u"Old"_s, u"Zastąp"_s, u"Anuluj"_s};
    }
    void everyVersionIsShown()
    {
        QFETCH(AppLanguage, language);
        QFETCH(QStringList, texts);
        Asked w(language);
        w.ask();
        QTRY_VERIFY(w.isOpen(w.dialog));
        pictureOf(w.window());
        const QStringList shown = textsIn(w.window()->contentItem());
        for (const QString &text : texts)
            QVERIFY2(shown.contains(text), qPrintable(text + u" of "_s + shown.join(u'|')));
        const QString counts = shown.filter(u" · "_s).join(u'|');
        QVERIFY2(counts.contains(language == AppLanguage::en ? u"4 notes"_s : u"4 notatki"_s),
                 qPrintable(counts));
        // Nothing is cut, and all of it is in the window.
        const QRectF window(QPointF(0, 0), QSizeF(w.window()->size()));
        for (const QString &name :
             {u"version.0"_s, u"version.1"_s, u"confirmRestore"_s, u"cancelRestore"_s}) {
            visitItems(w.item(name), [&](QQuickItem *item) {
                if (!item->inherits("QQuickText"))
                    return;
                QVERIFY2(!item->property("truncated").toBool(), qPrintable(name));
                QVERIFY2(item->property("contentWidth").toReal() <= item->width() + 1,
                         qPrintable(name));
                QVERIFY2(window.contains(frameOf(item)), qPrintable(name));
            });
        }
    }

    void givingUpChangesNothing_data()
    {
        QTest::addColumn<QString>("way");
        for (const QString &way : {u"button"_s, u"Esc"_s, u"beside"_s, u"Return"_s})
            QTest::addRow("%s", qPrintable(way)) << way;
    }
    void givingUpChangesNothing()
    {
        QFETCH(QString, way);
        Asked w;
        w.ask();
        QTRY_VERIFY(w.item(u"cancelRestore"_s)->hasActiveFocus());
        if (way == "button"_L1)
            click(w.item(u"cancelRestore"_s));
        else if (way == "beside"_L1)
            QTest::mouseClick(w.window(), Qt::LeftButton, {}, QPoint(20, 540));
        else
            press(w.window(), way == "Esc"_L1 ? Qt::Key_Escape : Qt::Key_Return);
        QTRY_VERIFY(w.isGone(w.dialog));
        QCOMPARE(w.storedNotes(), u"Now Then"_s);
        QCOMPARE(w.kept(), QStringList());
        QVERIFY(!w.content.undoOffer()->isOffered());
    }

    void theChosenVersionComesBackAndCanBeTakenBack_data()
    {
        QTest::addColumn<bool>("byKeys");
        QTest::newRow("by the mouse") << false;
        QTest::newRow("by keys") << true;
    }
    void theChosenVersionComesBackAndCanBeTakenBack()
    {
        QFETCH(bool, byKeys);
        Asked w;
        w.content.selectNote(w.id(u"Now"_s));
        w.ask();
        QTRY_VERIFY(w.item(u"cancelRestore"_s)->hasActiveFocus());
        QCOMPARE(w.chosen(), 0); // the newest, until another is chosen
        if (byKeys) {
            w.item(u"version.0"_s)->forceActiveFocus(Qt::TabFocusReason);
            press(w.window(), Qt::Key_Down);
            QCOMPARE(w.chosen(), 1);
            press(w.window(), Qt::Key_Down);
            QCOMPARE(w.chosen(), 1);
            w.item(u"confirmRestore"_s)->forceActiveFocus(Qt::TabFocusReason);
            press(w.window(), Qt::Key_Space);
        } else {
            click(w.item(u"version.1"_s));
            QCOMPARE(w.chosen(), 1);
            click(w.item(u"confirmRestore"_s));
        }
        QTRY_VERIFY(w.isGone(w.dialog));
        QCOMPARE(w.storedNotes(), u"Old"_s);
        QCOMPARE(w.drawnRows(), u"Old"_s);
        QCOMPARE(w.openNote(), QString());
        QCOMPARE(w.kept().size(), 1);
        QTRY_VERIFY(isDrawn(w.item(u"undoBar"_s)));
        QVERIFY(textsIn(w.item(u"undoBar"_s)).join(u' ').contains(u"Backup restored"));
        QVERIFY(w.content.undoOffer()->isOffered());
        click(w.item(u"undoDelete"_s));
        QTRY_VERIFY(!w.content.undoOffer()->isOffered()); // it has been heard
        QCOMPARE(w.storedNotes(), u"Now Then"_s);
        QTRY_VERIFY(!isDrawn(w.item(u"undoBar"_s)));
        // The next time the newest is proposed again.
        w.ask();
        QTRY_VERIFY(w.isOpen(w.dialog));
        QCOMPARE(w.chosen(), 0);
    }

    void aMissingFileIsBroughtBackAndThatIsSaid()
    {
        Asked w(AppLanguage::pl);
        QFile::remove(w.home.data() + u"/notes.json"_s);
        w.begin();
        QTRY_VERIFY(w.isOpen(w.notice));
        QVERIFY(w.isGone(w.dialog));
        QCOMPARE(w.object(w.notice)->property("title").toString(), u"Przywrócono backup"_s);
        const QString message = w.object(w.notice)->property("message").toString();
        QVERIFY2(message.startsWith(u"Przywrócono notes.json.bak.1 z "_s), qPrintable(message));
        QCOMPARE(w.storedNotes(), u"Milk Tea Bread Butter"_s);
        QTRY_VERIFY(w.item(u"closeNotice"_s)->hasActiveFocus());
        press(w.window(), Qt::Key_Return);
        QTRY_VERIFY(w.isGone(w.notice));
    }

    void whereNothingCanBeReadItIsSaid()
    {
        Asked w;
        w.write(u".bak.1"_s, u"!"_s);
        w.write(u".bak.2"_s, u"!"_s);
        w.ask();
        QTRY_VERIFY(w.isOpen(w.notice));
        QVERIFY(w.isGone(w.dialog));
        QCOMPARE(w.object(w.notice)->property("title").toString(), u"Nothing could be restored"_s);
        QCOMPARE(w.storedNotes(), u"Now Then"_s);
    }

    void whatCannotBeKeptIsNotReplacedAndThatIsSaid()
    {
        Asked w;
        w.ask();
        QTRY_VERIFY(w.isOpen(w.dialog));
        QVERIFY(QDir(w.home.data()).removeRecursively()); // where nothing can be written
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"could not be kept"_s));
        click(w.item(u"confirmRestore"_s));
        QTRY_VERIFY(w.isGone(w.dialog));
        QTRY_VERIFY(w.isOpen(w.notice));
        QCOMPARE(w.storedNotes(), u"Now Then"_s);
        QVERIFY(!w.content.undoOffer()->isOffered());
        QTRY_VERIFY(w.item(u"closeNotice"_s)->hasActiveFocus()); // the one before gives it back
        press(w.window(), Qt::Key_Escape);
        QTRY_VERIFY(w.isGone(w.notice));
    }

    void withoutABackupNothingIsAskedAndNothingSaid()
    {
        Asked w;
        for (const QString &end : {u".bak.1"_s, u".bak.2"_s})
            QFile::remove(w.home.data() + u"/notes.json"_s + end);
        w.begin();
        QCoreApplication::processEvents();
        QVERIFY(w.isGone(w.dialog));
        QVERIFY(w.isGone(w.notice));
        QCOMPARE(w.storedNotes(), u"Now Then"_s);
    }

    void theVersionsCanBeHeardAndPressed()
    {
        QAccessible::setActive(true);
        Asked w;
        w.ask();
        QTRY_VERIFY(w.isOpen(w.dialog));
        QCOMPARE(namelessIn(w.window()), QStringList());
        QAccessibleInterface *second = interfaceOf(w.item(u"version.1"_s));
        QCOMPARE(second->role(), QAccessible::RadioButton);
        QVERIFY(nameOf(second).endsWith(u"1 note"_s));
        QVERIFY(!second->state().checked);
        second->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(w.chosen(), 1);
        QVERIFY(second->state().checked);
        interfaceOf(w.item(u"confirmRestore"_s))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(w.storedNotes(), u"Old"_s);
    }
};

QTEST_MAIN(TestRestoreDialog)
#include "tst_restore_dialog.moc"
