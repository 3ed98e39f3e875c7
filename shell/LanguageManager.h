#pragma once

#include "shell/AppLanguage.h"

#include <QLocale>
#include <QObject>
#include <qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

/// The current language of the user interface. It is kept in the settings under "plimLanguage".
class LanguageManager : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isPolish READ isPolish NOTIFY languageChanged)
    Q_PROPERTY(QString language READ languageRawValue NOTIFY languageChanged)

public:
    [[nodiscard]] static LanguageManager &shared();
    static LanguageManager *create(QQmlEngine *, QJSEngine *);

    /// Takes the stored language; without one English on an English system, Polish on any other.
    /// Nothing is written. Without a default system: of a class that it can make by itself QML
    /// makes one of its own.
    explicit LanguageManager(const QLocale &system);

    [[nodiscard]] AppLanguage language() const { return m_language; }
    /// Every assignment, also of the same value, is stored and announced.
    void setLanguage(AppLanguage language);
    /// Views know a language by its raw value; any other text is ignored.
    Q_INVOKABLE void chooseLanguage(const QString &rawValue);

    [[nodiscard]] bool isPolish() const { return m_language == AppLanguage::pl; }

Q_SIGNALS:
    void languageChanged();

private:
    [[nodiscard]] QString languageRawValue() const { return rawValue(m_language); }

    AppLanguage m_language;
};
