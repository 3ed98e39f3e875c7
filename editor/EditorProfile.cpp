#include "editor/EditorProfile.h"

#include "editor/EditorPage.h"
#include "editor/FontBase.h"
#include "editor/PageRequestFilter.h"

#include <QCoreApplication>
#include <QQmlEngine>

using namespace Qt::StringLiterals;

EditorProfile &EditorProfile::shared()
{
    static EditorProfile profile;
    return profile;
}

EditorProfile *EditorProfile::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}

QQuickWebEngineProfile *EditorProfile::profile()
{
    if (m_profile)
        return m_profile;
    // Owned by the application: the engine has to go before it does.
    m_profile = new QQuickWebEngineProfile(qApp);
    m_profile->setOffTheRecord(true); // nothing of it is kept on disk
    m_profile->setSpellCheckEnabled(false);
    m_profile->setUrlRequestInterceptor(new PageRequestFilter(
        baseUrl().toLocalFile() + u"Fonts"_s, m_imagesDirectory, m_profile));
    QQmlEngine::setObjectOwnership(m_profile, QQmlEngine::CppOwnership);
    return m_profile;
}

QUrl EditorProfile::baseUrl() const
{
    static const QUrl url = fontBaseURL();
    return url;
}

QString EditorProfile::channelScript() const
{
    static const QString script = editorChannelScript();
    return script;
}

QString EditorProfile::pageScript() const
{
    static const QString script = editorScript();
    return script;
}
