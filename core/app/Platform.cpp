#include "core/app/Platform.h"

#include "core/app/WindowSystem.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLoggingCategory>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(platformLog, "plim.platform")

namespace
{
// One process draws all editors: with twenty of them that is a quarter less memory and half the
// time.
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

// What the web engine draws reaches the window through the card's memory. It is loaded long after
// this can be settled.
void shareContexts()
{
    if (!isDrawnByProcessor())
        QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
}

QtMessageHandler usualHandler = nullptr;

// What Qt 6.4's web engine warns of at every start: three of its own types, which nobody here uses,
// and a graphics card that is missing where the processor draws anyway. A warning that is always
// there hides the one that matters.
bool isNoise(const QString &text)
{
    return (text.startsWith("QWebEngine"_L1) &&
            text.endsWith("You should not use it as a QML type."_L1)) ||
           (text.startsWith("No suitable graphics backend found"_L1) && isDrawnByProcessor());
}

void passOnAllButNoise(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type != QtWarningMsg || !isNoise(text))
        usualHandler(type, context, text);
}
} // namespace

void preparePlatform()
{
    QCoreApplication::setOrganizationName(u"Plim"_s);
    QCoreApplication::setApplicationName(u"Plim"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(PLIM_VERSION));
    QGuiApplication::setDesktopFileName(u"org.plim.Plim"_s);
    usualHandler = qInstallMessageHandler(passOnAllButNoise);
    limitRenderers();
    allowRoot();
    prepareWindowSystem();
    shareContexts();
}
