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
        row("notesTab", &L10n::notesTab, u"NOTATKI"_s, u"NOTES"_s);
        row("archiveTab", &L10n::archiveTab, u"ARCHIWUM"_s, u"ARCHIVE"_s);
        row("showNotes", &L10n::showNotes, u"Pokaż notatki"_s, u"Show notes"_s);
        row("showArchive", &L10n::showArchive, u"Pokaż archiwum"_s, u"Show archive"_s);
        row("searchNotes", &L10n::searchNotes, u"Szukaj notatek…"_s, u"Search notes…"_s);
        row("clearSearch", &L10n::clearSearch, u"Wyczyść wyszukiwanie (Esc)"_s,
            u"Clear search (Esc)"_s);
        row("newNoteHelp", &L10n::newNoteHelp, u"Nowa notatka (Cmd+N)"_s, u"New note (Cmd+N)"_s);
        row("selectSeveral", &L10n::selectSeveral, u"Zaznacz kilka notatek"_s,
            u"Select multiple notes"_s);
        row("endSelection", &L10n::endSelection, u"Zakończ zaznaczanie"_s, u"End selection"_s);
        row("extractAll", &L10n::extractAll, u"Wyciągnij wszystkie (niewyciągnięte) jako sticky"_s,
            u"Extract all (unpinned) as sticky"_s);
        row("closeWindow", &L10n::closeWindow, u"Zamknij okno"_s, u"Close window"_s);
        row("noResults", &L10n::noResults, u"Brak wyników"_s, u"No results"_s);
        row("noNotes", &L10n::noNotes, u"Brak notatek"_s, u"No notes"_s);
        row("language", &L10n::language, u"Język"_s, u"Language"_s);
        row("untitled", &L10n::untitled, u"Bez tytułu"_s, u"Untitled"_s);
        row("noContent", &L10n::noContent, u"Brak treści"_s, u"No content"_s);
        row("today", &L10n::today, u"dzisiaj"_s, u"today"_s);
        row("yesterday", &L10n::yesterday, u"wczoraj"_s, u"yesterday"_s);
        row("makeSticky", &L10n::makeSticky, u"Zamień w sticky note"_s,
            u"Convert to sticky note"_s);
        row("stickyIsOpen", &L10n::stickyIsOpen, u"Wysunięta notatka jest otwarta"_s,
            u"Sticky note is open"_s);
        row("archiveNote", &L10n::archiveNote, u"Archiwizuj notatkę"_s, u"Archive note"_s);
        row("restoreNote", &L10n::restoreNote, u"Przywróć notatkę"_s, u"Restore note"_s);
        row("deleteNote", &L10n::deleteNote, u"Usuń notatkę na stałe"_s,
            u"Delete note permanently"_s);
        row("deleteNoteTitle", &L10n::deleteNoteTitle, u"Usunąć notatkę na stałe?"_s,
            u"Delete note permanently?"_s);
        row("deleteNoteMessage", &L10n::deleteNoteMessage,
            u"Ta operacja jest nieodwracalna. Może zamiast tego chcesz zarchiwizować notatkę?"_s,
            u"This action is irreversible. Maybe you want to archive the note instead?"_s);
        row("deleteNotesTitle", &L10n::deleteNotesTitle, u"Usunąć zaznaczone notatki na stałe?"_s,
            u"Delete selected notes permanently?"_s);
        row("deleteNotesMessage", &L10n::deleteNotesMessage, u"Ta operacja jest nieodwracalna."_s,
            u"This action is irreversible."_s);
        row("deletePermanently", &L10n::deletePermanently, u"Usuń na stałe"_s,
            u"Delete permanently"_s);
        row("remove", &L10n::remove, u"Usuń"_s, u"Delete"_s);
        row("undo", &L10n::undo, u"Cofnij"_s, u"Undo"_s);
        row("selectNotes", &L10n::selectNotes, u"Zaznacz notatki"_s, u"Select notes"_s);
        row("selectAll", &L10n::selectAll, u"Zaznacz wszystkie"_s, u"Select all"_s);
        row("archive", &L10n::archive, u"Archiwizuj"_s, u"Archive"_s);
        row("restore", &L10n::restore, u"Przywróć"_s, u"Restore"_s);
        row("selectOrAddNote", &L10n::selectOrAddNote, u"Wybierz lub dodaj notatkę"_s,
            u"Select or add a note"_s);
        row("noteText", &L10n::noteText, u"Treść notatki"_s, u"Note text"_s);
        row("formatting", &L10n::formatting, u"Formatowanie"_s, u"Formatting"_s);
        row("activeSuffix", &L10n::activeSuffix, u" • aktywne"_s, u" • active"_s);
        row("heading1", &L10n::heading1, u"Nagłówek 1"_s, u"Heading 1"_s);
        row("heading2", &L10n::heading2, u"Nagłówek 2"_s, u"Heading 2"_s);
        row("heading3", &L10n::heading3, u"Nagłówek 3"_s, u"Heading 3"_s);
        row("paragraph", &L10n::paragraph, u"Akapit"_s, u"Paragraph"_s);
        row("bold", &L10n::bold, u"Pogrubienie"_s, u"Bold"_s);
        row("italic", &L10n::italic, u"Kursywa"_s, u"Italic"_s);
        row("underline", &L10n::underline, u"Podkreślenie"_s, u"Underline"_s);
        row("strikethrough", &L10n::strikethrough, u"Przekreślenie"_s, u"Strikethrough"_s);
        row("bulletList", &L10n::bulletList, u"Lista punktowana"_s, u"Bulleted list"_s);
        row("numberedList", &L10n::numberedList, u"Lista numerowana"_s, u"Numbered list"_s);
        row("checklist", &L10n::checklist, u"Checklista"_s, u"Checklist"_s);
        row("divider", &L10n::divider, u"Linia oddzielająca"_s, u"Divider"_s);
        row("insertLink", &L10n::insertLink, u"Wstaw link"_s, u"Insert link"_s);
        row("enterURL", &L10n::enterURL, u"Podaj adres URL"_s, u"Enter URL"_s);
        row("insert", &L10n::insert, u"Wstaw"_s, u"Insert"_s);
        row("cancel", &L10n::cancel, u"Anuluj"_s, u"Cancel"_s);
        row("openLinkHint", &L10n::openLinkHint, u"Ctrl+klik otwiera link"_s,
            u"Ctrl+click opens the link"_s);
        row("noteColor", &L10n::noteColor, u"Kolor notatki"_s, u"Note color"_s);
        row("textSize", &L10n::textSize, u"Rozmiar tekstu"_s, u"Text size"_s);
        row("notebook", &L10n::notebook, u"NOTATNIK"_s, u"NOTEBOOK"_s);
        row("newSticky", &L10n::newSticky, u"NOWE PLIM"_s, u"NEW PLIM"_s);
        row("sort", &L10n::sort, u"SORTUJ"_s, u"SORT"_s);
        row("sortRandomly", &L10n::sortRandomly, u"LOSOWO"_s, u"RANDOM"_s);
        row("sortByColor", &L10n::sortByColor, u"KOLORAMI"_s, u"BY COLOR"_s);
        row("collapse", &L10n::collapse, u"ZWIŃ"_s, u"COLLAPSE"_s);
        row("expand", &L10n::expand, u"ROZWIŃ"_s, u"EXPAND"_s);
        row("pinOnTop", &L10n::pinOnTop, u"Przypnij na górze"_s, u"Pin on top"_s);
        row("unpin", &L10n::unpin, u"Odepnij"_s, u"Unpin"_s);
        row("cannotPin", &L10n::cannotPin, u"Ten pulpit nie pozwala przypinać okien"_s,
            u"This desktop does not let windows be pinned"_s);
        row("collapseNote", &L10n::collapseNote, u"Zwiń notatkę"_s, u"Collapse note"_s);
        row("expandNote", &L10n::expandNote, u"Rozwiń notatkę"_s, u"Expand note"_s);
        row("close", &L10n::close, u"Zamknij"_s, u"Close"_s);
        row("red", &L10n::red, u"czerwony"_s, u"red"_s);
        row("orange", &L10n::orange, u"pomarańczowy"_s, u"orange"_s);
        row("yellow", &L10n::yellow, u"żółty"_s, u"yellow"_s);
        row("green", &L10n::green, u"zielony"_s, u"green"_s);
        row("blue", &L10n::blue, u"niebieski"_s, u"blue"_s);
        row("purple", &L10n::purple, u"fioletowy"_s, u"purple"_s);
        row("brown", &L10n::brown, u"brązowy"_s, u"brown"_s);
    }
    void texts()
    {
        QFETCH(Text, text);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QTEST(text(), "polish");
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QTEST(text(), "english");
    }

    void counts_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("polish");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("polishDeleted");
        QTest::addColumn<QString>("englishDeleted");
        const auto row = [](int count, const QString &polish, const QString &english,
                            const QString &polishDeleted, const QString &englishDeleted) {
            QTest::addRow("%d", count)
                << count << polish << english << polishDeleted << englishDeleted;
        };
        row(0, u"Zaznaczono 0 notatek"_s, u"0 notes selected"_s, u"Usunięto 0 notatek"_s,
            u"0 notes deleted"_s);
        row(1, u"Zaznaczono 1 notatkę"_s, u"1 note selected"_s, u"Usunięto notatkę"_s,
            u"Note deleted"_s);
        row(2, u"Zaznaczono 2 notatki"_s, u"2 notes selected"_s, u"Usunięto 2 notatki"_s,
            u"2 notes deleted"_s);
        row(3, u"Zaznaczono 3 notatki"_s, u"3 notes selected"_s, u"Usunięto 3 notatki"_s,
            u"3 notes deleted"_s);
        row(4, u"Zaznaczono 4 notatki"_s, u"4 notes selected"_s, u"Usunięto 4 notatki"_s,
            u"4 notes deleted"_s);
        row(5, u"Zaznaczono 5 notatek"_s, u"5 notes selected"_s, u"Usunięto 5 notatek"_s,
            u"5 notes deleted"_s);
        row(22, u"Zaznaczono 22 notatek"_s, u"22 notes selected"_s, u"Usunięto 22 notatek"_s,
            u"22 notes deleted"_s);
        row(24, u"Zaznaczono 24 notatek"_s, u"24 notes selected"_s, u"Usunięto 24 notatek"_s,
            u"24 notes deleted"_s);
        row(102, u"Zaznaczono 102 notatek"_s, u"102 notes selected"_s, u"Usunięto 102 notatek"_s,
            u"102 notes deleted"_s);
    }
    void counts()
    {
        QFETCH(int, count);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QTEST(L10n::contentSelectedCount(count), "polish");
        QTEST(L10n::deletedCount(count), "polishDeleted");
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QTEST(L10n::contentSelectedCount(count), "english");
        QTEST(L10n::deletedCount(count), "englishDeleted");
    }

    void quantities_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("polish");
        QTest::addColumn<QString>("english");
        QTest::newRow("1") << 1 << u"1 notatka"_s << u"1 note"_s;
        for (const int few : {2, 4, 22, 34, 102, 1003})
            QTest::addRow("%d", few) << few << u"%1 notatki"_s.arg(few) << u"%1 notes"_s.arg(few);
        for (const int many : {0, 5, 10, 11, 12, 14, 21, 25, 100, 101, 112, 1014})
            QTest::addRow("%d", many)
                << many << u"%1 notatek"_s.arg(many) << u"%1 notes"_s.arg(many);
    }
    void quantities()
    {
        QFETCH(int, count);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QTEST(L10n::noteCount(count), "polish");
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QTEST(L10n::noteCount(count), "english");
    }

    void restoredBackupIsNamedWithItsDate()
    {
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(L10n::menuRestoredMessage(u"notes.json.bak.1"_s, u"5 mar 24"_s),
                 u"Przywrócono notes.json.bak.1 z 5 mar 24"_s);
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QCOMPARE(L10n::menuRestoredMessage(u"notes.json.bak.1"_s, u"5 Mar 24"_s),
                 u"Restored notes.json.bak.1 from 5 Mar 24"_s);
    }

    void everyColorHasAName()
    {
        LanguageManager::shared().setLanguage(AppLanguage::en);
        for (const NoteColor color : allNoteColors)
            QCOMPARE(L10n::colorName(color), rawValue(color));
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(L10n::colorName(NoteColor::brown), u"brązowy"_s);
    }

    void viewsAreToldOfEveryText()
    {
        const QMetaObject &meta = L10n::staticMetaObject;
        QVERIFY(meta.propertyCount() > meta.propertyOffset());
        const QList<QByteArray> alike{"menuBar", "ok", "stickyKeys"}; // the same word in both languages
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
            const QMetaProperty property = meta.property(i);
            QVERIFY2(property.notifySignal().name() == "changed", property.name());
            LanguageManager::shared().setLanguage(AppLanguage::pl);
            const QString polish = property.read(&L10n::shared()).toString();
            LanguageManager::shared().setLanguage(AppLanguage::en);
            const QString english = property.read(&L10n::shared()).toString();
            QVERIFY2(!polish.isEmpty() && !english.isEmpty(), property.name());
            QVERIFY2((polish == english) == alike.contains(property.name()), property.name());
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
