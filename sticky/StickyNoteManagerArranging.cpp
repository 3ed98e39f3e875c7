#include "core/NoteColor.h"
#include "core/NotificationCenter.h"
#include "sticky/StickyLog.h"
#include "sticky/StickyNoteManager.h"
#include "sticky/StickyPacking.h"

#include <QRandomGenerator>

#include <algorithm>
#include <utility>

void StickyNoteManager::collapseAll()
{
    setAllCollapsed(true);
}

void StickyNoteManager::expandAll()
{
    setAllCollapsed(false);
}

void StickyNoteManager::setAllCollapsed(bool isCollapsed)
{
    rememberArrangement();
    auto &center = NotificationCenter::shared();
    if (isCollapsed)
        Q_EMIT center.plimCollapseAll();
    else
        Q_EMIT center.plimExpandAll();
    const double height = isCollapsed ? StickyFrame::collapsedHeight : StickyFrame::expandedHeight;
    for (Sticky &sticky : m_stickies) {
        sticky.window->setCollapsed(isCollapsed);
        place(sticky, currentFrame(sticky).resizedKeepingTop(StickyFrame::initialWidth, height),
              StickyWindow::Motion::Immediate);
    }
    packSoon(m_delays.packAfterFolding,
             [this, isCollapsed] { packWindows(windowOrder(), isCollapsed); });
}

void StickyNoteManager::sortRandomly()
{
    QList<QUuid> noteIDs = windowOrder();
    std::ranges::shuffle(noteIDs, *QRandomGenerator::global());
    rememberArrangement();
    packWindows(noteIDs);
}

void StickyNoteManager::sortWindowsByColor(const NoteStore &store)
{
    QList<QUuid> noteIDs = windowOrder();
    std::ranges::stable_sort(noteIDs, {}, [&store](const QUuid &noteID) {
        const Note *note = store.note(noteID);
        if (!note)
            return allNoteColors.size();
        // A note of an unknown colour is shown in yellow, and lies with the yellow ones.
        return std::size_t(noteColorFromRawValue(note->color).value_or(NoteColor::yellow));
    });
    rememberArrangement();
    packWindows(noteIDs);
}

void StickyNoteManager::undoArrange()
{
    const auto before = m_beforeArranging;
    if (before.isEmpty())
        return;
    m_packSoon.stop();
    setBeforeArranging({});
    for (Sticky &sticky : m_stickies) {
        const auto arrangement = before.constFind(sticky.noteID);
        if (arrangement == before.constEnd())
            continue;
        sticky.window->setCollapsed(arrangement->isCollapsed);
        place(sticky, arrangement->frame, StickyWindow::Motion::Animated);
    }
    saveLayout();
}

void StickyNoteManager::packWindows(const QList<QUuid> &noteIDs, std::optional<bool> forced)
{
    m_packSoon.stop(); // it would undo this order
    const ScreenAreas screens = m_screens();
    if (screens.isEmpty())
        return;
    QList<QSizeF> sizes;
    for (const QUuid &noteID : noteIDs) {
        const StickyFrame frame = currentFrame(*find(noteID));
        sizes << QSizeF(frame.width, frame.height);
        qCDebug(stickyLog, "packWindows: %s w=%g h=%g",
                StickyPacking::isCollapsed(frame.height, forced) ? "collapsed" : "expanded",
                frame.width, frame.height);
    }
    const QList<StickyFrame> frames =
        StickyPacking::pack(screens.visible.constFirst(), sizes, forced);
    for (qsizetype i = 0; i < noteIDs.size(); ++i)
        place(*find(noteIDs[i]), frames[i], StickyWindow::Motion::Animated);
    saveLayout();
}

// A later request stands for an earlier one: both pack all windows.
void StickyNoteManager::packSoon(std::chrono::milliseconds delay, const std::function<void()> &pack)
{
    m_pack = pack;
    m_packSoon.start(delay);
}

void StickyNoteManager::rememberArrangement()
{
    QHash<QUuid, Arrangement> arrangement;
    for (const Sticky &sticky : m_stickies)
        arrangement.insert(sticky.noteID, {sticky.lastFrame, sticky.window->isCollapsed()});
    setBeforeArranging(arrangement);
}

void StickyNoteManager::setBeforeArranging(const QHash<QUuid, Arrangement> &arrangement)
{
    const bool couldUndo = canUndoArrange();
    m_beforeArranging = arrangement;
    // cppcheck-suppress knownConditionTrueFalse ; it asks what was set in between
    if (couldUndo != canUndoArrange())
        Q_EMIT canUndoArrangeChanged();
}
