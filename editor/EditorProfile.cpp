#include "editor/EditorProfile.h"

#include "editor/EditorPage.h"
#include "editor/FontBase.h"
#include "pages/PageEngine.h"

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

void EditorProfile::prepare()
{
    PageEngine::load();
}

QObject *EditorProfile::profile()
{
    if (m_profile)
        return m_profile;
    // Owned by the application: the engine has to go before it does.
    m_profile = PageEngine::shared().makeProfile(
        {.fonts = baseUrl().toLocalFile() + u"Fonts"_s, .images = m_imagesDirectory}, qApp);
    QQmlEngine::setObjectOwnership(m_profile, QQmlEngine::CppOwnership);
    return m_profile;
}

QUrl EditorProfile::baseUrl() const
{
    static const QUrl url = fontBaseURL();
    return url;
}

QVariant EditorProfile::channelScript() const
{
    static const QVariant script = PageEngine::shared().makeScript(
        u"channel"_s, editorChannelScript(), PageEngine::Moment::creation);
    return script;
}

QVariant EditorProfile::pageScript() const
{
    static const QVariant script =
        PageEngine::shared().makeScript(u"page"_s, editorScript(), PageEngine::Moment::ready);
    return script;
}
