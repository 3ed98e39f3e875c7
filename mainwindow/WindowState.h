#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QQuickWindow>
#include <QRect>
#include <QSettings>
#include <QTimer>
#include <qqmlregistration.h>

#include <optional>

/// Remembers where a window was and how large. That is the program's state and not the user's
/// configuration, so it lies apart from the settings.
class WindowState : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow *window READ window WRITE setWindow NOTIFY windowChanged)

public:
    explicit WindowState(QObject *parent = nullptr);
    ~WindowState() override;

    [[nodiscard]] QQuickWindow *window() const { return m_window; }
    /// The window is put where it was last time, if it can be seen there; in a view, once the
    /// view's own values are in place.
    void setWindow(QQuickWindow *window);

    [[nodiscard]] static QString stateFile();
    /// The frame, moved and shrunk so far that it lies on one of the screens; empty when it lies on
    /// none.
    [[nodiscard]] static std::optional<QRect>
    visibleFrame(const QRect &frame, const QList<QRect> &screens, QSize minimum);

    void classBegin() override { m_isBeingMade = true; }
    void componentComplete() override;

Q_SIGNALS:
    void windowChanged();

private:
    void take();
    void restore();
    void remember();
    void write();

    QPointer<QQuickWindow> m_window;
    QRect m_frame; ///< when not maximised
    bool m_isMaximized = false;
    bool m_isBeingMade = false;
    QTimer m_write;
};
