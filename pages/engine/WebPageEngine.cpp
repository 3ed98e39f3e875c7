#include "pages/engine/WebPageEngine.h"

#include "pages/engine/HiddenWebPage.h"
#include "pages/engine/PageRequestFilter.h"
#include "pages/engine/PdfPrinting.h"

#include <QQuickWebEngineProfile>
#include <QWebEngineScript>

QObject *WebPageEngine::makeProfile(const PageFolders &folders, QObject *parent)
{
    auto *profile = new QQuickWebEngineProfile(parent);
    profile->setOffTheRecord(true);
    profile->setSpellCheckEnabled(false);
    profile->setUrlRequestInterceptor(
        new PageRequestFilter(folders.fonts, folders.images, profile));
    return profile;
}

QVariant WebPageEngine::makeScript(const QString &name, const QString &source, Moment moment)
{
    QWebEngineScript script;
    script.setName(name);
    script.setSourceCode(source);
    script.setInjectionPoint(moment == Moment::creation ? QWebEngineScript::DocumentCreation
                                                        : QWebEngineScript::DocumentReady);
    script.setWorldId(QWebEngineScript::MainWorld);
    return QVariant::fromValue(script);
}

std::unique_ptr<HiddenPage> WebPageEngine::makeHiddenPage(const PageFolders &folders)
{
    return std::make_unique<HiddenWebPage>(folders);
}

int WebPageEngine::pageCount(const QByteArray &pdf)
{
    return pageCountOf(pdf);
}

PrintOutcome WebPageEngine::print(const QByteArray &pdf, QPrinter &printer,
                                  const std::function<bool(int, int)> &goesOn)
{
    return printPdf(pdf, printer, goesOn);
}
