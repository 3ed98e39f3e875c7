#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>
#include <qqmlregistration.h>

/// Tells when its user first turns to a window: by the pointer moved over it, a button, the wheel,
/// a finger or a key. A window that comes up beneath the pointer is not meant by that.
class FirstInput : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QWindow *window READ window WRITE setWindow NOTIFY windowChanged)

public:
    using QObject::QObject;

    [[nodiscard]] QWindow *window() const { return m_window; }
    void setWindow(QWindow *window);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void windowChanged();
    /// Once; the window has not been told yet.
    void happened();

private:
    QPointer<QWindow> m_window;
};
