#include "pages/engine/HiddenWebPage.h"

#include <QWebEngineSettings>

HiddenWebPage::HiddenWebPage(const PageFolders &folders)
    : m_filter(folders.fonts, folders.images), m_page(&m_profile)
{
    m_profile.setUrlRequestInterceptor(&m_filter);
    QWebEngineSettings *settings = m_profile.settings();
    settings->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
    settings->setAttribute(QWebEngineSettings::PluginsEnabled, false);
    settings->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, false);
    settings->setAttribute(QWebEngineSettings::AutoLoadIconsForPage, false);
    settings->setAttribute(QWebEngineSettings::PrintElementBackgrounds, true);
    QObject::connect(&m_page, &QWebEnginePage::loadFinished, &m_page, [this](bool isLoaded) {
        if (const auto tell = onLoaded) // which may put another in its place
            tell(isLoaded);
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
