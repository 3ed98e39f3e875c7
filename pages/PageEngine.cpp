#include "pages/PageEngine.h"

#include "shell/Bundle.h"

#include <QLoggingCategory>
#include <QOpenGLContext>
#include <QPluginLoader>

#include <cstdlib>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(pagesLog, "plim.pages")

/// What Qt itself shares contexts by; it stands in no public header.
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext *context);

namespace
{
PageEngine *engine = nullptr;

// The web engine asks the shared context for its format, whether or not it will draw with it. Where
// the processor draws there is none, and one that is never created answers as well: a created one
// would load a driver of forty megabytes.
void standInForSharedContext()
{
    if (QOpenGLContext::globalShareContext())
        return;
    static auto *neverCreated = new QOpenGLContext; // the engine may ask as long as it lives
    qt_gl_set_global_share_context(neverCreated);
}

PageEngine *loadedEngine()
{
    standInForSharedContext();
    QPluginLoader loader(Bundle::moduleDirectory() + u"/plim_page_engine"_s);
    auto *loaded = qobject_cast<PageEngine *>(loader.instance());
    if (loaded)
        return loaded;
    qCCritical(pagesLog).noquote()
        << "Plim: the page engine cannot be loaded:" << loader.errorString();
    // What is to be saved at the end still is.
    std::exit(EXIT_FAILURE); // NOLINT(concurrency-mt-unsafe): asked for by the main thread alone
}
} // namespace

void PageEngine::load()
{
    if (!engine)
        engine = loadedEngine();
}

PageEngine &PageEngine::shared()
{
    load();
    return *engine;
}
