#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <QVariant>
#include <qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

/// What all editors share: the web engine profile with its request filter and the page's scripts,
/// and the page's base URL.
/// The web engine is loaded and starts when the profile is first asked for, not before.
class EditorProfile : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QObject *profile READ profile CONSTANT)
    Q_PROPERTY(QUrl baseUrl READ baseUrl CONSTANT)
    Q_PROPERTY(QVariant channelScript READ channelScript CONSTANT)
    Q_PROPERTY(QVariant pageScript READ pageScript CONSTANT)

public:
    [[nodiscard]] static EditorProfile &shared();
    static EditorProfile *create(QQmlEngine *, QJSEngine *);

    /// Where notes keep their pictures; to be set before the first editor is made.
    [[nodiscard]] QString imagesDirectory() const { return m_imagesDirectory; }
    void setImagesDirectory(const QString &directory) { m_imagesDirectory = directory; }

    /// Loads what sets pages, which has to be there before QML imports QtWebEngine.
    Q_INVOKABLE void prepare();
    /// A QQuickWebEngineProfile.
    [[nodiscard]] QObject *profile();
    [[nodiscard]] QUrl baseUrl() const;
    /// QWebEngineScripts.
    [[nodiscard]] QVariant channelScript() const;
    [[nodiscard]] QVariant pageScript() const;

private:
    EditorProfile() = default;

    QString m_imagesDirectory;
    QObject *m_profile = nullptr;
};
