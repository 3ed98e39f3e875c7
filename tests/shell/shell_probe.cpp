#include "shell/FontRegistration.h"
#include "shell/LanguageManager.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QRawFont>

#include <cstdio>

using namespace Qt::StringLiterals;

// What a start of the program finds, in lines on standard output. "language" answers with the
// interface's language; "fonts" registers the fonts once for each time it is said, and lists every
// face of the family that a text can have then.
int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    QCoreApplication::setOrganizationName(u"Plim"_s);
    QCoreApplication::setApplicationName(u"Plim"_s);
    const qsizetype registrations = QCoreApplication::arguments().count(u"fonts"_s);
    if (registrations == 0) {
        std::puts(qPrintable(rawValue(LanguageManager::shared().language())));
        return 0;
    }
    for (qsizetype i = 0; i < registrations; ++i)
        registerOutfitFonts();
    for (const auto weight :
         {QFont::ExtraLight, QFont::Normal, QFont::DemiBold, QFont::Bold, QFont::Black}) {
        const QRawFont face = QRawFont::fromFont(QFont(u"Outfit"_s, 16, weight));
        std::puts(qPrintable(
            u"%1 %2 %3"_s.arg(QString::number(weight), face.familyName(), face.styleName())));
    }
    return 0;
}
