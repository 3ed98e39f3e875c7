#include "sticky/StickyNoteManager.h"

#include <QLoggingCategory>
#include <QQmlEngine>

Q_LOGGING_CATEGORY(stickyLog, "plim.sticky")

StickyNoteManager &StickyNoteManager::shared()
{
    static StickyNoteManager manager(nullptr);
    return manager;
}

StickyNoteManager *StickyNoteManager::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}

void StickyNoteManager::open(const QUuid &noteID, NoteStore &, QWindow *, std::optional<QRect>)
{
    qCInfo(stickyLog) << "Plim: no sticky windows yet, asked for"
                      << noteID.toString(QUuid::WithoutBraces);
}

void StickyNoteManager::openAll(const QList<QUuid> &noteIDs, NoteStore &, QWindow *)
{
    qCInfo(stickyLog) << "Plim: no sticky windows yet, asked for" << noteIDs.size();
}

void StickyNoteManager::setActiveNoteIDs(const NoteIDSet &noteIDs)
{
    if (m_activeNoteIDs == noteIDs)
        return;
    m_activeNoteIDs = noteIDs;
    Q_EMIT activeNoteIDsChanged();
}
