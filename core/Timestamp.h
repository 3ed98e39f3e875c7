#pragma once

#include <QDateTime>

#include <compare>

/// A moment as the notes file stores it: the very double that was read is the one written back, so
/// saving never rounds a date to milliseconds.
struct Timestamp {
    double secondsSinceReferenceDate = 0; ///< since 2001-01-01 00:00:00 UTC

    [[nodiscard]] bool operator==(const Timestamp &) const = default;
    // clang-tidy 14 takes the 0 that the compiler compares the result with for a pointer.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    [[nodiscard]] std::partial_ordering operator<=>(const Timestamp &) const = default;

    [[nodiscard]] static Timestamp now();
    /// In local time, to the millisecond; dates no calendar knows are clamped.
    [[nodiscard]] QDateTime toDateTime() const;
};
