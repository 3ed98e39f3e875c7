#pragma once

#include "sticky/StickyFrame.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QUuid>

#include <optional>

/// A sticky window as the settings keep it. The windows to be opened at the next start are exactly
/// those that have an entry.
struct StickyLayoutEntry {
    QUuid noteID;
    StickyFrame frame;

    [[nodiscard]] bool operator==(const StickyLayoutEntry &) const = default;

    /// nullopt when a value is missing, of the wrong type or not finite.
    [[nodiscard]] static std::optional<StickyLayoutEntry> fromJson(const QJsonObject &object);
    [[nodiscard]] QJsonObject toJson() const;
};

/// Entries that cannot be read are left out, and so are all of a note but its first; what is no
/// JSON array holds none.
[[nodiscard]] QList<StickyLayoutEntry> decodeStickyLayout(const QByteArray &bytes);
[[nodiscard]] QByteArray encodeStickyLayout(const QList<StickyLayoutEntry> &entries);

/// The layout in the settings.
[[nodiscard]] QList<StickyLayoutEntry> storedStickyLayout();
void storeStickyLayout(const QList<StickyLayoutEntry> &entries);
