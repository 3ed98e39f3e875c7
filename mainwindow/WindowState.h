#pragma once

#include <QObject>
#include <QQuickWindow>
#include <QRect>
#include <QSettings>
#include <QTimer>
#include <qqmlregistration.h>

#include <optional>

/// Remembers where a window was and how large. That is the program's state and not the user's
/// configuration, so it lies apart from the settings.
class WindowState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow *window READ window WRITE setWindow NOTIFY windowChanged)

public:
    explicit WindowState(QObject *parent = nullptr);
    ~WindowState() override;

    [[nodiscard]] QQuickWindow *window() const { return m_window; }
    void setWindow(QQuickWindow *window);
    /// Puts the window where it was last time, if it can be seen there. Before it is shown, and
    /// after it is complete: a window takes back at its completion what it was told until then.
    Q_INVOKABLE void restore();

    [[nodiscard]] static QString stateFile();
    /// The frame, moved and shrunk so far that it lies on the screen that has most of it; empty
    /// when none has enough of it to be seen.
    [[nodiscard]] static std::optional<QRect>
    visibleFrame(const QRect &frame, const QList<QRect> &screens, QSize minimum);

Q_SIGNALS:
    void windowChanged();

private:
    void remember();
    void write();

    QPointer<QQuickWindow> m_window;
    QRect m_frame;  ///< when not maximised, as it is to be written
    QRect m_newest; ///< becomes m_frame unless maximising turns out to be the reason for it
    bool m_isMaximized = false;
    QTimer m_write;
};
