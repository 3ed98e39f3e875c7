#include "core/app/DialogLanguage.h"

#include "shell/LanguageManager.h"

#include <QCoreApplication>
#include <QLibraryInfo>

using namespace Qt::StringLiterals;

DialogLanguage::DialogLanguage(QObject *parent) : QObject(parent)
{
    connect(&LanguageManager::shared(), &LanguageManager::languageChanged, this,
            &DialogLanguage::follow);
    follow();
}

void DialogLanguage::follow()
{
    QCoreApplication::removeTranslator(&m_polish);
    if (LanguageManager::shared().isPolish() &&
        m_polish.load(u"qtbase_pl"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_polish);
}
