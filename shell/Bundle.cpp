#include "shell/Bundle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace
{
// What only a build directory has, which the program, or a test, lies somewhere in. Compiled in,
// the path would travel with the program to machines where it is somebody else's.
QString inBuildDirectory(const QString &name)
{
    QDir directory = QCoreApplication::applicationDirPath();
    do {
        if (directory.exists(name))
            return directory.filePath(name);
    } while (directory.cdUp());
    return {};
}
} // namespace

QString Bundle::resourceDirectory()
{
    const QString executables = QCoreApplication::applicationDirPath();
    for (const QLatin1StringView candidate : {"../Resources"_L1, "../share/plim"_L1}) {
        const QString directory = QDir::cleanPath(executables + u'/' + candidate);
        if (QDir(directory).exists())
            return directory;
    }
    return executables;
}

QString Bundle::path()
{
    return QCoreApplication::applicationDirPath();
}

QString Bundle::moduleDirectory()
{
    const QString executables = QCoreApplication::applicationDirPath();
    for (const QLatin1StringView candidate : {"../PlugIns"_L1, QLatin1StringView(PLIM_MODULES)}) {
        const QString directory = QDir::cleanPath(executables + u'/' + candidate);
        if (QDir(directory).exists())
            return directory;
    }
    return inBuildDirectory(u"plim-modules"_s);
}

QString Bundle::sourceDirectory()
{
    const QString place = inBuildDirectory(u"plim-source-directory"_s);
    if (place.isEmpty())
        return {};
    QFile file(place);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
}
