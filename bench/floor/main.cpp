// What many small windows with an editable page each cost at the least: plim_floor [windows]

#include "bench/floor/ReadyPages.h"
#include "core/app/Platform.h"

#include <QGuiApplication>
#include <QtWebEngineQuick/qtwebenginequickglobal.h>
#include <QQmlApplicationEngine>

#include <cstdlib>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    preparePlatform();
    QtWebEngineQuick::initialize(); // the floor's is there from the beginning
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    bool isNumber = true;
    const int windows = arguments.size() > 1 ? arguments[1].toInt(&isNumber) : 1;
    if (!isNumber || windows < 1 || arguments.size() > 2) {
        qCritical("usage: plim_floor [windows]");
        return EXIT_FAILURE;
    }

    ReadyPages pages(windows);
    QQmlApplicationEngine engine;
    engine.setInitialProperties({{u"pages"_s, QVariant::fromValue(&pages)}});
    engine.load(QUrl(u"qrc:/qt/qml/Plim/Floor/Floor.qml"_s));
    return engine.rootObjects().isEmpty() ? EXIT_FAILURE : QGuiApplication::exec();
}
