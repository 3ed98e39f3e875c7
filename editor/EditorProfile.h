#pragma once

#include <QObject>
#include <QQuickWebEngineProfile>
#include <QString>
#include <QUrl>
#include <qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

/// What all editors share: the web engine profile with its request filter and the page's scripts,
/// and the page's base URL.
/// The web engine starts when the profile is first asked for, not before.
class EditorProfile : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QObject *profile READ profile CONSTANT)
    Q_PROPERTY(QUrl baseUrl READ baseUrl CONSTANT)
    Q_PROPERTY(QString channelScript READ channelScript CONSTANT)
    Q_PROPERTY(QString pageScript READ pageScript CONSTANT)

public:
    [[nodiscard]] static EditorProfile &shared();
    static EditorProfile *create(QQmlEngine *, QJSEngine *);

    /// Where notes keep their pictures; to be set before the first editor is made.
    [[nodiscard]] QString imagesDirectory() const { return m_imagesDirectory; }
    void setImagesDirectory(const QString &directory) { m_imagesDirectory = directory; }

    [[nodiscard]] QQuickWebEngineProfile *profile();
    [[nodiscard]] QUrl baseUrl() const;
    [[nodiscard]] QString channelScript() const;
    [[nodiscard]] QString pageScript() const;

private:
    EditorProfile() = default;

    QString m_imagesDirectory;
    QQuickWebEngineProfile *m_profile = nullptr;
};
