#include "shell/AppLanguage.h"

using namespace Qt::StringLiterals;

QString rawValue(AppLanguage language)
{
    return language == AppLanguage::en ? u"en"_s : u"pl"_s;
}

std::optional<AppLanguage> appLanguageFromRawValue(QStringView text)
{
    for (const AppLanguage language : allAppLanguages) {
        if (rawValue(language) == text)
            return language;
    }
    return std::nullopt;
}

QString displayName(AppLanguage language)
{
    return language == AppLanguage::en ? u"English"_s : u"Polski"_s;
}
