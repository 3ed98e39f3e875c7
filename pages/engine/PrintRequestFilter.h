#pragma once

#include "pages/engine/PageRequestFilter.h"

/// The room in which notes are printed is as locked as the editor's; besides what that may load,
/// there is the one document.
class PrintRequestFilter : public PageRequestFilter
{
    Q_OBJECT

public:
    using PageRequestFilter::PageRequestFilter;

    void setDocument(const QUrl &document) { m_document = document; }
    [[nodiscard]] const QUrl &document() const { return m_document; }
    void interceptRequest(QWebEngineUrlRequestInfo &info) override;

private:
    QUrl m_document;
};
