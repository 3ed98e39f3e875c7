#include "core/NoteLines.h"

#include "core/String+HTML.h"
#include "tests/core/RandomNoteHTML.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
bool always()
{
    return true;
}

/// Around a tag that is none, the importer makes or drops some.
QString withoutSpace(QString text)
{
    return text.removeIf([](QChar c) { return c.isSpace(); });
}

Note withBody(const QString &body)
{
    Note note = Note::fresh({1000});
    note.body = body;
    return note;
}
} // namespace

/// What one reading of a note finds is what is found by reading it for each.
class TestNoteLines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void all_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("all");
        const QString cut(QChar(0xD83C));
        QTest::newRow("nothing") << u""_s << u""_s;
        QTest::newRow("a fresh note") << u"<h1><br></h1>"_s << u"\n\n"_s;
        QTest::newRow("a heading alone") << u"<h1>a</h1>"_s << u"a\n"_s;
        QTest::newRow("no heading") << u"<p>a</p><p>b</p>"_s << u"a\nb"_s;
        QTest::newRow("both") << u"<h1>a &amp; <b>b</b></h1><p>c</p>"_s << u"a & b\nc"_s;
        QTest::newRow("an empty heading") << u"<h1></h1><p>a</p>"_s << u"a"_s;
        QTest::newRow("a heading amid the text") << u"<p>a</p><h1>b</h1><p>c</p>"_s << u"a\nb\nc"_s;
        QTest::newRow("no text in the heading") << u"<h1>%1</h1><p>b</p>"_s.arg(cut)
                                                << u"<h1>%1</h1>\nb"_s.arg(cut);
    }
    void all()
    {
        QFETCH(QString, body);
        QTEST(notePlainText(withBody(body), &always).all, "all");
    }

    void allOfALongNote()
    {
        const QString word = u"word "_s;
        const QString line = u"<p>"_s + word.repeated(100) + u"</p>"_s;
        const NotePlainText text =
            notePlainText(withBody(u"<h1>a</h1>"_s + line.repeated(100)), &always);
        QCOMPARE(text.all.count(word), 100 * 100);
        QCOMPARE(text.preview, word.repeated(16).trimmed());
    }

    void itEndsWhenItIsNoLongerWanted()
    {
        const QString line = u"<p>%1</p>"_s.arg(u"word "_s.repeated(100));
        for (const QString &before : {u""_s, u"<h1>a</h1>"_s, u"<p>b</p><h1>a</h1>"_s}) {
            const Note note = withBody(before + line.repeated(1000));
            int asked = 0;
            const NotePlainText text = notePlainText(note, [&] { return ++asked < 5; });
            QVERIFY(!text.all.isEmpty());
            QVERIFY(text.all.size() < note.body.size() / 4);
        }
    }

    void oneReadingFindsTheSame()
    {
        constexpr quint32 notes = 5000;
        for (quint32 seed = 0; seed < notes; ++seed) {
            RandomNoteHTML html(seed);
            const Note note = withBody(seed % 2 == 0 ? html.note() : u"<h1>a</h1>"_s + html.note());
            const NotePlainText text = notePlainText(note, &always);
            QCOMPARE(text.heading, note.headingText());
            QCOMPARE(text.preview, note.previewText({}));
            const QString all = slowStrippingHTML(note.body);
            if (withoutSpace(text.all) != withoutSpace(all)) {
                QCOMPARE(text.all, all); // shows both
                QFAIL(qPrintable(note.body));
            }
        }
    }
};

QTEST_MAIN(TestNoteLines)
#include "tst_note_lines.moc"
