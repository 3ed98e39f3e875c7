#include "shell/FontRegistration.h"

#include "shell/Bundle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QLoggingCategory>
#include <QSet>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(fontLog, "plim.fonts")

namespace
{
const QStringList outfitFaces{u"Outfit-Regular"_s, u"Outfit-ExtraLight"_s, u"Outfit-SemiBold"_s,
                              u"Outfit-Bold"_s, u"Outfit-Black"_s};

void logFile(const QString &line)
{
    QString directory = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (directory.isEmpty())
        directory = u"/tmp"_s;
    if (QFile file(directory + u"/plim_font.log"_s); file.open(QIODevice::Append))
        file.write((u"[FONT] "_s + line + u'\n').toUtf8());
    qCInfo(fontLog).noquote() << line;
}

QString findFace(const QString &name)
{
    const QString file = name + u".ttf"_s;
    const QString resources = Bundle::resourceDirectory();
    if (const QString path = resources + u'/' + file; QFile::exists(path))
        return path;
    logFile(u"try Bundle.main Fonts/"_s);
    QStringList candidates{resources + u"/Fonts/"_s + file, Bundle::path() + u"/../Fonts/"_s + file,
                           Bundle::path() + u"/../../Fonts/"_s + file,
                           QDir::currentPath() + u"/Fonts/"_s + file};
    if (const QString source = Bundle::sourceDirectory(); !source.isEmpty())
        candidates << source + u"/Fonts/"_s + file;
    for (const QString &candidate : candidates) {
        if (const QString path = QDir::cleanPath(candidate); QFile::exists(path))
            return path;
    }
    return {};
}

void registerFace(const QString &name)
{
    // The font database takes the same file twice; the second time is a mistake worth a line.
    static QSet<QString> registered;
    const QString path = findFace(name);
    if (path.isEmpty()) {
        logFile(u"Plim: font not found "_s + name);
    } else if (registered.contains(path)) {
        logFile(u"Plim: font register failed "_s + name + u": already registered"_s);
    } else if (QFontDatabase::addApplicationFont(path) < 0) {
        logFile(u"Plim: font register failed "_s + name + u": not a usable font file"_s);
    } else {
        registered.insert(path);
        logFile(u"Plim: font registered "_s + name);
    }
}
} // namespace

void registerOutfitFonts()
{
    logFile(u"register start Bundle.main="_s + Bundle::path() + u" exec="_s +
            QCoreApplication::applicationFilePath());
    for (const QString &name : outfitFaces)
        registerFace(name);
    for (const QString &family : QFontDatabase::families()) {
        if (family.contains("Outfit"_L1))
            logFile(u"Plim: available family "_s + family);
    }
}
