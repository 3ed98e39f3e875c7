#include "core/NotesJson.h"

#include "tests/core/Duration.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QTest>

#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr Timestamp now{800'000'000.25};

const QByteArray shopping =
    R"({"body":"<h1>Shopping<\/h1><div>milk<\/div>","color":"yellow","createdAt":784000000.5,)"
    R"("id":"0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0","isArchived":false,"textSize":"medium",)"
    R"("title":"","updatedAt":784000100.25})";
} // namespace

class TestNotesJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneElementAsWritten()
    {
        const std::optional<NoteArray> notes = decodeNotes("[" + shopping + "]", now);
        QVERIFY(notes);
        QCOMPARE(notes->size(), 1);
        QCOMPARE((*notes)[0].body, u"<h1>Shopping</h1><div>milk</div>"_s);
        QCOMPARE(encodeNotes(*notes).value_or(QByteArray()), "[" + shopping + "]");
    }

    void slashesMayBePlain()
    {
        QByteArray plain = "[" + shopping + "]";
        plain.replace("\\/", "/");
        const std::optional<NoteArray> notes = decodeNotes(plain, now);
        QVERIFY(notes);
        QCOMPARE(encodeNotes(*notes).value_or(QByteArray()), "[" + shopping + "]");
    }

    void noNotes()
    {
        QCOMPARE(encodeNotes({}).value_or(QByteArray()), QByteArray("[]"));
        QVERIFY(decodeNotes("[]", now) == NoteArray());
        QVERIFY(decodeNotes(" [ ]\n", now) == NoteArray());
    }

    void whatIsWrittenIsWhatQtWouldWrite()
    {
        QRandomGenerator random(7);
        // From what is frequent to what is rare.
        const QString kinds = u"ab /\\\"\u007f\u0080\u07ff\b\f\n\r\t\u0001\u001f\u0800\uffff"_s +
                              QChar(0xD83D) + QChar(0xDE00) + QChar(QChar::Null);
        const QList<double> dates{0.0,   -0.0,   -1.5,    784000100.123456789, 1e-300,
                                  1e300, 9.3e18, -9.3e18, 9007199254740993.0,  0.1 + 0.2};
        for (int i = 0; i < 2000; ++i) {
            Note note = Note::fresh({dates[random.bounded(dates.size())]});
            note.updatedAt = {dates[random.bounded(dates.size())]};
            note.isArchived = random.bounded(2) == 1;
            for (QString *text : {&note.title, &note.body, &note.color}) {
                const qsizetype variety = 1 + random.bounded(kinds.size());
                for (int length = random.bounded(40); length > 0; --length)
                    *text += kinds[random.bounded(variety)];
            }
            QByteArray expected = QJsonDocument(QJsonArray{note.toJson(), note.toJson()})
                                      .toJson(QJsonDocument::Compact);
            expected.replace("/", "\\/");
            QCOMPARE(encodeNotes({note, note}).value_or(QByteArray()), expected);
        }
    }

    // A blank in front is nothing to JSON, but makes a file one of another form than Plim's own.
    void aFileOfPlimsOwnFormIsReadLikeAnyOther()
    {
        QRandomGenerator random(11);
        const QByteArray good =
            "[" + shopping + "," + QByteArray(shopping).replace("milk", "\xC5\xBC\\n") + "]";
        QVERIFY(decodeNotes(good, now));
        const QByteArray pieces = "\"\\/{}[],:.0123eE+-ntu \n\xC5\xBC\xFF";
        int stillGood = 0;
        for (int i = 0; i < 20'000; ++i) {
            QByteArray bytes = good;
            for (int changes = 1 + random.bounded(2); changes > 0; --changes) {
                const int at = random.bounded(int(bytes.size()));
                const char piece = pieces[random.bounded(int(pieces.size()))];
                switch (random.bounded(3)) {
                case 0:
                    bytes[at] = piece;
                    break;
                case 1:
                    bytes.insert(at, piece);
                    break;
                default:
                    bytes.remove(at, 1);
                }
            }
            const auto read = decodeNotes(bytes, now);
            const auto expected = decodeNotes(' ' + bytes, now);
            if (decodeNotes(' ' + bytes, now) != expected)
                continue; // without an id a note gets a new one each time
            QVERIFY2(read == expected, bytes);
            stillGood += read.has_value();
        }
        QVERIFY(stillGood > 1000);
    }

    void everyTextSurvives_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("Polish") << u"zażółć gęślą jaźń"_s;
        QTest::newRow("emoji") << u"\U0001F600"_s;
        QTest::newRow("controls") << u"a\tb\nc\u0001\u007f"_s;
        QTest::newRow("NUL") << u"a"_s + QChar(QChar::Null) + u"b"_s;
        QTest::newRow("quotes and slashes") << u"\"\\/\\/\\\""_s;
        QTest::newRow("byte order marks") << u"\ufeffmilk/\ufefftea\"\ufeff"_s;
        QTest::newRow("separators") << u"\u2028\u2029\ufeff"_s;
        QTest::newRow("half a surrogate pair") << u"a"_s + QChar(0xD83D) + u"b"_s;
    }
    void everyTextSurvives()
    {
        QFETCH(QString, text);
        Note note = Note::fresh(now);
        note.body = note.title = note.color = text;
        const std::optional<QByteArray> bytes = encodeNotes({note});
        QVERIFY(bytes);
        QVERIFY(decodeNotes(*bytes, {}) == NoteArray{note});
    }

    /// Texts are read and written in steps of several characters.
    void everyCharacterSurvivesAtEveryPlace()
    {
        NoteArray notes;
        for (const QString &character :
             {u"\""_s, u"\\"_s, u"/"_s, u"\n"_s, u"\x7f"_s, u"\u0080"_s, u"ł"_s, u"\u07ff"_s,
              u"\u0800"_s, u"€"_s, u"\ufeff"_s, u"\uffff"_s, u"\U00010000"_s, u"\U0010ffff"_s}) {
            for (int before = 0; before < 40; ++before) {
                Note note = Note::fresh(now);
                note.body = QString(before, u'a') + character;
                notes.append(note);
                note.body += character + QString(before, u'b');
                notes.append(note);
            }
        }
        const std::optional<QByteArray> bytes = encodeNotes(notes);
        QVERIFY(bytes);
        QVERIFY(decodeNotes(*bytes, {}) == notes);
        const QJsonArray document = QJsonDocument::fromJson(*bytes).array();
        QCOMPARE(document.size(), notes.size());
        for (qsizetype i = 0; i < notes.size(); ++i) {
            if (notes[i].body.startsWith(QChar::ByteOrderMark)) // which Qt leaves out
                continue;
            QCOMPARE(document[i].toObject().value("body"_L1).toString(), notes[i].body);
        }
    }

    void datesSurviveExactly_data()
    {
        QTest::addColumn<double>("seconds");
        for (const double seconds :
             {0.0, -1.5, 784000000.5, 784000100.123456789, 0.1 + 0.2, 1e-300,
              1.7976931348623157e308, 9007199254740993.0, 700000000.00000012, -63114076800.0})
            QTest::addRow("%.17g", seconds) << seconds;
    }
    void datesSurviveExactly()
    {
        QFETCH(double, seconds);
        Note note = Note::fresh({seconds});
        const std::optional<QByteArray> bytes = encodeNotes({note});
        QVERIFY(bytes);
        const std::optional<NoteArray> read = decodeNotes(*bytes, now);
        QVERIFY(read);
        QVERIFY((*read)[0].createdAt.secondsSinceReferenceDate == seconds);
        QVERIFY((*read)[0].updatedAt.secondsSinceReferenceDate == seconds);
        QVERIFY(encodeNotes(*read) == bytes);
    }

    void datesThatAreNoNumberAreNotWritten()
    {
        for (const double seconds :
             {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
              std::numeric_limits<double>::quiet_NaN()}) {
            Note created = Note::fresh(now);
            created.createdAt = {seconds};
            QVERIFY(!encodeNotes({Note::fresh(now), created}));
            Note updated = Note::fresh(now);
            updated.updatedAt = {seconds};
            QVERIFY(!encodeNotes({updated}));
        }
    }

    void badBytesFail_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray good = "[" + shopping + "]";
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("not JSON") << QByteArray("notes");
        QTest::newRow("object") << shopping;
        QTest::newRow("number") << QByteArray("3");
        QTest::newRow("element is a number") << QByteArray("[" + shopping + ",3]");
        QTest::newRow("element is null") << QByteArray("[null]");
        QTest::newRow("element is an array") << QByteArray("[[]]");
        QTest::newRow("textSize is a number") << QByteArray(R"([{},{"textSize":3}])");
        QTest::newRow("date out of range") << QByteArray(R"([{"createdAt":1e999}])");
        QTest::newRow("garbage behind") << good + "x";
        QTest::newRow("two lists") << good + good;
        QTest::newRow("not UTF-8") << QByteArray("[{\"body\":\"\xff\xfe\"}]");
        QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + good;
        QTest::newRow("UTF-16") << QByteArray("\xff\xfe[\0]\0", 6);
        QTest::newRow("very deep") << QByteArray(200'000, '[');
    }
    void badBytesFail()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!decodeNotes(bytes, now));
    }

    void everyTruncationFails()
    {
        const QByteArray good = "[" + shopping + "]";
        for (qsizetype length = 0; length < good.size(); ++length)
            QVERIFY(!decodeNotes(good.first(length), now));
    }

    void slashesCostLinearTime()
    {
        const double ratio = growth(
            [](qsizetype size) {
                Note note = Note::fresh(now);
                note.body = QString(size, u'/');
                QVERIFY(encodeNotes({note}));
            },
            500'000);
        QVERIFY2(ratio < linearGrowthBound, qPrintable(QString::number(ratio)));
    }
};

QTEST_MAIN(TestNotesJson)
#include "tst_notes_json.moc"
