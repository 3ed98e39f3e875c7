#pragma once

#include "shell/TrayWatch.h"
#include "sticky/StickyNoteManager.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>

/// Hides the main window and shows it again. While it is hidden the program can always be reached:
/// by its status item or by a sticky window; when the last of these goes, the window is back. It is
/// not when the tray returns within a moment, as panels that are started anew do. With a session
/// that only begins, the panel may take longer.
class MainWindowHiding : public QObject
{
    Q_OBJECT

public:
    struct Patience {
        std::chrono::milliseconds withTrayGone{3000};
        std::chrono::milliseconds withTrayToCome{10'000}; ///< from the start of the program
    };

    explicit MainWindowHiding(TrayWatch &tray = TrayWatch::shared(),
                              StickyNoteManager &stickyNotes = StickyNoteManager::shared(),
                              QObject *parent = nullptr);

    void setPatience(const Patience &patience) { m_patience = patience; }

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
    [[nodiscard]] std::chrono::milliseconds patience() const;

    TrayWatch &m_tray;
    StickyNoteManager &m_stickyNotes;
    Patience m_patience;
    QTimer m_showAtLast;
    bool m_isHidden = false; ///< on purpose, and not closed
    bool m_hasHadTray = false;
    QElapsedTimer m_sinceStart;
};
