#include "editor/ScriptLiteral.h"
#include "tests/RandomSeed.h"

#include <QJSEngine>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestScriptLiteral : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void escapes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("literal");
        QTest::newRow("empty") << u""_s << u"\"\""_s;
        QTest::newRow("plain") << u"abc"_s << u"\"abc\""_s;
        QTest::newRow("backslash") << u"\\"_s << u"\"\\\\\""_s;
        QTest::newRow("quote") << u"\""_s << u"\"\\\"\""_s;
        QTest::newRow("line feed") << u"\n"_s << u"\"\\n\""_s;
        QTest::newRow("carriage return") << u"\r"_s << u"\"\\r\""_s;
        QTest::newRow("tab") << u"\t"_s << u"\"\\t\""_s;
        QTest::newRow("line separator") << QString(QChar(0x2028)) << u"\"\\u2028\""_s;
        QTest::newRow("paragraph separator") << QString(QChar(0x2029)) << u"\"\\u2029\""_s;
        QTest::newRow("a backslash before a quote") << u"\\\""_s << u"\"\\\\\\\"\""_s;
        QTest::newRow("an escape already written") << u"\\n\\\""_s << u"\"\\\\n\\\\\\\"\""_s;
        QTest::newRow("a written separator") << u"\\u2028"_s << u"\"\\\\u2028\""_s;
        QTest::newRow("line end of two") << u"a\r\nb"_s << u"\"a\\r\\nb\""_s;
        QTest::newRow("apostrophes, slashes, accents stay")
            << u"it's </script> ${x} `zażółć`"_s << u"\"it's </script> ${x} `zażółć`\""_s;
        QTest::newRow("other signs stay") << u"\u0001\b\f\v\u007f\u0085\u2027\u202a\ufeff"_s
                                          << u"\"\u0001\b\f\v\u007f\u0085\u2027\u202a\ufeff\""_s;
        QTest::newRow("beyond the first plane") << u"😀"_s << u"\"😀\""_s;
        QTest::newRow("all at once")
            << u"\t\"\\\n"_s + QChar(0x2029) + u"x\r"_s + QChar(0x2028)
            << u"\"\\t\\\"\\\\\\n"_s + u"\\u2029"_s + u"x\\r"_s + u"\\u2028\""_s;
    }
    void escapes()
    {
        QFETCH(QString, text);
        QTEST(jsString(text), "literal");
    }

    void anyTextEvaluatesToItself()
    {
        const quint32 seed = randomSeed();
        QRandomGenerator random(seed);
        static constexpr char16_t special[] = {u'\\',  u'"',   u'\'',  u'\n',  u'\r',  u'\t',
                                               u'n',   u'u',   0x2028, 0x2029, 0xd800, 0xdbff,
                                               0xdc00, 0xdfff, 0xfeff, 0xffff, 1,      u'`'};
        QJSEngine engine;
        for (int round = 0; round < 10'000; ++round) {
            QString text;
            for (int length = random.bounded(30); length > 0; --length) {
                text += random.bounded(2) ? QChar(special[random.bounded(int(std::size(special)))])
                                          : QChar(char16_t(random.bounded(1, 0x10000)));
            }
            const QJSValue value = engine.evaluate(jsString(text));
            if (!value.isString() || value.toString() != text)
                QFAIL(qPrintable(u"seed %1, round %2: %3"_s.arg(seed).arg(round).arg(
                    QString::fromLatin1(text.toUtf8().toHex()))));
        }
    }

    void decimals_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("15") << 15.0 << u"15.0"_s;
        QTest::newRow("15.5") << 15.5 << u"15.5"_s;
        QTest::newRow("a tenth") << 0.1 << u"0.1"_s;
        QTest::newRow("no shorter one reads back") << 0.1 + 0.2 << u"0.30000000000000004"_s;
        QTest::newRow("zero") << 0.0 << u"0.0"_s;
        QTest::newRow("below zero") << -1.0 << u"-1.0"_s;
        QTest::newRow("ten") << 10.0 << u"10.0"_s;
        QTest::newRow("a hundred") << 100.0 << u"100.0"_s;
        QTest::newRow("a hundred thousand") << 100000.0 << u"100000.0"_s;
        QTest::newRow("a third") << 1.0 / 3 << u"0.3333333333333333"_s;
        QTest::newRow("large") << 1e21 << u"1e+21"_s;
        QTest::newRow("small") << 1e-7 << u"1e-07"_s;
    }
    void decimals()
    {
        QFETCH(double, value);
        QTEST(shortestDecimal(value), "text");
    }

    void anyNumberReadsBack()
    {
        const quint32 seed = randomSeed();
        QRandomGenerator random(seed);
        QJSEngine engine;
        for (int round = 0; round < 5'000; ++round) {
            const double value = round % 2 ? random.bounded(200.0) : random.bounded(4000) / 4.0;
            const QString text = shortestDecimal(value);
            QVERIFY2(text.contains(u'.') || text.contains(u'e'), qPrintable(text));
            QCOMPARE(engine.evaluate(text).toNumber(), value);
        }
    }
};

QTEST_GUILESS_MAIN(TestScriptLiteral)
#include "tst_script_literal.moc"
