#include "core/app/WindowSystem.h"

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QOpenGLContext>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

namespace
{
// Only for this program: what it opens, a browser, say, makes its own choice.
void choosePlatform()
{
    const QByteArray platforms = wantedPlatforms(QProcessEnvironment::systemEnvironment());
    if (platforms.isEmpty())
        return;
    qputenv("QT_QPA_PLATFORM", platforms);
    qAddPreRoutine([] { qunsetenv("QT_QPA_PLATFORM"); }); // Qt has read it by then
}

bool hasGraphicsCard()
{
#ifdef Q_OS_LINUX
    return !QDir(u"/dev/dri"_s).entryList({u"renderD*"_s}, QDir::System).isEmpty();
#else
    return true;
#endif
}
} // namespace

// Wayland lets no program place its windows or bring them to the front, which sticky notes live by.
// The X server that most such sessions have as well does.
QByteArray wantedPlatforms(const QProcessEnvironment &environment)
{
    const auto has = [&environment](const QString &name) {
        return !environment.value(name).isEmpty();
    };
    if (has(u"QT_QPA_PLATFORM"_s) || !has(u"WAYLAND_DISPLAY"_s) || !has(u"DISPLAY"_s))
        return {};
    return "xcb;wayland";
}

void prepareWindowSystem()
{
    choosePlatform();
    // Many small windows cost less with one thread than with one each; without a card the
    // processor draws them sooner by itself than by standing in for a card.
    if (!qEnvironmentVariableIsSet("QSG_RENDER_LOOP"))
        qputenv("QSG_RENDER_LOOP", "basic");
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !hasGraphicsCard())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

bool isDrawnByProcessor()
{
    constexpr auto software = "software"_L1;
    return QQuickWindow::sceneGraphBackend() == software ||
           qEnvironmentVariable("QT_QUICK_BACKEND") == software; // which it asks only later
}

// The web engine asks whether a driver may be used by several threads, and X's part of Qt loads one
// to answer; told that there is none, it says no. It is told by the environment alone, which what
// this program opens would inherit: so it is asked at once, and will not look there again.
void spareDriver()
{
    static constexpr auto choice = "QT_XCB_GL_INTEGRATION";
    if (!isDrawnByProcessor() || qEnvironmentVariableIsSet(choice))
        return;
    qputenv(choice, "none");
    qAddPreRoutine([] {
        if (QGuiApplication::platformName() == "xcb"_L1)
            (void)QOpenGLContext::supportsThreadedOpenGL();
        qunsetenv(choice);
    });
}
