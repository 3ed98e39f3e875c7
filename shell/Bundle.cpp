#include "shell/Bundle.h"

#include <QCoreApplication>
#include <QDir>

using namespace Qt::StringLiterals;

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

QString Bundle::sourceDirectory()
{
#ifdef PLIM_SOURCE_DIRECTORY
    return QStringLiteral(PLIM_SOURCE_DIRECTORY);
#else
    return {};
#endif
}
