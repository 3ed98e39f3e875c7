#include "core/NoteColor.h"

namespace
{
struct Entry {
    NoteColor color;
    QLatin1StringView rawValue;
    float red, green, blue;
};

using namespace Qt::Literals::StringLiterals;

// One row per case, in the order of the cases, so that a case is its own row number.
constexpr std::array<Entry, allNoteColors.size()> table{{
    {NoteColor::red, "red"_L1, 1.0F, 0.42F, 0.471F},
    {NoteColor::orange, "orange"_L1, 1.0F, 0.627F, 0.039F},
    {NoteColor::yellow, "yellow"_L1, 1.0F, 0.859F, 0.039F},
    {NoteColor::green, "green"_L1, 0.4F, 0.839F, 0.298F},
    {NoteColor::blue, "blue"_L1, 0.329F, 0.8F, 1.0F},
    {NoteColor::purple, "purple"_L1, 0.694F, 0.573F, 1.0F},
    {NoteColor::brown, "brown"_L1, 0.596F, 0.518F, 0.412F},
}};

const Entry &entry(NoteColor color)
{
    return table.at(static_cast<std::size_t>(color));
}
} // namespace

QString rawValue(NoteColor color)
{
    return entry(color).rawValue;
}

std::optional<NoteColor> noteColorFromRawValue(QStringView rawValue)
{
    for (const Entry &candidate : table) {
        if (rawValue == candidate.rawValue)
            return candidate.color;
    }
    return std::nullopt;
}

QColor displayColor(NoteColor color)
{
    const Entry &found = entry(color);
    return QColor::fromRgbF(found.red, found.green, found.blue);
}

QColor displayNoteColor(QStringView rawValue)
{
    return displayColor(noteColorFromRawValue(rawValue).value_or(NoteColor::yellow));
}
