#include "sticky/ScreenAreas.h"

#include <QGuiApplication>
#include <QScreen>

namespace
{
/// Whether the process has windows at all.
bool hasScreens()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance());
}
} // namespace

ScreenAreas ScreenAreas::current()
{
    const QScreen *primary = hasScreens() ? QGuiApplication::primaryScreen() : nullptr;
    if (!primary)
        return {};
    ScreenAreas areas{primary->geometry(), {}};
    const auto add = [&areas](const QScreen *screen) {
        areas.visible << StickyFrame::fromScreen(screen->availableGeometry(), areas.primary);
    };
    add(primary);
    for (const QScreen *screen : QGuiApplication::screens()) {
        if (screen != primary)
            add(screen);
    }
    return areas;
}

void ScreenAreas::watch(QObject *context, const std::function<void()> &changed)
{
    if (!hasScreens())
        return;
    const auto follow = [context, changed](QScreen *screen) {
        QObject::connect(screen, &QScreen::geometryChanged, context, changed, Qt::QueuedConnection);
        QObject::connect(screen, &QScreen::availableGeometryChanged, context, changed,
                         Qt::QueuedConnection);
    };
    for (QScreen *screen : QGuiApplication::screens())
        follow(screen);
    QObject::connect(qGuiApp, &QGuiApplication::screenAdded, context, follow);
    for (const auto signal : {&QGuiApplication::screenAdded, &QGuiApplication::screenRemoved,
                              &QGuiApplication::primaryScreenChanged})
        QObject::connect(qGuiApp, signal, context, changed, Qt::QueuedConnection);
}
