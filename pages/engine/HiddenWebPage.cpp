#include "pages/engine/HiddenWebPage.h"

#include <QWebEngineLoadingInfo>
#include <QWebEngineSettings>

bool UnmovedWebPage::acceptNavigationRequest(const QUrl &url, NavigationType /*type*/,
                                             bool isMainFrame)
{
    // One that is only blocked on its way may take the document with it while that is printed.
    return isMainFrame && url == m_filter.document();
}

HiddenWebPage::HiddenWebPage(const PageFolders &folders)
    : m_filter(folders.fonts, folders.images), m_page(&m_profile, m_filter)
{
    m_profile.setUrlRequestInterceptor(&m_filter);
    QWebEngineSettings *settings = m_profile.settings();
    settings->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
    settings->setAttribute(QWebEngineSettings::PluginsEnabled, false);
    settings->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, false);
    settings->setAttribute(QWebEngineSettings::AutoLoadIconsForPage, false);
    settings->setAttribute(QWebEngineSettings::PrintElementBackgrounds, true);
    QObject::connect(
        &m_page, &QWebEnginePage::loadingChanged, &m_page, [this](const QWebEngineLoadingInfo &info) {
            if (info.status() == QWebEngineLoadingInfo::LoadStartedStatus ||
                info.url() != m_filter.document())
                return; // where the document would have gone has failed
            if (const auto tell = onLoaded) // which may put another in its place
                tell(info.status() == QWebEngineLoadingInfo::LoadSucceededStatus);
        });
    QObject::connect(&m_page, &QWebEnginePage::renderProcessTerminated, &m_page, [this] {
        if (const auto tell = onProcessEnded)
            tell();
    });
}

void HiddenWebPage::load(const QUrl &document)
{
    m_filter.setDocument(document);
    m_page.load(document);
}

void HiddenWebPage::print(const std::function<void(const QByteArray &pdf)> &answer,
                          const QPageLayout &layout, const QPageRanges &ranges)
{
    m_page.printToPdf(answer, layout, ranges);
}
