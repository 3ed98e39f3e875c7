#pragma once

#include <QQuickItem>
#include <QQuickWindow>
#include <qqmlregistration.h>

/// Tells a view which window hosts it, one turn of the event loop after it has come into one.
class WindowReader : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT

public:
    using QQuickItem::QQuickItem;

Q_SIGNALS:
    void windowRead(QQuickWindow *window);

protected:
    void componentComplete() override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    void readSoon();
};
