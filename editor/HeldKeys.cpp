#include "editor/HeldKeys.h"

#include "editor/EditorLog.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <utility>

HeldKeys::HeldKeys(QObject *parent) : QObject(parent) {}

HeldKeys::~HeldKeys() = default;

void HeldKeys::setWindow(QQuickWindow *window)
{
    if (m_window == window)
        return;
    if (m_window) {
        m_window->removeEventFilter(this);
        m_window->disconnect(this);
    }
    m_keys.clear(); // they were typed into that one
    m_window = window;
    if (m_window) {
        m_window->installEventFilter(this);
        connect(m_window, &QQuickWindow::activeFocusItemChanged, this, &HeldKeys::noticeOtherFocus);
    }
    Q_EMIT windowChanged();
}

void HeldKeys::setPage(QQuickItem *page)
{
    if (m_page == page)
        return;
    m_page = page;
    Q_EMIT pageChanged();
}

void HeldKeys::setIsHolding(bool isHolding)
{
    if (m_isHolding == isHolding)
        return;
    m_isHolding = isHolding;
    m_isElsewhere = false;
    m_wasInPage = false;
    Q_EMIT isHoldingChanged();
    if (!m_isHolding)
        giveOut();
}

// Of the window alone, which may be on its way out: then it is no QQuickWindow any more.
bool HeldKeys::eventFilter(QObject * /*watched*/, QEvent *event)
{
    if (!m_isHolding || m_isElsewhere || m_isGivingOut)
        return false;
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return false;
    m_keys.emplace_back(event->clone());
    return true;
}

// The search, asked for by its key, or a button, reached from the page: what is typed from then on
// is for it.
void HeldKeys::noticeOtherFocus()
{
    const QQuickItem *item = m_window->activeFocusItem();
    if (!m_isHolding || !item)
        return;
    if (isInPage(item))
        m_wasInPage = true;
    else if (m_wasInPage || item->flags().testFlag(QQuickItem::ItemAcceptsInputMethod))
        m_isElsewhere = true;
}

bool HeldKeys::isInPage(const QQuickItem *item) const
{
    return item && m_page && (item == m_page || m_page->isAncestorOf(item));
}

void HeldKeys::giveOut()
{
    if (m_isGivingOut || m_keys.empty())
        return;
    m_isGivingOut = true;
    // Another note may be asked for by what is typed here.
    while (m_window && !m_isHolding && !m_keys.empty()) {
        const auto key = std::move(m_keys.front());
        m_keys.pop_front();
        if (isInPage(m_window->activeFocusItem()))
            QCoreApplication::sendEvent(m_window, key.get());
        else // a list would take a letter for a command
            qCInfo(editorLog) << "Plim: a key typed for a note has no note any more";
    }
    m_isGivingOut = false;
}
