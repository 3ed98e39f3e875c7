#include "shell/L10n.h"

#include "core/NotificationCenter.h"
#include "shell/LanguageManager.h"
#include "tests/ThrowAwayHome.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

using Text = QString (*)();
Q_DECLARE_METATYPE(Text)

class TestL10n : public QObject
{
    Q_OBJECT

    ThrowAwayHome m_home;

private Q_SLOTS:
    void texts_data()
    {
        QTest::addColumn<Text>("text");
        QTest::addColumn<QString>("polish");
        QTest::addColumn<QString>("english");
        const auto row = [](const char *name, Text text, const QString &polish,
                            const QString &english) {
            QTest::newRow(name) << text << polish << english;
        };
        row("newNote", &L10n::newNote, u"Nowa notatka"_s, u"New note"_s);
        row("selectOrAddNote", &L10n::selectOrAddNote, u"Wybierz lub dodaj notatkę"_s,
            u"Select or add a note"_s);
        row("notesTab", &L10n::notesTab, u"NOTATKI"_s, u"NOTES"_s);
        row("archiveTab", &L10n::archiveTab, u"ARCHIWUM"_s, u"ARCHIVE"_s);
        row("noNotes", &L10n::noNotes, u"Brak notatek"_s, u"No notes"_s);
        row("noContent", &L10n::noContent, u"Brak treści"_s, u"No content"_s);
        row("untitled", &L10n::untitled, u"Bez tytułu"_s, u"Untitled"_s);
        row("enterURL", &L10n::enterURL, u"Podaj adres URL"_s, u"Enter URL"_s);
        row("insert", &L10n::insert, u"Wstaw"_s, u"Insert"_s);
        row("cancel", &L10n::cancel, u"Anuluj"_s, u"Cancel"_s);
    }
    void texts()
    {
        QFETCH(Text, text);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QTEST(text(), "polish");
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QTEST(text(), "english");
    }

    void viewsAreToldOfEveryText()
    {
        const QMetaObject &meta = L10n::staticMetaObject;
        QVERIFY(meta.propertyCount() > meta.propertyOffset());
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
            const QMetaProperty property = meta.property(i);
            QVERIFY2(property.notifySignal().name() == "changed", property.name());
            LanguageManager::shared().setLanguage(AppLanguage::pl);
            const QString polish = property.read(&L10n::shared()).toString();
            LanguageManager::shared().setLanguage(AppLanguage::en);
            const QString english = property.read(&L10n::shared()).toString();
            QVERIFY2(!polish.isEmpty() && !english.isEmpty() && polish != english, property.name());
        }
    }

    void textsChangeWithTheLanguage()
    {
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QSignalSpy changed(&L10n::shared(), &L10n::changed);
        QStringList seen;
        connect(&L10n::shared(), &L10n::changed, &changed, [&] { seen << L10n::cancel(); });
        LanguageManager::shared().setLanguage(AppLanguage::en);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(seen, (QStringList{u"Cancel"_s, u"Anuluj"_s}));
    }

    void whoHearsOfTheLanguageReadsItsTexts()
    {
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QObject listener;
        QString seen;
        connect(&NotificationCenter::shared(), &NotificationCenter::plimLanguageChanged, &listener,
                [&] { seen = L10n::insert(); });
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QCOMPARE(seen, u"Insert"_s);
    }

    void thereIsOneForAll() { QCOMPARE(L10n::create(nullptr, nullptr), &L10n::shared()); }
};

QTEST_MAIN(TestL10n)
#include "tst_l10n.moc"
