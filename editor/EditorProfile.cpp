#include "editor/EditorProfile.h"

#include "editor/EditorPage.h"
#include "editor/FontBase.h"
#include "editor/PageRequestFilter.h"

#include <QCoreApplication>
#include <QQmlEngine>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace
{
// The collection has no public header; its methods are those that QML has.
void insertScript(QQuickWebEngineProfile &profile, const QString &name, const QString &source,
                  QWebEngineScript::InjectionPoint point)
{
    QWebEngineScript script;
    script.setName(name);
    script.setSourceCode(source);
    script.setInjectionPoint(point);
    script.setWorldId(QWebEngineScript::MainWorld);
    auto *scripts = profile.property("userScripts").value<QObject *>();
    [[maybe_unused]] const bool isInserted =
        QMetaObject::invokeMethod(scripts, "insert", Q_ARG(QWebEngineScript, script));
    Q_ASSERT(isInserted);
}
} // namespace

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
    insertScript(*m_profile, u"channel"_s, editorChannelScript(),
                 QWebEngineScript::DocumentCreation);
    insertScript(*m_profile, u"page"_s, editorScript(), QWebEngineScript::DocumentReady);
    return m_profile;
}

QUrl EditorProfile::baseUrl() const
{
    static const QUrl url = fontBaseURL();
    return url;
}
