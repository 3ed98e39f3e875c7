#include "shell/HelpTip.h"

#include "shell/AnchoredPlacement.h"

#include <QQmlEngine>

HelpTip::HelpTip(QObject *parent, std::chrono::milliseconds delay) : QObject(parent)
{
    m_wait.setSingleShot(true);
    m_wait.setInterval(delay);
    connect(&m_wait, &QTimer::timeout, this, &HelpTip::appear);
}

HelpTip &HelpTip::shared()
{
    static HelpTip tip(nullptr);
    return tip;
}

HelpTip *HelpTip::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}

QQuickWindow *HelpTip::host() const
{
    return m_owner ? m_owner->window() : nullptr;
}

void HelpTip::show(QQuickItem *owner, const QString &text)
{
    begin(owner, text, false);
}

void HelpTip::showAtPointer(QQuickItem *owner, const QString &text)
{
    begin(owner, text, true);
}

void HelpTip::update(QQuickItem *owner, const QString &text)
{
    if (owner && owner == m_owner)
        setText(text);
}

void HelpTip::hide(QQuickItem *owner)
{
    if (owner && owner == m_owner)
        end();
}

QPoint HelpTip::placeFor(QSizeF size) const
{
    const AnchoredPlacement placement;
    return m_isAtPointer ? placement.belowPointer(size) : placement.below(m_owner, size);
}

void HelpTip::begin(QQuickItem *owner, const QString &text, bool isAtPointer)
{
    end();
    if (!owner)
        return;
    m_owner = owner;
    m_isAtPointer = isAtPointer;
    // An item that goes away does not always tell that the pointer has left it.
    connect(owner, &QObject::destroyed, this, &HelpTip::end);
    connect(owner, &QQuickItem::visibleChanged, this, &HelpTip::end);
    setText(text);
    m_wait.start();
}

void HelpTip::appear()
{
    if (m_owner && m_owner->isVisible() && host() && host()->isVisible())
        setIsShown(true);
}

void HelpTip::end()
{
    m_wait.stop();
    setIsShown(false);
    if (m_owner)
        m_owner->disconnect(this);
    m_owner = nullptr;
}

void HelpTip::setText(const QString &text)
{
    if (m_text == text)
        return;
    m_text = text;
    Q_EMIT textChanged();
}

void HelpTip::setIsShown(bool isShown)
{
    if (m_isShown == isShown)
        return;
    m_isShown = isShown;
    Q_EMIT isShownChanged();
}
