#pragma once

#include <QString>

/// The address without what a browser would leave out of it (blanks around, breaks and control
/// characters within).
[[nodiscard]] QString cleanedAddress(const QString &address);

/// Longer ones lead nowhere: no program makes or takes them.
constexpr qsizetype longestLink = 8192;

/// In small letters, without the colon; empty for addresses that are relative to where they stand.
[[nodiscard]] QString addressScheme(QStringView address);

/// Whether a note may carry the address as a link. Nothing that would run or read a file, and none
/// longer than the longest.
[[nodiscard]] bool isHarmlessLink(QStringView address);
/// Whether a note may carry the address as a picture.
[[nodiscard]] bool isHarmlessPicture(QStringView address);
