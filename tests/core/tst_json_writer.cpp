#include "core/JsonWriter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
QByteArray asQtWrites(const QString &text)
{
    QByteArray bytes = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return bytes.replace("/", "\\/");
}

QList<QByteArray> piecesOf(const QString &text)
{
    QList<QByteArray> pieces;
    JsonWriter json([&pieces](QByteArrayView piece) {
        pieces += piece.toByteArray();
        return true;
    });
    json.write("["_L1);
    json.writeText(text);
    json.write("]"_L1);
    return json.finish() ? pieces : QList<QByteArray>();
}

constexpr qsizetype aroundText = 4; ///< [""]
constexpr int group = 16;           ///< units that are looked at together
} // namespace

class TestJsonWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Alone among letters of one byte, and of two, at every place of those that are looked
    /// at together.
    void everyUnit_data()
    {
        QTest::addColumn<QChar>("neighbour");
        QTest::addColumn<int>("place");
        for (int place = 0; place < group; ++place) {
            QTest::addRow("a, %d", place) << QChar(u'a') << place;
            QTest::addRow("ż, %d", place) << QChar(u'ż') << place;
        }
    }
    void everyUnit()
    {
        QFETCH(QChar, neighbour);
        QFETCH(int, place);
        QString text(group * qsizetype(0x10000), neighbour);
        for (qsizetype unit = 0; unit < 0x10000; ++unit)
            text[group * unit + place] = QChar(char16_t(unit));
        QVERIFY(piecesOf(text).join() == asQtWrites(text));
    }

    /// Of letters of one byte and of two, and of what is escaped, in every order.
    void everyMixture()
    {
        constexpr int bits = 1 << group;
        QString text;
        text.reserve(group * qsizetype(bits));
        for (int mixture = 0; mixture < bits; ++mixture) {
            for (int unit = 0; unit < group; ++unit)
                text += (mixture >> unit & 1) != 0 ? u'ż' : unit % 3 == 0 ? u'/' : u'a';
        }
        QVERIFY(piecesOf(text).join() == asQtWrites(text));
    }

    /// Between two pieces there may be a form of several bytes, or half a surrogate pair.
    void whateverCrossesTheBorder_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("escapes") << u"/\"\\\n\u0001"_s.repeated(20);
        QTest::newRow("codes") << u"\u0001"_s.repeated(20);
        QTest::newRow("two bytes") << u"zażółć gęślą jaźń, "_s.repeated(4);
        QTest::newRow("three bytes") << u"漢"_s.repeated(40);
        QTest::newRow("pairs") << u"\U0001F600"_s.repeated(30);
        QTest::newRow("a letter before pairs") << u"x"_s + u"\U0001F600"_s.repeated(30);
        QTest::newRow("half pairs") << QString(40, QChar(0xD83D)) + QString(40, QChar(0xDE00));
        QTest::newRow("all") << u"a/ż漢\U0001F600\u0001\\"_s.repeated(10) + QChar(0xD83D);
    }
    void whateverCrossesTheBorder()
    {
        QFETCH(QString, text);
        for (qsizetype before = 0; before < 70; ++before) {
            const qsizetype size = JsonWriter::pieceSize - before;
            const QList<QByteArray> pieces = piecesOf(QString(size, u'x') + text);
            QCOMPARE(pieces.size(), 2);
            QCOMPARE(pieces[0].size(), JsonWriter::pieceSize);
            const QByteArray expected = asQtWrites(text).insert(2, QByteArray(size, 'x'));
            QVERIFY2(pieces.join() == expected, QByteArray::number(before));
        }
    }

    /// And is not read any further: half a pair at its end stays one.
    void aTextMayBePartOfAnother()
    {
        const QString text = u"\U0001F600"_s;
        QByteArray written;
        JsonWriter json([&written](QByteArrayView piece) {
            written += piece;
            return true;
        });
        json.writeText(QStringView(text).first(1));
        QVERIFY(json.finish());
        QCOMPARE(written, R"("\ud83d")");
    }

    void onlyTheLastPieceIsSmaller()
    {
        for (const qsizetype size : {aroundText, JsonWriter::pieceSize - 1, JsonWriter::pieceSize,
                                     JsonWriter::pieceSize + 1, 3 * JsonWriter::pieceSize - 1,
                                     3 * JsonWriter::pieceSize, 3 * JsonWriter::pieceSize + 1}) {
            const QString text(size - aroundText, u'x');
            QList<QByteArray> pieces = piecesOf(text);
            QVERIFY(pieces.join() == asQtWrites(text));
            const qsizetype last = pieces.takeLast().size();
            QVERIFY(last > 0);
            QCOMPARE(pieces.size() * JsonWriter::pieceSize + last, size);
            for (const QByteArray &piece : std::as_const(pieces))
                QCOMPARE(piece.size(), JsonWriter::pieceSize);
        }
    }

    void syntaxAndNumbersCrossTheBorderToo()
    {
        QByteArray written, expected;
        JsonWriter json([&written](QByteArrayView piece) {
            written += piece;
            return true;
        });
        while (expected.size() < 2 * JsonWriter::pieceSize) {
            json.writeNumber(0.1 + 0.2);
            json.write(",\"isArchived\":false"_L1);
            expected += "0.30000000000000004,\"isArchived\":false";
        }
        QVERIFY(json.finish());
        QVERIFY(written == expected);
    }

    void nothingFollowsARefusedPiece()
    {
        for (int refused = 1; refused <= 3; ++refused) {
            int count = 0;
            JsonWriter json([&](QByteArrayView) { return ++count != refused; });
            json.writeText(QString(2 * JsonWriter::pieceSize, u'x')); // and a third, with the end
            QCOMPARE(json.isRefused(), refused < 3);
            QVERIFY(!json.finish());
            QCOMPARE(count, refused);
        }
    }
};

QTEST_APPLESS_MAIN(TestJsonWriter)
#include "tst_json_writer.moc"
