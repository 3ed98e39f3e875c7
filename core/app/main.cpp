#include "core/app/CommandLine.h"
#include "core/app/Platform.h"
#include "core/app/PlimApp.h"

#include <QGuiApplication>

int main(int argc, char **argv)
{
    if (const std::optional<int> code = answerCommandLine(argc, argv))
        return *code;
    preparePlatform();
    QGuiApplication application(argc, argv);
    PlimApp plim;
    plim.show();
    return QGuiApplication::exec();
}
