#include "editor/OpenableLink.h"

using namespace Qt::StringLiterals;

bool isOpenableLink(const QUrl &url)
{
    if (!url.isValid())
        return false;
    const QString scheme = url.scheme(); // in small letters, however it was written
    if (scheme == "http"_L1 || scheme == "https"_L1)
        return !url.host().isEmpty();
    return scheme == "mailto"_L1 && url.host().isEmpty() && !url.path().isEmpty();
}

QUrl openableLink(const QString &address)
{
    if (address.size() > longestOpenableLink)
        return {};
    const QUrl url(address);
    return isOpenableLink(url) ? url : QUrl();
}
