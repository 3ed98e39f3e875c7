#pragma once

#include "pages/HiddenPage.h"
#include "pages/PageEngine.h"
#include "pages/engine/PrintRequestFilter.h"

#include <QWebEnginePage>
#include <QWebEngineProfile>

/// A page that stays where it is put: what its document holds sends it nowhere, and loads no page
/// within it.
class UnmovedWebPage : public QWebEnginePage
{
public:
    /// The filter, which lives longer, knows the document.
    UnmovedWebPage(QWebEngineProfile *profile, const PrintRequestFilter &filter)
        : QWebEnginePage(profile), m_filter(filter)
    {
    }

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;

private:
    const PrintRequestFilter &m_filter;
};

/// With a profile of its own, of which nothing is kept.
class HiddenWebPage : public HiddenPage
{
public:
    explicit HiddenWebPage(const PageFolders &folders);

    void load(const QUrl &document) override;
    void print(const std::function<void(const QByteArray &pdf)> &answer, const QPageLayout &layout,
               const QPageRanges &ranges) override;
    [[nodiscard]] qint64 processId() const override { return m_page.renderProcessPid(); }

private:
    PrintRequestFilter m_filter;
    QWebEngineProfile m_profile;
    UnmovedWebPage m_page; ///< goes before its profile
};
