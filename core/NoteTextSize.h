#pragma once

#include <QString>

#include <array>
#include <optional>

/// The order of the cases is the order of size pickers.
enum class NoteTextSize { extraSmall, small, medium, big };

inline constexpr std::array allNoteTextSizes{NoteTextSize::extraSmall, NoteTextSize::small,
                                             NoteTextSize::medium, NoteTextSize::big};

[[nodiscard]] QString rawValue(NoteTextSize size);
/// Exact match only; empty for any other text. Files are read more leniently, see Note::fromJson.
[[nodiscard]] std::optional<NoteTextSize> noteTextSizeFromRawValue(QStringView text);
