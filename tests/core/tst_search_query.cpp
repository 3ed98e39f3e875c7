#include "core/SearchQuery.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestSearchQuery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void occursIn_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("occurs");
        QTest::newRow("a word") << u"milk"_s << u"buy milk now"_s << true;
        QTest::newRow("a part of a word") << u"il"_s << u"milk"_s << true;
        QTest::newRow("the whole text") << u"milk"_s << u"milk"_s << true;
        QTest::newRow("longer than the text") << u"milky"_s << u"milk"_s << false;
        QTest::newRow("capitals in the query") << u"MILK"_s << u"milk"_s << true;
        QTest::newRow("capitals in the text") << u"milk"_s << u"MiLk"_s << true;
        QTest::newRow("space around the query") << u" \t Milk\n "_s << u"milk"_s << true;
        QTest::newRow("space inside counts") << u"a b"_s << u"a  b"_s << false;
        QTest::newRow("not divided into words") << u"milk tea"_s << u"tea milk"_s << false;
        QTest::newRow("a letter") << u"k"_s << u"milk"_s << true;
        QTest::newRow("no such letter") << u"z"_s << u"milk"_s << false;
        QTest::newRow("nothing") << u""_s << u"milk"_s << false;
        QTest::newRow("only spaces") << u" \n "_s << u"a \n b"_s << false;
        QTest::newRow("an empty text") << u"milk"_s << u""_s << false;
        QTest::newRow("Polish capitals") << u"łódź"_s << u"ŁÓDŹ"_s << true;
        QTest::newRow("accents count") << u"zolw"_s << u"żółw"_s << false;
        QTest::newRow("accents count the other way") << u"żółw"_s << u"zolw"_s << false;
        QTest::newRow("sharp s is itself") << u"straße"_s << u"Straße"_s << true;
        QTest::newRow("sharp s is not two") << u"strasse"_s << u"Straße"_s << false;
        QTest::newRow("capital sharp s") << u"ẞ"_s << u"ß"_s << true;
        QTest::newRow("final sigma") << u"ΟΔΟΣ"_s << u"οδος"_s << true;
        QTest::newRow("dotted capital I") << u"i"_s << u"İ"_s << false;
        QTest::newRow("emoji") << u"🎂"_s << u"cake 🎂 time"_s << true;
        QTest::newRow("another emoji") << u"🎂"_s << u"cake 🎁 time"_s << false;
        QTest::newRow("letters beyond the first plane") << u"𐐀"_s << u"x𐐨"_s << true;
        QTest::newRow("right to left") << u"שלום"_s << u"אמר שלום לך"_s << true;
        QTest::newRow("patterns are characters") << u".*"_s << u"milk"_s << false;
        QTest::newRow("pattern characters") << u".*"_s << u"a.*b"_s << true;
        QTest::newRow("markup characters") << u"<b>"_s << u"a <B> tag"_s << true;
    }
    void occursIn()
    {
        QFETCH(QString, typed);
        QFETCH(QString, text);
        const SearchQuery query(typed);
        QTEST(query.occursIn(searchableText({text})), "occurs");
        // The places are found by another way: they must agree.
        QTEST(!query.placesIn(text).empty(), "occurs");
        if (!typed.trimmed().isEmpty())
            QTEST(text.contains(typed.trimmed(), Qt::CaseInsensitive), "occurs");
    }

    void nothingIsFoundAcrossTexts()
    {
        const QByteArray searchable = searchableText({u"one", u"", u"two"});
        QVERIFY(SearchQuery(u"one"_s).occursIn(searchable));
        QVERIFY(SearchQuery(u"two"_s).occursIn(searchable));
        QVERIFY(!SearchQuery(u"onetwo"_s).occursIn(searchable));
        QVERIFY(!SearchQuery(u"et"_s).occursIn(searchable));
    }

    // Every number of bytes a letter may take, at every place in the sixteen that are written at once.
    void whatIsSearchedIsUTF8()
    {
        const QStringList letters{u"a"_s, u"Z"_s, u"Ż"_s, u"\u023A"_s, u"中"_s, u"🎂"_s, u"𐐀"_s};
        for (const QString &letter : letters) {
            for (qsizetype before = 0; before < 40; ++before) {
                for (qsizetype behind = 0; behind < 40; ++behind) {
                    const QString text = QString(before, u'X') + letter + QString(behind, u'ż');
                    QCOMPARE(searchableText({text}), caseFolded(text).toUtf8());
                }
            }
        }
        QByteArray several = "before";
        appendSearchable(several, {u"A", u"Ż"});
        QCOMPARE(several, "before" + searchableText({u"a", u"ż"}));
    }

    // Lengths and places around the sixteen bytes that are compared at once.
    void everyPlaceInEveryLength()
    {
        for (qsizetype size = 1; size < 70; ++size) {
            for (qsizetype length = 1; length <= size && length < 40; ++length) {
                for (qsizetype place = 0; place + length <= size; ++place) {
                    QString text(size, u'a');
                    text.replace(place, length, u'b' + QString(length - 1, u'a'));
                    const QString needle = text.sliced(place, length);
                    QVERIFY2(SearchQuery(needle).occursIn(searchableText({text})),
                             qPrintable(needle + u" in "_s + text));
                    QVERIFY(!SearchQuery(needle + u'c').occursIn(searchableText({text})));
                }
            }
        }
    }

    void randomTextsAsQtFindsThem()
    {
        QRandomGenerator random(20'240'305);
        const QString letters = u"aAbBżŻßẞ🎂𐐀𐐨 "_s;
        const auto text = [&](int most) {
            QString text;
            for (int count = random.bounded(most); count >= 0; --count) {
                const qsizetype place = random.bounded(int(letters.size()));
                if (letters[place].isLowSurrogate())
                    continue;
                text += letters.sliced(place, letters[place].isHighSurrogate() ? 2 : 1);
            }
            return text;
        };
        for (int round = 0; round < 20'000; ++round) {
            const QString haystack = text(60);
            const QString needle = text(4).trimmed();
            if (needle.isEmpty())
                continue;
            QVERIFY2(SearchQuery(needle).occursIn(searchableText({haystack})) ==
                         haystack.contains(needle, Qt::CaseInsensitive),
                     qPrintable(needle + u" in "_s + haystack));
        }
    }

    void places()
    {
        QCOMPARE(SearchQuery(u"aa"_s).placesIn(u"aAaaa"_s), (std::vector<qsizetype>{0, 2}));
        QCOMPARE(SearchQuery(u"b"_s).placesIn(u"🎂B🎂b"_s), (std::vector<qsizetype>{2, 5}));
        QCOMPARE(SearchQuery(u"b"_s).placesIn(u"ẞb"_s), (std::vector<qsizetype>{1}));
        QVERIFY(SearchQuery().placesIn(u"a"_s).empty());
    }

    // Letter by letter, through all of Unicode.
    void foldingIsThatOfComparisons()
    {
        for (char32_t c = 0; c <= QChar::LastValidCodePoint; ++c) {
            if (QChar::isSurrogate(c))
                continue;
            const QString letter = QString::fromUcs4(&c, 1);
            const QString folded = caseFolded(letter);
            QCOMPARE(folded.size(), letter.size());
            QCOMPARE(QString::compare(folded, letter, Qt::CaseInsensitive), 0);
            for (const QString &other : {letter.toUpper(), letter.toLower()}) {
                const bool isSame = QString::compare(letter, other, Qt::CaseInsensitive) == 0;
                QCOMPARE(caseFolded(other) == folded, isSame);
            }
        }
    }

    void halfSurrogatePairsAreSurvived()
    {
        const QString half(QChar(0xD83C));
        QCOMPARE(caseFolded(half + u"A"_s), half + u"a"_s);
        QVERIFY(SearchQuery(u"a"_s).occursIn(searchableText({QString(half + u"A"_s)})));
        QVERIFY(!SearchQuery(half).isEmpty());
        QVERIFY(SearchQuery(half).occursIn(searchableText({QString(u"a"_s + half)})));
        QVERIFY(!SearchQuery(u"?"_s).occursIn(searchableText({half})));
        QVERIFY(!SearchQuery(half).occursIn(searchableText({u"a?"_s})));
    }

    void queriesAreTheSameWhenTheyFindTheSame()
    {
        QCOMPARE(SearchQuery(u"Milk "_s), SearchQuery(u"milk"_s));
        QVERIFY(SearchQuery(u"milk"_s) != SearchQuery(u"mil"_s));
        QVERIFY(SearchQuery(u"\n "_s).isEmpty());
    }
};

QTEST_MAIN(TestSearchQuery)
#include "tst_search_query.moc"
