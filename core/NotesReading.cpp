#include "core/NotesReading.h"

#include "core/NoteRepair.h"
#include "core/NotesFile.h"
#include "core/NotesJson.h"

#include <QSet>
#include <QUuid>

#include <span>
#include <utility>
#include <vector>

namespace
{
constexpr std::size_t worthAThread = 500; ///< notes

/// Two halves of many notes are repaired at the same time: nothing else is waited for as long.
std::vector<Note> repaired(const NoteArray &decoded, const QString &imagesDirectory)
{
    std::vector<Note> notes(decoded.begin(), decoded.end());
    const auto repair = [&imagesDirectory](std::span<Note> part) {
        for (Note &note : part)
            note = repairedNote(std::move(note), imagesDirectory);
    };
    const std::span<Note> all(notes);
    if (all.size() < worthAThread) {
        repair(all);
        return notes;
    }
    std::thread other([&] { repair(all.subspan(all.size() / 2)); });
    repair(all.first(all.size() / 2));
    other.join();
    return notes;
}

NoteArray normalised(const NoteArray &decoded, const QString &imagesDirectory)
{
    NoteArray notes;
    QSet<QUuid> ids;
    for (Note &note : repaired(decoded, imagesDirectory)) {
        if (ids.contains(note.id)) // put together by hand; under one id only one could be opened
            note.id = QUuid::createUuid();
        ids.insert(note.id);
        notes.append(std::move(note));
    }
    return notes;
}
} // namespace

ReadNotes understood(FileContent content, const QString &imagesDirectory, const Timestamp &now)
{
    ReadNotes read{.content = std::move(content), .notes = std::nullopt};
    if (!read.content.error.isEmpty())
        return read;
    const std::optional<NoteArray> decoded = decodeNotes(read.content.bytes, now);
    if (!decoded)
        return read;
    read.notes = normalised(*decoded, imagesDirectory);
    read.isRepaired = *read.notes != *decoded;
    return read;
}

NotesAhead::NotesAhead(const QString &dataDirectory)
    : m_thread([this, file = NotesFile(dataDirectory)] {
          file.createDirectories(); // where pictures may go
          m_notes = understood(readFile(file.fileURL()), file.imagesDirectory(), Timestamp::now());
      })
{
}

NotesAhead::~NotesAhead()
{
    if (m_thread.joinable())
        m_thread.join();
}

ReadNotes NotesAhead::take()
{
    m_thread.join();
    return std::move(m_notes);
}
