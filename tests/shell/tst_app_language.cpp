#include "shell/AppLanguage.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestAppLanguage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void polishComesFirst()
    {
        QCOMPARE(allAppLanguages.size(), 2U);
        QVERIFY(allAppLanguages[0] == AppLanguage::pl);
        QVERIFY(allAppLanguages[1] == AppLanguage::en);
    }

    void names()
    {
        QCOMPARE(rawValue(AppLanguage::pl), u"pl"_s);
        QCOMPARE(rawValue(AppLanguage::en), u"en"_s);
        QCOMPARE(displayName(AppLanguage::pl), u"Polski"_s);
        QCOMPARE(displayName(AppLanguage::en), u"English"_s);
    }

    void everyLanguageIsFoundByItsRawValue()
    {
        for (const AppLanguage language : allAppLanguages)
            QVERIFY(appLanguageFromRawValue(rawValue(language)) == language);
    }

    void noOtherTextIsALanguage_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QString();
        QTest::newRow("upper case") << u"EN"_s;
        QTest::newRow("capital") << u"Pl"_s;
        QTest::newRow("unknown") << u"de"_s;
        QTest::newRow("with a country") << u"en_US"_s;
        QTest::newRow("with a space") << u"pl "_s;
        QTest::newRow("a display name") << u"Polski"_s;
    }
    void noOtherTextIsALanguage()
    {
        QFETCH(QString, text);
        QVERIFY(!appLanguageFromRawValue(text));
    }
};

QTEST_MAIN(TestAppLanguage)
#include "tst_app_language.moc"
