#include "shell/InputModality.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QQmlEngine>

namespace
{
/// Keys that take the keyboard elsewhere; whoever presses one wants to see where it went.
bool isNavigation(int key)
{
    switch (key) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return true;
    default:
        return false;
    }
}
} // namespace

InputModality::InputModality()
{
    qGuiApp->installEventFilter(this);
}

InputModality &InputModality::shared()
{
    static InputModality modality;
    return modality;
}

InputModality *InputModality::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}

bool InputModality::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::TouchBegin)
        setIsKeyboard(false);
    else if (event->type() == QEvent::KeyPress &&
             isNavigation(static_cast<QKeyEvent *>(event)->key()))
        setIsKeyboard(true);
    return QObject::eventFilter(watched, event);
}

void InputModality::setIsKeyboard(bool isKeyboard)
{
    if (m_isKeyboard == isKeyboard)
        return;
    m_isKeyboard = isKeyboard;
    Q_EMIT isKeyboardChanged();
}
