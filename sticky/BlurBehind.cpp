#include "sticky/BlurBehind.h"

#include <QWindow>

#ifdef PLIM_HAS_XCB
#include "sticky/NativePixels.h"
#include "shell/XServer.h"

// The hint of KWin and of compositors that took it over.
void blurBehind(QWindow &window, const QRegion &region)
{
    if (!XServer::connection())
        return;
    std::vector<uint32_t> values;
    for (const QRect &rect : nativePixels(region, window.devicePixelRatio())) {
        for (const int value : {rect.x(), rect.y(), rect.width(), rect.height()})
            values.push_back(uint32_t(value));
    }
    XServer::setProperty(xcb_window_t(window.winId()),
                         XServer::atom("_KDE_NET_WM_BLUR_BEHIND_REGION"), XCB_ATOM_CARDINAL,
                         values);
}
#else
void blurBehind(QWindow &, const QRegion &) {}
#endif
