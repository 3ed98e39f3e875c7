#pragma once

#include "core/Timestamp.h"

#include <QString>

/// How a row tells when its note was last changed.
class TimestampFormat
{
public:
    static const QString time;
    static const QString day;
    static const QString full;

    /// "today, 14:05", "yesterday", "5 Mar" of this year or "5 Mar 24", in the interface's language
    /// and in the calendar and the time zone of `now`.
    [[nodiscard]] static QString text(Timestamp moment, const QDateTime &now);
};
