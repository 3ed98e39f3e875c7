#include "core/app/StartReport.h"

#include <QLoggingCategory>
#include <QQuickWindow>
#include <QTimer>

#include <memory>

Q_LOGGING_CATEGORY(startLog, "plim.start", QtInfoMsg)

namespace
{
/// Goes with its window, or as soon as it has said it.
class StartReport : public QObject
{
public:
    explicit StartReport(QQuickWindow &window) : QObject(&window), m_window(window)
    {
        connect(&window, &QQuickWindow::frameSwapped, this, [this] {
            m_isDrawn = true;
            tell();
        });
        connect(&window, &QWindow::activeChanged, this, &StartReport::tell);
    }

private:
    void tell()
    {
        if (!m_isDrawn || !m_window.isActive())
            return;
        m_window.disconnect(this);
        // After the events that have come meanwhile: only who gets there answers a click.
        QTimer::singleShot(0, this, [this] {
            qCDebug(startLog, "usable");
            deleteLater();
        });
    }

    QQuickWindow &m_window;
    bool m_isDrawn = false;
};
} // namespace

void reportWhenUsable(QQuickWindow &window)
{
    if (startLog().isDebugEnabled())
        new StartReport(window); // the window's own
}
