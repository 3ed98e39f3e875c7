// What a window costs at the least in which nothing is shown: plim_bare

#include "core/app/StartReport.h"
#include "core/app/WindowSystem.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <cstdlib>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    prepareWindowSystem();
    QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.load(QUrl(u"qrc:/Bare.qml"_s));
    auto *window = engine.rootObjects().isEmpty()
                       ? nullptr
                       : qobject_cast<QQuickWindow *>(engine.rootObjects().constFirst());
    if (!window)
        return EXIT_FAILURE;
    reportWhenUsable(*window);
    return QGuiApplication::exec();
}
