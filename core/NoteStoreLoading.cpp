#include "core/NoteStore.h"

#include "core/CoreLog.h"
#include "core/FileContent.h"
#include "core/NotesJson.h"
#include "core/NotesReading.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

using namespace Qt::Literals::StringLiterals;

// How NoteStore's notes come from disk: from the notes file, from a backup where that fails, and
// through the repairs that notes of earlier versions need.

namespace
{
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
    return {{}, {}, u"no backup"_s, {}};
}
} // namespace

void NoteStore::load()
{
    load(understood(readFile(m_file.fileURL()), m_file.imagesDirectory(), m_clock()));
}

void NoteStore::load(ReadNotes found)
{
    const std::vector<QString> candidates = backupCandidates(m_file);
    const auto read = [this, now = m_clock()](FileContent content) {
        return understood(std::move(content), m_file.imagesDirectory(), now);
    };
    const std::optional<FileLook> primary = lookAt(m_file.fileURL());
    const bool primaryExists = !primary || primary->exists; // for all one knows
    m_file.setSeen(found.content);
    const bool primaryIsRead = found.content.error.isEmpty();
    const bool primaryIsDecoded = found.notes.has_value();
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
        FileContent content = firstReadable(candidates);
        if (!content.error.isEmpty()) {
            if (primaryExists)
                logNothingDecoded();
            giveUp();
            return;
        }
        fromBackup = true;
        qCWarning(plimCore).noquote()
            << u"Plim: wczytano backup "_s + QFileInfo(content.path).fileName();
        found = read(std::move(content));
    }

    const QString tried = found.content.path;
    for (auto candidate = candidates.begin(); !found.notes && candidate != candidates.end();
         ++candidate) {
        if (*candidate == tried)
            continue;
        found = read(readFile(*candidate));
        if (found.notes) {
            fromBackup = true;
            qCWarning(plimCore).noquote() << u"Plim: primary JSON uszkodzony, wczytano backup "_s +
                                                 QFileInfo(*candidate).fileName();
        }
    }
    if (!found.notes) {
        logNothingDecoded();
        giveUp();
        return;
    }
    m_file.setDamaged(primaryExists && !primaryIsDecoded);

    m_hasContent = true;
    setNotes(*std::move(found.notes));
    if (fromBackup || found.isRepaired) {
        m_saveWorkItem.stop();
        performSave(true);
    }
}

std::optional<NoteArray> NoteStore::notesIn(const QString &url) const
{
    return understood(readFile(url), m_file.imagesDirectory(), m_clock()).notes;
}

std::optional<QString> NoteStore::keepVersion()
{
    const std::optional<QString> url = m_file.writeReplaced(m_notes);
    if (!url)
        qCWarning(plimCore, "Plim: the current notes could not be kept; nothing was replaced");
    return url;
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
