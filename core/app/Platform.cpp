#include "core/app/Platform.h"

#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QQuickWindow>
#include <QtWebEngineQuick/qtwebenginequickglobal.h>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(platformLog, "plim.platform")

namespace
{
// One process draws all editors: with twenty of them that is a quarter less memory and half the time.
void limitRenderers()
{
    QByteArray flags = qgetenv("QTWEBENGINE_CHROMIUM_FLAGS");
    if (!flags.contains("--renderer-process-limit"))
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS", (flags + " --renderer-process-limit=1").trimmed());
}

// The web engine's sandbox cannot start for root, and without this nothing would be drawn at all.
// An ordinary user always keeps it.
void allowRoot()
{
#ifdef Q_OS_UNIX
    if (geteuid() != 0 || qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
        return;
    qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    qCInfo(platformLog, "Plim: running as root, the web engine's sandbox is off");
#endif
}

QtMessageHandler usualHandler = nullptr;

// Qt 6.4's web engine module warns of three of its own types at every start. Nobody here uses them,
// and a warning that is always there hides the one that matters.
void passOnAllButNoise(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtWarningMsg && text.startsWith("QWebEngine"_L1) && text.endsWith("You should not use it as a QML type."_L1))
        return;
    usualHandler(type, context, text);
}

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

void preparePlatform()
{
    QCoreApplication::setOrganizationName(u"Plim"_s);
    QCoreApplication::setApplicationName(u"Plim"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(PLIM_VERSION));
    usualHandler = qInstallMessageHandler(passOnAllButNoise);
    limitRenderers();
    allowRoot();
    choosePlatform();
    // Many small windows cost less with one thread than with one each; without a card the
    // processor draws them sooner by itself than by standing in for a card.
    if (!qEnvironmentVariableIsSet("QSG_RENDER_LOOP"))
        qputenv("QSG_RENDER_LOOP", "basic");
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !hasGraphicsCard())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QtWebEngineQuick::initialize();
}
