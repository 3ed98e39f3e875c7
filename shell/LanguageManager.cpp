#include "shell/LanguageManager.h"

#include "core/NotificationCenter.h"

#include <QQmlEngine>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto languageKey = "plimLanguage"_L1;

AppLanguage initialLanguage(const QLocale &system)
{
    if (const auto stored = appLanguageFromRawValue(QSettings().value(languageKey).toString()))
        return *stored;
    return system.language() == QLocale::English ? AppLanguage::en : AppLanguage::pl;
}
} // namespace

LanguageManager &LanguageManager::shared()
{
    static LanguageManager manager(QLocale::system());
    return manager;
}

LanguageManager *LanguageManager::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}

LanguageManager::LanguageManager(const QLocale &system) : m_language(initialLanguage(system)) {}

void LanguageManager::setLanguage(AppLanguage language)
{
    m_language = language;
    QSettings().setValue(languageKey, rawValue(language));
    Q_EMIT NotificationCenter::shared().plimLanguageChanged(language);
    Q_EMIT languageChanged();
}

void LanguageManager::chooseLanguage(const QString &rawValue)
{
    if (const auto language = appLanguageFromRawValue(rawValue))
        setLanguage(*language);
}
