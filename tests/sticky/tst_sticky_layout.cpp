#include "core/Note.h"
#include "sticky/StickyLayoutEntry.h"
#include "tests/ThrowAwayHome.h"
#include "tests/core/LinearWork.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSettings>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QUuid first(u"0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0"_s);
const QUuid second(u"11111111-2222-3333-4444-555555555555"_s);
const QByteArray good =
    R"({"noteID":"0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0","x":1.5,"y":-2,"width":300,"height":340})";
} // namespace

class TestStickyLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void entriesAreWrittenByTheirNames()
    {
        const StickyLayoutEntry entry{first, {1.5, -2, 300, 340}};
        const QJsonArray array = QJsonDocument::fromJson(encodeStickyLayout({entry})).array();
        QCOMPARE(array.size(), 1);
        QCOMPARE(array[0].toObject(),
                 (QJsonObject{{u"noteID"_s, u"0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0"_s},
                              {u"x"_s, 1.5},
                              {u"y"_s, -2},
                              {u"width"_s, 300},
                              {u"height"_s, 340}}));
    }

    void theIDIsWrittenInCapitals()
    {
        QVERIFY(encodeStickyLayout({{first, {}}}).contains("0F1E2D3C-4B5A-6978-8796-A5B4C3D2E1F0"));
    }

    void noEntriesAreAnEmptyArray() { QCOMPARE(encodeStickyLayout({}), "[]"); }

    void whatIsWrittenIsRead()
    {
        const QList<StickyLayoutEntry> entries{{second, {0.1, 1.0 / 3, 260, 52}},
                                               {first, {-1234.75, 1e6, 300, 340}}};
        QVERIFY(decodeStickyLayout(encodeStickyLayout(entries)) == entries);
    }

    void whatIsNoLayoutIsAnEmptyOne_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no JSON") << QByteArray("sticky");
        QTest::newRow("cut off") << "[" + good.first(good.size() - 5);
        QTest::newRow("an object") << good;
        QTest::newRow("a number that is too large") << QByteArray(good).replace("1.5", "1e999");
        QTest::newRow("zeros") << QByteArray(64, '\0');
    }
    void whatIsNoLayoutIsAnEmptyOne()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(decodeStickyLayout(bytes).isEmpty());
    }

    void entriesThatCannotBeReadAreLeftOut_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::newRow("null") << QByteArray("null");
        QTest::newRow("a number") << QByteArray("7");
        QTest::newRow("an array") << "[" + good + "]";
        QTest::newRow("an empty object") << QByteArray("{}");
        QTest::newRow("no id") << QByteArray(good).replace("noteID", "id");
        QTest::newRow("another id") << QByteArray(good).replace("0F1E2D3C", "0F1E2D3");
        QTest::newRow("an id in braces")
            << QByteArray(good).replace("\"0F", "\"{0F").replace("F0\"", "F0}\"");
        QTest::newRow("a number as id")
            << QByteArray(R"({"noteID":5,"x":1,"y":2,"width":300,"height":340})");
        QTest::newRow("text for x") << QByteArray(good).replace("1.5", R"("1.5")");
        QTest::newRow("text for y") << QByteArray(good).replace("-2", R"("low")");
        QTest::newRow("no width") << QByteArray(good).replace("width", "breadth");
        QTest::newRow("a truth for the height") << QByteArray(good).replace("340", "true");
        QTest::newRow("null for the height") << QByteArray(good).replace("340", "null");
    }
    void entriesThatCannotBeReadAreLeftOut()
    {
        QFETCH(QByteArray, entry);
        const QByteArray other =
            QByteArray(good).replace(uuidText(first).toLatin1(), uuidText(second).toLatin1());
        const auto entries = decodeStickyLayout("[" + entry + "," + other + "]");
        QCOMPARE(entries.size(), 1);
        QCOMPARE(entries[0].noteID, second);
        QVERIFY((entries[0].frame == StickyFrame{1.5, -2, 300, 340}));
    }

    void ofTwoEntriesOfANoteTheFirstCounts()
    {
        const QByteArray again = QByteArray(good).replace("1.5", "99").replace("0F1E", "0f1e");
        const auto entries = decodeStickyLayout("[" + good + "," + again + "]");
        QCOMPARE(entries.size(), 1);
        QCOMPARE(entries[0].frame.x, 1.5);
    }

    void unknownFieldsDoNoHarm()
    {
        const auto entries =
            decodeStickyLayout("[" + QByteArray(good).replace("{", R"({"z":1,)") + "]");
        QCOMPARE(entries.size(), 1);
    }

    /// The settings may hold whatever somebody put there.
    void largeLayoutsTakeTheirShareOfTime_data()
    {
        QTest::addColumn<QByteArray>("pattern");
        QTest::newRow("entries of one note") << good + ',';
        QTest::newRow("entries of nothing") << QByteArray("{},");
        QTest::newRow("names") << QByteArray("{\"noteID\":\"a\"},");
        QTest::newRow("brackets") << QByteArray("[");
        QTest::newRow("quotes") << QByteArray("\"");
        QTest::newRow("zeros") << QByteArray("0");
    }
    void largeLayoutsTakeTheirShareOfTime()
    {
        QFETCH(QByteArray, pattern);
        const QByteArray fault = againstLinearWork([&pattern](qsizetype size) {
            (void)decodeStickyLayout('[' + filled(pattern, size) + "{}]");
        });
        QVERIFY2(fault.isEmpty(), fault);
    }

    void manyWindowsTakeTheirShareOfTime()
    {
        const QByteArray fault = againstLinearWork([](qsizetype size) {
            QList<StickyLayoutEntry> entries;
            for (qsizetype i = 0; i < size / good.size(); ++i)
                entries << StickyLayoutEntry{QUuid::createUuid(), {1.5, -2, 300, 340}};
            QVERIFY(decodeStickyLayout(encodeStickyLayout(entries)).size() == entries.size());
        });
        QVERIFY2(fault.isEmpty(), fault);
    }

    void theSettingsKeepTheBytes()
    {
        const ThrowAwayHome home;
        QVERIFY(storedStickyLayout().isEmpty());
        const QList<StickyLayoutEntry> entries{{first, {1.5, -2, 300, 340}}};
        storeStickyLayout(entries);
        const QVariant stored = QSettings().value(u"stickyLayout.v1"_s);
        QCOMPARE(stored.metaType(), QMetaType::fromType<QByteArray>());
        QCOMPARE(stored.toByteArray(), encodeStickyLayout(entries));
        QVERIFY(storedStickyLayout() == entries);
    }

    void otherSettingsInItsPlaceAreAnEmptyLayout_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("a number") << QVariant(5);
        QTest::newRow("a list") << QVariant(QStringList{u"a"_s, u"b"_s});
        QTest::newRow("a rectangle") << QVariant(QRect(1, 2, 3, 4));
    }
    void otherSettingsInItsPlaceAreAnEmptyLayout()
    {
        QFETCH(QVariant, value);
        const ThrowAwayHome home;
        QSettings().setValue(u"stickyLayout.v1"_s, value);
        QVERIFY(storedStickyLayout().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestStickyLayout)
#include "tst_sticky_layout.moc"
