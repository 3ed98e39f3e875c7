#pragma once

#include "shell/SharedPicture.h"

#include <QColor>
#include <QPainterPath>
#include <QPointer>
#include <QQuickWindow>
#include <QRegion>
#include <qqmlregistration.h>

#include <optional>

/// The translucent, slightly grainy ground of a view. It stays translucent whether its window is
/// the active one or not. There is one such view in a window: what it covers is what is blurred.
class VisualEffectView : public SharedPicture
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Material material READ material WRITE setMaterial NOTIFY changed)
    Q_PROPERTY(BlendingMode blendingMode READ blendingMode WRITE setBlendingMode NOTIFY changed)
    Q_PROPERTY(QColor tint READ tint WRITE setTint NOTIFY changed)
    Q_PROPERTY(qreal leadingRadius READ leadingRadius WRITE setLeadingRadius NOTIFY changed)
    Q_PROPERTY(qreal trailingRadius READ trailingRadius WRITE setTrailingRadius NOTIFY changed)

public:
    enum class Material { Sidebar, Sheet }; ///< how much grain
    Q_ENUM(Material)
    enum class BlendingMode {
        BehindWindow, ///< what is behind the window is blurred, where the desktop can do that
        WithinWindow,
    };
    Q_ENUM(BlendingMode)

    explicit VisualEffectView(QQuickItem *parent = nullptr);

    [[nodiscard]] Material material() const { return m_material; }
    void setMaterial(Material material);
    [[nodiscard]] BlendingMode blendingMode() const { return m_blendingMode; }
    void setBlendingMode(BlendingMode mode);
    [[nodiscard]] const QColor &tint() const { return m_tint; }
    void setTint(const QColor &tint);
    /// Points, of the left corners.
    [[nodiscard]] qreal leadingRadius() const { return m_leadingRadius; }
    void setLeadingRadius(qreal radius);
    /// Points, of the right corners.
    [[nodiscard]] qreal trailingRadius() const { return m_trailingRadius; }
    void setTrailingRadius(qreal radius);
    /// What it covers of its window, in points.
    [[nodiscard]] QRegion coveredRegion() const;

    void paint(QPainter *painter) const override;

Q_SIGNALS:
    void changed();

protected:
    [[nodiscard]] QString look() const override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    /// All of it, the corners left out.
    [[nodiscard]] QPainterPath shape() const;
    template <typename T>
    void set(T &member, const T &value)
    {
        if (member == value)
            return;
        member = value;
        redraw();
        Q_EMIT changed();
    }

private:
    void enter(QQuickWindow *window);
    void askForBlur();
    void askForBlurAgain();

    Material m_material = Material::Sidebar;
    BlendingMode m_blendingMode = BlendingMode::BehindWindow;
    QColor m_tint;
    qreal m_leadingRadius = 0;
    qreal m_trailingRadius = 0;
    QPointer<QQuickWindow> m_window;
    /// What its window has been told, and at which scale; empty when that knows nothing.
    std::optional<std::pair<QRegion, qreal>> m_blurred;
};
