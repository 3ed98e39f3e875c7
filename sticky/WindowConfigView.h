#pragma once

#include <QQuickItem>
#include <qqmlregistration.h>

/// Makes the window that it is put into the main window: frameless and see-through, because the
/// views draw its ground, its corners and its own close button, and known to WindowHolder.
class WindowConfigView : public QQuickItem
{
    Q_OBJECT
    QML_NAMED_ELEMENT(WindowConfig)

public:
    using QQuickItem::QQuickItem;

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;
};
