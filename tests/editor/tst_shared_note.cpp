#include "editor/RichTextEditorCoordinator.h"
#include "tests/RandomSeed.h"
#include "tests/editor/SimulatedPage.h"

#include <QRandomGenerator>
#include <QTest>

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Two editors over one store, a keyboard that one of them has, and a user who types words.
class Desk
{
public:
    struct Editor {
        SimulatedPage page;
        RichTextEditorCoordinator coordinator;
        QUuid shows;
    };

    Desk()
    {
        for (Editor &editor : editors) {
            editor.shows = notes[0];
            QObject::connect(&editor.coordinator, &RichTextEditorCoordinator::change,
                             &editor.coordinator, [this](const QUuid &id, const QString &html) {
                                 stored[id] = html;
                                 tellEditors();
                             });
            QObject::connect(&editor.page.seam, &EditorWebView::focusRequested, &editor.coordinator,
                             [this, &editor] { giveKeyboard(&editor); });
            editor.coordinator.setWebView(&editor.page.seam);
        }
        for (const QUuid &note : notes)
            stored[note] = u"<h1>Title</h1><p></p>"_s;
        tellEditors();
        for (Editor &editor : editors) {
            editor.page.seam.reportLoaded();
            editor.page.settle();
        }
        settle();
    }

    void select(Editor &editor, const QUuid &note)
    {
        editor.shows = note;
        tellEditors();
    }
    void giveKeyboard(Editor *editor)
    {
        for (Editor &other : editors) {
            if (&other != editor)
                other.page.seam.setIsFirstResponder(false);
        }
        if (editor)
            editor->page.seam.setIsFirstResponder(true);
    }
    void click(Editor &editor)
    {
        giveKeyboard(&editor);
        editor.page.click();
    }
    /// Writes a word of its own into the page, which reports it later.
    QString type(Editor &editor, qsizetype where = -1)
    {
        editor.page.settle(); // hands are slower than scripts
        QString html = editor.page.html();
        QList<qsizetype> places;
        for (qsizetype i = html.indexOf(u"<p>"_s) + 3; i < html.indexOf(u"</p>"_s) + 1; ++i) {
            if (html[i - 1] == u'>' || html[i - 1] == u' ')
                places += i;
        }
        const QString word = u"w%1e"_s.arg(++m_words);
        html.insert(where < 0 ? places.last() : places[where % places.size()], word + u' ');
        editor.page.edit(html);
        typed[QUuid(editor.page.noteID())] += word;
        return word;
    }
    /// Every timer fires, everything arrives.
    void settle()
    {
        const auto isAtRest = [](Editor &editor) {
            return editor.page.isQuiet() && !editor.page.isPending();
        };
        for (int step = 0; !isAtRest(editors[0]) || !isAtRest(editors[1]); ++step) {
            if (step > 1000)
                qFatal("The editors never come to rest");
            for (Editor &editor : editors) {
                editor.page.settle();
                if (editor.page.isPending())
                    editor.page.report();
            }
        }
    }
    /// The user goes, also from an editor that is given the keyboard only now, by a switch under
    /// way.
    void leave()
    {
        for (int times = 0; times < 2; ++times) {
            giveKeyboard(nullptr);
            settle();
        }
    }
    /// Empty when every word typed is in its note exactly once and the pages show the notes.
    [[nodiscard]] QString complaint()
    {
        for (auto it = typed.cbegin(); it != typed.cend(); ++it) {
            for (const QString &word : it.value()) {
                if (stored[it.key()].count(word) != 1)
                    return u"%1 is %2 times in %3"_s.arg(word)
                        .arg(stored[it.key()].count(word))
                        .arg(stored[it.key()]);
            }
        }
        for (Editor &editor : editors) {
            if (editor.page.html() != stored[editor.shows])
                return u"the page shows %1 instead of %2"_s.arg(editor.page.html(),
                                                                stored[editor.shows]);
        }
        return {};
    }

    std::array<QUuid, 2> notes{QUuid::createUuid(), QUuid::createUuid()};
    QHash<QUuid, QString> stored;
    QHash<QUuid, QStringList> typed;
    std::array<Editor, 2> editors;

private:
    void tellEditors()
    {
        for (Editor &editor : editors)
            editor.coordinator.update({.noteID = editor.shows, .html = stored[editor.shows]});
    }

    int m_words = 0;
};
} // namespace

class TestSharedNote : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void typingInOneThenTheOtherThenTheFirst_data()
    {
        QTest::addColumn<QString>("reportsCome");
        QTest::newRow("before the keyboard moves") << u"before"_s;
        QTest::newRow("when the keyboard has moved") << u"after"_s;
        QTest::newRow("when the other has typed") << u"late"_s;
    }
    void typingInOneThenTheOtherThenTheFirst()
    {
        QFETCH(QString, reportsCome);
        Desk desk;
        auto &[first, second] = desk.editors;
        const auto report = [&](Desk::Editor &editor, const QString &when) {
            if (when != reportsCome || !editor.page.isPending())
                return;
            editor.page.report();
            editor.page.settle();
        };
        Desk::Editor *last = &second;
        for (Desk::Editor *now : {&first, &second, &first, &second}) {
            report(*last, u"before"_s);
            desk.click(*now);
            report(*last, u"after"_s);
            desk.type(*now);
            report(*last, u"late"_s);
            desk.type(*now);
            last = now;
        }
        desk.leave();
        QCOMPARE(desk.complaint(), QString());
        QCOMPARE(desk.typed[desk.notes[0]].size(), 8);
    }

    void whoHasTheKeyboardIsNotChanged()
    {
        Desk desk;
        auto &[first, second] = desk.editors;
        desk.click(first);
        const QString early = desk.type(first);
        desk.click(second); // the first one's word has not been reported yet
        const QString before = second.page.html();
        desk.settle();
        QVERIFY(desk.stored[desk.notes[0]].contains(early));
        QCOMPARE(second.page.html(), before);

        const QString late = desk.type(second);
        desk.settle();
        QVERIFY(!second.page.html().contains(early));
        QVERIFY(desk.stored[desk.notes[0]].contains(early));
        QVERIFY(desk.stored[desk.notes[0]].contains(late));
        QCOMPARE(first.page.html(), desk.stored[desk.notes[0]]);

        desk.leave(); // without another word
        QCOMPARE(desk.complaint(), QString());
    }

    void aNoteLeftAndComeBackToWhileOthersTypeInIt()
    {
        Desk desk;
        auto &[pane, sticky] = desk.editors;
        desk.click(pane);
        desk.type(pane);
        desk.select(pane, desk.notes[1]);
        desk.click(sticky);
        desk.type(sticky);
        desk.select(pane, desk.notes[0]);
        desk.type(sticky);
        desk.leave();
        QCOMPARE(desk.complaint(), QString());
    }

    void noWordIsLostWhateverComesFirst()
    {
        const quint32 seed = randomSeed();
        for (quint32 round = 0; round < 300; ++round) {
            QRandomGenerator random(seed + round);
            Desk desk;
            for (int step = 0; step < 60; ++step) {
                Desk::Editor &editor = desk.editors[random.bounded(2)];
                switch (random.bounded(8)) {
                case 0:
                    desk.click(editor);
                    break;
                case 1:
                case 2:
                    if (editor.page.seam.isFirstResponder())
                        desk.type(editor, random.bounded(20));
                    break;
                case 3:
                case 4:
                    editor.page.runNextScript();
                    break;
                case 5:
                    editor.page.deliverNext();
                    break;
                case 6:
                    if (editor.page.isPending())
                        editor.page.report();
                    break;
                case 7:
                    if (random.bounded(4) == 0)
                        desk.select(editor, desk.notes[random.bounded(2)]);
                    else if (random.bounded(4) == 0)
                        desk.giveKeyboard(nullptr);
                    break;
                }
            }
            desk.leave();
            const QString complaint = desk.complaint();
            QVERIFY2(complaint.isEmpty(),
                     qPrintable(u"round seed %1: %2"_s.arg(seed + round).arg(complaint)));
        }
    }
};

QTEST_GUILESS_MAIN(TestSharedNote)
#include "tst_shared_note.moc"
