#include "tests/e2e/TypedText.h"

void TypedText::add(char key, Clock::time_point when)
{
    m_text += QLatin1Char(key);
    m_times.push_back(when);
}

qsizetype TypedText::due(Clock::time_point moment, const Lateness &lateness) const
{
    const auto isOver = [&lateness](Duration limit, Clock::time_point from, Clock::time_point to) {
        return to - from > limit && to - from > limit + lateness(from, to);
    };
    for (qsizetype i = size() - 1; i >= 0; --i) {
        const Clock::time_point typed = m_times[std::size_t(i)];
        const Clock::time_point next = i + 1 < size() ? m_times[std::size_t(i) + 1] : moment;
        if (isOver(afterPause, typed, next) || isOver(withoutPause, typed, moment))
            return i + 1;
    }
    return 0;
}

TypedText::Duration TypedText::missing(qsizetype stored, Clock::time_point moment) const
{
    return stored < size() ? moment - m_times[std::size_t(stored)] : Duration::zero();
}
