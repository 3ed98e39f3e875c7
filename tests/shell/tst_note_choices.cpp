#include "shell/NoteChoices.h"

#include "core/NoteColor.h"
#include "core/NoteTextSize.h"
#include "shell/L10n.h"
#include "shell/LanguageManager.h"
#include "tests/ThrowAwayHome.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestNoteChoices : public QObject
{
    Q_OBJECT

    ThrowAwayHome m_home;

private Q_SLOTS:
    void colorsAreInTheirOrder()
    {
        const QStringList colors = NoteChoices::colors();
        QCOMPARE(colors.size(), qsizetype(allNoteColors.size()));
        for (qsizetype index = 0; index < colors.size(); ++index) {
            const NoteColor color = allNoteColors[std::size_t(index)];
            QCOMPARE(colors[index], rawValue(color));
            QCOMPARE(NoteChoices::colorIndex(colors[index]), int(index));
            QCOMPARE(NoteChoices::displayColor(colors[index]), displayColor(color));
        }
    }

    // Views look a colour's name up by its raw value.
    void everyColorHasItsText()
    {
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        for (const NoteColor color : allNoteColors) {
            const QByteArray name = rawValue(color).toLatin1();
            QCOMPARE(L10n::shared().property(name.constData()).toString(), L10n::colorName(color));
            QVERIFY(!L10n::colorName(color).isEmpty());
        }
    }

    void sizesAreInTheirOrder()
    {
        QStringList sizes;
        for (const NoteTextSize size : allNoteTextSizes)
            sizes << rawValue(size);
        QCOMPARE(NoteChoices::textSizes(), sizes);
        QCOMPARE(NoteChoices::textSizeLabels(),
                 QStringList({u"X-SMALL"_s, u"SMALL"_s, u"MEDIUM"_s, u"BIG"_s}));
        for (qsizetype index = 0; index < sizes.size(); ++index)
            QCOMPARE(NoteChoices::textSizeIndex(sizes[index]), int(index));
    }

    void whatIsNoChoiceHasNoPlace_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QString();
        QTest::newRow("unknown") << u"pink"_s;
        QTest::newRow("with a space") << rawValue(NoteColor::red) + u' ';
        QTest::newRow("a label") << u"X-SMALL "_s;
    }
    void whatIsNoChoiceHasNoPlace()
    {
        QFETCH(QString, text);
        QCOMPARE(NoteChoices::colorIndex(text), -1);
        QCOMPARE(NoteChoices::textSizeIndex(text), -1);
        QCOMPARE(NoteChoices::displayColor(text), displayNoteColor(text));
    }
};

QTEST_GUILESS_MAIN(TestNoteChoices)
#include "tst_note_choices.moc"
