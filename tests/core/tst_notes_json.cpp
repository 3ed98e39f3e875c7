#include "core/NotesJson.h"

#include "tests/core/Duration.h"

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

    void everyTextSurvives_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("Polish") << u"zażółć gęślą jaźń"_s;
        QTest::newRow("emoji") << u"\U0001F600"_s;
        QTest::newRow("controls") << u"a\tb\nc\u0001\u007f"_s;
        QTest::newRow("NUL") << u"a"_s + QChar(QChar::Null) + u"b"_s;
        QTest::newRow("quotes and slashes") << u"\"\\/\\/\\\""_s;
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
