#pragma once

#include "core/NoteTextSize.h"
#include "core/Timestamp.h"

#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <optional>

/// The canonical form of an identity, as files and the page carry it: 36 characters, upper case.
[[nodiscard]] QString uuidText(const QUuid &id);
/// Reads that form, in either case, and nothing else.
[[nodiscard]] std::optional<QUuid> uuidFromText(QStringView text);

/// One note, a plain value. The live notes belong to NoteStore.
struct Note {
    QUuid id;      ///< never changes
    QString title; ///< of old files; loading moves it into the body
    QString body;  ///< HTML fragment; its first h1 is the heading
    QString color; ///< a NoteColor's raw value; kept as text so that an unknown colour survives
    NoteTextSize textSize = NoteTextSize::medium;
    bool isArchived = false;
    Timestamp createdAt;
    Timestamp updatedAt; ///< of the last content change; moving a note does not count

    [[nodiscard]] bool operator==(const Note &) const = default;

    /// The note a user has just asked for: a new identity and an empty heading.
    [[nodiscard]] static Note fresh(Timestamp now);

    /// Absent keys and nulls take defaults; nullopt when a value has the wrong JSON type, the id is
    /// not a UUID or a date is not finite.
    [[nodiscard]] static std::optional<Note> fromJson(const QJsonObject &object, Timestamp now);
    [[nodiscard]] QJsonObject toJson() const;

    /// The first heading's text, else the old title; empty when the note has neither.
    [[nodiscard]] QString headingText() const;
    /// At most sixteen words of what follows the heading, or the placeholder when there are none.
    /// The placeholder comes from the caller because this folder knows no interface language.
    [[nodiscard]] QString previewText(const QString &placeholder) const;
};
