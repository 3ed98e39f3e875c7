#pragma once

#include "pages/PageEngine.h"

#include <QObject>

/// The module's own object.
class WebPageEngine : public QObject, public PageEngine
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.plim.PageEngine")
    Q_INTERFACES(PageEngine)

public:
    [[nodiscard]] QObject *makeProfile(const PageFolders &folders, QObject *parent) override;
    [[nodiscard]] QVariant makeScript(const QString &name, const QString &source,
                                      Moment moment) override;
    [[nodiscard]] std::unique_ptr<HiddenPage> makeHiddenPage(const PageFolders &folders) override;
    [[nodiscard]] int pageCount(const QByteArray &pdf) override;
    [[nodiscard]] PrintOutcome print(const QByteArray &pdf, QPrinter &printer,
                                     const std::function<bool(int, int)> &goesOn) override;
};
