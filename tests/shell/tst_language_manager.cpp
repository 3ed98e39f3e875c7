#include "shell/LanguageManager.h"

#include "core/NotificationCenter.h"
#include "tests/ThrowAwayHome.h"

#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto key = "plimLanguage"_L1;
} // namespace

class TestLanguageManager : public QObject
{
    Q_OBJECT

    std::optional<ThrowAwayHome> m_home;

    [[nodiscard]] QStringList settingsFiles() const
    {
        return QDir(m_home->path(u".config"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

private Q_SLOTS:
    void init() { m_home.emplace(); }
    void cleanup() { m_home.reset(); }

    void theFirstLanguage_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QString>("system");
        QTest::addColumn<QString>("language");
        const QVariant nothing;
        QTest::newRow("first start, American") << nothing << u"en_US"_s << u"en"_s;
        QTest::newRow("first start, British") << nothing << u"en_GB"_s << u"en"_s;
        QTest::newRow("first start, Polish") << nothing << u"pl_PL"_s << u"pl"_s;
        QTest::newRow("first start, German") << nothing << u"de_DE"_s << u"pl"_s;
        QTest::newRow("first start, no language") << nothing << u"C"_s << u"pl"_s;
        QTest::newRow("stored, against an English system")
            << QVariant(u"pl"_s) << u"en_US"_s << u"pl"_s;
        QTest::newRow("stored, against a Polish system")
            << QVariant(u"en"_s) << u"pl_PL"_s << u"en"_s;
        QTest::newRow("upper case is unknown, English")
            << QVariant(u"PL"_s) << u"en_US"_s << u"en"_s;
        QTest::newRow("upper case is unknown, Polish")
            << QVariant(u"EN"_s) << u"pl_PL"_s << u"pl"_s;
        QTest::newRow("unknown, English") << QVariant(u"de"_s) << u"en_US"_s << u"en"_s;
        QTest::newRow("unknown, German") << QVariant(u"de"_s) << u"de_DE"_s << u"pl"_s;
        QTest::newRow("empty") << QVariant(u""_s) << u"en_US"_s << u"en"_s;
        QTest::newRow("a number") << QVariant(1) << u"en_US"_s << u"en"_s;
        QTest::newRow("a list") << QVariant(QStringList{u"pl"_s, u"en"_s}) << u"en_US"_s << u"en"_s;
    }
    void theFirstLanguage()
    {
        QFETCH(QVariant, stored);
        QFETCH(QString, system);
        if (stored.isValid())
            QSettings().setValue(key, stored);
        const LanguageManager manager{QLocale(system)};
        QTEST(rawValue(manager.language()), "language");
        QCOMPARE(manager.isPolish(), manager.language() == AppLanguage::pl);
        QCOMPARE(QSettings().value(key), stored);
    }

    void aFirstStartWritesNothing()
    {
        {
            const LanguageManager manager{QLocale(QLocale::English)};
            QSettings().sync();
        }
        QCOMPARE(settingsFiles(), QStringList());
    }

    void everyAssignmentIsStoredAndAnnounced_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<AppLanguage>("language");
        for (const QString &before : {u"pl"_s, u"en"_s, u"klingon"_s, QString()}) {
            for (const AppLanguage language : allAppLanguages)
                QTest::addRow("%s to %s", qPrintable(before), qPrintable(rawValue(language)))
                    << before << language;
        }
    }
    void everyAssignmentIsStoredAndAnnounced()
    {
        QFETCH(QString, before);
        QFETCH(AppLanguage, language);
        if (!before.isNull())
            QSettings().setValue(key, before);
        LanguageManager manager{QLocale(QLocale::German)};
        QSignalSpy changed(&manager, &LanguageManager::languageChanged);
        QList<AppLanguage> announced;
        connect(&NotificationCenter::shared(), &NotificationCenter::plimLanguageChanged, &manager,
                [&](AppLanguage now) {
                    announced << now;
                    // Whoever hears of it can rely on it.
                    QVERIFY(manager.language() == now);
                    QCOMPARE(QSettings().value(key).toString(), rawValue(now));
                });

        manager.setLanguage(language);
        QVERIFY(manager.language() == language);
        QCOMPARE(announced, QList<AppLanguage>{language});
        QCOMPARE(changed.count(), 1);

        QSettings().remove(key);
        manager.setLanguage(language);
        QCOMPARE(QSettings().value(key).toString(), rawValue(language));
        QCOMPARE(announced, (QList<AppLanguage>{language, language}));
        QCOMPARE(changed.count(), 2);
    }

    void theNextStartTakesTheLastAssignment()
    {
        {
            LanguageManager manager{QLocale(QLocale::Polish)};
            manager.setLanguage(AppLanguage::pl);
            manager.setLanguage(AppLanguage::en);
        }
        const LanguageManager next{QLocale(QLocale::Polish)};
        QVERIFY(next.language() == AppLanguage::en);
        QSettings().sync();
        QVERIFY(m_home->read(u".config/Plim/Plim.conf"_s).contains("plimLanguage=en"));
    }

    void thereIsOneForAll()
    {
        QCOMPARE(&LanguageManager::shared(), &LanguageManager::shared());
        QCOMPARE(LanguageManager::create(nullptr, nullptr), &LanguageManager::shared());
    }
};

QTEST_MAIN(TestLanguageManager)
#include "tst_language_manager.moc"
