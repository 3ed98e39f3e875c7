#include "core/app/InstanceProtocol.h"
#include "core/app/InstanceServer.h"
#include "core/app/Platform.h"
#include "core/app/PlimApp.h"
#include "core/app/StartAnswer.h"
#include "core/app/WindowSystem.h"
#include "shell/ApplicationIcon.h"

#include <QApplication>

int main(int argc, char **argv)
{
    DataLock lock(NoteStore::defaultDataDirectory()); // outlives everything that writes there
    const auto start = answerStart(argc, argv, lock);
    if (const int *code = std::get_if<int>(&start))
        return *code;
    preparePlatform();
    spareDriver();
    NotesAhead notes(lock.dataDirectory());
    QApplication application(argc, argv);
    QApplication::setWindowIcon(applicationIcon());
    InstanceServer server;
    server.listen(InstanceProtocol::socketPath(lock.dataDirectory()));
    PlimApp plim(&notes);
    plim.start(std::get<Invocation>(start));
    server.setHandler([&plim](const Invocation &invocation) {
        if (!plim.canCarryOut())
            return false;
        plim.carryOut(invocation);
        return true;
    });
    return QApplication::exec();
}
