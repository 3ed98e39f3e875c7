#pragma once

#include <QDBusVariant>
#include <QObject>
#include <qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

/// What the user has asked of every program on this system.
class SystemPreferences : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY reducesMotionChanged)

public:
    [[nodiscard]] static SystemPreferences &shared();
    static SystemPreferences *create(QQmlEngine *, QJSEngine *);

    /// Nothing on the screen should move by itself. Desktops of KDE are asked through their
    /// settings file, others through the desktop portal, whose answer may come a little later.
    [[nodiscard]] bool reducesMotion() const { return m_reducesMotion; }

    /// The desktop is set to light colours, and not to dark ones, nor to no preference.
    [[nodiscard]] bool prefersLight() const { return m_prefersLight; }

    explicit SystemPreferences(QObject *parent);

Q_SIGNALS:
    void reducesMotionChanged();
    void prefersLightChanged();

private Q_SLOTS:
    void follow(const QString &space, const QString &key, const QDBusVariant &value);

private:
    void askPortal();
    void askFor(const QString &space, const QString &key);
    void setReducesMotion(bool reducesMotion);
    void setPrefersLight(bool prefersLight);

    bool m_reducesMotion = false;
    bool m_prefersLight = false;
};
