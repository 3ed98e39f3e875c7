#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <vector>

/// What was typed and when, and how much of it must be on the disk at any moment.
class TypedText
{
public:
    using Clock = std::chrono::steady_clock;
    using Duration = Clock::duration;

    /// What is saved while the typing pauses: the page reports 120 ms after the last key, the store
    /// writes half a second after the last report; what is left is for the two of them to do it.
    static constexpr std::chrono::milliseconds afterPause{700};
    /// And what is saved while it never does. The page reports such typing every 80 ms with a key,
    /// and the store writes 4.7 s after the first report that is not saved.
    static constexpr std::chrono::milliseconds withoutPause{5000};

    /// What a program without a fault may be later by than a machine with nothing else to do would
    /// have it, for a key of the one moment that must be saved before the other.
    using Lateness = std::function<Duration(Clock::time_point, Clock::time_point)>;

    void add(char key, Clock::time_point when);
    [[nodiscard]] const QString &text() const { return m_text; }
    [[nodiscard]] qsizetype size() const { return m_text.size(); }
    /// How many of the characters must be there for one who looks at that moment.
    [[nodiscard]] qsizetype due(Clock::time_point moment, const Lateness &lateness) const;
    /// How long before that moment the first key was typed that is not among the stored; nothing
    /// when all are.
    [[nodiscard]] Duration missing(qsizetype stored, Clock::time_point moment) const;

private:
    QString m_text;
    std::vector<Clock::time_point> m_times;
};
