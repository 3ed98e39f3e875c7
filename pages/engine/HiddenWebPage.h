#pragma once

#include "pages/HiddenPage.h"
#include "pages/PageEngine.h"
#include "pages/engine/PrintRequestFilter.h"

#include <QWebEnginePage>
#include <QWebEngineProfile>

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
    QWebEnginePage m_page; ///< goes before its profile
};
