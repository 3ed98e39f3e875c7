#include "shell/FocusReturn.h"

#include "shell/WithoutTypeInformation.h"

#include <QQuickWindow>

#include <utility>

WITHOUT_TYPE_INFORMATION void FocusReturn::remember(QQuickItem *ofSameWindow)
{
    const QQuickWindow *window = ofSameWindow ? ofSameWindow->window() : nullptr;
    QQuickItem *outermost = window ? window->activeFocusItem() : nullptr;
    for (QQuickItem *item = outermost; item && item != window->contentItem();
         item = item->parentItem()) {
        if (item->isFocusScope())
            outermost = item;
    }
    m_item = outermost;
}

WITHOUT_TYPE_INFORMATION void FocusReturn::giveBack()
{
    QQuickItem *item = std::exchange(m_item, nullptr);
    if (!item || !item->window() || !item->isVisible())
        return;
    const QQuickItem *current = item->window()->activeFocusItem();
    if (!current || current == item->window()->contentItem())
        item->forceActiveFocus(Qt::PopupFocusReason);
}
