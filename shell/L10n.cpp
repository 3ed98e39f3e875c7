#include "shell/L10n.h"

#include "shell/LanguageManager.h"

#include <QQmlEngine>

using namespace Qt::StringLiterals;

namespace
{
QString pick(const QString &polish, const QString &english)
{
    return LanguageManager::shared().isPolish() ? polish : english;
}
} // namespace

L10n::L10n()
{
    connect(&LanguageManager::shared(), &LanguageManager::languageChanged, this, &L10n::changed);
}

L10n &L10n::shared()
{
    static L10n texts;
    return texts;
}

L10n *L10n::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}

QString L10n::newNote()
{
    return pick(u"Nowa notatka"_s, u"New note"_s);
}

QString L10n::selectOrAddNote()
{
    return pick(u"Wybierz lub dodaj notatkę"_s, u"Select or add a note"_s);
}

QString L10n::notesTab()
{
    return pick(u"NOTATKI"_s, u"NOTES"_s);
}

QString L10n::archiveTab()
{
    return pick(u"ARCHIWUM"_s, u"ARCHIVE"_s);
}

QString L10n::noNotes()
{
    return pick(u"Brak notatek"_s, u"No notes"_s);
}

QString L10n::noContent()
{
    return pick(u"Brak treści"_s, u"No content"_s);
}

QString L10n::untitled()
{
    return pick(u"Bez tytułu"_s, u"Untitled"_s);
}

QString L10n::enterURL()
{
    return pick(u"Podaj adres URL"_s, u"Enter URL"_s);
}

QString L10n::insert()
{
    return pick(u"Wstaw"_s, u"Insert"_s);
}

QString L10n::cancel()
{
    return pick(u"Anuluj"_s, u"Cancel"_s);
}
