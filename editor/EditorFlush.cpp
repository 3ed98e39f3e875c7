#include "editor/EditorFlush.h"

EditorFlush &EditorFlush::shared()
{
    static EditorFlush flush;
    return flush;
}

EditorFlush::Debt EditorFlush::owe()
{
    ++m_owed;
    return std::shared_ptr<EditorFlush>(this, [](EditorFlush *flush) {
        if (--flush->m_owed == 0)
            Q_EMIT flush->settled();
    });
}
