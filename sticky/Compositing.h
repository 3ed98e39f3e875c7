#pragma once

#include "shell/XSelectionWatch.h"

#include <QObject>
#include <qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

/// Whether what is see-through shows what lies behind it, as is the case everywhere but on an X
/// server: there somebody has to do it, who may come and go.
class Compositing : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)

public:
    [[nodiscard]] static Compositing &shared();
    static Compositing *create(QQmlEngine *, QJSEngine *);

    /// Without a default parent: of a class that it can make by itself QML makes one of its own.
    explicit Compositing(QObject *parent);

    [[nodiscard]] bool isRunning() const
    {
        return !XSelectionWatch::hasServer() || m_compositor.isOwned();
    }

Q_SIGNALS:
    void isRunningChanged();

private:
    XSelectionWatch m_compositor;
};
