#pragma once

#include <QColor>
#include <QString>

#include <array>
#include <optional>

/// The order of the cases is the order of colour pickers and of sorting by colour.
enum class NoteColor { red, orange, yellow, green, blue, purple, brown };

inline constexpr std::array allNoteColors{NoteColor::red,   NoteColor::orange, NoteColor::yellow,
                                          NoteColor::green, NoteColor::blue,   NoteColor::purple,
                                          NoteColor::brown};

[[nodiscard]] QString rawValue(NoteColor color);
/// Exact match only; empty for any other text.
[[nodiscard]] std::optional<NoteColor> noteColorFromRawValue(QStringView rawValue);
[[nodiscard]] QColor displayColor(NoteColor color);
/// What a view paints for a note's stored colour: yellow where the text names no colour.
[[nodiscard]] QColor displayNoteColor(QStringView rawValue);
