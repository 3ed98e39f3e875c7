#pragma once

#include "shell/TrayWatch.h"
#include "sticky/StickyNoteManager.h"

#include <QObject>
#include <QTimer>

#include <chrono>

/// Hides the main window and shows it again. While it is hidden the program can always be reached:
/// by its status item or by a sticky window; when the last of these goes, the window is back. It is
/// not when the tray returns within a moment, as panels that are started anew do.
class MainWindowHiding : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds moment{3000};

    explicit MainWindowHiding(TrayWatch &tray = TrayWatch::shared(),
                              StickyNoteManager &stickyNotes = StickyNoteManager::shared(),
                              std::chrono::milliseconds trayMayBeGone = moment,
                              QObject *parent = nullptr);

    /// Hides a window that can be seen, and brings any other to the front. Where nothing else of
    /// the program would be left it is minimised instead.
    void toggle();
    /// Hides the window, also one that has never been shown. With a tray the program goes on when
    /// its last sticky window is closed, too.
    void hide();
    /// Shows the window, with the keyboard: its user has asked for it, if not in this program.
    static void bringToFront();

private:
    void follow();

    TrayWatch &m_tray;
    StickyNoteManager &m_stickyNotes;
    QTimer m_showAtLast;
    bool m_isHidden = false; ///< on purpose, and not closed
};
