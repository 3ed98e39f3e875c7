#include "pages/engine/PrintRequestFilter.h"

#include <QWebEngineUrlRequestInfo>

void PrintRequestFilter::interceptRequest(QWebEngineUrlRequestInfo &info)
{
    if (info.requestUrl() != m_document)
        PageRequestFilter::interceptRequest(info);
}
