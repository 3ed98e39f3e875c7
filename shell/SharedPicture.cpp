#include "shell/SharedPicture.h"

#include <QHash>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include <cmath>

namespace
{
struct Key {
    const QMetaObject *kind;
    QString look;
    QSize pixels;
    qreal scale; ///< pixels per point

    [[nodiscard]] bool operator==(const Key &) const = default;
};

size_t qHash(const Key &key, size_t seed = 0)
{
    return qHashMulti(seed, key.kind, key.look, key.pixels, key.scale);
}

using Pictures = QHash<Key, std::weak_ptr<const QImage>>;

Pictures &pictures()
{
    static Pictures pictures;
    return pictures;
}

void forgetUnused()
{
    pictures().removeIf([](Pictures::iterator picture) { return picture.value().expired(); });
}
} // namespace

SharedPicture::SharedPicture(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

qsizetype SharedPicture::keptCount()
{
    forgetUnused();
    return pictures().size();
}

void SharedPicture::redraw()
{
    m_isStale = true;
    update();
}

void SharedPicture::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        redraw();
}

void SharedPicture::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange)
        redraw();
}

std::shared_ptr<const QImage> SharedPicture::picture() const
{
    const qreal scale = window()->effectiveDevicePixelRatio();
    const QSize pixels(int(std::ceil(width() * scale)), int(std::ceil(height() * scale)));
    if (pixels.isEmpty())
        return {};
    const Key key{metaObject(), look(), pixels, scale};
    if (auto kept = pictures().value(key).lock())
        return kept;
    auto drawn = std::make_shared<QImage>(pixels, QImage::Format_ARGB32_Premultiplied);
    drawn->setDevicePixelRatio(scale);
    drawn->fill(Qt::transparent);
    QPainter painter(drawn.get());
    painter.setRenderHint(QPainter::Antialiasing);
    paint(&painter);
    painter.end();
    forgetUnused();
    pictures().insert(key, drawn);
    return drawn;
}

QSGNode *SharedPicture::updatePaintNode(QSGNode *old, UpdatePaintNodeData *)
{
    auto *node = static_cast<QSGImageNode *>(old);
    if (m_isStale || !node) {
        m_isStale = false;
        m_shown = picture();
        if (!m_shown) {
            delete node;
            return nullptr;
        }
        if (!node) {
            node = window()->createImageNode();
            node->setOwnsTexture(true);
            node->setFiltering(QSGTexture::Linear);
        }
        node->setTexture(
            window()->createTextureFromImage(*m_shown, QQuickWindow::TextureHasAlphaChannel));
    }
    // Whole pixels, or it would be drawn blurred.
    node->setRect(QRectF(QPointF(0, 0), m_shown->deviceIndependentSize()));
    return node;
}
