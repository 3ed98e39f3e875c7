#pragma once

#include <QObject>
#include <qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

/// Whether the user goes about with keys or with a pointer. Where the keyboard is, is shown to
/// those who use it and would only be noise to the others.
class InputModality : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isKeyboard READ isKeyboard NOTIFY isKeyboardChanged)

public:
    [[nodiscard]] static InputModality &shared();
    static InputModality *create(QQmlEngine *, QJSEngine *);

    /// The last thing pressed was a key that goes somewhere, not a pointer's button.
    [[nodiscard]] bool isKeyboard() const { return m_isKeyboard; }

    [[nodiscard]] bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void isKeyboardChanged();

private:
    InputModality();
    void setIsKeyboard(bool isKeyboard);

    bool m_isKeyboard = false;
};
