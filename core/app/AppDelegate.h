#pragma once

#include "sticky/StickyNoteManager.h"

#include <QObject>
#include <QTimer>

/// The orderly end. Whatever asks the application to quit, the editors are asked for their text
/// first, and where the sticky windows are is written; then the store saves the notes as the
/// application goes.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    explicit AppDelegate(StickyNoteManager &stickyNotes = StickyNoteManager::shared(),
                         QObject *parent = nullptr);

    /// Collects what the editors have not reported yet and writes the sticky windows' layout and
    /// the settings. Runs the event loop for 0.15 s, and on until every editor has answered, as long
    /// as EditorFlush says. Never refuses. Whoever asks to quit meanwhile is heard afterwards.
    void applicationShouldTerminate();

    /// Has the editors hand over what they have not reported yet. Runs the event loop, as above.
    void collectTexts();

    /// The end has begun, and may still be refused.
    [[nodiscard]] bool isTerminating() const { return m_isTerminating || m_goOn.isActive(); }

    [[nodiscard]] bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void prepareForTermination();

    StickyNoteManager &m_stickyNotes;
    QTimer m_goOn; ///< still runs when nothing came of a quit
    bool m_isTerminating = false;
    bool m_isQuitPending = false; ///< asked for while the editors were awaited
};
