#include "sticky/VisualEffectView.h"

#include "sticky/BlurBehind.h"
#include "sticky/RoundedRegion.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace
{
constexpr int grainSide = 96; // pixels
constexpr quint32 grainSeed = 7;

/// Random greys, the same ones at every start.
const QImage &grain()
{
    static const QImage image = [] {
        QImage noise(grainSide, grainSide, QImage::Format_RGB32);
        QRandomGenerator random(grainSeed);
        for (int y = 0; y < grainSide; ++y) {
            for (int x = 0; x < grainSide; ++x) {
                const int grey = random.bounded(256);
                noise.setPixel(x, y, qRgb(grey, grey, grey));
            }
        }
        return noise;
    }();
    return image;
}

qreal grainOpacity(VisualEffectView::Material material)
{
    return material == VisualEffectView::Material::Sidebar ? 0.012 : 0.02;
}
} // namespace

VisualEffectView::VisualEffectView(QQuickItem *parent) : SharedPicture(parent)
{
}

void VisualEffectView::setMaterial(Material material)
{
    set(m_material, material);
}

void VisualEffectView::setBlendingMode(BlendingMode mode)
{
    set(m_blendingMode, mode);
    askForBlurAgain();
}

void VisualEffectView::setTint(const QColor &tint)
{
    set(m_tint, tint);
}

void VisualEffectView::setLeadingRadius(qreal radius)
{
    set(m_leadingRadius, radius);
}

void VisualEffectView::setTrailingRadius(qreal radius)
{
    set(m_trailingRadius, radius);
}

// The sides may differ, so the shape is two rounded rectangles that overlap in the middle.
QPainterPath VisualEffectView::shape() const
{
    const QRectF area = boundingRect();
    QPainterPath left;
    left.addRoundedRect(area.adjusted(0, 0, -m_trailingRadius, 0), m_leadingRadius, m_leadingRadius);
    QPainterPath right;
    right.addRoundedRect(area.adjusted(m_leadingRadius, 0, 0, 0), m_trailingRadius, m_trailingRadius);
    return left.united(right);
}

void VisualEffectView::paint(QPainter *painter) const
{
    const QPainterPath covered = shape();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setCompositionMode(QPainter::CompositionMode_Source);
    painter->fillPath(covered, m_tint);
    painter->setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter->setOpacity(grainOpacity(m_material));
    painter->fillPath(covered, QBrush(grain()));
    painter->restore();
}

void VisualEffectView::itemChange(ItemChange change, const ItemChangeData &data)
{
    SharedPicture::itemChange(change, data);
    if (change == ItemSceneChange)
        enter(data.window);
}

QString VisualEffectView::look() const
{
    return u"%1 %2 %3 %4"_s.arg(int(m_material)).arg(m_leadingRadius).arg(m_trailingRadius).arg(
        m_tint.name(QColor::HexArgb));
}

QRegion VisualEffectView::coveredRegion() const
{
    const QRect area = mapRectToScene(boundingRect()).toRect();
    const QRect left(area.topLeft(), QSize(area.width() / 2, area.height()));
    return (roundedRegion(area, qRound(m_leadingRadius)) & left) +
           (roundedRegion(area, qRound(m_trailingRadius)) - left);
}

void VisualEffectView::enter(QQuickWindow *window)
{
    if (m_window)
        m_window->disconnect(this);
    m_window = window;
    if (!window)
        return;
    connect(window, &QWindow::visibleChanged, this, &VisualEffectView::askForBlurAgain);
    // What moves it may be far above it in the scene, and tells it nothing.
    connect(window, &QQuickWindow::afterAnimating, this, &VisualEffectView::askForBlur);
    askForBlurAgain();
}

// A window that has not been shown yet has nothing to ask for: asking would make it before its
// owner has settled what kind of window it is to be.
void VisualEffectView::askForBlur()
{
    if (!m_window || !m_window->isVisible() || m_blendingMode != BlendingMode::BehindWindow)
        return;
    const std::pair wanted(coveredRegion(), m_window->devicePixelRatio());
    if (m_blurred == wanted || wanted.first.isEmpty()) // which would mean all of the window
        return;
    m_blurred = wanted;
    blurBehind(*m_window, wanted.first);
}

// One that is shown again may be another native window.
void VisualEffectView::askForBlurAgain()
{
    m_blurred.reset();
    askForBlur();
}
