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

    explicit SystemPreferences(QObject *parent);

Q_SIGNALS:
    void reducesMotionChanged();

private Q_SLOTS:
    void follow(const QString &space, const QString &key, const QDBusVariant &value);

private:
    void askPortal();
    void setReducesMotion(bool reducesMotion);

    bool m_reducesMotion = false;
};
