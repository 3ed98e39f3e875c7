#pragma once

#include <QUrl>
#include <QWebEngineUrlRequestInterceptor>

/// The page is a locked room: of all it may ask for, only the fonts, the pictures in the data
/// directory and what the page carries in itself (data:, blob:) are let through.
class PageRequestFilter : public QWebEngineUrlRequestInterceptor
{
    Q_OBJECT

public:
    /// Directories as local paths; an empty one lets nothing through.
    PageRequestFilter(const QString &fontsDirectory, const QString &imagesDirectory,
                      QObject *parent = nullptr);

    void interceptRequest(QWebEngineUrlRequestInfo &info) override;

    [[nodiscard]] bool isAllowed(const QUrl &url) const;

private:
    QString m_fontsDirectory;
    QString m_imagesDirectory;
};
