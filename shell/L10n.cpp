#include "shell/L10n.h"

#include "shell/LanguageManager.h"

#include <QQmlEngine>

using namespace Qt::StringLiterals;

namespace
{
QString pick(QStringView polish, QStringView english)
{
    return (LanguageManager::shared().isPolish() ? polish : english).toString();
}

/// "notatki" for 2 to 4 and "notatek" for every other number but 1: simpler than the grammar.
QString polishNotes(int count)
{
    return QString::number(count) + (count >= 2 && count <= 4 ? u" notatki"_s : u" notatek"_s);
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

#define PLIM_TEXT_READER(name, polish, english)                                                    \
    QString L10n::name()                                                                           \
    {                                                                                              \
        return pick(polish, english);                                                              \
    }
PLIM_TEXTS(PLIM_TEXT_READER)
#undef PLIM_TEXT_READER

QString L10n::contentSelectedCount(int count)
{
    if (count == 1)
        return pick(u"Zaznaczono 1 notatkę", u"1 note selected");
    return pick(u"Zaznaczono "_s + polishNotes(count),
                QString::number(count) + u" notes selected"_s);
}

QString L10n::deletedCount(int count)
{
    if (count == 1)
        return pick(u"Usunięto notatkę", u"Note deleted");
    return pick(u"Usunięto "_s + polishNotes(count), QString::number(count) + u" notes deleted"_s);
}

QString L10n::noteCount(int count)
{
    if (count == 1)
        return pick(u"1 notatka", u"1 note");
    const QString number = QString::number(count);
    const int last = count % 10;
    const bool isTeen = count / 10 % 10 == 1;
    const bool isFew = last >= 2 && last <= 4 && !isTeen;
    return pick(number + (isFew ? u" notatki"_s : u" notatek"_s), number + u" notes"_s);
}

QString L10n::menuRestoredMessage(const QString &file, const QString &date)
{
    return pick(u"Przywrócono "_s + file + u" z "_s + date,
                u"Restored "_s + file + u" from "_s + date);
}

QString L10n::colorName(NoteColor color)
{
    switch (color) {
    case NoteColor::red:
        return red();
    case NoteColor::orange:
        return orange();
    case NoteColor::yellow:
        return yellow();
    case NoteColor::green:
        return green();
    case NoteColor::blue:
        return blue();
    case NoteColor::purple:
        return purple();
    case NoteColor::brown:
        return brown();
    }
    Q_UNREACHABLE();
}
