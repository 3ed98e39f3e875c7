#include "core/NoteStore.h"

#include "core/CoreLog.h"
#include "core/ImageStore.h"
#include "core/NotesJson.h"
#include "core/StoredHTML.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <utility>

using namespace Qt::Literals::StringLiterals;

// How NoteStore's notes come from disk: from the notes file, from a backup where that fails, and
// through the repairs that notes of earlier versions need.

namespace
{
struct FileContent {
    QString path;
    QByteArray bytes;
    QString error; ///< why there are no bytes; empty when the file was read
};

FileContent readFile(const QString &path)
{
    FileContent content{path, {}, {}};
    QFile file(path);
    const QFileInfo info(path);
    if (info.exists() && !info.isFile()) // opening a pipe would wait for somebody to write to it
        content.error = u"not a file"_s;
    else if (!file.open(QIODevice::ReadOnly))
        content.error = file.errorString();
    else
        content.bytes = file.readAll();
    if (content.error.isEmpty() && file.error() != QFileDevice::NoError)
        content.error = file.errorString();
    return content;
}

/// In the order they are tried: the single backup of older versions comes first.
std::vector<QString> backupCandidates(const NotesFile &file)
{
    std::vector<QString> candidates{file.backupURL()};
    for (const QString &url : file.backupURLs())
        candidates.push_back(url);
    return candidates;
}

FileContent firstReadable(const std::vector<QString> &candidates)
{
    for (const QString &candidate : candidates) {
        FileContent content = readFile(candidate);
        if (content.error.isEmpty())
            return content;
    }
    return {{}, {}, u"no backup"_s};
}

/// Old files kept the heading apart from the body.
void moveTitleIntoBody(Note &note)
{
    if (note.title.isEmpty() || note.body.contains("<h1"_L1, Qt::CaseInsensitive))
        return;
    note.body = u"<h1>"_s + note.title.toHtmlEscaped() + u"</h1>"_s + note.body;
    note.title.clear();
}

Note normalised(Note note, const QString &imagesDirectory)
{
    const QString emptyBody = u"<h1><br></h1>"_s;
    moveTitleIntoBody(note);
    if (note.body.isEmpty())
        note.body = emptyBody;
    note.body = sanitizeStoredHTML(note.body);
    if (MigratedHTML migrated = migrateImages(note.body, imagesDirectory); migrated.changed)
        note.body = std::move(migrated.html);
    if (note.body.trimmed().isEmpty())
        note.body = emptyBody;
    return note;
}
} // namespace

void NoteStore::load()
{
    const std::vector<QString> candidates = backupCandidates(m_file);
    const Timestamp now = m_clock();
    const bool primaryExists = QFileInfo::exists(m_file.fileURL());
    FileContent content = readFile(m_file.fileURL());
    const bool primaryIsRead = content.error.isEmpty();
    bool fromBackup = false;
    const auto giveUp = [this, primaryExists] {
        if (primaryExists)
            m_file.setDamaged(true);
        setNotes({});
        m_hasContent = false;
    };
    const auto logNothingDecoded = [] {
        qCWarning(plimCore, "Plim: nie udało się zdekodować notes.json ani backupu — nie nadpisuję "
                            "pliku");
    };

    if (!primaryIsRead) {
        content = firstReadable(candidates);
        if (!content.error.isEmpty()) {
            if (primaryExists)
                logNothingDecoded();
            giveUp();
            return;
        }
        fromBackup = true;
        qCWarning(plimCore).noquote()
            << u"Plim: wczytano backup "_s + QFileInfo(content.path).fileName();
    }

    std::optional<NoteArray> decoded = decodeNotes(content.bytes, now);
    const bool primaryIsDecoded = primaryIsRead && decoded;
    for (auto candidate = candidates.begin(); !decoded && candidate != candidates.end();
         ++candidate) {
        if (*candidate == content.path)
            continue;
        decoded = decodeNotes(readFile(*candidate).bytes, now);
        if (decoded) {
            fromBackup = true;
            qCWarning(plimCore).noquote() << u"Plim: primary JSON uszkodzony, wczytano backup "_s +
                                                 QFileInfo(*candidate).fileName();
        }
    }
    if (!decoded) {
        logNothingDecoded();
        giveUp();
        return;
    }
    m_file.setDamaged(primaryExists && !primaryIsDecoded);

    bool changed = false;
    NoteArray notes;
    QSet<QUuid> ids;
    for (const Note &note : *decoded) {
        Note own = normalised(note, m_file.imagesDirectory());
        if (ids.contains(own.id)) // put together by hand; under one id only one of them could be opened
            own.id = QUuid::createUuid();
        ids.insert(own.id);
        changed |= own != note;
        notes.append(std::move(own));
    }
    m_hasContent = true;
    setNotes(std::move(notes));
    if (fromBackup || changed) {
        m_saveWorkItem.stop();
        performSave(true);
    }
}

bool NoteStore::restore(const QString &backup)
{
    if (!QFileInfo::exists(backup))
        return false;
    m_saveQueue.waitForDone(); // a write on its way would put a notes file in the place
    const auto fail = [](const QString &error) {
        qCWarning(plimCore).noquote() << u"Restore failed: "_s + error;
        return false;
    };
    const FileContent content = readFile(backup);
    if (!content.error.isEmpty())
        return fail(content.error);
    if (!decodeNotes(content.bytes, m_clock()))
        return fail(u"the file is not a list of notes"_s);
    if (QFileInfo::exists(m_file.fileURL()))
        QFile::copy(m_file.fileURL(), m_file.restoreCopyURL());
    QFile source(backup);
    if (!source.copy(m_file.fileURL()))
        return fail(source.errorString());
    load();
    return true;
}
