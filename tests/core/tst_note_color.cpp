#include "core/NoteColor.h"
#include "core/NoteTextSize.h"
#include "core/Timestamp.h"

#include <QTest>
#include <QTimeZone>

using namespace Qt::Literals::StringLiterals;

class TestNoteColor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void colors()
    {
        const QStringList names{u"red"_s,  u"orange"_s, u"yellow"_s, u"green"_s,
                                u"blue"_s, u"purple"_s, u"brown"_s};
        const QStringList displayed{u"#ff6b78"_s, u"#ffa00a"_s, u"#ffdb0a"_s, u"#66d64c"_s,
                                    u"#54ccff"_s, u"#b192ff"_s, u"#988469"_s};
        QCOMPARE(qsizetype(allNoteColors.size()), names.size());
        for (qsizetype i = 0; i < names.size(); ++i) {
            const NoteColor color = allNoteColors.at(std::size_t(i));
            QCOMPARE(rawValue(color), names[i]);
            QVERIFY(noteColorFromRawValue(names[i]) == color);
            QCOMPARE(displayColor(color).name(), displayed[i]);
            QCOMPARE(displayColor(color).alphaF(), 1.0F);
            QCOMPARE(displayNoteColor(names[i]), displayColor(color));
        }
    }

    void unknownColorsAreShownYellow()
    {
        for (const QString &name : {u"pink"_s, u"Yellow"_s, u" red"_s, QString()}) {
            QVERIFY(!noteColorFromRawValue(name));
            QCOMPARE(displayNoteColor(name), displayColor(NoteColor::yellow));
        }
    }

    void textSizes()
    {
        const QStringList names{u"extraSmall"_s, u"small"_s, u"medium"_s, u"big"_s};
        QCOMPARE(qsizetype(allNoteTextSizes.size()), names.size());
        for (qsizetype i = 0; i < names.size(); ++i) {
            QCOMPARE(rawValue(allNoteTextSizes.at(std::size_t(i))), names[i]);
            QVERIFY(noteTextSizeFromRawValue(names[i]) == allNoteTextSizes.at(std::size_t(i)));
        }
        for (const QString &name : {u"regular"_s, u"Big"_s, QString()})
            QVERIFY(!noteTextSizeFromRawValue(name));
    }

    void timestamps()
    {
        QCOMPARE(Timestamp{}.toDateTime().toUTC().toString(Qt::ISODate), u"2001-01-01T00:00:00Z"_s);
        QCOMPARE(Timestamp{784000000.5}.toDateTime().toUTC().toString(Qt::ISODateWithMs),
                 u"2025-11-05T01:46:40.500Z"_s);
        QVERIFY(Timestamp{1} < Timestamp{2});
        QVERIFY(Timestamp{1e300}.toDateTime().isValid());
        QVERIFY(qAbs(Timestamp::now().toDateTime().msecsTo(QDateTime::currentDateTime())) < 60'000);
    }
};

QTEST_MAIN(TestNoteColor)
#include "tst_note_color.moc"
