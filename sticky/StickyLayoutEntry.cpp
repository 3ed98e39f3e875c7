#include "sticky/StickyLayoutEntry.h"

#include "core/Note.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QSettings>

#include <cmath>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto layoutKey = "stickyLayout.v1"_L1;

/// nullopt when it is no number or not finite.
std::optional<double> numberIn(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    if (!value.isDouble() || !std::isfinite(value.toDouble()))
        return std::nullopt;
    return value.toDouble();
}
} // namespace

std::optional<StickyLayoutEntry> StickyLayoutEntry::fromJson(const QJsonObject &object)
{
    const auto noteID = uuidFromText(object.value("noteID"_L1).toString());
    const auto x = numberIn(object, "x"_L1);
    const auto y = numberIn(object, "y"_L1);
    const auto width = numberIn(object, "width"_L1);
    const auto height = numberIn(object, "height"_L1);
    if (!noteID || !x || !y || !width || !height)
        return std::nullopt;
    return StickyLayoutEntry{*noteID, {*x, *y, *width, *height}};
}

QJsonObject StickyLayoutEntry::toJson() const
{
    return {{u"noteID"_s, uuidText(noteID)},
            {u"x"_s, frame.x},
            {u"y"_s, frame.y},
            {u"width"_s, frame.width},
            {u"height"_s, frame.height}};
}

QList<StickyLayoutEntry> decodeStickyLayout(const QByteArray &bytes)
{
    QList<StickyLayoutEntry> entries;
    QSet<QUuid> noteIDs;
    const QJsonArray array = QJsonDocument::fromJson(bytes).array();
    for (const auto element : array) {
        const auto entry = StickyLayoutEntry::fromJson(element.toObject());
        if (!entry || noteIDs.contains(entry->noteID))
            continue;
        noteIDs.insert(entry->noteID);
        entries << *entry;
    }
    return entries;
}

QByteArray encodeStickyLayout(const QList<StickyLayoutEntry> &entries)
{
    QJsonArray array;
    for (const StickyLayoutEntry &entry : entries)
        array.append(entry.toJson());
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

QList<StickyLayoutEntry> storedStickyLayout()
{
    return decodeStickyLayout(QSettings().value(layoutKey).toByteArray());
}

void storeStickyLayout(const QList<StickyLayoutEntry> &entries)
{
    QSettings().setValue(layoutKey, encodeStickyLayout(entries));
}
