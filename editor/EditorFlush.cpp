#include "editor/EditorFlush.h"

#include <algorithm>

EditorFlush &EditorFlush::shared()
{
    static EditorFlush flush;
    return flush;
}

EditorFlush::Debt EditorFlush::owe(qsizetype size)
{
    ++m_owed;
    m_largest = std::max(m_largest, size);
    return std::shared_ptr<EditorFlush>(this, [](EditorFlush *flush) {
        if (--flush->m_owed > 0)
            return;
        flush->m_largest = 0;
        Q_EMIT flush->settled();
    });
}

std::chrono::milliseconds EditorFlush::patience() const
{
    constexpr std::chrono::milliseconds usual{2000};
    constexpr qsizetype charactersInMillisecond = 500; // on a slow machine that has more to do
    return usual + std::chrono::milliseconds(m_largest / charactersInMillisecond);
}
