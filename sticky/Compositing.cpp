#include "sticky/Compositing.h"

#include <QQmlEngine>

Compositing::Compositing(QObject *parent) : QObject(parent), m_compositor("_NET_WM_CM_S")
{
    connect(&m_compositor, &XSelectionWatch::isOwnedChanged, this, &Compositing::isRunningChanged);
}

Compositing &Compositing::shared()
{
    static Compositing compositing(nullptr);
    return compositing;
}

Compositing *Compositing::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}
