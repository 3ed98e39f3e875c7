#include "editor/FontBase.h"

#include "shell/Bundle.h"

#include <QCoreApplication>
#include <QDir>

using namespace Qt::StringLiterals;

namespace
{
QString findFontBase()
{
    const QString resources = Bundle::resourceDirectory();
    if (QDir(resources).exists(u"Fonts"_s) || QFile::exists(resources + u"/Outfit-Regular.ttf"_s))
        return resources;
    if (QDir::current().exists(u"Fonts"_s))
        return QDir::currentPath();
    const QString source = Bundle::sourceDirectory();
    if (!source.isEmpty() && QFile::exists(source + u"/Fonts/Outfit-Regular.ttf"_s))
        return source;
    for (const QLatin1StringView step :
         {"Fonts"_L1, "../Fonts"_L1, "../../Fonts"_L1, "../../../Fonts"_L1}) {
        const QString fonts =
            QDir::cleanPath(QCoreApplication::applicationDirPath() + u'/' + step);
        if (QFile::exists(fonts))
            return QDir::cleanPath(fonts + u"/.."_s);
    }
    return resources;
}
} // namespace

QUrl fontBaseURL()
{
    const QString base = findFontBase();
    return base.isEmpty() ? QUrl() : QUrl::fromLocalFile(base + u'/');
}
