#include "mainwindow/AboutInfo.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

AboutInfo::AboutInfo(QString notesFolder, QObject *parent)
    : QObject(parent), m_notesFolder(std::move(notesFolder))
{
}

QString AboutInfo::version()
{
    return QCoreApplication::applicationVersion();
}

QStringList AboutInfo::licences()
{
    return {
        u"Plim — MIT"_s,
        u"Qt "_s + QString::fromLatin1(qVersion()) + u" — LGPL 3"_s,
        u"Qt WebEngine (Chromium) — LGPL 3, BSD"_s,
        u"Qt PDF (PDFium) — LGPL 3, BSD"_s,
        u"Outfit — SIL Open Font License 1.1"_s,
        u"Bootstrap Icons — MIT"_s,
        u"Gumbo — Apache 2.0"_s,
        u"MD4C — MIT"_s,
        u"XCB — MIT"_s,
    };
}

bool AboutInfo::openNotesFolder() const
{
    return QDesktopServices::openUrl(QUrl::fromLocalFile(m_notesFolder));
}
