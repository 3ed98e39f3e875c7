#include "core/app/AlreadyOpenMessage.h"

#include "core/app/Platform.h"
#include "shell/L10n.h"

#include <QApplication>
#include <QMessageBox>

using namespace Qt::StringLiterals;

namespace
{
// A display that is named may be gone; Qt would end the process, and with another code.
void fallBackToNoDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    QByteArray platforms = qgetenv("QT_QPA_PLATFORM");
    if (platforms.isEmpty())
        platforms = qEnvironmentVariableIsEmpty("DISPLAY") ? "wayland" : "xcb";
    qputenv("QT_QPA_PLATFORM", platforms + ";offscreen");
#endif
}

bool isDisplayNamed()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
#else
    return true;
#endif
}
} // namespace

void showAlreadyOpen(int argc, char **argv)
{
    if (!isDisplayNamed())
        return;
    preparePlatform();
    fallBackToNoDisplay();
    const QApplication application(argc, argv);
    if (QGuiApplication::platformName() == "offscreen"_L1)
        return;
    QMessageBox message(QMessageBox::Information, u"Plim"_s, L10n::alreadyOpen(), QMessageBox::Ok);
    message.setInformativeText(L10n::alreadyOpenAdvice());
    message.exec();
}
