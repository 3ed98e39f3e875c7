#pragma once

#include "sticky/StickyNoteController.h"
#include "sticky/StickyWindow.h"

#include <QMargins>
#include <QPoint>
#include <QPointer>
#include <QQuickWindow>
#include <QVariantAnimation>

#include <memory>

/// The window of one note on the desktop: a card, and around it as much of the window as its
/// property "shadow" says, in points.
class StickyNoteHost : public StickyWindow
{
    Q_OBJECT

public:
    /// The window is hidden and shows the controller's view. When it has been closed by its user,
    /// both go on living below the keeper until the editor has handed over its last words.
    StickyNoteHost(std::unique_ptr<StickyNoteController> controller,
                   std::unique_ptr<QQuickWindow> window, QObject *keeper);
    ~StickyNoteHost() override;

    [[nodiscard]] QRect frame() const override;
    void setFrame(const QRect &frame, Motion motion) override;
    void appear() override;
    void bringToFront() override;
    void close() override;
    void setFloating(bool isFloating) override;
    [[nodiscard]] bool isCollapsed() const override;
    void setCollapsed(bool isCollapsed) override;
    [[nodiscard]] bool isHostedBy(const QWindow *window) const override;

    [[nodiscard]] bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void followShadow();

private:
    void followGeometry();
    void followUserResizing(bool showedEditor);
    void stopGliding();
    void show(bool withKeyboard);
    void reportClosed();
    [[nodiscard]] bool isGliding() const { return m_glide.state() == QVariantAnimation::Running; }
    [[nodiscard]] QMargins margins() const;
    /// Where the window is to be for the card to be there.
    [[nodiscard]] QRect windowGeometry(const QRect &frame) const { return frame + margins(); }

    std::unique_ptr<StickyNoteController> m_controller; ///< outlives the view
    std::unique_ptr<QQuickWindow> m_window;
    QPointer<QObject> m_keeper;
    QVariantAnimation m_glide;
    QRect m_frame; ///< where the card is, or glides to
    bool m_isPlacing = false;
    bool m_isResizedByUser = false;
    bool m_isClosed = false;
    bool m_wasSeen = false;
};
