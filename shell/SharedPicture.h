#pragma once

#include <QImage>
#include <QQuickItem>
#include <QString>

#include <memory>

class QPainter;

/// An item that shows a picture. Items that look the same, in whichever window, share one: it is
/// drawn once and kept as long as somebody shows it.
class SharedPicture : public QQuickItem
{
    Q_OBJECT

public:
    explicit SharedPicture(QQuickItem *parent = nullptr);

    /// Draws it, in points, from the item's upper left corner.
    virtual void paint(QPainter *painter) const = 0;

    /// How many different pictures are kept.
    [[nodiscard]] static qsizetype keptCount();

protected:
    /// Tells all pictures of the class apart, except for what the size and the scale make of them.
    [[nodiscard]] virtual QString look() const = 0;
    /// What look() tells has changed.
    void redraw();

    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *) override;

private:
    [[nodiscard]] std::shared_ptr<const QImage> picture() const;

    std::shared_ptr<const QImage> m_shown;
    bool m_isStale = true;
};
