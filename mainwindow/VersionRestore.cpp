#include "mainwindow/VersionRestore.h"

#include "core/NoteLines.h"
#include "shell/L10n.h"
#include "shell/LanguageManager.h"

#include <QFileInfo>
#include <QLocale>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr int shownHeadings = 3;

QLocale shownLocale()
{
    return LanguageManager::shared().isPolish() ? QLocale(QLocale::Polish, QLocale::Poland)
                                                : QLocale(QLocale::English, QLocale::UnitedStates);
}

QString shownDate(const QDateTime &date)
{
    return shownLocale().toString(date, QLocale::ShortFormat);
}

/// With seconds: two versions may be less than a minute apart.
QString exactDate(const QDateTime &date)
{
    return shownLocale().toString(date.date(), QLocale::ShortFormat) + u", "_s +
           date.time().toString(u"HH:mm:ss"_s);
}

QString firstHeadings(const NoteArray &notes)
{
    QStringList headings;
    for (const Note &note : notes) {
        if (headings.size() == shownHeadings)
            break;
        const QString heading = headingLine(note);
        headings << (heading.isEmpty() ? L10n::untitled() : heading);
    }
    const QString all = headings.join(u", "_s);
    return notes.size() > shownHeadings ? all + u"…"_s : all;
}
} // namespace

VersionRestore::VersionRestore(NoteStore &store, std::chrono::milliseconds offerTime,
                               QObject *parent)
    : UndoOffer(offerTime, parent), m_store(store)
{
    connect(&L10n::shared(), &L10n::changed, this, &VersionRestore::versionsChanged);
}

QString VersionRestore::text() const
{
    return L10n::backupRestored();
}

QVariantList VersionRestore::versions() const
{
    QVariantList rows;
    for (const Version &version : m_versions)
        rows << QVariantMap{{u"date"_s, exactDate(version.backup.date)},
                            {u"count"_s, L10n::noteCount(int(version.notes.size()))},
                            {u"headings"_s, firstHeadings(version.notes)}};
    return rows;
}

void VersionRestore::begin()
{
    const std::vector<NotesBackup> backups = m_store.availableBackups();
    if (backups.empty())
        return;
    const NotesBackup &newest = backups.front();
    if (m_store.restore(newest.url)) {
        Q_EMIT restored(
            L10n::menuRestoredMessage(QFileInfo(newest.url).fileName(), shownDate(newest.date)));
        return;
    }
    findVersions(backups);
    if (m_versions.empty())
        Q_EMIT failed();
    else
        Q_EMIT asked();
}

void VersionRestore::findVersions(const std::vector<NotesBackup> &backups)
{
    m_versions.clear();
    for (const NotesBackup &backup : backups) {
        if (std::optional<NoteArray> notes = m_store.notesIn(backup.url))
            m_versions.push_back({backup, *std::move(notes)});
    }
    Q_EMIT versionsChanged();
}

void VersionRestore::replaceNotes(int row)
{
    if (row < 0 || row >= int(m_versions.size()))
        return;
    const Version version = m_versions[size_t(row)];
    m_versions.clear();
    Q_EMIT notesAboutToBeReplaced();
    if (!m_store.keepVersion()) {
        Q_EMIT failed();
        return;
    }
    m_replaced = m_store.notes();
    m_restored = version.notes;
    m_store.setNotes(m_restored);
    UndoOffer::begin();
}

void VersionRestore::takeBack()
{
    Q_EMIT notesAboutToBeReplaced();
    // What was written since is kept as well, or nothing is replaced.
    if (m_store.notes() != m_restored && !m_store.keepVersion()) {
        Q_EMIT failed();
        return;
    }
    m_store.setNotes(m_replaced);
}

void VersionRestore::forget()
{
    m_replaced = {};
    m_restored = {};
}
