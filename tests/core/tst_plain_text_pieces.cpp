#include "core/NoteLines.h"
#include "core/PlainTextPieces.h"
#include "core/String+HTML.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

/// Texts of many pieces read as if they were one.
class TestPlainTextPieces : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void joinedTheyAreTheText_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<QString>("text");
        constexpr int many = 10'000;
        QStringList lines;
        QString items;
        QString divs;
        for (int i = 0; i < many; ++i) {
            lines << u"item %1"_s.arg(i);
            items += u"<li>%1</li>"_s.arg(lines.last());
            divs += u"<div class=\"a\">%1</div>"_s.arg(lines.last());
        }
        const QString words = lines.join(u' ');
        QTest::newRow("items") << u"<ul>"_s + items + u"</ul>"_s << lines.join(u'\n');
        QTest::newRow("blocks") << divs << lines.join(u'\n');
        QTest::newRow("one paragraph") << u"<p>"_s + words + u"</p>"_s << words;
        QTest::newRow("without any tag") << words << words;
        QTest::newRow("one word") << u"<p>"_s + QString(100'000, u'x') + u"</p><p>y</p>"_s
                                  << QString(100'000, u'x') + u"\ny"_s;
        QTest::newRow("formats within words")
            << u"<p>"_s + u"a<b>b</b>c"_s.repeated(many) + u"</p>"_s << u"abc"_s.repeated(many);
        QTest::newRow("references")
            << u"<p>"_s + u"&lt;&copy;"_s.repeated(many) + u"</p>"_s << u"<©"_s.repeated(many);
        QTest::newRow("a long style sheet")
            << u"<p>a</p><style>"_s + u"<p>x</p> "_s.repeated(many) + u"</style><p>b</p>"_s
            << u"a\nb"_s;
        QTest::newRow("a long comment")
            << u"<p>a</p><!-- "_s + u"<p>x</p> "_s.repeated(many) + u" --><p>b</p>"_s << u"a\nb"_s;
        QTest::newRow("deep blocks")
            << u"<div>"_s.repeated(many) + u"a"_s + u"</div>"_s.repeated(many) << u"a"_s;
        const QString broken = u"<p>x</p>"_s.repeated(many) + QChar(0xD800);
        QTest::newRow("what is no text") << broken << broken;
    }
    void joinedTheyAreTheText()
    {
        QFETCH(QString, html);
        QFETCH(QString, text);
        // Empty blocks may leave empty lines, of which nobody sees anything.
        const auto lines = [](const QString &from) {
            return from.split(u'\n', Qt::SkipEmptyParts);
        };
        QCOMPARE(lines(slowStrippingHTML(html)), lines(text));
    }

    void theFirstIsReadWithoutTheRest()
    {
        const QString html = u"<p>some words</p>"_s.repeated(1'000'000);
        PlainTextPieces pieces(html);
        const QString first = pieces.next();
        QVERIFY(first.startsWith(u"some words\nsome words\n"_s));
        QVERIFY2(first.size() < 20'000, qPrintable(QString::number(first.size())));
        QVERIFY(!pieces.isAtEnd());
    }

    void emptyTextHasNoPieces() { QVERIFY(PlainTextPieces(u"").isAtEnd()); }

    /// A row cannot show more, and laying it out would take seconds.
    void linesOfANoteAreShort()
    {
        Note note = Note::fresh({});
        note.body = u"<h1>"_s + QString(1'000'000, u'x') + u"</h1><p>"_s + QString(1'000'000, u'y');
        QCOMPARE(headingLine(note), QString(1000, u'x'));
        QCOMPARE(note.previewText({}), QString(1000, u'y'));
        QCOMPARE(note.headingText().size(), 1'000'000);
    }

    void noCharacterIsCutInTwo()
    {
        const QString text = u"x"_s + u"\U0001F600"_s.repeated(1000);
        QCOMPARE(lineOf(text), u"x"_s + u"\U0001F600"_s.repeated(499));
        QCOMPARE(lineOf(u"short"_s), u"short"_s);
    }
};

QTEST_MAIN(TestPlainTextPieces)
#include "tst_plain_text_pieces.moc"
