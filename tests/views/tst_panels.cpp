#include "mainwindow/DeletionUndo.h"
#include "shell/LanguageManager.h"
#include "tests/mainwindow/NoteListFixture.h"
#include "tests/views/Stage.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray panel = R"(
    SelectionPanel {
        objectName: "panel"
        anchors.fill: parent
        countText: "2 notes selected"
        count: 2
        isArchive: false
    }
)";

const QByteArray card = R"(
    DragPreviewCard { objectName: "card"; title: "Milk"; noteColor: Theme.hit; cardWidth: 340; reach: Theme.cardShadowReach }
)";

/// The bar needs an offer to be made at all, so it is loaded once there is one to give it.
const QByteArray bar = R"(
    Loader {
        objectName: "loader"
        function load(offer: DeletionUndo): void {
            setSource("qrc:/qt/qml/Plim/MainWindow/UndoBar.qml", { offer: offer });
        }
    }
)";

struct Bar : Stage {
    Bar() : Stage(bar)
    {
        LanguageManager::shared().setLanguage(AppLanguage::en);
        store.setNotes(notesOf(u"A B C"_s));
        QMetaObject::invokeMethod(item(u"loader"_s), "load", Q_ARG(DeletionUndo *, &deletionUndo));
    }
    ~Bar() { item(u"loader"_s)->setProperty("active", false); }
    /// Deletes the first notes, and offers them back.
    void deleteFirst(int count)
    {
        QSet<QUuid> ids;
        for (int i = 0; i < count; ++i)
            ids.insert(store.notes()[i].id);
        deletionUndo.offer(store.placedNotes(ids));
        store.deleteNotes(ids);
    }

    ThrowAwayHome home;
    NoteStore store{home.data()};
    DeletionUndo deletionUndo{store};
};
} // namespace

class TestPanels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        LanguageManager::shared().setLanguage(AppLanguage::en);
    }

    // What can be done with the ticked notes

    void thePanelSaysWhatCanBeDone()
    {
        const Stage w(panel);
        QCOMPARE(textsIn(w.item(u"panel"_s)),
                 (QStringList{u"Select notes"_s, u"2 notes selected"_s, u"Select all"_s,
                              u"Archive"_s, u"Delete"_s, u"End selection"_s}));
        w.item(u"panel"_s)->setProperty("isArchive", true);
        QVERIFY(textsIn(w.item(u"panel"_s)).contains(u"Restore"_s));
        QVERIFY(!textsIn(w.item(u"panel"_s)).contains(u"Archive"_s));
    }

    void thePanelAsksForWhatItsButtonsSay()
    {
        const Stage w(panel);
        const QList<std::pair<QString, const char *>> buttons{
            {u"selectAll"_s, SIGNAL(selectAllRequested())},
            {u"archiveSelection"_s, SIGNAL(archiveRequested())},
            {u"deleteSelection"_s, SIGNAL(deleteRequested())},
            {u"endSelection"_s, SIGNAL(endRequested())},
        };
        for (const auto &[name, signal] : buttons) {
            QSignalSpy asked(w.item(u"panel"_s), signal);
            click(w.item(name));
            QCOMPARE(asked.size(), 1);
        }
    }

    void withNothingTickedThereIsNothingToDo()
    {
        const Stage w(panel);
        w.item(u"panel"_s)->setProperty("count", 0);
        QSignalSpy archiving(w.item(u"panel"_s), SIGNAL(archiveRequested()));
        QSignalSpy deleting(w.item(u"panel"_s), SIGNAL(deleteRequested()));
        QSignalSpy selecting(w.item(u"panel"_s), SIGNAL(selectAllRequested()));
        click(w.item(u"archiveSelection"_s));
        click(w.item(u"deleteSelection"_s));
        click(w.item(u"selectAll"_s));
        QCOMPARE(archiving.size() + deleting.size(), 0);
        QCOMPARE(selecting.size(), 1);
    }

    // The way back

    void nothingIsOfferedBeforeSomethingIsDeleted()
    {
        const Bar w;
        QVERIFY(!isDrawn(w.item(u"undoBar"_s)));
    }

    void undoPutsTheNotesBack()
    {
        Bar w;
        const NoteArray before = w.store.notes();
        w.deleteFirst(2);
        QTRY_VERIFY(isDrawn(w.item(u"undoBar"_s)));
        QVERIFY(textsIn(w.item(u"undoBar"_s)).constFirst().startsWith(u"2 notes deleted"_s));
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QVERIFY(textsIn(w.item(u"undoBar"_s)).constFirst().startsWith(u"Usunięto 2 notatki"_s));
        QVERIFY(textsIn(w.item(u"undoBar"_s)).contains(u"Cofnij"_s));
        click(w.item(u"undoDelete"_s));
        QVERIFY(w.store.notes() == before);
        QTRY_VERIFY(!isDrawn(w.item(u"undoBar"_s)));
    }

    void anOfferThatIsOverGoesAway()
    {
        Bar w;
        w.deleteFirst(1);
        QTRY_VERIFY(isDrawn(w.item(u"undoBar"_s)));
        w.deletionUndo.dismiss();
        QTRY_VERIFY(!isDrawn(w.item(u"undoBar"_s)));
        QCOMPARE(w.store.notes().size(), 2);
    }

    // The floating card

    void theCardIsAsWideAsItsRow()
    {
        const Stage w(card);
        QCOMPARE(textsIn(w.item(u"card"_s)), QStringList{u"Milk"_s});
        const qreal reach = w.item(u"card"_s)->property("reach").toReal();
        QVERIFY(reach > 0);
        QCOMPARE(w.item(u"card"_s)->implicitWidth(), 340 + 2 * reach);
        w.item(u"card"_s)->setProperty("cardWidth", 200);
        QCOMPARE(w.item(u"card"_s)->implicitWidth(), 200 + 2 * reach);
    }

    void aLongHeadingStaysOnTheCard()
    {
        const Stage w(card);
        const qreal height = w.item(u"card"_s)->implicitHeight();
        w.item(u"card"_s)->setProperty("title", u"x"_s.repeated(400) + u"<b>&\n🙂"_s);
        QCOMPARE(w.item(u"card"_s)->implicitHeight(), height);
        visitItems(w.item(u"card"_s), [&](QQuickItem *item) {
            if (item->inherits("QQuickText")) {
                QVERIFY(item->property("truncated").toBool());
                QCOMPARE(item->property("textFormat").toInt(), 0);
            }
        });
    }

    void theCardShowsTheNotesColour()
    {
        const Stage w(card);
        const QColor green(0x66, 0xd6, 0x4c);
        w.item(u"card"_s)->setProperty("noteColor", green);
        const qreal reach = w.item(u"card"_s)->property("reach").toReal();
        const QPoint dot(int(reach) + 14 + 7, int(w.item(u"card"_s)->implicitHeight() / 2));
        QTRY_COMPARE(pictureOf(w.window()).pixelColor(dot), green);
    }
};

QTEST_MAIN(TestPanels)
#include "tst_panels.moc"
