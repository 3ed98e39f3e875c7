#include "tests/e2e/StoredNotes.h"

#include <QJsonDocument>
#include <QSettings>

using namespace Qt::StringLiterals;

QJsonObject storedNote(const QString &id, const QString &body)
{
    return {{u"id"_s, id},
            {u"title"_s, QString()},
            {u"body"_s, body},
            {u"color"_s, u"yellow"_s},
            {u"textSize"_s, u"medium"_s},
            {u"isArchived"_s, false},
            {u"createdAt"_s, 800000000.5},
            {u"updatedAt"_s, 800000000.5}};
}

QString storedID(qsizetype index)
{
    return u"%1%1%1%1%1%1%1%1-1111-4111-8111-111111111111"_s.arg(index + 1);
}

void storeNotesCalled(const ThrowAwayHome &home, const QStringList &headings)
{
    QJsonArray notes;
    for (qsizetype i = 0; i < headings.size(); ++i)
        notes << storedNote(storedID(i), u"<h1>%1</h1><p>about %1</p>"_s.arg(headings[i]));
    storeNotes(home, notes);
}

void storeNotes(const ThrowAwayHome &home, const QJsonArray &notes)
{
    QDir().mkpath(home.data());
    QFile file(home.path(u"data/Plim/notes.json"_s));
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(QJsonDocument(notes).toJson(QJsonDocument::Compact)) <= 0)
        qFatal("The test's own notes could not be written");
}

void storeLanguage(const ThrowAwayHome &home, const QString &language)
{
    QSettings settings(home.path(u".config/Plim/Plim.conf"_s), QSettings::IniFormat);
    settings.setValue(u"plimLanguage"_s, language);
}
