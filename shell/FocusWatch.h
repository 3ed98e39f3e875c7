#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>
#include <qqmlregistration.h>

/// Tells when the user has turned from a window to something else: it lost the keyboard, or another
/// window of the program was pressed. (A window's own `active` also holds while its parent has the
/// keyboard.)
class FocusWatch : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QWindow *window MEMBER m_window NOTIFY windowChanged)

public:
    explicit FocusWatch(QObject *parent = nullptr);

    [[nodiscard]] bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void windowChanged();
    void lost();

private:
    void follow(QWindow *focusWindow);

    QPointer<QWindow> m_window;
    bool m_hadFocus = false;
};
