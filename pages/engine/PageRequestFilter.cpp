#include "pages/engine/PageRequestFilter.h"

#include <QFileInfo>
#include <QLoggingCategory>
#include <QWebEngineUrlRequestInfo>

using namespace Qt::StringLiterals;

static Q_LOGGING_CATEGORY(requestLog, "plim.pages", QtInfoMsg)

    PageRequestFilter::PageRequestFilter(const QString &fontsDirectory,
                                         const QString &imagesDirectory, QObject *parent)
    : QWebEngineUrlRequestInterceptor(parent), m_fontsDirectory(fontsDirectory),
      m_imagesDirectory(imagesDirectory)
{
}

void PageRequestFilter::interceptRequest(QWebEngineUrlRequestInfo &info)
{
    if (isAllowed(info.requestUrl()))
        return;
    qCInfo(requestLog) << "Plim: request blocked, scheme" << info.requestUrl().scheme();
    info.block(true);
}

bool PageRequestFilter::isAllowed(const QUrl &url) const
{
    if (url.scheme() == "data"_L1 || url.scheme() == "blob"_L1)
        return true;
    if (!url.isLocalFile() || !url.host().isEmpty())
        return false;
    // Symbolic links and ".." are resolved on both sides: what counts is where the file really is.
    const QString path = QFileInfo(url.toLocalFile()).canonicalFilePath();
    const auto liesIn = [&path](const QString &directory) {
        const QString root = QFileInfo(directory).canonicalFilePath();
        return !root.isEmpty() && path.startsWith(root + u'/');
    };
    return QFileInfo(path).isFile() &&
           ((liesIn(m_fontsDirectory) && path.endsWith(".ttf"_L1)) || liesIn(m_imagesDirectory));
}
