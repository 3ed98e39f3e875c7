#include "core/NotesJson.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>

namespace
{
QByteArray withEscapedSlashes(const QByteArray &json)
{
    QByteArray escaped;
    escaped.reserve(json.size() + json.count('/'));
    for (const char c : json) { // a slash occurs only inside strings, where it may be escaped
        if (c == '/')
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

bool hasFiniteDates(const Note &note)
{
    return std::isfinite(note.createdAt.secondsSinceReferenceDate) &&
           std::isfinite(note.updatedAt.secondsSinceReferenceDate);
}
} // namespace

std::optional<QByteArray> encodeNotes(const NoteArray &notes)
{
    if (!std::ranges::all_of(notes, hasFiniteDates))
        return std::nullopt;
    QJsonArray array;
    for (const Note &note : notes)
        array.append(note.toJson());
    return withEscapedSlashes(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

std::optional<NoteArray> decodeNotes(const QByteArray &bytes, Timestamp now)
{
    // Qt would skip a byte order mark; no version of the file has ever begun with one.
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isArray())
        return std::nullopt;
    NoteArray notes;
    const QJsonArray array = document.array();
    for (const auto element : array) {
        if (!element.isObject())
            return std::nullopt;
        const std::optional<Note> note = Note::fromJson(element.toObject(), now);
        if (!note)
            return std::nullopt;
        notes.append(*note);
    }
    return notes;
}
